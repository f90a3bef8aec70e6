// Checks the five wire messages field by field against the schema they must
// keep, and the encoding properties other processes rely on.
#include <google/protobuf/descriptor.h>
#include <google/protobuf/descriptor.pb.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "filter_actions.pb.h"
#include "filter_counter.pb.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "filter_matches.pb.h"

namespace FiltersCommon {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;

struct FieldRow {
  int number;
  const char* name;
  FieldDescriptor::Label label;
  FieldDescriptor::Type type;
  const char* message_type;  // full name for message fields, else ""
  bool explicit_default_zero;
};

constexpr auto kReq = FieldDescriptor::LABEL_REQUIRED;
constexpr auto kOpt = FieldDescriptor::LABEL_OPTIONAL;
constexpr auto kRep = FieldDescriptor::LABEL_REPEATED;
constexpr auto kU32 = FieldDescriptor::TYPE_UINT32;
constexpr auto kI32 = FieldDescriptor::TYPE_INT32;
constexpr auto kBytes = FieldDescriptor::TYPE_BYTES;
constexpr auto kBool = FieldDescriptor::TYPE_BOOL;
constexpr auto kMsg = FieldDescriptor::TYPE_MESSAGE;

const std::vector<FieldRow> kMatchFields = {
    {1, "type_", kReq, kU32, "", true},
    {2, "ports_", kRep, kU32, "", false},
    {3, "vlan_id_", kRep, kU32, "", false},
    {4, "tpid_", kOpt, kU32, "", false},
    {5, "mac_", kOpt, kBytes, "", false},
    {6, "l4port_param1_", kOpt, kU32, "", false},
    {7, "mac_mask_", kOpt, kBytes, "", false},
    {8, "ipv4_", kOpt, kBytes, "", false},
    {9, "pcp_", kRep, kU32, "", false},
    {10, "ipv4_mask_", kOpt, kBytes, "", false},
    {11, "ipv6_", kOpt, kBytes, "", false},
    {12, "ipv6_mask_", kOpt, kBytes, "", false},
    {13, "l2_src_", kOpt, kU32, "", false},
    {14, "ipprotocol_", kOpt, kU32, "", false},
    {15, "packet_resolution_", kOpt, kU32, "", false},
    {16, "tos_", kOpt, kU32, "", false},
    {17, "limid_", kOpt, kU32, "", false},
    {18, "l4port_param2_", kOpt, kU32, "", false},
    {19, "ingress_stp_state_", kOpt, kU32, "", false},
    {20, "excluded_port_types_", kRep, kU32, "", false},
    {21, "vlan_info_svc_vlan_type_", kOpt, kU32, "", false},
    {22, "ttl_", kOpt, kU32, "", false},
    {23, "vrf_id_", kOpt, kU32, "", false},
    {24, "drop_flag_", kOpt, kBool, "", false},
    {25, "fwd_type_", kOpt, kU32, "", false},
    {26, "mpls_terminated_", kOpt, kBool, "", false},
    {27, "vlan_tagging_", kOpt, kU32, "", false},
    {28, "hit_flag_", kOpt, kBool, "", false},
    {29, "injected_flag_", kOpt, kBool, "", false},
    {30, "vlan_info_proto_cpu_vlan_type_", kOpt, kU32, "", false},
    {31, "class_id_", kOpt, kU32, "", false},
};

const std::vector<FieldRow> kActionFields = {
    {1, "type_", kReq, kU32, "", true},
    {2, "ports_", kRep, kU32, "", false},
    {3, "pcp_", kOpt, kU32, "", false},
    {4, "pcp_and_queue_", kOpt, kU32, "", false},
    {5, "dscp_", kOpt, kU32, "", false},
    {6, "cosq_", kOpt, kU32, "", false},
    {7, "cp2cpu_cancel_type_", kOpt, kU32, "", false},
    {8, "mac_", kOpt, kBytes, "", false},
    {9, "l3_dest_id_", kOpt, kU32, "", false},
    {10, "vpn_id", kOpt, kU32, "", false},
    {11, "mpls_access_port", kOpt, kU32, "", false},
};

const std::vector<FieldRow> kCounterFields = {
    {1, "id", kReq, kI32, "", false},
    {2, "type", kReq, kI32, "", false},
};

const std::vector<FieldRow> kEntryFields = {
    {1, "id_", kReq, kU32, "", false},
    {2, "priority_", kReq, kU32, "", false},
    {3, "policer_", kReq, kBytes, "", false},
    {4, "matches_", kRep, kMsg, "FiltersCommon.MatchPB", false},
    {5, "actions_", kRep, kMsg, "FiltersCommon.ActionPB", false},
    {6, "counters_", kRep, kMsg, "FiltersCommon.CounterPB", false},
    {7, "policer_parent_", kOpt, kBytes, "", false},
};

const std::vector<FieldRow> kGroupFields = {
    {1, "id_", kReq, kU32, "", false},
    {2, "priority_", kReq, kU32, "", false},
    {3, "stage_", kReq, kU32, "", false},
    {4, "type_", kReq, kU32, "", false},
    {5, "entries_", kRep, kMsg, "FiltersCommon.FiltersEntryPB", false},
};

void ExpectSchema(const Descriptor* d, const std::string& full_name,
                  const std::string& file, const std::vector<FieldRow>& rows) {
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(d->full_name(), full_name);
  EXPECT_EQ(d->file()->name(), file);
  EXPECT_EQ(d->file()->package(), "FiltersCommon");
  EXPECT_EQ(d->file()->syntax(),
            google::protobuf::FileDescriptor::SYNTAX_PROTO2);
  EXPECT_EQ(d->file()->message_type_count(), 1);
  ASSERT_EQ(d->field_count(), static_cast<int>(rows.size()));
  for (const FieldRow& row : rows) {
    SCOPED_TRACE(full_name + "." + row.name);
    const FieldDescriptor* f = d->FindFieldByNumber(row.number);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->name(), row.name);
    EXPECT_EQ(f->label(), row.label);
    EXPECT_EQ(f->type(), row.type);
    EXPECT_FALSE(f->is_packed());
    EXPECT_FALSE(f->options().has_packed());
    EXPECT_EQ(f->has_default_value(), row.explicit_default_zero);
    if (row.explicit_default_zero) {
      EXPECT_EQ(f->default_value_uint32(), 0u);
    }
    if (row.type == kMsg) {
      EXPECT_EQ(f->message_type()->full_name(), row.message_type);
    }
  }
}

