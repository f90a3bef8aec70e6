// Our group against the protocol-buffers runtime on the same content:
// loading, writing, copying and dumping a workload group, each side by side
// with what the runtime does with the same message, plus how the time per
// entry of insertEntry and of a load grows from a small group to a large one.
//
//   compare_bench [--quick] [--rounds N]
//
// --quick shrinks the groups (100, 1,000 and 4,096 entries instead of 1,000,
// 10,000 and 65,536, figure names unchanged) and runs one round: it only
// shows that the program works.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "FiltersCommon/filter_groups.h"
#include "filter_groups.pb.h"
#include "side_by_side.h"
#include "workload.h"

namespace {

using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;

constexpr uint32_t kSeed = 1;

// How many calls make a batch of about `seconds`, judged from one call.
int repsFor(const std::function<void()>& work, double seconds) {
  const double once = FiltersBench::timeIt(work, 1);
  if (once <= 0) return 1000;
  return std::clamp(static_cast<int>(seconds / once), 1, 1000);
}

// What a batch made and must outlive the timing.
struct Kept {
  std::vector<std::unique_ptr<FiltersGroup>> groups;
  std::vector<std::unique_ptr<FiltersGroupPB>> messages;
  std::vector<std::string> strings;
  void clear() {
    groups.clear();
    messages.clear();
    strings.clear();
  }
};

struct Sizes {
  uint32_t small;
  uint32_t mid;
  uint32_t large;
};

std::function<void()> loadOurs(const std::string& bytes, Kept& kept) {
  return [&bytes, &kept] {
    kept.groups.push_back(std::make_unique<FiltersGroup>(bytes));
  };
}

std::function<void()> parseBase(const std::string& bytes, Kept& kept) {
  return [&bytes, &kept] {
    auto message = std::make_unique<FiltersGroupPB>();
    message->ParseFromString(bytes);
    kept.messages.push_back(std::move(message));
  };
}

void loadAndStore(FiltersBench::Figures& figures, uint32_t count,
                  const std::string& suffix, double batch, Kept& kept) {
  const std::string bytes = FiltersWorkload::makeGroupBytes(count, kSeed);
  const auto ours = loadOurs(bytes, kept);
  const auto base = parseBase(bytes, kept);
  const auto cleanup = [&kept] { kept.clear(); };
  figures.compare("load-" + suffix, 1.2, ours, repsFor(ours, batch), base,
                  repsFor(base, batch), cleanup);
  cleanup();

  const FiltersGroup group(bytes);
  const FiltersGroupPB message = group.convertToFiltersGroupPB();
  const auto store = [&group, &kept] {
    std::string out;
    group.serialize(&out);
    kept.strings.push_back(std::move(out));
  };
  const auto serialize = [&message, &kept] {
    std::string out;
    message.SerializeToString(&out);
    kept.strings.push_back(std::move(out));
  };
  figures.compare("store-" + suffix, 1.5, store, repsFor(store, batch),
                  serialize, repsFor(serialize, batch), cleanup);
  cleanup();
}

void copyAndDump(FiltersBench::Figures& figures, uint32_t count,
                 const std::string& suffix, double batch, Kept& kept) {
  const std::string bytes = FiltersWorkload::makeGroupBytes(count, kSeed);
  const FiltersGroup group(bytes);
  FiltersGroupPB message;
  message.ParseFromString(bytes);
  const auto cleanup = [&kept] { kept.clear(); };

  const auto copy = [&group, &kept] {
    kept.groups.push_back(std::make_unique<FiltersGroup>(group));
  };
  const auto copyFrom = [&message, &kept] {
    auto target = std::make_unique<FiltersGroupPB>();
    target->CopyFrom(message);
    kept.messages.push_back(std::move(target));
  };
  figures.compare("copy-" + suffix, 0.7, copy, repsFor(copy, batch), copyFrom,
                  repsFor(copyFrom, batch), cleanup);
  cleanup();

  const auto dump = [&group, &kept] {
    std::ostringstream out;
    out << group;
    kept.strings.push_back(out.str());
  };
  const auto debugString = [&message, &kept] {
    kept.strings.push_back(message.DebugString());
  };
  figures.compare("dump-" + suffix, 0.5, dump, repsFor(dump, batch),
                  debugString, repsFor(debugString, batch), cleanup);
  cleanup();
}

// Inserting prepared entries one by one into an empty group.
std::function<void()> insertAll(const std::vector<FiltersEntry>& entries,
                                Kept& kept) {
  return [&entries, &kept] {
    auto group = std::make_unique<FiltersGroup>(FiltersWorkload::kGroupId);
    group->setStage(FiltersWorkload::kStage);
    group->setType(FiltersWorkload::kType);
    for (const FiltersEntry& entry : entries) group->insertEntry(entry);
    kept.groups.push_back(std::move(group));
  };
}

void growth(FiltersBench::Figures& figures, const Sizes& sizes, double batch,
            Kept& kept) {
  const auto cleanup = [&kept] { kept.clear(); };
  const double scale = static_cast<double>(sizes.small) / sizes.large;
  {
    const auto large = FiltersWorkload::makeEntries(sizes.large, kSeed);
    const auto small = FiltersWorkload::makeEntries(sizes.small, kSeed);
    const auto ours = insertAll(large, kept);
    const auto base = insertAll(small, kept);
    figures.compare("insert-65536-vs-1000", 1.3, ours, repsFor(ours, batch),
                    base, repsFor(base, batch), cleanup, scale);
    cleanup();
  }
  const std::string large = FiltersWorkload::makeGroupBytes(sizes.large, kSeed);
  const std::string small = FiltersWorkload::makeGroupBytes(sizes.small, kSeed);
  const auto ours = loadOurs(large, kept);
  const auto base = loadOurs(small, kept);
  figures.compare("load-65536-vs-1000", 1.3, ours, repsFor(ours, batch), base,
                  repsFor(base, batch), cleanup, scale);
  cleanup();
}

}  // namespace

int main(int argc, char** argv) {
  bool quick = false;
  int rounds = 7;
  if (!FiltersBench::parseArgs(argc, argv, &quick, &rounds)) {
    std::fprintf(stderr, "usage: compare_bench [--quick] [--rounds N]\n");
    return 2;
  }
  Sizes sizes{1000, 10000, 65536};
  double batch = 0.2;
  if (quick) {
    sizes = Sizes{100, 1000, 4096};
    rounds = 1;
    batch = 0.02;
  }
  std::printf("%d round(s); groups of %u, %u and %u entries%s\n", rounds,
              sizes.small, sizes.mid, sizes.large,
              quick ? " (quick: sizes reduced, figures not comparable)" : "");
  FiltersBench::Figures figures(rounds);
  Kept kept;
  loadAndStore(figures, sizes.mid, "10000", batch, kept);
  loadAndStore(figures, sizes.large, "65536", batch, kept);
  copyAndDump(figures, sizes.mid, "10000", batch, kept);
  growth(figures, sizes, batch, kept);
  figures.print("ours ms");
  return 0;
}
