// What a group admits: every (type, match class), (stage, action class),
// (stage, type) and (group stage, policer stage) pair against tables written
// here by hand, and the order in which the checks report their codes.

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"
#include "groups_samples.h"
#include "policer/policer.h"

namespace {

using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersGroup;
using FiltersCommon::filtersGroupStage_t;
using FiltersCommon::filtersGroupType_t;
using groups_test::ActionSample;
using groups_test::ActionSamples;
using groups_test::KindSample;
using groups_test::MatchSample;
using groups_test::MatchSamples;

// The match kinds each group type allows.
const std::map<int, std::set<int>> kTypeMatches = {
    {0, {}},
    {1, {0, 1, 2, 3, 4, 7, 8, 18, 19, 23, 28, 30}},
    {2, {0, 1, 2, 3, 7, 9, 11, 21}},
    {3, {0, 1, 2, 3, 5, 6, 9, 10, 17, 26, 29, 31, 32}},
    {4, {0, 1, 2, 3, 5, 6, 9, 10, 11, 12, 13, 17, 20}},
    {5, {0, 1, 2, 3, 4, 11, 12, 13, 22}},
    {6, {0, 1, 2, 3, 4, 7, 11, 12, 13, 16}},
    {7, {0, 1, 3, 4, 5, 8, 17, 24, 25, 31}},
    {8, {0, 15, 27}},
    {9, {0, 1, 2, 11, 12, 13, 20}},
    {10, {0, 1, 3, 9, 10}},
    {11, {0, 3, 4, 17, 24, 33, 34}},
    {12, {0, 3, 17, 24, 31, 35, 36, 37}},
    {13, {0, 3, 4, 17, 24, 31, 33, 34}},
    {14, {0, 1, 2, 3, 5, 6, 17, 26, 38}},
};

// The group types each stage allows.
const std::map<int, std::set<int>> kStageTypes = {
    {0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}},
    {1, {0, 4, 6}},
    {2, {0, 1, 2, 3, 7, 8, 9, 10, 11, 12, 13, 14}},
    {3, {0, 5}},
};

// The action kinds each stage allows.
const std::map<int, std::set<int>> kStageActions = {
    {0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16, 17, 18, 19}},
    {1, {0, 1, 6, 7, 17, 18}},
    {2, {0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, 14, 15, 16, 19, 20}},
    {3, {0, 1}},
};

// The policer stage an entry's policer needs in each group stage (a policer
// without stage, 2, fits everywhere).
const std::map<int, int> kStagePolicer = {{0, 2}, {1, 2}, {2, 0}, {3, 1}};

filtersGroupStage_t Stage(int value) {
  return static_cast<filtersGroupStage_t>(value);
}

filtersGroupType_t Type(int value) {
  return static_cast<filtersGroupType_t>(value);
}

// The code a check against `table` must give for `value` in row `row`.
int Expected(const std::map<int, std::set<int>>& table, int row, int value,
             int unknownRow, int refused) {
  auto it = table.find(row);
  if (it == table.end()) return unknownRow;
  return it->second.count(value) != 0 ? 0 : refused;
}

// An entry holding exactly `sample`.
FiltersEntry EntryWith(const KindSample& sample, uint32_t id = 1) {
  FiltersEntry entry(id);
  EXPECT_EQ(sample.addTo(&entry), 0) << sample.name;
  return entry;
}

FiltersEntry EntryWithPolicer(policer::Stage stage, uint32_t id = 1) {
  FiltersEntry entry(id);
  entry.setPolicer(policer::Policer(3, stage, policer::Mode::Flow(100, 200)));
  return entry;
}

// A group in `stage` with `type`, reached the documented way.
FiltersGroup GroupIn(int stage, int type) {
  FiltersGroup group(1);
  EXPECT_EQ(group.setStage(Stage(stage)), 0);
  EXPECT_EQ(group.setType(Type(type)), 0);
  return group;
}

