/*
 * Builds a filter group through the C interface, validates its entries,
 * explains the one it refuses, serializes the group, reads it back and
 * prints it.
 *
 * Exits with 0 when every step did what it should.
 */
#define _POSIX_C_SOURCE 200809L

#include <arpa/inet.h>
#include <stdio.h>
#include <stdlib.h>

#include "FiltersCommon/filter_explain_c.h"
#include "FiltersCommon/filter_wire_c.h"
#include "FiltersCommon/filters_common_c.h"

/* Gives `entry` a copy of `match` and of `action`, then frees both handles:
 * the entry keeps its own copies. */
static int fill(FiltersEntry* entry, void* match, void* action) {
  int failed = filtersEntrySetMatch(entry, match) != FILTERS_OK ||
               filtersEntrySetAction(entry, action) != FILTERS_OK;
  deleteMatch(match);
  deleteAction(action);
  return failed;
}

static struct in_addr ipv4(const char* text) {
  struct in_addr address;
  inet_pton(AF_INET, text, &address);
  return address;
}

int main(void) {
  int failed = 0;
  FiltersGroup* group = newFiltersGroup(30);
  filtersGroupSetPriority(group, 5);
  /* A new group has type 0, which allows no match: stage, then type. */
  filtersGroupSetStage(group, FILTERS_STAGE_INGRESS);
  failed |= filtersGroupSetType(group, FILTERS_TYPE_IPV4) != FILTERS_OK;

  /* Deny traffic from 192.0.2.0/24; permit traffic arriving on eth3; and a
   * destination MAC match, which type 10 does not key on. */
  FiltersEntry* entries[3];
  limid_t port = limid_make(limid_type_ethernet, 3);
  struct ether_addr mac = {{0x02, 0x00, 0x00, 0x00, 0x00, 0x01}};
  entries[0] = newFiltersEntry(1);
  filtersEntrySetPriority(entries[0], 200);
  failed |= fill(entries[0],
                 newMatchSrcIPv4Mask(ipv4("192.0.2.0"), ipv4("255.255.255.0")),
                 newActionDeny());
  entries[1] = newFiltersEntry(2);
  filtersEntrySetPriority(entries[1], 100);
  failed |= fill(entries[1], newMatchIngressPorts(&port, 1), newActionPermit());
  entries[2] = newFiltersEntry(3);
  failed |= fill(entries[2], newMatchDstMac(mac), newActionCopyToCpu());

  for (int i = 0; i < 3; ++i) {
    filtersExplanation_t why;
    filtersErr_t explained = filtersGroupExplainEntry(group, entries[i], &why);
    filtersErr_t code = filtersGroupInsertEntry(group, entries[i]);
    printf("filtersGroupInsertEntry(entry %u) = %d (%s): %s\n",
           (unsigned)filtersEntryGetId(entries[i]), (int)code,
           filtersErrName(code), why.message);
    failed |= code != explained;
    deleteFiltersEntry(entries[i]);
  }

  size_t size = 0;
  uint8_t* bytes = filtersGroupSerialize(group, &size);
  FiltersGroup* received = newFiltersGroupFromBytes(bytes, size);
  free(bytes);
  if (received == NULL) {
    deleteFiltersGroup(group);
    return 1;
  }

  entriesStruct held;
  filtersGroupGetEntries(received, &held);
  printf("serialized to %zu bytes; read back group %u with %d entries:", size,
         (unsigned)filtersGroupGetId(received), (int)held.count);
  for (int32_t i = 0; i < held.count; ++i) {
    printf(" %u (priority %u)", (unsigned)held.ids[i],
           (unsigned)filtersEntryGetPriority(held.entries[i]));
  }
  printf("\n\n");
  failed |= held.count != 2 || filtersGroupGetStage(received) != 2 ||
            filtersGroupGetType(received) != 10;
  deleteFiltersEntriesStruct(&held);

  char* text = filtersGroupDump(received);
  fputs(text, stdout);
  free(text);
  deleteFiltersGroup(received);
  deleteFiltersGroup(group);
  return failed;
}
