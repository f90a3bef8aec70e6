// The entry object: construction, copy and move, equality, bulk operations,
// and the rules by which it admits matches and actions.
#include <gtest/gtest.h>

#include <list>
#include <map>
#include <memory>
#include <set>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include "FiltersCommon/filter_entries.h"
#include "common/kinds.h"
#include "entries_samples.h"

namespace FiltersCommon {
namespace {

using entries_test::Eth;
using entries_test::Ip4;
using entries_test::Ip6;

// Classes outside the catalogue: the entry must refuse them.
class StrayMatch : public Match {
 public:
  explicit StrayMatch(int kind) : Match(static_cast<filtersMatch_t>(kind)) {}
};
class StrayAction : public Action {
 public:
  explicit StrayAction(int kind) : Action(static_cast<filtersAction_t>(kind)) {}
};

std::set<int> MatchKinds(const FiltersEntry& e) {
  std::set<int> kinds;
  for (const auto& m : e.getMatches()) kinds.insert(m.first);
  return kinds;
}

std::set<int> ActionKinds(const FiltersEntry& e) {
  std::set<int> kinds;
  for (const auto& a : e.getActions()) kinds.insert(a.first);
  return kinds;
}

// A moved-from entry keeps its identifier, priority and policer, and has
// lost its maps and its parent.
void ExpectLeftAfterMove(const FiltersEntry& source,
                         const FiltersEntry& before) {
  EXPECT_EQ(source.getId(), before.getId());
  EXPECT_EQ(source.getPriority(), before.getPriority());
  EXPECT_EQ(source.getPolicer(), before.getPolicer());
  EXPECT_EQ(source.getPolicerParent(), nullptr);
  EXPECT_TRUE(source.getCounters().empty());
  EXPECT_TRUE(source.getMatches().empty());
  EXPECT_TRUE(source.getActions().empty());
}

// ---- Construction, copy and move ----

static_assert(!std::is_copy_assignable_v<FiltersEntry>,
              "entries have no copy assignment");
static_assert(std::is_move_assignable_v<FiltersEntry>);
static_assert(std::is_copy_constructible_v<FiltersEntry>);
static_assert(!std::is_polymorphic_v<FiltersEntry>,
              "entries have no virtual functions");

TEST(FiltersEntry, DefaultConstructionIsEmptyWithIdZero) {
  FiltersEntry e;
  EXPECT_EQ(e.getId(), 0u);
  EXPECT_EQ(e.getPriority(), 0u);
  EXPECT_EQ(e.getPolicer(), policer::Policer());
  EXPECT_EQ(e.getPolicerParent(), nullptr);
  EXPECT_TRUE(e.getCounters().empty());
  EXPECT_TRUE(e.getMatches().empty());
  EXPECT_TRUE(e.getActions().empty());
}

TEST(FiltersEntry, ConstructionWithIdKeepsIt) {
  FiltersEntry e(4000000000u);
  EXPECT_EQ(e.getId(), 4000000000u);
  EXPECT_EQ(e.getPriority(), 0u);
  EXPECT_TRUE(e.getMatches().empty());
}

TEST(FiltersEntry, SettersStoreIdAndPriority) {
  FiltersEntry e;
  e.setId(5);
  e.setPriority(77);
  EXPECT_EQ(e.getId(), 5u);
  EXPECT_EQ(e.getPriority(), 77u);
}

TEST(FiltersEntry, CopyIsEqualAndDeep) {
  const FiltersEntry original = entries_test::EntryWithIpv4Matches();
  FiltersEntry copy(original);
  EXPECT_TRUE(copy == original);
  EXPECT_EQ(copy.getMatches().size(), original.getMatches().size());
  // Each match is the copy's own object.
  for (const auto& m : copy.getMatches()) {
    EXPECT_NE(m.second.get(), original.getMatches().at(m.first).get());
  }
  for (const auto& a : copy.getActions()) {
    EXPECT_NE(a.second.get(), original.getActions().at(a.first).get());
  }
}

TEST(FiltersEntry, CopySharesTheParentPolicer) {
  FiltersEntry original(1);
  original.setPolicerParent(entries_test::EgressPolicer(8));
  FiltersEntry copy(original);
  EXPECT_EQ(copy.getPolicerParent().get(), original.getPolicerParent().get());
  // Two entries plus the temporary from getPolicerParent().
  EXPECT_EQ(original.getPolicerParent().use_count(), 3);
}

TEST(FiltersEntry, CopyKeepsDscpAsTheToSByte) {
  FiltersEntry original(1);
  ASSERT_EQ(original.setMatch(MatchDSCP(46)), FILTERS_OK);
  FiltersEntry copy(original);
  MatchToS tos(0);
  ASSERT_EQ(copy.getMatch(tos), FILTERS_OK);
  EXPECT_EQ(tos.getToS(), 184);
  EXPECT_TRUE(copy == original);
}

TEST(FiltersEntry, MoveConstructionLeavesSourceWithIdPriorityAndPolicer) {
  FiltersEntry source = entries_test::EntryWithAllActions();
  const FiltersEntry expected(source);
  const Action* action = source.getActions().at(FILTERS_ACTION_DENY).get();

  FiltersEntry moved(std::move(source));

  EXPECT_TRUE(moved == expected);
  // The objects themselves moved, none was copied.
  EXPECT_EQ(moved.getActions().at(FILTERS_ACTION_DENY).get(), action);
  ExpectLeftAfterMove(source, expected);  // NOLINT(bugprone-use-after-move)
}

TEST(FiltersEntry, MoveAssignmentReplacesEverythingAndEmptiesSource) {
  FiltersEntry source = entries_test::EntryWithIpv6Matches();
  const FiltersEntry expected(source);

  FiltersEntry target = entries_test::EntryWithIpv4Matches();
  const std::shared_ptr<policer::Policer> oldParent = target.getPolicerParent();
  ASSERT_EQ(oldParent.use_count(), 2);

  target = std::move(source);

  EXPECT_TRUE(target == expected);
  EXPECT_EQ(MatchKinds(target), MatchKinds(expected));
  // The target's former parent was released.
  EXPECT_EQ(oldParent.use_count(), 1);
  ExpectLeftAfterMove(source, expected);  // NOLINT(bugprone-use-after-move)
}

// ---- Equality ----

TEST(FiltersEntryEquality, EntriesDifferingOnlyInPriorityAreUnequal) {
  FiltersEntry a = entries_test::EntryWithAllActions();
  FiltersEntry b(a);
  ASSERT_TRUE(a == b);
  b.setPriority(a.getPriority() + 1);
  EXPECT_FALSE(a == b);
  EXPECT_FALSE(b == a);
}

TEST(FiltersEntryEquality, EntriesDifferingOnlyInIdAreUnequal) {
  FiltersEntry a(1);
  FiltersEntry b(2);
  EXPECT_FALSE(a == b);
  b.setId(1);
  EXPECT_TRUE(a == b);
}

TEST(FiltersEntryEquality, ParentOnOneSideOnlyIsUnequalBothWays) {
  FiltersEntry with(1);
  with.setPolicerParent(entries_test::EgressPolicer(2));
  FiltersEntry without(1);
  EXPECT_FALSE(with == without);
  EXPECT_FALSE(without == with);
}

TEST(FiltersEntryEquality, ParentsCompareByContentNotByObject) {
  FiltersEntry a(1);
  FiltersEntry b(1);
  a.setPolicerParent(entries_test::EgressPolicer(2));
  b.setPolicerParent(entries_test::EgressPolicer(2));
  ASSERT_NE(a.getPolicerParent().get(), b.getPolicerParent().get());
  EXPECT_TRUE(a == b);
  b.setPolicerParent(entries_test::EgressPolicer(3));
  EXPECT_FALSE(a == b);
}

TEST(FiltersEntryEquality, EveryPolicerFieldCounts) {
  const policer::Policer base = entries_test::EgressPolicer(2);
  std::vector<policer::Policer> variants;
  variants.push_back(entries_test::EgressPolicer(3));  // id
  variants.push_back(policer::Policer(2, policer::STAGE_INGRESS, base.GetMode(),
                                      base.GetActions()));
  variants.push_back(policer::Policer(2, policer::STAGE_EGRESS,
                                      policer::Mode::TrTcm(10, 20, 30, 41),
                                      base.GetActions()));
  variants.push_back(policer::Policer(2, policer::STAGE_EGRESS,
                                      policer::Mode::TrTcmDs(10, 20, 30, 40),
                                      base.GetActions()));
  variants.push_back(
      policer::Policer(2, policer::STAGE_EGRESS, base.GetMode(), {}));
  variants.push_back(
      policer::Policer(2, policer::STAGE_EGRESS, base.GetMode(),
                       {policer::Action::SetPcp(policer::COLOR_YELLOW, 4),
                        policer::Action::SetDscp(policer::COLOR_GREEN, 46)}));
  variants.push_back(
      policer::Policer(2, policer::STAGE_EGRESS, base.GetMode(),
                       {policer::Action::SetPcp(policer::COLOR_YELLOW, 5),
                        policer::Action::SetDscp(policer::COLOR_RED, 46)}));

  FiltersEntry reference(1);
  reference.setPolicer(base);
  for (const policer::Policer& p : variants) {
    FiltersEntry own(1);
    own.setPolicer(p);
    EXPECT_FALSE(own == reference);
    EXPECT_FALSE(reference == own);
    FiltersEntry parentRef(1);
    parentRef.setPolicerParent(base);
    FiltersEntry parent(1);
    parent.setPolicerParent(p);
    EXPECT_FALSE(parent == parentRef);
  }
  FiltersEntry same(1);
  same.setPolicer(entries_test::EgressPolicer(2));
  EXPECT_TRUE(same == reference);
}

TEST(FiltersEntryEquality, CountersCompareByIdAndType) {
  FiltersEntry a(1);
  FiltersEntry b(1);
  ASSERT_EQ(a.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_FALSE(a == b);  // sizes differ
  ASSERT_EQ(b.setCounter(Counter(2, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_FALSE(a == b);  // ids differ
  ASSERT_EQ(b.deleteCounter(2), FILTERS_OK);
  ASSERT_EQ(b.setCounter(Counter(1, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  EXPECT_FALSE(a == b);  // types differ
  ASSERT_EQ(b.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  EXPECT_TRUE(a == b);
}

TEST(FiltersEntryEquality, MatchesCompareByKindAndValue) {
  FiltersEntry a(1);
  FiltersEntry b(1);
  ASSERT_EQ(a.setMatch(MatchTTL(5)), FILTERS_OK);
  ASSERT_EQ(b.setMatch(MatchTPID(5)), FILTERS_OK);
  EXPECT_FALSE(a == b);  // same count, other kind
  ASSERT_EQ(b.deleteMatch(FILTERS_MATCH_TPID), FILTERS_OK);
  ASSERT_EQ(b.setMatch(MatchTTL(6)), FILTERS_OK);
  EXPECT_FALSE(a == b);
  ASSERT_EQ(b.setMatch(MatchTTL(5)), FILTERS_OK);
  EXPECT_TRUE(a == b);
}

TEST(FiltersEntryEquality, ToSAndDscpOfTheSameByteAreEqual) {
  FiltersEntry tos(1);
  FiltersEntry dscp(1);
  ASSERT_EQ(tos.setMatch(MatchToS(40)), FILTERS_OK);
  ASSERT_EQ(dscp.setMatch(MatchDSCP(10)), FILTERS_OK);
  EXPECT_TRUE(tos == dscp);
  EXPECT_TRUE(dscp == tos);
}

TEST(FiltersEntryEquality, ActionsCompareByKindAndValue) {
  FiltersEntry a(1);
  FiltersEntry b(1);
  ASSERT_EQ(a.setAction(ActionSetPcp(3)), FILTERS_OK);
  ASSERT_EQ(b.setAction(ActionSetInnerPcp(3)), FILTERS_OK);
  EXPECT_FALSE(a == b);
  ASSERT_EQ(b.deleteAction(FILTERS_ACTION_SET_INNER_PCP), FILTERS_OK);
  ASSERT_EQ(b.setAction(ActionSetPcp(4)), FILTERS_OK);
  EXPECT_FALSE(a == b);
  ASSERT_EQ(b.setAction(ActionSetPcp(3)), FILTERS_OK);
  EXPECT_TRUE(a == b);
}

// ---- Bulk operations ----

TEST(FiltersEntryBulk, CopyMatchesAddsEveryElementAsItsKindsClass) {
  const FiltersEntry source = entries_test::EntryWithIpv4Matches();
  FiltersEntry e(1);
  EXPECT_EQ(e.copyMatches(source.getMatches()), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e), MatchKinds(source));
  for (const auto& m : e.getMatches()) {
    EXPECT_TRUE(*m.second == *source.getMatches().at(m.first))
        << "kind " << m.first;
  }
}

TEST(FiltersEntryBulk, CopyMatchesSkipsKindsPastTheLast) {
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_TTL] = std::make_unique<MatchTTL>(9);
  src[static_cast<filtersMatch_t>(39)] = std::make_unique<StrayMatch>(39);
  src[static_cast<filtersMatch_t>(40)] = std::make_unique<StrayMatch>(1000);
  FiltersEntry e(1);
  EXPECT_EQ(e.copyMatches(src), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e), (std::set<int>{FILTERS_MATCH_TTL}));
}

TEST(FiltersEntryBulk, CopyMatchesStopsAtFirstRefusalKeepingEarlierOnes) {
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_TPID] = std::make_unique<MatchTPID>(0x8100);
  src[FILTERS_MATCH_SRC_IPV4] = std::make_unique<MatchSrcIPv4>(Ip4("1.2.3.4"));
  src[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(Ip6("2001:db8::9"));
  src[FILTERS_MATCH_TTL] = std::make_unique<MatchTTL>(9);
  FiltersEntry e(1);
  EXPECT_EQ(e.copyMatches(src), FILTERS_ERR_INVALID);
  EXPECT_EQ(MatchKinds(e),
            (std::set<int>{FILTERS_MATCH_TPID, FILTERS_MATCH_SRC_IPV4}));
}

TEST(FiltersEntryBulk, CopyMatchesReadsTheObjectsKindNotTheKey) {
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_ALL] = std::make_unique<MatchTTL>(3);
  FiltersEntry e(1);
  EXPECT_EQ(e.copyMatches(src), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e), (std::set<int>{FILTERS_MATCH_TTL}));
}

TEST(FiltersEntryBulk, SetMatchesWithARefusedMatchKeepsFormerMatches) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchTTL(3)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchIngressPorts(std::list<limid_t>{Eth(1)})),
            FILTERS_OK);
  const FiltersEntry before(e);

  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_SRC_IPV4] = std::make_unique<MatchSrcIPv4>(Ip4("1.2.3.4"));
  src[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(Ip6("2001:db8::9"));
  EXPECT_EQ(e.setMatches(src), FILTERS_ERR_INVALID);
  EXPECT_TRUE(e == before);
  EXPECT_EQ(MatchKinds(e),
            (std::set<int>{FILTERS_MATCH_INGRESS_PORTS, FILTERS_MATCH_TTL}));
}

TEST(FiltersEntryBulk, SetMatchesReplacesTheWholeSet) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchSrcIPv4(Ip4("1.2.3.4"))), FILTERS_OK);
  FiltersEntry::MatchMap src;
  // Allowed because the former IPv4 match is gone first.
  src[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(Ip6("2001:db8::9"));
  src[FILTERS_MATCH_TTL] = std::make_unique<MatchTTL>(1);
  EXPECT_EQ(e.setMatches(src), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e),
            (std::set<int>{FILTERS_MATCH_DST_IPV6, FILTERS_MATCH_TTL}));
  EXPECT_NE(e.getMatches().at(FILTERS_MATCH_TTL).get(),
            src.at(FILTERS_MATCH_TTL).get());
}

