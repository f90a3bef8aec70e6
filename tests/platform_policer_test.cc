// The policer model: modes, colour actions, policers and their wire form.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "policer/policer.h"

namespace {

using policer::Action;
using policer::Mode;
using policer::Policer;

// ---- Hand-built wire bytes, to feed the parser what Serialize never
// writes. ----

std::string Varint(uint64_t value) {
  std::string out;
  do {
    uint8_t byte = value & 0x7F;
    value >>= 7;
    if (value != 0) byte |= 0x80;
    out.push_back(static_cast<char>(byte));
  } while (value != 0);
  return out;
}

// A varint field; negative values take ten bytes, as int32 does on the wire.
std::string VarintField(uint32_t field, int64_t value) {
  return Varint(field << 3) + Varint(static_cast<uint64_t>(value));
}

std::string BytesField(uint32_t field, const std::string& bytes) {
  return Varint((field << 3) | 2) + Varint(bytes.size()) + bytes;
}

// Field numbers of the policer message and its parts.
enum { kId = 1, kStage = 2, kMode = 3, kActions = 4 };
enum { kModeType = 1, kCir = 2, kCbs = 3, kEbs = 4, kPir = 5, kPbs = 6 };
enum { kColor = 1, kActionType = 2, kPcp = 3, kDscp = 4 };

std::string ActionBytes(int64_t color, int64_t type, int64_t pcp,
                        int64_t dscp) {
  return BytesField(
      kActions, VarintField(kColor, color) + VarintField(kActionType, type) +
                    VarintField(kPcp, pcp) + VarintField(kDscp, dscp));
}

std::vector<Mode> AllModes() {
  return {Mode(), Mode::SrTcm(1000, 2000, 3000), Mode::TrTcm(1, 2, 3, 4),
          Mode::TrTcmDs(10, 20, 30, 40), Mode::Flow(0xFFFFFFFF, 5)};
}

std::vector<std::set<Action>> SomeActionSets() {
  using policer::COLOR_GREEN;
  using policer::COLOR_RED;
  using policer::COLOR_YELLOW;
  return {
      {},
      {Action::Drop(COLOR_RED)},
      {Action::Drop(COLOR_RED), Action::SetPcp(COLOR_YELLOW, 5),
       Action::SetDscp(COLOR_GREEN, 46)},
      {Action::SetPcp(COLOR_GREEN, 0), Action::SetPcp(COLOR_GREEN, 7),
       Action::SetDscp(COLOR_GREEN, 63), Action::SetDscp(COLOR_YELLOW, 255),
       Action::Drop(COLOR_YELLOW)},
  };
}

void ExpectDefaultPolicer(const Policer& p) {
  EXPECT_EQ(p.GetId(), Policer::kInvalidId);
  EXPECT_EQ(p.GetStage(), policer::STAGE_NONE);
  EXPECT_EQ(p.GetMode(), Mode());
  EXPECT_TRUE(p.GetActions().empty());
}

// ---- Enumerations ----

TEST(PolicerEnums, HaveFixedNumbers) {
  EXPECT_EQ(policer::STAGE_INGRESS, 0);
  EXPECT_EQ(policer::STAGE_EGRESS, 1);
  EXPECT_EQ(policer::STAGE_NONE, 2);
  EXPECT_EQ(policer::MODE_SRTCM, 0);
  EXPECT_EQ(policer::MODE_TRTCM, 1);
  EXPECT_EQ(policer::MODE_TRTCM_DS, 2);
  EXPECT_EQ(policer::MODE_FLOW, 3);
  EXPECT_EQ(policer::MODE_NONE, 4);
  EXPECT_EQ(policer::COLOR_RED, 0);
  EXPECT_EQ(policer::COLOR_YELLOW, 1);
  EXPECT_EQ(policer::COLOR_GREEN, 2);
  EXPECT_EQ(policer::ACTION_DROP, 0);
  EXPECT_EQ(policer::ACTION_SET_PCP, 1);
  EXPECT_EQ(policer::ACTION_SET_DSCP, 2);
}

// ---- Mode ----

// Getters in field order: type, CIR, CBS, EBS, PIR, PBS, EIR.
std::vector<uint32_t> Words(const Mode& m) {
  return {static_cast<uint32_t>(m.GetType()),
          m.GetCir(),
          m.GetCbs(),
          m.GetEbs(),
          m.GetPir(),
          m.GetPbs(),
          m.GetEir()};
}

TEST(PolicerMode, DefaultIsNoneWithZeroParameters) {
  EXPECT_EQ(Words(Mode()), (std::vector<uint32_t>{4, 0, 0, 0, 0, 0, 0}));
}

TEST(PolicerMode, FactoriesPutZeroInUnusedParameters) {
  EXPECT_EQ(Words(Mode::SrTcm(11, 12, 13)),
            (std::vector<uint32_t>{0, 11, 12, 13, 0, 0, 0}));
  EXPECT_EQ(Words(Mode::TrTcm(21, 22, 23, 24)),
            (std::vector<uint32_t>{1, 21, 22, 0, 23, 24, 0}));
  EXPECT_EQ(Words(Mode::TrTcmDs(31, 32, 33, 34)),
            (std::vector<uint32_t>{2, 31, 32, 34, 0, 0, 33}));
  EXPECT_EQ(Words(Mode::Flow(41, 42)),
            (std::vector<uint32_t>{3, 41, 42, 0, 0, 0, 0}));
}

TEST(PolicerMode, EqualityComparesTypeAndEveryParameter) {
  EXPECT_EQ(Mode::SrTcm(1, 2, 3), Mode::SrTcm(1, 2, 3));
  EXPECT_NE(Mode::SrTcm(1, 2, 3), Mode::SrTcm(1, 2, 4));
  EXPECT_NE(Mode::SrTcm(1, 2, 3), Mode::SrTcm(0, 2, 3));
  EXPECT_NE(Mode::TrTcm(1, 2, 3, 4), Mode::TrTcm(1, 2, 3, 5));
  EXPECT_NE(Mode::TrTcm(1, 2, 3, 4), Mode::TrTcmDs(1, 2, 3, 4));
  EXPECT_NE(Mode::Flow(0, 0), Mode());
  EXPECT_FALSE(Mode() != Mode());
}

// ---- Action ----

TEST(PolicerAction, FactoriesSetColourTypeAndValue) {
  Action drop = Action::Drop(policer::COLOR_YELLOW);
  EXPECT_EQ(drop.GetColor(), policer::COLOR_YELLOW);
  EXPECT_EQ(drop.GetType(), policer::ACTION_DROP);
  EXPECT_EQ(drop.GetPcp(), 0);
  EXPECT_EQ(drop.GetDscp(), 0);

  Action pcp = Action::SetPcp(policer::COLOR_RED, 6);
  EXPECT_EQ(pcp.GetColor(), policer::COLOR_RED);
  EXPECT_EQ(pcp.GetType(), policer::ACTION_SET_PCP);
  EXPECT_EQ(pcp.GetPcp(), 6);
  EXPECT_EQ(pcp.GetDscp(), 0);

  Action dscp = Action::SetDscp(policer::COLOR_GREEN, 46);
  EXPECT_EQ(dscp.GetColor(), policer::COLOR_GREEN);
  EXPECT_EQ(dscp.GetType(), policer::ACTION_SET_DSCP);
  EXPECT_EQ(dscp.GetPcp(), 0);
  EXPECT_EQ(dscp.GetDscp(), 46);
}

TEST(PolicerAction, OrdersByColourThenTypeThenPcpThenDscp) {
  using policer::COLOR_GREEN;
  using policer::COLOR_RED;
  using policer::COLOR_YELLOW;
  // Colour dominates the kind and value.
  EXPECT_LT(Action::SetDscp(COLOR_RED, 63), Action::Drop(COLOR_YELLOW));
  EXPECT_LT(Action::SetDscp(COLOR_YELLOW, 63), Action::Drop(COLOR_GREEN));
  // Then the kind.
  EXPECT_LT(Action::Drop(COLOR_RED), Action::SetPcp(COLOR_RED, 0));
  EXPECT_LT(Action::SetPcp(COLOR_RED, 7), Action::SetDscp(COLOR_RED, 0));
  // Then the values.
  EXPECT_LT(Action::SetPcp(COLOR_RED, 1), Action::SetPcp(COLOR_RED, 2));
  EXPECT_LT(Action::SetDscp(COLOR_RED, 1), Action::SetDscp(COLOR_RED, 2));
  // Strict: nothing is below itself.
  EXPECT_FALSE(Action::Drop(COLOR_RED) < Action::Drop(COLOR_RED));
  EXPECT_FALSE(Action::SetPcp(COLOR_RED, 2) < Action::SetPcp(COLOR_RED, 1));

  std::set<Action> actions = {
      Action::Drop(COLOR_GREEN), Action::SetPcp(COLOR_RED, 3),
      Action::SetDscp(COLOR_RED, 1), Action::Drop(COLOR_RED),
      Action::SetPcp(COLOR_RED, 1)};
  std::vector<Action> expected = {
      Action::Drop(COLOR_RED), Action::SetPcp(COLOR_RED, 1),
      Action::SetPcp(COLOR_RED, 3), Action::SetDscp(COLOR_RED, 1),
      Action::Drop(COLOR_GREEN)};
  EXPECT_EQ(std::vector<Action>(actions.begin(), actions.end()), expected);
}

TEST(PolicerAction, EqualityComparesEveryField) {
  EXPECT_EQ(Action::SetPcp(policer::COLOR_RED, 3),
            Action::SetPcp(policer::COLOR_RED, 3));
  EXPECT_NE(Action::SetPcp(policer::COLOR_RED, 3),
            Action::SetPcp(policer::COLOR_RED, 4));
  EXPECT_NE(Action::SetPcp(policer::COLOR_RED, 3),
            Action::SetPcp(policer::COLOR_GREEN, 3));
  EXPECT_NE(Action::SetPcp(policer::COLOR_RED, 3),
            Action::SetDscp(policer::COLOR_RED, 3));
  EXPECT_NE(Action::Drop(policer::COLOR_RED),
            Action::SetPcp(policer::COLOR_RED, 0));
}

// ---- Policer ----

TEST(PolicerPolicer, DefaultHasInvalidIdNoStageNoModeNoActions) {
  EXPECT_EQ(Policer::kInvalidId, 0xFFFFFFFFu);
  ExpectDefaultPolicer(Policer());
}

TEST(PolicerPolicer, ConstructorStoresEveryField) {
  std::set<Action> actions = SomeActionSets()[2];
  Policer p(3, policer::STAGE_INGRESS, Mode::SrTcm(1, 2, 3), actions);
  EXPECT_EQ(p.GetId(), 3u);
  EXPECT_EQ(p.GetStage(), policer::STAGE_INGRESS);
  EXPECT_EQ(p.GetMode(), Mode::SrTcm(1, 2, 3));
  EXPECT_EQ(p.GetActions(), actions);
  EXPECT_TRUE(Policer(3, policer::STAGE_EGRESS, Mode()).GetActions().empty());
}

TEST(PolicerPolicer, SettersReplaceAndAddActionInserts) {
  Policer p;
  p.SetId(9);
  p.SetStage(policer::STAGE_EGRESS);
  p.SetMode(Mode::Flow(5, 6));
  p.AddAction(Action::Drop(policer::COLOR_RED));
  p.AddAction(Action::Drop(policer::COLOR_RED));  // Already held: no change.
  p.AddAction(Action::SetPcp(policer::COLOR_RED, 2));
  EXPECT_EQ(p, Policer(9, policer::STAGE_EGRESS, Mode::Flow(5, 6),
                       {Action::Drop(policer::COLOR_RED),
                        Action::SetPcp(policer::COLOR_RED, 2)}));
  EXPECT_EQ(p.GetActions().size(), 2u);
}

TEST(PolicerPolicer, EqualityComparesEveryField) {
  const Policer base(1, policer::STAGE_INGRESS, Mode::SrTcm(1, 2, 3),
                     {Action::Drop(policer::COLOR_RED)});
  Policer other = base;
  EXPECT_EQ(other, base);
  EXPECT_FALSE(other != base);
  other.SetId(2);
  EXPECT_NE(other, base);
  other = base;
  other.SetStage(policer::STAGE_EGRESS);
  EXPECT_NE(other, base);
  other = base;
  other.SetMode(Mode::SrTcm(1, 2, 4));
  EXPECT_NE(other, base);
  other = base;
  other.AddAction(Action::Drop(policer::COLOR_GREEN));
  EXPECT_NE(other, base);
}

TEST(PolicerPolicer, CopiesAndMovesByValue) {
  Policer original(4, policer::STAGE_EGRESS, Mode::TrTcm(1, 2, 3, 4),
                   SomeActionSets()[3]);
  Policer copy(original);
  EXPECT_EQ(copy, original);
  copy.AddAction(Action::Drop(policer::COLOR_RED));
  EXPECT_NE(copy, original) << "a copy shares nothing with its source";

  Policer expected = original;
  Policer moved(std::move(original));
  EXPECT_EQ(moved, expected);
  Policer assigned;
  assigned = std::move(moved);
  EXPECT_EQ(assigned, expected);
  Policer copy_assigned;
  copy_assigned = expected;
  EXPECT_EQ(copy_assigned, expected);
}

// ---- Wire form ----

TEST(PolicerWire, RoundTripsEveryModeStageAndActionSet) {
  const policer::Stage kStages[] = {policer::STAGE_INGRESS,
                                    policer::STAGE_EGRESS, policer::STAGE_NONE};
  for (const Mode& mode : AllModes()) {
    for (const std::set<Action>& actions : SomeActionSets()) {
      for (policer::Stage stage : kStages) {
        for (uint32_t id : {0u, 77u, Policer::kInvalidId}) {
          Policer p(id, stage, mode, actions);
          Policer back(p.Serialize());
          EXPECT_EQ(back, p) << "mode " << mode.GetType() << " stage " << stage
                             << " actions " << actions.size();
        }
      }
    }
  }
}

TEST(PolicerWire, DefaultPolicerRoundTrips) {
  ExpectDefaultPolicer(Policer(Policer().Serialize()));
}

TEST(PolicerWire, EmptyBytesGiveDefaultPolicer) {
  ExpectDefaultPolicer(Policer(std::string()));
}

TEST(PolicerWire, DifferentPolicersSerializeDifferently) {
  Policer a(1, policer::STAGE_INGRESS, Mode::Flow(1, 2));
  Policer b = a;
  b.AddAction(Action::SetDscp(policer::COLOR_RED, 1));
  EXPECT_NE(a.Serialize(), b.Serialize());
  EXPECT_EQ(a.Serialize(), Policer(a).Serialize());
}

TEST(PolicerWire, RandomBytesNeverThrow) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<int> byte(0, 255);
  std::uniform_int_distribution<int> length(0, 64);
  for (int i = 0; i < 5000; ++i) {
    std::string bytes(length(rng), '\0');
    for (char& c : bytes) c = static_cast<char>(byte(rng));
    EXPECT_NO_THROW({
      Policer p(bytes);
      // Whatever was read, the result is a usable value.
      EXPECT_EQ(Policer(p.Serialize()).Serialize(), p.Serialize());
    });
  }
}

