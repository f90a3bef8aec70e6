// A filter group's wire form: one FiltersGroupPB message, carried in a byte
// string or a FiltersSerialized buffer. Reading reports nothing by design:
// the parse result is not examined, stage and type are taken as they come,
// and entries the group's rules refuse are dropped; a receiver that needs to
// know compares entry counts.

#include <cstdint>
#include <string>
#include <utility>

#include <google/protobuf/arena.h>
#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <google/protobuf/wire_format_lite.h>

#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_serialized.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"

namespace FiltersCommon {
namespace {

// Parses the message bytes and adds what they hold to `group`. A failed parse
// still leaves every field read before the failure; a buffer's trailing zero
// byte, for one, always fails the parse after the last field. Missing
// required fields are not looked for either: the partial parse skips a walk
// over every entry, and the runtime's log line, only to ignore the answer.
// The message lives on an arena: a large group is tens of thousands of small
// messages, which are then released at once instead of one by one.
void LoadGroup(FiltersGroup* group, const char* data, uint64_t size) {
  google::protobuf::Arena arena;
  auto* message =
      google::protobuf::Arena::CreateMessage<FiltersGroupPB>(&arena);
  if (size != 0) {
    static_cast<void>(
        message->ParsePartialFromArray(data, static_cast<int>(size)));
  }
  group->convertFromFiltersGroupPB(message);
}

void FillGroupMessage(const FiltersGroup& group, FiltersGroupPB* message) {
  message->set_id_(group.getId());
  message->set_priority_(group.getPriority());
  message->set_stage_(static_cast<uint32_t>(group.getStage()));
  message->set_type_(static_cast<uint32_t>(group.getType()));
  const auto& entries = group.getEntriesRef();
  message->mutable_entries_()->Reserve(static_cast<int>(entries.size()));
  for (const auto& held : entries) {
    held.second.convertToFiltersEntryPB(message->add_entries_());
  }
}

}  // namespace

FiltersGroup::FiltersGroup(const std::string& bytes)
    : FiltersGroup(filtersGroupId_t{0}) {
  LoadGroup(this, bytes.data(), bytes.size());
}

// Parses the buffer's bytes in place, terminator included, rather than
// copying a large group into a string first.
FiltersGroup::FiltersGroup(FiltersSerialized& buffer)
    : FiltersGroup(filtersGroupId_t{0}) {
  // A buffer without data reads as empty bytes, whatever size it reports.
  const char* data = buffer.data();
  LoadGroup(this, data, data == nullptr ? 0 : buffer.size());
}

FiltersGroupPB FiltersGroup::convertToFiltersGroupPB() const {
  FiltersGroupPB message;
  FillGroupMessage(*this, &message);
  return message;
}

void FiltersGroup::convertFromFiltersGroupPB(const FiltersGroupPB* message) {
  id_ = static_cast<filtersGroupId_t>(message->id_());
  priority_ = static_cast<filtersGroupPriority_t>(message->priority_());
  stage_ =
      static_cast<filtersGroupStage_t>(static_cast<int32_t>(message->stage_()));
  type_ =
      static_cast<filtersGroupType_t>(static_cast<int32_t>(message->type_()));
  // Each entry is built once from its element and moved into the map after
  // the same checks insertEntry makes; refusals are dropped on purpose.
  for (const FiltersEntryPB& element : message->entries_()) {
    FiltersEntry entry(filtersEntryId_t{0});
    entry.convertFromFiltersEntryPB(&element);
    static_cast<void>(adoptEntry(std::move(entry)));
  }
}

// The bytes are those of convertToFiltersGroupPB() serialized, but written as
// they are made: the group's own fields (numbers 1 to 4) by the runtime from a
// message without entries, then each entry (field 5, after them as the
// runtime orders fields) by the runtime from one entry message reused for
// all. A whole group message of tens of thousands of entries is never built,
// so writing costs little more than the runtime's own serialization. Every
// required field is always set, so the runtime's check for them is skipped.
void FiltersGroup::serialize(std::string* out) const {
  out->clear();
  google::protobuf::io::StringOutputStream stream(out);
  google::protobuf::io::CodedOutputStream coded(&stream);
  FiltersGroupPB head;
  head.set_id_(id_);
  head.set_priority_(priority_);
  head.set_stage_(static_cast<uint32_t>(stage_));
  head.set_type_(static_cast<uint32_t>(type_));
  static_cast<void>(head.SerializePartialToCodedStream(&coded));
  FiltersEntryPB element;
  for (const auto& held : entries_) {
    element.Clear();
    held.second.convertToFiltersEntryPB(&element);
    static_cast<void>(element.ByteSizeLong());  // caches the sizes written
    google::protobuf::internal::WireFormatLite::WriteMessage(
        FiltersGroupPB::kEntriesFieldNumber, element, &coded);
  }
}

void FiltersGroup::serialize(FiltersSerialized* out) const {
  std::string bytes;
  serialize(&bytes);
  out->setData(bytes);
}

}  // namespace FiltersCommon