TEST(GroupSamples, EveryClassLandsUnderItsOwnKind) {
  ASSERT_EQ(MatchSamples().size(), 40u);
  ASSERT_EQ(ActionSamples().size(), 21u);
  for (const KindSample& sample : MatchSamples()) {
    FiltersEntry entry = EntryWith(sample);
    ASSERT_EQ(entry.getMatches().size(), 1u) << sample.name;
    EXPECT_EQ(entry.getMatches().begin()->first, sample.kind) << sample.name;
  }
  for (const KindSample& sample : ActionSamples()) {
    FiltersEntry entry = EntryWith(sample);
    ASSERT_EQ(entry.getActions().size(), 1u) << sample.name;
    EXPECT_EQ(entry.getActions().begin()->first, sample.kind) << sample.name;
  }
}

TEST(GroupTables, HoldExactlyTheDocumentedRows) {
  std::map<int, std::set<int>> types;
  for (const auto& row : FiltersGroup::TypeDescription_) {
    types[row.first].insert(row.second.begin(), row.second.end());
  }
  std::map<int, std::set<int>> stageTypes;
  for (const auto& row : FiltersGroup::StageTypesDescription_) {
    stageTypes[row.first].insert(row.second.begin(), row.second.end());
  }
  std::map<int, std::set<int>> stageActions;
  for (const auto& row : FiltersGroup::StageActionsDescription_) {
    stageActions[row.first].insert(row.second.begin(), row.second.end());
  }
  EXPECT_EQ(types, kTypeMatches);
  EXPECT_EQ(stageTypes, kStageTypes);
  EXPECT_EQ(stageActions, kStageActions);
}

// For every row from `first` to `last` and every sample, `check` given the
// row and an entry holding only that sample must answer what `table` says.
void ExpectMatrix(const std::map<int, std::set<int>>& table, int first,
                  int last, const std::vector<KindSample>& samples,
                  int unknownRow, int refused,
                  const std::function<int(int, const FiltersEntry&)>& check) {
  for (int row = first; row <= last; ++row) {
    for (const KindSample& sample : samples) {
      EXPECT_EQ(check(row, EntryWith(sample, 5)),
                Expected(table, row, sample.kind, unknownRow, refused))
          << "row " << row << ", " << sample.name;
    }
  }
}

// insertEntry's code for `entry` in `group`, checking that the group holds
// the entry exactly when it was accepted.
int InsertInto(FiltersGroup group, const FiltersEntry& entry) {
  const int code = group.insertEntry(entry);
  EXPECT_EQ(group.getEntriesRef().size(), code == 0 ? 1u : 0u);
  return code;
}

TEST(GroupMatchValidation, EveryTypeAgainstEveryMatchClass) {
  const FiltersGroup group(1);
  ExpectMatrix(kTypeMatches, -1, 16, MatchSamples(), -4, -6,
               [&](int type, const FiltersEntry& entry) {
                 return group.groupMatchValidation(entry, Type(type));
               });
}

TEST(GroupInsertEntry, EveryTypeAgainstEveryMatchClass) {
  ExpectMatrix(kTypeMatches, 0, 14, MatchSamples(), -4, -6,
               [](int type, const FiltersEntry& entry) {
                 return InsertInto(GroupIn(0, type), entry);
               });
}

TEST(GroupActionValidation, EveryStageAgainstEveryActionClass) {
  const FiltersGroup group(1);
  ExpectMatrix(kStageActions, -1, 5, ActionSamples(), -8, -9,
               [&](int stage, const FiltersEntry& entry) {
                 return group.groupActionValidation(entry, Stage(stage));
               });
}

TEST(GroupInsertEntry, EveryStageAgainstEveryActionClass) {
  ExpectMatrix(kStageActions, 0, 3, ActionSamples(), -8, -9,
               [](int stage, const FiltersEntry& entry) {
                 return InsertInto(GroupIn(stage, 0), entry);
               });
}

TEST(GroupStageValidation, EveryStageAgainstEveryType) {
  FiltersGroup group(1);
  for (int stage = -1; stage <= 5; ++stage) {
    for (int type = -1; type <= 16; ++type) {
      const int expected = Expected(kStageTypes, stage, type, -8, -7);
      EXPECT_EQ(group.groupStageValidation(Stage(stage), Type(type)), expected)
          << "stage " << stage << ", type " << type;
    }
  }
}

TEST(GroupSetType, EveryStageAgainstEveryType) {
  for (const auto& row : kStageTypes) {
    for (int type = -1; type <= 16; ++type) {
      FiltersGroup group = GroupIn(row.first, 0);
      const bool allowed = row.second.count(type) != 0;
      EXPECT_EQ(group.setType(Type(type)), allowed ? 0 : -7)
          << "stage " << row.first << ", type " << type;
      EXPECT_EQ(group.getType(), allowed ? type : 0);
    }
  }
}

