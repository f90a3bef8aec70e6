// The parts of filters-tool: the JSON form, the input readers, the check and
// the demo.

#include <google/protobuf/util/json_util.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "demo_group.h"
#include "filters_json.pb.h"
#include "group_check.h"
#include "json_form.h"
#include "tool_input.h"
#include "tool_test_support.h"

namespace filters_tool {
namespace {

using filters_test::entryMessage;
using filters_test::entryWith;
using filters_test::stagedPolicer;
using FiltersCommon::FiltersEntry;
using FiltersCommon::FiltersEntryPB;
using FiltersCommon::FiltersGroup;
using FiltersCommon::FiltersGroupPB;

std::string bytesOf(const FiltersGroup& group) {
  std::string bytes;
  group.serialize(&bytes);
  return bytes;
}

FiltersGroup demoGroup() {
  FiltersGroup group = demoGroupHead();
  for (const DemoEntry& rule : demoEntries()) {
    EXPECT_EQ(group.insertEntry(rule.entry), FiltersCommon::FILTERS_OK)
        << rule.purpose;
  }
  return group;
}

// A group message as the library writes it, with one entry per match kind,
// one per action kind, and entries with policers of every mode and a parent.
std::string everyKindGroupBytes() {
  FiltersGroupPB pb;
  pb.set_id_(9);
  pb.set_priority_(2);
  pb.set_stage_(0);
  pb.set_type_(0);
  uint32_t id = 1;
  const auto add = [&](const FiltersEntry& built) {
    FiltersEntry entry(built);
    entry.setId(id++);
    entry.convertToFiltersEntryPB(pb.add_entries_());
  };
  for (uint32_t kind = 0; kind <= FILTERS_MATCH_LAST; ++kind) {
    add(entryWith({kind}, {}));
  }
  for (uint32_t kind = 0; kind <= FILTERS_ACTION_LAST; ++kind) {
    add(entryWith({}, {kind}));
  }
  const std::vector<policer::Mode> modes = {
      policer::Mode::SrTcm(1, 2, 3), policer::Mode::TrTcm(4, 5, 6, 7),
      policer::Mode::TrTcmDs(8, 9, 10, 11), policer::Mode::Flow(12, 13),
      policer::Mode()};
  for (const policer::Mode& mode : modes) {
    FiltersEntry entry = entryWith({0}, {0});
    entry.setPolicer(
        policer::Policer(id, policer::STAGE_EGRESS, mode,
                         {policer::Action::Drop(policer::COLOR_YELLOW)}));
    entry.setPolicerParent(stagedPolicer(policer::STAGE_INGRESS));
    add(entry);
  }
  std::string bytes;
  pb.SerializeToString(&bytes);
  return bytes;
}

FiltersGroupPB parsed(const std::string& bytes) {
  FiltersGroupPB pb;
  EXPECT_TRUE(pb.ParseFromString(bytes));
  return pb;
}

std::string reserialized(const FiltersGroupPB& pb) {
  std::string bytes;
  pb.SerializePartialToString(&bytes);
  return bytes;
}

// The message of `text`, checking that it converts back to the same text.
void expectJsonRoundTrip(const std::string& bytes) {
  Notes notes;
  const std::string json = groupToJson(parsed(bytes), &notes);
  EXPECT_TRUE(notes.empty());
  const FiltersGroupPB back = groupFromJson(json, "test");
  EXPECT_EQ(reserialized(back), bytes);
  EXPECT_EQ(groupToJson(back, &notes), json);
}

// ---- JSON form ----

TEST(JsonForm, DemoGroupSurvivesJsonAndBackByteForByte) {
  expectJsonRoundTrip(bytesOf(demoGroup()));
}

TEST(JsonForm, EveryMatchActionAndPolicerModeSurvivesJsonAndBack) {
  const std::string bytes = everyKindGroupBytes();
  ASSERT_EQ(parsed(bytes).entries__size(), 39 + 21 + 5);
  expectJsonRoundTrip(bytes);
}

TEST(JsonForm, FieldNamesAreTheSchemasAndPolicersShowTheirFields) {
  Notes notes;
  const std::string json = groupToJson(parsed(bytesOf(demoGroup())), &notes);
  for (const char* name :
       {"\"id_\": 100", "\"priority_\": 10", "\"stage_\": 2", "\"type_\": 3",
        "\"entries_\"", "\"matches_\"", "\"actions_\"", "\"counters_\"",
        "\"l4port_param1_\": 22", "\"policer_\""}) {
    EXPECT_NE(json.find(name), std::string::npos) << name;
  }
  EXPECT_EQ(json.find("policer_bytes_"), std::string::npos);
  FiltersCommon::json::FiltersGroupJson form;
  ASSERT_TRUE(google::protobuf::util::JsonStringToMessage(json, &form).ok());
  const auto& voice = form.entries_(3);
  ASSERT_EQ(voice.id_(), 40u);
  ASSERT_TRUE(voice.has_policer_());
  EXPECT_EQ(voice.policer_().id(), 1u);
  EXPECT_EQ(voice.policer_().stage(), policer::STAGE_INGRESS);
  EXPECT_EQ(voice.policer_().mode().type(), policer::MODE_SRTCM);
  EXPECT_EQ(voice.policer_().mode().cir(), 2000u);
  EXPECT_EQ(voice.policer_().mode().cbs(), 16000u);
  EXPECT_EQ(voice.policer_().mode().ebs(), 32000u);
  ASSERT_EQ(voice.policer_().actions_size(), 1);
  EXPECT_EQ(voice.policer_().actions(0).color(), policer::COLOR_RED);
  EXPECT_EQ(voice.policer_().actions(0).type(), policer::ACTION_DROP);
  EXPECT_FALSE(voice.has_policer_parent_());
}

TEST(JsonForm, PolicerBytesThePolicerWouldRewriteStayAsBase64) {
  FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(0);
  pb.set_type_(0);
  FiltersEntryPB* entry = pb.add_entries_();
  *entry = entryMessage(3, {}, {});
  // Only an identifier: the policer itself would write every field.
  entry->set_policer_(std::string("\x08\x05", 2));
  entry->set_policer_parent_(std::string("\x08\x06", 2));
  const std::string bytes = reserialized(pb);
  Notes notes;
  const std::string json = groupToJson(pb, &notes);
  EXPECT_NE(json.find("\"policer_bytes_\": \"CAU=\""), std::string::npos);
  EXPECT_NE(json.find("\"policer_parent_bytes_\": \"CAY=\""),
            std::string::npos);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_EQ(notes[0],
            "entries_[0]: the policer bytes are not what the policer writes "
            "for its own fields; kept as base64 in policer_bytes_");
  EXPECT_EQ(reserialized(groupFromJson(json, "test")), bytes);
}

TEST(JsonForm, EntryMessagesConvertBothWays) {
  FiltersEntry entry = entryWith({1, 2, 9, 17}, {0, 11, 9},
                                 stagedPolicer(policer::STAGE_INGRESS));
  entry.setPolicerParent(stagedPolicer(policer::STAGE_NONE));
  std::string bytes;
  entry.serialize(&bytes);
  FiltersEntryPB pb;
  ASSERT_TRUE(pb.ParseFromString(bytes));
  Notes notes;
  const std::string json = entryToJson(pb, &notes);
  EXPECT_TRUE(notes.empty());
  EXPECT_NE(json.find("\"policer_parent_\""), std::string::npos);
  const FiltersEntryPB back = entryFromJson(json, "test");
  std::string again;
  back.SerializeToString(&again);
  EXPECT_EQ(again, bytes);
  EXPECT_TRUE(FiltersEntry(again) == entry);
}

TEST(JsonForm, AMatchLackingItsKindStillPrints) {
  FiltersEntryPB pb = entryMessage(2, {}, {});
  pb.add_matches_()->add_ports_(5);
  ASSERT_FALSE(pb.IsInitialized());
  Notes notes;
  const std::string json = entryToJson(pb, &notes);
  EXPECT_NE(json.find("\"ports_\": [\n    5\n   ]"), std::string::npos) << json;
  EXPECT_EQ(json.find("\"type_\""), std::string::npos) << json;
}

TEST(JsonForm, AbsentPolicerFieldsTakeTheDefaultPolicer) {
  const FiltersEntryPB pb =
      entryFromJson(R"({"id_": 4, "priority_": 1, "policer_": {}})", "test");
  EXPECT_EQ(pb.policer_(), policer::Policer().Serialize());
}

// The one-line error groupFromJson gives for `json`.
std::string jsonError(const std::string& json) {
  try {
    groupFromJson(json, "in.json");
  } catch (const ToolError& error) {
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
    return error.what();
  }
  ADD_FAILURE() << "no error for " << json;
  return "";
}

TEST(JsonForm, JsonThatDoesNotFitTheMessagesIsRefusedInOneLine) {
  EXPECT_EQ(jsonError(R"({"id_": 1, "bogus": 2})"),
            "in.json: unreadable JSON: bogus: Cannot find field.");
  EXPECT_EQ(jsonError(R"({"id_": 1,)").rfind("in.json: unreadable JSON: ", 0),
            0u);
  EXPECT_EQ(jsonError(R"({"entries_": [{"matches_": [{"ports_": [1]}]}]})")
                .rfind("in.json: unreadable JSON: ", 0),
            0u);
}

TEST(JsonForm, PolicerFieldsThePolicerCannotHoldAreRefused) {
  EXPECT_EQ(
      jsonError(
          R"({"entries_": [{"policer_": {"mode": {"type": 3, "ebs": 7}}}]})"),
      "in.json: entries_[0].policer_.mode: mode type 3 (Flow) does not use "
      "ebs (given 7)");
  EXPECT_EQ(jsonError(R"({"entries_": [{"policer_": {"stage": 3}}]})"),
            "in.json: entries_[0].policer_.stage: must be 0 (ingress), 1 "
            "(egress) or 2 (none)");
  EXPECT_EQ(jsonError(R"({"entries_": [{"policer_": {"mode": {"type": 9}}}]})"),
            "in.json: entries_[0].policer_.mode: mode type 9 is unknown (0 "
            "SrTcm, 1 TrTcm, 2 TrTcmDs, 3 Flow, 4 None)");
  EXPECT_EQ(
      jsonError(
          R"({"entries_": [{"policer_parent_": {"actions": [{"color": 0, "type": 0, "pcp": 3}]}}]})"),
      "in.json: entries_[0].policer_parent_.actions[0]: action type 0 does "
      "not use pcp (given 3)");
  EXPECT_EQ(
      jsonError(
          R"({"entries_": [{"policer_": {"actions": [{"color": 1, "type": 0}, {"color": 1, "type": 0}]}}]})"),
      "in.json: entries_[0].policer_.actions[1]: repeats an earlier action");
  EXPECT_EQ(
      jsonError(
          R"({"entries_": [{"policer_": {"actions": [{"color": 4, "type": 0}]}}]})"),
      "in.json: entries_[0].policer_.actions[0]: color must be 0 (red), 1 "
      "(yellow) or 2 (green)");
}

// ---- Input ----

TEST(ToolInput, HexTextAllowsBlanksAnywhere) {
  EXPECT_EQ(decodeHex("08 0a\n1\t0 Ff\n", "f"),
            std::string("\x08\x0a\x10\xff", 4));
  EXPECT_EQ(decodeHex("", "f"), "");
}

TEST(ToolInput, HexRunsMayStartWith0x) {
  EXPECT_EQ(decodeHex("0x080A", "f"), std::string("\x08\x0a", 2));
  EXPECT_EQ(decodeHex("0x08 0X0a\n0x10", "f"), std::string("\x08\x0a\x10", 3));
  // A zero byte written as 00 is no prefix.
  EXPECT_EQ(decodeHex("00 0x00", "f"), std::string(2, '\0'));
}

std::string hexError(const std::string& text) {
  try {
    decodeHex(text, "f.hex");
  } catch (const ToolError& error) {
    return error.what();
  }
  return "no error";
}

TEST(ToolInput, BadHexIsNamedWithItsOffset) {
  EXPECT_EQ(hexError("08 0g"), "f.hex: bad hex digit 'g' at offset 4");
  EXPECT_EQ(hexError("08x0"), "f.hex: bad hex digit 'x' at offset 2");
  EXPECT_EQ(hexError("08 10x0"), "f.hex: bad hex digit 'x' at offset 5");
  EXPECT_EQ(hexError("08\x01"), "f.hex: bad hex digit '\\x1' at offset 2");
  EXPECT_EQ(hexError("08 1"),
            "f.hex: odd number of hex digits (the last byte has only one)");
}

TEST(ToolInput, HexOutputHasSixteenBytesALine) {
  EXPECT_EQ(encodeHex(std::string("\x00\xab", 2)), "00 ab\n");
  EXPECT_EQ(encodeHex(std::string(17, '\x01')),
            "01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01\n01\n");
  EXPECT_EQ(encodeHex(""), "");
}

std::string readError(const std::string& data, const InputForm& form) {
  Notes notes;
  try {
    readGroupMessage(data, "in", form, &notes);
  } catch (const ToolError& error) {
    return error.what();
  }
  return "no error";
}

TEST(ToolInput, GroupMessagesAreReadFromBytesHexOrJson) {
  const std::string bytes = bytesOf(demoGroup());
  Notes notes;
  InputForm raw;
  EXPECT_EQ(reserialized(readGroupMessage(bytes, "in", raw, &notes)), bytes);
  InputForm hex;
  hex.hex = true;
  EXPECT_EQ(reserialized(readGroupMessage(encodeHex(bytes), "in", hex, &notes)),
            bytes);
  const std::string json = groupToJson(parsed(bytes), &notes);
  EXPECT_EQ(reserialized(readGroupMessage(json, "in", raw, &notes)), bytes);
  // A FiltersSerialized buffer's trailing zero byte is left out.
  EXPECT_EQ(reserialized(readGroupMessage(bytes + '\0', "in", raw, &notes)),
            bytes);
  EXPECT_TRUE(notes.empty());
}

TEST(ToolInput, UnreadableInputIsAnError) {
  InputForm raw;
  EXPECT_EQ(readError("", raw), "in: empty input");
  EXPECT_EQ(readError("\xff\xff\xff", raw),
            "in: not a FiltersGroupPB message (the bytes do not parse; use "
            "--hex for hex text)");
  EXPECT_EQ(readError("08 64\n", raw),
            "in: this looks like hex text; add --hex to read it");
}

TEST(ToolInput, MissingRequiredFieldsAndOddBytesGiveNotes) {
  Notes notes;
  InputForm raw;
  // Only id_ 7.
  readGroupMessage(std::string("\x08\x07", 2), "in", raw, &notes);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0],
            "in: the FiltersGroupPB message lacks required fields "
            "(priority_, stage_, type_); the library reads them as 0");
  notes.clear();
  // id_ 7 written twice.
  readGroupMessage(std::string("\x08\x07\x10\x00\x18\x00\x20\x00\x08\x07", 10),
                   "in", raw, &notes);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_NE(notes[0].find("writing it back gives other bytes"),
            std::string::npos);
}