TEST(PolicerWire, EveryTruncationNeverThrowsAndKeepsLeadingFields) {
  Policer full(12, policer::STAGE_EGRESS, Mode::TrTcmDs(1, 2, 3, 4),
               SomeActionSets()[3]);
  std::string bytes = full.Serialize();
  for (size_t n = 0; n < bytes.size(); ++n) {
    std::string prefix = bytes.substr(0, n);
    EXPECT_NO_THROW({
      Policer p(prefix);
      // The id comes first on the wire: any prefix either holds it whole or
      // leaves the default.
      EXPECT_TRUE(p.GetId() == 12u || p.GetId() == Policer::kInvalidId) << n;
      EXPECT_LE(p.GetActions().size(), full.GetActions().size());
    });
  }
}

TEST(PolicerWire, FieldsBeforeDamageAreKept) {
  std::string bytes = VarintField(kId, 5) + VarintField(kStage, 0) + "\xff";
  Policer p(bytes);
  EXPECT_EQ(p.GetId(), 5u);
  EXPECT_EQ(p.GetStage(), policer::STAGE_INGRESS);
  EXPECT_EQ(p.GetMode(), Mode());
}

TEST(PolicerWire, HalfReadFieldKeepsDefault) {
  ExpectDefaultPolicer(Policer(std::string("\x08", 1)));
  Policer p(VarintField(kId, 5) + std::string("\x10\x81", 2));
  EXPECT_EQ(p.GetId(), 5u);
  EXPECT_EQ(p.GetStage(), policer::STAGE_NONE);
}