TEST(FiltersEntryBulk, CopyActionsSkipsKindsPastTheLast) {
  FiltersEntry::ActionMap src;
  src[FILTERS_ACTION_DENY] = std::make_unique<ActionDeny>();
  src[static_cast<filtersAction_t>(21)] = std::make_unique<StrayAction>(21);
  FiltersEntry e(1);
  EXPECT_EQ(e.copyActions(src), FILTERS_OK);
  EXPECT_EQ(ActionKinds(e), (std::set<int>{FILTERS_ACTION_DENY}));
}

TEST(FiltersEntryBulk, SetActionsReplacesTheWholeSet) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionSetPcp(1)), FILTERS_OK);
  FiltersEntry::ActionMap src;
  src[FILTERS_ACTION_SET_PCP] = std::make_unique<ActionSetPcp>(5);
  src[FILTERS_ACTION_DENY] = std::make_unique<ActionDeny>();
  EXPECT_EQ(e.setActions(src), FILTERS_OK);
  EXPECT_EQ(ActionKinds(e),
            (std::set<int>{FILTERS_ACTION_DENY, FILTERS_ACTION_SET_PCP}));
  ActionSetPcp pcp(0);
  ASSERT_EQ(e.getAction(pcp), FILTERS_OK);
  EXPECT_EQ(pcp.getPcp(), 5);
}

