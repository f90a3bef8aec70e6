// ActionMplsPortSet: identifier validation through the limid libraries, the
// three exception messages and the state they leave, and interface indexes on
// the wire.
#include <string>
#include <utility>

#include "actions_test_util.h"
#include "gtest/gtest.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the tests name many kinds
using namespace actions_test;   // NOLINT

const char kBadVpn[] = "ActionMplsPortSet: invalid vpn_id limid type";
const char kBadPort[] =
    "ActionMplsPortSet: invalid mpls_access_port limid type";
const char kMissing[] =
    "ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port";

uint32_t Ifindex(limid_t limid) {
  uint32_t ifindex = 0;
  EXPECT_EQ(limid_to_ifindex(limid, &ifindex), 0);
  return ifindex;
}

// Both identifiers at once, to check them in one expectation.
std::pair<limid_t, limid_t> Ids(const ActionMplsPortSet& action) {
  return {action.getVpnId(), action.getMplsAccessPort()};
}

ActionPB MplsMessage(uint32_t vpn_ifindex, uint32_t port_ifindex) {
  ActionPB pb;
  pb.set_type_(FILTERS_ACTION_MPLS_PORT_SET);
  pb.set_vpn_id(vpn_ifindex);
  pb.set_mpls_access_port(port_ifindex);
  return pb;
}

TEST(ActionMplsPortSet, AcceptsVpwsWithEthernetAndVplsWithLag) {
  const ActionMplsPortSet vpws(Vpws(7), Eth(3));
  EXPECT_EQ(vpws.getVpnId(), Vpws(7));
  EXPECT_EQ(vpws.getMplsAccessPort(), Eth(3));
  const ActionMplsPortSet vpls(Vpls(9), Lag(2));
  EXPECT_EQ(vpls.getVpnId(), Vpls(9));
  EXPECT_EQ(vpls.getMplsAccessPort(), Lag(2));
  EXPECT_EQ(vpls.getType(), FILTERS_ACTION_MPLS_PORT_SET);
}

TEST(ActionMplsPortSet, ConstructorRefusesEthernetVpnId) {
  EXPECT_EQ(InvalidArgumentOf([] { ActionMplsPortSet(Eth(1), Eth(2)); }),
            kBadVpn);
}

TEST(ActionMplsPortSet, ConstructorRefusesVpwsAccessPort) {
  EXPECT_EQ(InvalidArgumentOf([] { ActionMplsPortSet(Vpws(1), Vpws(2)); }),
            kBadPort);
}

TEST(ActionMplsPortSet, VpnIdTestAcceptsOnlyVpwsAndVplsDomains) {
  const ActionMplsPortSet action = ActionMplsPortSet::BuildEmpty();
  EXPECT_TRUE(action.IsLimidFromVpnType(Vpws(0)));
  EXPECT_TRUE(action.IsLimidFromVpnType(Vpls(12)));
  EXPECT_FALSE(action.IsLimidFromVpnType(VlanDomain(12)));
  EXPECT_FALSE(action.IsLimidFromVpnType(Eth(1)));
  EXPECT_FALSE(action.IsLimidFromVpnType(Lag(1)));
  EXPECT_FALSE(action.IsLimidFromVpnType(Cpu(0)));
  EXPECT_FALSE(action.IsLimidFromVpnType(0));
  // A bridge domain whose bridge-domain type is neither VLAN nor VPLS.
  EXPECT_FALSE(action.IsLimidFromVpnType(limid_make_bridgedomain(3, 12)));
}

TEST(ActionMplsPortSet, RefusedVpnIdLeavesStoredValue) {
  ActionMplsPortSet action(Vpws(7), Eth(3));
  EXPECT_EQ(InvalidArgumentOf([&] { action.setVpnId(VlanDomain(5)); }),
            kBadVpn);
  EXPECT_EQ(action.getVpnId(), Vpws(7));
  action.setVpnId(Vpls(5));
  EXPECT_EQ(action.getVpnId(), Vpls(5));
}

TEST(ActionMplsPortSet, RefusedAccessPortLeavesStoredValue) {
  ActionMplsPortSet action(Vpws(7), Eth(3));
  EXPECT_EQ(InvalidArgumentOf([&] { action.setMplsAccessPort(Cpu(0)); }),
            kBadPort);
  EXPECT_EQ(InvalidArgumentOf([&] { action.setMplsAccessPort(Vpls(1)); }),
            kBadPort);
  EXPECT_EQ(action.getMplsAccessPort(), Eth(3));
  action.setMplsAccessPort(Lag(4));
  EXPECT_EQ(action.getMplsAccessPort(), Lag(4));
}

