/*
 * Value types of single match kinds: the port types a port match can exclude,
 * the VLAN tagging, L2 source entry, packet resolution, STP state and
 * forwarding type enumerations, the VLAN info pair, and the 16-bit TPID and
 * layer-4 port aliases.
 *
 * The library gives meaning only to CPU_PORT (printed by name) and to
 * VLAN_TAGGING_UNTAGGED (any other tagging value prints as tagged); every
 * other value is carried unchanged, compared, written to and read from the
 * wire. So every enumeration is a plain enumeration held in 32 bits and able
 * to carry any 32-bit value, not only the named ones: the names are those the
 * hardware programming code uses today, and new hardware may add values.
 *
 * This header is plain C11 and C++17. In C++ everything lives in namespace
 * FiltersCommon; in C the same names are global.
 */
#ifndef FILTERSCOMMON_FILTER_MATCH_TYPES_H_
#define FILTERSCOMMON_FILTER_MATCH_TYPES_H_

#ifdef __cplusplus
#include <cstdint>
#define FILTERS_ENUM_BASE : int32_t
namespace FiltersCommon {
#else
#include <stdint.h>
#define FILTERS_ENUM_BASE
#endif

/* A kind of port that an ingress port match excludes. */
typedef enum port_type_t FILTERS_ENUM_BASE {
  CPU_PORT = 0,
  FRONT_PANEL_PORT = 1,
  LAG_PORT = 2,
  VIRTUAL_PORT = 3
} port_type_t;

/* Whether a packet carries a VLAN tag; every non-zero value means tagged. */
typedef enum vlan_tagging_t FILTERS_ENUM_BASE {
  VLAN_TAGGING_UNTAGGED = 0,
  VLAN_TAGGING_SINGLE_TAGGED = 1,
  VLAN_TAGGING_DOUBLE_TAGGED = 2
} vlan_tagging_t;

/* How the L2 table learnt the packet's source MAC. */
typedef enum l2SrcEntryType_t FILTERS_ENUM_BASE {
  L2_SRC_ENTRY_NOT_FOUND = 0,
  L2_SRC_ENTRY_DYNAMIC = 1,
  L2_SRC_ENTRY_STATIC = 2
} l2SrcEntryType_t;

/* The packet class that the switch resolved from its headers. */
typedef enum en_Resolution FILTERS_ENUM_BASE {
  PKT_RES_UNKNOWN = 0,
  PKT_RES_CONTROL = 1,
  PKT_RES_L2_UNICAST = 2,
  PKT_RES_L2_UNKNOWN_UNICAST = 3,
  PKT_RES_L2_MULTICAST = 4,
  PKT_RES_L2_BROADCAST = 5,
  PKT_RES_L3_UNICAST = 6,
  PKT_RES_L3_MULTICAST = 7,
  PKT_RES_MPLS = 8
} en_Resolution;

/* The spanning-tree state of the ingress port. */
typedef enum en_StpState FILTERS_ENUM_BASE {
  STP_STATE_DISABLED = 0,
  STP_STATE_BLOCKING = 1,
  STP_STATE_LEARNING = 2,
  STP_STATE_FORWARDING = 3
} en_StpState;

/* How the packet is being forwarded. */
typedef enum en_ForwardingType FILTERS_ENUM_BASE {
  FORWARDING_TYPE_L2_BRIDGED = 0,
  FORWARDING_TYPE_L3_ROUTED = 1,
  FORWARDING_TYPE_MPLS = 2
} en_ForwardingType;

/* The two VLAN types of a VLAN info match, in their wire order. */
typedef struct vlan_info_t {
  uint32_t svcVlanType;
  uint32_t protoCpuVlanType;
} vlan_info_t;

/* A tag protocol identifier, e.g. 0x8100. */
typedef uint16_t tpid_t;

/* A layer-4 (TCP or UDP) port number or port mask. */
typedef uint16_t l4port_t;

#ifdef __cplusplus
}  // namespace FiltersCommon
#endif

#undef FILTERS_ENUM_BASE

#endif /* FILTERSCOMMON_FILTER_MATCH_TYPES_H_ */
