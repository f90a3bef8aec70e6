// Entries, counters and their wire form, checked against expectations worked
// out by hand: construction, copy and move, equality order, bulk operations,
// counter rules, the text dump and the entry message. Also the C entry
// functions and the serialized buffer.
#include <gtest/gtest.h>

#include <iomanip>
#include <list>
#include <memory>
#include <sstream>
#include <string>
#include <typeinfo>

#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_serialized.h"
#include "audit_support.h"
#include "filter_counter.pb.h"
#include "filter_entries.pb.h"

namespace {

using namespace audit;  // NOLINT(build/namespaces)

std::string Dump(const FiltersEntry& e) {
  std::ostringstream os;
  os << e;
  return os.str();
}

const char kEmptyEntryHead[] =
    "  =FiltersEntry=\n"
    "    ID: 0\n"
    "    Priority: 0\n";

// ---------------------------------------------------------------- basics

TEST(AuditEntry, NewEntryIsEmptyWithDefaultPolicer) {
  FiltersEntry e(42);
  EXPECT_EQ(e.getId(), 42u);
  EXPECT_EQ(e.getPriority(), 0u);
  EXPECT_EQ(e.getPolicer(), policer::Policer());
  EXPECT_EQ(e.getPolicer().GetStage(), policer::STAGE_NONE);
  EXPECT_EQ(e.getPolicerParent(), nullptr);
  EXPECT_TRUE(e.getCounters().empty());
  EXPECT_TRUE(e.getMatches().empty());
  EXPECT_TRUE(e.getActions().empty());
  EXPECT_EQ(FiltersEntry().getId(), 0u);
}

// ---------------------------------------------------------- copy and move

TEST(AuditEntry, CopySharesParentAndRebuildsMatchesAndActions) {
  FiltersEntry src(5);
  src.setPriority(9);
  src.setPolicer(PolicerInStage(0, 3));
  src.setPolicerParent(PolicerInStage(1, 4));
  ASSERT_EQ(src.setCounter(Counter(3, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_EQ(SetMatchOfKind(src, 1), 0);
  ASSERT_EQ(SetMatchOfKind(src, kDscpSample), 0);
  ASSERT_EQ(SetActionOfKind(src, 3), 0);
  ASSERT_EQ(SetActionOfKind(src, 18), 0);

  FiltersEntry copy(src);
  EXPECT_EQ(copy.getId(), 5u);
  EXPECT_EQ(copy.getPriority(), 9u);
  EXPECT_EQ(copy.getPolicer(), PolicerInStage(0, 3));
  EXPECT_EQ(copy.getPolicerParent().get(), src.getPolicerParent().get());
  EXPECT_EQ(copy.getCounters(), src.getCounters());
  ASSERT_EQ(copy.getMatches().size(), 2u);
  ASSERT_EQ(copy.getActions().size(), 2u);
  // Deep: the copy holds objects of its own.
  EXPECT_NE(copy.getMatches().at(FILTERS_MATCH_INGRESS_PORTS).get(),
            src.getMatches().at(FILTERS_MATCH_INGRESS_PORTS).get());
  EXPECT_NE(copy.getActions().at(FILTERS_ACTION_MPLS_PORT_SET).get(),
            src.getActions().at(FILTERS_ACTION_MPLS_PORT_SET).get());
  // The DSCP match is rebuilt through kind 20, i.e. as a MatchToS with the
  // same byte.
  const Match* tos = copy.getMatches().at(FILTERS_MATCH_TOS).get();
  EXPECT_EQ(dynamic_cast<const MatchDSCP*>(tos), nullptr);
  ASSERT_NE(dynamic_cast<const MatchToS*>(tos), nullptr);
  EXPECT_EQ(dynamic_cast<const MatchToS*>(tos)->getToS(), 184);
  EXPECT_TRUE(copy == src);
  EXPECT_TRUE(src == copy);
}

TEST(AuditEntry, MoveAssignmentLeavesSourceWithScalarsAndPolicerOnly) {
  FiltersEntry src(7);
  src.setPriority(70);
  src.setPolicer(PolicerInStage(1, 8));
  src.setPolicerParent(PolicerInStage(0, 9));
  ASSERT_EQ(src.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  ASSERT_EQ(SetMatchOfKind(src, 26), 0);
  ASSERT_EQ(SetActionOfKind(src, 1), 0);
  policer::Policer* parent = src.getPolicerParent().get();

  FiltersEntry dst(1);
  dst.setPriority(2);
  dst.setPolicerParent(PolicerInStage(2, 99));
  std::weak_ptr<policer::Policer> oldParent = dst.getPolicerParent();
  ASSERT_EQ(dst.setCounter(Counter(5, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_EQ(SetMatchOfKind(dst, 0), 0);
  ASSERT_EQ(SetActionOfKind(dst, 0), 0);

  FiltersEntry& self = (dst = std::move(src));
  EXPECT_EQ(&self, &dst);
  EXPECT_EQ(dst.getId(), 7u);
  EXPECT_EQ(dst.getPriority(), 70u);
  EXPECT_EQ(dst.getPolicer(), PolicerInStage(1, 8));
  EXPECT_EQ(dst.getPolicerParent().get(), parent);
  EXPECT_TRUE(oldParent.expired());
  ASSERT_EQ(dst.getCounters().size(), 1u);
  EXPECT_EQ(dst.getCounters().count(1), 1u);
  ASSERT_EQ(dst.getMatches().size(), 1u);
  EXPECT_EQ(dst.getMatches().count(FILTERS_MATCH_TTL), 1u);
  ASSERT_EQ(dst.getActions().size(), 1u);
  EXPECT_EQ(dst.getActions().count(FILTERS_ACTION_DENY), 1u);

  // NOLINTBEGIN(bugprone-use-after-move): the moved-from state is part of the
  // contract.
  EXPECT_EQ(src.getId(), 7u);
  EXPECT_EQ(src.getPriority(), 70u);
  EXPECT_EQ(src.getPolicer(), PolicerInStage(1, 8));
  EXPECT_EQ(src.getPolicerParent(), nullptr);
  EXPECT_TRUE(src.getCounters().empty());
  EXPECT_TRUE(src.getMatches().empty());
  EXPECT_TRUE(src.getActions().empty());
  // NOLINTEND(bugprone-use-after-move)
}

// ---------------------------------------------------------------- equality

FiltersEntry Sample() {
  FiltersEntry e(3);
  e.setPriority(30);
  e.setPolicer(policer::Policer(
      12, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetPcp(policer::COLOR_YELLOW, 2),
       policer::Action::SetDscp(policer::COLOR_GREEN, 10)}));
  EXPECT_EQ(e.setCounter(Counter(4, COUNTER_TYPE_PACKETS)), 0);
  EXPECT_EQ(SetMatchOfKind(e, 26), 0);
  EXPECT_EQ(SetActionOfKind(e, 5), 0);
  return e;
}

TEST(AuditEntry, EqualityLooksAtIdAndPriority) {
  FiltersEntry a = Sample();
  FiltersEntry b = Sample();
  EXPECT_TRUE(a == b);
  b.setId(4);
  EXPECT_FALSE(a == b);
  b.setId(3);
  b.setPriority(31);
  EXPECT_FALSE(a == b);
  EXPECT_FALSE(b == a);
}

TEST(AuditEntry, EqualityComparesThePolicerFieldByField) {
  const FiltersEntry a = Sample();
  const policer::Policer& base = a.getPolicer();
  std::vector<policer::Policer> variants;
  {
    policer::Policer p = base;
    p.SetId(13);
    variants.push_back(p);
  }
  {
    policer::Policer p = base;
    p.SetStage(policer::STAGE_EGRESS);
    variants.push_back(p);
  }
  // Mode type and each parameter.
  variants.push_back(policer::Policer(12, policer::STAGE_INGRESS,
                                      policer::Mode::TrTcmDs(1, 2, 3, 4),
                                      base.GetActions()));
  variants.push_back(policer::Policer(12, policer::STAGE_INGRESS,
                                      policer::Mode::TrTcm(9, 2, 3, 4),
                                      base.GetActions()));
  variants.push_back(policer::Policer(12, policer::STAGE_INGRESS,
                                      policer::Mode::TrTcm(1, 9, 3, 4),
                                      base.GetActions()));
  variants.push_back(policer::Policer(12, policer::STAGE_INGRESS,
                                      policer::Mode::TrTcm(1, 2, 9, 4),
                                      base.GetActions()));
  variants.push_back(policer::Policer(12, policer::STAGE_INGRESS,
                                      policer::Mode::TrTcm(1, 2, 3, 9),
                                      base.GetActions()));
  // Number of colour actions, then each field of an action.
  {
    policer::Policer p = base;
    p.AddAction(policer::Action::Drop(policer::COLOR_RED));
    variants.push_back(p);
  }
  variants.push_back(policer::Policer(
      12, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetPcp(policer::COLOR_RED, 2),
       policer::Action::SetDscp(policer::COLOR_GREEN, 10)}));
  variants.push_back(policer::Policer(
      12, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetDscp(policer::COLOR_YELLOW, 2),
       policer::Action::SetDscp(policer::COLOR_GREEN, 10)}));
  variants.push_back(policer::Policer(
      12, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetPcp(policer::COLOR_YELLOW, 3),
       policer::Action::SetDscp(policer::COLOR_GREEN, 10)}));
  variants.push_back(policer::Policer(
      12, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetPcp(policer::COLOR_YELLOW, 2),
       policer::Action::SetDscp(policer::COLOR_GREEN, 11)}));
  for (size_t i = 0; i < variants.size(); ++i) {
    FiltersEntry b = Sample();
    b.setPolicer(variants[i]);
    EXPECT_FALSE(a == b) << "variant " << i;
    EXPECT_FALSE(b == a) << "variant " << i;
  }
  // Modes that differ only in a parameter the first one does not print.
  FiltersEntry c = Sample();
  FiltersEntry d = Sample();
  c.setPolicer(policer::Policer(1, policer::STAGE_INGRESS,
                                policer::Mode::SrTcm(1, 2, 3)));
  d.setPolicer(policer::Policer(1, policer::STAGE_INGRESS,
                                policer::Mode::SrTcm(1, 2, 4)));
  EXPECT_FALSE(c == d);
}

TEST(AuditEntry, EqualityComparesMapSizesAndCounters) {
  const FiltersEntry a = Sample();
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(SetMatchOfKind(b, 0), 0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
  }
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(SetActionOfKind(b, 0), 0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
  }
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(b.setCounter(Counter(5, COUNTER_TYPE_OCTETS)), 0);
    EXPECT_FALSE(a == b);
  }
  {
    // Same count, another id.
    FiltersEntry b = Sample();
    ASSERT_EQ(b.deleteCounter(4), 0);
    ASSERT_EQ(b.setCounter(Counter(6, COUNTER_TYPE_PACKETS)), 0);
    EXPECT_FALSE(a == b);
  }
  {
    // Same id, another type.
    FiltersEntry b = Sample();
    ASSERT_EQ(b.setCounter(Counter(4, COUNTER_TYPE_OCTETS)), 0);
    EXPECT_FALSE(a == b);
  }
}

TEST(AuditEntry, EqualityComparesParentsByContentAndPresence) {
  FiltersEntry a = Sample();
  FiltersEntry b = Sample();
  a.setPolicerParent(PolicerInStage(1, 50));
  EXPECT_FALSE(a == b);
  EXPECT_FALSE(b == a);
  b.setPolicerParent(PolicerInStage(1, 50));
  ASSERT_NE(a.getPolicerParent().get(), b.getPolicerParent().get());
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(b == a);
  b.setPolicerParent(PolicerInStage(1, 51));
  EXPECT_FALSE(a == b);
  b.setPolicerParent(PolicerInStage(0, 50));
  EXPECT_FALSE(a == b);
}

TEST(AuditEntry, EqualityComparesMatchesAndActionsByValueAndKind) {
  const FiltersEntry a = Sample();
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(b.setMatch(MatchTTL(65)), 0);
    EXPECT_FALSE(a == b);
  }
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(b.deleteMatch(FILTERS_MATCH_TTL), 0);
    ASSERT_EQ(SetMatchOfKind(b, 27), 0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
  }
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(b.setAction(ActionSetPcp(6)), 0);
    EXPECT_FALSE(a == b);
  }
  {
    FiltersEntry b = Sample();
    ASSERT_EQ(b.deleteAction(FILTERS_ACTION_SET_PCP), 0);
    ASSERT_EQ(SetActionOfKind(b, 7), 0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
  }
}

// A DSCP match and a ToS match share kind 20; entries compare them through
// the base comparison, i.e. as ToS bytes, whichever side holds which class.
TEST(AuditEntry, EqualityComparesDscpAgainstTosAsWholeBytes) {
  FiltersEntry dscp(1);
  ASSERT_EQ(dscp.setMatch(MatchDSCP(46)), 0);
  FiltersEntry tos184(1);
  ASSERT_EQ(tos184.setMatch(MatchToS(184)), 0);
  FiltersEntry tos185(1);
  ASSERT_EQ(tos185.setMatch(MatchToS(185)), 0);
  EXPECT_TRUE(dscp == tos184);
  EXPECT_TRUE(tos184 == dscp);
  EXPECT_FALSE(dscp == tos185);
  EXPECT_FALSE(tos185 == dscp);
  // Two DSCP matches equal by their own six bits are still compared whole.
  MatchDSCP loaded(0);
  MatchPB pb;
  pb.set_type_(20);
  pb.set_tos_(185);
  loaded.convertFromMatchPB(&pb);
  ASSERT_TRUE(loaded == MatchDSCP(46));
  FiltersEntry dscpLoaded(1);
  ASSERT_EQ(dscpLoaded.setMatch(loaded), 0);
  EXPECT_FALSE(dscp == dscpLoaded);
  EXPECT_FALSE(dscpLoaded == dscp);
}

// ------------------------------------------------------ admission rules

TEST(AuditEntry, EveryMatchClassIsAdmittedAndReadBack) {
  for (int kind = 0; kind <= 38; ++kind) {
    FiltersEntry e(1);
    EXPECT_EQ(SetMatchOfKind(e, kind), 0) << kind;
    ASSERT_EQ(e.getMatches().size(), 1u) << kind;
    EXPECT_EQ(e.getMatches().begin()->first, kind);
    EXPECT_EQ(e.getMatches().begin()->second->getType(), kind);
  }
  EXPECT_EQ(FiltersEntry::validMatchTypes.size(), 40u);
  EXPECT_EQ(FiltersEntry::validActionTypes.size(), 21u);
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

// Copying rebuilds every kind through its own class, and the C functions
// dispatch every kind to the same class.
TEST(AuditEntry, EveryKindSurvivesCopyAndCDispatch) {
  for (int kind = 0; kind <= 38; ++kind) {
    FiltersEntry e(1);
    ASSERT_EQ(SetMatchOfKind(e, kind), 0) << kind;
    const Match& held = *e.getMatches().begin()->second;
    FiltersEntry copy(e);
    EXPECT_TRUE(copy == e) << kind;
    const Match& copied = *copy.getMatches().begin()->second;
    EXPECT_EQ(typeid(copied), typeid(held));
    FiltersEntry viaC(1);
    Match* handle = const_cast<Match*>(&held);
    EXPECT_EQ(filtersEntrySetMatch(&viaC, handle), 0) << kind;
    EXPECT_TRUE(viaC == e) << kind;
    EXPECT_EQ(filtersEntryGetMatch(&viaC, handle), 0) << kind;
  }
  for (int kind = 0; kind <= 20; ++kind) {
    FiltersEntry e(1);
    ASSERT_EQ(SetActionOfKind(e, kind), 0) << kind;
    const Action& held = *e.getActions().begin()->second;
    EXPECT_EQ(held.getType(), kind);
    FiltersEntry copy(e);
    EXPECT_TRUE(copy == e) << kind;
    const Action& copied = *copy.getActions().begin()->second;
    EXPECT_EQ(typeid(copied), typeid(held));
    FiltersEntry viaC(1);
    Action* handle = const_cast<Action*>(&held);
    EXPECT_EQ(filtersEntrySetAction(&viaC, handle), 0) << kind;
    EXPECT_TRUE(viaC == e) << kind;
    EXPECT_EQ(filtersEntryGetAction(&viaC, handle), 0) << kind;
  }
}

// A class derived from a catalogue class is not a catalogue class: the
// registry is consulted with the template argument, not the object's class.
struct DerivedTTL : MatchTTL {
  DerivedTTL() : MatchTTL(5) {}
};

TEST(AuditEntry, ClassesOutsideTheCatalogueAreRefused) {
  FiltersEntry e(1);
  const DerivedTTL derived;
  EXPECT_EQ(e.setMatch(derived), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(static_cast<const MatchTTL&>(derived)), 0);
  DerivedTTL out;
  EXPECT_EQ(e.getMatch(out), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(Match(FILTERS_MATCH_ALL)), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setAction(Action(FILTERS_ACTION_PERMIT)), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.getMatches().size(), 1u);
  EXPECT_TRUE(e.getActions().empty());
}

TEST(AuditEntry, Ipv4AndIpv6AddressMatchesExcludeEachOther) {
  for (int v4 : {9, 10}) {
    for (int v6 : {14, 15}) {
      FiltersEntry e(1);
      ASSERT_EQ(SetMatchOfKind(e, v4), 0);
      EXPECT_EQ(SetMatchOfKind(e, v6), FILTERS_ERR_INVALID);
      FiltersEntry f(1);
      ASSERT_EQ(SetMatchOfKind(f, v6), 0);
      EXPECT_EQ(SetMatchOfKind(f, v4), FILTERS_ERR_INVALID);
      EXPECT_EQ(f.getMatches().size(), 1u);
    }
  }
  FiltersEntry g(1);
  EXPECT_EQ(SetMatchOfKind(g, 9), 0);
  EXPECT_EQ(SetMatchOfKind(g, 10), 0);
  FiltersEntry h(1);
  EXPECT_EQ(SetMatchOfKind(h, 14), 0);
  EXPECT_EQ(SetMatchOfKind(h, 15), 0);
}

TEST(AuditEntry, DestinationPortAndRangeExcludeEachOther) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDstL4Port(80)), 0);
  EXPECT_EQ(e.setMatch(MatchDstL4PortRange(1, 2)), FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setMatch(MatchDstL4Port(81)), 0);
  EXPECT_EQ(e.setMatch(MatchSrcL4Port(82)), 0);
  MatchDstL4Port out(0);
  ASSERT_EQ(e.getMatch(out), 0);
  EXPECT_EQ(out.getParam1(), 81);
  FiltersEntry f(1);
  ASSERT_EQ(f.setMatch(MatchDstL4PortRange(1, 2)), 0);
  EXPECT_EQ(f.setMatch(MatchDstL4Port(80)), FILTERS_ERR_INVALID);
  EXPECT_EQ(f.setMatch(MatchDstL4PortRange(3, 4)), 0);
}

