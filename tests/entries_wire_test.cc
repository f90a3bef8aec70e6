// The entry's wire form: conversion to and from FiltersEntryPB, the byte
// entry points, and round trips through a string and a FiltersSerialized.
#include <gtest/gtest.h>

#include <list>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_serialized.h"
#include "entries_samples.h"
#include "filter_entries.pb.h"

namespace FiltersCommon {
namespace {

using entries_test::Eth;
using entries_test::Ip4;
using entries_test::Ip6;

std::string Bytes(const FiltersEntry& e) {
  std::string bytes;
  e.serialize(&bytes);
  return bytes;
}

FiltersEntryPB ToPB(const FiltersEntry& e) {
  FiltersEntryPB pb;
  e.convertToFiltersEntryPB(&pb);
  return pb;
}

template <class T>
void AddMatch(FiltersEntryPB* pb, const T& match) {
  match.convertToMatchPB(pb->add_matches_());
}

template <class T>
void AddAction(FiltersEntryPB* pb, const T& action) {
  action.convertToActionPB(pb->add_actions_());
}

FiltersEntry FromPB(const FiltersEntryPB& pb) {
  FiltersEntry e;
  e.convertFromFiltersEntryPB(&pb);
  return e;
}

std::vector<FiltersEntry> SampleEntries() {
  std::vector<FiltersEntry> entries;
  entries.emplace_back(entries_test::EntryWithIpv4Matches());
  entries.emplace_back(entries_test::EntryWithIpv6Matches());
  entries.emplace_back(entries_test::EntryWithAllActions());
  entries.emplace_back(FiltersEntry());
  return entries;
}

// ---- Round trips ----

TEST(FiltersEntryWire, RoundTripThroughAString) {
  for (const FiltersEntry& e : SampleEntries()) {
    const FiltersEntry back(Bytes(e));
    EXPECT_TRUE(back == e) << "entry " << e.getId();
    EXPECT_EQ(back.getMatches().size(), e.getMatches().size());
    EXPECT_EQ(back.getActions().size(), e.getActions().size());
    EXPECT_EQ(back.getCounters().size(), e.getCounters().size());
  }
}

TEST(FiltersEntryWire, RoundTripThroughASerializedBuffer) {
  for (const FiltersEntry& e : SampleEntries()) {
    FiltersSerialized buf;
    e.serialize(&buf);
    ASSERT_EQ(buf.size(), Bytes(e).size() + 1);
    EXPECT_EQ(buf.data()[buf.size() - 1], '\0');
    const FiltersEntry back(buf);
    EXPECT_TRUE(back == e) << "entry " << e.getId();
  }
}

TEST(FiltersEntryWire, TrailingZeroOfABufferFailsTheParseButNotTheEntry) {
  const FiltersEntry e = entries_test::EntryWithAllActions();
  FiltersSerialized buf;
  e.serialize(&buf);
  FiltersEntryPB pb;
  EXPECT_FALSE(pb.ParseFromString(std::string(buf.data(), buf.size())));
  EXPECT_TRUE(FiltersEntry(buf) == e);
}

TEST(FiltersEntryWire, RoundTripRestoresParentByContent) {
  const FiltersEntry e = entries_test::EntryWithIpv6Matches();
  const FiltersEntry back(Bytes(e));
  ASSERT_NE(back.getPolicerParent(), nullptr);
  EXPECT_NE(back.getPolicerParent(), e.getPolicerParent());
  EXPECT_EQ(*back.getPolicerParent(), *e.getPolicerParent());
  EXPECT_EQ(back.getPolicer(), e.getPolicer());
}

TEST(FiltersEntryWire, DscpComesBackAsToSWithTheShiftedByte) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDSCP(46)), FILTERS_OK);
  const FiltersEntry back(Bytes(e));
  MatchToS tos(0);
  ASSERT_EQ(back.getMatch(tos), FILTERS_OK);
  EXPECT_EQ(tos.getToS(), 184);
  EXPECT_TRUE(back == e);
}

TEST(FiltersEntryWire, BufferOfAnEmptyEntryGivesAnEmptyEntry) {
  FiltersSerialized buf;
  FiltersEntry().serialize(&buf);
  EXPECT_TRUE(FiltersEntry(buf) == FiltersEntry());
}

TEST(FiltersEntryWire, EmptyBytesGiveADefaultEntry) {
  const FiltersEntry e{std::string()};
  EXPECT_TRUE(e == FiltersEntry());
  EXPECT_EQ(e.getPolicer(), policer::Policer());
  EXPECT_EQ(e.getPolicerParent(), nullptr);
}

