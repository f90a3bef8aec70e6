// Policers in rule text. A policer is written by its fields when the policer
// library's own constructors rebuild it exactly from them; otherwise (a mode
// or colour action only a peer's bytes can hold) by the policer's own bytes,
// which rebuild it exactly too.
#ifndef FILTERSCOMMON_RULES_RULE_POLICER_H_
#define FILTERSCOMMON_RULES_RULE_POLICER_H_

#include <cstdint>
#include <optional>
#include <string>

#include "policer/policer.h"

namespace FiltersCommon {
namespace rules {

// The six mode parameters in the policer library's field order.
enum ModeParam { kCir, kCbs, kEbs, kPir, kPbs, kEir, kModeParams };
extern const char* const kModeParamNames[kModeParams];

// The parameters mode `type` uses, in the order its factory takes them,
// ending with kModeParams; null for a mode type without factory.
const ModeParam* modeParams(int32_t type);

// The mode the factory of `type` builds from `params`; nothing for a type
// without factory.
std::optional<policer::Mode> makeMode(int32_t type,
                                      const uint32_t (&params)[kModeParams]);

// "{ stage ingress mode srtcm cir 1 cbs 2 ebs 3 red drop }" or
// "{ bytes 0a1b... }".
void appendPolicer(std::string* out, const policer::Policer& p);

}  // namespace rules
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_RULES_RULE_POLICER_H_