TEST(WireSchema, MatchPBHasEveryFieldAsDeclared) {
  ExpectSchema(MatchPB::descriptor(), "FiltersCommon.MatchPB",
               "filter_matches.proto", kMatchFields);
  EXPECT_EQ(MatchPB::descriptor()->file()->dependency_count(), 0);
}

TEST(WireSchema, ActionPBHasEveryFieldAsDeclared) {
  ExpectSchema(ActionPB::descriptor(), "FiltersCommon.ActionPB",
               "filter_actions.proto", kActionFields);
  EXPECT_EQ(ActionPB::descriptor()->file()->dependency_count(), 0);
}

TEST(WireSchema, CounterPBHasEveryFieldAsDeclared) {
  ExpectSchema(CounterPB::descriptor(), "FiltersCommon.CounterPB",
               "filter_counter.proto", kCounterFields);
  EXPECT_EQ(CounterPB::descriptor()->file()->dependency_count(), 0);
}

TEST(WireSchema, FiltersEntryPBHasEveryFieldAndImportsInOrder) {
  const Descriptor* d = FiltersEntryPB::descriptor();
  ExpectSchema(d, "FiltersCommon.FiltersEntryPB", "filter_entries.proto",
               kEntryFields);
  ASSERT_EQ(d->file()->dependency_count(), 3);
  EXPECT_EQ(d->file()->dependency(0)->name(), "filter_matches.proto");
  EXPECT_EQ(d->file()->dependency(1)->name(), "filter_actions.proto");
  EXPECT_EQ(d->file()->dependency(2)->name(), "filter_counter.proto");
}

TEST(WireSchema, FiltersGroupPBHasEveryFieldAndImportsEntries) {
  const Descriptor* d = FiltersGroupPB::descriptor();
  ExpectSchema(d, "FiltersCommon.FiltersGroupPB", "filter_groups.proto",
               kGroupFields);
  ASSERT_EQ(d->file()->dependency_count(), 1);
  EXPECT_EQ(d->file()->dependency(0)->name(), "filter_entries.proto");
}

