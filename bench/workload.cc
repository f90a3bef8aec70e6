#include "workload.h"

#include <arpa/inet.h>

#include <cstdlib>
#include <list>
#include <utility>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_matches.h"
#include "limid/limid.h"
#include "policer/policer.h"

namespace FiltersWorkload {
namespace {

using FiltersCommon::FiltersEntry;

// SplitMix64: tiny, fast and fully specified, unlike the standard library's
// distributions, whose results differ between implementations.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  uint64_t next() {
    uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
  }
  // A number in [low, high].
  uint32_t between(uint32_t low, uint32_t high) {
    return low + static_cast<uint32_t>(next() % (uint64_t{high} - low + 1));
  }

 private:
  uint64_t state_;
};

constexpr uint32_t kPortsPerSwitch = 64;
constexpr uint8_t kProtocols[] = {6, 17, 1, 47};

FiltersEntry makeEntry(uint32_t index, Random& rng) {
  FiltersEntry entry(index + 1);
  entry.setPriority(rng.between(1, 0xFFFF));

  // 2 to 4 distinct ports, in rising order as an operator would list them.
  const uint32_t portCount = rng.between(2, 4);
  uint32_t port = rng.between(1, kPortsPerSwitch - 3 * 8);
  std::list<limid_t> ports;
  for (uint32_t i = 0; i < portCount; ++i) {
    ports.push_back(limid_make(limid_type_ethernet, port));
    port += rng.between(1, 8);
  }
  entry.setMatch(FiltersCommon::MatchIngressPorts(ports));

  // A source subnet of /8 to /32 and a single destination host.
  const uint32_t prefix = rng.between(8, 32);
  const uint32_t mask = prefix == 32 ? 0xFFFFFFFFu : ~(0xFFFFFFFFu >> prefix);
  const auto source = static_cast<uint32_t>(rng.next()) & mask;
  entry.setMatch(FiltersCommon::MatchSrcIPv4(in_addr{htonl(source)},
                                             in_addr{htonl(mask)}));
  entry.setMatch(FiltersCommon::MatchDstIPv4(
      in_addr{htonl(static_cast<uint32_t>(rng.next()))}));
  entry.setMatch(FiltersCommon::MatchIpProtocol(
      kProtocols[rng.between(0, sizeof kProtocols - 1)]));
  entry.setMatch(FiltersCommon::MatchDstL4Port(
      static_cast<uint16_t>(rng.between(1, 0xFFFF))));

  if (rng.between(0, 1) == 0) {
    entry.setAction(FiltersCommon::ActionPermit());
  } else {
    entry.setAction(FiltersCommon::ActionDeny());
  }
  entry.setAction(FiltersCommon::ActionMapToCosQueue(
      static_cast<unsigned char>(rng.between(0, 7))));
  if (index % 5 == 4) entry.setAction(FiltersCommon::ActionCopyToCpu());

  // Two counters per entry, numbered after it.
  entry.setCounter(FiltersCommon::Counter(static_cast<uint16_t>(2 * index + 1),
                                          FiltersCommon::COUNTER_TYPE_PACKETS));
  entry.setCounter(FiltersCommon::Counter(static_cast<uint16_t>(2 * index + 2),
                                          FiltersCommon::COUNTER_TYPE_OCTETS));

  const uint32_t cir = rng.between(1, 100000) * 64;
  entry.setPolicer(
      policer::Policer(index + 1, policer::STAGE_INGRESS,
                       policer::Mode::SrTcm(cir, rng.between(1, 1024) * 1024,
                                            rng.between(1, 1024) * 1024),
                       {policer::Action::Drop(policer::COLOR_RED)}));
  return entry;
}

}  // namespace

std::vector<FiltersEntry> makeEntries(uint32_t count, uint32_t seed) {
  Random rng(seed);
  std::vector<FiltersEntry> entries;
  entries.reserve(count);
  for (uint32_t i = 0; i < count; ++i) entries.push_back(makeEntry(i, rng));
  return entries;
}

std::unique_ptr<FiltersCommon::FiltersGroup> makeGroup(uint32_t count,
                                                       uint32_t seed) {
  auto group = std::make_unique<FiltersCommon::FiltersGroup>(kGroupId);
  group->setStage(kStage);
  group->setType(kType);
  for (const FiltersEntry& entry : makeEntries(count, seed)) {
    // Every generated entry fits the group; anything else is a bug here.
    if (group->insertEntry(entry) != FiltersCommon::FILTERS_OK) std::abort();
  }
  return group;
}

std::string makeGroupBytes(uint32_t count, uint32_t seed) {
  std::string bytes;
  makeGroup(count, seed)->serialize(&bytes);
  return bytes;
}

}  // namespace FiltersWorkload
