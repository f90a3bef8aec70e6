// The workload the benchmarks measure and the tests and fuzzers can reuse: an
// ingress group (stage 2) of IPv4-and-L4 type (type 3) whose entries look like
// the rules of a real access list.
//
// Each entry has an ingress-ports match of 2 to 4 Ethernet ports, a masked
// source IPv4, a destination IPv4, an IP-protocol and a destination L4-port
// match; permit or deny plus a CoS-queue action (every fifth entry also
// copies to the CPU); a packet and an octet counter; and an ingress
// single-rate policer that drops red packets.
//
// Everything is derived from the seed alone, with a generator of our own, so
// the same (count, seed) gives the same entries and bytes on every machine and
// standard library. The functions are pure and may be called from any thread.
#ifndef FILTERS_BENCH_WORKLOAD_H_
#define FILTERS_BENCH_WORKLOAD_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"

namespace FiltersWorkload {

// The group's identifier, stage and type.
constexpr FiltersCommon::filtersGroupId_t kGroupId = 1;
constexpr FiltersCommon::filtersGroupStage_t kStage =
    FiltersCommon::FILTERS_STAGE_INGRESS;
constexpr FiltersCommon::filtersGroupType_t kType =
    FiltersCommon::FILTERS_TYPE_IPV4_L4;

// `count` entries with identifiers 1 to `count` (distinct), in that order.
std::vector<FiltersCommon::FiltersEntry> makeEntries(uint32_t count,
                                                     uint32_t seed);

// The group holding makeEntries(count, seed), every entry admitted.
std::unique_ptr<FiltersCommon::FiltersGroup> makeGroup(uint32_t count,
                                                       uint32_t seed);

// The serialized bytes of makeGroup(count, seed).
std::string makeGroupBytes(uint32_t count, uint32_t seed);

}  // namespace FiltersWorkload

#endif  // FILTERS_BENCH_WORKLOAD_H_
