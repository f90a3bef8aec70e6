// The Action base, the parameterless kinds and the eight scalar kinds: kinds
// fixed by class, shared wire fields, truncation on load, absent fields, and
// the equality dispatch of the base.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "actions_test_util.h"
#include "gtest/gtest.h"

namespace {

using namespace FiltersCommon;  // NOLINT: the tests name many kinds
using namespace actions_test;   // NOLINT

// One scalar kind seen through its class: build it, read its value back.
struct ScalarKind {
  std::string name;
  std::function<std::unique_ptr<Action>(unsigned int)> make;
  std::function<unsigned int(const Action&)> value;
  // Sets the kind's own wire field in a message of that kind.
  std::function<void(ActionPB*, uint32_t)> set_field;
  bool eight_bits;
};

template <class Kind, typename Value>
ScalarKind Scalar(const std::string& name, Value (Kind::*getter)() const,
                  void (ActionPB::*setter)(uint32_t)) {
  return ScalarKind{
      name,
      [](unsigned int v) {
        return std::unique_ptr<Action>(new Kind(static_cast<Value>(v)));
      },
      [getter](const Action& a) {
        return static_cast<unsigned int>(
            (dynamic_cast<const Kind&>(a).*getter)());
      },
      [setter](ActionPB* pb, uint32_t v) { (pb->*setter)(v); },
      sizeof(Value) == 1};
}

std::vector<ScalarKind> ScalarKinds() {
  return {
      Scalar("ActionCopyToCpuCancel", &ActionCopyToCpuCancel::getCancelType,
             &ActionPB::set_cp2cpu_cancel_type_),
      Scalar("ActionSetPcp", &ActionSetPcp::getPcp, &ActionPB::set_pcp_),
      Scalar("ActionSetPcpAndQueue", &ActionSetPcpAndQueue::getPcpAndQueue,
             &ActionPB::set_pcp_and_queue_),
      Scalar("ActionSetInnerPcp", &ActionSetInnerPcp::getInnerPcp,
             &ActionPB::set_pcp_),
      Scalar("ActionSetDSCP", &ActionSetDSCP::getDSCP, &ActionPB::set_dscp_),
      Scalar("ActionMapToCosQueue", &ActionMapToCosQueue::getCosQueue,
             &ActionPB::set_cosq_),
      Scalar("ActionMapToCpuCosQueue", &ActionMapToCpuCosQueue::getCpuCosQueue,
             &ActionPB::set_cosq_),
      Scalar("ActionL3Switch", &ActionL3Switch::getL3DestinationId,
             &ActionPB::set_l3_dest_id_),
  };
}

TEST(ActionScalars, AbsentValueFieldLoadsAsZero) {
  for (const ScalarKind& kind : ScalarKinds()) {
    const std::unique_ptr<Action> action = kind.make(1);
    ActionPB pb;
    pb.set_type_(static_cast<uint32_t>(action->getType()));
    action->convertFromActionPB(&pb);
    EXPECT_EQ(kind.value(*action), 0u) << kind.name;
  }
}

TEST(ActionScalars, EightBitKindsKeepLowByteOfWireValue) {
  for (const ScalarKind& kind : ScalarKinds()) {
    const std::unique_ptr<Action> action = kind.make(0);
    ActionPB pb;
    kind.set_field(&pb, 0x12345u);
    action->convertFromActionPB(&pb);
    EXPECT_EQ(kind.value(*action), kind.eight_bits ? 0x45u : 0x12345u)
        << kind.name;
  }
}

TEST(ActionScalars, LoadReadsOnlyItsOwnField) {
  for (const ScalarKind& kind : ScalarKinds()) {
    const std::unique_ptr<Action> action = kind.make(9);
    ActionPB pb;
    kind.set_field(&pb, 2);
    action->convertFromActionPB(&pb);
    EXPECT_EQ(kind.value(*action), 2u) << kind.name;
  }
}

TEST(ActionScalars, StoreEveryByteUnchangedAndWriteItZeroExtended) {
  EXPECT_EQ(ActionSetPcp(255).getPcp(), 255);
  EXPECT_EQ(ActionSetDSCP(200).getDSCP(), 200);
  EXPECT_EQ(ToWire(ActionSetPcp(255)).pcp_(), 255u);
  EXPECT_EQ(ToWire(ActionSetPcpAndQueue(0x80)).pcp_and_queue_(), 0x80u);
}

TEST(ActionScalars, SetDscpLoadedFrom300Holds44) {
  ActionPB pb;
  pb.set_type_(FILTERS_ACTION_SET_DSCP);
  pb.set_dscp_(300);
  ActionSetDSCP dscp(0);
  dscp.convertFromActionPB(&pb);
  EXPECT_EQ(dscp.getDSCP(), 44);
}

TEST(ActionScalars, SetPcpAndSetInnerPcpShareFieldButNotKind) {
  const ActionSetPcp pcp(3);
  const ActionSetInnerPcp inner(3);
  EXPECT_EQ(WireText(pcp), "type_: 5 pcp_: 3");
  EXPECT_EQ(WireText(inner), "type_: 7 pcp_: 3");
  EXPECT_TRUE(pcp == ActionSetPcp(3));
  EXPECT_FALSE(static_cast<const Action&>(pcp) == inner);
  EXPECT_FALSE(static_cast<const Action&>(inner) == pcp);
}

TEST(ActionScalars, CpuCosQueueMessageReadsBackAsCosQueue) {
  const ActionPB pb = ToWire(ActionMapToCpuCosQueue(7));
  ActionMapToCosQueue cos(0);
  cos.convertFromActionPB(&pb);
  EXPECT_EQ(cos.getCosQueue(), 7);
  EXPECT_EQ(WireText(ActionMapToCosQueue(7)), "type_: 9 cosq_: 7");
}

TEST(ActionScalars, CancelTypeTravelsAsItsNumber) {
  const ActionPB copy = ToWire(ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL));
  EXPECT_TRUE(copy.has_cp2cpu_cancel_type_());
  EXPECT_EQ(copy.cp2cpu_cancel_type_(), 0u);
  EXPECT_EQ(
      ToWire(ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL)).cp2cpu_cancel_type_(),
      1u);
}