TEST(AuditEntry, GetOfAbsentKindLeavesArgumentUnchanged) {
  FiltersEntry e(1);
  MatchTTL ttl(9);
  EXPECT_EQ(e.getMatch(ttl), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(ttl.getTTL(), 9);
  ActionSetPcp pcp(4);
  EXPECT_EQ(e.getAction(pcp), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(pcp.getPcp(), 4);
}

// --------------------------------------------------------- bulk operations

TEST(AuditEntry, SetMatchesRestoresFormerMatchesOnRefusal) {
  FiltersEntry e(1);
  ASSERT_EQ(SetMatchOfKind(e, 26), 0);
  ASSERT_EQ(SetMatchOfKind(e, 3), 0);
  const FiltersEntry before(e);

  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_SRC_IPV4] = std::make_unique<MatchSrcIPv4>(V4("192.0.2.1"));
  src[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(V6("2001:db8::9"));
  EXPECT_EQ(e.setMatches(src), FILTERS_ERR_INVALID);
  EXPECT_TRUE(e == before);
  ASSERT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_TTL), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_TPID), 1u);

  // Accepted: the former matches are gone, replaced by the map's.
  FiltersEntry::MatchMap good;
  good[FILTERS_MATCH_SRC_IPV4] =
      std::make_unique<MatchSrcIPv4>(V4("192.0.2.1"));
  good[FILTERS_MATCH_DST_IPV4] =
      std::make_unique<MatchDstIPv4>(V4("192.0.2.2"));
  EXPECT_EQ(e.setMatches(good), 0);
  ASSERT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_SRC_IPV4), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_DST_IPV4), 1u);
  EXPECT_NE(e.getMatches().at(FILTERS_MATCH_SRC_IPV4).get(),
            good.at(FILTERS_MATCH_SRC_IPV4).get());
}

