// Loading, writing and printing large groups: the paths the process that
// programs the hardware runs for every table it receives.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/ether.h>

#include <list>
#include <sstream>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"
#include "filter_groups.pb.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace FiltersCommon {
namespace {

// An ingress IPv4 group (stage 2, type 10) of `n` entries, each with ports,
// addresses, two actions, a counter and an ingress policer.
FiltersGroup MakeGroup(int n) {
  FiltersGroup group(1);
  group.setStage(FILTERS_STAGE_INGRESS);
  group.setType(FILTERS_TYPE_IPV4);
  for (int i = 0; i < n; ++i) {
    FiltersEntry entry(static_cast<filtersEntryId_t>(i));
    entry.setPriority(static_cast<filtersEntryPriority_t>(n - i));
    std::list<limid_t> ports{limid_make(limid_type_ethernet, 1 + i % 48),
                             limid_make(limid_type_ethernet, 2 + i % 48)};
    entry.setMatch(MatchIngressPorts(ports));
    in_addr src{htonl(0x0a000000u + static_cast<uint32_t>(i))};
    in_addr dst{htonl(0xc0a80000u + static_cast<uint32_t>(i % 65536))};
    entry.setMatch(MatchSrcIPv4(src));
    entry.setMatch(MatchDstIPv4(dst, in_addr{htonl(0xffffff00u)}));
    entry.setAction(i % 2 ? static_cast<const Action&>(ActionDeny())
                          : static_cast<const Action&>(ActionPermit()));
    entry.setAction(ActionMapToCosQueue(static_cast<unsigned char>(i % 8)));
    entry.setCounter(Counter(1, static_cast<counter_type_t>(1)));
    entry.setPolicer(
        policer::Policer(static_cast<uint32_t>(i), policer::STAGE_INGRESS,
                         policer::Mode::SrTcm(1000, 2000, 3000),
                         {policer::Action::Drop(policer::COLOR_RED)}));
    group.insertEntry(entry);
  }
  return group;
}

std::string GroupBytes(int n) {
  std::string bytes;
  MakeGroup(n).serialize(&bytes);
  return bytes;
}

void BM_GroupLoadFromBytes(benchmark::State& state) {
  const std::string bytes = GroupBytes(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    FiltersGroup group(bytes);
    benchmark::DoNotOptimize(group);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetBytesProcessed(state.iterations() *
                          static_cast<int64_t>(bytes.size()));
}
BENCHMARK(BM_GroupLoadFromBytes)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond);

// The straightforward load through the public API: build each entry, then
// insert a copy of it. The library's loader must beat this.
void BM_GroupLoadByInsertEntry(benchmark::State& state) {
  const std::string bytes = GroupBytes(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    FiltersGroupPB pb;
    pb.ParseFromString(bytes);
    FiltersGroup group(static_cast<filtersGroupId_t>(pb.id_()));
    group.setStage(static_cast<filtersGroupStage_t>(pb.stage_()));
    group.setType(static_cast<filtersGroupType_t>(pb.type_()));
    for (const FiltersEntryPB& entry_pb : pb.entries_()) {
      FiltersEntry entry;
      entry.convertFromFiltersEntryPB(&entry_pb);
      group.insertEntry(entry);
    }
    benchmark::DoNotOptimize(group);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GroupLoadByInsertEntry)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond);

// One entry read from its bytes, the unit of work of every group load.
void BM_EntryLoadFromBytes(benchmark::State& state) {
  const FiltersGroup group = MakeGroup(1);
  std::string bytes;
  group.getEntriesRef().begin()->second.serialize(&bytes);
  for (auto _ : state) {
    FiltersEntry entry(bytes);
    benchmark::DoNotOptimize(entry);
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_EntryLoadFromBytes);

void BM_GroupSerialize(benchmark::State& state) {
  const FiltersGroup group = MakeGroup(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::string bytes;
    group.serialize(&bytes);
    benchmark::DoNotOptimize(bytes);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GroupSerialize)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_GroupCopy(benchmark::State& state) {
  const FiltersGroup group = MakeGroup(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    FiltersGroup copy(group);
    benchmark::DoNotOptimize(copy);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GroupCopy)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_GroupDump(benchmark::State& state) {
  const FiltersGroup group = MakeGroup(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::ostringstream out;
    out << group;
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_GroupDump)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace FiltersCommon
