// Every action kind, one row each: its kind value, its exact wire fields, a
// round trip through ActionPB into a fresh object of its class, copies, and
// its golden dump, written directly and through the base operator.
#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "actions_test_util.h"
#include "gtest/gtest.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the tests name many kinds
using namespace actions_test;   // NOLINT

// Counts the flushes that std::endl makes, to show that every line ends
// with one.
class FlushCountingBuffer : public std::stringbuf {
 public:
  int flushes() const { return flushes_; }

 protected:
  int sync() override {
    ++flushes_;
    return std::stringbuf::sync();
  }

 private:
  int flushes_ = 0;
};

struct KindCase {
  std::string name;
  int kind;
  std::function<std::unique_ptr<Action>()> make;
  // A second object of the same class; it differs from make() whenever the
  // kind has parameters, so a load into it has something to change.
  std::function<std::unique_ptr<Action>()> blank;
  bool has_parameters;
  std::function<std::string()> dump_as_kind;
  std::function<bool()> copy_equals_original;
  std::string wire;
  std::string dump;
};

template <class Kind>
KindCase Row(const std::string& name, filtersAction_t kind, const Kind& sample,
             const Kind& blank, bool has_parameters, const std::string& wire,
             const std::string& dump) {
  return KindCase{
      name,
      kind,
      [sample] { return std::unique_ptr<Action>(new Kind(sample)); },
      [blank] { return std::unique_ptr<Action>(new Kind(blank)); },
      has_parameters,
      [sample] { return Dump(sample); },
      [sample] {
        const Kind copy(sample);
        const Action& as_action = copy;
        return copy == sample && as_action == sample;
      },
      wire,
      dump};
}

std::string Header(const std::string& name, int kind) {
  return "    =" + name + "=\n      Action Type ID: " + std::to_string(kind) +
         "\n";
}

std::string NoParameters(const std::string& name, int kind) {
  return Header(name, kind) + "      <no parameters>\n";
}

