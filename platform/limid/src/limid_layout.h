/* Bit layout of a limid and the naming table shared by the decoder and the
 * encoder. Private to the limid libraries. */
#ifndef LIMID_SRC_LIMID_LAYOUT_H_
#define LIMID_SRC_LIMID_LAYOUT_H_

#include <stdbool.h>
#include <stdint.h>

#include "limid/limid.h"

#define LIMID_TYPE_SHIFT 24u
#define LIMID_INDEX_MASK 0xFFFFFFu
#define LIMID_BD_TYPE_SHIFT 20u
#define LIMID_BD_TYPE_MASK 0xFu
#define LIMID_BD_INDEX_MASK 0xFFFFFu
#define LIMID_IFINDEX_TYPE_BITS 4u
#define LIMID_IFINDEX_TYPE_MASK 0xFu
#define LIMID_IFINDEX_LIMIT (1u << 28)

/* Whether `type` names a real interface type. */
static inline bool limid_type_is_valid(uint32_t type) {
  return type >= limid_type_ethernet && type <= limid_type_cpu;
}

/* One interface-name prefix: the type it names and, for a bridge domain, the
 * bridge-domain type (0 for every other type). The number after the prefix
 * is the index, or for a bridge domain its bridge-domain index. */
typedef struct {
  const char* prefix;
  limid_type_t type;
  uint32_t bd_type;
} limid_name_kind;

static const limid_name_kind kLimidNameKinds[] = {
    {"eth", limid_type_ethernet, 0},
    {"lag", limid_type_lag, 0},
    {"vpws", limid_type_mpls_vpws, 0},
    {"bd", limid_type_bridgedomain, limid_bridgedomain_type_vlan},
    {"vpls", limid_type_bridgedomain, limid_bridgedomain_type_vpls},
    {"cpu", limid_type_cpu, 0},
};

#define LIMID_NAME_KIND_COUNT \
  (sizeof(kLimidNameKinds) / sizeof(kLimidNameKinds[0]))

/* The prefix and number of the name of `limid`: 0 on success, -1 when the
 * type (or a bridge domain's bridge-domain type) has no name. */
static inline int limid_name_parts(limid_t limid, const char** prefix,
                                   uint32_t* number) {
  limid_type_t type = (limid_type_t)(limid >> LIMID_TYPE_SHIFT);
  uint32_t index = limid & LIMID_INDEX_MASK;
  uint32_t bd_type = 0;
  if (type == limid_type_bridgedomain) {
    bd_type = index >> LIMID_BD_TYPE_SHIFT;
    index &= LIMID_BD_INDEX_MASK;
  }
  for (size_t i = 0; i < LIMID_NAME_KIND_COUNT; ++i) {
    if (kLimidNameKinds[i].type == type &&
        kLimidNameKinds[i].bd_type == bd_type) {
      *prefix = kLimidNameKinds[i].prefix;
      *number = index;
      return 0;
    }
  }
  return -1;
}

#endif /* LIMID_SRC_LIMID_LAYOUT_H_ */
