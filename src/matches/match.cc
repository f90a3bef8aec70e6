// The match base, its kind-value dispatch of comparison and dump, and the
// kinds without parameters.
#include <type_traits>

#include "FiltersCommon/filter_matches.h"
#include "common/kinds.h"
#include "filter_matches.pb.h"
#include "matches/match_internal.h"

using FiltersCommon::match_internal::printHead;

namespace {

// Prints `m`, whose kind `Class` owns, as that class prints itself.
template <class Class>
std::ostream& dumpAs(std::ostream& os, FiltersCommon::Match const& m,
                     char const* header) {
  using Family = typename FiltersCommon::match_internal::FamilyOf<Class>::type;
  if constexpr (std::is_same<Family, Class>::value) {
    static_cast<void>(header);
    return os << static_cast<Class const&>(m);
  } else {
    return FiltersCommon::match_internal::printFamilyLeaf(
        os, header, static_cast<Family const&>(m));
  }
}

}  // namespace

namespace FiltersCommon {

Match::~Match() = default;

void Match::convertToMatchPB(MatchPB* pb) const {
  pb->set_type_(static_cast<uint32_t>(getType()));
}

void Match::convertFromMatchPB(MatchPB const* /*pb*/) {}

// Both operands are taken as the class that owns the kind value, so the
// comparison is chosen by the value, not by the dynamic class: a MatchDSCP
// compares as the MatchToS of its slot. The classes whose typed comparison
// is virtual are reached through it, that is through the left operand's
// class.
bool Match::operator==(Match const& other) const {
  if (getType() != other.getType()) {
    return false;
  }
  switch (getType()) {
#define FILTERS_EQUAL_AS(value, Class)                                         \
  case value:                                                                  \
    return static_cast<match_internal::FamilyOf<Class>::type const&>(*this) == \
           static_cast<match_internal::FamilyOf<Class>::type const&>(other);
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_EQUAL_AS)
#undef FILTERS_EQUAL_AS
    default:
      // A kind no class owns is unequal to everything, itself included.
      return false;
  }
}

// The kinds without parameters are equal whenever their kinds are.
bool MatchAll::operator==(MatchAll const& /*other*/) const { return true; }
bool MatchCpuPort::operator==(MatchCpuPort const& /*other*/) const {
  return true;
}
bool MatchDestinationCpu::operator==(
    MatchDestinationCpu const& /*other*/) const {
  return true;
}
bool MatchUnknownDestIp::operator==(MatchUnknownDestIp const& /*other*/) const {
  return true;
}

// A MatchAll stays what it is whatever the message holds.
void MatchAll::convertFromMatchPB(MatchPB const* /*pb*/) {}

namespace match_internal {

std::string interfaceName(limid_t limId) {
  char name[100];
  name[0] = '\0';
  limid_to_intfname(limId, name, sizeof(name));
  // Whatever the library did, the name ends inside the buffer.
  name[sizeof(name) - 1] = '\0';
  return name;
}

}  // namespace match_internal
}  // namespace FiltersCommon

std::ostream& operator<<(std::ostream& os, FiltersCommon::Match const& m) {
  switch (m.getType()) {
#define FILTERS_DUMP_AS(value, Class) \
  case value:                         \
    return dumpAs<FiltersCommon::Class>(os, m, FILTERS_MATCH_HEADER(Class));
    FILTERS_FOR_EACH_MATCH_KIND(FILTERS_DUMP_AS)
#undef FILTERS_DUMP_AS
    default:
      return os;
  }
}

std::ostream& operator<<(std::ostream& os, FiltersCommon::MatchAll const& m) {
  printHead(os, FILTERS_MATCH_HEADER(MatchAll), m);
  return os << "      <no parameters>" << std::endl;
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchCpuPort const& m) {
  return printHead(os, FILTERS_MATCH_HEADER(MatchCpuPort), m);
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchDestinationCpu const& m) {
  return printHead(os, FILTERS_MATCH_HEADER(MatchDestinationCpu), m);
}

std::ostream& operator<<(std::ostream& os,
                         FiltersCommon::MatchUnknownDestIp const& m) {
  return printHead(os, FILTERS_MATCH_HEADER(MatchUnknownDestIp), m);
}
