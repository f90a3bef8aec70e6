// Input and output of filters-tool: whole files or standard input, the hex
// text form of bytes, and the wire messages read from either, in bytes, hex
// or JSON.
//
// Every failure is a ToolError whose text is one line for the user, already
// naming the file; the command line prints it after "filters-tool: ".
#ifndef FILTERSCOMMON_TOOLS_TOOL_INPUT_H_
#define FILTERSCOMMON_TOOLS_TOOL_INPUT_H_

#include <stdexcept>
#include <string>
#include <vector>

#include "filter_entries.pb.h"
#include "filter_groups.pb.h"

namespace filters_tool {

// A failure to report to the user in one line, with a non-zero exit.
class ToolError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What the tool has to say besides its output: printed on standard error,
// one line each, after "filters-tool: ".
using Notes = std::vector<std::string>;

// The whole content of `path`, or of standard input for "-".
std::string readInput(const std::string& path);
// Writes `data` to `path`, or to standard output for "-".
void writeOutput(const std::string& path, const std::string& data);

// The bytes written as hex digits in `text`, two per byte; whitespace
// anywhere is ignored, and so is "0x" before a run of digits. `source` names
// the input in errors.
std::string decodeHex(const std::string& text, const std::string& source);
// `bytes` as lower-case hex, sixteen space-separated bytes per line.
std::string encodeHex(const std::string& bytes);

// Whether `data` holds hex digits and blanks only. A group or entry message
// never does: it starts with the tag of its identifier, byte 0x08.
bool looksLikeHex(const std::string& data);

// Whether `data` is JSON text rather than message bytes: its first
// non-blank character (after a byte order mark) is '{', or '[' for JSON that
// is no object. No FiltersGroupPB or FiltersEntryPB starts with either
// byte, since neither is a field tag of theirs, nor is either a hex digit.
bool looksLikeJson(const std::string& data);
// `text` without the UTF-8 byte order mark it may start with.
std::string withoutByteOrderMark(const std::string& text);

// How the input of a command is written.
struct InputForm {
  // Hex text rather than raw bytes.
  bool hex = false;
  // JSON is accepted too, recognised by looksLikeJson.
  bool json = true;
};

// The message in `data` (from `source`), in the given form; JSON, and rule
// text (see tool_rules.h) unless the form is hex, are read whatever the form
// says; rule text is compiled, and its message is the compiled object's. Bytes
// that do not parse, empty input, unreadable JSON and the other message (an
// entry where a group is read, or the reverse) are errors; a message that
// parses but lacks required fields, or whose bytes are not those the message
// would be written as, gives a note. Bytes followed by one zero byte, as a
// FiltersSerialized buffer holds them, are read without it.
FiltersCommon::FiltersGroupPB readGroupMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes);
FiltersCommon::FiltersEntryPB readEntryMessage(const std::string& data,
                                               const std::string& source,
                                               const InputForm& form,
                                               Notes* notes);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_TOOL_INPUT_H_
