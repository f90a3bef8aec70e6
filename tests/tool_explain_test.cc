// Names of codes and kinds, capability queries and the dry run of
// insertEntry, through both faces of the library.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_explain_c.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_wire_c.h"
#include "common/kinds.h"
#include "tool_test_support.h"

namespace FiltersCommon {
namespace {

using filters_test::entryMessage;
using filters_test::entryWith;
using filters_test::groupIn;
using filters_test::stagedPolicer;

// Stages and types around and beyond the known ones.
const std::vector<int32_t> kStages = {-1, 0, 1, 2, 3, 4, 9};
const std::vector<int32_t> kTypes = {-1, 0, 1,  2,  3,  4,  5,  6,  7,
                                     8,  9, 10, 11, 12, 13, 14, 15, 20};

std::vector<uint32_t> kindsUpTo(uint32_t last) {
  std::vector<uint32_t> kinds;
  for (uint32_t kind = 0; kind <= last; ++kind) kinds.push_back(kind);
  return kinds;
}

// ---- Names ----

TEST(FiltersNames, ErrorCodesHaveTheirEnumeratorNames) {
  EXPECT_STREQ(filtersErrName(FILTERS_OK), "FILTERS_OK");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_NOT_FOUND), "FILTERS_ERR_NOT_FOUND");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_INVALID), "FILTERS_ERR_INVALID");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_REFUSED), "FILTERS_ERR_REFUSED");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_MATCH_NOT_ALLOWED),
               "FILTERS_ERR_MATCH_NOT_ALLOWED");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_TYPE_NOT_IN_STAGE),
               "FILTERS_ERR_TYPE_NOT_IN_STAGE");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_UNKNOWN_STAGE),
               "FILTERS_ERR_UNKNOWN_STAGE");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_ACTION_NOT_ALLOWED),
               "FILTERS_ERR_ACTION_NOT_ALLOWED");
  EXPECT_STREQ(filtersErrName(FILTERS_ERR_POLICER_STAGE),
               "FILTERS_ERR_POLICER_STAGE");
}

TEST(FiltersNames, EveryCodeHasItsOwnOneLineDescription) {
  const std::vector<int32_t> codes = {0, -3, -4, -5, -6, -7, -8, -9, -10};
  std::vector<std::string> seen;
  for (int32_t code : codes) {
    const std::string text =
        filtersErrDescription(static_cast<filtersErr_t>(code));
    EXPECT_FALSE(text.empty()) << code;
    EXPECT_EQ(text.find('\n'), std::string::npos) << code;
    EXPECT_NE(text, "unknown error code") << code;
    for (const std::string& other : seen) EXPECT_NE(text, other) << code;
    seen.push_back(text);
  }
  EXPECT_STREQ(filtersErrDescription(FILTERS_ERR_MATCH_NOT_ALLOWED),
               "a match of the entry is not allowed by the group's type");
  EXPECT_STREQ(filtersErrDescription(FILTERS_ERR_POLICER_STAGE),
               "the entry's policer belongs to another policer stage than "
               "the group's stage requires");
}

TEST(FiltersNames, CodesNoOperationProducesAreUnknown) {
  for (int32_t code : {-1, -2, 1, -11, 100}) {
    const auto unknown = static_cast<filtersErr_t>(code);
    EXPECT_STREQ(filtersErrName(unknown), "unknown") << code;
    EXPECT_STREQ(filtersErrDescription(unknown), "unknown error code") << code;
  }
}

TEST(FiltersNames, MatchKindsAreNamedAfterTheirClasses) {
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_ALL), "MatchAll");
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_DST_MAC), "MatchDstMac");
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_SRC_IPV4), "MatchSrcIPv4");
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_TOS), "MatchToS");
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_CPU_INJECTED_PACKETS),
               "MatchCPUInjectedPackets");
  EXPECT_STREQ(filtersMatchName(FILTERS_MATCH_UNKNOWN_DEST_IP),
               "MatchUnknownDestIp");
#define EXPECT_MATCH_NAME(value, Class) \
  EXPECT_STREQ(filtersMatchName(static_cast<filtersMatch_t>(value)), #Class);
  FILTERS_FOR_EACH_MATCH_KIND(EXPECT_MATCH_NAME)
#undef EXPECT_MATCH_NAME
}

