// The C interface to entries: creation and copying, the match and action
// functions with their codes for null and unknown kinds, and the guards.
#include "FiltersCommon/filter_entries_c.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_matches_c.h"
#include "c_api_test_util.h"
#include "policer/policer.h"

namespace FiltersCommon {
namespace {

using c_api_test::ActionPtr;
using c_api_test::CInterfaceDeathTest;
using c_api_test::EntryPtr;
using c_api_test::Eth;
using c_api_test::Guard;
using c_api_test::GuardName;
using c_api_test::GuardsOf;
using c_api_test::Ipv4;
using c_api_test::Ipv6;
using c_api_test::Mac;
using c_api_test::MatchPtr;
using c_api_test::OwnAction;
using c_api_test::OwnEntry;
using c_api_test::OwnMatch;

TEST(EntriesC, NewEntryHasItsIdAndPriorityZero) {
  EntryPtr e = OwnEntry(newFiltersEntry(0xFFFFFFFF));
  EXPECT_EQ(filtersEntryGetId(e.get()), 0xFFFFFFFFu);
  EXPECT_EQ(filtersEntryGetPriority(e.get()), 0u);
}

TEST(EntriesC, SetPriorityIsReadBack) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  filtersEntrySetPriority(e.get(), 4000000000u);
  EXPECT_EQ(filtersEntryGetPriority(e.get()), 4000000000u);
}

TEST(EntriesC, CopyIsEqualAndIndependent) {
  EntryPtr e = OwnEntry(newFiltersEntry(3));
  filtersEntrySetPriority(e.get(), 30);
  MatchPtr ttl = OwnMatch(newMatchTTL(64));
  ActionPtr deny = OwnAction(newActionDeny());
  ASSERT_EQ(filtersEntrySetMatch(e.get(), ttl.get()), 0);
  ASSERT_EQ(filtersEntrySetAction(e.get(), deny.get()), 0);

  EntryPtr copy = OwnEntry(copyFiltersEntry(e.get()));
  ASSERT_NE(copy.get(), e.get());
  EXPECT_TRUE(*copy == *e);

  filtersEntrySetPriority(copy.get(), 31);
  EXPECT_EQ(filtersEntryDeleteMatch(copy.get(), FILTERS_MATCH_TTL), 0);
  EXPECT_EQ(filtersEntryGetPriority(e.get()), 30u);
  MatchPtr out = OwnMatch(newMatchTTL(0));
  EXPECT_EQ(filtersEntryGetMatch(e.get(), out.get()), 0);
  EXPECT_EQ(matchTTLGet(out.get()), 64);
}

TEST(EntriesC, CopySharesTheParentPolicer) {
  EntryPtr e = OwnEntry(newFiltersEntry(3));
  e->setPolicerParent(
      policer::Policer(9, policer::STAGE_INGRESS, policer::Mode::Flow(1, 2)));
  EntryPtr copy = OwnEntry(copyFiltersEntry(e.get()));
  ASSERT_NE(e->getPolicerParent(), nullptr);
  EXPECT_EQ(copy->getPolicerParent().get(), e->getPolicerParent().get());
}

TEST(EntriesC, MatchFunctionsAnswerNullWithRefused) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  MatchPtr m = OwnMatch(newMatchAll());
  EXPECT_EQ(filtersEntrySetMatch(e.get(), nullptr), -5);
  EXPECT_EQ(filtersEntrySetMatch(nullptr, m.get()), -5);
  EXPECT_EQ(filtersEntryGetMatch(e.get(), nullptr), -5);
  EXPECT_EQ(filtersEntryGetMatch(nullptr, m.get()), -5);
  EXPECT_TRUE(e->getMatches().empty());
}

TEST(EntriesC, ActionFunctionsAnswerNullWithRefused) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  ActionPtr a = OwnAction(newActionPermit());
  EXPECT_EQ(filtersEntrySetAction(e.get(), nullptr), -5);
  EXPECT_EQ(filtersEntrySetAction(nullptr, a.get()), -5);
  EXPECT_EQ(filtersEntryGetAction(e.get(), nullptr), -5);
  EXPECT_EQ(filtersEntryGetAction(nullptr, a.get()), -5);
  EXPECT_TRUE(e->getActions().empty());
}

TEST(EntriesC, MatchOfAKindAbove38IsInvalid) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  Match unknown(static_cast<filtersMatch_t>(39));
  EXPECT_EQ(filtersEntrySetMatch(e.get(), &unknown), -4);
  EXPECT_EQ(filtersEntryGetMatch(e.get(), &unknown), -4);
  EXPECT_TRUE(e->getMatches().empty());
}

TEST(EntriesC, ActionOfAKindAbove20IsInvalid) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  Action unknown(static_cast<filtersAction_t>(21));
  EXPECT_EQ(filtersEntrySetAction(e.get(), &unknown), -4);
  EXPECT_EQ(filtersEntryGetAction(e.get(), &unknown), -4);
  EXPECT_TRUE(e->getActions().empty());
}

