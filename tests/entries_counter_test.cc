// Counters, and the entry's own and parent policers.
#include <gtest/gtest.h>

#include <memory>

#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "entries_samples.h"
#include "filter_counter.pb.h"

namespace FiltersCommon {
namespace {

TEST(Counter, DefaultHasIdZeroAndNoType) {
  const Counter c;
  EXPECT_EQ(c.GetId(), 0);
  EXPECT_EQ(c.GetType(), COUNTER_TYPE_INVALID);
}

TEST(Counter, TypeNumbersAreFixed) {
  EXPECT_EQ(COUNTER_TYPE_INVALID, 0);
  EXPECT_EQ(COUNTER_TYPE_PACKETS, 1);
  EXPECT_EQ(COUNTER_TYPE_OCTETS, 2);
  EXPECT_EQ(COUNTER_TYPE_RED_OCTETS, 3);
  EXPECT_EQ(COUNTER_TYPE_NOT_RED_OCTETS, 4);
  EXPECT_EQ(COUNTER_TYPE_YELLOW_OCTETS, 5);
  EXPECT_EQ(COUNTER_TYPE_NOT_YELLOW_OCTETS, 6);
  EXPECT_EQ(COUNTER_TYPE_GREEN_OCTETS, 7);
  EXPECT_EQ(COUNTER_TYPE_NOT_GREEN_OCTETS, 8);
  EXPECT_EQ(sizeof(counter_type_t), 4u);
}

TEST(Counter, EqualityComparesIdAndType) {
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) ==
              Counter(1, COUNTER_TYPE_PACKETS));
  EXPECT_FALSE(Counter(1, COUNTER_TYPE_PACKETS) !=
               Counter(1, COUNTER_TYPE_PACKETS));
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) !=
              Counter(2, COUNTER_TYPE_PACKETS));
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) !=
              Counter(1, COUNTER_TYPE_OCTETS));
}

TEST(Counter, SerializeSetsBothRequiredFields) {
  CounterPB pb;
  Counter(65535, COUNTER_TYPE_GREEN_OCTETS).Serialize(&pb);
  EXPECT_TRUE(pb.IsInitialized());
  EXPECT_EQ(pb.id(), 65535);  // zero-extended, not sign-extended
  EXPECT_EQ(pb.type(), 7);
}

TEST(Counter, FromWireKeepsLowSixteenBitsOfId) {
  CounterPB pb;
  pb.set_id(70000);
  pb.set_type(3);
  const Counter c(pb);
  EXPECT_EQ(c.GetId(), 4464);
  EXPECT_EQ(c.GetType(), COUNTER_TYPE_RED_OCTETS);
}

TEST(Counter, FromWireTakesAnyType) {
  CounterPB pb;
  pb.set_id(-1);
  pb.set_type(42);
  const Counter c(pb);
  EXPECT_EQ(c.GetId(), 65535);
  EXPECT_EQ(static_cast<int>(c.GetType()), 42);
}

// ---- The entry's counters ----

TEST(FiltersEntryCounters, SecondCounterOfTheSameTypeIsRefused) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)),
            FILTERS_ERR_INVALID);
  EXPECT_EQ(e.getCounters().size(), 1u);
  EXPECT_EQ(e.getCounter(2), nullptr);
}

TEST(FiltersEntryCounters, ResettingACounterWithItsOwnTypeIsRefused) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)),
            FILTERS_ERR_INVALID);
  ASSERT_EQ(e.getCounters().size(), 1u);
  EXPECT_EQ(*e.getCounter(1), Counter(1, COUNTER_TYPE_PACKETS));
}

TEST(FiltersEntryCounters, SameIdWithAnotherTypeReplacesTheCounter) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  ASSERT_EQ(e.getCounters().size(), 1u);
  EXPECT_EQ(e.getCounter(1)->GetType(), COUNTER_TYPE_OCTETS);
  // The packet type is free again.
  EXPECT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)), FILTERS_OK);
}