// The one-line error of reading `data` as a group, or as an entry.
template <class Read>
std::string errorOf(Read read, const std::string& data) {
  Notes notes;
  try {
    read(data, "in", InputForm(), &notes);
  } catch (const ToolError& error) {
    return error.what();
  }
  return "no error";
}

TEST(ToolInput, AnEntryIsNoGroupAndAGroupIsNoEntry) {
  const std::string group = bytesOf(demoGroup());
  std::string entry;
  entryWith({9}, {0}, stagedPolicer(policer::STAGE_INGRESS)).serialize(&entry);
  EXPECT_EQ(errorOf(readEntryMessage, group),
            "in: this holds a group (FiltersGroupPB), not one entry; leave "
            "out --entry");
  EXPECT_EQ(errorOf(readGroupMessage, entry),
            "in: this holds one entry (FiltersEntryPB), not a group; use "
            "--entry (check takes groups only)");
  Notes notes;
  const std::string groupJson = groupToJson(parsed(group), &notes);
  FiltersEntryPB entryPB;
  ASSERT_TRUE(entryPB.ParseFromString(entry));
  const std::string entryJson = entryToJson(entryPB, &notes);
  EXPECT_EQ(errorOf(readEntryMessage, groupJson),
            "in: this JSON holds a group (FiltersGroupPB), not one entry; "
            "leave out --entry");
  EXPECT_EQ(errorOf(readGroupMessage, entryJson),
            "in: this JSON holds one entry (FiltersEntryPB), not a group; use "
            "--entry (check takes groups only)");
  // Each reads as itself.
  EXPECT_EQ(errorOf(readGroupMessage, group), "no error");
  EXPECT_EQ(errorOf(readEntryMessage, entry), "no error");
  EXPECT_EQ(errorOf(readGroupMessage, groupJson), "no error");
  EXPECT_EQ(errorOf(readEntryMessage, entryJson), "no error");
}