TEST(EntriesC, SetMatchStoresACopyThatOutlivesTheHandle) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  const ether_addr mac = Mac(0, 0x11, 0x22, 0x33, 0x44, 0x55);
  void* handle = newMatchDstMac(mac);
  ASSERT_EQ(filtersEntrySetMatch(e.get(), handle), 0);
  deleteMatch(handle);

  MatchPtr out = OwnMatch(newMatchDstMac(Mac(0, 0, 0, 0, 0, 0)));
  ASSERT_EQ(filtersEntryGetMatch(e.get(), out.get()), 0);
  EXPECT_TRUE(*static_cast<Match*>(out.get()) == MatchDstMac(mac));
}

TEST(EntriesC, GetMatchCopiesEveryValueFieldIntoTheHandle) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  const limid_t ports[] = {Eth(1), Eth(2), Eth(1)};
  MatchPtr in = OwnMatch(newMatchIngressPorts(ports, 3));
  ASSERT_EQ(filtersEntrySetMatch(e.get(), in.get()), 0);

  MatchPtr out = OwnMatch(newMatchIngressPorts(nullptr, 0));
  ASSERT_EQ(filtersEntryGetMatch(e.get(), out.get()), 0);
  EXPECT_EQ(static_cast<MatchIngressPorts*>(static_cast<Match*>(out.get()))
                ->getPorts(),
            (std::list<limid_t>{Eth(1), Eth(2), Eth(1)}));
}

TEST(EntriesC, GetMatchOfAKindNotHeldLeavesTheHandleAlone) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  MatchPtr out = OwnMatch(newMatchVrfId(12));
  EXPECT_EQ(filtersEntryGetMatch(e.get(), out.get()), -3);
  EXPECT_EQ(matchVrfIdGet(out.get()), 12);
}

TEST(EntriesC, DscpIsStoredInTheToSSlotAndReadBackAsDscp) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  MatchPtr dscp = OwnMatch(newMatchDSCP(46));
  ASSERT_EQ(filtersEntrySetMatch(e.get(), dscp.get()), 0);
  ASSERT_EQ(e->getMatches().size(), 1u);
  EXPECT_EQ(e->getMatches().count(FILTERS_MATCH_TOS), 1u);

  MatchPtr out = OwnMatch(newMatchDSCP(0));
  ASSERT_EQ(filtersEntryGetMatch(e.get(), out.get()), 0);
  EXPECT_EQ(matchDSCPGet(out.get()), 46);

  MatchPtr other = OwnMatch(newMatchDSCP(10));
  ASSERT_EQ(filtersEntrySetMatch(e.get(), other.get()), 0);
  ASSERT_EQ(filtersEntryGetMatch(e.get(), out.get()), 0);
  EXPECT_EQ(matchDSCPGet(out.get()), 10);
  EXPECT_EQ(e->getMatches().size(), 1u);
}

TEST(EntriesC, SetMatchPassesOnTheEntryRefusals) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  MatchPtr srcV4 = OwnMatch(newMatchSrcIPv4(Ipv4("10.0.0.1")));
  MatchPtr dstV4 = OwnMatch(newMatchDstIPv4(Ipv4("10.0.0.2")));
  MatchPtr dstV6 = OwnMatch(newMatchDstIPv6(Ipv6("2001:db8::1")));
  MatchPtr port = OwnMatch(newMatchDstL4Port(80));
  MatchPtr range = OwnMatch(newMatchDstL4PortRange(1, 1024));
  MatchPtr srcPort = OwnMatch(newMatchSrcL4Port(53));
  EXPECT_EQ(filtersEntrySetMatch(e.get(), srcV4.get()), 0);
  EXPECT_EQ(filtersEntrySetMatch(e.get(), dstV6.get()), -4);
  EXPECT_EQ(filtersEntrySetMatch(e.get(), dstV4.get()), 0);
  EXPECT_EQ(filtersEntrySetMatch(e.get(), port.get()), 0);
  EXPECT_EQ(filtersEntrySetMatch(e.get(), range.get()), -4);
  EXPECT_EQ(filtersEntrySetMatch(e.get(), srcPort.get()), 0);
  EXPECT_EQ(e->getMatches().size(), 4u);
}

TEST(EntriesC, DeleteMatchReportsAbsentKinds) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  MatchPtr m = OwnMatch(newMatchTTL(1));
  EXPECT_EQ(filtersEntryDeleteMatch(e.get(), FILTERS_MATCH_TTL), -3);
  ASSERT_EQ(filtersEntrySetMatch(e.get(), m.get()), 0);
  EXPECT_EQ(filtersEntryDeleteMatch(e.get(), FILTERS_MATCH_TTL), 0);
  EXPECT_EQ(filtersEntryGetMatch(e.get(), m.get()), -3);
}

