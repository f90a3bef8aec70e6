/*
 * Shared vocabulary of the filter model: identifier and priority types, the
 * match and action kinds, group stages and types, and the error codes that
 * every fallible operation returns.
 *
 * This header is plain C11 and C++17. In C++ everything lives in namespace
 * FiltersCommon; in C the same names are global. All enumerations are plain
 * enumerations held in 32 bits and signed in C++, so ordered containers keyed
 * by them sort as signed integers. The numbers are part of the interface: C
 * callers compare against them, so none of them may ever change.
 */
#ifndef FILTERSCOMMON_FILTER_TYPES_H_
#define FILTERSCOMMON_FILTER_TYPES_H_

#ifdef __cplusplus
#include <cstdint>
#define FILTERS_ENUM_BASE : int32_t
namespace FiltersCommon {
#else
#include <stdint.h>
#define FILTERS_ENUM_BASE
#endif

typedef uint16_t filtersGroupId_t;
typedef uint16_t filtersGroupPriority_t;
typedef uint32_t filtersEntryId_t;
typedef uint32_t filtersEntryPriority_t;

/* The kind of a match; each value belongs to one match class. MatchDSCP
 * shares FILTERS_MATCH_TOS with MatchToS. */
typedef enum filtersMatch_t FILTERS_ENUM_BASE {
  FILTERS_MATCH_ALL = 0,
  FILTERS_MATCH_INGRESS_PORTS = 1,
  FILTERS_MATCH_EXTERNAL_VLAN_ID = 2,
  FILTERS_MATCH_TPID = 3,
  FILTERS_MATCH_DST_MAC = 4,
  FILTERS_MATCH_DST_L4_PORT = 5,
  FILTERS_MATCH_SRC_L4_PORT = 6,
  FILTERS_MATCH_SRC_MAC = 7,
  FILTERS_MATCH_L2_SRC_ENTRY_TYPE = 8,
  FILTERS_MATCH_SRC_IPV4 = 9,
  FILTERS_MATCH_DST_IPV4 = 10,
  FILTERS_MATCH_INTERNAL_VLAN_ID = 11,
  FILTERS_MATCH_PCP = 12,
  FILTERS_MATCH_INTERNAL_PCP = 13,
  FILTERS_MATCH_SRC_IPV6 = 14,
  FILTERS_MATCH_DST_IPV6 = 15,
  FILTERS_MATCH_VLAN_TAGGING = 16,
  FILTERS_MATCH_IP_PROTOCOL = 17,
  FILTERS_MATCH_PACKET_RES = 18,
  FILTERS_MATCH_MPLS_TERM = 19,
  FILTERS_MATCH_TOS = 20,
  FILTERS_MATCH_VIRTUAL_PORT = 21,
  FILTERS_MATCH_EGRESS_PORTS = 22,
  FILTERS_MATCH_INGRESS_STP_STATE = 23,
  FILTERS_MATCH_VLAN_INFO = 24,
  FILTERS_MATCH_SRC_PORT = 25,
  FILTERS_MATCH_TTL = 26,
  FILTERS_MATCH_VRF_ID = 27,
  FILTERS_MATCH_DROP = 28,
  FILTERS_MATCH_MY_STATION_HIT = 29,
  FILTERS_MATCH_CPU_PORT = 30,
  FILTERS_MATCH_FORWARDING_TYPE = 31,
  FILTERS_MATCH_DESTINATION_CPU = 32,
  FILTERS_MATCH_CPU_INJECTED_PACKETS = 33,
  FILTERS_MATCH_DST_L4_PORT_RANGE = 34,
  FILTERS_MATCH_L2_DEST_HIT = 35,
  FILTERS_MATCH_L3_SRC_ROUTE_HIT = 36,
  FILTERS_MATCH_VIRTUAL_PORT_CLASS = 37,
  FILTERS_MATCH_UNKNOWN_DEST_IP = 38
} filtersMatch_t;

/* The highest match kind; anything above it belongs to no class. */
#define FILTERS_MATCH_LAST 38

/* The kind of an action; each value belongs to one action class. */
typedef enum filtersAction_t FILTERS_ENUM_BASE {
  FILTERS_ACTION_PERMIT = 0,
  FILTERS_ACTION_DENY = 1,
  FILTERS_ACTION_COPY_TO_CPU = 2,
  FILTERS_ACTION_BLOCK_EGRESS_PORTS = 3,
  FILTERS_ACTION_COPY_TO_CPU_CANCEL = 4,
  FILTERS_ACTION_SET_PCP = 5,
  FILTERS_ACTION_SET_PCP_AND_QUEUE = 6,
  FILTERS_ACTION_SET_INNER_PCP = 7,
  FILTERS_ACTION_SET_DSCP = 8,
  FILTERS_ACTION_MAP_TO_COS_QUEUE = 9,
  FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE = 10,
  FILTERS_ACTION_REDIRECT = 11,
  FILTERS_ACTION_REPLACE_DST_MAC = 12,
  FILTERS_ACTION_REDIRECT_CANCEL = 13,
  FILTERS_ACTION_REPLACE_SRC_MAC = 14,
  FILTERS_ACTION_L3_SWITCH = 15,
  FILTERS_ACTION_BLACK_HOLE = 16,
  FILTERS_ACTION_COPY_INNER_PCP = 17,
  FILTERS_ACTION_MPLS_PORT_SET = 18,
  FILTERS_ACTION_L2_TO_CPU_DROP = 19,
  FILTERS_ACTION_DO_NOT_LEARN_MAC = 20
} filtersAction_t;

/* The highest action kind; anything above it belongs to no class. */
#define FILTERS_ACTION_LAST 20

/* The pipeline stage a group is programmed into. */
typedef enum filtersGroupStage_t FILTERS_ENUM_BASE {
  /* Where every new group starts; the most permissive stage. */
  FILTERS_STAGE_LOOKUP = 0,
  /* VLAN and priority rewriting. */
  FILTERS_STAGE_VLAN = 1,
  /* The main ingress stage, with CPU-queue, redirect and learning actions. */
  FILTERS_STAGE_INGRESS = 2,
  /* The egress stage: permit and deny only. */
  FILTERS_STAGE_EGRESS = 3
} filtersGroupStage_t;

/* The kind of key a group's entries match on; each type is defined by the
 * match kinds it allows. */
typedef enum filtersGroupType_t FILTERS_ENUM_BASE {
  FILTERS_TYPE_NONE = 0,         /* no match at all */
  FILTERS_TYPE_L2 = 1,           /* MAC, STP, resolution, MPLS, CPU port */
  FILTERS_TYPE_SOURCE_GUARD = 2, /* source MAC, source IPv4, virtual port */
  FILTERS_TYPE_IPV4_L4 = 3,      /* IPv4 and L4 with TTL and forwarding */
  FILTERS_TYPE_IPV4_QOS = 4,     /* IPv4 and L4 with PCP and ToS */
  FILTERS_TYPE_EGRESS_L2 = 5,    /* destination MAC and egress ports */
  FILTERS_TYPE_L2_VLAN = 6,      /* MAC, VLAN, PCP and VLAN tagging */
  FILTERS_TYPE_L2_L4 = 7,        /* destination MAC and L4 with VLAN info */
  FILTERS_TYPE_IPV6_VRF = 8,     /* destination IPv6 and VRF */
  FILTERS_TYPE_QOS = 9,          /* VLAN, PCP and ToS */
  FILTERS_TYPE_IPV4 = 10,        /* IPv4 addresses */
  FILTERS_TYPE_CPU = 11,         /* CPU-injected packets, L4 port range */
  FILTERS_TYPE_LOOKUP_HIT = 12,  /* L2 and L3 lookup hits, port classes */
  FILTERS_TYPE_CPU_FORWARD = 13, /* as FILTERS_TYPE_CPU plus forwarding */
  FILTERS_TYPE_UNKNOWN_DEST = 14 /* L4 and TTL with unknown destination */
} filtersGroupType_t;

/* The result of every fallible operation. -1 and -2 are never produced. */
typedef enum filtersErr_t FILTERS_ENUM_BASE {
  FILTERS_OK = 0,
  /* The item to remove or read is not there. */
  FILTERS_ERR_NOT_FOUND = -3,
  /* Invalid or incompatible item, or an unknown group type. */
  FILTERS_ERR_INVALID = -4,
  /* A required argument is missing, or the object refuses the change. */
  FILTERS_ERR_REFUSED = -5,
  /* A match of the entry is not allowed by the group's type. */
  FILTERS_ERR_MATCH_NOT_ALLOWED = -6,
  /* The group's type is not allowed in the stage. */
  FILTERS_ERR_TYPE_NOT_IN_STAGE = -7,
  /* The stage is unknown. */
  FILTERS_ERR_UNKNOWN_STAGE = -8,
  /* An action of the entry is not allowed in the group's stage. */
  FILTERS_ERR_ACTION_NOT_ALLOWED = -9,
  /* The entry's policer belongs to another policer stage. */
  FILTERS_ERR_POLICER_STAGE = -10
} filtersErr_t;

#ifdef __cplusplus
}  // namespace FiltersCommon
#endif

#undef FILTERS_ENUM_BASE

#endif /* FILTERSCOMMON_FILTER_TYPES_H_ */
