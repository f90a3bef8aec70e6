// Names of codes, kinds, stages and types. The kind names come from the one
// table of kinds, so they cannot drift from the classes; the rest are short
// tables of their own. All are searched linearly: they are tiny, and a name
// is wanted for a message, never in a hot path.

#include "FiltersCommon/filter_names.h"

#include <cstddef>

#include "common/kinds.h"

namespace FiltersCommon {

namespace {

constexpr const char kUnknown[] = "unknown";

struct NumberName {
  int32_t number;
  const char* name;
  const char* description;
};

constexpr NumberName kErrors[] = {
    {FILTERS_OK, "FILTERS_OK", "success"},
    {FILTERS_ERR_NOT_FOUND, "FILTERS_ERR_NOT_FOUND",
     "the item to remove or read is not there"},
    {FILTERS_ERR_INVALID, "FILTERS_ERR_INVALID",
     "invalid or incompatible item, or a group type no table knows"},
    {FILTERS_ERR_REFUSED, "FILTERS_ERR_REFUSED",
     "a required argument is missing or the object refuses the change"},
    {FILTERS_ERR_MATCH_NOT_ALLOWED, "FILTERS_ERR_MATCH_NOT_ALLOWED",
     "a match of the entry is not allowed by the group's type"},
    {FILTERS_ERR_TYPE_NOT_IN_STAGE, "FILTERS_ERR_TYPE_NOT_IN_STAGE",
     "the group's type is not allowed in the stage"},
    {FILTERS_ERR_UNKNOWN_STAGE, "FILTERS_ERR_UNKNOWN_STAGE",
     "the stage is unknown"},
    {FILTERS_ERR_ACTION_NOT_ALLOWED, "FILTERS_ERR_ACTION_NOT_ALLOWED",
     "an action of the entry is not allowed in the group's stage"},
    {FILTERS_ERR_POLICER_STAGE, "FILTERS_ERR_POLICER_STAGE",
     "the entry's policer belongs to another policer stage than the group's "
     "stage requires"},
};

constexpr NumberName kStages[] = {
    {FILTERS_STAGE_LOOKUP, "FILTERS_STAGE_LOOKUP", nullptr},
    {FILTERS_STAGE_VLAN, "FILTERS_STAGE_VLAN", nullptr},
    {FILTERS_STAGE_INGRESS, "FILTERS_STAGE_INGRESS", nullptr},
    {FILTERS_STAGE_EGRESS, "FILTERS_STAGE_EGRESS", nullptr},
};

constexpr NumberName kTypes[] = {
    {FILTERS_TYPE_NONE, "FILTERS_TYPE_NONE", nullptr},
    {FILTERS_TYPE_L2, "FILTERS_TYPE_L2", nullptr},
    {FILTERS_TYPE_SOURCE_GUARD, "FILTERS_TYPE_SOURCE_GUARD", nullptr},
    {FILTERS_TYPE_IPV4_L4, "FILTERS_TYPE_IPV4_L4", nullptr},
    {FILTERS_TYPE_IPV4_QOS, "FILTERS_TYPE_IPV4_QOS", nullptr},
    {FILTERS_TYPE_EGRESS_L2, "FILTERS_TYPE_EGRESS_L2", nullptr},
    {FILTERS_TYPE_L2_VLAN, "FILTERS_TYPE_L2_VLAN", nullptr},
    {FILTERS_TYPE_L2_L4, "FILTERS_TYPE_L2_L4", nullptr},
    {FILTERS_TYPE_IPV6_VRF, "FILTERS_TYPE_IPV6_VRF", nullptr},
    {FILTERS_TYPE_QOS, "FILTERS_TYPE_QOS", nullptr},
    {FILTERS_TYPE_IPV4, "FILTERS_TYPE_IPV4", nullptr},
    {FILTERS_TYPE_CPU, "FILTERS_TYPE_CPU", nullptr},
    {FILTERS_TYPE_LOOKUP_HIT, "FILTERS_TYPE_LOOKUP_HIT", nullptr},
    {FILTERS_TYPE_CPU_FORWARD, "FILTERS_TYPE_CPU_FORWARD", nullptr},
    {FILTERS_TYPE_UNKNOWN_DEST, "FILTERS_TYPE_UNKNOWN_DEST", nullptr},
};

// Kind names from the table of kinds: each kind's class.
#define FILTERS_KIND_NAME_ROW(value, Class) {value, #Class, nullptr},
constexpr NumberName kMatches[] = {
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_KIND_NAME_ROW)};
constexpr NumberName kActions[] = {
    FILTERS_FOR_EACH_ACTION_KIND(FILTERS_KIND_NAME_ROW)};
#undef FILTERS_KIND_NAME_ROW

// The policer library's stage numbers, spelt as the entry dump spells them.
constexpr NumberName kPolicerStages[] = {
    {0, "Ingress", nullptr},
    {1, "Egress", nullptr},
    {2, "None", nullptr},
};

template <std::size_t N>
const NumberName* find(const NumberName (&table)[N], int32_t number) {
  for (const NumberName& row : table) {
    if (row.number == number) return &row;
  }
  return nullptr;
}

template <std::size_t N>
const char* nameIn(const NumberName (&table)[N], int32_t number) {
  const NumberName* row = find(table, number);
  return row == nullptr ? kUnknown : row->name;
}

}  // namespace

extern "C" {

const char* filtersErrName(filtersErr_t code) { return nameIn(kErrors, code); }

const char* filtersErrDescription(filtersErr_t code) {
  const NumberName* row = find(kErrors, code);
  return row == nullptr ? "unknown error code" : row->description;
}

const char* filtersMatchName(filtersMatch_t kind) {
  return nameIn(kMatches, kind);
}

const char* filtersActionName(filtersAction_t kind) {
  return nameIn(kActions, kind);
}

const char* filtersStageName(filtersGroupStage_t stage) {
  return nameIn(kStages, stage);
}

const char* filtersTypeName(filtersGroupType_t type) {
  return nameIn(kTypes, type);
}

const char* filtersPolicerStageName(int32_t policerStage) {
  return nameIn(kPolicerStages, policerStage);
}

}  // extern "C"

}  // namespace FiltersCommon
