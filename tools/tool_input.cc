#include "tool_input.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "json_form.h"

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

// Whether `data` holds hex digits and blanks only. A group or entry message
// never does: it starts with the tag of its identifier, byte 0x08.
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

// Parses `bytes` into `message` the way the library's loaders do (a partial
// parse), and notes what the loaders would silently pass over.
template <class Message>
void parseBytes(const std::string& bytes, const std::string& source,
                const char* what, Message* message, Notes* notes) {
  if (bytes.empty()) throw ToolError(source + ": empty input");
  std::string body = bytes;
  if (!message->ParsePartialFromString(body)) {
    // A FiltersSerialized buffer holds the message and one zero byte.
    if (body.back() != '\0' ||
        !message->ParsePartialFromString(body.substr(0, body.size() - 1))) {
      throw ToolError(source + ": not a " + what +
                      " (the bytes do not parse; use --hex for hex text)");
    }
    body.pop_back();
  }
  if (!message->IsInitialized()) {
    notes->push_back(source + ": the " + what + " lacks required fields (" +
                     message->InitializationErrorString() +
                     "); the library reads them as 0");
  }
  std::string written;
  message->SerializePartialToString(&written);
  if (written != body) {
    notes->push_back(source +
                     ": the bytes hold unknown, repeated or out-of-order "
                     "fields; the message is shown as it is read, and "
                     "writing it back gives other bytes");
  }
}

template <class Message, class FromJson>
Message readMessage(const std::string& data, const std::string& source,
                    const InputForm& form, const char* what, FromJson fromJson,
                    Notes* notes) {
  if (form.json && !form.hex && looksLikeJson(data)) {
    return fromJson(data, source);
  }
  if (!form.hex && looksLikeHex(data)) {
    throw ToolError(source +
                    ": this looks like hex text; add --hex to read it");
  }
  Message message;
  parseBytes(form.hex ? decodeHex(data, source) : data, source, what, &message,
             notes);
  return message;
}

}  // namespace

std::string readInput(const std::string& path) {
  if (path == "-") {
    return std::string(std::istreambuf_iterator<char>(std::cin), {});
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) throw ToolError("cannot read " + path + ": " + std::strerror(errno));
  std::string data(std::istreambuf_iterator<char>(in), {});
  if (in.bad()) {
    throw ToolError("cannot read " + path + ": " + std::strerror(errno));
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

bool looksLikeJson(const std::string& data) {
  for (char c : data) {
    if (!std::isspace(static_cast<unsigned char>(c))) return c == '{';
  }
  return false;
}

FiltersCommon::FiltersGroupPB readGroupMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes) {
  return readMessage<FiltersCommon::FiltersGroupPB>(
      data, source, form, "FiltersGroupPB message", groupFromJson, notes);
}

FiltersCommon::FiltersEntryPB readEntryMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes) {
  return readMessage<FiltersCommon::FiltersEntryPB>(
      data, source, form, "FiltersEntryPB message", entryFromJson, notes);
}

}  // namespace filters_tool
