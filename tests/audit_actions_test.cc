// Every action kind checked against its documented behaviour, one table row
// per class: the exact dump (flushes included), the exact ActionPB it writes,
// the round trip, and the edge cases of comparison, conversion, MPLS
// validation and the C interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <ios>
#include <list>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_actions_c.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_entries_c.h"
#include "audit_test_util.h"
#include "filter_actions.pb.h"

namespace {

using namespace FiltersCommon;  // NOLINT
using audit::bytesOf;
using audit::dumpOf;
using audit::fieldsOf;
using audit::kEth1;
using audit::kLag3;
using audit::kVpws7;
using audit::mac;
using audit::Recorder;

limid_t const kEth3 = limid_make(limid_type_ethernet, 3);
limid_t const kVpls5 = limid_make_bridgedomain(limid_bridgedomain_type_vpls, 5);
limid_t const kVlanBd5 =
    limid_make_bridgedomain(limid_bridgedomain_type_vlan, 5);
limid_t const kCpu0 = limid_make(limid_type_cpu, 0);

std::string const kMacA("\x00\x1b\x2c\x0d\x0e\xff", 6);  // 0:1b:2c:d:e:ff
std::string const kMacB("\x12\x34\x56\x78\x9a\xbc", 6);

uint32_t ifindexOf(limid_t limid) {
  return (limid_get_index(limid) << 4) | limid_get_type(limid);
}

// Header and type line, both ending with std::endl.
std::string head(std::string const& cls, std::string const& type) {
  return "    =" + cls + "=\n" FL "      Action Type ID: " + type + "\n" FL;
}
std::string head(std::string const& cls, int type) {
  return head(cls, std::to_string(type));
}
std::string const kNoParams = "      <no parameters>\n" FL;

using KindCase = audit::KindCase<Action, ActionPB>;
#define KIND(Class, args, freshArgs, ...) \
  AUDIT_KIND(Action, ActionPB, Class, args, Class, freshArgs, __VA_ARGS__)

std::vector<KindCase> const& kinds() {
  static std::vector<KindCase> const table = {
    KIND(ActionPermit, (), (), head("ActionPermit", 0) + kNoParams,
         pb->set_type_(0)),
    KIND(ActionDeny, (), (), head("ActionDeny", 1) + kNoParams,
         pb->set_type_(1)),
    KIND(ActionCopyToCpu, (), (), head("ActionCopyToCpu", 2) + kNoParams,
         pb->set_type_(2)),
    KIND(ActionBlockEgressPorts, (std::list<limid_t>{kEth1, kLag3, kEth1}),
         (std::list<limid_t>{}),
         head("ActionBlockEgressPorts", 3) +
             "      Number of ports: 3\n" FL
             "      LIMIDs: \"eth1\" \"lag3\" \"eth1\" \n" FL "\n" FL,
         pb->set_type_(3);
         pb->add_ports_(kEth1); pb->add_ports_(kLag3); pb->add_ports_(kEth1)),
    KIND(ActionCopyToCpuCancel, (SWITCH_TO_CPU_CANCEL), (COPY_TO_CPU_CANCEL),
         head("ActionCopyToCpuCancel", 4) +
             "      Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL\n" FL,
         pb->set_type_(4);
         pb->set_cp2cpu_cancel_type_(1)),
    KIND(ActionSetPcp, (7), (0), head("ActionSetPcp", 5) + "      PCP: 7\n" FL,
         pb->set_type_(5);
         pb->set_pcp_(7)),
    KIND(ActionSetPcpAndQueue, (0xAB), (0),
         head("ActionSetPcpAndQueue", 6) + "      PCP_AND_QUEUE: 171\n" FL,
         pb->set_type_(6);
         pb->set_pcp_and_queue_(171)),
    KIND(ActionSetInnerPcp, (5), (0),
         head("ActionSetInnerPcp", 7) + "      Inner PCP: 5\n" FL,
         pb->set_type_(7);
         pb->set_pcp_(5)),
    KIND(ActionSetDSCP, (46), (0),
         head("ActionSetDSCP", 8) + "      DSCP: 46\n" FL, pb->set_type_(8);
         pb->set_dscp_(46)),
    KIND(ActionMapToCosQueue, (255), (0),
         head("ActionMapToCosQueue", 9) + "      CoS Queue: 255\n" FL,
         pb->set_type_(9);
         pb->set_cosq_(255)),
    KIND(ActionMapToCpuCosQueue, (12), (0),
         head("ActionMapToCpuCosQueue", 10) + "      CPU CoS Queue: 12\n" FL,
         pb->set_type_(10);
         pb->set_cosq_(12)),
    KIND(ActionRedirect, (kEth3), (kCpu0),
         head("ActionRedirect", 11) + "      \"eth3\" \n" FL, pb->set_type_(11);
         pb->add_ports_(kEth3)),
    KIND(ActionReplaceDstMac, (mac(kMacA)), (mac(std::string(6, '\0'))),
         head("ActionReplaceDstMac", 12) +
             "      Replace MAC: 0:1b:2c:d:e:ff\n" FL,
         pb->set_type_(12);
         pb->set_mac_(kMacA)),
    KIND(ActionRedirectCancel, (), (),
         head("ActionRedirectCancel", 13) + kNoParams, pb->set_type_(13)),
    KIND(ActionReplaceSrcMac, (mac(kMacB)), (mac(std::string(6, '\0'))),
         head("ActionReplaceSrcMac", 14) +
             "      Replace MAC: 12:34:56:78:9a:bc\n" FL,
         pb->set_type_(14);
         pb->set_mac_(kMacB)),
    KIND(
        ActionL3Switch, (4000000000u), (0),
        head("ActionL3Switch", 15) + "      L3 Destination ID: 4000000000\n" FL,
        pb->set_type_(15);
        pb->set_l3_dest_id_(4000000000u)),
    KIND(ActionBlackHole, (), (), head("ActionBlackHole", 16) + kNoParams,
         pb->set_type_(16)),
    KIND(ActionCopyInnerPcp, (), (), head("ActionCopyInnerPcp", 17) + kNoParams,
         pb->set_type_(17)),
    KIND(ActionMplsPortSet, (kVpws7, kEth3), (ActionMplsPortSet::BuildEmpty()),
         head("ActionMplsPortSet", 18) + "      VPN ID: vpws7\n" FL
                                         "      MPLS Access Port: eth3\n" FL,
         pb->set_type_(18);
         pb->set_vpn_id((7 << 4) | 3); pb->set_mpls_access_port((3 << 4) | 1)),
    KIND(ActionL2ToCpuDrop, (), (), head("ActionL2ToCpuDrop", 19) + kNoParams,
         pb->set_type_(19)),
    KIND(ActionDoNotLearnMac, (), (),
         head("ActionDoNotLearnMac", 20) + kNoParams, pb->set_type_(20)),
  };
  return table;
}

#undef KIND

std::set<std::string> const kParameterless = {
    "ActionPermit",         "ActionDeny",         "ActionCopyToCpu",
    "ActionRedirectCancel", "ActionBlackHole",    "ActionCopyInnerPcp",
    "ActionL2ToCpuDrop",    "ActionDoNotLearnMac"};

TEST(AuditActionKinds, TableCoversEveryKindOnce) {
  std::set<int> types;
  for (auto const& k : kinds()) types.insert(k.make()->getType());
  EXPECT_EQ(21u, kinds().size());
  EXPECT_EQ(21u, types.size());
  EXPECT_EQ(0, *types.begin());
  EXPECT_EQ(20, *types.rbegin());
}

TEST(AuditActionKinds, OwnOperatorPrintsTheExactDump) {
  audit::expectOwnDumps(kinds());
}

TEST(AuditActionKinds, BaseOperatorPrintsTheSameDump) {
  for (auto const& k : kinds()) {
    EXPECT_EQ(k.dump, dumpOf(*k.make())) << k.name;
  }
}

TEST(AuditActionKinds, WritesExactlyItsWireFields) {
  audit::expectExactWire(kinds());
}

TEST(AuditActionKinds, RoundTripIsEqualThroughTheBase) {
  audit::expectRoundTrips(kinds(), kParameterless);
}

TEST(AuditActionKinds, EqualToItselfAndNeverToAnotherKind) {
  for (auto const& k1 : kinds()) {
    for (auto const& k2 : kinds()) {
      auto a = k1.make();
      auto b = k2.make();
      EXPECT_EQ(k1.name == k2.name, *a == *b) << k1.name << " " << k2.name;
    }
  }
}

TEST(AuditActionKinds, ScalarsLoadedFromAMessageWithoutTheirFieldHoldZero) {
  for (auto const& k : kinds()) {
    if (k.name == "ActionMplsPortSet" || k.name == "ActionRedirect" ||
        k.name == "ActionBlockEgressPorts") {
      continue;  // checked on their own below
    }
    audit::expectZeroRead(k, *k.make());
  }
}

// ---- Base ----

TEST(AuditActionBase, KindsOutsideTheCatalogueCompareEqualAndPrintNothing) {
  Action a(static_cast<filtersAction_t>(21));
  Action b(static_cast<filtersAction_t>(21));
  Action c(static_cast<filtersAction_t>(99));
  Action negative(static_cast<filtersAction_t>(-1));
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(a == a);
  EXPECT_FALSE(a == c);
  EXPECT_TRUE(negative == negative);
  EXPECT_EQ("", dumpOf(a));
  EXPECT_EQ("", dumpOf(c));
  ActionPB pb;
  c.convertToActionPB(&pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(pb));
  EXPECT_EQ(99u, pb.type_());
}

TEST(AuditActionBase, ABareActionOfAParameterlessKindDumpsAsThatKind) {
  for (auto const& k : kinds()) {
    if (kParameterless.count(k.name) == 0) continue;
    Action bare(k.make()->getType());
    EXPECT_EQ(k.dump, dumpOf(bare)) << k.name;
    EXPECT_TRUE(bare == *k.make()) << k.name;
  }
}

TEST(AuditActionBase, PermitIsTwoBytesOnTheWire) {
  ActionPB pb;
  ActionPermit().convertToActionPB(&pb);
  EXPECT_EQ(std::string("\x08\x00", 2), pb.SerializeAsString());
}

TEST(AuditActionBase, ParameterlessLoadsIgnoreTheMessage) {
  ActionPB pb;
  pb.set_type_(5);
  pb.set_pcp_(3);
  ActionDeny deny;
  deny.convertFromActionPB(&pb);
  EXPECT_EQ(FILTERS_ACTION_DENY, deny.getType());
  EXPECT_TRUE(deny == ActionDeny());
  EXPECT_FALSE(static_cast<Action const&>(deny) == ActionPermit());
}

template <class Kind, class... Args>
void expectBaseUsesTheVirtualComparison(Args... args) {
  audit::expectBaseUsesTheLeftOperandsVirtualComparison<Action, Kind>(args...);
}

TEST(AuditActionBase, SixKindsCompareThroughAVirtualComparison) {
  expectBaseUsesTheVirtualComparison<ActionPermit>();
  expectBaseUsesTheVirtualComparison<ActionMapToCosQueue>(
      static_cast<unsigned char>(3));
  expectBaseUsesTheVirtualComparison<ActionRedirect>(kEth1);
  expectBaseUsesTheVirtualComparison<ActionReplaceDstMac>(mac(kMacA));
  expectBaseUsesTheVirtualComparison<ActionRedirectCancel>();
  expectBaseUsesTheVirtualComparison<ActionReplaceSrcMac>(mac(kMacB));
}

TEST(AuditActionBase, ActionPortsKeepsTheBaseConversions) {
  ActionPorts ports(FILTERS_ACTION_BLOCK_EGRESS_PORTS,
                    std::list<limid_t>{kEth1, kEth1});
  ActionPB pb;
  ports.convertToActionPB(&pb);
  EXPECT_EQ(std::vector<std::string>{"type_"}, fieldsOf(pb));
  ActionPB full;
  full.add_ports_(kLag3);
  ports.convertFromActionPB(&full);
  EXPECT_EQ((std::list<limid_t>{kEth1, kEth1}), ports.getPorts());
  EXPECT_TRUE(static_cast<Action const&>(ports) ==
              ActionBlockEgressPorts(std::list<limid_t>{kEth1, kEth1}));
  EXPECT_EQ(head("ActionBlockEgressPorts", 3) +
                "      Number of ports: 2\n" FL
                "      LIMIDs: \"eth1\" \"eth1\" \n" FL "\n" FL,
            dumpOf(static_cast<Action const&>(ports)));
}

// ---- Scalars ----

TEST(AuditActionScalars, SharedFieldsAreToldApartByTypeOnly) {
  ActionPB pcp;
  ActionSetPcp(3).convertToActionPB(&pcp);
  ActionPB inner;
  ActionSetInnerPcp(3).convertToActionPB(&inner);
  EXPECT_EQ(pcp.pcp_(), inner.pcp_());
  EXPECT_NE(pcp.type_(), inner.type_());
  EXPECT_TRUE(ActionSetPcp(3) == ActionSetPcp(3));
  EXPECT_FALSE(static_cast<Action const&>(ActionSetPcp(3)) ==
               ActionSetInnerPcp(3));

  ActionPB cpu;
  ActionMapToCpuCosQueue(7).convertToActionPB(&cpu);
  ActionMapToCosQueue cos(0);
  cos.convertFromActionPB(&cpu);
  EXPECT_EQ(7, cos.getCosQueue());
  ActionSetInnerPcp readInner(0);
  readInner.convertFromActionPB(&pcp);
  EXPECT_EQ(3, readInner.getInnerPcp());
}

TEST(AuditActionScalars, EightBitKindsKeepTheLowByte) {
  ActionPB pb;
  pb.set_dscp_(300);
  pb.set_pcp_(0x107);
  pb.set_pcp_and_queue_(0xFFFF);
  pb.set_cosq_(256 + 9);
  ActionSetDSCP dscp(0);
  dscp.convertFromActionPB(&pb);
  EXPECT_EQ(44, dscp.getDSCP());
  ActionSetPcp pcp(0);
  pcp.convertFromActionPB(&pb);
  EXPECT_EQ(7, pcp.getPcp());
  ActionSetPcpAndQueue pq(0);
  pq.convertFromActionPB(&pb);
  EXPECT_EQ(255, pq.getPcpAndQueue());
  ActionMapToCpuCosQueue cpu(0);
  cpu.convertFromActionPB(&pb);
  EXPECT_EQ(9, cpu.getCpuCosQueue());
}

TEST(AuditActionScalars, ThirtyTwoBitKindsKeepEveryBit) {
  ActionPB pb;
  pb.set_l3_dest_id_(0xFFFFFFFFu);
  pb.set_cp2cpu_cancel_type_(1);
  ActionL3Switch l3(0);
  l3.convertFromActionPB(&pb);
  EXPECT_EQ(0xFFFFFFFFu, l3.getL3DestinationId());
  ActionCopyToCpuCancel cancel(COPY_TO_CPU_CANCEL);
  cancel.convertFromActionPB(&pb);
  EXPECT_EQ(SWITCH_TO_CPU_CANCEL, cancel.getCancelType());
}

TEST(AuditActionScalars, CancelTypesWriteTheirNumbers) {
  ActionPB copy;
  ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL).convertToActionPB(&copy);
  EXPECT_EQ((std::vector<std::string>{"type_", "cp2cpu_cancel_type_"}),
            fieldsOf(copy));
  EXPECT_EQ(0u, copy.cp2cpu_cancel_type_());
  EXPECT_EQ(head("ActionCopyToCpuCancel", 4) +
                "      Cp2CPU Cancel type: COPY_TO_CPU_CANCEL\n" FL,
            dumpOf(ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL)));
}

