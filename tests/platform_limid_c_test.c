/* The limid header used from plain C: the type codes and bridge-domain types
 * are constant expressions, and the functions link and work. */
#include <stdio.h>
#include <string.h>

#include "limid/limid.h"

/* Constant expressions in C: usable as array sizes and case labels. */
static const char* const kBdPrefix[limid_bridgedomain_type_vpls + 1] = {
    NULL, "bd", "vpls"};

static int type_is_lag(limid_t limid) {
  switch (limid_get_type(limid)) {
    case limid_type_lag:
      return 1;
    default:
      return 0;
  }
}

#define CHECK(expr)                                                      \
  do {                                                                   \
    if (!(expr)) {                                                       \
      fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #expr); \
      return 1;                                                          \
    }                                                                    \
  } while (0)

int main(void) {
  char name[16];
  limid_t limid = limid_make(limid_type_lag, 12);
  limid_t back = 0;
  uint32_t ifindex = 0;
  uint32_t bd_type = 0;
  uint32_t bd_index = 0;

  CHECK(type_is_lag(limid));
  CHECK(limid_is_from_type(limid, limid_type_lag));
  CHECK(!limid_is_from_type_ethernet(limid));
  CHECK(limid_to_intfname(limid, name, sizeof(name)) == 0);
  CHECK(strcmp(name, "lag12") == 0);
  CHECK(limid_from_intfname(name, &back) == 0 && back == limid);
  CHECK(limid_to_ifindex(limid, &ifindex) == 0 && ifindex == 0xC2);
  CHECK(limid_from_ifindex(ifindex, &back) == 0 && back == limid);

  limid = limid_make_bridgedomain(limid_bridgedomain_type_vpls, 4);
  CHECK(limid_to_bridgedomain_components(limid, &bd_type, &bd_index) == 0);
  CHECK(bd_type == limid_bridgedomain_type_vpls && bd_index == 4);
  CHECK(limid_to_intfname(limid, name, sizeof(name)) == 0);
  CHECK(strncmp(name, kBdPrefix[bd_type], strlen(kBdPrefix[bd_type])) == 0);
  CHECK(limid_compare(limid, limid) == 0);
  CHECK(limid_to_intfname(limid_make(limid_type_invalid, 1), name,
                          sizeof(name)) == -1);
  CHECK(name[0] == '\0');
  return 0;
}
