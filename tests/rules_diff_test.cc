// Group differences: what diffGroups records, and what applying it does to a
// group, on hand-made cases and on seeded random pairs of groups.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filters_common.h"
#include "filter_groups.pb.h"
#include "groups_samples.h"

namespace {

using namespace FiltersCommon;  // NOLINT(build/namespaces)
using groups_test::ActionSample;
using groups_test::ActionSamples;
using groups_test::EntryOf;
using groups_test::KindSample;
using groups_test::MatchSample;
using groups_test::MatchSamples;

// A group of `stage` and `type` built through the public setters.
FiltersGroup GroupIn(filtersGroupId_t id, filtersGroupStage_t stage,
                     filtersGroupType_t type) {
  FiltersGroup group(id);
  EXPECT_EQ(group.setStage(stage), FILTERS_OK);
  EXPECT_EQ(group.setType(type), FILTERS_OK);
  return group;
}

// An entry holding the named match and action samples.
FiltersEntry EntryWith(filtersEntryId_t id, filtersEntryPriority_t priority,
                       const std::vector<std::string>& matches,
                       const std::vector<std::string>& actions) {
  FiltersEntry entry = EntryOf(id, priority);
  for (const std::string& name : matches) {
    EXPECT_EQ(MatchSample(name).addTo(&entry), FILTERS_OK) << name;
  }
  for (const std::string& name : actions) {
    EXPECT_EQ(ActionSample(name).addTo(&entry), FILTERS_OK) << name;
  }
  return entry;
}

// A group read from the wire with the given header and no entries: its
// stage and type are stored as they come, valid or not.
FiltersGroup WireGroup(filtersGroupId_t id, uint32_t stage, uint32_t type) {
  FiltersGroupPB message;
  message.set_id_(id);
  message.set_priority_(0);
  message.set_stage_(stage);
  message.set_type_(type);
  return FiltersGroup(message.SerializeAsString());
}

// ---- Random groups ----

template <class T>
T Pick(std::mt19937& rng, const std::vector<T>& values) {
  return values[std::uniform_int_distribution<size_t>(0,
                                                      values.size() - 1)(rng)];
}

bool Chance(std::mt19937& rng, int percent) {
  return std::uniform_int_distribution<int>(0, 99)(rng) < percent;
}

// A random entry that fits `stage` and `type`: some of the match classes the
// type allows (an entry may still refuse one beside another), some of the
// actions the stage allows, sometimes counters and a policer of the stage's
// policer stage.
FiltersEntry RandomEntry(std::mt19937& rng, filtersEntryId_t id,
                         filtersGroupStage_t stage, filtersGroupType_t type) {
  FiltersEntry entry =
      EntryOf(id, std::uniform_int_distribution<uint32_t>(0, 2)(rng));
  const auto& allowedMatches = FiltersGroup::TypeDescription_.at(type);
  for (const KindSample& sample : MatchSamples()) {
    if (allowedMatches.count(static_cast<filtersMatch_t>(sample.kind)) != 0 &&
        Chance(rng, 30)) {
      sample.addTo(&entry);
    }
  }
  const auto& allowedActions = FiltersGroup::StageActionsDescription_.at(stage);
  for (const KindSample& sample : ActionSamples()) {
    if (allowedActions.count(static_cast<filtersAction_t>(sample.kind)) != 0 &&
        Chance(rng, 20)) {
      sample.addTo(&entry);
    }
  }
  if (Chance(rng, 30)) {
    entry.setCounter(
        Counter(static_cast<uint16_t>(rng() % 4), COUNTER_TYPE_PACKETS));
  }
  if (Chance(rng, 30)) {
    entry.setPolicer(policer::Policer(rng() % 3, *requiredPolicerStage(stage),
                                      policer::Mode::SrTcm(1, 2, 3)));
  }
  return entry;
}

std::vector<filtersGroupStage_t> Stages() {
  std::vector<filtersGroupStage_t> stages;
  for (const auto& row : FiltersGroup::StageTypesDescription_) {
    stages.push_back(row.first);
  }
  return stages;
}

std::vector<filtersGroupType_t> TypesOf(filtersGroupStage_t stage) {
  const auto& types = FiltersGroup::StageTypesDescription_.at(stage);
  return {types.begin(), types.end()};
}

// Entry identifiers come from a small range so that random groups share
// many of them.
constexpr filtersEntryId_t kIdRange = 16;

FiltersGroup RandomGroup(std::mt19937& rng, filtersGroupStage_t stage,
                         filtersGroupType_t type) {
  FiltersGroup group = GroupIn(9, stage, type);
  group.setPriority(static_cast<filtersGroupPriority_t>(rng() % 3));
  for (filtersEntryId_t id = 0; id < kIdRange; ++id) {
    if (Chance(rng, 50)) {
      EXPECT_EQ(group.insertEntry(RandomEntry(rng, id, stage, type)),
                FILTERS_OK);
    }
  }
  return group;
}

// A random successor of `from`: often the same stage and type, often other
// ones; it keeps some of `from`'s entries that fit it unchanged, alters the
// priority of some, and replaces, drops or adds others.
FiltersGroup RandomSuccessor(std::mt19937& rng, const FiltersGroup& from) {
  filtersGroupStage_t stage = from.getStage();
  filtersGroupType_t type = from.getType();
  if (Chance(rng, 60)) {
    stage = Pick(rng, Stages());
    type = Pick(rng, TypesOf(stage));
  }
  FiltersGroup to = RandomGroup(rng, stage, type);
  if (Chance(rng, 70)) to.setPriority(from.getPriority());
  for (const auto& [id, entry] : from.getEntriesRef()) {
    if (explainEntry(stage, type, entry).code != FILTERS_OK) continue;
    if (Chance(rng, 50)) {
      EXPECT_EQ(to.insertEntry(entry), FILTERS_OK);
    } else if (Chance(rng, 30)) {
      FiltersEntry altered(entry);
      altered.setPriority(entry.getPriority() + 1);
      EXPECT_EQ(to.insertEntry(altered), FILTERS_OK);
    }
  }
  return to;
}

// ---- The law ----

TEST(GroupDiffLaw, ApplyingDiffToCopyOfOldGroupYieldsNewGroup) {
  std::mt19937 rng(20260511);
  int headerBothChanged = 0;
  for (int round = 0; round < 400; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    filtersGroupStage_t stage = Pick(rng, Stages());
    FiltersGroup a = RandomGroup(rng, stage, Pick(rng, TypesOf(stage)));
    FiltersGroup b = RandomSuccessor(rng, a);
    FiltersGroupDiff diff = diffGroups(a, b);
    if (diff.stageChanged() && diff.typeChanged()) ++headerBothChanged;

    FiltersGroup applied(a);
    ASSERT_EQ(diff.applyTo(&applied), FILTERS_OK) << a << b;
    EXPECT_TRUE(applied == b) << applied << b;
  }
  // The pairs really exercise changes of stage and type together.
  EXPECT_GT(headerBothChanged, 50);
}

TEST(GroupDiffLaw, DiffIsEmptyExactlyWhenGroupsAreEqual) {
  std::mt19937 rng(7);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    filtersGroupStage_t stage = Pick(rng, Stages());
    FiltersGroup a = RandomGroup(rng, stage, Pick(rng, TypesOf(stage)));
    FiltersGroup b =
        Chance(rng, 30) ? FiltersGroup(a) : RandomSuccessor(rng, a);
    EXPECT_EQ(diffGroups(a, b).empty(), a == b);
  }
}