TEST(FiltersEntryBulk, DeleteMatchOfAbsentKindIsNotFoundAndChangesNothing) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchTTL(3)), FILTERS_OK);
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_TPID), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(MatchKinds(e), (std::set<int>{FILTERS_MATCH_TTL}));
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_TTL), FILTERS_OK);
  EXPECT_TRUE(e.getMatches().empty());
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_TTL), FILTERS_ERR_NOT_FOUND);
}

TEST(FiltersEntryBulk, DeleteActionOfAbsentKindIsNotFoundAndChangesNothing) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  EXPECT_EQ(e.deleteAction(FILTERS_ACTION_PERMIT), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(ActionKinds(e), (std::set<int>{FILTERS_ACTION_DENY}));
  EXPECT_EQ(e.deleteAction(FILTERS_ACTION_DENY), FILTERS_OK);
  EXPECT_TRUE(e.getActions().empty());
}

// ---- Registries ----

TEST(FiltersEntryRegistry, KnowsExactlyTheFortyMatchClasses) {
  std::set<std::size_t> expected = {typeid(MatchDSCP).hash_code()};
#define FILTERS_TEST_HASH(value, Class) \
  expected.insert(typeid(Class).hash_code());
  FILTERS_FOR_EACH_MATCH_KIND(FILTERS_TEST_HASH)
#undef FILTERS_TEST_HASH
  EXPECT_EQ(expected.size(), 40u);
  EXPECT_EQ(FiltersEntry::validMatchTypes, expected);
  EXPECT_EQ(FiltersEntry::validMatchTypes.count(typeid(MatchIPv4).hash_code()),
            0u);
  EXPECT_EQ(FiltersEntry::validMatchTypes.count(typeid(Match).hash_code()), 0u);
}