TEST(GroupSetStage, EveryTypeAgainstEveryStage) {
  for (int type = 0; type <= 14; ++type) {
    for (int stage = -1; stage <= 5; ++stage) {
      FiltersGroup group = GroupIn(0, type);
      const int expected = Expected(kStageTypes, stage, type, -8, -7);
      EXPECT_EQ(group.setStage(Stage(stage)), expected)
          << "type " << type << ", stage " << stage;
      EXPECT_EQ(group.getStage(), expected == 0 ? stage : 0);
    }
  }
}

TEST(GroupPolicerValidation, EveryPolicerStageAgainstEveryGroupStage) {
  FiltersGroup group(1);
  for (int policerStage = 0; policerStage <= 2; ++policerStage) {
    for (int stage = -1; stage <= 5; ++stage) {
      const policer::Policer policer(
          1, static_cast<policer::Stage>(policerStage), policer::Mode());
      int expected = 0;
      if (policerStage != 2) {
        auto it = kStagePolicer.find(stage);
        expected = it == kStagePolicer.end()    ? -8
                   : it->second == policerStage ? 0
                                                : -10;
      }
      EXPECT_EQ(group.groupPolicerValidation(policer, Stage(stage)), expected)
          << "policer stage " << policerStage << ", group stage " << stage;
    }
  }
}

TEST(GroupInsertEntry, EveryPolicerStageAgainstEveryGroupStage) {
  for (int policerStage = 0; policerStage <= 2; ++policerStage) {
    for (const auto& row : kStagePolicer) {
      FiltersGroup group = GroupIn(row.first, 0);
      const bool allowed = policerStage == 2 || policerStage == row.second;
      EXPECT_EQ(group.insertEntry(EntryWithPolicer(
                    static_cast<policer::Stage>(policerStage))),
                allowed ? 0 : -10)
          << "policer stage " << policerStage << ", group stage " << row.first;
    }
  }
}

TEST(GroupInsertEntry, NewGroupTakesOnlyEntriesWithoutMatches) {
  FiltersGroup group(1);
  EXPECT_EQ(group.insertEntry(FiltersEntry(1)), 0);
  EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchAll"), 2)), -6);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().begin()->first, 1u);
}

TEST(GroupInsertEntry, TypeEightRefusesSourceIPv4) {
  FiltersGroup group = GroupIn(0, 8);
  EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchSrcIPv4"))), -6);
  EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchDstIPv6"))), 0);
}

TEST(GroupInsertEntry, NoTypeAcceptsSourceIPv6) {
  for (int type = 0; type <= 14; ++type) {
    FiltersGroup group = GroupIn(0, type);
    EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchSrcIPv6"))), -6)
        << "type " << type;
  }
}

TEST(GroupInsertEntry, DscpIsAllowedWhereverToSIs) {
  for (int type : {4, 9}) {
    FiltersGroup group = GroupIn(0, type);
    EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchDSCP"))), 0);
  }
  FiltersGroup group = GroupIn(0, 3);
  EXPECT_EQ(group.insertEntry(EntryWith(MatchSample("MatchDSCP"))), -6);
}

TEST(GroupInsertEntry, MatchRefusalComesBeforeActionAndPolicer) {
  // Type 8 refuses the source MAC, stage 0 the CPU queue mapping, and stage 0
  // wants a policer without stage.
  FiltersGroup group = GroupIn(0, 8);
  FiltersEntry entry = EntryWithPolicer(policer::STAGE_INGRESS);
  ASSERT_EQ(MatchSample("MatchSrcMac").addTo(&entry), 0);
  ASSERT_EQ(ActionSample("ActionMapToCpuCosQueue").addTo(&entry), 0);
  EXPECT_EQ(group.insertEntry(entry), -6);
  ASSERT_EQ(entry.deleteMatch(FiltersCommon::FILTERS_MATCH_SRC_MAC), 0);
  EXPECT_EQ(group.insertEntry(entry), -9);
  ASSERT_EQ(
      entry.deleteAction(FiltersCommon::FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE),
      0);
  EXPECT_EQ(group.insertEntry(entry), -10);
  EXPECT_TRUE(group.getEntriesRef().empty());
  entry.setPolicer(policer::Policer());
  EXPECT_EQ(group.insertEntry(entry), 0);
}

