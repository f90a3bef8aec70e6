// A traffic policer: a meter (its mode and rates) at one stage of the
// pipeline, plus what happens to packets of each colour it marks.
//
// Mode, Action and Policer are plain values: copy them freely. A single
// object is not synchronised; concurrent reads are safe, a write needs
// exclusive access.
#ifndef POLICER_POLICER_H_
#define POLICER_POLICER_H_

#include <cstdint>
#include <set>
#include <string>

#define POLICER_EXPORT __attribute__((visibility("default")))

namespace policer {

// The enumerations are plain and held in 32 signed bits, so any number a
// caller or a peer stores in one is a valid value of it.

// Where in the pipeline the policer meters.
enum Stage : int32_t { STAGE_INGRESS = 0, STAGE_EGRESS = 1, STAGE_NONE = 2 };

// The metering algorithm.
enum ModeType : int32_t {
  MODE_SRTCM = 0,
  MODE_TRTCM = 1,
  MODE_TRTCM_DS = 2,
  MODE_FLOW = 3,
  MODE_NONE = 4
};

// The colour a meter gives a packet.
enum Color : int32_t { COLOR_RED = 0, COLOR_YELLOW = 1, COLOR_GREEN = 2 };

// What an Action does to a packet of its colour.
enum ActionType : int32_t {
  ACTION_DROP = 0,
  ACTION_SET_PCP = 1,
  ACTION_SET_DSCP = 2
};

// A metering mode and its six rate and burst parameters. Parameters a mode
// does not use are 0.
class POLICER_EXPORT Mode {
 public:
  // MODE_NONE, every parameter 0.
  Mode();

  // Single-rate three-colour marker.
  static Mode SrTcm(uint32_t cir, uint32_t cbs, uint32_t ebs);
  // Two-rate three-colour marker.
  static Mode TrTcm(uint32_t cir, uint32_t cbs, uint32_t pir, uint32_t pbs);
  // Two-rate three-colour marker, differentiated-services flavour.
  static Mode TrTcmDs(uint32_t cir, uint32_t cbs, uint32_t eir, uint32_t ebs);
  // Single-rate flow meter.
  static Mode Flow(uint32_t cir, uint32_t cbs);

  ModeType GetType() const { return type_; }
  uint32_t GetCir() const { return cir_; }
  uint32_t GetCbs() const { return cbs_; }
  uint32_t GetEbs() const { return ebs_; }
  uint32_t GetPir() const { return pir_; }
  uint32_t GetPbs() const { return pbs_; }
  uint32_t GetEir() const { return eir_; }

  bool operator==(const Mode& other) const;
  bool operator!=(const Mode& other) const { return !(*this == other); }

 private:
  Mode(ModeType type, uint32_t cir, uint32_t cbs, uint32_t ebs, uint32_t pir,
       uint32_t pbs, uint32_t eir);

  ModeType type_;
  uint32_t cir_;
  uint32_t cbs_;
  uint32_t ebs_;
  uint32_t pir_;
  uint32_t pbs_;
  uint32_t eir_;
};

// What happens to a packet of one colour: drop it, or rewrite its PCP or
// DSCP. The value a kind does not use is 0.
class POLICER_EXPORT Action {
 public:
  static Action Drop(Color color);
  static Action SetPcp(Color color, uint8_t pcp);
  static Action SetDscp(Color color, uint8_t dscp);

  Color GetColor() const { return color_; }
  ActionType GetType() const { return type_; }
  uint8_t GetPcp() const { return pcp_; }
  uint8_t GetDscp() const { return dscp_; }

  // Orders by colour, then type, then PCP, then DSCP.
  bool operator<(const Action& other) const;
  bool operator==(const Action& other) const;
  bool operator!=(const Action& other) const { return !(*this == other); }

 private:
  Action(Color color, ActionType type, uint8_t pcp, uint8_t dscp);

  Color color_;
  ActionType type_;
  uint8_t pcp_;
  uint8_t dscp_;
};

// A policer: identifier, stage, mode and the set of colour actions.
class POLICER_EXPORT Policer {
 public:
  static constexpr uint32_t kInvalidId = 0xFFFFFFFF;

  // Id kInvalidId, STAGE_NONE, Mode(), no actions.
  Policer();
  Policer(uint32_t id, Stage stage, const Mode& mode,
          const std::set<Action>& actions = {});
  // The inverse of Serialize(). Never throws: empty bytes give the default
  // policer; from malformed bytes, every field that cannot be read keeps its
  // default.
  explicit Policer(const std::string& serialized);

  Policer(const Policer&) = default;
  Policer(Policer&&) = default;
  Policer& operator=(const Policer&) = default;
  Policer& operator=(Policer&&) = default;
  ~Policer() = default;

  // The policer as a protocol-buffers message of its own schema.
  std::string Serialize() const;

  uint32_t GetId() const { return id_; }
  Stage GetStage() const { return stage_; }
  const Mode& GetMode() const { return mode_; }
  const std::set<Action>& GetActions() const { return actions_; }

  void SetId(uint32_t id) { id_ = id; }
  void SetStage(Stage stage) { stage_ = stage; }
  void SetMode(const Mode& mode) { mode_ = mode; }
  void AddAction(const Action& action) { actions_.insert(action); }

  bool operator==(const Policer& other) const;
  bool operator!=(const Policer& other) const { return !(*this == other); }

 private:
  uint32_t id_;
  Stage stage_;
  Mode mode_;
  std::set<Action> actions_;
};

}  // namespace policer

#endif  // POLICER_POLICER_H_