TEST(AuditEntry, SetMatchesCanReplaceWithMatchesTheOldOnesWouldRefuse) {
  // The entry's matches are emptied before the new ones are copied in, so
  // an IPv6 map replaces IPv4 matches.
  FiltersEntry e(1);
  ASSERT_EQ(SetMatchOfKind(e, 9), 0);
  FiltersEntry::MatchMap v6;
  v6[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(V6("2001:db8::9"));
  EXPECT_EQ(e.setMatches(v6), 0);
  ASSERT_EQ(e.getMatches().size(), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_DST_IPV6), 1u);
}

TEST(AuditEntry, CopyMatchesStopsAtFirstRefusalKeepingEarlierOnes) {
  FiltersEntry e(1);
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_ALL] = std::make_unique<MatchAll>();
  src[FILTERS_MATCH_DST_L4_PORT] = std::make_unique<MatchDstL4Port>(80);
  src[FILTERS_MATCH_SRC_IPV4] = std::make_unique<MatchSrcIPv4>(V4("10.1.1.1"));
  src[FILTERS_MATCH_DST_IPV6] =
      std::make_unique<MatchDstIPv6>(V6("2001:db8::3"));
  src[FILTERS_MATCH_TTL] = std::make_unique<MatchTTL>(3);
  EXPECT_EQ(e.copyMatches(src), FILTERS_ERR_INVALID);
  ASSERT_EQ(e.getMatches().size(), 3u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_ALL), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_DST_L4_PORT), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_SRC_IPV4), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_TTL), 0u);
}

