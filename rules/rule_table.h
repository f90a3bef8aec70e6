// The one table of the rule language: for every match and action kind, its
// keyword, the family of its value and the wire fields that hold the value.
// The printer and the compiler both walk these rows, so a kind differs from
// another only by its row.
//
// Values travel through the kinds' own wire messages (MatchPB, ActionPB):
// the printer reads the message an entry writes, the compiler fills one and
// lets the entry load it. That way every value the model can hold, including
// those only a wire message can carry, is written and read the same way.
//
// The tables are constant and may be read from any thread.
#ifndef FILTERSCOMMON_RULES_RULE_TABLE_H_
#define FILTERSCOMMON_RULES_RULE_TABLE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "filter_actions.pb.h"
#include "filter_matches.pb.h"

namespace FiltersCommon {
namespace rules {

// How a kind's value is written after its keyword.
enum class Value {
  kNone,        // nothing
  kPorts,       // interfaces "eth1,lag2", "!cpu" for an excluded port type
  kU16Set,      // "10,20-30" (VLAN ids)
  kU8Set,       // "0,3-5" (PCPs)
  kNumber,      // one number of `bits` bits, or a name of `names`
  kBool,        // "true" or "false"
  kInterface,   // one interface
  kMac,         // MAC[/len|/mask]
  kIPv4,        // IPv4[/len|/mask]
  kIPv6,        // IPv6[/len|/mask]
  kMaskedPort,  // port[/mask]
  kRange,       // low-high
  kPair,        // a:b
  kMplsPorts,   // two interfaces: the VPN, then the access port
};

// Names of some numbers of one enumeration, and back.
struct Name {
  int64_t value;
  const char* name;
};
struct Names {
  const Name* names;
  std::size_t count;
  const char* find(int64_t value) const;
  std::optional<int64_t> find(std::string_view name) const;
  // "a, b or c" for messages.
  std::string list() const;
};

// Accessors of the generated message class PB, by field role.
template <class PB>
struct Fields {
  using Repeated = google::protobuf::RepeatedField<uint32_t>;
  uint32_t (PB::*get)() const = nullptr;  // the number, or the first one
  void (PB::*set)(uint32_t) = nullptr;
  uint32_t (PB::*get2)() const = nullptr;  // the second number
  void (PB::*set2)(uint32_t) = nullptr;
  bool (PB::*flag)() const = nullptr;
  void (PB::*setFlag)(bool) = nullptr;
  const Repeated& (PB::*list)() const = nullptr;
  Repeated* (PB::*mutableList)() = nullptr;
  const Repeated& (PB::*list2)() const = nullptr;  // excluded port types
  Repeated* (PB::*mutableList2)() = nullptr;
  const std::string& (PB::*bytes)() const = nullptr;  // address
  std::string* (PB::*mutableBytes)() = nullptr;
  const std::string& (PB::*bytes2)() const = nullptr;  // mask
  std::string* (PB::*mutableBytes2)() = nullptr;
};

template <class PB>
struct KindRow {
  int kind;
  const char* keyword;
  Value value;
  Fields<PB> fields;
  unsigned bits = 32;            // kNumber: width of the model's field
  const Names* names = nullptr;  // kNumber, and kPorts' excluded types
  bool hex = false;              // kNumber and masks printed in hex
};

using MatchRow = KindRow<MatchPB>;
using ActionRow = KindRow<ActionPB>;

// Rows by kind value: matchRows()[k].kind == k.
const std::vector<MatchRow>& matchRows();
const std::vector<ActionRow>& actionRows();

// Enumerations the rules name.
extern const Names kPortTypeNames;
extern const Names kCounterTypeNames;
extern const Names kPolicerStageNames;
extern const Names kPolicerModeNames;
extern const Names kColorNames;
// Group stages and types, named after the library's enumerators
// (FILTERS_STAGE_INGRESS is "ingress").
const Names& groupStageNames();
const Names& groupTypeNames();

}  // namespace rules
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_RULES_RULE_TABLE_H_