TEST(ToolInput, AGroupMissingFieldsIsStillNoEntry) {
  // Group 7 with only its identifier: not clean as a group, nor as an entry.
  Notes notes;
  readGroupMessage(std::string("\x08\x07", 2), "in", InputForm(), &notes);
  EXPECT_EQ(notes.size(), 1u);
  EXPECT_EQ(errorOf(readEntryMessage, std::string("\x08\x07", 2)), "no error");
}

TEST(ToolInput, JsonMayStartWithAByteOrderMarkAndHexMayBeAskedFor) {
  const std::string bytes = bytesOf(demoGroup());
  Notes notes;
  const std::string json = groupToJson(parsed(bytes), &notes);
  InputForm hex;
  hex.hex = true;
  EXPECT_EQ(
      reserialized(readGroupMessage("\xef\xbb\xbf" + json, "in", hex, &notes)),
      bytes);
  EXPECT_TRUE(notes.empty());
}

TEST(ToolInput, JsonLackingRequiredFieldsGivesANote) {
  Notes notes;
  readGroupMessage(R"({"id_": 5})", "in", InputForm(), &notes);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0],
            "in: the FiltersGroupPB message lacks required fields (priority_, "
            "stage_, type_); the library reads them as 0");
}

TEST(ToolInput, ADirectoryIsNoInput) {
  const std::string directory = ::testing::TempDir();
  try {
    readInput(directory);
    ADD_FAILURE() << "no error";
  } catch (const ToolError& error) {
    EXPECT_EQ(std::string(error.what()),
              "cannot read " + directory + ": Is a directory");
  }
}