TEST(GroupInsertEntry, FirstRefusedMatchInKindOrderDecides) {
  // Both matches are refused by type 10; the code is the same whichever is
  // met first, but the entry must not slip through.
  FiltersGroup group = GroupIn(0, 10);
  FiltersEntry entry(1);
  ASSERT_EQ(MatchSample("MatchSrcIPv4").addTo(&entry), 0);
  ASSERT_EQ(MatchSample("MatchUnknownDestIp").addTo(&entry), 0);
  EXPECT_EQ(group.insertEntry(entry), -6);
  ASSERT_EQ(entry.deleteMatch(FiltersCommon::FILTERS_MATCH_UNKNOWN_DEST_IP), 0);
  EXPECT_EQ(group.insertEntry(entry), 0);
}

TEST(GroupInsertEntry, ParentPolicerIsNotChecked) {
  FiltersGroup group(1);
  FiltersEntry entry(1);
  entry.setPolicerParent(
      policer::Policer(9, policer::STAGE_EGRESS, policer::Mode()));
  EXPECT_EQ(group.insertEntry(entry), 0);
}

TEST(GroupMatchValidation, UnknownTypeIsInvalidEvenWithoutMatches) {
  FiltersGroup group(1);
  const FiltersEntry empty(1);
  EXPECT_EQ(group.groupMatchValidation(empty, Type(15)), -4);
  EXPECT_EQ(group.groupMatchValidation(empty, Type(-1)), -4);
  EXPECT_EQ(group.groupMatchValidation(empty, Type(0)), 0);
  EXPECT_EQ(
      group.groupMatchValidation(EntryWith(MatchSample("MatchAll")), Type(15)),
      -4);
}

TEST(GroupActionValidation, UnknownStageIsReportedEvenWithoutActions) {
  FiltersGroup group(1);
  const FiltersEntry empty(1);
  EXPECT_EQ(group.groupActionValidation(empty, Stage(4)), -8);
  EXPECT_EQ(group.groupActionValidation(empty, Stage(-1)), -8);
  EXPECT_EQ(group.groupActionValidation(empty, Stage(3)), 0);
}

TEST(GroupValidation, StageFourAndTypeFifteenAreUnknown) {
  FiltersGroup group(1);
  const FiltersEntry empty(1);
  EXPECT_EQ(group.groupStageValidation(Stage(4), Type(0)), -8);
  EXPECT_EQ(group.groupStageValidation(Stage(0), Type(15)), -7);
  EXPECT_EQ(group.groupMatchValidation(empty, Type(15)), -4);
  EXPECT_EQ(group.groupPolicerValidation(
                policer::Policer(1, policer::STAGE_INGRESS, policer::Mode()),
                Stage(4)),
            -8);
  // A policer without stage is accepted before the stage is looked up.
  EXPECT_EQ(group.groupPolicerValidation(policer::Policer(), Stage(4)), 0);
}

TEST(GroupValidation, ReadsOnlyItsArguments) {
  // The group's own stage and type play no part in the answers.
  FiltersGroup lookup(1);
  FiltersGroup egress = GroupIn(3, 5);
  const FiltersEntry entry = EntryWith(ActionSample("ActionSetPcp"));
  EXPECT_EQ(egress.groupActionValidation(entry, Stage(0)), 0);
  EXPECT_EQ(lookup.groupActionValidation(entry, Stage(3)), -9);
  EXPECT_EQ(egress.groupStageValidation(Stage(1), Type(4)), 0);
}

TEST(GroupSetStage, TypeOneCannotMoveToEgressOrUnknownStage) {
  FiltersGroup group = GroupIn(0, 1);
  EXPECT_EQ(group.setStage(Stage(3)), -7);
  EXPECT_EQ(group.getStage(), 0);
  EXPECT_EQ(group.setStage(Stage(4)), -8);
  EXPECT_EQ(group.getStage(), 0);
}

