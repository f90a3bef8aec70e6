// FiltersSerialized is the container in which a serialized group or entry is
// handed between the model and its callers: one owned heap block holding the
// protocol-buffers bytes followed by one zero byte.
//
// The buffer is filled exactly once, by the string constructor or by one
// setData() on a default-constructed buffer; a second fill aborts by design
// rather than leak or overwrite. It is neither copyable nor synchronised:
// concurrent readers are safe, a writer needs exclusive access.
#ifndef FILTERSCOMMON_FILTER_SERIALIZED_H_
#define FILTERSCOMMON_FILTER_SERIALIZED_H_

#include <cstdint>
#include <string>

#include "FiltersCommon/filter_export.h"

namespace FiltersCommon {

class FILTERS_EXPORT FiltersSerialized {
 public:
  // An empty buffer: size 0, no data.
  FiltersSerialized();
  // A buffer filled from `bytes`.
  explicit FiltersSerialized(const std::string& bytes);

  FiltersSerialized(const FiltersSerialized&) = delete;
  FiltersSerialized& operator=(const FiltersSerialized&) = delete;

  virtual ~FiltersSerialized();

  // Bytes held, the terminating zero byte included.
  virtual uint64_t size() const;

  // Fills an empty buffer; a filled one stops the program on an assertion.
  virtual void setData(const std::string& bytes);

  // The held bytes, or null for an empty buffer.
  const char* data() const { return data_; }

 protected:
  // Copies `bytes` and a terminating zero into a new block. It does not free
  // a previous block, which is why setData() insists on an empty buffer.
  void copyData(const std::string& bytes);

 private:
  uint64_t size_;
  char* data_;
};

}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_SERIALIZED_H_
