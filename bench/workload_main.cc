// filters-workload COUNT SEED FILE: writes the bytes of the workload group of
// COUNT entries made from SEED to FILE ("-" for standard output).
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "workload.h"

namespace {

bool parseNumber(const char* text, uint32_t* value) {
  errno = 0;
  char* end = nullptr;
  const unsigned long long parsed = std::strtoull(text, &end, 10);
  if (errno != 0 || end == text || *end != '\0' || text[0] == '-' ||
      parsed > UINT32_MAX) {
    return false;
  }
  *value = static_cast<uint32_t>(parsed);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  uint32_t count = 0;
  uint32_t seed = 0;
  if (argc != 4 || !parseNumber(argv[1], &count) ||
      !parseNumber(argv[2], &seed)) {
    std::cerr << "usage: filters-workload COUNT SEED FILE\n";
    return 2;
  }
  const std::string bytes = FiltersWorkload::makeGroupBytes(count, seed);
  const std::string path = argv[3];
  if (path == "-") {
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::cout.flush();
    return std::cout ? 0 : 1;
  }
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) {
    std::cerr << "filters-workload: cannot write " << path << '\n';
    return 1;
  }
  return 0;
}
