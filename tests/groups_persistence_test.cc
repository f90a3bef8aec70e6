// A filter group's wire form: conversion to and from FiltersGroupPB, the
// byte-string and FiltersSerialized round trips, and what the loader keeps,
// cuts and drops.

#include <gtest/gtest.h>

#include <string>

#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_serialized.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "groups_samples.h"
#include "policer/policer.h"

namespace {

using FiltersCommon::Counter;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;
using FiltersCommon::FiltersSerialized;
using groups_test::ActionSample;
using groups_test::EntryOf;
using groups_test::MatchSample;

// A stage-2, type-3 group with entries of several shapes: matches, actions,
// counters, an ingress policer and a parent.
FiltersGroup RichGroup() {
  FiltersGroup group(300);
  group.setPriority(40000);
  EXPECT_EQ(group.setStage(FiltersCommon::FILTERS_STAGE_INGRESS), 0);
  EXPECT_EQ(group.setType(FiltersCommon::FILTERS_TYPE_IPV4_L4), 0);

  FiltersEntry first = EntryOf(20, 5);
  EXPECT_EQ(MatchSample("MatchSrcIPv4").addTo(&first), 0);
  EXPECT_EQ(MatchSample("MatchDstL4Port").addTo(&first), 0);
  EXPECT_EQ(MatchSample("MatchTTL").addTo(&first), 0);
  EXPECT_EQ(ActionSample("ActionRedirect").addTo(&first), 0);
  EXPECT_EQ(ActionSample("ActionReplaceDstMac").addTo(&first), 0);
  EXPECT_EQ(first.setCounter(Counter(2, FiltersCommon::COUNTER_TYPE_OCTETS)),
            0);
  first.setPolicer(policer::Policer(
      11, policer::STAGE_INGRESS, policer::Mode::TrTcm(1, 2, 3, 4),
      {policer::Action::SetDscp(policer::COLOR_YELLOW, 10)}));
  first.setPolicerParent(
      policer::Policer(12, policer::STAGE_INGRESS, policer::Mode::Flow(5, 6)));

  FiltersEntry second = EntryOf(7, 1);
  EXPECT_EQ(MatchSample("MatchAll").addTo(&second), 0);
  EXPECT_EQ(MatchSample("MatchDestinationCpu").addTo(&second), 0);
  EXPECT_EQ(ActionSample("ActionDoNotLearnMac").addTo(&second), 0);
  EXPECT_EQ(ActionSample("ActionBlockEgressPorts").addTo(&second), 0);

  EXPECT_EQ(group.insertEntry(first), 0);
  EXPECT_EQ(group.insertEntry(second), 0);
  EXPECT_EQ(group.insertEntry(EntryOf(1000000, 0)), 0);
  return group;
}

FiltersGroupPB Message(uint32_t id, uint32_t priority, uint32_t stage,
                       uint32_t type) {
  FiltersGroupPB message;
  message.set_id_(id);
  message.set_priority_(priority);
  message.set_stage_(stage);
  message.set_type_(type);
  return message;
}

void AddEntry(FiltersGroupPB* message, const FiltersEntry& entry) {
  entry.convertToFiltersEntryPB(message->add_entries_());
}

FiltersGroup Load(const FiltersGroupPB& message) {
  return FiltersGroup(message.SerializePartialAsString());
}

TEST(FiltersGroupWire, ConvertsHeaderAndEntriesInIdentifierOrder) {
  const FiltersGroup group = RichGroup();
  const FiltersGroupPB message = group.convertToFiltersGroupPB();
  EXPECT_TRUE(message.IsInitialized());
  EXPECT_EQ(message.id_(), 300u);
  EXPECT_EQ(message.priority_(), 40000u);
  EXPECT_EQ(message.stage_(), 2u);
  EXPECT_EQ(message.type_(), 3u);
  ASSERT_EQ(message.entries__size(), 3);
  int i = 0;
  for (const auto& held : group.getEntriesRef()) {
    FiltersEntryPB expected;
    held.second.convertToFiltersEntryPB(&expected);
    EXPECT_EQ(message.entries_(i).SerializeAsString(),
              expected.SerializeAsString())
        << "entry " << held.first;
    ++i;
  }
  EXPECT_EQ(message.entries_(0).id_(), 7u);
  EXPECT_EQ(message.entries_(2).id_(), 1000000u);
}

TEST(FiltersGroupWire, SerializeReplacesTheStringWithTheMessageBytes) {
  const FiltersGroup group = RichGroup();
  std::string bytes = "left over";
  group.serialize(&bytes);
  EXPECT_EQ(bytes, group.convertToFiltersGroupPB().SerializeAsString());
}

TEST(FiltersGroupWire, EmptyGroupWritesAllFourScalarFields) {
  const FiltersGroupPB message = FiltersGroup(0).convertToFiltersGroupPB();
  EXPECT_TRUE(message.has_id_());
  EXPECT_TRUE(message.has_priority_());
  EXPECT_TRUE(message.has_stage_());
  EXPECT_TRUE(message.has_type_());
  EXPECT_EQ(message.entries__size(), 0);
  std::string bytes;
  FiltersGroup(0).serialize(&bytes);
  EXPECT_EQ(bytes, std::string("\x08\x00\x10\x00\x18\x00\x20\x00", 8));
}

TEST(FiltersGroupWire, RoundTripThroughAString) {
  const FiltersGroup group = RichGroup();
  std::string bytes = "left over";
  group.serialize(&bytes);
  EXPECT_EQ(bytes, group.convertToFiltersGroupPB().SerializeAsString());
  const FiltersGroup back(bytes);
  EXPECT_EQ(back.getId(), 300);
  EXPECT_EQ(back.getPriority(), 40000);
  EXPECT_EQ(back.getStage(), 2);
  EXPECT_EQ(back.getType(), 3);
  ASSERT_EQ(back.getEntriesRef().size(), 3u);
  EXPECT_TRUE(back == group);
  ASSERT_TRUE(back.getEntriesRef().at(20).getPolicerParent() != nullptr);
  EXPECT_EQ(back.getEntriesRef().at(20).getPolicerParent()->GetId(), 12u);
}

TEST(FiltersGroupWire, RoundTripThroughASerializedBuffer) {
  const FiltersGroup group = RichGroup();
  FiltersSerialized buffer;
  group.serialize(&buffer);
  std::string bytes;
  group.serialize(&bytes);
  ASSERT_EQ(buffer.size(), bytes.size() + 1);
  EXPECT_EQ(std::string(buffer.data(), bytes.size()), bytes);
  EXPECT_EQ(buffer.data()[bytes.size()], '\0');
  // The trailing zero byte makes the parse fail after the last field; the
  // group is built all the same.
  const FiltersGroup back(buffer);
  EXPECT_TRUE(back == group);
  EXPECT_EQ(buffer.size(), bytes.size() + 1);
}

TEST(FiltersGroupWire, BufferFilledFromAStringLoadsLikeTheString) {
  const FiltersGroup group = RichGroup();
  std::string bytes;
  group.serialize(&bytes);
  FiltersSerialized buffer(bytes);
  EXPECT_TRUE(FiltersGroup(buffer) == group);
}

TEST(FiltersGroupWire, SerializingIntoAFilledBufferAborts) {
  FiltersSerialized buffer(std::string("x"));
  EXPECT_DEATH(FiltersGroup(1).serialize(&buffer), "data_ == nullptr");
}

TEST(FiltersGroupWire, EmptyBytesGiveGroupZero) {
  const FiltersGroup fromString{std::string()};
  EXPECT_EQ(fromString.getId(), 0);
  EXPECT_EQ(fromString.getPriority(), 0);
  EXPECT_EQ(fromString.getStage(), 0);
  EXPECT_EQ(fromString.getType(), 0);
  EXPECT_TRUE(fromString.getEntriesRef().empty());
  FiltersSerialized empty;
  EXPECT_TRUE(FiltersGroup(empty) == fromString);
  FiltersSerialized zeroByte{std::string()};
  EXPECT_TRUE(FiltersGroup(zeroByte) == fromString);
}

TEST(FiltersGroupWire, IdentifierAndPriorityKeepTheirLow16Bits) {
  const FiltersGroup group = Load(Message(70000, 65537, 0, 0));
  EXPECT_EQ(group.getId(), 4464);
  EXPECT_EQ(group.getPriority(), 1);
}

TEST(FiltersGroupWire, TypeZeroDropsEntriesThatCarryMatches) {
  FiltersGroupPB message = Message(1, 0, 0, 0);
  FiltersEntry matching = EntryOf(1, 0);
  ASSERT_EQ(MatchSample("MatchAll").addTo(&matching), 0);
  AddEntry(&message, matching);
  FiltersEntry bare = EntryOf(2, 0);
  ASSERT_EQ(ActionSample("ActionDeny").addTo(&bare), 0);
  AddEntry(&message, bare);
  const FiltersGroup group = Load(message);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_TRUE(group.getEntriesRef().at(2) == bare);
}

TEST(FiltersGroupWire, EntriesRefusedByStageOrPolicerAreDropped) {
  FiltersGroupPB message = Message(1, 0, 3, 5);
  FiltersEntry action = EntryOf(1, 0);
  ASSERT_EQ(ActionSample("ActionSetPcp").addTo(&action), 0);
  AddEntry(&message, action);
  FiltersEntry policed = EntryOf(2, 0);
  policed.setPolicer(
      policer::Policer(1, policer::STAGE_INGRESS, policer::Mode()));
  AddEntry(&message, policed);
  FiltersEntry fits = EntryOf(3, 0);
  ASSERT_EQ(MatchSample("MatchEgressPorts").addTo(&fits), 0);
  fits.setPolicer(policer::Policer(1, policer::STAGE_EGRESS, policer::Mode()));
  AddEntry(&message, fits);
  const FiltersGroup group = Load(message);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_TRUE(group.getEntriesRef().at(3) == fits);
}

TEST(FiltersGroupWire, UnknownStageIsStoredAndRefusesLaterEntries) {
  FiltersGroupPB message = Message(1, 0, 9, 1);
  AddEntry(&message, EntryOf(1, 0));
  FiltersGroup group = Load(message);
  EXPECT_EQ(group.getStage(), 9);
  EXPECT_EQ(group.getType(), 1);
  // The stage is only looked up once the type check has passed.
  EXPECT_TRUE(group.getEntriesRef().empty());
  FiltersEntry fitsType = EntryOf(2, 0);
  ASSERT_EQ(MatchSample("MatchDstMac").addTo(&fitsType), 0);
  EXPECT_EQ(group.insertEntry(fitsType), -8);
  EXPECT_EQ(group.insertEntry(EntryOf(3, 0)), -8);
  FiltersEntry outsideType = EntryOf(4, 0);
  ASSERT_EQ(MatchSample("MatchTTL").addTo(&outsideType), 0);
  EXPECT_EQ(group.insertEntry(outsideType), -6);
  EXPECT_TRUE(group.getEntriesRef().empty());
  // A known stage makes the group usable again.
  EXPECT_EQ(group.setStage(FiltersCommon::FILTERS_STAGE_LOOKUP), 0);
  EXPECT_EQ(group.insertEntry(fitsType), 0);
}

TEST(FiltersGroupWire, UnknownTypeIsStoredAndRefusesEveryEntry) {
  FiltersGroup group = Load(Message(1, 0, 0, 20));
  EXPECT_EQ(group.getType(), 20);
  EXPECT_EQ(group.insertEntry(EntryOf(1, 0)), -4);
  FiltersEntry matching = EntryOf(2, 0);
  ASSERT_EQ(MatchSample("MatchAll").addTo(&matching), 0);
  EXPECT_EQ(group.insertEntry(matching), -4);
  EXPECT_TRUE(group.getEntriesRef().empty());
}

TEST(FiltersGroupWire, StageAndTypeThatDoNotFitTogetherAreKept) {
  const FiltersGroup group = Load(Message(1, 0, 3, 1));
  EXPECT_EQ(group.getStage(), 3);
  EXPECT_EQ(group.getType(), 1);
  FiltersGroup copy = group;
  EXPECT_EQ(copy.setStage(FiltersCommon::FILTERS_STAGE_EGRESS), -7);
}

TEST(FiltersGroupWire, RepeatedIdentifierKeepsTheLaterEntry) {
  FiltersGroupPB message = Message(1, 0, 0, 0);
  AddEntry(&message, EntryOf(5, 1));
  AddEntry(&message, EntryOf(5, 2));
  const FiltersGroup group = Load(message);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 2u);
}