TEST(PolicerWire, BrokenNestedFieldIsSkippedAndLaterFieldsKept) {
  std::string broken_mode = BytesField(kMode, std::string("\x08\x81", 2));
  std::string broken_action = BytesField(kActions, std::string("\x0f", 1));
  Policer p(VarintField(kId, 6) + broken_mode + broken_action +
            ActionBytes(policer::COLOR_YELLOW, policer::ACTION_DROP, 0, 0) +
            VarintField(kStage, policer::STAGE_EGRESS));
  EXPECT_EQ(p.GetId(), 6u);
  EXPECT_EQ(p.GetStage(), policer::STAGE_EGRESS);
  EXPECT_EQ(p.GetMode(), Mode());
  EXPECT_EQ(p.GetActions(),
            std::set<Action>{Action::Drop(policer::COLOR_YELLOW)});
}

TEST(PolicerWire, WrongWireTypesNeverThrow) {
  const std::string kBad[] = {
      BytesField(kId, "abc"),                        // id as bytes
      BytesField(kStage, "\x01"),                    // stage as bytes
      VarintField(kMode, 3),                         // mode as varint
      VarintField(kActions, 1),                      // action as varint
      BytesField(kMode, "\x0a\x01x"),                // mode type as bytes
      BytesField(kActions, BytesField(kColor, "")),  // colour as bytes
      std::string("\x0d\x01\x02\x03\x04", 5),        // id as fixed32
      std::string("\x0b\x0c", 2),                    // group markers
      std::string("\x0f", 1),                        // wire type 7
  };
  for (const std::string& bytes : kBad) {
    EXPECT_NO_THROW({
      Policer p(bytes);
      EXPECT_EQ(p.GetStage(), policer::STAGE_NONE);
      EXPECT_TRUE(p.GetActions().empty());
    });
  }
}