TEST(FiltersEntryRegistry, KnowsExactlyTheTwentyOneActionClasses) {
  std::set<std::size_t> expected;
#define FILTERS_TEST_HASH(value, Class) \
  expected.insert(typeid(Class).hash_code());
  FILTERS_FOR_EACH_ACTION_KIND(FILTERS_TEST_HASH)
#undef FILTERS_TEST_HASH
  EXPECT_EQ(expected.size(), 21u);
  EXPECT_EQ(FiltersEntry::validActionTypes, expected);
  EXPECT_EQ(
      FiltersEntry::validActionTypes.count(typeid(ActionPorts).hash_code()),
      0u);
}

TEST(FiltersEntryRegistry, KindSetsOfThePairingRules) {
  EXPECT_EQ(FiltersEntry::ipv4OnlyMatchTypes,
            (std::set<filtersMatch_t>{FILTERS_MATCH_SRC_IPV4,
                                      FILTERS_MATCH_DST_IPV4}));
  EXPECT_EQ(FiltersEntry::ipv6OnlyMatchTypes,
            (std::set<filtersMatch_t>{FILTERS_MATCH_SRC_IPV6,
                                      FILTERS_MATCH_DST_IPV6}));
  EXPECT_EQ(FiltersEntry::l4DstPortMatchTypes,
            (std::set<filtersMatch_t>{FILTERS_MATCH_DST_L4_PORT,
                                      FILTERS_MATCH_DST_L4_PORT_RANGE}));
}