TEST(AuditEntry, CopyMatchesSkipsKindsBeyondTheCatalogue) {
  FiltersEntry e(1);
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_ALL] = std::make_unique<MatchAll>();
  src[static_cast<filtersMatch_t>(39)] =
      std::make_unique<Match>(static_cast<filtersMatch_t>(39));
  src[static_cast<filtersMatch_t>(45)] =
      std::make_unique<Match>(static_cast<filtersMatch_t>(45));
  // Keyed by the object's own kind, not the map key.
  src[static_cast<filtersMatch_t>(50)] = std::make_unique<MatchTTL>(8);
  EXPECT_EQ(e.copyMatches(src), 0);
  ASSERT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_ALL), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_TTL), 1u);
}

TEST(AuditEntry, CopyMatchesStoresDscpAsTos) {
  FiltersEntry e(1);
  FiltersEntry::MatchMap src;
  src[FILTERS_MATCH_TOS] = std::make_unique<MatchDSCP>(10);
  EXPECT_EQ(e.copyMatches(src), 0);
  const Match* held = e.getMatches().at(FILTERS_MATCH_TOS).get();
  EXPECT_EQ(dynamic_cast<const MatchDSCP*>(held), nullptr);
  ASSERT_NE(dynamic_cast<const MatchToS*>(held), nullptr);
  EXPECT_EQ(dynamic_cast<const MatchToS*>(held)->getToS(), 40);
}

TEST(AuditEntry, CopyActionsAndSetActionsReplaceAndSkipUnknownKinds) {
  FiltersEntry e(1);
  ASSERT_EQ(SetActionOfKind(e, 5), 0);
  FiltersEntry::ActionMap src;
  src[FILTERS_ACTION_DENY] = std::make_unique<ActionDeny>();
  src[static_cast<filtersAction_t>(21)] =
      std::make_unique<Action>(static_cast<filtersAction_t>(21));
  src[FILTERS_ACTION_PERMIT] = std::make_unique<ActionPermit>();
  EXPECT_EQ(e.copyActions(src), 0);
  EXPECT_EQ(e.getActions().size(), 3u);
  EXPECT_EQ(e.setActions(src), 0);
  ASSERT_EQ(e.getActions().size(), 2u);
  EXPECT_EQ(e.getActions().count(FILTERS_ACTION_PERMIT), 1u);
  EXPECT_EQ(e.getActions().count(FILTERS_ACTION_DENY), 1u);
  EXPECT_NE(e.getActions().at(FILTERS_ACTION_DENY).get(),
            src.at(FILTERS_ACTION_DENY).get());
}

TEST(AuditEntry, PermitAndDenyAreKeptSideBySide) {
  FiltersEntry e(1);
  EXPECT_EQ(SetActionOfKind(e, 0), 0);
  EXPECT_EQ(SetActionOfKind(e, 1), 0);
  EXPECT_EQ(SetActionOfKind(e, 11), 0);
  EXPECT_EQ(SetActionOfKind(e, 13), 0);
  EXPECT_EQ(e.getActions().size(), 4u);
  EXPECT_EQ(e.setAction(ActionSetPcp(1)), 0);
  EXPECT_EQ(e.setAction(ActionSetPcp(2)), 0);
  ActionSetPcp out(0);
  ASSERT_EQ(e.getAction(out), 0);
  EXPECT_EQ(out.getPcp(), 2);
}

TEST(AuditEntry, DeleteMatchAndActionAnswerMinusThreeWhenAbsent) {
  FiltersEntry e(1);
  ASSERT_EQ(SetMatchOfKind(e, 26), 0);
  ASSERT_EQ(SetActionOfKind(e, 1), 0);
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_ALL), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(e.deleteAction(FILTERS_ACTION_PERMIT), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(e.getMatches().size(), 1u);
  EXPECT_EQ(e.getActions().size(), 1u);
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_TTL), 0);
  EXPECT_EQ(e.deleteAction(FILTERS_ACTION_DENY), 0);
  EXPECT_TRUE(e.getMatches().empty());
  EXPECT_TRUE(e.getActions().empty());
  EXPECT_EQ(e.deleteMatch(FILTERS_MATCH_TTL), FILTERS_ERR_NOT_FOUND);
}

// ---------------------------------------------------------------- counters

TEST(AuditCounter, SetCounterRules) {
  FiltersEntry e(1);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_INVALID)),
            FILTERS_ERR_INVALID);
  EXPECT_TRUE(e.getCounters().empty());
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  EXPECT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)),
            FILTERS_ERR_INVALID);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)),
            FILTERS_ERR_INVALID);
  EXPECT_EQ(e.getCounters().size(), 1u);
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_NE(e.getCounter(1), nullptr);
  EXPECT_EQ(e.getCounter(1)->GetType(), COUNTER_TYPE_OCTETS);
  // Type 1 is free again.
  EXPECT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)), 0);
  EXPECT_EQ(e.getCounters().size(), 2u);
  EXPECT_EQ(e.getCounter(3), nullptr);
}

TEST(AuditCounter, DeleteCounterAnswersMinusFiveWhenAbsent) {
  FiltersEntry e(1);
  EXPECT_EQ(e.deleteCounter(1), FILTERS_ERR_REFUSED);
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  ASSERT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_OCTETS)), 0);
  EXPECT_EQ(e.deleteCounter(3), FILTERS_ERR_REFUSED);
  EXPECT_EQ(e.deleteCounter(1), 0);
  EXPECT_EQ(e.getCounter(1), nullptr);
  EXPECT_EQ(e.deleteCounters(), 0);
  EXPECT_TRUE(e.getCounters().empty());
  EXPECT_EQ(e.deleteCounters(), 0);
}

TEST(AuditCounter, ValueWireAndEquality) {
  Counter none;
  EXPECT_EQ(none.GetId(), 0);
  EXPECT_EQ(none.GetType(), COUNTER_TYPE_INVALID);
  CounterPB pb;
  pb.set_id(70000);
  pb.set_type(5);
  Counter fromWire(pb);
  EXPECT_EQ(fromWire.GetId(), 4464);
  EXPECT_EQ(fromWire.GetType(), COUNTER_TYPE_YELLOW_OCTETS);
  CounterPB out;
  Counter(65535, COUNTER_TYPE_NOT_GREEN_OCTETS).Serialize(&out);
  EXPECT_TRUE(out.has_id());
  EXPECT_TRUE(out.has_type());
  EXPECT_EQ(out.id(), 65535);
  EXPECT_EQ(out.type(), 8);
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) ==
              Counter(1, COUNTER_TYPE_PACKETS));
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) !=
              Counter(2, COUNTER_TYPE_PACKETS));
  EXPECT_TRUE(Counter(1, COUNTER_TYPE_PACKETS) !=
              Counter(1, COUNTER_TYPE_OCTETS));
}

TEST(AuditCounter, DumpTextsForEveryType) {
  const char* texts[] = {
      "Invalid",           "Packets",        "Octets",
      "Red Octets",        "Not Red Octets", "Yellow Octets",
      "Not Yellow Octets", "Green Octets",   "Not Green Octets"};
  for (int t = 0; t <= 8; ++t) {
    std::ostringstream os;
    os << Counter(12, static_cast<counter_type_t>(t));
    EXPECT_EQ(os.str(), std::string("ID: 12\nType: ") + texts[t] + "\n");
  }
  for (int t : {9, 1000}) {
    std::ostringstream os;
    os << Counter(7, static_cast<counter_type_t>(t));
    EXPECT_EQ(os.str(), "ID: 7\nType: Unknown\n");
  }
}

