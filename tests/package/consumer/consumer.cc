// A program outside the project that uses the installed package.
#include <iostream>
#include <string>

#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filter_serialized.h"
#include "FiltersCommon/filter_types.h"
#include "filter_groups.pb.h"
#include "limid/limid.h"
#include "policer/policer.h"

int main() {
  FiltersCommon::FiltersGroupPB pb;
  pb.set_id_(7);
  pb.set_priority_(3);
  pb.set_stage_(FiltersCommon::FILTERS_STAGE_INGRESS);
  pb.set_type_(FiltersCommon::FILTERS_TYPE_IPV4);
  std::string bytes;
  pb.SerializeToString(&bytes);
  FiltersCommon::FiltersSerialized buf(bytes);

  char name[100];
  limid_to_intfname(limid_make(limid_type_ethernet, 3), name, sizeof name);
  policer::Policer p(1, policer::STAGE_INGRESS, policer::Mode::Flow(10, 20));
  // The rules library: a group compiled from rule text prints back the same.
  const std::string rules =
      "group 7 priority 3 stage 2 type 10\n"
      "entry 1 priority 0 src-ip 10.0.0.0/8 deny\n";
  const auto group =
      FiltersCommon::compileGroupRules(rules, "consumer", nullptr);
  const bool ok = group != nullptr &&
                  FiltersCommon::formatGroupRules(*group) ==
                      "group 7 priority 3 stage 2 type 10  # stage ingress, "
                      "type ipv4\n" +
                          rules.substr(rules.find("entry")) &&
                  buf.size() == bytes.size() + 1 &&
                  std::string(name) == "eth3" &&
                  policer::Policer(p.Serialize()) == p;
  std::cout << (ok ? "consumer ok" : "consumer FAILED") << std::endl;
  return ok ? 0 : 1;
}