// ---- Match rules ----

TEST(FiltersEntryMatchRules, Ipv4BesideIpv6IsRefused) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchSrcIPv4(Ip4("10.0.0.1"))), FILTERS_OK);
  const FiltersEntry before(e);
  EXPECT_EQ(e.setMatch(MatchDstIPv6(Ip6("2001:db8::1"))), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchSrcIPv6(Ip6("2001:db8::1"))), FILTERS_ERR_INVALID);
  EXPECT_TRUE(e == before);
  EXPECT_EQ(e.setMatch(MatchDstIPv4(Ip4("10.0.0.2"))), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e),
            (std::set<int>{FILTERS_MATCH_SRC_IPV4, FILTERS_MATCH_DST_IPV4}));
}

TEST(FiltersEntryMatchRules, Ipv6BesideIpv4IsRefused) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDstIPv6(Ip6("2001:db8::1"))), FILTERS_OK);
  EXPECT_EQ(e.setMatch(MatchSrcIPv4(Ip4("10.0.0.1"))), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchDstIPv4(Ip4("10.0.0.1"))), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchSrcIPv6(Ip6("2001:db8::2"))), FILTERS_OK);
}

TEST(FiltersEntryMatchRules, DstPortBesideDstPortRangeIsRefused) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDstL4Port(80)), FILTERS_OK);
  EXPECT_EQ(e.setMatch(MatchDstL4PortRange(1, 9)), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchDstL4Port(8080, 0xFF00)), FILTERS_OK);
  MatchDstL4Port held(0);
  ASSERT_EQ(e.getMatch(held), FILTERS_OK);
  EXPECT_EQ(held.getPort(), 8080);
  EXPECT_EQ(held.getMask(), 0xFF00);
  EXPECT_EQ(e.setMatch(MatchSrcL4Port(53)), FILTERS_OK);
  EXPECT_EQ(e.getMatches().size(), 2u);
}

