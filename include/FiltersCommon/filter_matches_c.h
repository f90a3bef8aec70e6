/*
 * C interface to match qualifiers.
 *
 * A match handle is an untyped pointer to a match object of the kind that
 * made it. Pass it to filtersEntrySetMatch (filter_entries_c.h) to qualify an
 * entry.
 *
 * Conventions:
 * (1) Every newMatch... function returns a new handle that belongs to the
 *     caller until deleteMatch; nothing else frees it. Allocation failure is
 *     not reported as a null handle.
 * (2) Handing a match to an entry stores a copy; the caller still owns and
 *     deletes its handle.
 * (3) Addresses are passed in by value and copied. The getters that return
 *     an address return a pointer into the match object, valid until the
 *     match is deleted; do not free it.
 * (4) Port arrays given to newMatchIngressPorts and newMatchEgressPorts are
 *     copied; the array is not read when `count` is 0.
 * (5) matchGetType, deleteMatch and the getters up to matchIPv6GetIPv6Mask
 *     abort the process through an assertion on a null handle. The remaining
 *     getters check nothing. No getter checks the kind of its handle: a
 *     handle of another kind than the getter expects gives undefined results.
 * (6) Nothing validates values: any number is stored as given.
 *
 * This header compiles as C11 and as C++17; in C++ the functions are
 * declared in namespace FiltersCommon, with C linkage either way.
 */
#ifndef FILTERSCOMMON_FILTER_MATCHES_C_H_
#define FILTERSCOMMON_FILTER_MATCHES_C_H_

#include <net/ethernet.h>
#include <netinet/in.h>

#ifdef __cplusplus
#include <cstdint>
#else
#include <stdbool.h>
#include <stdint.h>
#endif

#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_match_types.h"
#include "FiltersCommon/filter_types.h"
#include "limid/limid.h"