// The three lists partition the identifiers of both groups exactly as their
// definitions say, each strictly ascending.
TEST(GroupDiffLaw, ListsAreAscendingAndClassifyEveryIdentifier) {
  std::mt19937 rng(11);
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    filtersGroupStage_t stage = Pick(rng, Stages());
    FiltersGroup a = RandomGroup(rng, stage, Pick(rng, TypesOf(stage)));
    FiltersGroup b = RandomSuccessor(rng, a);
    FiltersGroupDiff diff = diffGroups(a, b);

    std::vector<filtersEntryId_t> added, removed, changed;
    for (filtersEntryId_t id = 0; id < kIdRange; ++id) {
      const auto& before = a.getEntriesRef();
      const auto& after = b.getEntriesRef();
      const bool inA = before.count(id) != 0, inB = after.count(id) != 0;
      if (inB && !inA) added.push_back(id);
      if (inA && !inB) removed.push_back(id);
      if (inA && inB && !(before.at(id) == after.at(id))) changed.push_back(id);
    }
    EXPECT_EQ(diff.added(), added);
    EXPECT_EQ(diff.removed(), removed);
    EXPECT_EQ(diff.changed(), changed);
    for (const auto* list : {&diff.added(), &diff.removed(), &diff.changed()}) {
      EXPECT_TRUE(std::adjacent_find(list->begin(), list->end(),
                                     std::greater_equal<filtersEntryId_t>()) ==
                  list->end());
    }
  }
}

