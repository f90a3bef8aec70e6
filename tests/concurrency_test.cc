// What the model promises threads: the validation tables and the policer
// stage map may be used from any thread, the map being built once on first
// use; concurrent readers of one group or entry need no lock. Meant to be run
// under ThreadSanitizer as well (FILTERS_SANITIZE=thread).
#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"
#include "policer/policer.h"

namespace FiltersCommon {
namespace {

constexpr int kThreads = 8;

template <class Body>
void RunConcurrently(Body body) {
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) threads.emplace_back(body, t);
  for (std::thread& thread : threads) thread.join();
}

TEST(Concurrency, FirstPolicerChecksFromManyThreadsAgree) {
  std::atomic<int> wrong{0};
  RunConcurrently([&wrong](int t) {
    FiltersGroup group(static_cast<filtersGroupId_t>(t));
    const policer::Policer ingress(1, policer::STAGE_INGRESS,
                                   policer::Mode::Flow(1, 2));
    for (int stage = 0; stage < 4; ++stage) {
      const filtersErr_t expected =
          stage == 2 ? FILTERS_OK : FILTERS_ERR_POLICER_STAGE;
      if (group.groupPolicerValidation(
              ingress, static_cast<filtersGroupStage_t>(stage)) != expected) {
        ++wrong;
      }
    }
  });
  EXPECT_EQ(wrong.load(), 0);
}

TEST(Concurrency, SeparateGroupsFillInParallel) {
  std::atomic<int> refused{0};
  RunConcurrently([&refused](int t) {
    FiltersGroup group(static_cast<filtersGroupId_t>(t));
    if (group.setStage(FILTERS_STAGE_INGRESS) != FILTERS_OK ||
        group.setType(FILTERS_TYPE_IPV4_L4) != FILTERS_OK) {
      ++refused;
      return;
    }
    for (int i = 0; i < 200; ++i) {
      FiltersEntry entry(static_cast<filtersEntryId_t>(i));
      entry.setMatch(MatchDstL4Port(static_cast<uint16_t>(i)));
      entry.setAction(ActionDeny());
      entry.setPolicer(policer::Policer(static_cast<uint32_t>(i),
                                        policer::STAGE_INGRESS,
                                        policer::Mode::Flow(10, 20)));
      if (group.insertEntry(entry) != FILTERS_OK) ++refused;
    }
    std::string bytes;
    group.serialize(&bytes);
    if (FiltersGroup(bytes) != group) ++refused;
  });
  EXPECT_EQ(refused.load(), 0);
}

TEST(Concurrency, ReadersShareOneGroupWithoutLocks) {
  FiltersGroup group(1);
  ASSERT_EQ(group.setStage(FILTERS_STAGE_INGRESS), FILTERS_OK);
  ASSERT_EQ(group.setType(FILTERS_TYPE_IPV4_L4), FILTERS_OK);
  for (int i = 0; i < 50; ++i) {
    FiltersEntry entry(static_cast<filtersEntryId_t>(i));
    entry.setMatch(MatchTTL(static_cast<uint8_t>(i)));
    entry.setAction(ActionPermit());
    ASSERT_EQ(group.insertEntry(entry), FILTERS_OK);
  }
  std::ostringstream reference;
  reference << group;
  std::atomic<int> differing{0};
  RunConcurrently([&](int) {
    std::ostringstream dump;
    dump << group;
    std::string bytes;
    group.serialize(&bytes);
    const FiltersGroup copy(group);
    if (dump.str() != reference.str() || FiltersGroup(bytes) != group ||
        copy != group) {
      ++differing;
    }
  });
  EXPECT_EQ(differing.load(), 0);
}

TEST(Concurrency, CopiesSharingAParentAreDestroyedIndependently) {
  FiltersEntry original(1);
  original.setPolicerParent(
      policer::Policer(9, policer::STAGE_INGRESS, policer::Mode::Flow(1, 1)));
  std::vector<FiltersEntry> copies;
  for (int t = 0; t < kThreads; ++t) copies.emplace_back(original);
  RunConcurrently([&copies](int t) {
    FiltersEntry moved_into(0);
    moved_into = std::move(copies[static_cast<size_t>(t)]);
  });
  EXPECT_EQ(original.getPolicerParent().use_count(), 2);  // original + this
}

}  // namespace
}  // namespace FiltersCommon
