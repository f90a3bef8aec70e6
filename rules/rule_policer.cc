#include "rule_policer.h"

#include "rule_table.h"
#include "rule_values.h"

namespace FiltersCommon {
namespace rules {

const char* const kModeParamNames[kModeParams] = {"cir", "cbs", "ebs",
                                                  "pir", "pbs", "eir"};

const ModeParam* modeParams(int32_t type) {
  static const ModeParam kSrTcm[] = {kCir, kCbs, kEbs, kModeParams};
  static const ModeParam kTrTcm[] = {kCir, kCbs, kPir, kPbs, kModeParams};
  static const ModeParam kTrTcmDs[] = {kCir, kCbs, kEir, kEbs, kModeParams};
  static const ModeParam kFlow[] = {kCir, kCbs, kModeParams};
  static const ModeParam kNone[] = {kModeParams};
  switch (type) {
    case policer::MODE_SRTCM:
      return kSrTcm;
    case policer::MODE_TRTCM:
      return kTrTcm;
    case policer::MODE_TRTCM_DS:
      return kTrTcmDs;
    case policer::MODE_FLOW:
      return kFlow;
    case policer::MODE_NONE:
      return kNone;
    default:
      return nullptr;
  }
}

std::optional<policer::Mode> makeMode(int32_t type,
                                      const uint32_t (&p)[kModeParams]) {
  switch (type) {
    case policer::MODE_SRTCM:
      return policer::Mode::SrTcm(p[kCir], p[kCbs], p[kEbs]);
    case policer::MODE_TRTCM:
      return policer::Mode::TrTcm(p[kCir], p[kCbs], p[kPir], p[kPbs]);
    case policer::MODE_TRTCM_DS:
      return policer::Mode::TrTcmDs(p[kCir], p[kCbs], p[kEir], p[kEbs]);
    case policer::MODE_FLOW:
      return policer::Mode::Flow(p[kCir], p[kCbs]);
    case policer::MODE_NONE:
      return policer::Mode();
    default:
      return std::nullopt;
  }
}

namespace {

// The colour action the factories build for these fields, if any.
std::optional<policer::Action> makeAction(const policer::Action& a) {
  switch (a.GetType()) {
    case policer::ACTION_DROP:
      return policer::Action::Drop(a.GetColor());
    case policer::ACTION_SET_PCP:
      return policer::Action::SetPcp(a.GetColor(), a.GetPcp());
    case policer::ACTION_SET_DSCP:
      return policer::Action::SetDscp(a.GetColor(), a.GetDscp());
    default:
      return std::nullopt;
  }
}

uint32_t param(const policer::Mode& mode, ModeParam which) {
  switch (which) {
    case kCir:
      return mode.GetCir();
    case kCbs:
      return mode.GetCbs();
    case kEbs:
      return mode.GetEbs();
    case kPir:
      return mode.GetPir();
    case kPbs:
      return mode.GetPbs();
    default:
      return mode.GetEir();
  }
}

// Whether the constructors rebuild `p` from what appendPolicer writes.
bool writableByFields(const policer::Policer& p) {
  const policer::Mode& mode = p.GetMode();
  const uint32_t params[kModeParams] = {mode.GetCir(), mode.GetCbs(),
                                        mode.GetEbs(), mode.GetPir(),
                                        mode.GetPbs(), mode.GetEir()};
  const auto rebuilt = makeMode(mode.GetType(), params);
  if (!rebuilt || *rebuilt != mode) return false;
  for (const policer::Action& action : p.GetActions()) {
    const auto same = makeAction(action);
    if (!same || *same != action) return false;
  }
  return true;
}

void appendNamed(std::string* out, const Names& names, int32_t value) {
  if (const char* name = names.find(value)) {
    out->append(name);
  } else {
    appendSigned(out, value);
  }
}

}  // namespace

void appendPolicer(std::string* out, const policer::Policer& p) {
  if (!writableByFields(p)) {
    out->append("{ bytes ");
    appendHexBytes(out, p.Serialize());
    out->append(" }");
    return;
  }
  out->append("{ ");
  if (p.GetId() != policer::Policer::kInvalidId) {
    out->append("id ");
    appendUnsigned(out, p.GetId());
    out->push_back(' ');
  }
  out->append("stage ");
  appendNamed(out, kPolicerStageNames, p.GetStage());
  const policer::Mode& mode = p.GetMode();
  out->append(" mode ");
  appendNamed(out, kPolicerModeNames, mode.GetType());
  for (const ModeParam* used = modeParams(mode.GetType()); *used != kModeParams;
       ++used) {
    out->push_back(' ');
    out->append(kModeParamNames[*used]);
    out->push_back(' ');
    appendUnsigned(out, param(mode, *used));
  }
  for (const policer::Action& action : p.GetActions()) {
    out->push_back(' ');
    if (const char* color = kColorNames.find(action.GetColor())) {
      out->append(color);
    } else {
      out->append("color ");
      appendSigned(out, action.GetColor());
    }
    switch (action.GetType()) {
      case policer::ACTION_DROP:
        out->append(" drop");
        break;
      case policer::ACTION_SET_PCP:
        out->append(" set-pcp ");
        appendUnsigned(out, action.GetPcp());
        break;
      default:
        out->append(" set-dscp ");
        appendUnsigned(out, action.GetDscp());
        break;
    }
  }
  out->append(" }");
}

}  // namespace rules
}  // namespace FiltersCommon