TEST(ActionMplsPortSet, WritesInterfaceIndexesAndReadsThemBack) {
  const ActionMplsPortSet original(Vpls(9), Lag(2));
  const ActionPB pb = ToWire(original);
  ASSERT_TRUE(pb.has_vpn_id());
  ASSERT_TRUE(pb.has_mpls_access_port());
  EXPECT_EQ(pb.vpn_id(), Ifindex(Vpls(9)));
  EXPECT_EQ(pb.mpls_access_port(), Ifindex(Lag(2)));
  EXPECT_NE(pb.vpn_id(), Vpls(9));

  ActionMplsPortSet loaded = ActionMplsPortSet::BuildEmpty();
  loaded.convertFromActionPB(&pb);
  EXPECT_EQ(loaded.getVpnId(), Vpls(9));
  EXPECT_EQ(loaded.getMplsAccessPort(), Lag(2));
  EXPECT_TRUE(loaded == original);
}

TEST(ActionMplsPortSet, LoadWithoutBothIdentifiersThrowsAndChangesNothing) {
  ActionMplsPortSet action(Vpws(7), Eth(3));
  ActionPB only_vpn;
  only_vpn.set_type_(FILTERS_ACTION_MPLS_PORT_SET);
  only_vpn.set_vpn_id(Ifindex(Vpws(1)));
  ActionPB only_port;
  only_port.set_type_(FILTERS_ACTION_MPLS_PORT_SET);
  only_port.set_mpls_access_port(Ifindex(Eth(1)));
  ActionPB neither;
  neither.set_type_(FILTERS_ACTION_MPLS_PORT_SET);

  for (const ActionPB* pb : {&only_vpn, &only_port, &neither}) {
    EXPECT_EQ(InvalidArgumentOf([&] { action.convertFromActionPB(pb); }),
              kMissing);
    EXPECT_EQ(Ids(action), std::make_pair(Vpws(7), Eth(3)));
  }
}

TEST(ActionMplsPortSet, LoadRefusesWrongVpnType) {
  ActionMplsPortSet action(Vpws(7), Eth(3));
  const ActionPB pb = MplsMessage(Ifindex(Eth(1)), Ifindex(Eth(2)));
  EXPECT_EQ(InvalidArgumentOf([&] { action.convertFromActionPB(&pb); }),
            kBadVpn);
  EXPECT_EQ(Ids(action), std::make_pair(Vpws(7), Eth(3)));
}

TEST(ActionMplsPortSet, LoadRefusingAccessPortKeepsNewVpnId) {
  ActionMplsPortSet action(Vpws(7), Eth(3));
  const ActionPB pb = MplsMessage(Ifindex(Vpws(8)), Ifindex(Cpu(1)));
  EXPECT_EQ(InvalidArgumentOf([&] { action.convertFromActionPB(&pb); }),
            kBadPort);
  EXPECT_EQ(Ids(action), std::make_pair(Vpws(8), Eth(3)));
}

TEST(ActionMplsPortSet, IfindexOfNoInterfaceIsRefusedAsIdentifier) {
  ActionMplsPortSet action = ActionMplsPortSet::BuildEmpty();
  // Low nibble 0 is no interface type; 2^28 is beyond every index.
  const ActionPB bad_type = MplsMessage(0x70, Ifindex(Eth(1)));
  EXPECT_EQ(InvalidArgumentOf([&] { action.convertFromActionPB(&bad_type); }),
            kBadVpn);
  const ActionPB too_big = MplsMessage(Ifindex(Vpws(1)), 0x10000001u);
  EXPECT_EQ(InvalidArgumentOf([&] { action.convertFromActionPB(&too_big); }),
            kBadPort);
}

TEST(ActionMplsPortSet, BuildEmptyGivesKind18ReadyForLoad) {
  ActionMplsPortSet empty = ActionMplsPortSet::BuildEmpty();
  EXPECT_EQ(empty.getType(), FILTERS_ACTION_MPLS_PORT_SET);
  const ActionPB pb = MplsMessage(Ifindex(Vpws(3)), Ifindex(Lag(6)));
  empty.convertFromActionPB(&pb);
  EXPECT_TRUE(empty == ActionMplsPortSet(Vpws(3), Lag(6)));
}

TEST(ActionMplsPortSet, EqualOnlyWhenBothIdentifiersAre) {
  const ActionMplsPortSet a(Vpws(1), Eth(1));
  EXPECT_TRUE(a == ActionMplsPortSet(Vpws(1), Eth(1)));
  EXPECT_FALSE(a == ActionMplsPortSet(Vpws(1), Eth(2)));
  EXPECT_FALSE(a == ActionMplsPortSet(Vpws(2), Eth(1)));
  EXPECT_FALSE(static_cast<const Action&>(a) ==
               ActionMplsPortSet(Vpls(1), Eth(1)));
  EXPECT_TRUE(static_cast<const Action&>(a) ==
              ActionMplsPortSet(Vpws(1), Eth(1)));
}

}  // namespace