// ---- Hand-made cases ----

TEST(GroupDiff, EqualGroupsGiveEmptyDiffThatChangesNothing) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  a.setPriority(3);
  ASSERT_EQ(a.insertEntry(EntryWith(1, 5, {"MatchSrcIPv4"}, {"ActionDeny"})),
            FILTERS_OK);
  FiltersGroupDiff diff = diffGroups(a, FiltersGroup(a));
  EXPECT_TRUE(diff.empty());
  EXPECT_FALSE(diff.headerChanged());
  EXPECT_TRUE(diff.added().empty());
  EXPECT_TRUE(diff.removed().empty());
  EXPECT_TRUE(diff.changed().empty());

  // Applied to any group, it is a no-op, even where the header does not
  // make a valid pair.
  FiltersGroup odd = WireGroup(4, 1, 3);
  const FiltersGroup before(odd);
  EXPECT_EQ(diff.applyTo(&odd), FILTERS_OK);
  EXPECT_TRUE(odd == before);
}

TEST(GroupDiff, RecordsBothHeadersAndWhichFieldsChanged) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4);
  b.setPriority(8);
  FiltersGroupDiff diff = diffGroups(a, b);
  EXPECT_FALSE(diff.empty());
  EXPECT_FALSE(diff.idChanged());
  EXPECT_TRUE(diff.priorityChanged());
  EXPECT_FALSE(diff.stageChanged());
  EXPECT_TRUE(diff.typeChanged());
  EXPECT_EQ(diff.oldHeader().priority, 0);
  EXPECT_EQ(diff.newHeader().priority, 8);
  EXPECT_EQ(diff.oldHeader().type, FILTERS_TYPE_IPV4_L4);
  EXPECT_EQ(diff.newHeader().type, FILTERS_TYPE_IPV4);
  EXPECT_EQ(diff.newHeader().stage, FILTERS_STAGE_INGRESS);
}

TEST(GroupDiff, NewEntryHoldsNewContentOfAddedAndChangedEntriesOnly) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b(a);
  ASSERT_EQ(a.insertEntry(EntryWith(1, 1, {}, {"ActionDeny"})), FILTERS_OK);
  ASSERT_EQ(a.insertEntry(EntryWith(2, 1, {}, {"ActionDeny"})), FILTERS_OK);
  ASSERT_EQ(a.insertEntry(EntryWith(3, 1, {}, {"ActionDeny"})), FILTERS_OK);
  ASSERT_EQ(b.insertEntry(EntryWith(2, 1, {}, {"ActionPermit"})), FILTERS_OK);
  ASSERT_EQ(b.insertEntry(EntryWith(3, 1, {}, {"ActionDeny"})), FILTERS_OK);
  ASSERT_EQ(b.insertEntry(EntryWith(7, 1, {"MatchTTL"}, {})), FILTERS_OK);
  FiltersGroupDiff diff = diffGroups(a, b);
  EXPECT_EQ(diff.removed(), std::vector<filtersEntryId_t>{1});
  EXPECT_EQ(diff.changed(), std::vector<filtersEntryId_t>{2});
  EXPECT_EQ(diff.added(), std::vector<filtersEntryId_t>{7});
  ASSERT_NE(diff.newEntry(2), nullptr);
  EXPECT_TRUE(*diff.newEntry(2) == b.getEntriesRef().at(2));
  ASSERT_NE(diff.newEntry(7), nullptr);
  EXPECT_TRUE(*diff.newEntry(7) == b.getEntriesRef().at(7));
  EXPECT_EQ(diff.newEntry(1), nullptr);
  EXPECT_EQ(diff.newEntry(3), nullptr);
}

