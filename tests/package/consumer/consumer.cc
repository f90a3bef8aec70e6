// A program outside the project that uses the installed package.
#include <iostream>
#include <string>

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
  const bool ok = buf.size() == bytes.size() + 1 &&
                  std::string(name) == "eth3" &&
                  policer::Policer(p.Serialize()) == p;
  std::cout << (ok ? "consumer ok" : "consumer FAILED") << std::endl;
  return ok ? 0 : 1;
}
