/*
 * C interface to actions.
 *
 * An action handle is an untyped pointer to an action object of the kind
 * that made it. Pass it to filtersEntrySetAction (filter_entries_c.h) to
 * give an entry that action.
 *
 * Conventions:
 * (1) Every newAction... function (and newReplaceDstMac, newReplaceSrcMac)
 *     returns a new handle that belongs to the caller until deleteAction;
 *     nothing else frees it. Allocation failure is not reported as a null
 *     handle.
 * (2) Handing an action to an entry stores a copy; the caller still owns and
 *     deletes its handle, and deleting it leaves the entry's copy intact.
 * (3) Port arrays and addresses are copied; the port array is not read when
 *     `count` is 0.
 * (4) actionGetType and deleteAction abort the process through an assertion
 *     on a null handle. The kind-specific getters check neither null nor the
 *     kind of their handle.
 * (5) newActionMplsPortSet validates its identifiers: the VPN identifier
 *     must be an MPLS VPWS interface or a VPLS bridge domain, the access
 *     port a link aggregation or an Ethernet port. Anything else raises a
 *     C++ exception (std::invalid_argument) after freeing the allocation, and
 *     a C caller cannot catch it: pass identifiers of valid types only.
 * (6) There are no constructors for ActionSetInnerPcp, ActionBlackHole and
 *     ActionL2ToCpuDrop.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are
 * declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_ACTIONS_C_H_
#define FILTERSCOMMON_FILTER_ACTIONS_C_H_

#include <net/ethernet.h>

#ifdef __cplusplus
#include <cstdint>
#else
#include <stdint.h>
#endif

#include "FiltersCommon/filter_action_types.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"
#include "limid/limid.h"

#ifdef __cplusplus
namespace FiltersCommon {
extern "C" {
#endif

/* ---- Creation ---- */

FILTERS_EXPORT void* newActionPermit(void);
FILTERS_EXPORT void* newActionDeny(void);
FILTERS_EXPORT void* newActionCopyToCpu(void);
/* The `count` identifiers of `ports`, in array order, duplicates kept. */
FILTERS_EXPORT void* newActionBlockEgressPorts(limid_t const* ports,
                                               uint32_t count);
/* Cancels a copy-to-CPU (COPY_TO_CPU_CANCEL) or a switch-to-CPU
 * (SWITCH_TO_CPU_CANCEL) decision; both are ActionCopyToCpuCancel. */
FILTERS_EXPORT void* newActionCopyToCpuCancel(void);
FILTERS_EXPORT void* newActionSwitchToCpuCancel(void);
FILTERS_EXPORT void* newActionSetPcp(uint8_t pcp);
FILTERS_EXPORT void* newActionSetPcpAndQueue(uint8_t pcpAndQueue);
FILTERS_EXPORT void* newActionSetDSCP(uint8_t dscp);
FILTERS_EXPORT void* newActionMapToCosQueue(uint8_t queue);
FILTERS_EXPORT void* newActionMapToCpuCosQueue(uint8_t queue);
FILTERS_EXPORT void* newReplaceDstMac(struct ether_addr mac);
/* A redirect to the single port `port`. */
FILTERS_EXPORT void* newActionRedirect(limid_t port);
FILTERS_EXPORT void* newActionRedirectCancel(void);
FILTERS_EXPORT void* newReplaceSrcMac(struct ether_addr mac);
FILTERS_EXPORT void* newActionL3Switch(uint32_t l3DestinationId);
FILTERS_EXPORT void* newActionCopyInnerPcp(void);
/* Throws std::invalid_argument for identifiers of the wrong types. */
FILTERS_EXPORT void* newActionMplsPortSet(limid_t vpnId,
                                          limid_t mplsAccessPort);
FILTERS_EXPORT void* newActionDoNotLearnMac(void);

/* ---- Inspection and destruction ---- */

/* The kind of any action; aborts on a null handle. */
FILTERS_EXPORT filtersAction_t actionGetType(void* a);
FILTERS_EXPORT cp2cpuCancelParam_t
actionCopyToCpuCancelGetTypeOfCancel(void* a);
FILTERS_EXPORT uint8_t actionSetPcpGetPcp(void* a);
FILTERS_EXPORT uint8_t actionSetPcpAndQueueGetPcpAndQueue(void* a);
FILTERS_EXPORT uint8_t actionSetDSCPGetDSCP(void* a);
FILTERS_EXPORT uint8_t actionMapToCosQueueGetCosQueue(void* a);
FILTERS_EXPORT uint32_t actionL3SwitchGetL3DestinationId(void* a);
/* Destroys and frees any action; aborts on a null handle. */
FILTERS_EXPORT void deleteAction(void* a);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_ACTIONS_C_H_ */