// ---- Check ----

// A group message of stage 2, type 3 with known refusals.
FiltersGroupPB refusalsMessage() {
  FiltersGroupPB pb;
  pb.set_id_(7);
  pb.set_priority_(3);
  pb.set_stage_(2);
  pb.set_type_(3);
  *pb.add_entries_() = entryMessage(1, {9, 5}, {0});
  *pb.add_entries_() = entryMessage(2, {14}, {});
  *pb.add_entries_() = entryMessage(3, {}, {6});
  *pb.add_entries_() =
      entryMessage(4, {}, {1}, stagedPolicer(policer::STAGE_EGRESS));
  *pb.add_entries_() = entryMessage(1, {}, {1});
  *pb.add_entries_() = entryMessage(5, {4}, {17});
  return pb;
}

TEST(GroupCheck, NamesEveryDroppedEntryWithCodeNameAndCause) {
  std::ostringstream out;
  const CheckResult result = checkGroup(refusalsMessage(), "g.bin", out);
  EXPECT_EQ(out.str(),
            "Group 7: stage 2, type 3, 6 entries in g.bin\n"
            "entry 1: accepted\n"
            "entry 2: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match "
            "MatchSrcIPv6 (14) is not allowed in group type 3\n"
            "entry 3: dropped, code -9 (FILTERS_ERR_ACTION_NOT_ALLOWED): "
            "action ActionSetPcpAndQueue (6) is not allowed in stage 2\n"
            "entry 4: dropped, code -10 (FILTERS_ERR_POLICER_STAGE): policer "
            "stage 1 (Egress) does not fit group stage 2, which requires "
            "policer stage 0 (Ingress)\n"
            "entry 1: accepted, replaces the earlier entry 1\n"
            "entry 5: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match "
            "MatchDstMac (4) is not allowed in group type 3\n"
            "2 of 6 entries accepted\n"
            "of which 1 replaced an earlier entry with the same id: the group "
            "keeps 1 entry\n");
  EXPECT_EQ(result.total, 6);
  EXPECT_EQ(result.accepted, 2);
  EXPECT_EQ(result.replaced, 1);
}