TEST(FiltersEntryMatchRules, DstPortRangeBesideDstPortIsRefused) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDstL4PortRange(1, 9)), FILTERS_OK);
  EXPECT_EQ(e.setMatch(MatchDstL4Port(80)), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchDstL4PortRange(10, 90)), FILTERS_OK);
}

TEST(FiltersEntryMatchRules, PredicatesFollowTheHeldMatches) {
  FiltersEntry e(1);
  const MatchDstIPv6 v6(Ip6("2001:db8::1"));
  const MatchDstL4PortRange range(1, 2);
  EXPECT_TRUE(e.isL3CompatibleMatch(v6));
  EXPECT_TRUE(e.isL4DstPortCompatibleMatch(range));
  ASSERT_EQ(e.setMatch(MatchSrcIPv4(Ip4("10.0.0.1"))), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchDstL4Port(80)), FILTERS_OK);
  EXPECT_FALSE(e.isL3CompatibleMatch(v6));
  EXPECT_FALSE(e.isL4DstPortCompatibleMatch(range));
  EXPECT_TRUE(e.isL3CompatibleMatch(MatchDstIPv4(Ip4("10.0.0.2"))));
  EXPECT_TRUE(e.isL4DstPortCompatibleMatch(MatchDstL4Port(81)));
  // Kinds outside both rules are always compatible.
  EXPECT_TRUE(e.isL3CompatibleMatch(MatchTTL(1)));
  EXPECT_TRUE(e.isL4DstPortCompatibleMatch(MatchSrcL4Port(1)));
}