TEST(FiltersGroupWire, RefusedRepeatDoesNotRemoveTheEarlierEntry) {
  FiltersGroupPB message = Message(1, 0, 0, 0);
  AddEntry(&message, EntryOf(5, 1));
  FiltersEntry refused = EntryOf(5, 2);
  ASSERT_EQ(MatchSample("MatchAll").addTo(&refused), 0);
  AddEntry(&message, refused);
  const FiltersGroup group = Load(message);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_EQ(group.getEntriesRef().at(5).getPriority(), 1u);
}

TEST(FiltersGroupWire, EntriesAreTakenInMessageOrderAndSorted) {
  FiltersGroupPB message = Message(1, 0, 0, 0);
  AddEntry(&message, EntryOf(9, 0));
  AddEntry(&message, EntryOf(3, 0));
  AddEntry(&message, EntryOf(6, 0));
  const FiltersGroup group = Load(message);
  ASSERT_EQ(group.getEntriesRef().size(), 3u);
  auto it = group.getEntriesRef().begin();
  EXPECT_EQ((it++)->first, 3u);
  EXPECT_EQ((it++)->first, 6u);
  EXPECT_EQ((it++)->first, 9u);
  for (const auto& held : group.getEntriesRef()) {
    EXPECT_EQ(held.first, held.second.getId());
  }
}