TEST(AuditActionScalars, GettersReturnTheFullByte) {
  EXPECT_EQ(200, ActionSetPcp(200).getPcp());
  EXPECT_EQ(0, ActionSetDSCP(0).getDSCP());
  EXPECT_EQ(255, ActionMapToCpuCosQueue(255).getCpuCosQueue());
  EXPECT_EQ(1u, ActionL3Switch(1).getL3DestinationId());
  EXPECT_EQ(9, ActionSetInnerPcp(9).getInnerPcp());
  EXPECT_EQ(3, ActionSetPcpAndQueue(3).getPcpAndQueue());
  EXPECT_EQ(4, ActionMapToCosQueue(4).getCosQueue());
  EXPECT_FALSE(ActionMapToCosQueue(4) == ActionMapToCosQueue(5));
  EXPECT_FALSE(static_cast<Action const&>(ActionL3Switch(1)) ==
               ActionL3Switch(2));
}

// ---- Ports and redirect ----

TEST(AuditActionPorts, RedirectLoadReplacesBlockEgressLoadAppends) {
  ActionPB two;
  two.set_type_(11);
  two.add_ports_(kEth1);
  two.add_ports_(kLag3);
  ActionRedirect redirect(kEth3);
  redirect.convertFromActionPB(&two);
  EXPECT_EQ((std::list<limid_t>{kEth1, kLag3}), redirect.getRedirectPorts());
  EXPECT_EQ((std::list<limid_t>{kEth1, kLag3}), redirect.getRedirectPortsRef());
  redirect.convertFromActionPB(&two);
  EXPECT_EQ((std::list<limid_t>{kEth1, kLag3}), redirect.getRedirectPorts());

  ActionPB one;
  one.set_type_(3);
  one.add_ports_(kLag3);
  ActionBlockEgressPorts block(std::list<limid_t>{kEth1});
  block.convertFromActionPB(&one);
  EXPECT_EQ((std::list<limid_t>{kEth1, kLag3}), block.getPorts());
  block.convertFromActionPB(&one);
  EXPECT_EQ((std::list<limid_t>{kEth1, kLag3, kLag3}), block.getPorts());

  ActionPB none;
  none.set_type_(11);
  redirect.convertFromActionPB(&none);
  EXPECT_TRUE(redirect.getRedirectPorts().empty());
}