TEST(GroupDiff, NewEntriesOutliveTheGroupsAndAreSharedByCopies) {
  FiltersGroupDiff copy;
  {
    FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
    FiltersGroup b(a);
    ASSERT_EQ(b.insertEntry(EntryWith(5, 2, {"MatchTTL"}, {})), FILTERS_OK);
    FiltersGroupDiff diff = diffGroups(a, b);
    copy = diff;
    EXPECT_EQ(copy.newEntry(5), diff.newEntry(5));
  }
  ASSERT_NE(copy.newEntry(5), nullptr);
  EXPECT_TRUE(*copy.newEntry(5) == EntryWith(5, 2, {"MatchTTL"}, {}));
}

// Stage 1 allows type 4 and stage 3 type 5, but neither stage allows the
// other's type, so neither setStage nor setType can go first; the diff goes
// through stage 0, which allows both, keeping the shared entry in place.
TEST(GroupDiff, StageAndTypeChangeBridgedWhenNeitherDirectOrderFits) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_VLAN, FILTERS_TYPE_IPV4_QOS);
  FiltersEntry shared =
      EntryWith(1, 1, {"MatchExternalVlanId"}, {"ActionDeny"});
  ASSERT_EQ(a.insertEntry(shared), FILTERS_OK);
  FiltersGroup b = GroupIn(4, FILTERS_STAGE_EGRESS, FILTERS_TYPE_EGRESS_L2);
  ASSERT_EQ(b.insertEntry(shared), FILTERS_OK);
  ASSERT_EQ(b.insertEntry(EntryWith(2, 1, {"MatchEgressPorts"}, {})),
            FILTERS_OK);
  {
    FiltersGroup probe(a);
    ASSERT_EQ(probe.setStage(FILTERS_STAGE_EGRESS),
              FILTERS_ERR_TYPE_NOT_IN_STAGE);
    ASSERT_EQ(probe.setType(FILTERS_TYPE_EGRESS_L2),
              FILTERS_ERR_TYPE_NOT_IN_STAGE);
  }
  FiltersGroup applied(a);
  ASSERT_EQ(diffGroups(a, b).applyTo(&applied), FILTERS_OK);
  EXPECT_TRUE(applied == b) << applied;
}

// A group read with type 20, which no table knows, and stage 2: setStage(3)
// meets type 20 and setType(5) meets stage 2, so both direct orders fail
// and stage 0 cannot hold type 20 either; type 0 bridges.
TEST(GroupDiff, UnknownTypeFromWireBridgedThroughTypeNone) {
  FiltersGroup a = WireGroup(4, FILTERS_STAGE_INGRESS, 20);
  FiltersGroup b = GroupIn(4, FILTERS_STAGE_EGRESS, FILTERS_TYPE_EGRESS_L2);
  ASSERT_EQ(b.insertEntry(EntryWith(2, 1, {"MatchEgressPorts"}, {})),
            FILTERS_OK);
  {
    FiltersGroup probe(a);
    ASSERT_NE(probe.setStage(FILTERS_STAGE_LOOKUP), FILTERS_OK);
  }
  FiltersGroup applied(a);
  ASSERT_EQ(diffGroups(a, b).applyTo(&applied), FILTERS_OK);
  EXPECT_TRUE(applied == b) << applied;
}

TEST(GroupDiff, ApplyKeepsTheGroupsOwnIdentifier) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b = GroupIn(5, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  ASSERT_EQ(b.insertEntry(EntryWith(1, 1, {}, {"ActionDeny"})), FILTERS_OK);
  FiltersGroupDiff diff = diffGroups(a, b);
  EXPECT_TRUE(diff.idChanged());
  FiltersGroup applied(a);
  ASSERT_EQ(diff.applyTo(&applied), FILTERS_OK);
  EXPECT_EQ(applied.getId(), 4);
  EXPECT_EQ(applied.getEntriesRef().size(), 1u);
}

// ---- Refusals ----

