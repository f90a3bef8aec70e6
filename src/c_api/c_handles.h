// Handles of the C interface: the untyped pointers that stand for matches and
// actions. A handle is always the address of the object's polymorphic base
// (Match or Action), so creating one converts to the base first and reading
// one casts through the base; that holds whatever the layout of the leaf.
#ifndef FILTERSCOMMON_SRC_C_API_C_HANDLES_H_
#define FILTERSCOMMON_SRC_C_API_C_HANDLES_H_

#include <cstdint>
#include <list>
#include <type_traits>
#include <utility>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_matches.h"
#include "limid/limid.h"

namespace FiltersCommon {
namespace c_api {

// The base a handle of class T points to.
template <class T>
using HandleBase =
    std::conditional_t<std::is_base_of_v<Match, T>, Match, Action>;

// A new heap T as a handle. A throwing constructor frees the allocation
// before the exception leaves, as every new-expression does.
template <class T, class... Args>
void* newHandle(Args&&... args) {
  HandleBase<T>* object = new T(std::forward<Args>(args)...);
  return object;
}

// The object behind a handle, seen as the class the caller says it is; the
// kind is not checked.
template <class T>
T* as(void* handle) {
  return static_cast<T*>(static_cast<HandleBase<T>*>(handle));
}

// The `count` identifiers of `ports` in array order. The array is not read
// when it is empty, so callers may pass null then.
inline std::list<limid_t> portList(limid_t const* ports, uint32_t count) {
  if (count == 0) return {};
  return std::list<limid_t>(ports, ports + count);
}

}  // namespace c_api
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_SRC_C_API_C_HANDLES_H_