TEST(FiltersEntryMatchRules, SecondPortMatchReplacesTheFirstList) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchIngressPorts(std::list<limid_t>{Eth(1), Eth(2)})),
            FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchIngressPorts(std::list<limid_t>{Eth(3)})),
            FILTERS_OK);
  EXPECT_EQ(e.getMatches().size(), 1u);
  MatchIngressPorts held(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(held), FILTERS_OK);
  EXPECT_EQ(held.getPorts(), (std::list<limid_t>{Eth(3)}));
}

TEST(FiltersEntryMatchRules, StoredMatchIsACopy) {
  FiltersEntry e(1);
  MatchSrcPort port(Eth(1));
  ASSERT_EQ(e.setMatch(port), FILTERS_OK);
  port.setSrcPort(Eth(2));
  MatchSrcPort held(0);
  ASSERT_EQ(e.getMatch(held), FILTERS_OK);
  EXPECT_EQ(held.getLimId(), Eth(1));
}

TEST(FiltersEntryMatchRules, GetMatchOfAbsentKindLeavesTheObject) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchTTL(3)), FILTERS_OK);
  MatchExternalVlanId vlans(std::set<uint16_t>{5, 6});
  EXPECT_EQ(e.getMatch(vlans), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(vlans.getVlanIds(), (std::set<uint16_t>{5, 6}));
}

TEST(FiltersEntryMatchRules, GetMatchCopiesTheWholeValue) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchInternalVlanId(std::set<uint16_t>{1, 2, 3})),
            FILTERS_OK);
  MatchInternalVlanId vlans(std::set<uint16_t>{9});
  ASSERT_EQ(e.getMatch(vlans), FILTERS_OK);
  EXPECT_EQ(vlans.getVlanIds(), (std::set<uint16_t>{1, 2, 3}));
}

TEST(FiltersEntryMatchRules, DscpTakesTheSlotOfToS) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchToS(3)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchDSCP(46)), FILTERS_OK);
  EXPECT_EQ(MatchKinds(e), (std::set<int>{FILTERS_MATCH_TOS}));
  MatchDSCP dscp(0);
  ASSERT_EQ(e.getMatch(dscp), FILTERS_OK);
  EXPECT_EQ(dscp.getDSCP(), 46);
  MatchToS tos(0);
  ASSERT_EQ(e.getMatch(tos), FILTERS_OK);
  EXPECT_EQ(tos.getToS(), 184);
}

TEST(FiltersEntryMatchRules, ReadingToSAsDscpGivesTheUpperSixBits) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchToS(185)), FILTERS_OK);
  MatchDSCP dscp(0);
  ASSERT_EQ(e.getMatch(dscp), FILTERS_OK);
  EXPECT_EQ(dscp.getDSCP(), 46);
  EXPECT_EQ(dscp.getToS(), 185);
}