TEST(GroupCheck, UnknownStageTypeAndKindsAreReported) {
  FiltersGroupPB pb;
  pb.set_id_(70000);
  pb.set_priority_(0);
  pb.set_stage_(3);
  pb.set_type_(1);
  FiltersEntryPB entry = entryMessage(8, {9, 14}, {});
  entry.add_matches_()->set_type_(45);
  entry.add_actions_()->set_type_(30);
  *pb.add_entries_() = entry;
  std::ostringstream out;
  const CheckResult result = checkGroup(pb, "g", out);
  EXPECT_EQ(out.str(),
            "Group 4464: stage 3, type 1, 1 entry in g\n"
            "note: stage 3 does not allow type 1 (code -7, "
            "FILTERS_ERR_TYPE_NOT_IN_STAGE); the loader keeps both as read "
            "all the same\n"
            "entry 8: note: match MatchSrcIPv6 (14) is dropped by the entry's "
            "own rules (IPv4 beside IPv6 addresses, or a destination port "
            "beside a port range)\n"
            "entry 8: note: match kind 45 is unknown and ignored\n"
            "entry 8: note: action kind 30 is unknown and ignored\n"
            "entry 8: dropped, code -6 (FILTERS_ERR_MATCH_NOT_ALLOWED): match "
            "MatchSrcIPv4 (9) is not allowed in group type 1\n"
            "0 of 1 entries accepted\n");
  EXPECT_EQ(result.accepted, 0);
}

