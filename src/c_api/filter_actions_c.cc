// The C interface to actions: each function creates, reads or destroys one
// action object behind an untyped handle (see c_handles.h).
#include "FiltersCommon/filter_actions_c.h"

#include "FiltersCommon/filter_actions.h"
#include "c_api/c_handles.h"
#include "common/filters_assert.h"

namespace FiltersCommon {

using c_api::as;
using c_api::newHandle;
using c_api::portList;

extern "C" {

void* newActionPermit(void) { return newHandle<ActionPermit>(); }
void* newActionDeny(void) { return newHandle<ActionDeny>(); }
void* newActionCopyToCpu(void) { return newHandle<ActionCopyToCpu>(); }
void* newActionBlockEgressPorts(limid_t const* ports, uint32_t count) {
  return newHandle<ActionBlockEgressPorts>(portList(ports, count));
}
void* newActionCopyToCpuCancel(void) {
  return newHandle<ActionCopyToCpuCancel>(COPY_TO_CPU_CANCEL);
}
void* newActionSwitchToCpuCancel(void) {
  return newHandle<ActionCopyToCpuCancel>(SWITCH_TO_CPU_CANCEL);
}
void* newActionSetPcp(uint8_t pcp) { return newHandle<ActionSetPcp>(pcp); }
void* newActionSetPcpAndQueue(uint8_t pcpAndQueue) {
  return newHandle<ActionSetPcpAndQueue>(pcpAndQueue);
}
void* newActionSetDSCP(uint8_t dscp) { return newHandle<ActionSetDSCP>(dscp); }
void* newActionMapToCosQueue(uint8_t queue) {
  return newHandle<ActionMapToCosQueue>(queue);
}
void* newActionMapToCpuCosQueue(uint8_t queue) {
  return newHandle<ActionMapToCpuCosQueue>(queue);
}
void* newReplaceDstMac(struct ether_addr mac) {
  return newHandle<ActionReplaceDstMac>(mac);
}
void* newActionRedirect(limid_t port) {
  return newHandle<ActionRedirect>(port);
}
void* newActionRedirectCancel(void) {
  return newHandle<ActionRedirectCancel>();
}
void* newReplaceSrcMac(struct ether_addr mac) {
  return newHandle<ActionReplaceSrcMac>(mac);
}
void* newActionL3Switch(uint32_t l3DestinationId) {
  return newHandle<ActionL3Switch>(l3DestinationId);
}
void* newActionCopyInnerPcp(void) { return newHandle<ActionCopyInnerPcp>(); }
void* newActionMplsPortSet(limid_t vpnId, limid_t mplsAccessPort) {
  return newHandle<ActionMplsPortSet>(vpnId, mplsAccessPort);
}
void* newActionDoNotLearnMac(void) { return newHandle<ActionDoNotLearnMac>(); }

filtersAction_t actionGetType(void* a) {
  FILTERS_ASSERT(a != nullptr,
                 "FiltersCommon::filtersAction_t "
                 "FiltersCommon::actionGetType(void*)");
  return as<Action>(a)->getType();
}

// The kind-specific getters check neither null nor the kind, by design.

cp2cpuCancelParam_t actionCopyToCpuCancelGetTypeOfCancel(void* a) {
  return as<ActionCopyToCpuCancel>(a)->getCancelType();
}
uint8_t actionSetPcpGetPcp(void* a) { return as<ActionSetPcp>(a)->getPcp(); }
uint8_t actionSetPcpAndQueueGetPcpAndQueue(void* a) {
  return as<ActionSetPcpAndQueue>(a)->getPcpAndQueue();
}
uint8_t actionSetDSCPGetDSCP(void* a) {
  return as<ActionSetDSCP>(a)->getDSCP();
}
uint8_t actionMapToCosQueueGetCosQueue(void* a) {
  return as<ActionMapToCosQueue>(a)->getCosQueue();
}
uint32_t actionL3SwitchGetL3DestinationId(void* a) {
  return as<ActionL3Switch>(a)->getL3DestinationId();
}

void deleteAction(void* a) {
  FILTERS_ASSERT(a != nullptr, "void FiltersCommon::deleteAction(void*)");
  delete as<Action>(a);
}

}  // extern "C"

}  // namespace FiltersCommon