TEST(FiltersGroupWire, ConvertingFromAMessageAddsToHeldEntries) {
  FiltersGroup group(1);
  ASSERT_EQ(group.insertEntry(EntryOf(1, 10)), 0);
  ASSERT_EQ(group.insertEntry(EntryOf(2, 20)), 0);
  FiltersGroupPB message = Message(8, 9, 2, 0);
  AddEntry(&message, EntryOf(2, 21));
  AddEntry(&message, EntryOf(3, 30));
  group.convertFromFiltersGroupPB(&message);
  EXPECT_EQ(group.getId(), 8);
  EXPECT_EQ(group.getPriority(), 9);
  EXPECT_EQ(group.getStage(), 2);
  ASSERT_EQ(group.getEntriesRef().size(), 3u);
  EXPECT_EQ(group.getEntriesRef().at(1).getPriority(), 10u);
  EXPECT_EQ(group.getEntriesRef().at(2).getPriority(), 21u);
  EXPECT_EQ(group.getEntriesRef().at(3).getPriority(), 30u);
}

TEST(FiltersGroupWire, EntriesAreCheckedAgainstTheStoredStageAndType) {
  // The header is stored before any entry is offered, so an entry is judged
  // by the message's stage and type, not by the group's former ones.
  FiltersGroup group(1);
  FiltersGroupPB message = Message(1, 0, 2, 8);
  FiltersEntry entry = EntryOf(1, 0);
  ASSERT_EQ(MatchSample("MatchVrfId").addTo(&entry), 0);
  ASSERT_EQ(ActionSample("ActionMapToCpuCosQueue").addTo(&entry), 0);
  AddEntry(&message, entry);
  group.convertFromFiltersGroupPB(&message);
  ASSERT_EQ(group.getEntriesRef().size(), 1u);
  EXPECT_TRUE(group.getEntriesRef().at(1) == entry);
}

