/* Building logical interface identifiers from their parts, from an ifindex
 * and from an interface name. */
#include <string.h>

#include "limid/limid.h"
#include "limid_layout.h"

limid_t limid_make(limid_type_t type, uint32_t index) {
  return ((limid_t)type << LIMID_TYPE_SHIFT) | (index & LIMID_INDEX_MASK);
}

limid_t limid_make_bridgedomain(uint32_t bdType, uint32_t bdIndex) {
  return limid_make(limid_type_bridgedomain,
                    ((bdType & LIMID_BD_TYPE_MASK) << LIMID_BD_TYPE_SHIFT) |
                        (bdIndex & LIMID_BD_INDEX_MASK));
}

int limid_from_ifindex(uint32_t ifindex, limid_t* out) {
  uint32_t type = ifindex & LIMID_IFINDEX_TYPE_MASK;
  if (ifindex >= LIMID_IFINDEX_LIMIT || !limid_type_is_valid(type)) return -1;
  if (out != NULL) {
    *out = limid_make((limid_type_t)type, ifindex >> LIMID_IFINDEX_TYPE_BITS);
  }
  return 0;
}

/* Parses the decimal number `digits` as limid_to_intfname writes it: at
 * least one digit, no sign, no leading zero, nothing after it, at most
 * `max`. 0 on success, -1 otherwise. */
static int parse_canonical_number(const char* digits, uint32_t max,
                                  uint32_t* value) {
  if (digits[0] == '\0') return -1;
  if (digits[0] == '0' && digits[1] != '\0') return -1;
  uint32_t result = 0;
  for (const char* p = digits; *p != '\0'; ++p) {
    if (*p < '0' || *p > '9') return -1;
    uint32_t digit = (uint32_t)(*p - '0');
    if (result > (max - digit) / 10) return -1; /* result*10+digit > max */
    result = result * 10 + digit;
  }
  *value = result;
  return 0;
}

int limid_from_intfname(const char* name, limid_t* out) {
  if (name == NULL) return -1;
  for (size_t i = 0; i < LIMID_NAME_KIND_COUNT; ++i) {
    const limid_name_kind* kind = &kLimidNameKinds[i];
    size_t prefix_len = strlen(kind->prefix);
    if (strncmp(name, kind->prefix, prefix_len) != 0) continue;
    int is_bd = kind->type == limid_type_bridgedomain;
    uint32_t number = 0;
    if (parse_canonical_number(name + prefix_len,
                               is_bd ? LIMID_BD_INDEX_MASK : LIMID_INDEX_MASK,
                               &number) != 0) {
      /* No prefix is a prefix of another, so no other kind can match. */
      return -1;
    }
    if (out != NULL) {
      *out = is_bd ? limid_make_bridgedomain(kind->bd_type, number)
                   : limid_make(kind->type, number);
    }
    return 0;
  }
  return -1;
}
