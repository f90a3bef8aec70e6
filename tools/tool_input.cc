#include "tool_input.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "json_form.h"
#include "tool_rules.h"

namespace filters_tool {

namespace {

// The value of hex digit `c`, or -1.
int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string printable(char c) {
  if (std::isprint(static_cast<unsigned char>(c))) return std::string(1, c);
  std::ostringstream code;
  code << "\\x" << std::hex << (static_cast<unsigned>(c) & 0xFF);
  return code.str();
}

// What the tool calls each message, how it reads its JSON, and what to tell
// a user who gave the other message instead.
template <class Message>
struct MessageKind;

template <>
struct MessageKind<FiltersCommon::FiltersGroupPB> {
  using Other = FiltersCommon::FiltersEntryPB;
  static constexpr char kName[] = "FiltersGroupPB message";
  static constexpr char kOtherIs[] =
      "holds one entry (FiltersEntryPB), not a group; use --entry (check "
      "takes groups only)";
  static FiltersCommon::FiltersGroupPB fromJson(const std::string& text,
                                                const std::string& source) {
    return groupFromJson(text, source);
  }
  static FiltersCommon::FiltersGroupPB fromRules(const std::string& text,
                                                 const std::string& source) {
    return compileGroupText(text, source)->convertToFiltersGroupPB();
  }
};

template <>
struct MessageKind<FiltersCommon::FiltersEntryPB> {
  using Other = FiltersCommon::FiltersGroupPB;
  static constexpr char kName[] = "FiltersEntryPB message";
  static constexpr char kOtherIs[] =
      "holds a group (FiltersGroupPB), not one entry; leave out --entry";
  static FiltersCommon::FiltersEntryPB fromJson(const std::string& text,
                                                const std::string& source) {
    return entryFromJson(text, source);
  }
  static FiltersCommon::FiltersEntryPB fromRules(const std::string& text,
                                                 const std::string& source) {
    FiltersCommon::FiltersEntryPB message;
    compileEntryText(text, source)->convertToFiltersEntryPB(&message);
    return message;
  }
};

// Whether `bytes` are exactly a complete `Message` as it writes itself. The
// two messages share their first field numbers, so one often parses as the
// other, but never both cleanly: a group's fields 3 and 4 are numbers where
// an entry's are bytes, and an entry lacks the group's required stage_ and
// type_.
template <class Message>
bool isCleanly(const std::string& bytes) {
  Message message;
  return message.ParseFromString(bytes) && message.SerializeAsString() == bytes;
}

// Throws when `bytes`, which do not read cleanly as `Message`, are the other
// message: the user gave a group where an entry was expected, or the reverse.
template <class Message>
void refuseTheOtherKind(const std::string& bytes, const std::string& source) {
  if (isCleanly<typename MessageKind<Message>::Other>(bytes)) {
    throw ToolError(source + ": this " + MessageKind<Message>::kOtherIs);
  }
}

// Parses `bytes` into `message` the way the library's loaders do (a partial
// parse), and notes what the loaders would silently pass over.
template <class Message>
void parseBytes(const std::string& bytes, const std::string& source,
                Message* message, Notes* notes) {
  const char* what = MessageKind<Message>::kName;
  if (bytes.empty()) throw ToolError(source + ": empty input");
  std::string body = bytes;
  if (!message->ParsePartialFromString(body)) {
    // A FiltersSerialized buffer holds the message and one zero byte.
    if (body.back() != '\0' ||
        !message->ParsePartialFromString(body.substr(0, body.size() - 1))) {
      refuseTheOtherKind<Message>(body, source);
      throw ToolError(source + ": not a " + what +
                      " (the bytes do not parse; use --hex for hex text)");
    }
    body.pop_back();
  }
  std::string written;
  message->SerializePartialToString(&written);
  if (!message->IsInitialized() || written != body) {
    refuseTheOtherKind<Message>(body, source);
  }
  if (!message->IsInitialized()) {
    notes->push_back(source + ": the " + what + " lacks required fields (" +
                     message->InitializationErrorString() +
                     "); the library reads them as 0");
  }
  if (written != body) {
    notes->push_back(source +
                     ": the bytes hold unknown, repeated or out-of-order "
                     "fields; the message is shown as it is read, and "
                     "writing it back gives other bytes");
  }
}

// The message the JSON `text` describes. JSON of the other message is
// refused with a word on --entry rather than with its first unknown field.
template <class Message>
Message parseJson(const std::string& text, const std::string& source,
                  Notes* notes) {
  using Kind = MessageKind<Message>;
  Message message;
  try {
    message = Kind::fromJson(text, source);
  } catch (const ToolError&) {
    bool other = true;
    try {
      MessageKind<typename Kind::Other>::fromJson(text, source);
    } catch (const ToolError&) {
      other = false;
    }
    if (other) throw ToolError(source + ": this JSON " + Kind::kOtherIs);
    throw;
  }
  if (!message.IsInitialized()) {
    notes->push_back(
        source + ": the " + Kind::kName + " lacks required fields (" +
        message.InitializationErrorString() + "); the library reads them as 0");
  }
  return message;
}

template <class Message>
Message readMessage(const std::string& data, const std::string& source,
                    const InputForm& form, Notes* notes) {
  // JSON starts with a character no hex digit or message starts with.
  if (form.json && looksLikeJson(data)) {
    return parseJson<Message>(data, source, notes);
  }
  if (!form.hex && looksLikeHex(data)) {
    throw ToolError(source +
                    ": this looks like hex text; add --hex to read it");
  }
  if (form.json && !form.hex && looksLikeRules(data)) {
    return MessageKind<Message>::fromRules(data, source);
  }
  Message message;
  parseBytes(form.hex ? decodeHex(data, source) : data, source, &message,
             notes);
  return message;
}

}  // namespace

bool looksLikeHex(const std::string& data) {
  bool digits = false;
  for (char c : data) {
    if (hexValue(c) >= 0) {
      digits = true;
    } else if (!std::isspace(static_cast<unsigned char>(c))) {
      return false;
    }
  }
  return digits;
}

std::string readInput(const std::string& path) {
  const std::string name = path == "-" ? "standard input" : path;
  std::ifstream file;
  if (path != "-") {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
      throw ToolError("cannot read " + name + ": " + std::strerror(EISDIR));
    }
    file.open(path, std::ios::binary);
    if (!file) {
      throw ToolError("cannot read " + name + ": " + std::strerror(errno));
    }
  }
  std::istream& in = path == "-" ? std::cin : file;
  std::string data;
  try {
    data.assign(std::istreambuf_iterator<char>(in), {});
  } catch (const std::ios_base::failure&) {
    // The stream buffer throws on a read error even with exceptions off.
    in.setstate(std::ios::badbit);
  }
  if (in.bad()) {
    throw ToolError("cannot read " + name + ": " + std::strerror(errno));
  }
  return data;
}