TEST(FiltersEntryWire, DefaultBufferGivesADefaultEntry) {
  const FiltersSerialized empty;
  EXPECT_TRUE(FiltersEntry(empty) == FiltersEntry());
}

// ---- Writing ----

TEST(FiltersEntryWire, WritesIdPriorityAndPolicerBytes) {
  FiltersEntry e(70000);
  e.setPriority(4000000000u);
  e.setPolicer(entries_test::IngressPolicer(3));
  const FiltersEntryPB pb = ToPB(e);
  EXPECT_TRUE(pb.IsInitialized());
  EXPECT_EQ(pb.id_(), 70000u);
  EXPECT_EQ(pb.priority_(), 4000000000u);
  EXPECT_EQ(pb.policer_(), entries_test::IngressPolicer(3).Serialize());
  EXPECT_FALSE(pb.has_policer_parent_());
  EXPECT_EQ(pb.matches__size(), 0);
  EXPECT_EQ(pb.actions__size(), 0);
  EXPECT_EQ(pb.counters__size(), 0);
}

TEST(FiltersEntryWire, WritesParentOnlyWhenSet) {
  FiltersEntry e(1);
  EXPECT_FALSE(ToPB(e).has_policer_parent_());
  e.setPolicerParent(entries_test::EgressPolicer(4));
  const FiltersEntryPB pb = ToPB(e);
  ASSERT_TRUE(pb.has_policer_parent_());
  EXPECT_EQ(pb.policer_parent_(), entries_test::EgressPolicer(4).Serialize());
}

TEST(FiltersEntryWire, ExactBytesOfASmallEntry) {
  FiltersEntry e(1);
  e.setPriority(2);
  ASSERT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  const std::string policer = policer::Policer().Serialize();
  ASSERT_LT(policer.size(), 128u);
  const std::string expected =
      std::string("\x08\x01\x10\x02\x1a", 5) +
      std::string(1, static_cast<char>(policer.size())) + policer +
      std::string("\x2a\x02\x08\x00", 4);
  EXPECT_EQ(Bytes(e), expected);
}

TEST(FiltersEntryWire, SerializeReplacesTheStringsContents) {
  std::string out = "old contents";
  FiltersEntry(3).serialize(&out);
  EXPECT_EQ(out, Bytes(FiltersEntry(3)));
}

TEST(FiltersEntryWire, RepeatedFieldsComeOutSortedByKey) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(50, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(3, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(20, COUNTER_TYPE_RED_OCTETS)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchTTL(1)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchAll()), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchTPID(0x8100)), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionDoNotLearnMac()), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionSetDSCP(1)), FILTERS_OK);

  const FiltersEntryPB pb = ToPB(e);
  std::vector<int> counters, matches, actions;
  for (const CounterPB& c : pb.counters_()) counters.push_back(c.id());
  for (const MatchPB& m : pb.matches_()) matches.push_back(m.type_());
  for (const ActionPB& a : pb.actions_()) actions.push_back(a.type_());
  EXPECT_EQ(counters, (std::vector<int>{3, 20, 50}));
  EXPECT_EQ(matches, (std::vector<int>{0, 3, 26}));
  EXPECT_EQ(actions, (std::vector<int>{0, 8, 20}));
  EXPECT_EQ(pb.counters_(0).type(), COUNTER_TYPE_PACKETS);
  EXPECT_EQ(pb.matches_(1).tpid_(), 0x8100u);
  EXPECT_EQ(pb.actions_(1).dscp_(), 1u);
}

TEST(FiltersEntryWireDeathTest, SerializingIntoAFilledBufferAborts) {
  FiltersSerialized buf("filled");
  EXPECT_DEATH(FiltersEntry(1).serialize(&buf), "data_ == nullptr");
}

// ---- Reading ----

TEST(FiltersEntryWire, Ipv6AfterIpv4OnTheWireIsDropped) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchSrcIPv4(Ip4("10.0.0.1")));
  AddMatch(&pb, MatchSrcIPv6(Ip6("2001:db8::1")));
  AddMatch(&pb, MatchTTL(4));
  const FiltersEntry e = FromPB(pb);
  ASSERT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_SRC_IPV4), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_TTL), 1u);
}

