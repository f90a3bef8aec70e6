// The byte language of the C-interface fuzzer: an input is a sequence of
// calls, each an operation byte followed by its operands, read by
// ProgramReader. The seed generator writes programs in the same language, so
// both include this header.
//
// Operands are read as they are needed; a program that ends early reads
// zeros, which keeps every prefix of a program a valid program.
#ifndef FILTERSCOMMON_FUZZ_C_API_PROGRAM_H_
#define FILTERSCOMMON_FUZZ_C_API_PROGRAM_H_

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz_c_api {

// Operations; the byte read is taken modulo kOpCount.
enum Op : uint8_t {
  kNewEntry,        // slot, id
  kCopyEntry,       // from slot, to slot
  kDeleteEntry,     // slot
  kEntryPriority,   // slot, priority (u32)
  kSetMatch,        // slot, match maker, the maker's operands
  kGetMatch,        // slot, match maker, the maker's operands
  kDeleteMatch,     // slot, kind
  kSetAction,       // slot, action maker, the maker's operands
  kGetAction,       // slot, action maker, the maker's operands
  kDeleteAction,    // slot, kind
  kGroupPriority,   // priority (u16)
  kGroupStage,      // stage
  kGroupType,       // type
  kInsertEntry,     // slot
  kRemoveEntry,     // id
  kGetEntries,      // nothing
  kRefusedNullUse,  // which call
  kOpCount
};

// Entry handles live in this many slots; a slot may be empty.
constexpr uint8_t kSlots = 4;
// Entry identifiers are taken modulo this, so that ids collide often.
constexpr uint8_t kIds = 8;

// Reads operands from the input; past its end every read gives 0.
class ProgramReader {
 public:
  ProgramReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  bool done() const { return size_ == 0; }
  uint8_t u8() {
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  uint16_t u16() {
    const uint16_t low = u8();
    return static_cast<uint16_t>(low | (u8() << 8));
  }
  uint32_t u32() {
    const uint32_t low = u16();
    return low | (static_cast<uint32_t>(u16()) << 16);
  }
  // The next `count` bytes (fewer at the end) as a reader of their own, so
  // that an operation always consumes the operands it declares.
  ProgramReader take(size_t count) {
    const size_t n = count < size_ ? count : size_;
    const ProgramReader part(data_, n);
    data_ += n;
    size_ -= n;
    return part;
  }

 private:
  const uint8_t* data_;
  size_t size_;
};

// Appends operands to a program, little-endian as ProgramReader reads them.
class ProgramWriter {
 public:
  ProgramWriter& u8(uint8_t value) {
    bytes_.push_back(static_cast<char>(value));
    return *this;
  }
  ProgramWriter& u16(uint16_t value) {
    return u8(static_cast<uint8_t>(value)).u8(static_cast<uint8_t>(value >> 8));
  }
  ProgramWriter& u32(uint32_t value) {
    return u16(static_cast<uint16_t>(value))
        .u16(static_cast<uint16_t>(value >> 16));
  }
  ProgramWriter& op(Op value) { return u8(value); }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

}  // namespace fuzz_c_api

#endif  // FILTERSCOMMON_FUZZ_C_API_PROGRAM_H_
