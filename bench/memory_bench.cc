// Heap held by a loaded group against heap held by the runtime's parsed
// message of the same bytes. Global operator new and delete are replaced to
// count the bytes the allocator hands out (malloc_usable_size, so rounding
// and per-block slack count as well); that is why this is a program of its
// own and the timing runs stay untouched.
//
//   memory_bench [--quick] [--rounds N]    (rounds are accepted and ignored:
//                                           the count is exact)
#include <malloc.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "FiltersCommon/filter_groups.h"
#include "filter_groups.pb.h"
#include "side_by_side.h"
#include "workload.h"

namespace {

std::atomic<long long> g_live{0};

void* allocate(std::size_t size) {
  void* p = std::malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  g_live += static_cast<long long>(malloc_usable_size(p));
  return p;
}

void release(void* p) noexcept {
  if (p == nullptr) return;
  g_live -= static_cast<long long>(malloc_usable_size(p));
  std::free(p);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocate(size);
  } catch (...) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocate(size);
  } catch (...) {
    return nullptr;
  }
}
void operator delete(void* p) noexcept { release(p); }
void operator delete[](void* p) noexcept { release(p); }
void operator delete(void* p, std::size_t) noexcept { release(p); }
void operator delete[](void* p, std::size_t) noexcept { release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { release(p); }

int main(int argc, char** argv) {
  bool quick = false;
  int rounds = 1;
  if (!FiltersBench::parseArgs(argc, argv, &quick, &rounds)) {
    std::fprintf(stderr, "usage: memory_bench [--quick] [--rounds N]\n");
    return 2;
  }
  const uint32_t count = quick ? 1000 : 10000;
  const std::string bytes = FiltersWorkload::makeGroupBytes(count, 1);

  long long before = g_live;
  auto group = std::make_unique<FiltersCommon::FiltersGroup>(bytes);
  const long long groupBytes = g_live - before;

  before = g_live;
  auto message = std::make_unique<FiltersCommon::FiltersGroupPB>();
  message->ParseFromString(bytes);
  const long long messageBytes = g_live - before;

  // Both must have read the whole group for the comparison to mean anything.
  if (group->getEntriesRef().size() != count ||
      message->entries__size() != static_cast<int>(count)) {
    std::fprintf(stderr, "memory_bench: the group did not load whole\n");
    return 1;
  }
  std::printf("groups of %u entries (%zu bytes on the wire)\n", count,
              bytes.size());
  FiltersBench::Figures figures(1);
  figures.record("memory-10000", 0.5, groupBytes / 1024.0,
                 messageBytes / 1024.0,
                 static_cast<double>(groupBytes) / messageBytes);
  figures.print("ours KiB");
  return 0;
}