std::vector<KindCase> Catalogue() {
  const ether_addr dst = Mac(0x00, 0x1b, 0x21, 0x3c, 0x4d, 0x5e);
  const ether_addr src = Mac(0x02, 0x00, 0x00, 0xab, 0xcd, 0xef);
  const ether_addr zero = Mac(0, 0, 0, 0, 0, 0);
  return {
      Row("ActionPermit", FILTERS_ACTION_PERMIT, ActionPermit(), ActionPermit(),
          false, "type_: 0", NoParameters("ActionPermit", 0)),
      Row("ActionDeny", FILTERS_ACTION_DENY, ActionDeny(), ActionDeny(), false,
          "type_: 1", NoParameters("ActionDeny", 1)),
      Row("ActionCopyToCpu", FILTERS_ACTION_COPY_TO_CPU, ActionCopyToCpu(),
          ActionCopyToCpu(), false, "type_: 2",
          NoParameters("ActionCopyToCpu", 2)),
      Row("ActionBlockEgressPorts", FILTERS_ACTION_BLOCK_EGRESS_PORTS,
          ActionBlockEgressPorts({Eth(3), Lag(1)}),
          ActionBlockEgressPorts(std::list<limid_t>{}), true,
          "type_: 3 ports_: 16777219 ports_: 33554433",
          Header("ActionBlockEgressPorts", 3) +
              "      Number of ports: 2\n"
              "      LIMIDs: \"eth3\" \"lag1\" \n"
              "\n"),
      Row("ActionCopyToCpuCancel", FILTERS_ACTION_COPY_TO_CPU_CANCEL,
          ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL),
          ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL), true,
          "type_: 4 cp2cpu_cancel_type_: 1",
          Header("ActionCopyToCpuCancel", 4) +
              "      Cp2CPU Cancel type: SWITCH_TO_CPU_CANCEL\n"),
      Row("ActionSetPcp", FILTERS_ACTION_SET_PCP, ActionSetPcp(5),
          ActionSetPcp(0), true, "type_: 5 pcp_: 5",
          Header("ActionSetPcp", 5) + "      PCP: 5\n"),
      Row("ActionSetPcpAndQueue", FILTERS_ACTION_SET_PCP_AND_QUEUE,
          ActionSetPcpAndQueue(43), ActionSetPcpAndQueue(0), true,
          "type_: 6 pcp_and_queue_: 43",
          Header("ActionSetPcpAndQueue", 6) + "      PCP_AND_QUEUE: 43\n"),
      Row("ActionSetInnerPcp", FILTERS_ACTION_SET_INNER_PCP,
          ActionSetInnerPcp(6), ActionSetInnerPcp(1), true, "type_: 7 pcp_: 6",
          Header("ActionSetInnerPcp", 7) + "      Inner PCP: 6\n"),
      Row("ActionSetDSCP", FILTERS_ACTION_SET_DSCP, ActionSetDSCP(46),
          ActionSetDSCP(0), true, "type_: 8 dscp_: 46",
          Header("ActionSetDSCP", 8) + "      DSCP: 46\n"),
      Row("ActionMapToCosQueue", FILTERS_ACTION_MAP_TO_COS_QUEUE,
          ActionMapToCosQueue(4), ActionMapToCosQueue(0), true,
          "type_: 9 cosq_: 4",
          Header("ActionMapToCosQueue", 9) + "      CoS Queue: 4\n"),
      Row("ActionMapToCpuCosQueue", FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE,
          ActionMapToCpuCosQueue(7), ActionMapToCpuCosQueue(0), true,
          "type_: 10 cosq_: 7",
          Header("ActionMapToCpuCosQueue", 10) + "      CPU CoS Queue: 7\n"),
      Row("ActionRedirect", FILTERS_ACTION_REDIRECT, ActionRedirect(Eth(5)),
          ActionRedirect(Lag(9)), true, "type_: 11 ports_: 16777221",
          Header("ActionRedirect", 11) + "      \"eth5\" \n"),
      Row("ActionReplaceDstMac", FILTERS_ACTION_REPLACE_DST_MAC,
          ActionReplaceDstMac(dst), ActionReplaceDstMac(zero), true,
          "type_: 12 mac_: \"\\000\\033!<M^\"",
          Header("ActionReplaceDstMac", 12) +
              "      Replace MAC: 0:1b:21:3c:4d:5e\n"),
      Row("ActionRedirectCancel", FILTERS_ACTION_REDIRECT_CANCEL,
          ActionRedirectCancel(), ActionRedirectCancel(), false, "type_: 13",
          NoParameters("ActionRedirectCancel", 13)),
      Row("ActionReplaceSrcMac", FILTERS_ACTION_REPLACE_SRC_MAC,
          ActionReplaceSrcMac(src), ActionReplaceSrcMac(zero), true,
          "type_: 14 mac_: \"\\002\\000\\000\\253\\315\\357\"",
          Header("ActionReplaceSrcMac", 14) +
              "      Replace MAC: 2:0:0:ab:cd:ef\n"),
      Row("ActionL3Switch", FILTERS_ACTION_L3_SWITCH,
          ActionL3Switch(4000000000u), ActionL3Switch(0), true,
          "type_: 15 l3_dest_id_: 4000000000",
          Header("ActionL3Switch", 15) +
              "      L3 Destination ID: 4000000000\n"),
      Row("ActionBlackHole", FILTERS_ACTION_BLACK_HOLE, ActionBlackHole(),
          ActionBlackHole(), false, "type_: 16",
          NoParameters("ActionBlackHole", 16)),
      Row("ActionCopyInnerPcp", FILTERS_ACTION_COPY_INNER_PCP,
          ActionCopyInnerPcp(), ActionCopyInnerPcp(), false, "type_: 17",
          NoParameters("ActionCopyInnerPcp", 17)),
      // vpws7 is ifindex (7 << 4) | 3 = 115, eth3 is (3 << 4) | 1 = 49.
      Row("ActionMplsPortSet", FILTERS_ACTION_MPLS_PORT_SET,
          ActionMplsPortSet(Vpws(7), Eth(3)), ActionMplsPortSet::BuildEmpty(),
          true, "type_: 18 vpn_id: 115 mpls_access_port: 49",
          Header("ActionMplsPortSet", 18) + "      VPN ID: vpws7\n"
                                            "      MPLS Access Port: eth3\n"),
      Row("ActionL2ToCpuDrop", FILTERS_ACTION_L2_TO_CPU_DROP,
          ActionL2ToCpuDrop(), ActionL2ToCpuDrop(), false, "type_: 19",
          NoParameters("ActionL2ToCpuDrop", 19)),
      Row("ActionDoNotLearnMac", FILTERS_ACTION_DO_NOT_LEARN_MAC,
          ActionDoNotLearnMac(), ActionDoNotLearnMac(), false, "type_: 20",
          NoParameters("ActionDoNotLearnMac", 20)),
  };
}