TEST(AuditCounter, DumpAppliesTheStreamWidthToTheFirstLabel) {
  std::ostringstream os;
  os << std::setw(8) << Counter(3, COUNTER_TYPE_OCTETS);
  EXPECT_EQ(os.str(), "    ID: 3\nType: Octets\n");
}

// ------------------------------------------------------- parent policers

TEST(AuditEntry, SetPolicerParentMakesAFreshSharedObject) {
  FiltersEntry a(1);
  const policer::Policer p = PolicerInStage(0, 77);
  EXPECT_EQ(a.setPolicerParent(p), 0);
  std::shared_ptr<policer::Policer> first = a.getPolicerParent();
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first.get(), &p);
  EXPECT_EQ(*first, p);
  FiltersEntry b(a);
  FiltersEntry c(a);
  EXPECT_EQ(b.getPolicerParent().get(), first.get());
  EXPECT_EQ(c.getPolicerParent().get(), first.get());
  EXPECT_EQ(a.setPolicerParent(p), 0);
  EXPECT_NE(a.getPolicerParent().get(), first.get());
  EXPECT_EQ(b.getPolicerParent().get(), first.get());
  EXPECT_EQ(*a.getPolicerParent(), p);
  EXPECT_EQ(a.setPolicer(PolicerInStage(1, 5)), 0);
  EXPECT_EQ(a.getPolicer(), PolicerInStage(1, 5));
}

// -------------------------------------------------------------------- dump

TEST(AuditEntryDump, ReproducesTheDocumentedExample) {
  FiltersEntry e(7);
  e.setPriority(100);
  e.setPolicer(policer::Policer(3, policer::STAGE_INGRESS,
                                policer::Mode::SrTcm(1000, 2000, 3000),
                                {policer::Action::Drop(policer::COLOR_RED)}));
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 7\n"
            "    Priority: 100\n"
            "  =Policer=\n"
            "    Policer Id: 3\n"
            "    Stage: Ingress\n"
            "    Mode: SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 "
            "bytes)\n"
            "    Actions:\n"
            "    + Red Drop\n"
            "  =Counter=\n"
            "ID: 1\n"
            "Type: Packets\n");
}

TEST(AuditEntryDump, DefaultPolicerIsOmitted) {
  FiltersEntry e;
  EXPECT_EQ(Dump(e), kEmptyEntryHead);
  // Any policer whose stage is "none" is omitted, whatever else it holds.
  e.setPolicer(
      policer::Policer(5, policer::STAGE_NONE, policer::Mode::Flow(1, 2)));
  EXPECT_EQ(Dump(e), kEmptyEntryHead);
}

std::string PolicerBlock(const policer::Policer& p) {
  FiltersEntry e;
  e.setPolicer(p);
  std::string dump = Dump(e);
  const std::string head = std::string(kEmptyEntryHead) + "  =Policer=\n";
  EXPECT_EQ(dump.compare(0, head.size(), head), 0) << dump;
  return dump.substr(head.size());
}

TEST(AuditEntryDump, PolicerModesStagesAndColourActions) {
  EXPECT_EQ(
      PolicerBlock(policer::Policer(policer::Policer::kInvalidId,
                                    policer::STAGE_INGRESS, policer::Mode())),
      "    Policer Id: Invalid\n"
      "    Stage: Ingress\n"
      "    Mode: None\n"
      "    Actions:\n");
  EXPECT_EQ(PolicerBlock(policer::Policer(
                4294967294u, policer::STAGE_EGRESS,
                policer::Mode::TrTcm(10, 20, 4294967295u, 40),
                {policer::Action::SetPcp(policer::COLOR_YELLOW, 5),
                 policer::Action::SetDscp(policer::COLOR_GREEN, 46),
                 policer::Action::Drop(policer::COLOR_RED)})),
            "    Policer Id: 4294967294\n"
            "    Stage: Egress\n"
            "    Mode: TrTcm (CIR: 10 kbits/s, CBS: 20 bytes, PIR: 4294967295 "
            "kbits/s, PBS: 40 bytes)\n"
            "    Actions:\n"
            "    + Red Drop\n"
            "    + Yellow Set PCP 5\n"
            "    + Green Set DSCP 46\n");
  EXPECT_EQ(PolicerBlock(policer::Policer(0, policer::STAGE_INGRESS,
                                          policer::Mode::TrTcmDs(1, 2, 3, 4))),
            "    Policer Id: 0\n"
            "    Stage: Ingress\n"
            "    Mode: TrTcmDs (CIR: 1 kbits/s, CBS: 2 bytes, EIR: 3 kbits/s, "
            "EBS: 4 bytes)\n"
            "    Actions:\n");
  EXPECT_EQ(PolicerBlock(policer::Policer(
                1, policer::STAGE_EGRESS, policer::Mode::Flow(5, 6),
                {policer::Action::SetPcp(policer::COLOR_RED, 7),
                 policer::Action::Drop(policer::COLOR_RED)})),
            "    Policer Id: 1\n"
            "    Stage: Egress\n"
            "    Mode: Flow (CIR: 5 kbits/s, CBS: 6 bytes)\n"
            "    Actions:\n"
            "    + Red Drop\n"
            "    + Red Set PCP 7\n");
  // A stage the library does not name prints nothing after the label.
  EXPECT_EQ(PolicerBlock(policer::Policer(2, static_cast<policer::Stage>(7),
                                          policer::Mode::SrTcm(0, 0, 0))),
            "    Policer Id: 2\n"
            "    Stage: \n"
            "    Mode: SrTcm (CIR: 0 kbits/s, CBS: 0 bytes, EBS: 0 bytes)\n"
            "    Actions:\n");
}

TEST(AuditEntryDump, SectionsComeInOrderAndParentIsPrintedWhateverItsStage) {
  FiltersEntry e(9);
  e.setPriority(1);
  e.setPolicer(
      policer::Policer(3, policer::STAGE_EGRESS, policer::Mode::Flow(1, 2)));
  ASSERT_EQ(e.setCounter(Counter(20, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)), 0);
  ASSERT_EQ(e.setAction(ActionDeny()), 0);
  ASSERT_EQ(e.setMatch(MatchAll()), 0);
  e.setPolicerParent(policer::Policer());
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 9\n"
            "    Priority: 1\n"
            "  =Policer=\n"
            "    Policer Id: 3\n"
            "    Stage: Egress\n"
            "    Mode: Flow (CIR: 1 kbits/s, CBS: 2 bytes)\n"
            "    Actions:\n"
            "  =Counter=\n"
            "ID: 2\n"
            "Type: Packets\n"
            "  =Counter=\n"
            "ID: 20\n"
            "Type: Octets\n"
            "    =MatchAll=\n"
            "      Match Type ID: 0\n"
            "      <no parameters>\n"
            "    =ActionDeny=\n"
            "      Action Type ID: 1\n"
            "      <no parameters>\n"
            "  =Parent=\n"
            "    Policer Id: Invalid\n"
            "    Stage: None\n"
            "    Mode: None\n"
            "    Actions:\n");
}

