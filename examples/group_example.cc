// Builds a filter group with the C++ classes, validates its entries, explains
// the one it refuses, serializes the group, reads it back and prints it.
//
// Exits with 0 when every step did what it should.

#include <arpa/inet.h>

#include <iostream>
#include <list>
#include <string>

#include "FiltersCommon/filters_common.h"

using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersGroup;

namespace {

in_addr ipv4(const char* text) {
  in_addr address{};
  inet_pton(AF_INET, text, &address);
  return address;
}

}  // namespace

int main() {
  // A new group is in stage 0 with type 0, which allows no match: set the
  // stage and the type first.
  FiltersGroup group(20);
  group.setPriority(5);
  if (group.setStage(FiltersCommon::FILTERS_STAGE_INGRESS) != 0 ||
      group.setType(FiltersCommon::FILTERS_TYPE_IPV4) != 0) {
    std::cerr << "stage 2 and type 10 should fit each other\n";
    return 1;
  }

  // Drop traffic from 198.51.100.0/24 arriving on eth7, and count it.
  FiltersEntry block(1);
  block.setPriority(200);
  block.setMatch(FiltersCommon::MatchIngressPorts(
      std::list<limid_t>{limid_make(limid_type_ethernet, 7)}));
  block.setMatch(
      FiltersCommon::MatchSrcIPv4(ipv4("198.51.100.0"), ipv4("255.255.255.0")));
  block.setAction(FiltersCommon::ActionDeny());
  block.setCounter(
      FiltersCommon::Counter(1, FiltersCommon::COUNTER_TYPE_PACKETS));

  // Steer traffic to 203.0.113.5 to CPU queue 3.
  FiltersEntry toCpu(2);
  toCpu.setPriority(100);
  toCpu.setMatch(FiltersCommon::MatchDstIPv4(ipv4("203.0.113.5")));
  toCpu.setAction(FiltersCommon::ActionCopyToCpu());
  toCpu.setAction(FiltersCommon::ActionMapToCpuCosQueue(3));

  // Type 10 keys on addresses and ports only: a layer-4 match does not fit.
  FiltersEntry web(3);
  web.setMatch(FiltersCommon::MatchDstL4Port(80));
  web.setAction(FiltersCommon::ActionPermit());

  for (const FiltersEntry* entry : {&block, &toCpu, &web}) {
    const FiltersCommon::EntryExplanation why =
        FiltersCommon::explainEntry(group, *entry);
    const FiltersCommon::filtersErr_t code = group.insertEntry(*entry);
    std::cout << "insertEntry(entry " << entry->getId() << ") = " << code
              << " (" << FiltersCommon::filtersErrName(code)
              << "): " << why.message << '\n';
    if (code != why.code) return 1;
  }
  if (group.getEntriesRef().size() != 2) return 1;

  std::string bytes;
  group.serialize(&bytes);
  const FiltersGroup received(bytes);
  std::cout << "serialized to " << bytes.size() << " bytes; read back "
            << (received == group ? "equal" : "DIFFERENT") << "\n\n"
            << received;
  return received == group ? 0 : 1;
}