TEST(AuditActionPorts, WritingAppendsToTheMessagesPorts) {
  ActionPB pb;
  pb.add_ports_(kLag3);
  ActionRedirect(kEth1).convertToActionPB(&pb);
  ASSERT_EQ(2, pb.ports__size());
  EXPECT_EQ(kLag3, pb.ports_(0));
  EXPECT_EQ(kEth1, pb.ports_(1));
}

TEST(AuditActionPorts, ListsCompareInOrderWithDuplicates) {
  using L = std::list<limid_t>;
  EXPECT_FALSE(ActionBlockEgressPorts(L{kEth1, kLag3}) ==
               ActionBlockEgressPorts(L{kLag3, kEth1}));
  EXPECT_FALSE(ActionBlockEgressPorts(L{kEth1, kEth1}) ==
               ActionBlockEgressPorts(L{kEth1}));
  EXPECT_FALSE(static_cast<Action const&>(ActionBlockEgressPorts(
                   L{kEth1, kEth1})) == ActionBlockEgressPorts(L{kEth1}));
  EXPECT_TRUE(static_cast<Action const&>(ActionBlockEgressPorts(L{kEth1})) ==
              ActionBlockEgressPorts(L{kEth1}));

  ActionPB ab;
  ab.add_ports_(kEth1);
  ab.add_ports_(kLag3);
  ActionPB ba;
  ba.add_ports_(kLag3);
  ba.add_ports_(kEth1);
  ActionPB aa;
  aa.add_ports_(kEth1);
  aa.add_ports_(kEth1);
  ActionRedirect x(0), y(0), z(0);
  x.convertFromActionPB(&ab);
  y.convertFromActionPB(&ba);
  z.convertFromActionPB(&aa);
  EXPECT_FALSE(x == y);
  EXPECT_FALSE(static_cast<Action const&>(x) == y);
  EXPECT_FALSE(z == ActionRedirect(kEth1));
  EXPECT_TRUE(ActionRedirect(kEth1) == ActionRedirect(kEth1));
  EXPECT_TRUE(static_cast<Action const&>(ActionRedirect(kEth1)) ==
              ActionRedirect(kEth1));
}