TEST(AuditEntryDump, CountersAfterParentlessEntryWithoutPolicerAreUnindented) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_RED_OCTETS)), 0);
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Counter=\n"
            "ID: 1\n"
            "Type: Red Octets\n");
}

// ------------------------------------------------------------ wire form

TEST(AuditEntryWire, ParentOnlyWhenSetAndOutputSorted) {
  FiltersEntry e(4);
  e.setPriority(44);
  ASSERT_EQ(e.setCounter(Counter(9, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_PACKETS)), 0);
  ASSERT_EQ(SetMatchOfKind(e, 26), 0);
  ASSERT_EQ(SetMatchOfKind(e, 0), 0);
  ASSERT_EQ(SetMatchOfKind(e, 6), 0);
  ASSERT_EQ(SetActionOfKind(e, 1), 0);
  ASSERT_EQ(SetActionOfKind(e, 0), 0);

  FiltersEntryPB pb;
  e.convertToFiltersEntryPB(&pb);
  EXPECT_EQ(pb.id_(), 4u);
  EXPECT_EQ(pb.priority_(), 44u);
  EXPECT_TRUE(pb.has_policer_());
  EXPECT_EQ(pb.policer_(), policer::Policer().Serialize());
  EXPECT_FALSE(pb.has_policer_parent_());
  ASSERT_EQ(pb.counters__size(), 2);
  EXPECT_EQ(pb.counters_(0).id(), 2);
  EXPECT_EQ(pb.counters_(1).id(), 9);
  ASSERT_EQ(pb.matches__size(), 3);
  EXPECT_EQ(pb.matches_(0).type_(), 0u);
  EXPECT_EQ(pb.matches_(1).type_(), 6u);
  EXPECT_EQ(pb.matches_(2).type_(), 26u);
  ASSERT_EQ(pb.actions__size(), 2);
  EXPECT_EQ(pb.actions_(0).type_(), 0u);
  EXPECT_EQ(pb.actions_(1).type_(), 1u);

  e.setPolicerParent(PolicerInStage(1, 6));
  FiltersEntryPB withParent;
  e.convertToFiltersEntryPB(&withParent);
  ASSERT_TRUE(withParent.has_policer_parent_());
  EXPECT_EQ(withParent.policer_parent_(), PolicerInStage(1, 6).Serialize());

  std::string bytes;
  e.serialize(&bytes);
  FiltersEntry back(bytes);
  ASSERT_NE(back.getPolicerParent(), nullptr);
  EXPECT_EQ(*back.getPolicerParent(), PolicerInStage(1, 6));
  EXPECT_TRUE(back == e);
}

TEST(AuditEntryWire, EveryKindRoundTripsThroughStringAndBuffer) {
  FiltersEntry e(123456);
  e.setPriority(654321);
  e.setPolicer(policer::Policer(
      8, policer::STAGE_INGRESS, policer::Mode::TrTcmDs(1, 2, 3, 4),
      {policer::Action::SetDscp(policer::COLOR_GREEN, 9)}));
  e.setPolicerParent(PolicerInStage(1, 1));
  for (int t = 1; t <= 8; ++t) {
    ASSERT_EQ(e.setCounter(Counter(static_cast<uint16_t>(t * 1000),
                                   static_cast<counter_type_t>(t))),
              0);
  }
  // Every kind but the two that exclude others present here.
  for (int kind = 0; kind <= 38; ++kind) {
    if (kind == 14 || kind == 15 || kind == 34) continue;
    ASSERT_EQ(SetMatchOfKind(e, kind), 0) << kind;
  }
  for (int kind = 0; kind <= 20; ++kind) {
    ASSERT_EQ(SetActionOfKind(e, kind), 0) << kind;
  }
  std::string bytes;
  e.serialize(&bytes);
  EXPECT_TRUE(FiltersEntry(bytes) == e);

  FiltersSerialized buffer;
  e.serialize(&buffer);
  ASSERT_EQ(buffer.size(), bytes.size() + 1);
  EXPECT_EQ(buffer.data()[bytes.size()], '\0');
  EXPECT_TRUE(FiltersEntry(buffer) == e);

  // The other exclusive kinds on their own entry.
  FiltersEntry f(1);
  ASSERT_EQ(SetMatchOfKind(f, 14), 0);
  ASSERT_EQ(SetMatchOfKind(f, 15), 0);
  ASSERT_EQ(SetMatchOfKind(f, 34), 0);
  f.serialize(&bytes);
  EXPECT_TRUE(FiltersEntry(bytes) == f);
}

TEST(AuditEntryWire, CountersAreTakenAsStored) {
  FiltersEntryPB pb;
  pb.set_id_(1);
  pb.set_priority_(2);
  pb.set_policer_(policer::Policer().Serialize());
  auto add = [&pb](int id, int type) {
    CounterPB* c = pb.add_counters_();
    c->set_id(id);
    c->set_type(type);
  };
  add(5, 0);  // type 0 accepted
  add(6, 1);
  add(7, 1);          // repeated type accepted
  add(5, 3);          // repeated id: the later wins
  add(65536 + 8, 2);  // cut to 16 bits
  FiltersEntry e(99);
  ASSERT_EQ(e.setCounter(Counter(100, COUNTER_TYPE_OCTETS)), 0);
  e.convertFromFiltersEntryPB(&pb);
  EXPECT_EQ(e.getId(), 1u);
  EXPECT_EQ(e.getPriority(), 2u);
  // Held counters are replaced, not added to.
  ASSERT_EQ(e.getCounters().size(), 4u);
  EXPECT_EQ(e.getCounter(100), nullptr);
  EXPECT_EQ(e.getCounter(5)->GetType(), COUNTER_TYPE_RED_OCTETS);
  EXPECT_EQ(e.getCounter(6)->GetType(), COUNTER_TYPE_PACKETS);
  EXPECT_EQ(e.getCounter(7)->GetType(), COUNTER_TYPE_PACKETS);
  EXPECT_EQ(e.getCounter(8)->GetType(), COUNTER_TYPE_OCTETS);
}

TEST(AuditEntryWire, WorkingObjectsAccumulatePortLists) {
  FiltersEntryPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_policer_("");
  for (uint32_t kind : {1u, 22u}) {
    MatchPB* m1 = pb.add_matches_();
    m1->set_type_(kind);
    m1->add_ports_(EthPort(1));
    MatchPB* m2 = pb.add_matches_();
    m2->set_type_(kind);
    m2->add_ports_(EthPort(2));
  }
  // VLAN sets are replaced by the later element.
  MatchPB* v1 = pb.add_matches_();
  v1->set_type_(2);
  v1->add_vlan_id_(10);
  MatchPB* v2 = pb.add_matches_();
  v2->set_type_(2);
  v2->add_vlan_id_(20);
  ActionPB* b1 = pb.add_actions_();
  b1->set_type_(3);
  b1->add_ports_(EthPort(3));
  ActionPB* b2 = pb.add_actions_();
  b2->set_type_(3);
  b2->add_ports_(EthPort(4));
  ActionPB* r1 = pb.add_actions_();
  r1->set_type_(11);
  r1->add_ports_(EthPort(5));
  ActionPB* r2 = pb.add_actions_();
  r2->set_type_(11);
  r2->add_ports_(EthPort(6));

  FiltersEntry e(std::string{});
  e.convertFromFiltersEntryPB(&pb);
  const std::list<limid_t> both12{EthPort(1), EthPort(2)};
  MatchIngressPorts in(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(in), 0);
  EXPECT_EQ(in.getPorts(), both12);
  MatchEgressPorts out(std::list<limid_t>{});
  ASSERT_EQ(e.getMatch(out), 0);
  EXPECT_EQ(out.getPorts(), both12);
  MatchExternalVlanId vlan(uint16_t{0});
  ASSERT_EQ(e.getMatch(vlan), 0);
  EXPECT_EQ(vlan.getVlanIds(), (std::set<uint16_t>{20}));
  ActionBlockEgressPorts block(std::list<limid_t>{});
  ASSERT_EQ(e.getAction(block), 0);
  EXPECT_EQ(block.getPorts(), (std::list<limid_t>{EthPort(3), EthPort(4)}));
  ActionRedirect redirect(EthPort(0));
  ASSERT_EQ(e.getAction(redirect), 0);
  EXPECT_EQ(redirect.getRedirectPorts(), (std::list<limid_t>{EthPort(6)}));
}

