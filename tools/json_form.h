// The JSON form of the filter wire messages: the protocol-buffers JSON
// mapping of FiltersGroupPB and FiltersEntryPB with the schema's own field
// names, except that the policers' bytes are shown as the policer's fields
// (id, stage, mode, actions) and rebuilt from them with the policer's own
// serialization.
//
// The conversion is lossless in both directions. JSON the tool printed gives
// back the same bytes, and those bytes print as the same JSON. Policer bytes
// that the policer would not write back exactly as they are (foreign or
// damaged bytes) are kept as base64 in policer_bytes_ or
// policer_parent_bytes_ instead, with a note saying so.
#ifndef FILTERSCOMMON_TOOLS_JSON_FORM_H_
#define FILTERSCOMMON_TOOLS_JSON_FORM_H_

#include <string>

#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "tool_input.h"

namespace filters_tool {

std::string groupToJson(const FiltersCommon::FiltersGroupPB& message,
                        Notes* notes);
std::string entryToJson(const FiltersCommon::FiltersEntryPB& message,
                        Notes* notes);

// The message the JSON text describes; ToolError for JSON that does not
// parse or does not fit the message (unknown fields, a policer the policer
// library cannot hold). `source` names the input in errors.
FiltersCommon::FiltersGroupPB groupFromJson(const std::string& text,
                                            const std::string& source);
FiltersCommon::FiltersEntryPB entryFromJson(const std::string& text,
                                            const std::string& source);

}  // namespace filters_tool

#endif  // FILTERSCOMMON_TOOLS_JSON_FORM_H_