TEST(PolicerWire, OutOfRangeStageKeepsDefault) {
  for (int64_t stage : {3, 100, -1}) {
    Policer p(VarintField(kId, 8) + VarintField(kStage, stage));
    EXPECT_EQ(p.GetId(), 8u);
    EXPECT_EQ(p.GetStage(), policer::STAGE_NONE) << stage;
  }
}

TEST(PolicerWire, OutOfRangeModeTypeGivesDefaultMode) {
  for (int64_t type : {5, 1000, -2}) {
    Policer p(BytesField(kMode,
                         VarintField(kModeType, type) + VarintField(kCir, 10)));
    EXPECT_EQ(p.GetMode(), Mode()) << type;
  }
}

TEST(PolicerWire, ModeKeepsOnlyParametersItUses) {
  std::string mode = VarintField(kModeType, policer::MODE_FLOW) +
                     VarintField(kCir, 1) + VarintField(kCbs, 2) +
                     VarintField(kEbs, 3) + VarintField(kPir, 4) +
                     VarintField(kPbs, 5);
  EXPECT_EQ(Policer(BytesField(kMode, mode)).GetMode(), Mode::Flow(1, 2));
}

TEST(PolicerWire, UnrepresentableActionsAreDropped) {
  using policer::COLOR_RED;
  std::string bytes = ActionBytes(3, 0, 0, 0) +    // unknown colour
                      ActionBytes(-1, 0, 0, 0) +   // negative colour
                      ActionBytes(0, 3, 0, 0) +    // unknown kind
                      ActionBytes(0, -1, 0, 0) +   // negative kind
                      ActionBytes(0, 1, 256, 0) +  // PCP beyond a byte
                      ActionBytes(0, 2, 0, 300) +  // DSCP beyond a byte
                      BytesField(kActions, VarintField(kActionType, 0)) +
                      ActionBytes(0, 1, 7, 9);  // valid; DSCP unused
  Policer p(bytes);
  EXPECT_EQ(p.GetActions(), std::set<Action>{Action::SetPcp(COLOR_RED, 7)});
}

}  // namespace