TEST(WireSchema, NoFileCarriesOptions) {
  for (const Descriptor* d :
       {MatchPB::descriptor(), ActionPB::descriptor(), CounterPB::descriptor(),
        FiltersEntryPB::descriptor(), FiltersGroupPB::descriptor()}) {
    SCOPED_TRACE(d->full_name());
    EXPECT_EQ(d->file()->options().ByteSizeLong(), 0u);
    EXPECT_EQ(d->options().ByteSizeLong(), 0u);
    for (int i = 0; i < d->field_count(); ++i) {
      EXPECT_EQ(d->field(i)->options().ByteSizeLong(), 0u);
    }
  }
}

TEST(WireEncoding, TypeZeroActionIsTwoBytes) {
  ActionPB pb;
  pb.set_type_(0);
  std::string bytes;
  ASSERT_TRUE(pb.SerializeToString(&bytes));
  EXPECT_EQ(bytes, std::string("\x08\x00", 2));
}

TEST(WireEncoding, RepeatedPortsAreOneTagPerValue) {
  MatchPB match;
  match.set_type_(1);
  match.add_ports_(1);
  match.add_ports_(2);
  match.add_ports_(300);
  std::string bytes;
  ASSERT_TRUE(match.SerializeToString(&bytes));
  EXPECT_EQ(bytes, std::string("\x08\x01\x10\x01\x10\x02\x10\xac\x02", 9));

  ActionPB action;
  action.set_type_(3);
  action.add_ports_(5);
  action.add_ports_(7);
  ASSERT_TRUE(action.SerializeToString(&bytes));
  EXPECT_EQ(bytes, std::string("\x08\x03\x10\x05\x10\x07", 6));
}

TEST(WireEncoding, PackedPortsAreStillRead) {
  // Field 2, wire type 2 (length-delimited), three varints 1, 2, 300.
  const std::string packed("\x08\x01\x12\x04\x01\x02\xac\x02", 8);
  MatchPB match;
  ASSERT_TRUE(match.ParseFromString(packed));
  ASSERT_EQ(match.ports__size(), 3);
  EXPECT_EQ(match.ports_(0), 1u);
  EXPECT_EQ(match.ports_(1), 2u);
  EXPECT_EQ(match.ports_(2), 300u);
}

TEST(WireEncoding, NegativeCounterIdIsTenByteVarint) {
  CounterPB counter;
  counter.set_id(-1);
  counter.set_type(1);
  std::string bytes;
  ASSERT_TRUE(counter.SerializeToString(&bytes));
  EXPECT_EQ(bytes, std::string("\x08\xff\xff\xff\xff\xff\xff\xff\xff\xff\x01"
                               "\x10\x01",
                               13));
}

TEST(WireEncoding, EntryWithoutPolicerFailsInitializationCheck) {
  FiltersEntryPB entry;
  entry.set_id_(1);
  entry.set_priority_(2);
  EXPECT_FALSE(entry.IsInitialized());
  entry.set_policer_("");
  EXPECT_TRUE(entry.IsInitialized());
  entry.add_matches_();
  EXPECT_FALSE(entry.IsInitialized()) << "a match without type_ is incomplete";
}

TEST(WireEncoding, GroupNeedsAllFourScalars) {
  FiltersGroupPB group;
  group.set_id_(1);
  group.set_priority_(1);
  group.set_stage_(0);
  EXPECT_FALSE(group.IsInitialized());
  group.set_type_(0);
  EXPECT_TRUE(group.IsInitialized());
}

TEST(WireEncoding, ParseOfTrailingZeroByteReportsFailure) {
  // Buffers carry a terminating zero byte; the parser rejects it as tag 0.
  FiltersGroupPB group;
  group.set_id_(7);
  group.set_priority_(3);
  group.set_stage_(2);
  group.set_type_(10);
  std::string bytes;
  ASSERT_TRUE(group.SerializeToString(&bytes));
  FiltersGroupPB back;
  EXPECT_FALSE(back.ParseFromString(bytes + std::string(1, '\0')));
  EXPECT_EQ(back.id_(), 7u);
  EXPECT_EQ(back.type_(), 10u);
}

}  // namespace
}  // namespace FiltersCommon