TEST(GroupCheck, AGroupTheLibraryCannotLoadIsAnError) {
  FiltersGroupPB pb = refusalsMessage();
  pb.mutable_entries_(2)->add_actions_()->set_type_(
      FiltersCommon::FILTERS_ACTION_MPLS_PORT_SET);
  std::ostringstream out;
  try {
    checkGroup(pb, "g", out);
    ADD_FAILURE() << "no error";
  } catch (const ToolError& error) {
    EXPECT_EQ(std::string(error.what()),
              "g: entries_[2] (entry 3): ActionMplsPortSet: ActionPB missing "
              "vpn_id and mpls_access_port; the library cannot load this "
              "group at all");
  }
}

TEST(GroupCheck, TheDemoGroupIsAcceptedWhole) {
  std::ostringstream out;
  const CheckResult result =
      checkGroup(parsed(bytesOf(demoGroup())), "demo", out);
  EXPECT_EQ(result.accepted, 5);
  EXPECT_EQ(result.total, 5);
  EXPECT_NE(out.str().find("\n5 of 5 entries accepted\n"), std::string::npos);
}

// ---- Demo ----

TEST(Demo, WritesTheGroupReadsItBackAndSaysWhere) {
  const std::string path =
      ::testing::TempDir() + "tool_core_demo_" + std::to_string(getpid());
  std::ostringstream out;
  ASSERT_EQ(runDemo(path, "bin/filters-tool", out), 0) << out.str();
  std::ifstream file(path, std::ios::binary);
  const std::string written(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(written, bytesOf(demoGroup()));
  const std::string text = out.str();
  std::size_t accepted = 0;
  for (std::size_t at = text.find("insertEntry returned 0 (FILTERS_OK)");
       at != std::string::npos;
       at = text.find("insertEntry returned 0 (FILTERS_OK)", at + 1)) {
    ++accepted;
  }
  EXPECT_EQ(accepted, 5u);
  EXPECT_NE(text.find(path), std::string::npos);
  EXPECT_NE(text.find("it is equal to the group built (5 of 5 entries)"),
            std::string::npos);
  EXPECT_NE(text.find("=FiltersGroup=\n  ID: 100\n  Priority: 10\n  Stage: "
                      "2\n  Type: 3\n"),
            std::string::npos);
  // The commands it suggests run the tool as it was invoked.
  EXPECT_NE(text.find("\nNext: bin/filters-tool check " + path + "\n"),
            std::string::npos);
  std::remove(path.c_str());
}

}  // namespace
}  // namespace filters_tool