TEST(FiltersEntryWire, DstPortRangeAfterDstPortOnTheWireIsDropped) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchDstL4PortRange(1, 2));
  AddMatch(&pb, MatchDstL4Port(80));
  AddMatch(&pb, MatchDstL4PortRange(3, 4));
  const FiltersEntry e = FromPB(pb);
  ASSERT_EQ(e.getMatches().size(), 1u);
  MatchDstL4PortRange range(0, 0);
  ASSERT_EQ(e.getMatch(range), FILTERS_OK);
  EXPECT_EQ(range.getMinPort(), 3);
  EXPECT_EQ(range.getMaxPort(), 4);
}

TEST(FiltersEntryWire, UnknownKindsAreSkipped) {
  FiltersEntryPB pb;
  pb.add_matches_()->set_type_(39);
  AddMatch(&pb, MatchUnknownDestIp());
  pb.add_matches_()->set_type_(4000000000u);
  pb.add_actions_()->set_type_(21);
  AddAction(&pb, ActionL2ToCpuDrop());
  const FiltersEntry e = FromPB(pb);
  ASSERT_EQ(e.getMatches().size(), 1u);
  EXPECT_EQ(e.getMatches().begin()->first, FILTERS_MATCH_UNKNOWN_DEST_IP);
  ASSERT_EQ(e.getActions().size(), 1u);
  EXPECT_EQ(e.getActions().begin()->first, FILTERS_ACTION_L2_TO_CPU_DROP);
}

TEST(FiltersEntryWire, CountersAreTakenAsStored) {
  FiltersEntryPB pb;
  Counter(1, COUNTER_TYPE_PACKETS).Serialize(pb.add_counters_());
  Counter(2, COUNTER_TYPE_PACKETS).Serialize(pb.add_counters_());
  Counter(1, COUNTER_TYPE_OCTETS).Serialize(pb.add_counters_());
  Counter(3, COUNTER_TYPE_INVALID).Serialize(pb.add_counters_());
  const FiltersEntry e = FromPB(pb);
  ASSERT_EQ(e.getCounters().size(), 3u);
  EXPECT_EQ(*e.getCounter(1), Counter(1, COUNTER_TYPE_OCTETS));  // later wins
  EXPECT_EQ(*e.getCounter(2), Counter(2, COUNTER_TYPE_PACKETS));
  EXPECT_EQ(*e.getCounter(3), Counter(3, COUNTER_TYPE_INVALID));
}

TEST(FiltersEntryWire, CountersHeldBeforeAreReplaced) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(8, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  FiltersEntryPB pb;
  Counter(9, COUNTER_TYPE_OCTETS).Serialize(pb.add_counters_());
  e.convertFromFiltersEntryPB(&pb);
  ASSERT_EQ(e.getCounters().size(), 1u);
  EXPECT_NE(e.getCounter(9), nullptr);
}

TEST(FiltersEntryWire, IngressPortElementsAccumulate) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchIngressPorts(std::list<limid_t>{Eth(1)}));
  AddMatch(&pb, MatchTTL(4));
  AddMatch(&pb, MatchIngressPorts(std::list<limid_t>{Eth(2)}));
  AddMatch(&pb, MatchIngressPorts(std::list<limid_t>{Eth(3), Eth(1)}));
  const FiltersEntry e = FromPB(pb);
  EXPECT_EQ(e.getMatches().size(), 2u);
  MatchIngressPorts ports(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(ports), FILTERS_OK);
  EXPECT_EQ(ports.getPorts(),
            (std::list<limid_t>{Eth(1), Eth(2), Eth(3), Eth(1)}));
}

TEST(FiltersEntryWire, IngressExcludedTypesAccumulateToo) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchIngressPorts(std::list<port_type_t>{CPU_PORT}));
  AddMatch(&pb, MatchIngressPorts(std::list<port_type_t>{LAG_PORT}));
  const FiltersEntry e = FromPB(pb);
  MatchIngressPorts ports(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(ports), FILTERS_OK);
  EXPECT_EQ(ports.getExcludedPortTypes(),
            (std::list<port_type_t>{CPU_PORT, LAG_PORT}));
}

