/* Compiles the match value types as C11: every enumeration is 32 bits wide
 * and carries values beyond the named ones; the aliases are 16 bits. */
#include "FiltersCommon/filter_match_types.h"

_Static_assert(CPU_PORT == 0, "the CPU port type is 0");
_Static_assert(VLAN_TAGGING_UNTAGGED == 0, "untagged is 0");
_Static_assert(sizeof(port_type_t) == 4, "32-bit enumeration");
_Static_assert(sizeof(vlan_tagging_t) == 4, "32-bit enumeration");
_Static_assert(sizeof(l2SrcEntryType_t) == 4, "32-bit enumeration");
_Static_assert(sizeof(en_Resolution) == 4, "32-bit enumeration");
_Static_assert(sizeof(en_StpState) == 4, "32-bit enumeration");
_Static_assert(sizeof(en_ForwardingType) == 4, "32-bit enumeration");
_Static_assert(sizeof(vlan_info_t) == 8, "two 32-bit fields");
_Static_assert(sizeof(tpid_t) == 2 && (tpid_t)0x18100 == 0x8100, "16-bit TPID");
_Static_assert(sizeof(l4port_t) == 2, "16-bit layer-4 port");

int main(void) {
  port_type_t const beyond_named = (port_type_t)123456;
  vlan_info_t const info = {1u, 0xFFFFFFFFu};
  return (beyond_named == (port_type_t)123456 && info.svcVlanType == 1u &&
          info.protoCpuVlanType == 0xFFFFFFFFu)
             ? 0
             : 1;
}
