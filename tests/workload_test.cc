// The benchmark workload: the same seed gives the same group, and every entry
// has the shape the benchmarks rely on.
#include "workload.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the checks name many kinds

using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersGroup;

TEST(WorkloadTest, SameSeedGivesTheSameBytes) {
  EXPECT_EQ(FiltersWorkload::makeGroupBytes(300, 7),
            FiltersWorkload::makeGroupBytes(300, 7));
}

TEST(WorkloadTest, OtherSeedGivesOtherEntries) {
  EXPECT_NE(*FiltersWorkload::makeGroup(50, 1),
            *FiltersWorkload::makeGroup(50, 2));
}

TEST(WorkloadTest, GroupHoldsEveryEntryInOrder) {
  const auto entries = FiltersWorkload::makeEntries(400, 3);
  const auto group = FiltersWorkload::makeGroup(400, 3);
  EXPECT_EQ(group->getId(), FiltersWorkload::kGroupId);
  EXPECT_EQ(group->getStage(), FILTERS_STAGE_INGRESS);
  EXPECT_EQ(group->getType(), FILTERS_TYPE_IPV4_L4);
  ASSERT_EQ(entries.size(), 400u);
  ASSERT_EQ(group->getEntriesRef().size(), 400u);
  uint32_t id = 1;
  for (const FiltersEntry& entry : entries) {
    ASSERT_EQ(entry.getId(), id);
    const auto held = group->getEntriesRef().find(id);
    ASSERT_NE(held, group->getEntriesRef().end());
    EXPECT_EQ(held->second, entry);
    ++id;
  }
}

TEST(WorkloadTest, GroupBytesLoadBackToTheSameGroup) {
  const std::string bytes = FiltersWorkload::makeGroupBytes(200, 11);
  EXPECT_EQ(FiltersGroup(bytes), *FiltersWorkload::makeGroup(200, 11));
}

TEST(WorkloadTest, EveryEntryHasTheAccessListShape) {
  const auto entries = FiltersWorkload::makeEntries(500, 5);
  uint32_t index = 0;
  for (const FiltersEntry& entry : entries) {
    SCOPED_TRACE(index);
    EXPECT_EQ(entry.getMatches().size(), 5u);

    FiltersCommon::MatchIngressPorts ports(std::list<limid_t>{});
    ASSERT_EQ(entry.getMatch(ports), FILTERS_OK);
    const std::list<limid_t> held = ports.getPorts();
    EXPECT_GE(held.size(), 2u);
    EXPECT_LE(held.size(), 4u);
    limid_t previous = 0;
    for (limid_t port : held) {
      EXPECT_TRUE(limid_is_from_type(port, limid_type_ethernet));
      EXPECT_GT(port, previous);
      previous = port;
    }

    FiltersCommon::MatchSrcIPv4 source(in_addr{0}, in_addr{0});
    ASSERT_EQ(entry.getMatch(source), FILTERS_OK);
    const uint32_t mask = ntohl(source.getIPv4Mask().s_addr);
    const uint32_t host = ~mask;
    EXPECT_EQ(host & (host + 1), 0u) << "not a prefix mask: " << mask;
    EXPECT_GE(__builtin_popcount(mask), 8);
    EXPECT_EQ(ntohl(source.getIPv4().s_addr) & ~mask, 0u);

    FiltersCommon::MatchDstIPv4 destination(in_addr{0}, in_addr{0});
    ASSERT_EQ(entry.getMatch(destination), FILTERS_OK);
    EXPECT_EQ(destination.getIPv4Mask().s_addr, 0xFFFFFFFFu);

    FiltersCommon::MatchIpProtocol protocol(0);
    EXPECT_EQ(entry.getMatch(protocol), FILTERS_OK);
    FiltersCommon::MatchDstL4Port port(0);
    ASSERT_EQ(entry.getMatch(port), FILTERS_OK);
    EXPECT_NE(port.getPort(), 0);

    const auto& actions = entry.getActions();
    EXPECT_EQ(actions.count(FILTERS_ACTION_PERMIT) +
                  actions.count(FILTERS_ACTION_DENY),
              1u);
    EXPECT_EQ(actions.count(FILTERS_ACTION_MAP_TO_COS_QUEUE), 1u);
    EXPECT_EQ(actions.count(FILTERS_ACTION_COPY_TO_CPU), index % 5 == 4);
    EXPECT_EQ(actions.size(), index % 5 == 4 ? 3u : 2u);

    ASSERT_EQ(entry.getCounters().size(), 2u);
    EXPECT_EQ(entry.getCounters().begin()->second.GetType(),
              FiltersCommon::COUNTER_TYPE_PACKETS);
    EXPECT_EQ(entry.getCounters().rbegin()->second.GetType(),
              FiltersCommon::COUNTER_TYPE_OCTETS);

    const policer::Policer& policer = entry.getPolicer();
    EXPECT_EQ(policer.GetStage(), policer::STAGE_INGRESS);
    EXPECT_EQ(policer.GetMode().GetType(), policer::MODE_SRTCM);
    EXPECT_EQ(
        policer.GetActions(),
        std::set<policer::Action>{policer::Action::Drop(policer::COLOR_RED)});
    EXPECT_FALSE(entry.getPolicerParent());
    ++index;
  }
}

}  // namespace
