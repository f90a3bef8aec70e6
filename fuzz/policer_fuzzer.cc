// Any bytes must give a policer without throwing, and a policer rebuilt from
// its own serialization must equal it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "policer/policer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  policer::Policer p(bytes);
  if (!(policer::Policer(p.Serialize()) == p)) std::abort();
  return 0;
}
