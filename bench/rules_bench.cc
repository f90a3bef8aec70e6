// Rule text against the wire form: printing a 65,536-entry group as rule
// text and compiling that text back, beside loading the same group from its
// message bytes (the path every receiver runs).
#include <arpa/inet.h>
#include <benchmark/benchmark.h>

#include <list>
#include <string>

#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filters_common.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace FiltersCommon {
namespace {

constexpr int kEntries = 65536;

// An ingress IPv4/L4 group (stage 2, type 3): each entry has ports, VLANs,
// addresses with a prefix, a destination port, a protocol, two actions, a
// counter and, every fourth, an ingress policer.
FiltersGroup MakeGroup(int n) {
  FiltersGroup group(1);
  group.setStage(FILTERS_STAGE_INGRESS);
  group.setType(FILTERS_TYPE_IPV4_L4);
  for (int i = 0; i < n; ++i) {
    FiltersEntry entry(static_cast<filtersEntryId_t>(i));
    entry.setPriority(static_cast<filtersEntryPriority_t>(n - i));
    entry.setMatch(MatchIngressPorts(
        std::list<limid_t>{limid_make(limid_type_ethernet, 1 + i % 48),
                           limid_make(limid_type_lag, 1 + i % 8)}));
    entry.setMatch(MatchExternalVlanId(
        std::set<uint16_t>{static_cast<uint16_t>(1 + i % 4000), 4001}));
    entry.setMatch(MatchSrcIPv4(in_addr{htonl(0x0a000000u + (i << 8))},
                                in_addr{htonl(0xffffff00u)}));
    entry.setMatch(MatchDstIPv4(in_addr{htonl(0xc0a80000u + i)}));
    entry.setMatch(MatchDstL4Port(static_cast<uint16_t>(i)));
    entry.setMatch(MatchIpProtocol(i % 2 ? 6 : 17));
    entry.setAction(i % 2 ? static_cast<const Action&>(ActionDeny())
                          : static_cast<const Action&>(ActionPermit()));
    entry.setAction(ActionMapToCosQueue(static_cast<unsigned char>(i % 8)));
    entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
    if (i % 4 == 0) {
      entry.setPolicer(
          policer::Policer(static_cast<uint32_t>(i), policer::STAGE_INGRESS,
                           policer::Mode::SrTcm(1000, 2000, 3000),
                           {policer::Action::Drop(policer::COLOR_RED)}));
    }
    group.insertEntry(entry);
  }
  return group;
}

const FiltersGroup& Group() {
  static const FiltersGroup group = MakeGroup(kEntries);
  return group;
}

void BM_LoadFromBytes(benchmark::State& state) {
  std::string bytes;
  Group().serialize(&bytes);
  for (auto _ : state) {
    FiltersGroup group(bytes);
    benchmark::DoNotOptimize(group);
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
  state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_LoadFromBytes)->Unit(benchmark::kMillisecond);

void BM_PrintRules(benchmark::State& state) {
  const FiltersGroup& group = Group();
  std::size_t size = 0;
  for (auto _ : state) {
    const std::string text = formatGroupRules(group);
    size = text.size();
    benchmark::DoNotOptimize(text);
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
  state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(BM_PrintRules)->Unit(benchmark::kMillisecond);

void BM_CompileRules(benchmark::State& state) {
  const std::string text = formatGroupRules(Group());
  for (auto _ : state) {
    auto group = compileGroupRules(text, "bench.rules", nullptr);
    if (group == nullptr) state.SkipWithError("the rule text did not compile");
    benchmark::DoNotOptimize(group);
  }
  state.SetItemsProcessed(state.iterations() * kEntries);
}
BENCHMARK(BM_CompileRules)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace FiltersCommon
