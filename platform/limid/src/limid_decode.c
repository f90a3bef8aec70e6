/* Reading logical interface identifiers: type, index, bridge-domain
 * components, ifindex and interface name. */
#include "limid/limid.h"

#include <stdio.h>

#include "limid_layout.h"

limid_type_t limid_get_type(limid_t limid) {
  return (limid_type_t)(limid >> LIMID_TYPE_SHIFT);
}

uint32_t limid_get_index(limid_t limid) { return limid & LIMID_INDEX_MASK; }

bool limid_is_from_type(limid_t limid, limid_type_t type) {
  return limid_get_type(limid) == type;
}

bool limid_is_from_type_ethernet(limid_t limid) {
  return limid_is_from_type(limid, limid_type_ethernet);
}

int limid_to_bridgedomain_components(limid_t limid, uint32_t* bdType,
                                     uint32_t* bdIndex) {
  if (!limid_is_from_type(limid, limid_type_bridgedomain)) return -1;
  uint32_t index = limid_get_index(limid);
  if (bdType != NULL) *bdType = index >> LIMID_BD_TYPE_SHIFT;
  if (bdIndex != NULL) *bdIndex = index & LIMID_BD_INDEX_MASK;
  return 0;
}

int limid_compare(limid_t a, limid_t b) { return (a > b) - (a < b); }

int limid_to_ifindex(limid_t limid, uint32_t* ifindex) {
  limid_type_t type = limid_get_type(limid);
  if (!limid_type_is_valid(type)) return -1;
  if (ifindex != NULL) {
    *ifindex = (limid_get_index(limid) << LIMID_IFINDEX_TYPE_BITS) | type;
  }
  return 0;
}

int limid_to_intfname(limid_t limid, char* buf, size_t len) {
  const char* prefix = NULL;
  uint32_t number = 0;
  if (limid_name_parts(limid, &prefix, &number) != 0) {
    if (buf != NULL && len > 0) buf[0] = '\0';
    return -1;
  }
  /* snprintf truncates and zero-terminates within len; len == 0 writes
   * nothing at all. */
  if (buf == NULL) len = 0;
  snprintf(buf, len, "%s%lu", prefix, (unsigned long)number);
  return 0;
}
