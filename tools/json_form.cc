// The JSON form goes through FiltersCommon.json messages (filters_json.proto),
// which mirror the wire messages field for field and differ only where the
// policers travel: the conversion copies every field across and turns policer
// bytes into the policer's fields and back. The JSON text itself is the
// protocol-buffers JSON mapping of those messages.

#include "json_form.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/util/json_util.h>
#include <google/protobuf/util/type_resolver.h>
#include <google/protobuf/util/type_resolver_util.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>

#include "filters_json.pb.h"
#include "policer/policer.h"

namespace filters_tool {

namespace {

using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroupPB;
namespace json = FiltersCommon::json;

constexpr char kTypeUrlPrefix[] = "type.googleapis.com";

// ---- Policers ----

// The fields of the policer the policer library reads from `bytes`.
json::PolicerJson policerFields(const std::string& bytes) {
  const policer::Policer policer(bytes);
  json::PolicerJson fields;
  fields.set_id(policer.GetId());
  fields.set_stage(policer.GetStage());
  const policer::Mode& mode = policer.GetMode();
  json::PolicerModeJson* m = fields.mutable_mode();
  m->set_type(mode.GetType());
  m->set_cir(mode.GetCir());
  m->set_cbs(mode.GetCbs());
  m->set_ebs(mode.GetEbs());
  m->set_pir(mode.GetPir());
  m->set_pbs(mode.GetPbs());
  m->set_eir(mode.GetEir());
  for (const policer::Action& action : policer.GetActions()) {
    json::PolicerActionJson* a = fields.add_actions();
    a->set_color(action.GetColor());
    a->set_type(action.GetType());
    a->set_pcp(action.GetPcp());
    a->set_dscp(action.GetDscp());
  }
  return fields;
}

// A value the JSON gives and the value the rebuilt object holds for it.
struct Kept {
  const char* name;
  uint64_t given;
  uint64_t held;
};

// Throws unless the rebuilt object kept every value: the policer's factories
// set the parameters a kind does not use to 0.
void requireKept(std::initializer_list<Kept> values, const std::string& where,
                 const std::string& what) {
  for (const Kept& value : values) {
    if (value.given != value.held) {
      throw ToolError(where + ": " + what + " does not use " + value.name +
                      " (given " + std::to_string(value.given) + ")");
    }
  }
}

constexpr char kModeNames[] = "0 SrTcm, 1 TrTcm, 2 TrTcmDs, 3 Flow, 4 None";

const char* modeName(int32_t type) {
  static const char* const kNames[] = {"SrTcm", "TrTcm", "TrTcmDs", "Flow",
                                       "None"};
  return kNames[type];
}

policer::Mode modeFromFields(const json::PolicerModeJson& m,
                             const std::string& where) {
  const int32_t type = m.has_type() ? m.type() : policer::MODE_NONE;
  policer::Mode mode;
  switch (type) {
    case policer::MODE_SRTCM:
      mode = policer::Mode::SrTcm(m.cir(), m.cbs(), m.ebs());
      break;
    case policer::MODE_TRTCM:
      mode = policer::Mode::TrTcm(m.cir(), m.cbs(), m.pir(), m.pbs());
      break;
    case policer::MODE_TRTCM_DS:
      mode = policer::Mode::TrTcmDs(m.cir(), m.cbs(), m.eir(), m.ebs());
      break;
    case policer::MODE_FLOW:
      mode = policer::Mode::Flow(m.cir(), m.cbs());
      break;
    case policer::MODE_NONE:
      break;
    default:
      throw ToolError(where + ": mode type " + std::to_string(type) +
                      " is unknown (" + kModeNames + ")");
  }
  requireKept(
      {{"cir", m.cir(), mode.GetCir()},
       {"cbs", m.cbs(), mode.GetCbs()},
       {"ebs", m.ebs(), mode.GetEbs()},
       {"pir", m.pir(), mode.GetPir()},
       {"pbs", m.pbs(), mode.GetPbs()},
       {"eir", m.eir(), mode.GetEir()}},
      where, "mode type " + std::to_string(type) + " (" + modeName(type) + ")");
  return mode;
}

policer::Action actionFromFields(const json::PolicerActionJson& a,
                                 const std::string& where) {
  if (!a.has_color() || a.color() < policer::COLOR_RED ||
      a.color() > policer::COLOR_GREEN) {
    throw ToolError(where + ": color must be 0 (red), 1 (yellow) or 2 (green)");
  }
  const auto color = static_cast<policer::Color>(a.color());
  const auto byte = [](uint32_t value) { return static_cast<uint8_t>(value); };
  std::optional<policer::Action> action;
  switch (a.has_type() ? a.type() : -1) {
    case policer::ACTION_DROP:
      action = policer::Action::Drop(color);
      break;
    case policer::ACTION_SET_PCP:
      action = policer::Action::SetPcp(color, byte(a.pcp()));
      break;
    case policer::ACTION_SET_DSCP:
      action = policer::Action::SetDscp(color, byte(a.dscp()));
      break;
    default:
      throw ToolError(where +
                      ": type must be 0 (drop), 1 (set PCP) or 2 (set DSCP)");
  }
  requireKept({{"pcp", a.pcp(), action->GetPcp()},
               {"dscp", a.dscp(), action->GetDscp()}},
              where, "action type " + std::to_string(a.type()));
  return *action;
}

// The policer's own bytes for the policer the fields describe. Absent fields
// take the values of a default policer.
std::string policerBytes(const json::PolicerJson& fields,
                         const std::string& where) {
  const int32_t stage =
      fields.has_stage() ? fields.stage() : policer::STAGE_NONE;
  if (stage < policer::STAGE_INGRESS || stage > policer::STAGE_NONE) {
    throw ToolError(where +
                    ".stage: must be 0 (ingress), 1 (egress) or 2 (none)");
  }
  const policer::Mode mode =
      fields.has_mode() ? modeFromFields(fields.mode(), where + ".mode")
                        : policer::Mode();
  std::set<policer::Action> actions;
  for (int i = 0; i < fields.actions_size(); ++i) {
    const std::string at = where + ".actions[" + std::to_string(i) + "]";
    if (!actions.insert(actionFromFields(fields.actions(i), at)).second) {
      throw ToolError(at + ": repeats an earlier action");
    }
  }
  const uint32_t id =
      fields.has_id() ? fields.id() : policer::Policer().GetId();
  return policer::Policer(id, static_cast<policer::Stage>(stage), mode, actions)
      .Serialize();
}

// The policer's fields when they turn back into exactly `bytes`; nothing
// otherwise (bytes the policer would write differently, or values this form
// refuses), since the fields would then lose something.
std::optional<json::PolicerJson> losslessFields(const std::string& bytes) {
  json::PolicerJson fields = policerFields(bytes);
  try {
    if (policerBytes(fields, "policer") == bytes) return fields;
  } catch (const ToolError&) {
    // A value this form refuses: the bytes are kept as they are.
  }
  return std::nullopt;
}

// ---- Messages ----

std::string indexed(const std::string& where, int i) {
  return where + "[" + std::to_string(i) + "]";
}

void noteRawPolicer(const std::string& where, const char* field, Notes* notes) {
  notes->push_back(where +
                   ": the policer bytes are not what the policer "
                   "writes for its own fields; kept as base64 in " +
                   field);
}

json::FiltersEntryJson entryToForm(const FiltersEntryPB& in,
                                   const std::string& where, Notes* notes) {
  json::FiltersEntryJson out;
  if (in.has_id_()) out.set_id_(in.id_());
  if (in.has_priority_()) out.set_priority_(in.priority_());
  if (in.has_policer_()) {
    if (auto fields = losslessFields(in.policer_())) {
      *out.mutable_policer_() = *fields;
    } else {
      out.set_policer_bytes_(in.policer_());
      noteRawPolicer(where, "policer_bytes_", notes);
    }
  }
  *out.mutable_matches_() = in.matches_();
  *out.mutable_actions_() = in.actions_();
  *out.mutable_counters_() = in.counters_();
  if (in.has_policer_parent_()) {
    if (auto fields = losslessFields(in.policer_parent_())) {
      *out.mutable_policer_parent_() = *fields;
    } else {
      out.set_policer_parent_bytes_(in.policer_parent_());
      noteRawPolicer(where, "policer_parent_bytes_", notes);
    }
  }
  return out;
}

FiltersEntryPB entryFromForm(const json::FiltersEntryJson& in,
                             const std::string& where) {
  FiltersEntryPB out;
  if (in.has_id_()) out.set_id_(in.id_());
  if (in.has_priority_()) out.set_priority_(in.priority_());
  if (in.has_policer_()) {
    out.set_policer_(policerBytes(in.policer_(), where + "policer_"));
  } else if (in.has_policer_bytes_()) {
    out.set_policer_(in.policer_bytes_());
  }
  *out.mutable_matches_() = in.matches_();
  *out.mutable_actions_() = in.actions_();
  *out.mutable_counters_() = in.counters_();
  if (in.has_policer_parent_()) {
    out.set_policer_parent_(
        policerBytes(in.policer_parent_(), where + "policer_parent_"));
  } else if (in.has_policer_parent_bytes_()) {
    out.set_policer_parent_(in.policer_parent_bytes_());
  }
  return out;
}

// JSON is converted to and from a message's bytes rather than the message
// itself, which the runtime would refuse (or abort on) when a match, action
// or counter lacks a required field: such a message converts both ways like
// any other, and the readers note what it lacks.
google::protobuf::util::TypeResolver* typeResolver() {
  static const std::unique_ptr<google::protobuf::util::TypeResolver> resolver(
      google::protobuf::util::NewTypeResolverForDescriptorPool(
          kTypeUrlPrefix, google::protobuf::DescriptorPool::generated_pool()));
  return resolver.get();
}

std::string typeUrl(const google::protobuf::Message& form) {
  return std::string(kTypeUrlPrefix) + "/" + form.GetDescriptor()->full_name();
}

std::string print(const google::protobuf::Message& form) {
  google::protobuf::util::JsonPrintOptions options;
  options.add_whitespace = true;
  options.preserve_proto_field_names = true;
  std::string text;
  const auto status = google::protobuf::util::BinaryToJsonString(
      typeResolver(), typeUrl(form), form.SerializePartialAsString(), &text,
      options);
  if (!status.ok()) throw ToolError("cannot write JSON: " + status.ToString());
  return text;
}

void parse(const std::string& text, const std::string& source,
           google::protobuf::Message* form) {
  // Unknown field names are errors: a misspelt field must not vanish.
  std::string bytes;
  const auto status = google::protobuf::util::JsonToBinaryString(
      typeResolver(), typeUrl(*form), withoutByteOrderMark(text), &bytes,
      google::protobuf::util::JsonParseOptions());
  if (status.ok() && form->ParsePartialFromString(bytes)) return;
  // The parser's message may go on with an excerpt and a caret on further
  // lines; the first line says what is wrong.
  std::string why(status.ok() ? "it describes no valid message"
                              : status.message());
  why = why.substr(0, why.find('\n'));
  // Errors of the whole text come with an empty field path.
  if (why.rfind(": ", 0) == 0) why.erase(0, 2);
  throw ToolError(source + ": unreadable JSON: " + why);
}

}  // namespace

std::string groupToJson(const FiltersGroupPB& message, Notes* notes) {
  json::FiltersGroupJson form;
  if (message.has_id_()) form.set_id_(message.id_());
  if (message.has_priority_()) form.set_priority_(message.priority_());
  if (message.has_stage_()) form.set_stage_(message.stage_());
  if (message.has_type_()) form.set_type_(message.type_());
  for (int i = 0; i < message.entries__size(); ++i) {
    *form.add_entries_() =
        entryToForm(message.entries_(i), indexed("entries_", i), notes);
  }
  return print(form);
}

std::string entryToJson(const FiltersEntryPB& message, Notes* notes) {
  return print(entryToForm(message, "entry", notes));
}

FiltersGroupPB groupFromJson(const std::string& text,
                             const std::string& source) {
  json::FiltersGroupJson form;
  parse(text, source, &form);
  FiltersGroupPB message;
  if (form.has_id_()) message.set_id_(form.id_());
  if (form.has_priority_()) message.set_priority_(form.priority_());
  if (form.has_stage_()) message.set_stage_(form.stage_());
  if (form.has_type_()) message.set_type_(form.type_());
  for (int i = 0; i < form.entries__size(); ++i) {
    *message.add_entries_() = entryFromForm(
        form.entries_(i), source + ": " + indexed("entries_", i) + ".");
  }
  return message;
}

FiltersEntryPB entryFromJson(const std::string& text,
                             const std::string& source) {
  json::FiltersEntryJson form;
  parse(text, source, &form);
  return entryFromForm(form, source + ": ");
}

}  // namespace filters_tool