TEST(FiltersEntryCounters, TypeZeroIsRefused) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_INVALID)),
            FILTERS_ERR_INVALID);
  EXPECT_TRUE(e.getCounters().empty());
}

TEST(FiltersEntryCounters, CountersAreKeptInAscendingId) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(30, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(10, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(20, COUNTER_TYPE_RED_OCTETS)), FILTERS_OK);
  std::vector<uint16_t> ids;
  for (const auto& c : e.getCounters()) ids.push_back(c.first);
  EXPECT_EQ(ids, (std::vector<uint16_t>{10, 20, 30}));
}

TEST(FiltersEntryCounters, GetCounterFindsByIdOrGivesNull) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(4, COUNTER_TYPE_YELLOW_OCTETS)), FILTERS_OK);
  ASSERT_NE(e.getCounter(4), nullptr);
  EXPECT_EQ(e.getCounter(4)->GetType(), COUNTER_TYPE_YELLOW_OCTETS);
  EXPECT_EQ(e.getCounter(5), nullptr);
}

TEST(FiltersEntryCounters, DeleteCounterOfAbsentIdIsRefusedWithMinusFive) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(4, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_EQ(e.deleteCounter(5), FILTERS_ERR_REFUSED);
  EXPECT_EQ(FILTERS_ERR_REFUSED, -5);
  EXPECT_EQ(e.getCounters().size(), 1u);
  EXPECT_EQ(e.deleteCounter(4), FILTERS_OK);
  EXPECT_TRUE(e.getCounters().empty());
}

TEST(FiltersEntryCounters, DeleteCountersEmptiesTheMap) {
  FiltersEntry e(1);
  EXPECT_EQ(e.deleteCounters(), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(4, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(5, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  EXPECT_EQ(e.deleteCounters(), FILTERS_OK);
  EXPECT_TRUE(e.getCounters().empty());
}

// ---- Policers ----

TEST(FiltersEntryPolicers, SetPolicerCopiesEveryField) {
  FiltersEntry e(1);
  const policer::Policer p = entries_test::EgressPolicer(9);
  EXPECT_EQ(e.setPolicer(p), FILTERS_OK);
  EXPECT_EQ(e.getPolicer(), p);
  EXPECT_EQ(e.getPolicer().GetActions().size(), 2u);
  EXPECT_EQ(e.setPolicer(policer::Policer()), FILTERS_OK);
  EXPECT_EQ(e.getPolicer().GetStage(), policer::STAGE_NONE);
}

TEST(FiltersEntryPolicers, NoParentUntilOneIsSet) {
  FiltersEntry e(1);
  EXPECT_EQ(e.getPolicerParent(), nullptr);
  EXPECT_EQ(e.setPolicerParent(entries_test::IngressPolicer(2)), FILTERS_OK);
  ASSERT_NE(e.getPolicerParent(), nullptr);
  EXPECT_EQ(*e.getPolicerParent(), entries_test::IngressPolicer(2));
}

TEST(FiltersEntryPolicers, SetPolicerParentGivesAFreshSharedObject) {
  FiltersEntry original(1);
  original.setPolicerParent(entries_test::IngressPolicer(2));
  FiltersEntry a(original);
  FiltersEntry b(original);
  const std::shared_ptr<policer::Policer> shared = a.getPolicerParent();
  EXPECT_EQ(b.getPolicerParent(), shared);

  a.setPolicerParent(entries_test::IngressPolicer(2));
  EXPECT_NE(a.getPolicerParent(), b.getPolicerParent());
  EXPECT_EQ(b.getPolicerParent(), shared);
  EXPECT_EQ(*a.getPolicerParent(), *shared);
}

TEST(FiltersEntryPolicers, ReplacedParentIsReleased) {
  FiltersEntry e(1);
  e.setPolicerParent(entries_test::IngressPolicer(2));
  const std::weak_ptr<policer::Policer> old = e.getPolicerParent();
  e.setPolicerParent(entries_test::EgressPolicer(3));
  EXPECT_TRUE(old.expired());
}

}  // namespace
}  // namespace FiltersCommon
