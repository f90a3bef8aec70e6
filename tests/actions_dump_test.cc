// Text dumps beyond the per-kind goldens: stream base handling, the special
// line shapes of the port kinds, and what the base operator leaves out.
#include <sstream>
#include <string>

#include "actions_test_util.h"
#include "gtest/gtest.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the tests name many kinds
using namespace actions_test;   // NOLINT

using Ports = std::list<limid_t>;

TEST(ActionDump, PermitIsThreeLines) {
  EXPECT_EQ(Dump(ActionPermit()),
            "    =ActionPermit=\n"
            "      Action Type ID: 0\n"
            "      <no parameters>\n");
}

TEST(ActionDump, CpuCosQueueForcesDecimalAndLeavesStreamDecimal) {
  std::ostringstream os;
  os << std::hex << ActionMapToCpuCosQueue(12);
  EXPECT_EQ(os.str(),
            "    =ActionMapToCpuCosQueue=\n"
            "      Action Type ID: a\n"
            "      CPU CoS Queue: 12\n");
  EXPECT_EQ(os.flags() & std::ios::basefield, std::ios::dec);
  os << 255;
  EXPECT_EQ(os.str().substr(os.str().size() - 3), "255");
}

TEST(ActionDump, OtherLinesUseStreamBase) {
  std::ostringstream os;
  os << std::hex << ActionSetDSCP(46);
  EXPECT_EQ(os.str(),
            "    =ActionSetDSCP=\n"
            "      Action Type ID: 8\n"
            "      DSCP: 2e\n");
  EXPECT_EQ(os.flags() & std::ios::basefield, std::ios::hex);

  std::ostringstream l3;
  l3 << std::hex << ActionL3Switch(255);
  EXPECT_EQ(l3.str(),
            "    =ActionL3Switch=\n"
            "      Action Type ID: f\n"
            "      L3 Destination ID: ff\n");
}

TEST(ActionDump, SmallValuesPrintAsNumbersNotCharacters) {
  EXPECT_EQ(Dump(ActionSetPcp(5)),
            "    =ActionSetPcp=\n      Action Type ID: 5\n      PCP: 5\n");
  EXPECT_EQ(Dump(ActionSetPcpAndQueue(65)),
            "    =ActionSetPcpAndQueue=\n"
            "      Action Type ID: 6\n"
            "      PCP_AND_QUEUE: 65\n");
  EXPECT_EQ(Dump(ActionMapToCosQueue(0)),
            "    =ActionMapToCosQueue=\n"
            "      Action Type ID: 9\n"
            "      CoS Queue: 0\n");
}

TEST(ActionDump, CancelTypesPrintByName) {
  EXPECT_EQ(Dump(ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL)),
            "    =ActionCopyToCpuCancel=\n"
            "      Action Type ID: 4\n"
            "      Cp2CPU Cancel type: COPY_TO_CPU_CANCEL\n");
}

TEST(ActionDump, BlockEgressPortsEndsWithEmptyLine) {
  const std::string text = Dump(ActionBlockEgressPorts({Eth(1), Lag(12)}));
  EXPECT_EQ(text,
            "    =ActionBlockEgressPorts=\n"
            "      Action Type ID: 3\n"
            "      Number of ports: 2\n"
            "      LIMIDs: \"eth1\" \"lag12\" \n"
            "\n");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 5);
}

TEST(ActionDump, EmptyPortListPrintsZeroAndBareLabel) {
  EXPECT_EQ(Dump(ActionBlockEgressPorts(Ports{})),
            "    =ActionBlockEgressPorts=\n"
            "      Action Type ID: 3\n"
            "      Number of ports: 0\n"
            "      LIMIDs: \n"
            "\n");
}

TEST(ActionDump, ActionPortsWritesOnlyPortLines) {
  const ActionPorts ports(FILTERS_ACTION_BLOCK_EGRESS_PORTS,
                          {Vpws(2), Cpu(0), Vpls(3)});
  EXPECT_EQ(Dump(ports),
            "      Number of ports: 3\n"
            "      LIMIDs: \"vpws2\" \"cpu0\" \"vpls3\" \n");
  // Through the base it is a kind 3 action and dumps as one.
  EXPECT_EQ(Dump(static_cast<const Action&>(ports)),
            "    =ActionBlockEgressPorts=\n"
            "      Action Type ID: 3\n" +
                Dump(ports) + "\n");
}

TEST(ActionDump, PortWithoutNamePrintsEmptyQuotes) {
  EXPECT_EQ(Dump(ActionPorts(FILTERS_ACTION_BLOCK_EGRESS_PORTS, {0, Eth(2)})),
            "      Number of ports: 2\n"
            "      LIMIDs: \"\" \"eth2\" \n");
}

TEST(ActionDump, RedirectPrintsAllTargetsOnOneIndentedLine) {
  ActionRedirect redirect(Eth(1));
  ActionPB pb;
  pb.add_ports_(Eth(1));
  pb.add_ports_(VlanDomain(20));
  redirect.convertFromActionPB(&pb);
  EXPECT_EQ(Dump(redirect),
            "    =ActionRedirect=\n"
            "      Action Type ID: 11\n"
            "      \"eth1\"       \"bd20\" \n");
}

TEST(ActionDump, RedirectWithoutTargetsPrintsEmptyLine) {
  ActionRedirect redirect(Eth(1));
  const ActionPB pb;
  redirect.convertFromActionPB(&pb);
  EXPECT_EQ(Dump(redirect),
            "    =ActionRedirect=\n"
            "      Action Type ID: 11\n"
            "\n");
}

TEST(ActionDump, MacBytesPrintWithoutLeadingZeros) {
  EXPECT_EQ(Dump(ActionReplaceDstMac(Mac(0, 1, 0x0a, 0x10, 0xff, 0))),
            "    =ActionReplaceDstMac=\n"
            "      Action Type ID: 12\n"
            "      Replace MAC: 0:1:a:10:ff:0\n");
}

TEST(ActionDump, MplsNamesComeFromInterfaceNames) {
  EXPECT_EQ(Dump(ActionMplsPortSet(Vpls(1048575), Lag(16777215))),
            "    =ActionMplsPortSet=\n"
            "      Action Type ID: 18\n"
            "      VPN ID: vpls1048575\n"
            "      MPLS Access Port: lag16777215\n");
}

TEST(ActionDump, KindAboveCatalogueWritesNothing) {
  std::ostringstream os;
  os << Action(static_cast<filtersAction_t>(21))
     << Action(static_cast<filtersAction_t>(-2));
  EXPECT_EQ(os.str(), "");
  EXPECT_TRUE(os.good());
}

TEST(ActionDump, BareActionWithCatalogueKindWritesNothing) {
  EXPECT_EQ(Dump(Action(FILTERS_ACTION_SET_DSCP)), "");
}

TEST(ActionDump, BaseOperatorReturnsItsStream) {
  std::ostringstream os;
  const Action& action = ActionDeny();
  EXPECT_EQ(&(os << action), &os);
}

}  // namespace
