// The C interface to actions: creation of every kind, the getters, deletion,
// the MPLS validation escaping as an exception, and the null-handle guards.
#include "FiltersCommon/filter_actions_c.h"

#include <gtest/gtest.h>

#include <cstring>
#include <list>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "FiltersCommon/filter_actions.h"
#include "c_api_test_util.h"

namespace FiltersCommon {
namespace {

using c_api_test::ActionPtr;
using c_api_test::CInterfaceDeathTest;
using c_api_test::Eth;
using c_api_test::Guard;
using c_api_test::GuardName;
using c_api_test::GuardsOf;
using c_api_test::Mac;
using c_api_test::OwnAction;

static_assert(std::is_same_v<decltype(&FiltersCommon::newReplaceDstMac),
                             void* (*)(ether_addr)>);
static_assert(std::is_same_v<decltype(&FiltersCommon::actionGetType),
                             filtersAction_t (*)(void*)>);

template <class T>
T* As(const ActionPtr& a) {
  return static_cast<T*>(static_cast<Action*>(a.get()));
}

limid_t Vpws(uint32_t index) { return limid_make(limid_type_mpls_vpws, index); }

TEST(ActionsC, EveryConstructorMakesTheKindOfItsClass) {
  const limid_t ports[] = {Eth(1)};
  struct Case {
    const char* name;
    void* handle;
    filtersAction_t kind;
  };
  const std::vector<Case> cases = {
      {"Permit", newActionPermit(), FILTERS_ACTION_PERMIT},
      {"Deny", newActionDeny(), FILTERS_ACTION_DENY},
      {"CopyToCpu", newActionCopyToCpu(), FILTERS_ACTION_COPY_TO_CPU},
      {"BlockEgressPorts", newActionBlockEgressPorts(ports, 1),
       FILTERS_ACTION_BLOCK_EGRESS_PORTS},
      {"CopyToCpuCancel", newActionCopyToCpuCancel(),
       FILTERS_ACTION_COPY_TO_CPU_CANCEL},
      {"SwitchToCpuCancel", newActionSwitchToCpuCancel(),
       FILTERS_ACTION_COPY_TO_CPU_CANCEL},
      {"SetPcp", newActionSetPcp(1), FILTERS_ACTION_SET_PCP},
      {"SetPcpAndQueue", newActionSetPcpAndQueue(1),
       FILTERS_ACTION_SET_PCP_AND_QUEUE},
      {"SetDSCP", newActionSetDSCP(1), FILTERS_ACTION_SET_DSCP},
      {"MapToCosQueue", newActionMapToCosQueue(1),
       FILTERS_ACTION_MAP_TO_COS_QUEUE},
      {"MapToCpuCosQueue", newActionMapToCpuCosQueue(1),
       FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE},
      {"ReplaceDstMac", newReplaceDstMac(Mac(1, 2, 3, 4, 5, 6)),
       FILTERS_ACTION_REPLACE_DST_MAC},
      {"Redirect", newActionRedirect(Eth(2)), FILTERS_ACTION_REDIRECT},
      {"RedirectCancel", newActionRedirectCancel(),
       FILTERS_ACTION_REDIRECT_CANCEL},
      {"ReplaceSrcMac", newReplaceSrcMac(Mac(1, 2, 3, 4, 5, 6)),
       FILTERS_ACTION_REPLACE_SRC_MAC},
      {"L3Switch", newActionL3Switch(1), FILTERS_ACTION_L3_SWITCH},
      {"CopyInnerPcp", newActionCopyInnerPcp(), FILTERS_ACTION_COPY_INNER_PCP},
      {"MplsPortSet", newActionMplsPortSet(Vpws(1), Eth(1)),
       FILTERS_ACTION_MPLS_PORT_SET},
      {"DoNotLearnMac", newActionDoNotLearnMac(),
       FILTERS_ACTION_DO_NOT_LEARN_MAC},
  };
  EXPECT_EQ(cases.size(), 19u);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ASSERT_NE(c.handle, nullptr);
    EXPECT_EQ(actionGetType(c.handle), c.kind);
    deleteAction(c.handle);
  }
}

TEST(ActionsC, BlockEgressPortsKeepsArrayOrderAndDuplicates) {
  const limid_t ports[] = {5, 7, 5};
  ActionPtr a = OwnAction(newActionBlockEgressPorts(ports, 3));
  EXPECT_EQ(As<ActionBlockEgressPorts>(a)->getPorts(),
            (std::list<limid_t>{5, 7, 5}));
}

TEST(ActionsC, BlockEgressPortsFromNoPortDoesNotReadTheArray) {
  ActionPtr a = OwnAction(newActionBlockEgressPorts(nullptr, 0));
  EXPECT_EQ(actionGetType(a.get()), FILTERS_ACTION_BLOCK_EGRESS_PORTS);
  EXPECT_TRUE(As<ActionBlockEgressPorts>(a)->getPorts().empty());
}

TEST(ActionsC, CancelConstructorsDifferOnlyInTheCancelType) {
  ActionPtr copy = OwnAction(newActionCopyToCpuCancel());
  ActionPtr sw = OwnAction(newActionSwitchToCpuCancel());
  EXPECT_EQ(actionGetType(sw.get()), 4);
  EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(sw.get()), 1);
  EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(sw.get()),
            SWITCH_TO_CPU_CANCEL);
  EXPECT_EQ(actionCopyToCpuCancelGetTypeOfCancel(copy.get()),
            COPY_TO_CPU_CANCEL);
}

