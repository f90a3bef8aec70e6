// One sample object of every match class and every action class, so that
// tests can build entries holding any kind. Each sample carries the kind its
// class reports, written here independently of the library's tables.
#ifndef FILTERSCOMMON_TESTS_GROUPS_SAMPLES_H_
#define FILTERSCOMMON_TESTS_GROUPS_SAMPLES_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_types.h"

namespace groups_test {

struct KindSample {
  std::string name;  // the class, for failure messages
  int kind;          // the kind value the class reports
  // Stores a copy of the sample in the entry; returns the entry's code.
  std::function<FiltersCommon::filtersErr_t(FiltersCommon::FiltersEntry*)>
      addTo;
};

// The 40 match classes, MatchDSCP included (kind 20, beside MatchToS).
const std::vector<KindSample>& MatchSamples();
// The 21 action classes.
const std::vector<KindSample>& ActionSamples();

// An entry with `id` and `priority` and nothing else.
FiltersCommon::FiltersEntry EntryOf(uint32_t id, uint32_t priority);

// The sample of the class called `name`; aborts the test program when there
// is none.
const KindSample& MatchSample(const std::string& name);
const KindSample& ActionSample(const std::string& name);

}  // namespace groups_test

#endif  // FILTERSCOMMON_TESTS_GROUPS_SAMPLES_H_