TEST(AuditActionPorts, PortsTravelUnpackedAndPackedIsAccepted) {
  ActionPB pb;
  ActionBlockEgressPorts(std::list<limid_t>{1, 2}).convertToActionPB(&pb);
  EXPECT_EQ(std::string("\x08\x03\x10\x01\x10\x02", 6), pb.SerializeAsString());
  ActionPB packed;
  ASSERT_TRUE(
      packed.ParseFromString(std::string("\x08\x0b\x12\x02\x01\x02", 6)));
  ActionRedirect r(kEth1);
  r.convertFromActionPB(&packed);
  EXPECT_EQ((std::list<limid_t>{1, 2}), r.getRedirectPorts());
}

TEST(AuditActionPorts, RedirectListPrintsOnOneLine) {
  ActionPB two;
  two.add_ports_(kEth1);
  two.add_ports_(kVpls5);
  ActionRedirect r(0);
  r.convertFromActionPB(&two);
  EXPECT_EQ(head("ActionRedirect", 11) + "      \"eth1\"       \"vpls5\" \n" FL,
            dumpOf(r));
  ActionPB none;
  r.convertFromActionPB(&none);
  EXPECT_EQ(head("ActionRedirect", 11) + "\n" FL, dumpOf(r));
  EXPECT_EQ(head("ActionRedirect", 11) + "      \"\" \n" FL,
            dumpOf(ActionRedirect(0)));
}

TEST(AuditActionPorts, BlockEgressDumpEndsWithAnEmptyLine) {
  EXPECT_EQ(head("ActionBlockEgressPorts", 3) + "      Number of ports: 0\n" FL
                                                "      LIMIDs: \n" FL "\n" FL,
            dumpOf(ActionBlockEgressPorts(std::list<limid_t>{})));
  std::string two =
      dumpOf(ActionBlockEgressPorts(std::list<limid_t>{kEth1, kLag3}));
  EXPECT_EQ(head("ActionBlockEgressPorts", 3) +
                "      Number of ports: 2\n" FL
                "      LIMIDs: \"eth1\" \"lag3\" \n" FL "\n" FL,
            two);
  // Five lines, the last empty.
  std::ostringstream plain;
  plain << ActionBlockEgressPorts(std::list<limid_t>{kEth1, kLag3});
  std::string text = plain.str();
  EXPECT_EQ(5, std::count(text.begin(), text.end(), '\n'));
  EXPECT_EQ("\n\n", text.substr(text.size() - 2));
}