TEST(ActionScalars, WideKindsKeepAllThirtyTwoBits) {
  ActionPB pb;
  pb.set_l3_dest_id_(0xFFFFFFFFu);
  ActionL3Switch l3(0);
  l3.convertFromActionPB(&pb);
  EXPECT_EQ(l3.getL3DestinationId(), 0xFFFFFFFFu);
  EXPECT_EQ(ToWire(l3).l3_dest_id_(), 0xFFFFFFFFu);
}

TEST(ActionScalars, EqualOnlyWithSameValue) {
  EXPECT_TRUE(ActionSetPcp(3) == ActionSetPcp(3));
  EXPECT_FALSE(ActionSetPcp(3) == ActionSetPcp(4));
  EXPECT_TRUE(ActionMapToCosQueue(2) == ActionMapToCosQueue(2));
  EXPECT_FALSE(ActionMapToCosQueue(2) == ActionMapToCosQueue(3));
  EXPECT_FALSE(ActionL3Switch(1) == ActionL3Switch(2));
  EXPECT_FALSE(ActionCopyToCpuCancel(COPY_TO_CPU_CANCEL) ==
               ActionCopyToCpuCancel(SWITCH_TO_CPU_CANCEL));
  for (const ScalarKind& kind : ScalarKinds()) {
    EXPECT_TRUE(*kind.make(1) == *kind.make(1)) << kind.name;
    EXPECT_FALSE(*kind.make(1) == *kind.make(0)) << kind.name;
  }
}

TEST(ActionParameterless, SameKindsAreEqualOtherKindsAreNot) {
  EXPECT_TRUE(ActionDeny() == ActionDeny());
  EXPECT_TRUE(static_cast<const Action&>(ActionDeny()) == ActionDeny());
  EXPECT_FALSE(static_cast<const Action&>(ActionDeny()) == ActionPermit());
  EXPECT_TRUE(ActionPermit() == ActionPermit());
  EXPECT_TRUE(ActionRedirectCancel() == ActionRedirectCancel());
}

TEST(ActionParameterless, LoadChangesNothing) {
  ActionPB pb;
  pb.set_type_(FILTERS_ACTION_DENY);
  pb.set_pcp_(5);
  ActionBlackHole hole;
  hole.convertFromActionPB(&pb);
  EXPECT_EQ(hole.getType(), FILTERS_ACTION_BLACK_HOLE);
  EXPECT_EQ(WireText(hole), "type_: 16");
}

TEST(ActionPermit, SerializesToTwoBytes) {
  EXPECT_EQ(ToWire(ActionPermit()).SerializeAsString(),
            std::string("\x08\x00", 2));
}

TEST(ActionBase, KindsOutsideCatalogueCompareEqual) {
  const Action a(static_cast<filtersAction_t>(21));
  const Action b(static_cast<filtersAction_t>(21));
  const Action negative(static_cast<filtersAction_t>(-1));
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(negative == Action(static_cast<filtersAction_t>(-1)));
  EXPECT_FALSE(a == negative);
  EXPECT_FALSE(a == Action(static_cast<filtersAction_t>(22)));
}

TEST(ActionBase, WritesOnlyItsKindAndLoadsNothing) {
  const Action odd(static_cast<filtersAction_t>(30));
  EXPECT_EQ(WireText(odd), "type_: 30");
  Action loaded(static_cast<filtersAction_t>(30));
  ActionPB pb;
  pb.set_type_(2);
  loaded.convertFromActionPB(&pb);
  EXPECT_EQ(loaded.getType(), 30);
}

TEST(ActionBase, BareActionWithCatalogueKindHasNoParametersToCompare) {
  const Action bare(FILTERS_ACTION_SET_PCP);
  EXPECT_TRUE(bare == ActionSetPcp(4));
  EXPECT_TRUE(static_cast<const Action&>(ActionSetPcp(4)) == bare);
  EXPECT_FALSE(bare == ActionSetInnerPcp(4));
  EXPECT_TRUE(Action(FILTERS_ACTION_PERMIT) == ActionPermit());
}

TEST(ActionBase, DeletesThroughBasePointer) {
  std::unique_ptr<Action> action(new ActionRedirect(Eth(1)));
  action.reset(new ActionMplsPortSet(Vpws(1), Lag(1)));
  EXPECT_EQ(action->getType(), FILTERS_ACTION_MPLS_PORT_SET);
}

TEST(ActionBase, SubclassAssignmentCopiesValue) {
  ActionSetPcp pcp(1);
  pcp = ActionSetPcp(6);
  EXPECT_EQ(pcp.getPcp(), 6);
  EXPECT_EQ(pcp.getType(), FILTERS_ACTION_SET_PCP);
}

}  // namespace