TEST(AuditEntryWire, UnknownKindsSkippedAndRefusalsDropped) {
  FiltersEntryPB pb;
  pb.set_id_(3);
  pb.set_priority_(0);
  pb.set_policer_("");
  pb.add_matches_()->set_type_(39);
  MatchPB* v4 = pb.add_matches_();
  v4->set_type_(9);
  in_addr a = V4("10.0.0.9");
  v4->set_ipv4_(&a, sizeof a);
  v4->set_ipv4_mask_(&a, sizeof a);
  MatchPB* v6 = pb.add_matches_();
  v6->set_type_(14);
  in6_addr b = V6("2001:db8::1");
  v6->set_ipv6_(&b, sizeof b);
  v6->set_ipv6_mask_(&b, sizeof b);
  pb.add_matches_()->set_type_(0xFFFFFFFFu);
  pb.add_matches_()->set_type_(38);
  pb.add_actions_()->set_type_(21);
  pb.add_actions_()->set_type_(1);
  std::string bytes;
  ASSERT_TRUE(pb.SerializeToString(&bytes));
  FiltersEntry e(bytes);
  EXPECT_EQ(e.getId(), 3u);
  ASSERT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_SRC_IPV4), 1u);
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_UNKNOWN_DEST_IP), 1u);
  ASSERT_EQ(e.getActions().size(), 1u);
  EXPECT_EQ(e.getActions().count(FILTERS_ACTION_DENY), 1u);
}

TEST(AuditEntryWire, LoadingAddsToHeldMatchesAndKeepsParentWhenAbsent) {
  FiltersEntry e(1);
  ASSERT_EQ(SetMatchOfKind(e, 26), 0);
  ASSERT_EQ(SetActionOfKind(e, 0), 0);
  e.setPolicerParent(PolicerInStage(1, 2));
  policer::Policer* parent = e.getPolicerParent().get();
  FiltersEntryPB pb;
  pb.set_id_(2);
  pb.set_priority_(0);
  pb.set_policer_(PolicerInStage(0, 5).Serialize());
  pb.add_matches_()->set_type_(0);
  pb.add_actions_()->set_type_(1);
  e.convertFromFiltersEntryPB(&pb);
  EXPECT_EQ(e.getId(), 2u);
  EXPECT_EQ(e.getPolicer(), PolicerInStage(0, 5));
  EXPECT_EQ(e.getPolicerParent().get(), parent);
  EXPECT_EQ(e.getMatches().size(), 2u);
  EXPECT_EQ(e.getActions().size(), 2u);
  // A parent on the wire replaces the held one with a fresh object.
  pb.set_policer_parent_(PolicerInStage(2, 6).Serialize());
  e.convertFromFiltersEntryPB(&pb);
  ASSERT_NE(e.getPolicerParent(), nullptr);
  EXPECT_NE(e.getPolicerParent().get(), parent);
  EXPECT_EQ(*e.getPolicerParent(), PolicerInStage(2, 6));
}

TEST(AuditEntryWire, MessageWithoutPolicerStillLoads) {
  FiltersEntryPB pb;
  pb.set_id_(12);
  pb.set_priority_(13);
  pb.add_matches_()->set_type_(30);
  ASSERT_FALSE(pb.IsInitialized());
  std::string bytes = pb.SerializePartialAsString();
  FiltersEntry e(bytes);
  EXPECT_EQ(e.getId(), 12u);
  EXPECT_EQ(e.getPriority(), 13u);
  EXPECT_EQ(e.getPolicer(), policer::Policer());
  EXPECT_EQ(e.getMatches().count(FILTERS_MATCH_CPU_PORT), 1u);
  // And with a trailing zero byte, as a buffer hands it over.
  FiltersSerialized buffer(bytes);
  FiltersEntry f(buffer);
  EXPECT_TRUE(f == e);
}

TEST(AuditEntryWire, DscpComesBackAsTosAndEqual) {
  FiltersEntry e(1);
  ASSERT_EQ(e.setMatch(MatchDSCP(46)), 0);
  std::string bytes;
  e.serialize(&bytes);
  FiltersEntry back(bytes);
  const Match* held = back.getMatches().at(FILTERS_MATCH_TOS).get();
  EXPECT_EQ(dynamic_cast<const MatchDSCP*>(held), nullptr);
  EXPECT_TRUE(back == e);
  EXPECT_TRUE(e == back);
}

TEST(AuditEntryWire, GarbageBytesNeverCrash) {
  FiltersEntry e(77);
  e.setPriority(5);
  e.setPolicer(PolicerInStage(0, 1));
  e.setPolicerParent(PolicerInStage(1, 2));
  ASSERT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  for (int kind : {1, 4, 9, 24, 34}) ASSERT_EQ(SetMatchOfKind(e, kind), 0);
  for (int kind : {3, 11, 12}) ASSERT_EQ(SetActionOfKind(e, kind), 0);
  std::string bytes;
  e.serialize(&bytes);
  // Every prefix, and every single-byte corruption.
  for (size_t n = 0; n <= bytes.size(); ++n) {
    FiltersEntry cut(bytes.substr(0, n));
    (void)cut;
  }
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::string bad = bytes;
    bad[i] = static_cast<char>(bad[i] ^ 0x5a);
    FiltersEntry corrupt(bad);
    (void)corrupt;
  }
  EXPECT_TRUE(FiltersEntry(bytes) == e);
  FiltersEntry empty{std::string()};
  EXPECT_EQ(empty.getId(), 0u);
  EXPECT_EQ(empty.getPolicer(), policer::Policer());
}

// ------------------------------------------------------ serialized buffer

TEST(AuditSerialized, SizesAndTerminator) {
  FiltersSerialized empty;
  EXPECT_EQ(empty.size(), 0u);
  EXPECT_EQ(empty.data(), nullptr);
  FiltersSerialized one{std::string()};
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one.data()[0], '\0');
  const std::string ten("ab\0cd\0efg\0", 10);
  FiltersSerialized filled(ten);
  ASSERT_EQ(filled.size(), 11u);
  EXPECT_EQ(std::string(filled.data(), 10), ten);
  EXPECT_EQ(filled.data()[10], '\0');
  FiltersSerialized later;
  later.setData(ten);
  EXPECT_EQ(later.size(), 11u);
  EXPECT_EQ(std::string(later.data(), 10), ten);
}

const char kSetDataSignature[] =
    "virtual void FiltersCommon::FiltersSerialized::setData(const string&)";