TEST(AuditActionPorts, ActionPortsOperatorPrintsOnlyThePortLines) {
  ActionBlockEgressPorts block(std::list<limid_t>{kEth1});
  EXPECT_EQ("      Number of ports: 1\n" FL "      LIMIDs: \"eth1\" \n" FL,
            dumpOf(static_cast<ActionPorts const&>(block)));
}

// ---- MAC ----

TEST(AuditActionMac, WritesSixBytesAndReadsTheFirstSix) {
  ActionPB pb;
  ActionReplaceSrcMac(mac(kMacB)).convertToActionPB(&pb);
  EXPECT_EQ(6u, pb.mac_().size());
  EXPECT_EQ(kMacB, pb.mac_());

  ActionPB longer;
  longer.set_mac_(kMacA + "\x01\x02");
  ActionReplaceDstMac dst(mac(kMacB));
  dst.convertFromActionPB(&longer);
  EXPECT_EQ(kMacA, bytesOf(dst.getReplaceDstMac()));

  ActionPB shorter;
  shorter.set_mac_(std::string("\x0a\x0b", 2));
  ActionReplaceSrcMac src(mac(kMacB));
  src.convertFromActionPB(&shorter);
  EXPECT_EQ(std::string("\x0a\x0b\0\0\0\0", 6),
            bytesOf(src.getReplaceSrcMac()));

  ActionPB absent;
  src.convertFromActionPB(&absent);
  EXPECT_EQ(std::string(6, '\0'), bytesOf(src.getReplaceSrcMac()));
}

TEST(AuditActionMac, EqualityIsBytewiseAndKindsDiffer) {
  EXPECT_TRUE(ActionReplaceDstMac(mac(kMacA)) ==
              ActionReplaceDstMac(mac(kMacA)));
  EXPECT_FALSE(ActionReplaceDstMac(mac(kMacA)) ==
               ActionReplaceDstMac(mac(kMacB)));
  EXPECT_FALSE(static_cast<Action const&>(ActionReplaceDstMac(mac(kMacA))) ==
               ActionReplaceSrcMac(mac(kMacA)));
}

TEST(AuditActionMac, ZeroAddressPrintsWithoutLeadingZeros) {
  EXPECT_EQ(
      head("ActionReplaceDstMac", 12) + "      Replace MAC: 0:0:0:0:0:0\n" FL,
      dumpOf(ActionReplaceDstMac(mac(std::string(6, '\0')))));
}

// ---- MPLS ----

std::string messageOf(std::function<void()> const& f) {
  try {
    f();
  } catch (std::invalid_argument const& e) {
    return e.what();
  }
  return "<no exception>";
}

std::string const kBadVpn = "ActionMplsPortSet: invalid vpn_id limid type";
std::string const kBadPort =
    "ActionMplsPortSet: invalid mpls_access_port limid type";
std::string const kMissing =
    "ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port";

TEST(AuditActionMpls, ConstructorAcceptsOnlyTheDescribedTypes) {
  ActionMplsPortSet a(kVpws7, kEth3);
  EXPECT_EQ(kVpws7, a.getVpnId());
  EXPECT_EQ(kEth3, a.getMplsAccessPort());
  EXPECT_EQ(FILTERS_ACTION_MPLS_PORT_SET, a.getType());
  ActionMplsPortSet b(kVpls5, kLag3);
  EXPECT_EQ(kVpls5, b.getVpnId());
  EXPECT_EQ(kLag3, b.getMplsAccessPort());

  EXPECT_EQ(kBadVpn, messageOf([] { ActionMplsPortSet(kEth1, kEth3); }));
  EXPECT_EQ(kBadPort, messageOf([] { ActionMplsPortSet(kVpws7, kVpws7); }));
  EXPECT_EQ(kBadVpn, messageOf([] { ActionMplsPortSet(kVlanBd5, kEth3); }));
  EXPECT_EQ(kBadVpn, messageOf([] { ActionMplsPortSet(kEth1, kVpws7); }));
  EXPECT_EQ(kBadPort, messageOf([] { ActionMplsPortSet(kVpls5, kCpu0); }));
  EXPECT_EQ(kBadPort, messageOf([] { ActionMplsPortSet(kVpls5, kVpls5); }));
  EXPECT_EQ(kBadVpn, messageOf([] { ActionMplsPortSet(kLag3, kLag3); }));
  EXPECT_EQ(kBadVpn, messageOf([] { ActionMplsPortSet(0, kLag3); }));
}

TEST(AuditActionMpls, VpnTypeTest) {
  ActionMplsPortSet a = ActionMplsPortSet::BuildEmpty();
  EXPECT_EQ(FILTERS_ACTION_MPLS_PORT_SET, a.getType());
  EXPECT_TRUE(a.IsLimidFromVpnType(kVpws7));
  EXPECT_TRUE(a.IsLimidFromVpnType(kVpls5));
  EXPECT_FALSE(a.IsLimidFromVpnType(kVlanBd5));
  EXPECT_FALSE(a.IsLimidFromVpnType(limid_make_bridgedomain(3, 5)));
  EXPECT_FALSE(a.IsLimidFromVpnType(kEth1));
  EXPECT_FALSE(a.IsLimidFromVpnType(kLag3));
  EXPECT_FALSE(a.IsLimidFromVpnType(0));
}

