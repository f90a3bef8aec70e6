// Rule text round trip over random entries and groups: compiling the printed
// text gives back an equal object with the same dump, and printing that
// object gives the same text again.

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "FiltersCommon/filter_rules.h"
#include "rules_test_support.h"

namespace {

using FiltersCommon::compileEntryRule;
using FiltersCommon::compileGroupRules;
using FiltersCommon::formatEntryRule;
using FiltersCommon::formatGroupRules;
using FiltersCommon::RuleError;

template <class T>
std::string dump(const T& object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

std::string joined(const std::vector<RuleError>& errors) {
  std::string text;
  for (const RuleError& e : errors) text += e.toString() + "\n";
  return text;
}

// What the random objects held, so that the test can tell it covered every
// kind and every odd value it is meant to.
struct Coverage {
  std::set<int> matchKinds;
  std::set<int> actionKinds;
  std::set<std::string> features;

  void note(const FiltersCommon::FiltersEntry& entry) {
    FiltersCommon::FiltersEntryPB pb;
    entry.convertToFiltersEntryPB(&pb);
    for (const auto& m : pb.matches_()) {
      matchKinds.insert(static_cast<int>(m.type_()));
      if (m.type_() == 1 && m.ports__size() > 0 &&
          m.excluded_port_types__size() > 0) {
        features.insert("ports beside excluded port types");
      }
      if ((m.type_() == 1 || m.type_() == 22) && m.ports__size() == 0 &&
          m.excluded_port_types__size() == 0) {
        features.insert("empty port list");
      }
      for (int i = 1; i < m.ports__size(); ++i) {
        for (int j = 0; j < i; ++j) {
          if (m.ports_(i) == m.ports_(j)) features.insert("duplicate port");
        }
      }
      if (m.type_() == 9 || m.type_() == 10) {
        const std::string& mask = m.ipv4_mask_();
        uint32_t bits = 0;
        for (char c : mask) bits = bits << 8 | static_cast<unsigned char>(c);
        if (((~bits + 1) & ~bits) != 0) features.insert("non-prefix IPv4 mask");
      }
      if (m.type_() == 16 && m.vlan_tagging_() > 2)
        features.insert("out-of-table tagging");
      for (uint32_t p : m.ports_()) {
        char name[32];
        if (limid_to_intfname(p, name, sizeof name) != 0) {
          features.insert("interface without name");
        }
      }
    }
    for (const auto& a : pb.actions_()) {
      actionKinds.insert(static_cast<int>(a.type_()));
      if (a.type_() == 11 && a.ports__size() > 1)
        features.insert("multi-port redirect");
    }
    const auto tos = entry.getMatches().find(FiltersCommon::FILTERS_MATCH_TOS);
    if (tos != entry.getMatches().end()) {
      const auto* dscp =
          dynamic_cast<const FiltersCommon::MatchDSCP*>(tos->second.get());
      features.insert(dscp != nullptr ? "DSCP" : "ToS");
      if (dscp != nullptr && (dscp->getToS() & 3) != 0)
        features.insert("DSCP with low ToS bits");
    }
    const std::string text = formatEntryRule(entry);
    if (text.find(" policer { ") != std::string::npos)
      features.insert("policer");
    if (text.find(" parent { ") != std::string::npos)
      features.insert("parent policer");
    const auto stage = entry.getPolicer().GetStage();
    if (stage < 0 || stage > 2)
      features.insert("policer stage no wire carries");
    for (const auto& action : entry.getPolicer().GetActions()) {
      if (action.GetColor() > 2 || action.GetColor() < 0) {
        features.insert("policer colour no wire carries");
      }
    }
    for (const auto& [id, counter] : entry.getCounters()) {
      if (counter.GetType() > 8 || counter.GetType() < 0)
        features.insert("out-of-table counter type");
    }
  }
};

TEST(RulesRoundTrip, RandomEntriesCompileToEqualEntriesAndPrintTheSameText) {
  rules_test::RandomModel model(20261123);
  Coverage coverage;
  for (int i = 0; i < 3000; ++i) {
    const auto entry = model.entry();
    coverage.note(*entry);
    const std::string text = formatEntryRule(*entry);
    std::vector<RuleError> errors;
    const auto compiled = compileEntryRule(text, "entry.rules", &errors);
    ASSERT_NE(compiled, nullptr) << text << "\n" << joined(errors);
    ASSERT_TRUE(*compiled == *entry) << text;
    ASSERT_EQ(dump(*compiled), dump(*entry)) << text;
    ASSERT_EQ(formatEntryRule(*compiled), text);
  }
  EXPECT_EQ(coverage.matchKinds.size(), 39u);
  EXPECT_EQ(coverage.actionKinds.size(), 21u);
  for (const char* feature :
       {"ports beside excluded port types", "empty port list", "duplicate port",
        "non-prefix IPv4 mask", "out-of-table tagging",
        "interface without name", "multi-port redirect", "DSCP", "ToS",
        "DSCP with low ToS bits", "policer", "parent policer",
        "out-of-table counter type"}) {
    EXPECT_EQ(coverage.features.count(feature), 1u) << feature;
  }
}

TEST(RulesRoundTrip, RandomGroupsCompileToEqualGroupsAndPrintTheSameText) {
  rules_test::RandomModel model(7);
  std::size_t entries = 0;
  std::set<int> stages;
  for (int i = 0; i < 400; ++i) {
    const auto group = model.group(model.below(25));
    entries += group->getEntriesRef().size();
    stages.insert(group->getStage());
    const std::string text = formatGroupRules(*group);
    std::vector<RuleError> errors;
    const auto compiled = compileGroupRules(text, "group.rules", &errors);
    ASSERT_NE(compiled, nullptr) << text << "\n" << joined(errors);
    ASSERT_TRUE(*compiled == *group) << text;
    ASSERT_EQ(dump(*compiled), dump(*group)) << text;
    ASSERT_EQ(formatGroupRules(*compiled), text);
  }
  // The groups were not all empty, and some had a stage no table knows.
  EXPECT_GT(entries, 2000u);
  EXPECT_GT(stages.size(), 4u);
}

}  // namespace