TEST(GroupSetStage, RefusesStageThatAnEntryActionDoesNotFit) {
  FiltersGroup group = GroupIn(2, 0);
  ASSERT_EQ(
      group.insertEntry(EntryWith(ActionSample("ActionMapToCpuCosQueue"))), 0);
  EXPECT_EQ(group.setStage(Stage(0)), -9);
  EXPECT_EQ(group.getStage(), 2);
  EXPECT_EQ(group.getEntriesRef().size(), 1u);
}

TEST(GroupSetStage, RefusesStageThatAnEntryPolicerDoesNotFit) {
  FiltersGroup group = GroupIn(2, 0);
  ASSERT_EQ(group.insertEntry(EntryWithPolicer(policer::STAGE_INGRESS)), 0);
  EXPECT_EQ(group.setStage(Stage(0)), -10);
  EXPECT_EQ(group.setStage(Stage(3)), -10);
  EXPECT_EQ(group.getStage(), 2);
  EXPECT_EQ(group.setStage(Stage(2)), 0);
}

TEST(GroupSetStage, ChecksTypeFirstThenEntriesInIdentifierOrder) {
  FiltersGroup group = GroupIn(2, 0);
  // Entry 1 has a policer stage 0 refuses, entry 2 an action it refuses.
  ASSERT_EQ(group.insertEntry(EntryWithPolicer(policer::STAGE_INGRESS, 1)), 0);
  ASSERT_EQ(
      group.insertEntry(EntryWith(ActionSample("ActionDoNotLearnMac"), 2)), 0);
  EXPECT_EQ(group.setStage(Stage(0)), -10);
  ASSERT_EQ(group.removeEntry(1), 0);
  EXPECT_EQ(group.setStage(Stage(0)), -9);
  // Within one entry, the action is checked before the policer.
  FiltersEntry both = EntryWithPolicer(policer::STAGE_INGRESS, 0);
  ASSERT_EQ(ActionSample("ActionMapToCpuCosQueue").addTo(&both), 0);
  ASSERT_EQ(group.insertEntry(both), 0);
  EXPECT_EQ(group.setStage(Stage(0)), -9);
  // The type is checked before any entry: type 0 fits every stage, type 1
  // does not fit stage 3.
  ASSERT_EQ(group.setType(Type(1)), 0);
  EXPECT_EQ(group.setStage(Stage(3)), -7);
  EXPECT_EQ(group.getStage(), 2);
  EXPECT_EQ(group.getEntriesRef().size(), 2u);
}

TEST(GroupSetType, EmptyLookupGroupTakesTypeFiveThenRefusesVlanStage) {
  FiltersGroup group(1);
  EXPECT_EQ(group.setType(Type(5)), 0);
  EXPECT_EQ(group.getType(), 5);
  EXPECT_EQ(group.setStage(Stage(1)), -7);
  EXPECT_EQ(group.getStage(), 0);
}

TEST(GroupSetType, RefusesTypeThatAnEntryMatchDoesNotFit) {
  FiltersGroup group = GroupIn(0, 4);
  ASSERT_EQ(group.insertEntry(EntryWith(MatchSample("MatchToS"), 1)), 0);
  ASSERT_EQ(group.insertEntry(EntryWith(MatchSample("MatchTPID"), 2)), 0);
  const FiltersGroup before = group;
  EXPECT_EQ(group.setType(Type(9)), -6);  // type 9 has no TPID
  EXPECT_EQ(group.setType(Type(3)), -6);  // type 3 has no ToS
  EXPECT_TRUE(group == before);
  EXPECT_EQ(group.setType(Type(4)), 0);
  ASSERT_EQ(group.removeEntry(2), 0);
  EXPECT_EQ(group.setType(Type(9)), 0);
}

TEST(GroupSetType, ChecksStageBeforeEntries) {
  FiltersGroup group = GroupIn(1, 4);
  ASSERT_EQ(group.insertEntry(EntryWith(MatchSample("MatchToS"))), 0);
  // Type 5 is not in stage 1 and would refuse the ToS match as well.
  EXPECT_EQ(group.setType(Type(5)), -7);
  EXPECT_EQ(group.setType(Type(6)), -6);
  EXPECT_EQ(group.getType(), 4);
}

TEST(GroupSetType, UnknownTypeIsNotInAnyStage) {
  FiltersGroup group(1);
  EXPECT_EQ(group.setType(Type(15)), -7);
  EXPECT_EQ(group.getType(), 0);
}

}  // namespace