TEST(FiltersGroupWire, MissingRequiredFieldsReadAsZero) {
  FiltersGroupPB message;
  message.set_id_(5);
  AddEntry(&message, EntryOf(4, 0));
  ASSERT_FALSE(message.IsInitialized());
  const FiltersGroup group = Load(message);
  EXPECT_EQ(group.getId(), 5);
  EXPECT_EQ(group.getStage(), 0);
  EXPECT_EQ(group.getType(), 0);
  EXPECT_EQ(group.getEntriesRef().size(), 1u);
}

TEST(FiltersGroupWire, BytesAfterTheLastFieldDoNotLoseTheGroup) {
  const FiltersGroup group = RichGroup();
  std::string bytes;
  group.serialize(&bytes);
  bytes.push_back('\xff');
  EXPECT_TRUE(FiltersGroup(bytes) == group);
}

TEST(FiltersGroupWire, LargeGroupRoundTrips) {
  FiltersGroup group(3);
  ASSERT_EQ(group.setStage(FiltersCommon::FILTERS_STAGE_INGRESS), 0);
  ASSERT_EQ(group.setType(FiltersCommon::FILTERS_TYPE_IPV4), 0);
  FiltersEntry entry(0);
  ASSERT_EQ(MatchSample("MatchDstIPv4").addTo(&entry), 0);
  ASSERT_EQ(ActionSample("ActionRedirect").addTo(&entry), 0);
  for (uint32_t id = 0; id < 30000; ++id) {
    entry.setId(id * 7);
    entry.setPriority(id);
    ASSERT_EQ(group.insertEntry(entry), 0);
  }
  FiltersSerialized buffer;
  group.serialize(&buffer);
  const FiltersGroup back(buffer);
  ASSERT_EQ(back.getEntriesRef().size(), 30000u);
  EXPECT_TRUE(back == group);
}

}  // namespace
