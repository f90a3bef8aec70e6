// The filter group as a value: construction, entries, copies, comparison and
// its text dump.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_matches.h"
#include "groups_samples.h"
#include "policer/policer.h"

namespace {

using FiltersCommon::Counter;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersGroup;
using groups_test::ActionSample;
using groups_test::EntryOf;
using groups_test::MatchSample;

std::string Dump(const FiltersGroup& group) {
  std::ostringstream os;
  os << group;
  return os.str();
}

// Group 7 in stage 2 with type 10, priority 3.
FiltersGroup SevenInStageTwo() {
  FiltersGroup group(7);
  group.setPriority(3);
  EXPECT_EQ(group.setStage(FiltersCommon::FILTERS_STAGE_INGRESS), 0);
  EXPECT_EQ(group.setType(FiltersCommon::FILTERS_TYPE_IPV4), 0);
  return group;
}

TEST(FiltersGroup, NewGroupHasOnlyItsIdentifier) {
  FiltersGroup group(42);
  EXPECT_EQ(group.getId(), 42);
  EXPECT_EQ(group.getPriority(), 0);
  EXPECT_EQ(group.getStage(), 0);
  EXPECT_EQ(group.getType(), 0);
  EXPECT_TRUE(group.getEntriesRef().empty());
  EXPECT_TRUE(group.getEntries().empty());
}

TEST(FiltersGroup, PriorityIsStoredAsGiven) {
  FiltersGroup group(1);
  group.setPriority(65535);
  EXPECT_EQ(group.getPriority(), 65535);
  group.setPriority(0);
  EXPECT_EQ(group.getPriority(), 0);
}

TEST(FiltersGroup, NewGroupDumpsFiveHeaderLines) {
  EXPECT_EQ(Dump(FiltersGroup(9)),
            "=FiltersGroup=\n"
            "  ID: 9\n"
            "  Priority: 0\n"
            "  Stage: 0\n"
            "  Type: 0\n");
}

TEST(FiltersGroup, DumpsHeaderOfGroupWithoutEntries) {
  EXPECT_EQ(Dump(SevenInStageTwo()),
            "=FiltersGroup=\n"
            "  ID: 7\n"
            "  Priority: 3\n"
            "  Stage: 2\n"
            "  Type: 10\n");
}

TEST(FiltersGroup, DumpsLargestIdentifierAndPriorityUnsigned) {
  FiltersGroup group(65535);
  group.setPriority(65535);
  EXPECT_EQ(Dump(group),
            "=FiltersGroup=\n"
            "  ID: 65535\n"
            "  Priority: 65535\n"
            "  Stage: 0\n"
            "  Type: 0\n");
}

TEST(FiltersGroup, DumpsEveryEntryAfterTheHeaderInIdentifierOrder) {
  FiltersGroup group = SevenInStageTwo();
  FiltersEntry policed = EntryOf(7, 100);
  policed.setPolicer(policer::Policer(
      3, policer::STAGE_INGRESS, policer::Mode::SrTcm(1000, 2000, 3000),
      {policer::Action::Drop(policer::COLOR_RED)}));
  ASSERT_EQ(policed.setCounter(Counter(1, FiltersCommon::COUNTER_TYPE_PACKETS)),
            0);
  FiltersEntry plain = EntryOf(3, 0);
  ASSERT_EQ(MatchSample("MatchAll").addTo(&plain), 0);
  ASSERT_EQ(ActionSample("ActionDeny").addTo(&plain), 0);
  ASSERT_EQ(group.insertEntry(policed), 0);
  ASSERT_EQ(group.insertEntry(plain), 0);
  EXPECT_EQ(Dump(group),
            "=FiltersGroup=\n"
            "  ID: 7\n"
            "  Priority: 3\n"
            "  Stage: 2\n"
            "  Type: 10\n"
            "  =FiltersEntry=\n"
            "    ID: 3\n"
            "    Priority: 0\n"
            "    =MatchAll=\n"
            "      Match Type ID: 0\n"
            "      <no parameters>\n"
            "    =ActionDeny=\n"
            "      Action Type ID: 1\n"
            "      <no parameters>\n"
            "  =FiltersEntry=\n"
            "    ID: 7\n"
            "    Priority: 100\n"
            "  =Policer=\n"
            "    Policer Id: 3\n"
            "    Stage: Ingress\n"
            "    Mode: SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 "
            "bytes)\n"
            "    Actions:\n"
            "    + Red Drop\n"
            "  =Counter=\n"
            "ID: 1\n"
            "Type: Packets\n");
}

TEST(FiltersGroup, DumpIsTheHeaderFollowedByEachEntryDump) {
  FiltersGroup group = SevenInStageTwo();
  FiltersEntry a = EntryOf(9, 1);
  ASSERT_EQ(MatchSample("MatchSrcIPv4").addTo(&a), 0);
  ASSERT_EQ(ActionSample("ActionRedirect").addTo(&a), 0);
  FiltersEntry b = EntryOf(4, 2);
  ASSERT_EQ(MatchSample("MatchTPID").addTo(&b), 0);
  ASSERT_EQ(group.insertEntry(a), 0);
  ASSERT_EQ(group.insertEntry(b), 0);
  // The TPID line leaves the stream in hexadecimal; the group does not undo
  // that for the entries that follow, so the reference dump is written to one
  // stream as well.
  std::ostringstream expected;
  expected << FiltersGroup(SevenInStageTwo()) << group.getEntriesRef().at(4)
           << group.getEntriesRef().at(9);
  EXPECT_EQ(Dump(group), expected.str());
}

TEST(FiltersGroup, DumpReturnsTheStream) {
  std::ostringstream os;
  std::ostream& returned = os << FiltersGroup(1);
  EXPECT_EQ(&returned, &os);
}

TEST(FiltersGroup, EntriesAreKeptInIdentifierOrder) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(9, 0)), 0);
  ASSERT_EQ(group.insertEntry(EntryOf(3, 0)), 0);
  auto it = group.getEntriesRef().begin();
  EXPECT_EQ(it->first, 3u);
  EXPECT_EQ(it->second.getId(), 3u);
  ++it;
  EXPECT_EQ(it->first, 9u);
  const std::string dump = Dump(group);
  EXPECT_LT(dump.find("    ID: 3\n"), dump.find("    ID: 9\n"));
}