void writeOutput(const std::string& path, const std::string& data) {
  if (path == "-") {
    std::cout.write(data.data(), static_cast<std::streamsize>(data.size()));
    std::cout.flush();
    if (!std::cout) throw ToolError("cannot write to standard output");
    return;
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (out) out.write(data.data(), static_cast<std::streamsize>(data.size()));
  if (out) out.close();
  if (!out) {
    throw ToolError("cannot write " + path + ": " + std::strerror(errno));
  }
}

std::string decodeHex(const std::string& text, const std::string& source) {
  std::string bytes;
  int high = -1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (std::isspace(static_cast<unsigned char>(c))) continue;
    // "0x" may lead a run of digits, as in 0x0864 or 0x08 0x64.
    const bool runStarts =
        i == 0 || std::isspace(static_cast<unsigned char>(text[i - 1]));
    if (runStarts && c == '0' && i + 1 < text.size() &&
        (text[i + 1] == 'x' || text[i + 1] == 'X')) {
      ++i;
      continue;
    }
    const int value = hexValue(c);
    if (value < 0) {
      throw ToolError(source + ": bad hex digit '" + printable(c) +
                      "' at offset " + std::to_string(i));
    }
    if (high < 0) {
      high = value;
    } else {
      bytes.push_back(static_cast<char>(high << 4 | value));
      high = -1;
    }
  }
  if (high >= 0) {
    throw ToolError(source +
                    ": odd number of hex digits (the last byte has "
                    "only one)");
  }
  return bytes;
}

std::string encodeHex(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0xF];
    text += (i % 16 == 15 || i + 1 == bytes.size()) ? '\n' : ' ';
  }
  return text;
}

// The byte order mark some editors put before UTF-8 text.
constexpr char kByteOrderMark[] = "\xef\xbb\xbf";

std::string withoutByteOrderMark(const std::string& text) {
  const std::size_t length = sizeof kByteOrderMark - 1;
  return text.compare(0, length, kByteOrderMark) == 0 ? text.substr(length)
                                                      : text;
}

bool looksLikeJson(const std::string& data) {
  const std::size_t length = sizeof kByteOrderMark - 1;
  const std::size_t start =
      data.compare(0, length, kByteOrderMark) == 0 ? length : 0;
  for (std::size_t i = start; i < data.size(); ++i) {
    const char c = data[i];
    if (!std::isspace(static_cast<unsigned char>(c))) {
      return c == '{' || c == '[';
    }
  }
  return false;
}

FiltersCommon::FiltersGroupPB readGroupMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes) {
  return readMessage<FiltersCommon::FiltersGroupPB>(data, source, form, notes);
}

FiltersCommon::FiltersEntryPB readEntryMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes) {
  return readMessage<FiltersCommon::FiltersEntryPB>(data, source, form, notes);
}

}  // namespace filters_tool