TEST(ActionsC, ScalarGettersGiveTheStoredValues) {
  ActionPtr pcp = OwnAction(newActionSetPcp(7));
  ActionPtr pcpAndQueue = OwnAction(newActionSetPcpAndQueue(0xA5));
  ActionPtr dscp = OwnAction(newActionSetDSCP(63));
  ActionPtr cosq = OwnAction(newActionMapToCosQueue(255));
  ActionPtr l3 = OwnAction(newActionL3Switch(0xFFFFFFFF));
  EXPECT_EQ(actionSetPcpGetPcp(pcp.get()), 7);
  EXPECT_EQ(actionSetPcpAndQueueGetPcpAndQueue(pcpAndQueue.get()), 0xA5);
  EXPECT_EQ(actionSetDSCPGetDSCP(dscp.get()), 63);
  EXPECT_EQ(actionMapToCosQueueGetCosQueue(cosq.get()), 255);
  EXPECT_EQ(actionL3SwitchGetL3DestinationId(l3.get()), 0xFFFFFFFFu);
}

TEST(ActionsC, CpuCosQueueIsStoredAlthoughNoCGetterReadsIt) {
  ActionPtr a = OwnAction(newActionMapToCpuCosQueue(6));
  EXPECT_EQ(As<ActionMapToCpuCosQueue>(a)->getCpuCosQueue(), 6);
}

TEST(ActionsC, RedirectHoldsTheSinglePort) {
  ActionPtr a = OwnAction(newActionRedirect(Eth(9)));
  EXPECT_EQ(As<ActionRedirect>(a)->getRedirectPorts(),
            (std::list<limid_t>{Eth(9)}));
}

TEST(ActionsC, MacRewritesCopyTheAddress) {
  const ether_addr dst = Mac(0x02, 0x00, 0x00, 0x00, 0x00, 0x01);
  const ether_addr src = Mac(0x02, 0x00, 0x00, 0x00, 0x00, 0x02);
  ActionPtr d = OwnAction(newReplaceDstMac(dst));
  ActionPtr s = OwnAction(newReplaceSrcMac(src));
  const ether_addr gotDst = As<ActionReplaceDstMac>(d)->getReplaceDstMac();
  const ether_addr gotSrc = As<ActionReplaceSrcMac>(s)->getReplaceSrcMac();
  EXPECT_EQ(std::memcmp(&gotDst, &dst, 6), 0);
  EXPECT_EQ(std::memcmp(&gotSrc, &src, 6), 0);
}

TEST(ActionsC, MplsPortSetKeepsValidIdentifiers) {
  const limid_t vpls = limid_make_bridgedomain(limid_bridgedomain_type_vpls, 3);
  const limid_t lag = limid_make(limid_type_lag, 4);
  ActionPtr vpws = OwnAction(newActionMplsPortSet(Vpws(7), Eth(2)));
  ActionPtr bridge = OwnAction(newActionMplsPortSet(vpls, lag));
  EXPECT_EQ(As<ActionMplsPortSet>(vpws)->getVpnId(), Vpws(7));
  EXPECT_EQ(As<ActionMplsPortSet>(vpws)->getMplsAccessPort(), Eth(2));
  EXPECT_EQ(As<ActionMplsPortSet>(bridge)->getVpnId(), vpls);
  EXPECT_EQ(As<ActionMplsPortSet>(bridge)->getMplsAccessPort(), lag);
}

// Returns the message of the std::invalid_argument that the call throws, or
// a note that it threw nothing.
template <class Call>
std::string InvalidArgumentMessage(Call call) {
  try {
    call();
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
  return "no exception";
}

TEST(ActionsC, MplsPortSetLetsTheVpnRefusalEscape) {
  EXPECT_EQ(
      InvalidArgumentMessage([] { newActionMplsPortSet(Eth(1), Eth(2)); }),
      "ActionMplsPortSet: invalid vpn_id limid type");
}

TEST(ActionsC, MplsPortSetLetsTheAccessPortRefusalEscape) {
  EXPECT_EQ(
      InvalidArgumentMessage([] { newActionMplsPortSet(Vpws(1), Vpws(2)); }),
      "ActionMplsPortSet: invalid mpls_access_port limid type");
}

TEST(ActionsC, MplsPortSetRefusesANonVplsBridgeDomain) {
  const limid_t vlanDomain =
      limid_make_bridgedomain(limid_bridgedomain_type_vlan, 3);
  EXPECT_EQ(
      InvalidArgumentMessage([&] { newActionMplsPortSet(vlanDomain, Eth(2)); }),
      "ActionMplsPortSet: invalid vpn_id limid type");
}

// ---- Null-handle guards ----

INSTANTIATE_TEST_SUITE_P(
    Actions, CInterfaceDeathTest,
    ::testing::ValuesIn(GuardsOf(
        "filter_actions_c.cc",
        {Guard{"actionGetType", [] { actionGetType(nullptr); },
               "FiltersCommon::filtersAction_t "
               "FiltersCommon::actionGetType(void*)",
               "a != nullptr"},
         Guard{"deleteAction", [] { deleteAction(nullptr); },
               "void FiltersCommon::deleteAction(void*)", "a != nullptr"}})),
    GuardName);

}  // namespace
}  // namespace FiltersCommon
