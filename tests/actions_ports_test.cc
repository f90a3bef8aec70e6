// Port-list and MAC kinds: raw limid_t values on the wire, append versus
// replace on load, ordered list equality, and six-byte MAC handling.
#include <list>
#include <string>

#include "actions_test_util.h"
#include "gtest/gtest.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the tests name many kinds
using namespace actions_test;   // NOLINT

using Ports = std::list<limid_t>;

ActionPB PortsMessage(filtersAction_t kind, const Ports& ports) {
  ActionPB pb;
  pb.set_type_(static_cast<uint32_t>(kind));
  for (limid_t port : ports) pb.add_ports_(port);
  return pb;
}

TEST(ActionRedirect, LoadReplacesConstructorTarget) {
  ActionRedirect redirect(Eth(1));
  const ActionPB pb = PortsMessage(FILTERS_ACTION_REDIRECT, {Eth(2), Lag(3)});
  redirect.convertFromActionPB(&pb);
  EXPECT_EQ(redirect.getRedirectPorts(), (Ports{Eth(2), Lag(3)}));
}

TEST(ActionRedirect, LoadOfNoPortsLeavesEmptyList) {
  ActionRedirect redirect(Eth(1));
  const ActionPB pb = PortsMessage(FILTERS_ACTION_REDIRECT, {});
  redirect.convertFromActionPB(&pb);
  EXPECT_TRUE(redirect.getRedirectPortsRef().empty());
  EXPECT_EQ(WireText(redirect), "type_: 11");
}

TEST(ActionRedirect, WritesEveryTargetInOrder) {
  ActionRedirect redirect(Eth(1));
  const ActionPB pb =
      PortsMessage(FILTERS_ACTION_REDIRECT, {Lag(3), Eth(2), Lag(3)});
  redirect.convertFromActionPB(&pb);
  EXPECT_EQ(WireText(redirect),
            "type_: 11 ports_: 33554435 ports_: 16777218 ports_: 33554435");
}

TEST(ActionRedirect, RefGetterReturnsHeldListCopyGetterACopy) {
  const ActionRedirect redirect(Eth(4));
  EXPECT_EQ(&redirect.getRedirectPortsRef(), &redirect.getRedirectPortsRef());
  Ports copy = redirect.getRedirectPorts();
  copy.push_back(Eth(5));
  EXPECT_EQ(redirect.getRedirectPortsRef(), Ports{Eth(4)});
}

TEST(ActionBlockEgressPorts, LoadAppendsToHeldList) {
  ActionBlockEgressPorts block({Eth(1)});
  const ActionPB pb = PortsMessage(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {Eth(2)});
  block.convertFromActionPB(&pb);
  EXPECT_EQ(block.getPorts(), (Ports{Eth(1), Eth(2)}));
}

TEST(ActionBlockEgressPorts, LoadingTwiceDoublesList) {
  ActionBlockEgressPorts block(Ports{});
  const ActionPB pb =
      PortsMessage(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {Eth(1), Lag(2)});
  block.convertFromActionPB(&pb);
  block.convertFromActionPB(&pb);
  EXPECT_EQ(block.getPorts(), (Ports{Eth(1), Lag(2), Eth(1), Lag(2)}));
}

TEST(ActionBlockEgressPorts, KeepsDuplicatesAndCallerOrder) {
  const ActionBlockEgressPorts block({Lag(2), Eth(1), Lag(2)});
  EXPECT_EQ(block.getPorts(), (Ports{Lag(2), Eth(1), Lag(2)}));
  EXPECT_EQ(WireText(block),
            "type_: 3 ports_: 33554434 ports_: 16777217 ports_: 33554434");
}

TEST(ActionPortLists, OrderAndMultiplicityMatterForEquality) {
  const Ports ab{Eth(1), Eth(2)};
  const Ports ba{Eth(2), Eth(1)};
  const Ports aa{Eth(1), Eth(1)};
  const Ports a{Eth(1)};
  EXPECT_FALSE(ActionBlockEgressPorts(ab) == ActionBlockEgressPorts(ba));
  EXPECT_FALSE(ActionBlockEgressPorts(aa) == ActionBlockEgressPorts(a));
  EXPECT_FALSE(static_cast<const Action&>(ActionBlockEgressPorts(ab)) ==
               ActionBlockEgressPorts(ba));
  EXPECT_TRUE(static_cast<const Action&>(ActionBlockEgressPorts(ab)) ==
              ActionBlockEgressPorts(ab));

  ActionRedirect redirect_ab(Eth(9));
  ActionRedirect redirect_ba(Eth(9));
  ActionRedirect redirect_aa(Eth(9));
  ActionPB pb = PortsMessage(FILTERS_ACTION_REDIRECT, ab);
  redirect_ab.convertFromActionPB(&pb);
  pb = PortsMessage(FILTERS_ACTION_REDIRECT, ba);
  redirect_ba.convertFromActionPB(&pb);
  pb = PortsMessage(FILTERS_ACTION_REDIRECT, aa);
  redirect_aa.convertFromActionPB(&pb);
  EXPECT_FALSE(redirect_ab == redirect_ba);
  EXPECT_FALSE(static_cast<const Action&>(redirect_aa) ==
               ActionRedirect(Eth(1)));
  EXPECT_TRUE(static_cast<const Action&>(redirect_ab) == redirect_ab);
}