TEST(FiltersEntryWire, EgressPortAndBlockEgressElementsAccumulate) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchEgressPorts(std::list<limid_t>{Eth(5)}));
  AddMatch(&pb, MatchEgressPorts(std::list<limid_t>{Eth(6)}));
  AddAction(&pb, ActionBlockEgressPorts(std::list<limid_t>{Eth(7)}));
  AddAction(&pb, ActionDeny());
  AddAction(&pb, ActionBlockEgressPorts(std::list<limid_t>{Eth(8), Eth(9)}));
  const FiltersEntry e = FromPB(pb);
  MatchEgressPorts ports(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(ports), FILTERS_OK);
  EXPECT_EQ(ports.getPorts(), (std::list<limid_t>{Eth(5), Eth(6)}));
  ActionBlockEgressPorts block(std::list<limid_t>{});
  ASSERT_EQ(e.getAction(block), FILTERS_OK);
  EXPECT_EQ(block.getPorts(), (std::list<limid_t>{Eth(7), Eth(8), Eth(9)}));
}

TEST(FiltersEntryWire, OverwritingKindsEndWithTheLastElement) {
  FiltersEntryPB pb;
  AddMatch(&pb, MatchExternalVlanId(std::set<uint16_t>{1, 2}));
  AddMatch(&pb, MatchExternalVlanId(std::set<uint16_t>{3}));
  AddMatch(&pb, MatchPcp(std::set<uint8_t>{1, 2}));
  AddMatch(&pb, MatchPcp(std::set<uint8_t>{7}));
  AddMatch(&pb, MatchTTL(1));
  AddMatch(&pb, MatchTTL(2));
  AddAction(&pb, ActionRedirect(Eth(1)));
  AddAction(&pb, ActionRedirect(Eth(2)));
  AddAction(&pb, ActionSetPcp(1));
  AddAction(&pb, ActionSetPcp(2));
  const FiltersEntry e = FromPB(pb);
  EXPECT_EQ(e.getMatches().size(), 3u);
  EXPECT_EQ(e.getActions().size(), 2u);
  MatchExternalVlanId vlans(std::set<uint16_t>{});
  ASSERT_EQ(e.getMatch(vlans), FILTERS_OK);
  EXPECT_EQ(vlans.getVlanIds(), (std::set<uint16_t>{3}));
  MatchPcp pcps(std::set<uint8_t>{});
  ASSERT_EQ(e.getMatch(pcps), FILTERS_OK);
  EXPECT_EQ(pcps.getPcps(), (std::set<uint8_t>{7}));
  MatchTTL ttl(0);
  ASSERT_EQ(e.getMatch(ttl), FILTERS_OK);
  EXPECT_EQ(ttl.getTTL(), 2);
  ActionRedirect redirect(Eth(9));
  ASSERT_EQ(e.getAction(redirect), FILTERS_OK);
  EXPECT_EQ(redirect.getRedirectPorts(), (std::list<limid_t>{Eth(2)}));
  ActionSetPcp pcp(0);
  ASSERT_EQ(e.getAction(pcp), FILTERS_OK);
  EXPECT_EQ(pcp.getPcp(), 2);
}

TEST(FiltersEntryWire, HeldMatchesAndActionsAreKeptOrReplacedByKind) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchTPID(0x8100)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchTTL(5)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchIngressPorts(std::list<limid_t>{Eth(1)})),
            FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  FiltersEntryPB pb;
  pb.set_id_(9);
  AddMatch(&pb, MatchTTL(7));
  // The wire element starts from an empty list, not from the held match.
  AddMatch(&pb, MatchIngressPorts(std::list<limid_t>{Eth(2)}));
  AddAction(&pb, ActionPermit());
  e.convertFromFiltersEntryPB(&pb);
  EXPECT_EQ(e.getId(), 9u);
  EXPECT_EQ(e.getMatches().size(), 3u);
  MatchTTL ttl(0);
  ASSERT_EQ(e.getMatch(ttl), FILTERS_OK);
  EXPECT_EQ(ttl.getTTL(), 7);
  MatchIngressPorts ports(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(ports), FILTERS_OK);
  EXPECT_EQ(ports.getPorts(), (std::list<limid_t>{Eth(2)}));
  EXPECT_EQ(e.getActions().size(), 2u);
}

TEST(FiltersEntryWire, HeldIpv6MatchRefusesIpv4FromTheWire) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDstIPv6(Ip6("2001:db8::1"))), FILTERS_OK);
  FiltersEntryPB pb;
  AddMatch(&pb, MatchDstIPv4(Ip4("10.0.0.1")));
  e.convertFromFiltersEntryPB(&pb);
  ASSERT_EQ(e.getMatches().size(), 1u);
  EXPECT_EQ(e.getMatches().begin()->first, FILTERS_MATCH_DST_IPV6);
}