TEST(FiltersGroup, InsertingATakenIdentifierReplacesTheEntry) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(5, 10)), 0);
  ASSERT_EQ(group.insertEntry(EntryOf(5, 20)), 0);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 20u);
}

TEST(FiltersGroup, RefusedReplacementKeepsTheHeldEntry) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(5, 10)), 0);
  FiltersEntry refused = EntryOf(5, 20);
  ASSERT_EQ(MatchSample("MatchAll").addTo(&refused), 0);
  EXPECT_EQ(group.insertEntry(refused), -6);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 10u);
}

TEST(FiltersGroup, ReinsertingAHeldEntryKeepsIt) {
  FiltersGroup group(1);
  FiltersEntry entry = EntryOf(5, 10);
  ASSERT_EQ(ActionSample("ActionSetPcp").addTo(&entry), 0);
  ASSERT_EQ(group.insertEntry(entry), 0);
  EXPECT_EQ(group.insertEntry(group.getEntriesRef().at(5)), 0);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_TRUE(group.getEntriesRef().at(5) == entry);
}

TEST(FiltersGroup, InsertedEntryIsACopy) {
  FiltersGroup group(1);
  FiltersEntry entry = EntryOf(5, 10);
  ASSERT_EQ(group.insertEntry(entry), 0);
  entry.setPriority(11);
  ASSERT_EQ(ActionSample("ActionDeny").addTo(&entry), 0);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 10u);
  EXPECT_TRUE(group.getEntriesRef().at(5).getActions().empty());
}

TEST(FiltersGroup, RemovingAnAbsentEntryReportsNotFound) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(5, 10)), 0);
  const FiltersGroup before = group;
  EXPECT_EQ(group.removeEntry(6), -3);
  EXPECT_TRUE(group == before);
  EXPECT_EQ(group.removeEntry(5), 0);
  EXPECT_TRUE(group.getEntriesRef().empty());
  EXPECT_EQ(group.removeEntry(5), -3);
}