TEST(AuditActionMpls, RefusingSettersKeepTheStoredValue) {
  ActionMplsPortSet a(kVpws7, kEth3);
  EXPECT_EQ(kBadVpn, messageOf([&] { a.setVpnId(kEth1); }));
  EXPECT_EQ(kVpws7, a.getVpnId());
  EXPECT_EQ(kBadPort, messageOf([&] { a.setMplsAccessPort(kVpls5); }));
  EXPECT_EQ(kEth3, a.getMplsAccessPort());
  a.setVpnId(kVpls5);
  a.setMplsAccessPort(kLag3);
  EXPECT_EQ(kVpls5, a.getVpnId());
  EXPECT_EQ(kLag3, a.getMplsAccessPort());
}

TEST(AuditActionMpls, IdentifiersTravelAsInterfaceIndexes) {
  ActionMplsPortSet a(kVpls5, kLag3);
  ActionPB pb;
  a.convertToActionPB(&pb);
  EXPECT_EQ((std::vector<std::string>{"type_", "vpn_id", "mpls_access_port"}),
            fieldsOf(pb));
  EXPECT_EQ(18u, pb.type_());
  EXPECT_EQ(ifindexOf(kVpls5), pb.vpn_id());
  EXPECT_EQ(ifindexOf(kLag3), pb.mpls_access_port());
  EXPECT_NE(kVpls5, pb.vpn_id());
  ActionMplsPortSet back = ActionMplsPortSet::BuildEmpty();
  back.convertFromActionPB(&pb);
  EXPECT_EQ(kVpls5, back.getVpnId());
  EXPECT_EQ(kLag3, back.getMplsAccessPort());
  EXPECT_TRUE(back == a);
}

TEST(AuditActionMpls, LoadRequiresBothFieldsAndChangesNothingOtherwise) {
  ActionMplsPortSet a(kVpws7, kEth3);
  ActionPB onlyVpn;
  onlyVpn.set_type_(18);
  onlyVpn.set_vpn_id(ifindexOf(kVpls5));
  EXPECT_EQ(kMissing, messageOf([&] { a.convertFromActionPB(&onlyVpn); }));
  ActionPB onlyPort;
  onlyPort.set_type_(18);
  onlyPort.set_mpls_access_port(ifindexOf(kLag3));
  EXPECT_EQ(kMissing, messageOf([&] { a.convertFromActionPB(&onlyPort); }));
  ActionPB neither;
  neither.set_type_(18);
  EXPECT_EQ(kMissing, messageOf([&] { a.convertFromActionPB(&neither); }));
  EXPECT_EQ(kVpws7, a.getVpnId());
  EXPECT_EQ(kEth3, a.getMplsAccessPort());
  // Present with value 0 is present.
  ActionPB zeros;
  zeros.set_vpn_id(0);
  zeros.set_mpls_access_port(0);
  EXPECT_EQ(kBadVpn, messageOf([&] { a.convertFromActionPB(&zeros); }));
  EXPECT_EQ(kVpws7, a.getVpnId());
}

TEST(AuditActionMpls, LoadValidatesVpnThenPort) {
  ActionMplsPortSet a(kVpws7, kEth3);
  ActionPB badVpn;
  badVpn.set_vpn_id(ifindexOf(kEth1));
  badVpn.set_mpls_access_port(ifindexOf(kVpws7));
  EXPECT_EQ(kBadVpn, messageOf([&] { a.convertFromActionPB(&badVpn); }));
  EXPECT_EQ(kVpws7, a.getVpnId());
  EXPECT_EQ(kEth3, a.getMplsAccessPort());

  ActionPB badPort;
  badPort.set_vpn_id(ifindexOf(kVpls5));
  badPort.set_mpls_access_port(ifindexOf(kVpws7));
  EXPECT_EQ(kBadPort, messageOf([&] { a.convertFromActionPB(&badPort); }));
  EXPECT_EQ(kVpls5, a.getVpnId());  // set just before by the same call
  EXPECT_EQ(kEth3, a.getMplsAccessPort());
}

TEST(AuditActionMpls, EqualityComparesBothIdentifiers) {
  EXPECT_TRUE(ActionMplsPortSet(kVpws7, kEth3) ==
              ActionMplsPortSet(kVpws7, kEth3));
  EXPECT_FALSE(ActionMplsPortSet(kVpws7, kEth3) ==
               ActionMplsPortSet(kVpls5, kEth3));
  EXPECT_FALSE(ActionMplsPortSet(kVpws7, kEth3) ==
               ActionMplsPortSet(kVpws7, kLag3));
  EXPECT_FALSE(static_cast<Action const&>(ActionMplsPortSet(kVpws7, kEth3)) ==
               ActionMplsPortSet(kVpws7, kEth1));
}

TEST(AuditActionMpls, DumpShowsBothNames) {
  EXPECT_EQ(head("ActionMplsPortSet", 18) + "      VPN ID: vpls5\n" FL
                                            "      MPLS Access Port: lag3\n" FL,
            dumpOf(ActionMplsPortSet(kVpls5, kLag3)));
}

// ---- Number bases in the dump ----