TEST(FiltersEntryWire, MessageWithoutParentKeepsTheHeldParent) {
  FiltersEntry e(1);
  e.setPolicerParent(entries_test::EgressPolicer(4));
  const auto parent = e.getPolicerParent();
  const FiltersEntryPB pb = ToPB(FiltersEntry(2));
  e.convertFromFiltersEntryPB(&pb);
  EXPECT_EQ(e.getPolicerParent(), parent);
  EXPECT_EQ(e.getPolicer(), policer::Policer());
}

TEST(FiltersEntryWire, MessageWithoutPolicerStillYieldsTheEntry) {
  FiltersEntryPB pb;
  pb.set_id_(5);
  pb.set_priority_(6);
  AddMatch(&pb, MatchDrop(true));
  AddAction(&pb, ActionBlackHole());
  std::string bytes;
  ASSERT_TRUE(pb.SerializePartialToString(&bytes));
  FiltersEntryPB check;
  EXPECT_FALSE(check.ParseFromString(bytes));

  const FiltersEntry e(bytes);
  EXPECT_EQ(e.getId(), 5u);
  EXPECT_EQ(e.getPriority(), 6u);
  EXPECT_EQ(e.getPolicer(), policer::Policer());
  MatchDrop drop(false);
  ASSERT_EQ(e.getMatch(drop), FILTERS_OK);
  EXPECT_TRUE(drop.getDropFlag());
  EXPECT_EQ(e.getActions().count(FILTERS_ACTION_BLACK_HOLE), 1u);
}

TEST(FiltersEntryWire, IncompleteMplsPortSetThrowsOutOfTheConstructor) {
  FiltersEntryPB pb;
  ActionPB* action = pb.add_actions_();
  action->set_type_(FILTERS_ACTION_MPLS_PORT_SET);
  action->set_vpn_id(0x31);
  std::string bytes;
  ASSERT_TRUE(pb.SerializePartialToString(&bytes));
  try {
    FiltersEntry e(bytes);
    ADD_FAILURE() << "no exception";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(),
                 "ActionMplsPortSet: ActionPB missing vpn_id and "
                 "mpls_access_port");
  }
}

TEST(FiltersEntryWire, FailedMplsLoadLeavesTheHeldActionInPlace) {
  FiltersEntry e(1);
  const ActionMplsPortSet held(limid_make(limid_type_mpls_vpws, 8), Eth(9));
  ASSERT_EQ(e.setAction(held), FILTERS_OK);
  FiltersEntryPB pb;
  // A VPN identifier of the wrong type: an Ethernet port.
  AddAction(&pb,
            ActionMplsPortSet(limid_make(limid_type_mpls_vpws, 1), Eth(2)));
  pb.mutable_actions_(0)->set_vpn_id(pb.actions_(0).mpls_access_port());
  EXPECT_THROW(e.convertFromFiltersEntryPB(&pb), std::invalid_argument);
  ActionMplsPortSet out = held;
  ASSERT_EQ(e.getAction(out), FILTERS_OK);
  EXPECT_TRUE(out == held);
  EXPECT_EQ(out.getVpnId(), held.getVpnId());
}

TEST(FiltersEntryWire, MplsPortSetTravelsAsInterfaceIndexes) {
  FiltersEntry e(1);
  const limid_t vpn = limid_make(limid_type_mpls_vpws, 8);
  ASSERT_EQ(e.setAction(ActionMplsPortSet(vpn, Eth(9))), FILTERS_OK);
  const FiltersEntryPB pb = ToPB(e);
  ASSERT_EQ(pb.actions__size(), 1);
  uint32_t ifindex = 0;
  ASSERT_EQ(limid_to_ifindex(vpn, &ifindex), 0);
  EXPECT_EQ(pb.actions_(0).vpn_id(), ifindex);
  const FiltersEntry back = FromPB(pb);
  ActionMplsPortSet out(vpn, Eth(1));
  ASSERT_EQ(back.getAction(out), FILTERS_OK);
  EXPECT_EQ(out.getVpnId(), vpn);
  EXPECT_EQ(out.getMplsAccessPort(), Eth(9));
}

TEST(FiltersEntryWire, PermitAndDenyAreBothSerialized) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  const FiltersEntryPB pb = ToPB(e);
  ASSERT_EQ(pb.actions__size(), 2);
  EXPECT_EQ(pb.actions_(0).type_(), 0u);
  EXPECT_EQ(pb.actions_(1).type_(), 1u);
  EXPECT_EQ(FromPB(pb).getActions().size(), 2u);
}

}  // namespace
}  // namespace FiltersCommon