TEST(FiltersGroup, GetEntriesReturnsAnIndependentCopy) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(5, 10)), 0);
  auto copy = group.getEntries();
  ASSERT_EQ(copy.size(), 1u);
  EXPECT_TRUE(copy.at(5) == group.getEntriesRef().at(5));
  copy.at(5).setPriority(99);
  copy.erase(5);
  EXPECT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 10u);
}

TEST(FiltersGroup, GetEntriesRefFollowsTheGroup) {
  FiltersGroup group(1);
  const auto& entries = group.getEntriesRef();
  EXPECT_EQ(&entries, &group.getEntriesRef());
  ASSERT_EQ(group.insertEntry(EntryOf(5, 10)), 0);
  EXPECT_EQ(entries.size(), 1u);
}

TEST(FiltersGroup, CopyIsEqualAndIndependent) {
  FiltersGroup group = SevenInStageTwo();
  FiltersEntry entry = EntryOf(5, 10);
  ASSERT_EQ(MatchSample("MatchDstIPv4").addTo(&entry), 0);
  ASSERT_EQ(ActionSample("ActionBlockEgressPorts").addTo(&entry), 0);
  ASSERT_EQ(group.insertEntry(entry), 0);
  FiltersGroup copy(group);
  EXPECT_TRUE(copy == group);
  EXPECT_FALSE(copy != group);
  EXPECT_EQ(Dump(copy), Dump(group));
  ASSERT_EQ(copy.removeEntry(5), 0);
  EXPECT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_TRUE(copy != group);
}

TEST(FiltersGroup, GroupsDifferingInOneEntryPriorityAreUnequal) {
  FiltersGroup a(1);
  FiltersGroup b(1);
  ASSERT_EQ(a.insertEntry(EntryOf(5, 10)), 0);
  ASSERT_EQ(b.insertEntry(EntryOf(5, 11)), 0);
  EXPECT_FALSE(a == b);
  EXPECT_TRUE(a != b);
}

TEST(FiltersGroup, EveryFieldTakesPartInEquality) {
  const FiltersGroup base(1);
  EXPECT_TRUE(base == FiltersGroup(1));
  EXPECT_TRUE(base != FiltersGroup(2));

  FiltersGroup priority(1);
  priority.setPriority(1);
  EXPECT_TRUE(base != priority);

  FiltersGroup stage(1);
  ASSERT_EQ(stage.setStage(FiltersCommon::FILTERS_STAGE_EGRESS), 0);
  EXPECT_TRUE(base != stage);

  FiltersGroup type(1);
  ASSERT_EQ(type.setType(FiltersCommon::FILTERS_TYPE_L2), 0);
  EXPECT_TRUE(base != type);

  FiltersGroup entries(1);
  ASSERT_EQ(entries.insertEntry(EntryOf(5, 0)), 0);
  EXPECT_TRUE(base != entries);
  EXPECT_TRUE(entries != base);

  // Same count, different identifiers.
  FiltersGroup other(1);
  ASSERT_EQ(other.insertEntry(EntryOf(6, 0)), 0);
  EXPECT_TRUE(entries != other);
}

TEST(FiltersGroup, EntriesCompareByContent) {
  FiltersGroup a = SevenInStageTwo();
  FiltersGroup b = SevenInStageTwo();
  FiltersEntry entry = EntryOf(5, 10);
  ASSERT_EQ(ActionSample("ActionRedirect").addTo(&entry), 0);
  ASSERT_EQ(a.insertEntry(entry), 0);
  ASSERT_EQ(b.insertEntry(entry), 0);
  EXPECT_TRUE(a == b);
  FiltersEntry changed = entry;
  ASSERT_EQ(changed.setAction(FiltersCommon::ActionRedirect(77)), 0);
  ASSERT_EQ(b.insertEntry(changed), 0);
  EXPECT_TRUE(a != b);
}

}  // namespace
