// The JSON reader of filters-tool (the from-json path) takes text from
// people. Any text it accepts, as a group or as an entry, must convert to
// bytes whose JSON form reads back to the same bytes and prints the same JSON
// again; text it refuses must be refused with a ToolError, the tool's one-line
// message. The only other exit the design allows is allocation failure,
// which libFuzzer reports on its own.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "json_form.h"
#include "tool_input.h"

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

template <class Message, class Read, class Print>
void roundTrip(const std::string& text, Read read, Print print) {
  filters_tool::Notes notes;
  Message message;
  try {
    message = read(text, &notes);
  } catch (const filters_tool::ToolError& refused) {
    check(refused.what()[0] != '\0');  // a refusal says why
    return;
  }
  // What from-json writes: the message as it is, required fields or not.
  std::string bytes;
  check(message.SerializePartialToString(&bytes));

  // What to-json prints for those bytes, read as filters-tool reads bytes.
  Message parsed;
  check(parsed.ParsePartialFromString(bytes));
  filters_tool::Notes printNotes;
  const std::string json = print(parsed, &printNotes);

  // The printed JSON reads back to the same bytes and prints the same.
  filters_tool::Notes againNotes;
  Message again;
  try {
    again = read(json, &againNotes);
  } catch (const filters_tool::ToolError&) {
    std::abort();  // the tool refuses JSON it printed itself
  }
  std::string againBytes;
  check(again.SerializePartialToString(&againBytes));
  check(againBytes == bytes);
  filters_tool::Notes lastNotes;
  check(print(again, &lastNotes) == json);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  // from-json refuses anything that does not look like JSON before reading.
  if (!filters_tool::looksLikeJson(text)) return 0;
  const filters_tool::InputForm form;
  roundTrip<FiltersCommon::FiltersGroupPB>(
      text,
      [&form](const std::string& in, filters_tool::Notes* notes) {
        return filters_tool::readGroupMessage(in, "fuzz", form, notes);
      },
      filters_tool::groupToJson);
  roundTrip<FiltersCommon::FiltersEntryPB>(
      text,
      [&form](const std::string& in, filters_tool::Notes* notes) {
        return filters_tool::readEntryMessage(in, "fuzz", form, notes);
      },
      filters_tool::entryToJson);
  return 0;
}