TEST(AuditSerializedDeathTest, SecondFillAborts) {
  EXPECT_DEATH(
      {
        FiltersSerialized b;
        b.setData("x");
        b.setData("y");
      },
      AssertionMessage("filter_serialized.cc", kSetDataSignature,
                       "data_ == nullptr"));
  EXPECT_DEATH(
      {
        FiltersSerialized b("x");
        b.setData("y");
      },
      AssertionMessage("filter_serialized.cc", kSetDataSignature,
                       "data_ == nullptr"));
  EXPECT_DEATH(
      {
        FiltersEntry e(1);
        FiltersSerialized b("x");
        e.serialize(&b);
      },
      AssertionMessage("filter_serialized.cc", kSetDataSignature,
                       "data_ == nullptr"));
}

// ------------------------------------------------------------ C interface

void* AsHandle(Match* m) { return m; }
void* AsHandle(Action* a) { return a; }

TEST(AuditEntriesC, NullArgumentsAnswerMinusFive) {
  FiltersEntry* e = newFiltersEntry(3);
  MatchTTL ttl(4);
  ActionDeny deny;
  EXPECT_EQ(filtersEntrySetMatch(e, nullptr), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntrySetMatch(nullptr, AsHandle(&ttl)), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntryGetMatch(e, nullptr), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntryGetMatch(nullptr, AsHandle(&ttl)), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntrySetAction(e, nullptr), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntrySetAction(nullptr, AsHandle(&deny)),
            FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntryGetAction(e, nullptr), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersEntryGetAction(nullptr, AsHandle(&deny)),
            FILTERS_ERR_REFUSED);
  EXPECT_TRUE(e->getMatches().empty());
  deleteFiltersEntry(e);
}

TEST(AuditEntriesC, KindsOutsideTheCatalogueAnswerMinusFour) {
  FiltersEntry* e = newFiltersEntry(3);
  Match m39(static_cast<filtersMatch_t>(39));
  Action a21(static_cast<filtersAction_t>(21));
  EXPECT_EQ(filtersEntrySetMatch(e, AsHandle(&m39)), FILTERS_ERR_INVALID);
  EXPECT_EQ(filtersEntryGetMatch(e, AsHandle(&m39)), FILTERS_ERR_INVALID);
  EXPECT_EQ(filtersEntrySetAction(e, AsHandle(&a21)), FILTERS_ERR_INVALID);
  EXPECT_EQ(filtersEntryGetAction(e, AsHandle(&a21)), FILTERS_ERR_INVALID);
  deleteFiltersEntry(e);
}

TEST(AuditEntriesC, SetGetDeleteForwardToTheEntry) {
  FiltersEntry* e = newFiltersEntry(3);
  EXPECT_EQ(filtersEntryGetId(e), 3u);
  filtersEntrySetPriority(e, 77);
  EXPECT_EQ(filtersEntryGetPriority(e), 77u);
  MatchDSCP dscp(46);
  EXPECT_EQ(filtersEntrySetMatch(e, AsHandle(&dscp)), 0);
  MatchSrcIPv4 v4(V4("10.0.0.1"));
  EXPECT_EQ(filtersEntrySetMatch(e, AsHandle(&v4)), 0);
  MatchDstIPv6 v6(V6("2001:db8::1"));
  EXPECT_EQ(filtersEntrySetMatch(e, AsHandle(&v6)), FILTERS_ERR_INVALID);
  MatchToS tos(0);
  EXPECT_EQ(filtersEntryGetMatch(e, AsHandle(&tos)), 0);
  EXPECT_EQ(tos.getToS(), 184);
  MatchTTL ttl(1);
  EXPECT_EQ(filtersEntryGetMatch(e, AsHandle(&ttl)), FILTERS_ERR_NOT_FOUND);
  ActionSetPcp pcp(3);
  EXPECT_EQ(filtersEntrySetAction(e, AsHandle(&pcp)), 0);
  ActionSetPcp pcpOut(0);
  EXPECT_EQ(filtersEntryGetAction(e, AsHandle(&pcpOut)), 0);
  EXPECT_EQ(pcpOut.getPcp(), 3);
  ActionDeny deny;
  EXPECT_EQ(filtersEntryGetAction(e, AsHandle(&deny)), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(filtersEntryDeleteMatch(e, FILTERS_MATCH_TTL),
            FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(filtersEntryDeleteMatch(e, FILTERS_MATCH_TOS), 0);
  EXPECT_EQ(filtersEntryDeleteAction(e, FILTERS_ACTION_DENY),
            FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(filtersEntryDeleteAction(e, FILTERS_ACTION_SET_PCP), 0);
  deleteFiltersEntry(e);
}

TEST(AuditEntriesC, CopySharesTheParent) {
  FiltersEntry* e = newFiltersEntry(3);
  e->setPolicerParent(PolicerInStage(1, 4));
  ASSERT_EQ(SetMatchOfKind(*e, 12), 0);
  FiltersEntry* c = copyFiltersEntry(e);
  EXPECT_NE(c, e);
  EXPECT_EQ(c->getPolicerParent().get(), e->getPolicerParent().get());
  EXPECT_TRUE(*c == *e);
  deleteFiltersEntry(e);
  ASSERT_NE(c->getPolicerParent(), nullptr);
  EXPECT_EQ(*c->getPolicerParent(), PolicerInStage(1, 4));
  deleteFiltersEntry(c);
}

std::string EntryAssert(const std::string& signature) {
  return AssertionMessage("filter_entries_c.cc", signature, "e != nullptr");
}

TEST(AuditEntriesCDeathTest, NullEntryAssertsWithTheSignature) {
  EXPECT_DEATH(copyFiltersEntry(nullptr),
               EntryAssert("FiltersCommon::FiltersEntry* "
                           "FiltersCommon::copyFiltersEntry("
                           "FiltersCommon::FiltersEntry*)"));
  EXPECT_DEATH(deleteFiltersEntry(nullptr),
               EntryAssert("void FiltersCommon::deleteFiltersEntry("
                           "FiltersCommon::FiltersEntry*)"));
  EXPECT_DEATH(filtersEntryGetId(nullptr),
               EntryAssert("FiltersCommon::filtersEntryId_t "
                           "FiltersCommon::filtersEntryGetId("
                           "FiltersCommon::FiltersEntry*)"));
  EXPECT_DEATH(filtersEntrySetPriority(nullptr, 1),
               EntryAssert("void FiltersCommon::filtersEntrySetPriority("
                           "FiltersCommon::FiltersEntry*, "
                           "FiltersCommon::filtersEntryPriority_t)"));
  EXPECT_DEATH(filtersEntryGetPriority(nullptr),
               EntryAssert("FiltersCommon::filtersEntryPriority_t "
                           "FiltersCommon::filtersEntryGetPriority("
                           "FiltersCommon::FiltersEntry*)"));
  EXPECT_DEATH(filtersEntryDeleteMatch(nullptr, FILTERS_MATCH_ALL),
               EntryAssert("FiltersCommon::filtersErr_t "
                           "FiltersCommon::filtersEntryDeleteMatch("
                           "FiltersCommon::FiltersEntry*, "
                           "FiltersCommon::filtersMatch_t)"));
  EXPECT_DEATH(filtersEntryDeleteAction(nullptr, FILTERS_ACTION_PERMIT),
               EntryAssert("FiltersCommon::filtersErr_t "
                           "FiltersCommon::filtersEntryDeleteAction("
                           "FiltersCommon::FiltersEntry*, "
                           "FiltersCommon::filtersAction_t)"));
}

}  // namespace