TEST(EntriesC, SetActionTwiceKeepsTheSecondValue) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  ActionPtr first = OwnAction(newActionSetPcp(3));
  ActionPtr second = OwnAction(newActionSetPcp(5));
  ASSERT_EQ(filtersEntrySetAction(e.get(), first.get()), 0);
  ASSERT_EQ(filtersEntrySetAction(e.get(), second.get()), 0);
  EXPECT_EQ(e->getActions().size(), 1u);
  ActionPtr out = OwnAction(newActionSetPcp(0));
  ASSERT_EQ(filtersEntryGetAction(e.get(), out.get()), 0);
  EXPECT_EQ(actionSetPcpGetPcp(out.get()), 5);
}

TEST(EntriesC, DeletedActionHandleLeavesTheEntryCopyIntact) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  void* handle = newActionL3Switch(4242);
  ASSERT_EQ(filtersEntrySetAction(e.get(), handle), 0);
  deleteAction(handle);
  ActionPtr out = OwnAction(newActionL3Switch(0));
  ASSERT_EQ(filtersEntryGetAction(e.get(), out.get()), 0);
  EXPECT_EQ(actionL3SwitchGetL3DestinationId(out.get()), 4242u);
}

TEST(EntriesC, ContradictoryActionsAreKeptSideBySide) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  ActionPtr permit = OwnAction(newActionPermit());
  ActionPtr deny = OwnAction(newActionDeny());
  EXPECT_EQ(filtersEntrySetAction(e.get(), permit.get()), 0);
  EXPECT_EQ(filtersEntrySetAction(e.get(), deny.get()), 0);
  EXPECT_EQ(e->getActions().size(), 2u);
}

TEST(EntriesC, GetActionOfAKindNotHeldReportsNotFound) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  ActionPtr out = OwnAction(newActionSetDSCP(7));
  EXPECT_EQ(filtersEntryGetAction(e.get(), out.get()), -3);
  EXPECT_EQ(actionSetDSCPGetDSCP(out.get()), 7);
}

TEST(EntriesC, DeleteActionReportsAbsentKinds) {
  EntryPtr e = OwnEntry(newFiltersEntry(1));
  ActionPtr a = OwnAction(newActionDoNotLearnMac());
  EXPECT_EQ(filtersEntryDeleteAction(e.get(), FILTERS_ACTION_DO_NOT_LEARN_MAC),
            -3);
  ASSERT_EQ(filtersEntrySetAction(e.get(), a.get()), 0);
  EXPECT_EQ(filtersEntryDeleteAction(e.get(), FILTERS_ACTION_DO_NOT_LEARN_MAC),
            0);
  EXPECT_TRUE(e->getActions().empty());
}

// ---- Null-entry guards ----

INSTANTIATE_TEST_SUITE_P(
    Entries, CInterfaceDeathTest,
    ::testing::ValuesIn(GuardsOf(
        "filter_entries_c.cc",
        {Guard{"copyFiltersEntry", [] { copyFiltersEntry(nullptr); },
               "FiltersCommon::FiltersEntry* "
               "FiltersCommon::copyFiltersEntry(FiltersCommon::FiltersEntry*)",
               "e != nullptr"},
         Guard{
             "deleteFiltersEntry", [] { deleteFiltersEntry(nullptr); },
             "void "
             "FiltersCommon::deleteFiltersEntry(FiltersCommon::FiltersEntry*)",
             "e != nullptr"},
         Guard{"filtersEntryGetId", [] { filtersEntryGetId(nullptr); },
               "FiltersCommon::filtersEntryId_t "
               "FiltersCommon::filtersEntryGetId(FiltersCommon::FiltersEntry*)",
               "e != nullptr"},
         Guard{"filtersEntrySetPriority",
               [] { filtersEntrySetPriority(nullptr, 1); },
               "void "
               "FiltersCommon::filtersEntrySetPriority(FiltersCommon::"
               "FiltersEntry*, FiltersCommon::filtersEntryPriority_t)",
               "e != nullptr"},
         Guard{"filtersEntryGetPriority",
               [] { filtersEntryGetPriority(nullptr); },
               "FiltersCommon::filtersEntryPriority_t "
               "FiltersCommon::filtersEntryGetPriority(FiltersCommon::"
               "FiltersEntry*)",
               "e != nullptr"},
         Guard{"filtersEntryDeleteMatch",
               [] { filtersEntryDeleteMatch(nullptr, FILTERS_MATCH_ALL); },
               "FiltersCommon::filtersErr_t "
               "FiltersCommon::filtersEntryDeleteMatch(FiltersCommon::"
               "FiltersEntry*, FiltersCommon::filtersMatch_t)",
               "e != nullptr"},
         Guard{"filtersEntryDeleteAction",
               [] { filtersEntryDeleteAction(nullptr, FILTERS_ACTION_PERMIT); },
               "FiltersCommon::filtersErr_t "
               "FiltersCommon::filtersEntryDeleteAction(FiltersCommon::"
               "FiltersEntry*, FiltersCommon::filtersAction_t)",
               "e != nullptr"}})),
    GuardName);

}  // namespace
}  // namespace FiltersCommon