TEST(AuditActionDump, ValuesFollowTheStreamsBase) {
  Recorder r;
  r.os() << std::hex << ActionSetDSCP(46) << ActionL3Switch(255)
         << ActionSetPcp(10) << ActionSetPcpAndQueue(11)
         << ActionSetInnerPcp(12) << ActionMapToCosQueue(13)
         << ActionBlockEgressPorts(std::list<limid_t>(17, kEth1));
  EXPECT_EQ(
      head("ActionSetDSCP", 8) + "      DSCP: 2e\n" FL +
          head("ActionL3Switch", "f") + "      L3 Destination ID: ff\n" FL +
          head("ActionSetPcp", 5) + "      PCP: a\n" FL +
          head("ActionSetPcpAndQueue", 6) + "      PCP_AND_QUEUE: b\n" FL +
          head("ActionSetInnerPcp", 7) + "      Inner PCP: c\n" FL +
          head("ActionMapToCosQueue", 9) + "      CoS Queue: d\n" FL +
          head("ActionBlockEgressPorts", 3) +
          "      Number of ports: 11\n" FL "      LIMIDs: " +
          [] {
            std::string s;
            for (int i = 0; i < 17; ++i) s += "\"eth1\" ";
            return s;
          }() +
          "\n" FL "\n" FL,
      r.text());
  EXPECT_TRUE(r.os().flags() & std::ios::hex);
}

TEST(AuditActionDump, CpuCosQueueForcesDecimalAfterItsTypeLine) {
  Recorder r;
  r.os() << std::hex << ActionMapToCpuCosQueue(12) << ActionSetDSCP(46)
         << static_cast<Action const&>(ActionL3Switch(255));
  EXPECT_EQ(head("ActionMapToCpuCosQueue", "a") +
                "      CPU CoS Queue: 12\n" FL + head("ActionSetDSCP", 8) +
                "      DSCP: 46\n" FL + head("ActionL3Switch", 15) +
                "      L3 Destination ID: 255\n" FL,
            r.text());
  EXPECT_TRUE(r.os().flags() & std::ios::dec);
  EXPECT_FALSE(r.os().flags() & std::ios::hex);
}

TEST(AuditActionDump, OtherKindsLeaveTheFormatStateAlone) {
  for (auto const& k : kinds()) {
    if (k.name == "ActionMapToCpuCosQueue") continue;
    std::ostringstream os;
    os << std::hex << *k.make();
    EXPECT_TRUE(os.flags() & std::ios::hex) << k.name;
  }
}

TEST(AuditActionDump, SmallValuesPrintAsNumbersNotCharacters) {
  EXPECT_EQ(head("ActionSetPcp", 5) + "      PCP: 0\n" FL,
            dumpOf(ActionSetPcp(0)));
  EXPECT_EQ(head("ActionSetDSCP", 8) + "      DSCP: 65\n" FL,
            dumpOf(ActionSetDSCP('A')));
}

// ---- C interface ----

using CActionCase = audit::CConstructorCase<filtersAction_t>;

TEST(AuditActionC, EveryConstructorMakesItsKind) {
  limid_t const ports[] = {5, 7, 5};
  std::vector<CActionCase> const cases = {
      {"newActionPermit", [] { return newActionPermit(); },
       FILTERS_ACTION_PERMIT, head("ActionPermit", 0) + kNoParams},
      {"newActionDeny", [] { return newActionDeny(); }, FILTERS_ACTION_DENY,
       head("ActionDeny", 1) + kNoParams},
      {"newActionCopyToCpu", [] { return newActionCopyToCpu(); },
       FILTERS_ACTION_COPY_TO_CPU, head("ActionCopyToCpu", 2) + kNoParams},
      {"newActionBlockEgressPorts",
       [&] { return newActionBlockEgressPorts(ports, 3); },
       FILTERS_ACTION_BLOCK_EGRESS_PORTS,
       head("ActionBlockEgressPorts", 3) + "      Number of ports: 3\n" FL
                                           "      LIMIDs: \"\" \"\" \"\" \n" FL
                                           "\n" FL},
      {"newActionBlockEgressPorts(null, 0)",
       [] { return newActionBlockEgressPorts(nullptr, 0); },
       FILTERS_ACTION_BLOCK_EGRESS_PORTS,
       head("ActionBlockEgressPorts", 3) + "      Number of ports: 0\n" FL
                                           "      LIMIDs: \n" FL "\n" FL},
      {"newActionCopyToCpuCancel", [] { return newActionCopyToCpuCancel(); },
       FILTERS_ACTION_COPY_TO_CPU_CANCEL,
       head("ActionCopyToCpuCancel", 4) +
           "      Cp2CPU Cancel type: COPY_TO_CPU_CANCEL\n" FL},
      {"newActionSwitchToCpuCancel",
       [] { return newActionSwitchToCpuCancel(); },
       FILTERS_ACTION_COPY_TO_CPU_CANCEL,
       head("ActionCopyToCpuCancel", 4) +
           "      Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL\n" FL},
      {"newActionSetPcp", [] { return newActionSetPcp(3); },
       FILTERS_ACTION_SET_PCP, head("ActionSetPcp", 5) + "      PCP: 3\n" FL},
      {"newActionSetPcpAndQueue", [] { return newActionSetPcpAndQueue(200); },
       FILTERS_ACTION_SET_PCP_AND_QUEUE,
       head("ActionSetPcpAndQueue", 6) + "      PCP_AND_QUEUE: 200\n" FL},
      {"newActionSetDSCP", [] { return newActionSetDSCP(63); },
       FILTERS_ACTION_SET_DSCP,
       head("ActionSetDSCP", 8) + "      DSCP: 63\n" FL},
      {"newActionMapToCosQueue", [] { return newActionMapToCosQueue(4); },
       FILTERS_ACTION_MAP_TO_COS_QUEUE,
       head("ActionMapToCosQueue", 9) + "      CoS Queue: 4\n" FL},
      {"newActionMapToCpuCosQueue",
       [] { return newActionMapToCpuCosQueue(30); },
       FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE,
       head("ActionMapToCpuCosQueue", 10) + "      CPU CoS Queue: 30\n" FL},
      {"newReplaceDstMac", [] { return newReplaceDstMac(mac(kMacA)); },
       FILTERS_ACTION_REPLACE_DST_MAC,
       head("ActionReplaceDstMac", 12) +
           "      Replace MAC: 0:1b:2c:d:e:ff\n" FL},
      {"newActionRedirect", [] { return newActionRedirect(kLag3); },
       FILTERS_ACTION_REDIRECT,
       head("ActionRedirect", 11) + "      \"lag3\" \n" FL},
      {"newActionRedirectCancel", [] { return newActionRedirectCancel(); },
       FILTERS_ACTION_REDIRECT_CANCEL,
       head("ActionRedirectCancel", 13) + kNoParams},
      {"newReplaceSrcMac", [] { return newReplaceSrcMac(mac(kMacB)); },
       FILTERS_ACTION_REPLACE_SRC_MAC,
       head("ActionReplaceSrcMac", 14) +
           "      Replace MAC: 12:34:56:78:9a:bc\n" FL},
      {"newActionL3Switch", [] { return newActionL3Switch(70000); },
       FILTERS_ACTION_L3_SWITCH,
       head("ActionL3Switch", 15) + "      L3 Destination ID: 70000\n" FL},
      {"newActionCopyInnerPcp", [] { return newActionCopyInnerPcp(); },
       FILTERS_ACTION_COPY_INNER_PCP,
       head("ActionCopyInnerPcp", 17) + kNoParams},
      {"newActionMplsPortSet",
       [] { return newActionMplsPortSet(kVpws7, kLag3); },
       FILTERS_ACTION_MPLS_PORT_SET,
       head("ActionMplsPortSet", 18) + "      VPN ID: vpws7\n" FL
                                       "      MPLS Access Port: lag3\n" FL},
      {"newActionDoNotLearnMac", [] { return newActionDoNotLearnMac(); },
       FILTERS_ACTION_DO_NOT_LEARN_MAC,
       head("ActionDoNotLearnMac", 20) + kNoParams},
  };
  audit::expectCConstructors<Action>(cases, actionGetType, deleteAction);
}