TEST(FiltersEntryMatchRules, ClassesOutsideTheCatalogueAreRefused) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setMatch(StrayMatch(FILTERS_MATCH_TTL)), FILTERS_ERR_INVALID);
  // A value family is not a match class of its own.
  EXPECT_EQ(e.setMatch(MatchIPv4(FILTERS_MATCH_SRC_IPV4, Ip4("1.1.1.1"))),
            FILTERS_ERR_INVALID);
  EXPECT_TRUE(e.getMatches().empty());
  ASSERT_EQ(e.setMatch(MatchTTL(3)), FILTERS_OK);
  StrayMatch stray(FILTERS_MATCH_TTL);
  EXPECT_EQ(e.getMatch(stray), FILTERS_ERR_INVALID);
}

TEST(FiltersEntryMatchRules, EveryCatalogueClassIsAdmitted) {
  const FiltersEntry v4 = entries_test::EntryWithIpv4Matches();
  const FiltersEntry v6 = entries_test::EntryWithIpv6Matches();
  std::set<int> kinds = MatchKinds(v4);
  const std::set<int> more = MatchKinds(v6);
  kinds.insert(more.begin(), more.end());
  EXPECT_EQ(v4.getMatches().size(), 36u);
  EXPECT_EQ(kinds.size(), 39u);
  EXPECT_EQ(*kinds.begin(), 0);
  EXPECT_EQ(*kinds.rbegin(), 38);
}

// ---- Action rules ----

TEST(FiltersEntryActionRules, SecondActionOfAKindReplacesTheFirst) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setAction(ActionSetPcp(2)), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionSetPcp(6)), FILTERS_OK);
  EXPECT_EQ(ActionKinds(e), (std::set<int>{FILTERS_ACTION_SET_PCP}));
  ActionSetPcp held(0);
  ASSERT_EQ(e.getAction(held), FILTERS_OK);
  EXPECT_EQ(held.getPcp(), 6);
}

TEST(FiltersEntryActionRules, ContradictoryActionsAreKeptSideBySide) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  EXPECT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  EXPECT_EQ(e.setAction(ActionRedirect(Eth(1))), FILTERS_OK);
  EXPECT_EQ(e.setAction(ActionRedirectCancel()), FILTERS_OK);
  EXPECT_EQ(e.getActions().size(), 4u);
}

TEST(FiltersEntryActionRules, GetActionOfAbsentKindIsNotFound) {
  FiltersEntry e(1);
  ActionMapToCosQueue queue(4);
  EXPECT_EQ(e.getAction(queue), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(queue.getCosQueue(), 4);
}

TEST(FiltersEntryActionRules, GetActionCopiesTheValue) {
  FiltersEntry e(1);
  const limid_t vpn = limid_make(limid_type_mpls_vpws, 8);
  ASSERT_EQ(e.setAction(ActionMplsPortSet(vpn, Eth(9))), FILTERS_OK);
  ActionMplsPortSet held = ActionMplsPortSet(vpn, Eth(1));
  ASSERT_EQ(e.getAction(held), FILTERS_OK);
  EXPECT_EQ(held.getMplsAccessPort(), Eth(9));
  ActionRedirect redirect(Eth(2));
  ASSERT_EQ(e.setAction(redirect), FILTERS_OK);
  ActionRedirect out(Eth(3));
  ASSERT_EQ(e.getAction(out), FILTERS_OK);
  EXPECT_EQ(out.getRedirectPorts(), (std::list<limid_t>{Eth(2)}));
}

TEST(FiltersEntryActionRules, ClassesOutsideTheCatalogueAreRefused) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setAction(StrayAction(FILTERS_ACTION_DENY)), FILTERS_ERR_INVALID);
  EXPECT_TRUE(e.getActions().empty());
  ASSERT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  StrayAction stray(FILTERS_ACTION_DENY);
  EXPECT_EQ(e.getAction(stray), FILTERS_ERR_INVALID);
}

TEST(FiltersEntryActionRules, EveryCatalogueClassIsAdmitted) {
  const FiltersEntry e = entries_test::EntryWithAllActions();
  EXPECT_EQ(e.getActions().size(), 21u);
}

}  // namespace
}  // namespace FiltersCommon
