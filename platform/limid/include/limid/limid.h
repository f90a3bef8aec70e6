/* Logical interface identifiers (limid).
 *
 * A limid_t names one logical interface of the switch: bits 31..24 hold the
 * interface type code, bits 23..0 the index within that type. A bridge
 * domain's index is split further: its bridge-domain type in bits 23..20 and
 * its bridge-domain index in bits 19..0.
 *
 * Two libraries implement this header: limidmgr_decode reads identifiers,
 * limidmgr_encode builds them. Every function is pure (no shared state), so
 * all of them are safe to call from any thread.
 *
 * Plain C11, usable from C++ as well. */
#ifndef LIMID_LIMID_H_
#define LIMID_LIMID_H_

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

/* The libraries are built with hidden visibility; this marks their API. */
#define LIMID_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t limid_t;

/* The interface type code. Kept one byte wide: C enumerations have the size
 * of an int, so the codes are enumeration constants of an anonymous enum and
 * the type itself is an 8-bit integer. */
typedef uint8_t limid_type_t;

enum {
  limid_type_invalid = 0,
  limid_type_ethernet = 1,
  limid_type_lag = 2,
  limid_type_mpls_vpws = 3,
  limid_type_bridgedomain = 4,
  limid_type_cpu = 5
};

/* Bridge-domain types, stored in bits 23..20 of a bridge domain's index.
 * Macros so that they stay 32-bit constant expressions in C as well. */
#define limid_bridgedomain_type_vlan ((uint32_t)1)
#define limid_bridgedomain_type_vpls ((uint32_t)2)

/* ---- liblimidmgr_decode ---- */

/* The type code, bits 31..24. */
LIMID_EXPORT limid_type_t limid_get_type(limid_t limid);

/* The index within the type, bits 23..0. */
LIMID_EXPORT uint32_t limid_get_index(limid_t limid);

/* Whether the type code equals `type`. */
LIMID_EXPORT bool limid_is_from_type(limid_t limid, limid_type_t type);

/* Whether the type code is limid_type_ethernet. */
LIMID_EXPORT bool limid_is_from_type_ethernet(limid_t limid);

/* For a bridge domain: 0, and its bridge-domain type and index in the outputs.
 * Otherwise -1, and the outputs are left untouched. */
LIMID_EXPORT int limid_to_bridgedomain_components(limid_t limid,
                                                  uint32_t* bdType,
                                                  uint32_t* bdIndex);

/* Negative, 0 or positive as `a` is below, equal to or above `b`, in the
 * unsigned order of the 32-bit values. */
LIMID_EXPORT int limid_compare(limid_t a, limid_t b);

/* 0 and (index << 4) | type in `ifindex`; -1 for an invalid type. */
LIMID_EXPORT int limid_to_ifindex(limid_t limid, uint32_t* ifindex);

/* 0 and the interface name ("eth3", "lag1", "vpws7", "bd10", "vpls2",
 * "cpu0") in `buf`. The name is always zero-terminated within `len`, and
 * truncated to fit. -1 and an empty string (when len > 0) for an invalid or
 * unknown type, including a bridge domain of an unknown bridge-domain type. */
LIMID_EXPORT int limid_to_intfname(limid_t limid, char* buf, size_t len);

/* ---- liblimidmgr_encode ---- */

/* (type << 24) | (index & 0xFFFFFF). */
LIMID_EXPORT limid_t limid_make(limid_type_t type, uint32_t index);

/* A bridge domain of bridge-domain type `bdType` (4 bits) and bridge-domain
 * index `bdIndex` (20 bits); excess bits are dropped. */
LIMID_EXPORT limid_t limid_make_bridgedomain(uint32_t bdType, uint32_t bdIndex);

/* 0 and the identifier whose ifindex is `ifindex`; -1 when the low nibble is
 * no valid type or `ifindex` is 2^28 or more. */
LIMID_EXPORT int limid_from_ifindex(uint32_t ifindex, limid_t* out);

/* 0 and the identifier named `name`, for every name limid_to_intfname
 * writes; -1 (and `out` untouched) for anything else. */
LIMID_EXPORT int limid_from_intfname(const char* name, limid_t* out);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* LIMID_LIMID_H_ */
