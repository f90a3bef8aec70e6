// Policer, its mode and its colour actions, and their wire form.
#include "policer/policer.h"

#include <climits>
#include <optional>
#include <tuple>

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/wire_format_lite.h>

#include "policer/policer.pb.h"

namespace policer {

namespace {

// Whether `value`, read from the wire, is one of the enumerators 0..last.
bool InRange(int32_t value, int32_t last) {
  return value >= 0 && value <= last;
}

auto ModeKey(const Mode& m) {
  return std::make_tuple(m.GetType(), m.GetCir(), m.GetCbs(), m.GetEbs(),
                         m.GetPir(), m.GetPbs(), m.GetEir());
}

auto ActionKey(const Action& a) {
  return std::make_tuple(a.GetColor(), a.GetType(), a.GetPcp(), a.GetDscp());
}

// The message in `bytes`. When they do not parse as a whole, the result holds
// every top-level field that is complete and parses on its own, up to the
// first one that cannot even be delimited. A plain failed parse is not used
// as it is, because it can leave a half-read field marked present with a
// made-up value.
PolicerPB ParseWhatIsReadable(const std::string& bytes) {
  PolicerPB pb;
  if (pb.ParseFromString(bytes)) return pb;
  pb.Clear();
  if (bytes.size() > static_cast<size_t>(INT_MAX)) return pb;  // Never parses.
  google::protobuf::io::ArrayInputStream raw(bytes.data(),
                                             static_cast<int>(bytes.size()));
  google::protobuf::io::CodedInputStream input(&raw);
  for (;;) {
    const int start = input.CurrentPosition();
    const uint32_t tag = input.ReadTag();
    if (tag == 0 ||
        !google::protobuf::internal::WireFormatLite::SkipField(&input, tag)) {
      break;
    }
    PolicerPB field;
    if (field.ParseFromArray(bytes.data() + start,
                             input.CurrentPosition() - start)) {
      pb.MergeFrom(field);
    }
  }
  return pb;
}

// The mode `m` describes. Modes are rebuilt through their factories so that
// parameters a mode does not use stay 0; without a known type the mode is
// the default one.
Mode ModeFromWire(const PolicerModePB& m) {
  if (!m.has_type() || !InRange(m.type(), MODE_NONE)) return Mode();
  switch (static_cast<ModeType>(m.type())) {
    case MODE_SRTCM:
      return Mode::SrTcm(m.cir(), m.cbs(), m.ebs());
    case MODE_TRTCM:
      return Mode::TrTcm(m.cir(), m.cbs(), m.pir(), m.pbs());
    case MODE_TRTCM_DS:
      return Mode::TrTcmDs(m.cir(), m.cbs(), m.eir(), m.ebs());
    case MODE_FLOW:
      return Mode::Flow(m.cir(), m.cbs());
    case MODE_NONE:
      break;
  }
  return Mode();
}

// The action `a` describes, or nothing when its colour or kind is missing or
// unknown, or its value does not fit in a byte.
std::optional<Action> ActionFromWire(const PolicerActionPB& a) {
  constexpr uint32_t kByteMax = 0xFF;
  if (!a.has_color() || !InRange(a.color(), COLOR_GREEN) || !a.has_type() ||
      a.pcp() > kByteMax || a.dscp() > kByteMax) {
    return std::nullopt;
  }
  Color color = static_cast<Color>(a.color());
  switch (a.type()) {
    case ACTION_DROP:
      return Action::Drop(color);
    case ACTION_SET_PCP:
      return Action::SetPcp(color, static_cast<uint8_t>(a.pcp()));
    case ACTION_SET_DSCP:
      return Action::SetDscp(color, static_cast<uint8_t>(a.dscp()));
    default:
      return std::nullopt;
  }
}

}  // namespace

// ---- Mode ----

Mode::Mode() : Mode(MODE_NONE, 0, 0, 0, 0, 0, 0) {}

Mode::Mode(ModeType type, uint32_t cir, uint32_t cbs, uint32_t ebs,
           uint32_t pir, uint32_t pbs, uint32_t eir)
    : type_(type),
      cir_(cir),
      cbs_(cbs),
      ebs_(ebs),
      pir_(pir),
      pbs_(pbs),
      eir_(eir) {}

Mode Mode::SrTcm(uint32_t cir, uint32_t cbs, uint32_t ebs) {
  return Mode(MODE_SRTCM, cir, cbs, ebs, 0, 0, 0);
}

Mode Mode::TrTcm(uint32_t cir, uint32_t cbs, uint32_t pir, uint32_t pbs) {
  return Mode(MODE_TRTCM, cir, cbs, 0, pir, pbs, 0);
}

Mode Mode::TrTcmDs(uint32_t cir, uint32_t cbs, uint32_t eir, uint32_t ebs) {
  return Mode(MODE_TRTCM_DS, cir, cbs, ebs, 0, 0, eir);
}

Mode Mode::Flow(uint32_t cir, uint32_t cbs) {
  return Mode(MODE_FLOW, cir, cbs, 0, 0, 0, 0);
}

bool Mode::operator==(const Mode& other) const {
  return ModeKey(*this) == ModeKey(other);
}

// ---- Action ----

Action::Action(Color color, ActionType type, uint8_t pcp, uint8_t dscp)
    : color_(color), type_(type), pcp_(pcp), dscp_(dscp) {}

Action Action::Drop(Color color) { return Action(color, ACTION_DROP, 0, 0); }

Action Action::SetPcp(Color color, uint8_t pcp) {
  return Action(color, ACTION_SET_PCP, pcp, 0);
}

Action Action::SetDscp(Color color, uint8_t dscp) {
  return Action(color, ACTION_SET_DSCP, 0, dscp);
}

bool Action::operator<(const Action& other) const {
  return ActionKey(*this) < ActionKey(other);
}

bool Action::operator==(const Action& other) const {
  return ActionKey(*this) == ActionKey(other);
}

// ---- Policer ----

Policer::Policer() : id_(kInvalidId), stage_(STAGE_NONE) {}

Policer::Policer(uint32_t id, Stage stage, const Mode& mode,
                 const std::set<Action>& actions)
    : id_(id), stage_(stage), mode_(mode), actions_(actions) {}

Policer::Policer(const std::string& serialized) : Policer() {
  const PolicerPB pb = ParseWhatIsReadable(serialized);

  if (pb.has_id()) id_ = pb.id();
  if (pb.has_stage() && InRange(pb.stage(), STAGE_NONE)) {
    stage_ = static_cast<Stage>(pb.stage());
  }
  if (pb.has_mode()) mode_ = ModeFromWire(pb.mode());
  for (const PolicerActionPB& a : pb.actions()) {
    // An action that cannot be represented is dropped rather than turned
    // into something it was not.
    std::optional<Action> action = ActionFromWire(a);
    if (action) AddAction(*action);
  }
}

std::string Policer::Serialize() const {
  PolicerPB pb;
  pb.set_id(id_);
  pb.set_stage(stage_);
  PolicerModePB* m = pb.mutable_mode();
  m->set_type(mode_.GetType());
  m->set_cir(mode_.GetCir());
  m->set_cbs(mode_.GetCbs());
  m->set_ebs(mode_.GetEbs());
  m->set_pir(mode_.GetPir());
  m->set_pbs(mode_.GetPbs());
  m->set_eir(mode_.GetEir());
  for (const Action& action : actions_) {
    PolicerActionPB* a = pb.add_actions();
    a->set_color(action.GetColor());
    a->set_type(action.GetType());
    a->set_pcp(action.GetPcp());
    a->set_dscp(action.GetDscp());
  }
  return pb.SerializeAsString();
}

bool Policer::operator==(const Policer& other) const {
  return id_ == other.id_ && stage_ == other.stage_ && mode_ == other.mode_ &&
         actions_ == other.actions_;
}

}  // namespace policer