#ifdef __cplusplus
namespace FiltersCommon {
class MatchTPID;
class MatchDstL4PortRange;
class MatchL2SrcEntryType;
extern "C" {
#else
typedef struct MatchTPID MatchTPID;
typedef struct MatchDstL4PortRange MatchDstL4PortRange;
typedef struct MatchL2SrcEntryType MatchL2SrcEntryType;
#endif

/* ---- Creation ---- */

FILTERS_EXPORT void* newMatchAll(void);
/* The `count` identifiers of `ports`, in array order. */
FILTERS_EXPORT void* newMatchIngressPorts(limid_t const* ports, uint32_t count);
FILTERS_EXPORT void* newMatchEgressPorts(limid_t const* ports, uint32_t count);
/* A set of one VLAN. */
FILTERS_EXPORT void* newMatchExternalVlanId(uint16_t vlanId);
FILTERS_EXPORT void* newMatchInternalVlanId(uint16_t vlanId);
FILTERS_EXPORT void* newMatchTPID(tpid_t tpid);
/* An exact port (mask 0xFFFF), or a port and a mask. */
FILTERS_EXPORT void* newMatchDstL4Port(l4port_t port);
FILTERS_EXPORT void* newMatchDstL4PortMask(l4port_t port, l4port_t mask);
FILTERS_EXPORT void* newMatchSrcL4Port(l4port_t port);
FILTERS_EXPORT void* newMatchSrcL4PortMask(l4port_t port, l4port_t mask);
/* Ports from `minPort` to `maxPort`; the bounds are not checked. */
FILTERS_EXPORT void* newMatchDstL4PortRange(l4port_t minPort, l4port_t maxPort);
/* An exact address (mask all ones), or an address and a mask. */
FILTERS_EXPORT void* newMatchDstMac(struct ether_addr mac);
FILTERS_EXPORT void* newMatchDstMacMask(struct ether_addr mac,
                                        struct ether_addr mask);
FILTERS_EXPORT void* newMatchSrcMac(struct ether_addr mac);
FILTERS_EXPORT void* newMatchSrcMacMask(struct ether_addr mac,
                                        struct ether_addr mask);
FILTERS_EXPORT void* newMatchL2SrcEntryType(l2SrcEntryType_t type);
FILTERS_EXPORT void* newMatchSrcIPv4(struct in_addr ip);
FILTERS_EXPORT void* newMatchSrcIPv4Mask(struct in_addr ip,
                                         struct in_addr mask);
FILTERS_EXPORT void* newMatchDstIPv4(struct in_addr ip);
FILTERS_EXPORT void* newMatchDstIPv4Mask(struct in_addr ip,
                                         struct in_addr mask);
/* There is no masked source IPv6 match. */
FILTERS_EXPORT void* newMatchSrcIPv6(struct in6_addr ip);
FILTERS_EXPORT void* newMatchDstIPv6(struct in6_addr ip);
FILTERS_EXPORT void* newMatchDstIPv6Mask(struct in6_addr ip,
                                         struct in6_addr mask);
/* A set of one priority code point. */
FILTERS_EXPORT void* newMatchPcp(uint8_t pcp);
FILTERS_EXPORT void* newMatchInternalPcp(uint8_t pcp);
FILTERS_EXPORT void* newMatchVlanTagging(vlan_tagging_t tagging);
FILTERS_EXPORT void* newMatchIpProtocol(uint8_t protocol);
FILTERS_EXPORT void* newMatchPacketRes(en_Resolution resolution);
FILTERS_EXPORT void* newMatchMplsTerm(bool terminated);
/* A type-of-service match (kind FILTERS_MATCH_TOS) on `dscp` << 2. */
FILTERS_EXPORT void* newMatchDSCP(uint8_t dscp);
FILTERS_EXPORT void* newMatchTTL(uint8_t ttl);
FILTERS_EXPORT void* newMatchVirtualPort(limid_t port);
FILTERS_EXPORT void* newMatchIngressStpState(en_StpState state);
FILTERS_EXPORT void* newMatchVlanInfo(vlan_info_t info);
FILTERS_EXPORT void* newMatchSrcPort(limid_t port);
FILTERS_EXPORT void* newMatchVrfId(uint16_t vrfId);
FILTERS_EXPORT void* newMatchDrop(bool drop);
FILTERS_EXPORT void* newMatchCpuPort(void);
FILTERS_EXPORT void* newMatchCPUInjectedPackets(bool injected);
FILTERS_EXPORT void* newMatchL2DestHit(bool hit);
FILTERS_EXPORT void* newMatchL3SrcRouteHit(bool hit);
FILTERS_EXPORT void* newMatchVirtualPortClass(uint32_t classId);
FILTERS_EXPORT void* newMatchUnknownDestIp(void);

/* ---- Inspection and destruction; these abort on a null handle ---- */

/* The kind of any match. */
FILTERS_EXPORT filtersMatch_t matchGetType(void* m);
/* Destroys and frees any match. */
FILTERS_EXPORT void deleteMatch(void* m);
/* The identifier of a virtual-port or source-port match. */
FILTERS_EXPORT limid_t matchGetLimId(void* m);
/* Address and mask of a destination or source MAC match. */
FILTERS_EXPORT const struct ether_addr* matchMacGetMac(void* m);
FILTERS_EXPORT const struct ether_addr* matchMacGetMask(void* m);
FILTERS_EXPORT tpid_t matchGetTPID(MatchTPID* m);
/* Port and mask of a layer-4 port match (minimum and maximum of a range). */
FILTERS_EXPORT l4port_t matchGetL4Port(void* m);
FILTERS_EXPORT l4port_t matchGetL4PortMask(void* m);
FILTERS_EXPORT l4port_t matchGetL4PortRangeMin(MatchDstL4PortRange* m);
FILTERS_EXPORT l4port_t matchGetL4PortRangeMax(MatchDstL4PortRange* m);
FILTERS_EXPORT l2SrcEntryType_t matchGetL2SrcEntryType(MatchL2SrcEntryType* m);
/* Address and mask of a source or destination IPv4 match. */
FILTERS_EXPORT const struct in_addr* matchIPv4GetIPv4(void* m);
FILTERS_EXPORT const struct in_addr* matchIPv4GetIPv4Mask(void* m);
/* Address and mask of a source or destination IPv6 match. */
FILTERS_EXPORT const struct in6_addr* matchIPv6GetIPv6(void* m);
FILTERS_EXPORT const struct in6_addr* matchIPv6GetIPv6Mask(void* m);

/* ---- Getters that check nothing ---- */

FILTERS_EXPORT uint8_t matchIpProtocolGetIpProt(void* m);
FILTERS_EXPORT en_Resolution matchPacketResGet(void* m);
FILTERS_EXPORT bool matchMplsTermGet(void* m);
/* The DSCP of a match made by newMatchDSCP: its ToS byte >> 2. */
FILTERS_EXPORT uint8_t matchDSCPGet(void* m);
FILTERS_EXPORT uint8_t matchTTLGet(void* m);
FILTERS_EXPORT en_StpState matchIngressStpStateGet(void* m);
FILTERS_EXPORT vlan_info_t matchVlanInfoGet(void* m);
FILTERS_EXPORT uint16_t matchVrfIdGet(void* m);
FILTERS_EXPORT bool matchDropGet(void* m);
FILTERS_EXPORT bool MatchCPUInjectedPacketsGet(void* m);
FILTERS_EXPORT bool matchL2DestHitGet(void* m);
FILTERS_EXPORT bool matchL3SrcRouteHitGet(void* m);
FILTERS_EXPORT uint32_t matchVirtualPortClassGet(void* m);

#ifdef __cplusplus
} /* extern "C" */
} /* namespace FiltersCommon */
#endif

#endif /* FILTERSCOMMON_FILTER_MATCHES_C_H_ */