// Diff of `a` to `b`: removes entry 1, changes entry 2, adds entries 5 and
// 9; all in stage 2, type 3.
struct RefusalCase {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  RefusalCase() {
    EXPECT_EQ(a.insertEntry(EntryWith(1, 1, {"MatchTTL"}, {"ActionDeny"})),
              FILTERS_OK);
    EXPECT_EQ(a.insertEntry(EntryWith(2, 1, {"MatchTTL"}, {"ActionDeny"})),
              FILTERS_OK);
    EXPECT_EQ(b.insertEntry(EntryWith(2, 2, {"MatchTTL"}, {"ActionDeny"})),
              FILTERS_OK);
    EXPECT_EQ(b.insertEntry(EntryWith(5, 1, {"MatchSrcIPv4"}, {})), FILTERS_OK);
    EXPECT_EQ(b.insertEntry(EntryWith(9, 1, {}, {"ActionMapToCpuCosQueue"})),
              FILTERS_OK);
  }
};

TEST(GroupDiffRefusal, MissingRemovedEntryRefusedWithNotFoundBeforeAnyInsert) {
  RefusalCase c;
  // A group without entry 1, in type 10, which refuses entry 2's TTL match
  // too: the removal comes first.
  FiltersGroup target = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4);
  const FiltersGroup before(target);
  EXPECT_EQ(diffGroups(c.a, c.b).applyTo(&target), FILTERS_ERR_NOT_FOUND);
  EXPECT_TRUE(target == before) << target;
}

TEST(GroupDiffRefusal, RefusedInsertLeavesGroupUnchanged) {
  RefusalCase c;
  // The old group's entries in stage 0, which lacks the action of entry 9.
  FiltersGroup target = GroupIn(4, FILTERS_STAGE_LOOKUP, FILTERS_TYPE_IPV4_L4);
  for (const auto& [id, entry] : c.a.getEntriesRef()) {
    ASSERT_EQ(target.insertEntry(entry), FILTERS_OK);
  }
  const FiltersGroup before(target);
  EXPECT_EQ(diffGroups(c.a, c.b).applyTo(&target),
            FILTERS_ERR_ACTION_NOT_ALLOWED);
  EXPECT_TRUE(target == before) << target;
}

TEST(GroupDiffRefusal, FirstRefusedEntryInAscendingIdentifierDecides) {
  RefusalCase c;
  // Type 1 refuses the matches of entries 2 and 5 (-6), stage 0 the action
  // of entry 9 (-9): the lowest identifier decides.
  FiltersGroup target = GroupIn(4, FILTERS_STAGE_LOOKUP, FILTERS_TYPE_L2);
  ASSERT_EQ(target.insertEntry(EntryWith(1, 1, {}, {})), FILTERS_OK);
  const FiltersGroup before(target);
  EXPECT_EQ(diffGroups(c.a, c.b).applyTo(&target),
            FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_TRUE(target == before) << target;
}

TEST(GroupDiffRefusal, KeptEntryThatDoesNotFitNewTypeRefusesTheChange) {
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4);
  ASSERT_EQ(a.insertEntry(EntryWith(1, 1, {}, {"ActionDeny"})), FILTERS_OK);
  // The target also holds an entry the diff knows nothing of, with a TTL
  // match that type 10 does not allow; entry 1, which the diff removes,
  // shows that nothing was done.
  FiltersGroup target(a);
  ASSERT_EQ(target.insertEntry(EntryWith(3, 1, {"MatchTTL"}, {})), FILTERS_OK);
  const FiltersGroup before(target);
  EXPECT_EQ(diffGroups(a, b).applyTo(&target), FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_TRUE(target == before) << target;
}

TEST(GroupDiffRefusal, UnreachableHeaderRefusedWithWhatDirectOrderMeets) {
  // The new group was read with stage 1 and type 3, a pair no setter can
  // reach: setStage(1) meets type 3 first.
  FiltersGroup a = GroupIn(4, FILTERS_STAGE_INGRESS, FILTERS_TYPE_IPV4_L4);
  FiltersGroup b = WireGroup(4, FILTERS_STAGE_VLAN, FILTERS_TYPE_IPV4_L4);
  FiltersGroup target(a);
  const FiltersGroup before(target);
  EXPECT_EQ(diffGroups(a, b).applyTo(&target), FILTERS_ERR_TYPE_NOT_IN_STAGE);
  EXPECT_TRUE(target == before) << target;
}

TEST(GroupDiffRefusal, NullGroupRefused) {
  EXPECT_EQ(FiltersGroupDiff().applyTo(nullptr), FILTERS_ERR_REFUSED);
}

}  // namespace
