// The C interface to groups: the forwarding functions, the codes that reach C
// callers, the entries record and its release, and the guards.
#include "FiltersCommon/filter_groups_c.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "c_api_test_util.h"

namespace FiltersCommon {
namespace {

using c_api_test::ActionPtr;
using c_api_test::CInterfaceDeathTest;
using c_api_test::EntryPtr;
using c_api_test::GroupPtr;
using c_api_test::Guard;
using c_api_test::GuardName;
using c_api_test::GuardsOf;
using c_api_test::MatchPtr;
using c_api_test::OwnAction;
using c_api_test::OwnEntry;
using c_api_test::OwnGroup;
using c_api_test::OwnMatch;

// The record C callers see: three fields in this order.
static_assert(std::is_standard_layout_v<entriesStruct>);
static_assert(offsetof(entriesStruct, count) == 0);
static_assert(offsetof(entriesStruct, ids) < offsetof(entriesStruct, entries));
static_assert(std::is_same_v<decltype(entriesStruct::count), int32_t>);

// A group in the main stage whose type keys on IPv4 and layer 4, the usual
// home of the entries below.
GroupPtr Ipv4Group(filtersGroupId_t id) {
  GroupPtr g = OwnGroup(newFiltersGroup(id));
  filtersGroupSetStage(g.get(), FILTERS_STAGE_INGRESS);
  EXPECT_EQ(filtersGroupSetType(g.get(), FILTERS_TYPE_IPV4_L4), 0);
  return g;
}

// Entry `id` with priority `priority`, matching TTL `ttl` and denying.
EntryPtr TtlEntry(filtersEntryId_t id, filtersEntryPriority_t priority,
                  uint8_t ttl) {
  EntryPtr e = OwnEntry(newFiltersEntry(id));
  filtersEntrySetPriority(e.get(), priority);
  MatchPtr m = OwnMatch(newMatchTTL(ttl));
  ActionPtr a = OwnAction(newActionDeny());
  EXPECT_EQ(filtersEntrySetMatch(e.get(), m.get()), 0);
  EXPECT_EQ(filtersEntrySetAction(e.get(), a.get()), 0);
  return e;
}

TEST(GroupsC, NewGroupStartsAtPriorityStageAndTypeZero) {
  GroupPtr g = OwnGroup(newFiltersGroup(7));
  EXPECT_EQ(filtersGroupGetId(g.get()), 7);
  EXPECT_EQ(filtersGroupGetPriority(g.get()), 0);
  EXPECT_EQ(filtersGroupGetStage(g.get()), 0);
  EXPECT_EQ(filtersGroupGetType(g.get()), 0);
}

TEST(GroupsC, NewGroupTakesASixteenBitIdentifier) {
  // A C caller passing a wider value gets it cut to 16 bits on the way in.
  uint32_t wide = 65537;
  GroupPtr g = OwnGroup(newFiltersGroup(wide));
  EXPECT_EQ(filtersGroupGetId(g.get()), 1);
}

TEST(GroupsC, PriorityIsStoredAsGiven) {
  GroupPtr g = OwnGroup(newFiltersGroup(1));
  filtersGroupSetPriority(g.get(), 65535);
  EXPECT_EQ(filtersGroupGetPriority(g.get()), 65535);
}

TEST(GroupsC, RefusedStageIsSilentAndKeepsTheOldStage) {
  GroupPtr g = OwnGroup(newFiltersGroup(1));
  ASSERT_EQ(filtersGroupSetType(g.get(), FILTERS_TYPE_L2), 0);
  filtersGroupSetStage(g.get(), FILTERS_STAGE_EGRESS);
  EXPECT_EQ(filtersGroupGetStage(g.get()), FILTERS_STAGE_LOOKUP);
  filtersGroupSetStage(g.get(), static_cast<filtersGroupStage_t>(4));
  EXPECT_EQ(filtersGroupGetStage(g.get()), FILTERS_STAGE_LOOKUP);
  filtersGroupSetStage(g.get(), FILTERS_STAGE_INGRESS);
  EXPECT_EQ(filtersGroupGetStage(g.get()), FILTERS_STAGE_INGRESS);
}

TEST(GroupsC, SetTypeReturnsTheRefusalAndKeepsTheOldType) {
  GroupPtr g = OwnGroup(newFiltersGroup(1));
  filtersGroupSetStage(g.get(), FILTERS_STAGE_VLAN);
  ASSERT_EQ(filtersGroupGetStage(g.get()), FILTERS_STAGE_VLAN);
  EXPECT_EQ(filtersGroupSetType(g.get(), FILTERS_TYPE_L2), -7);
  EXPECT_EQ(filtersGroupGetType(g.get()), FILTERS_TYPE_NONE);
  EXPECT_EQ(filtersGroupSetType(g.get(), FILTERS_TYPE_L2_VLAN), 0);
  EXPECT_EQ(filtersGroupGetType(g.get()), FILTERS_TYPE_L2_VLAN);
}

TEST(GroupsC, InsertEntryReturnsTheFirstRefusal) {
  GroupPtr g = OwnGroup(newFiltersGroup(1));
  EntryPtr e = TtlEntry(5, 0, 64);
  EXPECT_EQ(filtersGroupInsertEntry(g.get(), e.get()), -6);
  ASSERT_EQ(filtersEntryDeleteMatch(e.get(), FILTERS_MATCH_TTL), 0);
  ActionPtr cpuQueue = OwnAction(newActionMapToCpuCosQueue(1));
  ASSERT_EQ(filtersEntrySetAction(e.get(), cpuQueue.get()), 0);
  EXPECT_EQ(filtersGroupInsertEntry(g.get(), e.get()), -9);
  EXPECT_TRUE(g->getEntriesRef().empty());
}

TEST(GroupsC, InsertedEntryIsACopyOfTheCallersEntry) {
  GroupPtr g = Ipv4Group(1);
  EntryPtr e = TtlEntry(5, 50, 64);
  ASSERT_EQ(filtersGroupInsertEntry(g.get(), e.get()), 0);
  filtersEntrySetPriority(e.get(), 51);
  ASSERT_EQ(filtersEntryDeleteMatch(e.get(), FILTERS_MATCH_TTL), 0);
  e.reset();

  const auto& held = g->getEntriesRef();
  ASSERT_EQ(held.size(), 1u);
  EXPECT_EQ(held.at(5).getPriority(), 50u);
  EXPECT_EQ(held.at(5).getMatches().size(), 1u);
}

TEST(GroupsC, InsertingAnIdentifierTwiceKeepsTheSecondEntry) {
  GroupPtr g = Ipv4Group(1);
  EntryPtr first = TtlEntry(5, 1, 64);
  EntryPtr second = TtlEntry(5, 2, 32);
  ASSERT_EQ(filtersGroupInsertEntry(g.get(), first.get()), 0);
  ASSERT_EQ(filtersGroupInsertEntry(g.get(), second.get()), 0);
  ASSERT_EQ(g->getEntriesRef().size(), 1u);
  EXPECT_TRUE(g->getEntriesRef().at(5) == *second);
}

TEST(GroupsC, RemoveEntryAnswersNullAbsentAndPresent) {
  GroupPtr g = Ipv4Group(1);
  EntryPtr e = TtlEntry(5, 0, 64);
  ASSERT_EQ(filtersGroupInsertEntry(g.get(), e.get()), 0);
  EXPECT_EQ(filtersGroupRemoveEntry(nullptr, 1), -5);
  EXPECT_EQ(filtersGroupRemoveEntry(g.get(), 99), -3);
  EXPECT_EQ(g->getEntriesRef().size(), 1u);
  EXPECT_EQ(filtersGroupRemoveEntry(g.get(), 5), 0);
  EXPECT_TRUE(g->getEntriesRef().empty());
}

TEST(GroupsC, EmptyGroupGivesCountZeroAndTwoAllocatedArrays) {
  GroupPtr g = OwnGroup(newFiltersGroup(1));
  entriesStruct record{-1, nullptr, nullptr};
  filtersGroupGetEntries(g.get(), &record);
  EXPECT_EQ(record.count, 0);
  EXPECT_NE(record.ids, nullptr);
  EXPECT_NE(record.entries, nullptr);
  deleteFiltersEntriesStruct(&record);
}

TEST(GroupsC, EntriesComeOutInAscendingIdentifierAsCopies) {
  GroupPtr g = Ipv4Group(1);
  for (filtersEntryId_t id : {9u, 3u, 5u}) {
    EntryPtr e = TtlEntry(id, id * 10, static_cast<uint8_t>(id));
    ASSERT_EQ(filtersGroupInsertEntry(g.get(), e.get()), 0);
  }
  entriesStruct record;
  filtersGroupGetEntries(g.get(), &record);
  ASSERT_EQ(record.count, 3);
  const filtersEntryId_t expected[] = {3, 5, 9};
  for (int32_t i = 0; i < record.count; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(record.ids[i], expected[i]);
    ASSERT_NE(record.entries[i], nullptr);
    EXPECT_EQ(filtersEntryGetId(record.entries[i]), expected[i]);
    EXPECT_EQ(filtersEntryGetPriority(record.entries[i]), expected[i] * 10);
    EXPECT_NE(record.entries[i], &g->getEntriesRef().at(expected[i]));
    EXPECT_TRUE(*record.entries[i] == g->getEntriesRef().at(expected[i]));
  }
  deleteFiltersEntriesStruct(&record);
}

TEST(GroupsC, CopiedEntriesAreIndependentAndOutliveTheGroup) {
  GroupPtr g = Ipv4Group(1);
  EntryPtr e = TtlEntry(4, 40, 64);
  ASSERT_EQ(filtersGroupInsertEntry(g.get(), e.get()), 0);
  entriesStruct record;
  filtersGroupGetEntries(g.get(), &record);
  ASSERT_EQ(record.count, 1);

  filtersEntrySetPriority(record.entries[0], 41);
  EXPECT_EQ(g->getEntriesRef().at(4).getPriority(), 40u);
  g.reset();

  EXPECT_EQ(filtersEntryGetPriority(record.entries[0]), 41u);
  MatchPtr ttl = OwnMatch(newMatchTTL(0));
  EXPECT_EQ(filtersEntryGetMatch(record.entries[0], ttl.get()), 0);
  EXPECT_EQ(matchTTLGet(ttl.get()), 64);
  deleteFiltersEntriesStruct(&record);
}

TEST(GroupsC, ReleasingARecordSkipsNullEntriesAndKeepsTheFields) {
  entriesStruct record;
  record.count = 2;
  record.ids = new filtersEntryId_t[2]{1, 2};
  record.entries = new FiltersEntry* [2] { newFiltersEntry(1), nullptr };
  deleteFiltersEntriesStruct(&record);
  EXPECT_EQ(record.count, 2);
}

TEST(GroupsC, ReleasingARecordWithNegativeCountFreesNoEntry) {
  FiltersEntry* kept = newFiltersEntry(8);
  entriesStruct record;
  record.count = -1;
  record.ids = new filtersEntryId_t[1]{8};
  record.entries = new FiltersEntry* [1] { kept };
  deleteFiltersEntriesStruct(&record);
  EXPECT_EQ(filtersEntryGetId(kept), 8u);
  deleteFiltersEntry(kept);
}

TEST(GroupsC, ReleasingARecordWithoutArraysIsHarmless) {
  entriesStruct record{0, nullptr, nullptr};
  deleteFiltersEntriesStruct(&record);
  EXPECT_EQ(record.count, 0);
  EXPECT_EQ(record.ids, nullptr);
}

// ---- Null-pointer guards ----

// A group and an entry that the guards below do not reach.
FiltersGroup* SomeGroup() {
  static FiltersGroup group(1);
  return &group;
}
FiltersEntry* SomeEntry() {
  static FiltersEntry entry(1);
  return &entry;
}

INSTANTIATE_TEST_SUITE_P(
    Groups, CInterfaceDeathTest,
    ::testing::ValuesIn(GuardsOf(
        "filter_groups_c.cc",
        {Guard{
             "deleteFiltersGroup", [] { deleteFiltersGroup(nullptr); },
             "void "
             "FiltersCommon::deleteFiltersGroup(FiltersCommon::FiltersGroup*)",
             "g != nullptr"},
         Guard{"filtersGroupGetId", [] { filtersGroupGetId(nullptr); },
               "FiltersCommon::filtersGroupId_t "
               "FiltersCommon::filtersGroupGetId(FiltersCommon::FiltersGroup*)",
               "g != nullptr"},
         Guard{"filtersGroupSetPriority",
               [] { filtersGroupSetPriority(nullptr, 1); },
               "void FiltersCommon::filtersGroupSetPriority(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::filtersGroupPriority_t)",
               "g != nullptr"},
         Guard{"filtersGroupGetPriority",
               [] { filtersGroupGetPriority(nullptr); },
               "FiltersCommon::filtersGroupPriority_t "
               "FiltersCommon::filtersGroupGetPriority(FiltersCommon::"
               "FiltersGroup*)",
               "g != nullptr"},
         Guard{"filtersGroupSetStage",
               [] { filtersGroupSetStage(nullptr, FILTERS_STAGE_LOOKUP); },
               "void FiltersCommon::filtersGroupSetStage(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::filtersGroupStage_t)",
               "g != nullptr"},
         Guard{"filtersGroupGetStage", [] { filtersGroupGetStage(nullptr); },
               "FiltersCommon::filtersGroupStage_t "
               "FiltersCommon::filtersGroupGetStage(FiltersCommon::"
               "FiltersGroup*)",
               "g != nullptr"},
         Guard{"filtersGroupSetType",
               [] { filtersGroupSetType(nullptr, FILTERS_TYPE_NONE); },
               "FiltersCommon::filtersErr_t "
               "FiltersCommon::filtersGroupSetType(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::filtersGroupType_t)",
               "g != nullptr"},
         Guard{"filtersGroupGetType", [] { filtersGroupGetType(nullptr); },
               "FiltersCommon::filtersGroupType_t "
               "FiltersCommon::filtersGroupGetType(FiltersCommon::"
               "FiltersGroup*)",
               "g != nullptr"},
         Guard{"filtersGroupInsertEntryNullGroup",
               [] { filtersGroupInsertEntry(nullptr, SomeEntry()); },
               "FiltersCommon::filtersErr_t "
               "FiltersCommon::filtersGroupInsertEntry(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::FiltersEntry*)",
               "g != nullptr && e != nullptr"},
         Guard{"filtersGroupInsertEntryNullEntry",
               [] { filtersGroupInsertEntry(SomeGroup(), nullptr); },
               "FiltersCommon::filtersErr_t "
               "FiltersCommon::filtersGroupInsertEntry(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::FiltersEntry*)",
               "g != nullptr && e != nullptr"},
         Guard{"filtersGroupGetEntriesNullGroup",
               [] {
                 entriesStruct record;
                 filtersGroupGetEntries(nullptr, &record);
               },
               "void FiltersCommon::filtersGroupGetEntries(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::entriesStruct*)",
               "g != nullptr && entries != nullptr"},
         Guard{"filtersGroupGetEntriesNullRecord",
               [] { filtersGroupGetEntries(SomeGroup(), nullptr); },
               "void FiltersCommon::filtersGroupGetEntries(FiltersCommon::"
               "FiltersGroup*, FiltersCommon::entriesStruct*)",
               "g != nullptr && entries != nullptr"},
         Guard{"deleteFiltersEntriesStruct",
               [] { deleteFiltersEntriesStruct(nullptr); },
               "void FiltersCommon::deleteFiltersEntriesStruct(FiltersCommon::"
               "entriesStruct*)",
               "entries != nullptr"}})),
    GuardName);

}  // namespace
}  // namespace FiltersCommon