TEST(AuditActionC, GettersReturnTheStoredValues) {
  limid_t const ports[] = {5, 7, 5};
  void* block = newActionBlockEgressPorts(ports, 3);
  EXPECT_EQ((std::list<limid_t>{5, 7, 5}),
            static_cast<ActionBlockEgressPorts*>(static_cast<Action*>(block))
                ->getPorts());
  deleteAction(block);

  void* sw = newActionSwitchToCpuCancel();
  EXPECT_EQ(4, actionGetType(sw));
  EXPECT_EQ(1, actionCopyToCpuCancelGetTypeOfCancel(sw));
  deleteAction(sw);
  void* copy = newActionCopyToCpuCancel();
  EXPECT_EQ(0, actionCopyToCpuCancelGetTypeOfCancel(copy));
  deleteAction(copy);

  void* dscp = newActionSetDSCP(63);
  EXPECT_EQ(63, actionSetDSCPGetDSCP(dscp));
  deleteAction(dscp);
  void* pcp = newActionSetPcp(6);
  EXPECT_EQ(6, actionSetPcpGetPcp(pcp));
  deleteAction(pcp);
  void* pq = newActionSetPcpAndQueue(0xFE);
  EXPECT_EQ(0xFE, actionSetPcpAndQueueGetPcpAndQueue(pq));
  deleteAction(pq);
  void* cos = newActionMapToCosQueue(7);
  EXPECT_EQ(7, actionMapToCosQueueGetCosQueue(cos));
  deleteAction(cos);
  void* l3 = newActionL3Switch(0xFFFFFFFFu);
  EXPECT_EQ(0xFFFFFFFFu, actionL3SwitchGetL3DestinationId(l3));
  deleteAction(l3);

  void* redirect = newActionRedirect(kEth1);
  EXPECT_EQ(std::list<limid_t>{kEth1},
            static_cast<ActionRedirect*>(static_cast<Action*>(redirect))
                ->getRedirectPorts());
  deleteAction(redirect);
}

TEST(AuditActionC, MplsConstructorThrowsTheDescribedMessages) {
  EXPECT_EQ(kBadVpn, messageOf([] { newActionMplsPortSet(kEth1, kEth3); }));
  EXPECT_EQ(kBadPort, messageOf([] { newActionMplsPortSet(kVpls5, kVpws7); }));
}

TEST(AuditActionC, AnAttachedActionSurvivesTheDeletionOfTheHandle) {
  FiltersEntry* e = newFiltersEntry(1);
  void* a = newActionSetPcp(5);
  EXPECT_EQ(FILTERS_OK, filtersEntrySetAction(e, a));
  deleteAction(a);
  ASSERT_EQ(1u, e->getActions().size());
  Action const& held = *e->getActions().begin()->second;
  EXPECT_TRUE(held == ActionSetPcp(5));
  EXPECT_EQ(head("ActionSetPcp", 5) + "      PCP: 5\n" FL, dumpOf(held));
  deleteFiltersEntry(e);
}

using AuditActionCDeathTest = ::testing::Test;

TEST_F(AuditActionCDeathTest, NullHandlesStopWithTheGuardAndSignature) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(actionGetType(nullptr),
               audit::assertionPattern("filter_actions_c",
                                       "FiltersCommon::filtersAction_t "
                                       "FiltersCommon::actionGetType(void*)",
                                       "a != nullptr"));
  EXPECT_DEATH(deleteAction(nullptr),
               audit::assertionPattern(
                   "filter_actions_c",
                   "void FiltersCommon::deleteAction(void*)", "a != nullptr"));
}

}  // namespace