// Failure messages name the row instead of dumping its bytes.
void PrintTo(const KindCase& row, std::ostream* os) { *os << row.name; }

class ActionKind : public ::testing::TestWithParam<KindCase> {};

TEST(ActionCatalogue, HoldsOneRowPerKindInKindOrder) {
  const std::vector<KindCase> rows = Catalogue();
  ASSERT_EQ(rows.size(), 21u);
  for (size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i].kind, int(i));
}

TEST_P(ActionKind, ReportsItsKind) {
  EXPECT_EQ(GetParam().make()->getType(), GetParam().kind);
}

TEST_P(ActionKind, WritesExactlyItsWireFields) {
  EXPECT_EQ(WireText(*GetParam().make()), GetParam().wire);
}

TEST_P(ActionKind, RoundTripsThroughWireIntoFreshObject) {
  const std::unique_ptr<Action> original = GetParam().make();
  const std::unique_ptr<Action> loaded = GetParam().blank();
  EXPECT_EQ(*loaded == *original, !GetParam().has_parameters);

  const ActionPB pb = ToWire(*original);
  loaded->convertFromActionPB(&pb);

  EXPECT_TRUE(*loaded == *original);
  EXPECT_TRUE(*original == *loaded);
  EXPECT_EQ(WireText(*loaded), GetParam().wire);
}

TEST_P(ActionKind, SurvivesSerializationToBytes) {
  const std::unique_ptr<Action> original = GetParam().make();
  ActionPB parsed;
  ASSERT_TRUE(parsed.ParseFromString(ToWire(*original).SerializeAsString()));
  const std::unique_ptr<Action> loaded = GetParam().blank();
  loaded->convertFromActionPB(&parsed);
  EXPECT_TRUE(*loaded == *original);
}

TEST_P(ActionKind, CopyEqualsOriginal) {
  EXPECT_TRUE(GetParam().copy_equals_original());
}

TEST_P(ActionKind, IsUnequalToEveryOtherKind) {
  const std::unique_ptr<Action> action = GetParam().make();
  for (const KindCase& other : Catalogue()) {
    if (other.kind == GetParam().kind) continue;
    EXPECT_FALSE(*action == *other.make()) << other.name;
  }
}

TEST_P(ActionKind, DumpsGoldenText) {
  EXPECT_EQ(GetParam().dump_as_kind(), GetParam().dump);
}

TEST_P(ActionKind, DumpsGoldenTextThroughBase) {
  EXPECT_EQ(Dump(*GetParam().make()), GetParam().dump);
}

TEST_P(ActionKind, FlushesAfterEveryLine) {
  FlushCountingBuffer buffer;
  std::ostream os(&buffer);
  os << *GetParam().make();
  const std::string text = buffer.str();
  EXPECT_EQ(buffer.flushes(), std::count(text.begin(), text.end(), '\n'));
  EXPECT_EQ(text.back(), '\n');
}

INSTANTIATE_TEST_SUITE_P(AllKinds, ActionKind, ::testing::ValuesIn(Catalogue()),
                         [](const ::testing::TestParamInfo<KindCase>& info) {
                           return info.param.name;
                         });

}  // namespace