TEST(ActionPortLists, EachPortIsItsOwnUnpackedWireElement) {
  // eth3 is 0x01000003: varint 83 80 80 08.
  const std::string expected("\x08\x0b\x10\x83\x80\x80\x08\x10\x83\x80\x80\x08",
                             12);
  ActionRedirect redirect(Eth(3));
  ActionPB two = PortsMessage(FILTERS_ACTION_REDIRECT, {Eth(3), Eth(3)});
  redirect.convertFromActionPB(&two);
  EXPECT_EQ(ToWire(redirect).SerializeAsString(), expected);
}

TEST(ActionPortLists, PackedWireFormIsAcceptedToo) {
  // ports_ as one length-delimited field holding eth1 and lag2.
  const std::string packed("\x08\x03\x12\x08\x81\x80\x80\x08\x82\x80\x80\x10",
                           12);
  ActionPB pb;
  ASSERT_TRUE(pb.ParseFromString(packed));
  ActionBlockEgressPorts block(Ports{});
  block.convertFromActionPB(&pb);
  EXPECT_EQ(block.getPorts(), (Ports{Eth(1), Lag(2)}));
}

TEST(ActionPortLists, CopiesAreDeep) {
  ActionBlockEgressPorts original({Eth(1)});
  const ActionBlockEgressPorts copy(original);
  const ActionPB pb = PortsMessage(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {Eth(2)});
  original.convertFromActionPB(&pb);
  EXPECT_EQ(copy.getPorts(), Ports{Eth(1)});
  EXPECT_EQ(original.getPorts(), (Ports{Eth(1), Eth(2)}));
}

TEST(ActionPorts, CarriesKindItIsGivenAndUsesBaseConversions) {
  ActionPorts ports(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {Eth(1), Eth(2)});
  EXPECT_EQ(ports.getType(), FILTERS_ACTION_BLOCK_EGRESS_PORTS);
  EXPECT_EQ(WireText(ports), "type_: 3");
  const ActionPB pb = PortsMessage(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {Eth(7)});
  ports.convertFromActionPB(&pb);
  EXPECT_EQ(ports.getPorts(), (Ports{Eth(1), Eth(2)}));
  EXPECT_TRUE(static_cast<const Action&>(ports) ==
              ActionBlockEgressPorts({Eth(1), Eth(2)}));
  EXPECT_FALSE(static_cast<const Action&>(ports) ==
               ActionBlockEgressPorts({Eth(2), Eth(1)}));
}

TEST(ActionReplaceMac, WritesExactlySixBytes) {
  const ActionPB pb =
      ToWire(ActionReplaceSrcMac(Mac(0xaa, 0, 0x11, 0, 0x22, 0xff)));
  ASSERT_TRUE(pb.has_mac_());
  EXPECT_EQ(pb.mac_(), std::string("\xaa\x00\x11\x00\x22\xff", 6));
}

TEST(ActionReplaceMac, ShortWireAddressIsZeroFilled) {
  ActionPB pb;
  pb.set_type_(FILTERS_ACTION_REPLACE_DST_MAC);
  pb.set_mac_(std::string("\x01\x02", 2));
  ActionReplaceDstMac dst(Mac(9, 9, 9, 9, 9, 9));
  dst.convertFromActionPB(&pb);
  EXPECT_TRUE(dst == ActionReplaceDstMac(Mac(1, 2, 0, 0, 0, 0)));

  pb.clear_mac_();
  ActionReplaceSrcMac src(Mac(9, 9, 9, 9, 9, 9));
  src.convertFromActionPB(&pb);
  EXPECT_TRUE(src == ActionReplaceSrcMac(Mac(0, 0, 0, 0, 0, 0)));
}

TEST(ActionReplaceMac, LongWireAddressKeepsFirstSixBytes) {
  ActionPB pb;
  pb.set_mac_(std::string("\x01\x02\x03\x04\x05\x06\x07\x08", 8));
  ActionReplaceSrcMac src(Mac(0, 0, 0, 0, 0, 0));
  src.convertFromActionPB(&pb);
  const ether_addr mac = src.getReplaceSrcMac();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(mac.ether_addr_octet), 6),
            std::string("\x01\x02\x03\x04\x05\x06", 6));
}

TEST(ActionReplaceMac, EveryByteTakesPartInEquality) {
  const ether_addr base = Mac(1, 2, 3, 4, 5, 6);
  for (int i = 0; i < ETH_ALEN; ++i) {
    ether_addr other = base;
    other.ether_addr_octet[i] ^= 0x80;
    EXPECT_FALSE(ActionReplaceDstMac(base) == ActionReplaceDstMac(other)) << i;
    EXPECT_FALSE(static_cast<const Action&>(ActionReplaceSrcMac(base)) ==
                 ActionReplaceSrcMac(other))
        << i;
  }
  EXPECT_TRUE(ActionReplaceDstMac(base) == ActionReplaceDstMac(base));
}

TEST(ActionReplaceMac, DstAndSrcAreDifferentKinds) {
  const ether_addr mac = Mac(1, 2, 3, 4, 5, 6);
  EXPECT_FALSE(static_cast<const Action&>(ActionReplaceDstMac(mac)) ==
               ActionReplaceSrcMac(mac));
}

}  // namespace