TEST(FiltersNames, ActionKindsAreNamedAfterTheirClasses) {
  EXPECT_STREQ(filtersActionName(FILTERS_ACTION_PERMIT), "ActionPermit");
  EXPECT_STREQ(filtersActionName(FILTERS_ACTION_DENY), "ActionDeny");
  EXPECT_STREQ(filtersActionName(FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE),
               "ActionMapToCpuCosQueue");
  EXPECT_STREQ(filtersActionName(FILTERS_ACTION_DO_NOT_LEARN_MAC),
               "ActionDoNotLearnMac");
#define EXPECT_ACTION_NAME(value, Class) \
  EXPECT_STREQ(filtersActionName(static_cast<filtersAction_t>(value)), #Class);
  FILTERS_FOR_EACH_ACTION_KIND(EXPECT_ACTION_NAME)
#undef EXPECT_ACTION_NAME
}

TEST(FiltersNames, KindsOutsideTheCatalogueAreUnknown) {
  for (int32_t kind : {-1, 39, 40, 1000}) {
    EXPECT_STREQ(filtersMatchName(static_cast<filtersMatch_t>(kind)),
                 "unknown");
  }
  for (int32_t kind : {-1, 21, 1000}) {
    EXPECT_STREQ(filtersActionName(static_cast<filtersAction_t>(kind)),
                 "unknown");
  }
}

TEST(FiltersNames, StagesTypesAndPolicerStagesHaveNames) {
  EXPECT_STREQ(filtersStageName(FILTERS_STAGE_LOOKUP), "FILTERS_STAGE_LOOKUP");
  EXPECT_STREQ(filtersStageName(FILTERS_STAGE_EGRESS), "FILTERS_STAGE_EGRESS");
  EXPECT_STREQ(filtersStageName(static_cast<filtersGroupStage_t>(4)),
               "unknown");
  EXPECT_STREQ(filtersTypeName(FILTERS_TYPE_NONE), "FILTERS_TYPE_NONE");
  EXPECT_STREQ(filtersTypeName(FILTERS_TYPE_IPV4_L4), "FILTERS_TYPE_IPV4_L4");
  EXPECT_STREQ(filtersTypeName(FILTERS_TYPE_UNKNOWN_DEST),
               "FILTERS_TYPE_UNKNOWN_DEST");
  EXPECT_STREQ(filtersTypeName(static_cast<filtersGroupType_t>(15)), "unknown");
  EXPECT_STREQ(filtersPolicerStageName(0), "Ingress");
  EXPECT_STREQ(filtersPolicerStageName(1), "Egress");
  EXPECT_STREQ(filtersPolicerStageName(2), "None");
  EXPECT_STREQ(filtersPolicerStageName(3), "unknown");
}

// ---- Capabilities ----

TEST(FiltersCapabilities, KnownStagesAndTypesAreTheTablesKeys) {
  EXPECT_EQ(knownGroupStages(),
            (std::vector<filtersGroupStage_t>{
                FILTERS_STAGE_LOOKUP, FILTERS_STAGE_VLAN, FILTERS_STAGE_INGRESS,
                FILTERS_STAGE_EGRESS}));
  const std::vector<filtersGroupType_t> types = knownGroupTypes();
  ASSERT_EQ(types.size(), 15u);
  for (int32_t i = 0; i < 15; ++i) EXPECT_EQ(types[i], i);
}

TEST(FiltersCapabilities, MatchKindsOfEachTypeAreItsTableRowAscending) {
  for (const auto& row : FiltersGroup::TypeDescription_) {
    const auto kinds = allowedMatchKinds(row.first);
    ASSERT_TRUE(kinds.has_value()) << row.first;
    EXPECT_EQ(*kinds, std::vector<filtersMatch_t>(row.second.begin(),
                                                  row.second.end()));
  }
  EXPECT_EQ(
      *allowedMatchKinds(FILTERS_TYPE_IPV6_VRF),
      (std::vector<filtersMatch_t>{FILTERS_MATCH_ALL, FILTERS_MATCH_DST_IPV6,
                                   FILTERS_MATCH_VRF_ID}));
  ASSERT_TRUE(allowedMatchKinds(FILTERS_TYPE_NONE).has_value());
  EXPECT_TRUE(allowedMatchKinds(FILTERS_TYPE_NONE)->empty());
}

TEST(FiltersCapabilities, TypesAndActionsOfEachStage) {
  EXPECT_EQ(*allowedGroupTypes(FILTERS_STAGE_EGRESS),
            (std::vector<filtersGroupType_t>{FILTERS_TYPE_NONE,
                                             FILTERS_TYPE_EGRESS_L2}));
  EXPECT_EQ(
      *allowedGroupTypes(FILTERS_STAGE_VLAN),
      (std::vector<filtersGroupType_t>{FILTERS_TYPE_NONE, FILTERS_TYPE_IPV4_QOS,
                                       FILTERS_TYPE_L2_VLAN}));
  EXPECT_EQ(allowedGroupTypes(FILTERS_STAGE_LOOKUP)->size(), 15u);
  EXPECT_EQ(*allowedActionKinds(FILTERS_STAGE_EGRESS),
            (std::vector<filtersAction_t>{FILTERS_ACTION_PERMIT,
                                          FILTERS_ACTION_DENY}));
  const std::vector<filtersAction_t> ingress =
      *allowedActionKinds(FILTERS_STAGE_INGRESS);
  EXPECT_EQ(ingress.size(), 17u);
  for (filtersAction_t absent :
       {FILTERS_ACTION_SET_PCP_AND_QUEUE, FILTERS_ACTION_SET_INNER_PCP,
        FILTERS_ACTION_COPY_INNER_PCP, FILTERS_ACTION_MPLS_PORT_SET}) {
    for (filtersAction_t kind : ingress) EXPECT_NE(kind, absent);
  }
  for (const auto& row : FiltersGroup::StageActionsDescription_) {
    EXPECT_EQ(
        *allowedActionKinds(row.first),
        std::vector<filtersAction_t>(row.second.begin(), row.second.end()));
  }
}

TEST(FiltersCapabilities, UnknownStagesAndTypesGiveNothing) {
  for (int32_t stage : {-1, 4, 9}) {
    const auto unknown = static_cast<filtersGroupStage_t>(stage);
    EXPECT_FALSE(allowedGroupTypes(unknown).has_value()) << stage;
    EXPECT_FALSE(allowedActionKinds(unknown).has_value()) << stage;
    EXPECT_FALSE(requiredPolicerStage(unknown).has_value()) << stage;
  }
  for (int32_t type : {-1, 15, 20}) {
    EXPECT_FALSE(
        allowedMatchKinds(static_cast<filtersGroupType_t>(type)).has_value())
        << type;
  }
}

TEST(FiltersCapabilities, RequiredPolicerStageOfEachStage) {
  EXPECT_EQ(requiredPolicerStage(FILTERS_STAGE_LOOKUP), policer::STAGE_NONE);
  EXPECT_EQ(requiredPolicerStage(FILTERS_STAGE_VLAN), policer::STAGE_NONE);
  EXPECT_EQ(requiredPolicerStage(FILTERS_STAGE_INGRESS),
            policer::STAGE_INGRESS);
  EXPECT_EQ(requiredPolicerStage(FILTERS_STAGE_EGRESS), policer::STAGE_EGRESS);
}

TEST(FiltersCapabilitiesC, FillsTheCallersArrayAndCount) {
  filtersMatch_t kinds[FILTERS_MATCH_LAST + 1];
  uint32_t count = 0;
  ASSERT_EQ(filtersTypeGetMatches(FILTERS_TYPE_IPV6_VRF, kinds, 39, &count),
            FILTERS_OK);
  ASSERT_EQ(count, 3u);
  EXPECT_EQ(kinds[0], FILTERS_MATCH_ALL);
  EXPECT_EQ(kinds[1], FILTERS_MATCH_DST_IPV6);
  EXPECT_EQ(kinds[2], FILTERS_MATCH_VRF_ID);

  filtersGroupType_t types[15];
  ASSERT_EQ(filtersStageGetTypes(FILTERS_STAGE_EGRESS, types, 15, &count),
            FILTERS_OK);
  ASSERT_EQ(count, 2u);
  EXPECT_EQ(types[1], FILTERS_TYPE_EGRESS_L2);

  filtersAction_t actions[FILTERS_ACTION_LAST + 1];
  ASSERT_EQ(filtersStageGetActions(FILTERS_STAGE_VLAN, actions, 21, &count),
            FILTERS_OK);
  ASSERT_EQ(count, 6u);
  EXPECT_EQ(actions[5], FILTERS_ACTION_MPLS_PORT_SET);

  int32_t policerStage = -1;
  EXPECT_EQ(filtersStageGetPolicerStage(FILTERS_STAGE_EGRESS, &policerStage),
            FILTERS_OK);
  EXPECT_EQ(policerStage, 1);
}

TEST(FiltersCapabilitiesC, ASmallArrayGetsTheFirstKindsAndTheFullCount) {
  filtersMatch_t kinds[2] = {static_cast<filtersMatch_t>(-1),
                             static_cast<filtersMatch_t>(-1)};
  uint32_t count = 0;
  ASSERT_EQ(filtersTypeGetMatches(FILTERS_TYPE_IPV4, kinds, 1, &count),
            FILTERS_OK);
  EXPECT_EQ(count, 5u);
  EXPECT_EQ(kinds[0], FILTERS_MATCH_ALL);
  EXPECT_EQ(kinds[1], static_cast<filtersMatch_t>(-1));
  ASSERT_EQ(filtersTypeGetMatches(FILTERS_TYPE_L2, nullptr, 0, &count),
            FILTERS_OK);
  EXPECT_EQ(count, 12u);
}

TEST(FiltersCapabilitiesC, RefusesMissingOutputsAndUnknownKeys) {
  filtersMatch_t kinds[39];
  uint32_t count = 7;
  EXPECT_EQ(filtersTypeGetMatches(FILTERS_TYPE_L2, kinds, 39, nullptr),
            FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersTypeGetMatches(FILTERS_TYPE_L2, nullptr, 5, &count),
            FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersTypeGetMatches(static_cast<filtersGroupType_t>(15), kinds,
                                  39, &count),
            FILTERS_ERR_INVALID);
  EXPECT_EQ(count, 7u);
  filtersGroupType_t types[15];
  EXPECT_EQ(filtersStageGetTypes(static_cast<filtersGroupStage_t>(4), types, 15,
                                 &count),
            FILTERS_ERR_UNKNOWN_STAGE);
  filtersAction_t actions[21];
  EXPECT_EQ(filtersStageGetActions(static_cast<filtersGroupStage_t>(-1),
                                   actions, 21, &count),
            FILTERS_ERR_UNKNOWN_STAGE);
  int32_t policerStage = 0;
  EXPECT_EQ(filtersStageGetPolicerStage(static_cast<filtersGroupStage_t>(4),
                                        &policerStage),
            FILTERS_ERR_UNKNOWN_STAGE);
  EXPECT_EQ(filtersStageGetPolicerStage(FILTERS_STAGE_LOOKUP, nullptr),
            FILTERS_ERR_REFUSED);
}

// ---- Explanation against insertEntry ----

// Checks a blamed match or action kind against the group itself: `held`
// (the entry's matches or actions) holds it; alone in an entry
// (`alone(kind)`), a fresh group of `stage` and `type` refuses it with the
// same code; and every kind held below it passes the group's own check of
// its family (`passes`) alone. So the blamed kind is the first refused one.
template <class HeldMap, class Alone, class Passes>
void expectFirstRefused(const HeldMap& held, const EntryExplanation& why,
                        int32_t stage, int32_t type, Alone alone,
                        Passes passes) {
  using Kind = typename HeldMap::key_type;
  ASSERT_EQ(held.count(static_cast<Kind>(why.value)), 1u) << why.message;
  EXPECT_EQ(
      groupIn(stage, type).insertEntry(alone(static_cast<uint32_t>(why.value))),
      why.code)
      << why.message;
  for (const auto& element : held) {
    if (element.first >= why.value) break;
    EXPECT_EQ(passes(alone(static_cast<uint32_t>(element.first))), FILTERS_OK)
        << why.message << ", but kind " << element.first << " is refused";
  }
}

// Checks the element `why` blames against the group itself (see
// expectFirstRefused); a blamed policer, alone in an entry, is refused too.
void expectBlameHolds(int32_t stage, int32_t type, const FiltersEntry& entry,
                      const EntryExplanation& why) {
  const FiltersGroup checks = groupIn(stage, type);
  switch (why.cause) {
    case FILTERS_CAUSE_MATCH:
      expectFirstRefused(
          entry.getMatches(), why, stage, type,
          [](uint32_t kind) { return entryWith({kind}, {}); },
          [&](const FiltersEntry& alone) {
            return checks.groupMatchValidation(
                alone, static_cast<filtersGroupType_t>(type));
          });
      break;
    case FILTERS_CAUSE_ACTION:
      expectFirstRefused(
          entry.getActions(), why, stage, type,
          [](uint32_t kind) { return entryWith({}, {kind}); },
          [&](const FiltersEntry& alone) {
            return checks.groupActionValidation(
                alone, static_cast<filtersGroupStage_t>(stage));
          });
      break;
    case FILTERS_CAUSE_POLICER:
      EXPECT_EQ(why.value, entry.getPolicer().GetStage());
      EXPECT_EQ(groupIn(stage, type)
                    .insertEntry(entryWith({}, {}, entry.getPolicer())),
                why.code)
          << why.message;
      break;
    default:
      break;
  }
}

// Checks explainEntry against insertEntry on a fresh group of `stage` and
// `type`, through both overloads, and returns the explanation. An unknown
// type or stage must be blamed with its own number.
EntryExplanation expectAgreement(int32_t stage, int32_t type,
                                 const FiltersEntry& entry) {
  FiltersGroup group = groupIn(stage, type);
  const EntryExplanation byGroup = explainEntry(group, entry);
  const EntryExplanation byPair =
      explainEntry(static_cast<filtersGroupStage_t>(stage),
                   static_cast<filtersGroupType_t>(type), entry);
  const filtersErr_t inserted = group.insertEntry(entry);
  EXPECT_EQ(byGroup.code, inserted) << "stage " << stage << " type " << type;
  EXPECT_EQ(byPair.code, inserted) << "stage " << stage << " type " << type;
  EXPECT_EQ(byPair.cause, byGroup.cause);
  EXPECT_EQ(byPair.value, byGroup.value);
  EXPECT_EQ(byPair.message, byGroup.message);
  if (inserted == FILTERS_ERR_INVALID) {
    EXPECT_EQ(byGroup.cause, FILTERS_CAUSE_TYPE);
    EXPECT_EQ(byGroup.value, type);
  } else if (inserted == FILTERS_ERR_UNKNOWN_STAGE) {
    EXPECT_EQ(byGroup.cause, FILTERS_CAUSE_STAGE);
    EXPECT_EQ(byGroup.value, stage);
  }
  expectBlameHolds(stage, type, entry, byGroup);
  return byGroup;
}

// Runs expectAgreement for `entry` in every stage and type, expects each
// refusal with `code` to blame `cause` with `value`, and returns how many
// there were.
int agreeEverywhere(const FiltersEntry& entry, filtersErr_t code,
                    filtersCause_t cause, int32_t value) {
  int refusals = 0;
  for (int32_t stage : kStages) {
    for (int32_t type : kTypes) {
      const EntryExplanation why = expectAgreement(stage, type, entry);
      if (why.code != code) continue;
      ++refusals;
      EXPECT_EQ(why.cause, cause) << "stage " << stage << " type " << type;
      EXPECT_EQ(why.value, value) << "stage " << stage << " type " << type;
    }
  }
  return refusals;
}

TEST(ExplainEntry, AgreesWithInsertEntryForEveryMatchKindInEveryGroup) {
  for (uint32_t kind : kindsUpTo(FILTERS_MATCH_LAST)) {
    const FiltersEntry entry = entryWith({kind}, {});
    ASSERT_EQ(entry.getMatches().size(), 1u) << kind;
    // Every kind but MatchAll is refused by some known type, in every stage
    // whose actions pass.
    const int refusals =
        agreeEverywhere(entry, FILTERS_ERR_MATCH_NOT_ALLOWED,
                        FILTERS_CAUSE_MATCH, static_cast<int32_t>(kind));
    if (kind == FILTERS_MATCH_ALL) {
      EXPECT_EQ(refusals, static_cast<int>(kStages.size())) << kind;
    } else {
      EXPECT_GT(refusals, 0) << kind;
    }
  }
}

TEST(ExplainEntry, AgreesWithInsertEntryForEveryActionKindInEveryStage) {
  for (uint32_t kind : kindsUpTo(FILTERS_ACTION_LAST)) {
    const FiltersEntry entry = entryWith({}, {kind});
    ASSERT_EQ(entry.getActions().size(), 1u) << kind;
    // Stage 3 refuses every action but permit and deny.
    const int refusals =
        agreeEverywhere(entry, FILTERS_ERR_ACTION_NOT_ALLOWED,
                        FILTERS_CAUSE_ACTION, static_cast<int32_t>(kind));
    EXPECT_EQ(refusals > 0, kind > FILTERS_ACTION_DENY) << kind;
  }
}

TEST(ExplainEntry, AgreesWithInsertEntryForEveryPolicerStageInEveryStage) {
  for (policer::Stage own :
       {policer::STAGE_INGRESS, policer::STAGE_EGRESS, policer::STAGE_NONE}) {
    const FiltersEntry entry = entryWith({}, {}, stagedPolicer(own));
    ASSERT_EQ(entry.getPolicer().GetStage(), own);
    const int refusals = agreeEverywhere(entry, FILTERS_ERR_POLICER_STAGE,
                                         FILTERS_CAUSE_POLICER, own);
    EXPECT_EQ(refusals > 0, own != policer::STAGE_NONE) << own;
  }
}

TEST(ExplainEntry, AgreesWithInsertEntryOnEntriesMixingElements) {
  const std::vector<FiltersEntry> entries = [] {
    std::vector<FiltersEntry> mixed;
    mixed.push_back(
        entryWith({0, 9, 10}, {0, 10}, stagedPolicer(policer::STAGE_INGRESS)));
    mixed.push_back(
        entryWith({4, 7}, {1, 18}, stagedPolicer(policer::STAGE_EGRESS)));
    mixed.push_back(entryWith({14, 5}, {20, 3}));
    mixed.push_back(entryWith({}, {}));
    // Many kinds at once, so that most groups refuse several of them.
    mixed.push_back(entryWith({0, 2, 4, 11, 12, 17, 24, 27, 33, 38},
                              {0, 2, 6, 7, 10, 17, 18, 20},
                              stagedPolicer(policer::STAGE_INGRESS)));
    mixed.push_back(entryWith({3, 8, 16, 19, 21, 22, 23, 25, 26, 28, 35},
                              {1, 4, 5, 8, 9, 11, 12, 19},
                              stagedPolicer(policer::STAGE_EGRESS)));
    return mixed;
  }();
  for (const FiltersEntry& entry : entries) {
    for (int32_t stage : kStages) {
      for (int32_t type : kTypes) expectAgreement(stage, type, entry);
    }
  }
}

TEST(ExplainEntry, MatchesAreBlamedBeforeActionsAndActionsBeforeThePolicer) {
  const policer::Policer egress = stagedPolicer(policer::STAGE_EGRESS);
  // Type 8 refuses MatchSrcIPv4; stage 0 refuses ActionMapToCpuCosQueue and
  // an egress policer.
  const EntryExplanation all =
      expectAgreement(0, 8, entryWith({9}, {10}, egress));
  EXPECT_EQ(all.code, FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_EQ(all.cause, FILTERS_CAUSE_MATCH);
  const EntryExplanation actionAndPolicer =
      expectAgreement(0, 8, entryWith({27}, {10}, egress));
  EXPECT_EQ(actionAndPolicer.code, FILTERS_ERR_ACTION_NOT_ALLOWED);
  EXPECT_EQ(actionAndPolicer.cause, FILTERS_CAUSE_ACTION);
  const EntryExplanation policerOnly =
      expectAgreement(0, 8, entryWith({27}, {1}, egress));
  EXPECT_EQ(policerOnly.code, FILTERS_ERR_POLICER_STAGE);
  EXPECT_EQ(policerOnly.cause, FILTERS_CAUSE_POLICER);
}

TEST(ExplainEntry, UnknownTypeComesBeforeUnknownStage) {
  const EntryExplanation both = expectAgreement(9, 20, entryWith({}, {}));
  EXPECT_EQ(both.code, FILTERS_ERR_INVALID);
  EXPECT_EQ(both.message, "group type 20 is unknown");
  const EntryExplanation stage = expectAgreement(9, 3, entryWith({}, {}));
  EXPECT_EQ(stage.code, FILTERS_ERR_UNKNOWN_STAGE);
  EXPECT_EQ(stage.message, "group stage 9 is unknown");
}

TEST(ExplainEntry, BlamesTheLowestRefusedKind) {
  // Type 3 refuses both MatchDstMac (4) and MatchSrcIPv6 (14).
  const EntryExplanation matches =
      expectAgreement(2, 3, entryWith({0, 14, 4, 9}, {}));
  EXPECT_EQ(matches.value, FILTERS_MATCH_DST_MAC);
  // Stage 3 refuses ActionCopyToCpu (2) and ActionRedirect (11).
  const EntryExplanation actions =
      expectAgreement(3, 5, entryWith({}, {11, 0, 2}));
  EXPECT_EQ(actions.value, FILTERS_ACTION_COPY_TO_CPU);
}

TEST(ExplainEntry, MessagesNameTheRefusedElement) {
  EXPECT_EQ(explainEntry(FILTERS_STAGE_LOOKUP, FILTERS_TYPE_IPV6_VRF,
                         entryWith({9}, {}))
                .message,
            "match MatchSrcIPv4 (9) is not allowed in group type 8");
  EXPECT_EQ(
      explainEntry(FILTERS_STAGE_LOOKUP, FILTERS_TYPE_NONE, entryWith({}, {10}))
          .message,
      "action ActionMapToCpuCosQueue (10) is not allowed in stage 0");
  EXPECT_EQ(
      explainEntry(FILTERS_STAGE_LOOKUP, FILTERS_TYPE_NONE,
                   entryWith({}, {}, stagedPolicer(policer::STAGE_INGRESS)))
          .message,
      "policer stage 0 (Ingress) does not fit group stage 0, which "
      "requires policer stage 2 (None)");
  EXPECT_EQ(
      explainEntry(FILTERS_STAGE_INGRESS, FILTERS_TYPE_NONE,
                   entryWith({}, {}, stagedPolicer(policer::STAGE_EGRESS)))
          .message,
      "policer stage 1 (Egress) does not fit group stage 2, which "
      "requires policer stage 0 (Ingress)");
  EXPECT_EQ(explainEntry(static_cast<filtersGroupStage_t>(4), FILTERS_TYPE_NONE,
                         entryWith({}, {}))
                .message,
            "group stage 4 is unknown");
  EXPECT_EQ(explainEntry(FILTERS_STAGE_LOOKUP,
                         static_cast<filtersGroupType_t>(15), entryWith({}, {}))
                .message,
            "group type 15 is unknown");
  const EntryExplanation fits =
      explainEntry(FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4,
                   entryWith({9}, {0}, stagedPolicer(policer::STAGE_INGRESS)));
  EXPECT_EQ(fits.code, FILTERS_OK);
  EXPECT_EQ(fits.cause, FILTERS_CAUSE_NONE);
  EXPECT_EQ(fits.message, "fits group stage 2, type 3");
}

TEST(ExplainEntry, TheParentPolicerIsNotChecked) {
  FiltersEntry entry = entryWith({}, {});
  entry.setPolicerParent(stagedPolicer(policer::STAGE_EGRESS));
  EXPECT_EQ(expectAgreement(2, 0, entry).code, FILTERS_OK);
}

TEST(ExplainEntry, LeavesTheGroupAsItWas) {
  FiltersGroup group(3);
  ASSERT_EQ(group.setStage(FILTERS_STAGE_INGRESS), FILTERS_OK);
  ASSERT_EQ(group.setType(FILTERS_TYPE_IPV4), FILTERS_OK);
  const FiltersGroup before(group);
  EXPECT_EQ(explainEntry(group, entryWith({9}, {0})).code, FILTERS_OK);
  EXPECT_EQ(explainEntry(group, entryWith({4}, {})).code,
            FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_TRUE(group == before);
  EXPECT_TRUE(group.getEntriesRef().empty());
}

// ---- C interface ----

TEST(ExplainEntryC, AgreesWithFiltersGroupInsertEntry) {
  for (uint32_t kind : kindsUpTo(FILTERS_ACTION_LAST)) {
    FiltersGroup* g = newFiltersGroup(4);
    filtersGroupSetStage(g, FILTERS_STAGE_VLAN);
    FiltersEntry entry = entryWith({}, {kind});
    filtersExplanation_t why;
    std::memset(&why, 0x55, sizeof why);
    const filtersErr_t explained = filtersGroupExplainEntry(g, &entry, &why);
    EXPECT_EQ(explained, filtersGroupInsertEntry(g, &entry)) << kind;
    EXPECT_EQ(why.code, explained);
    EXPECT_EQ(
        why.message,
        explainEntry(FILTERS_STAGE_VLAN, FILTERS_TYPE_NONE, entry).message);
    deleteFiltersGroup(g);
  }
}

TEST(ExplainEntryC, WritesCodeCauseValueAndMessage) {
  FiltersEntry entry = entryWith({14}, {});
  filtersExplanation_t why;
  ASSERT_EQ(filtersExplainEntry(FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4,
                                &entry, &why),
            FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_EQ(why.code, FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_EQ(why.cause, FILTERS_CAUSE_MATCH);
  EXPECT_EQ(why.value, FILTERS_MATCH_SRC_IPV6);
  EXPECT_STREQ(why.message,
               "match MatchSrcIPv6 (14) is not allowed in group type 3");
}

TEST(ExplainEntryC, MissingEntryOrRecordIsRefused) {
  FiltersGroup* g = newFiltersGroup(4);
  FiltersEntry entry(1);
  filtersExplanation_t why;
  EXPECT_EQ(filtersGroupExplainEntry(g, nullptr, &why), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersGroupExplainEntry(g, &entry, nullptr), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersExplainEntry(FILTERS_STAGE_LOOKUP, FILTERS_TYPE_NONE,
                                nullptr, &why),
            FILTERS_ERR_REFUSED);
  deleteFiltersGroup(g);
}

TEST(ExplainEntryCDeathTest, NullGroupAborts) {
  FiltersEntry entry(1);
  filtersExplanation_t why;
  EXPECT_DEATH(filtersGroupExplainEntry(nullptr, &entry, &why), "g != nullptr");
}

// ---- C wire form and dumps ----

TEST(WireC, SerializedGroupReadsBackEqual) {
  FiltersGroup group = groupIn(2, 3);
  ASSERT_EQ(group.insertEntry(entryWith({9, 5}, {0, 9})), FILTERS_OK);
  size_t size = 0;
  uint8_t* bytes = filtersGroupSerialize(&group, &size);
  ASSERT_NE(bytes, nullptr);
  std::string expected;
  group.serialize(&expected);
  ASSERT_EQ(size, expected.size());
  EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), size), expected);
  EXPECT_EQ(bytes[size], 0);
  FiltersGroup* back = newFiltersGroupFromBytes(bytes, size);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(*back == group);
  deleteFiltersGroup(back);
  std::free(bytes);
}

TEST(WireC, NoBytesGiveGroupZero) {
  FiltersGroup* g = newFiltersGroupFromBytes(nullptr, 0);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(filtersGroupGetId(g), 0);
  EXPECT_EQ(filtersGroupGetStage(g), FILTERS_STAGE_LOOKUP);
  deleteFiltersGroup(g);
}

TEST(WireCDeathTest, NullBytesWithASizeAbort) {
  EXPECT_DEATH(newFiltersGroupFromBytes(nullptr, 4),
               "bytes != nullptr \\|\\| size == 0");
}

TEST(WireC, BytesTheLibraryCannotLoadGiveNull) {
  // An MPLS port action without its identifiers makes the loader throw.
  FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(1);
  pb.set_type_(0);
  FiltersEntryPB* entry = pb.add_entries_();
  *entry = entryMessage(1, {}, {});
  entry->add_actions_()->set_type_(FILTERS_ACTION_MPLS_PORT_SET);
  std::string bytes;
  pb.SerializeToString(&bytes);
  EXPECT_EQ(newFiltersGroupFromBytes(
                reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
            nullptr);
}

TEST(WireC, DumpsAreTheStreamDumps) {
  FiltersGroup group = groupIn(2, 3);
  FiltersEntry entry =
      entryWith({9}, {1}, stagedPolicer(policer::STAGE_INGRESS));
  ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
  std::ostringstream groupText;
  std::ostringstream entryText;
  // The dumps live at global scope, hidden here by the counter's operator.
  ::operator<<(groupText, group);
  ::operator<<(entryText, entry);
  char* groupDump = filtersGroupDump(&group);
  char* entryDump = filtersEntryDump(&entry);
  EXPECT_EQ(std::string(groupDump), groupText.str());
  EXPECT_EQ(std::string(entryDump), entryText.str());
  EXPECT_EQ(std::string(groupDump).rfind("=FiltersGroup=\n  ID: 1\n", 0), 0u);
  std::free(groupDump);
  std::free(entryDump);
}

}  // namespace
}  // namespace FiltersCommon
