#include "FiltersCommon/filter_serialized.h"

#include <cstring>

#include "common/filters_assert.h"

namespace FiltersCommon {

FiltersSerialized::FiltersSerialized() : size_(0), data_(nullptr) {}

FiltersSerialized::FiltersSerialized(const std::string& bytes)
    : size_(0), data_(nullptr) {
  copyData(bytes);
}

FiltersSerialized::~FiltersSerialized() { delete[] data_; }

uint64_t FiltersSerialized::size() const { return size_; }

void FiltersSerialized::setData(const std::string& bytes) {
  FILTERS_ASSERT(data_ == nullptr,
                 "virtual void FiltersCommon::FiltersSerialized::setData("
                 "const string&)");
  copyData(bytes);
}

void FiltersSerialized::copyData(const std::string& bytes) {
  size_ = bytes.size() + 1;
  data_ = new char[size_];
  // c_str() guarantees the terminator, so size_ bytes are always readable.
  std::memcpy(data_, bytes.c_str(), size_);
  data_[size_ - 1] = '\0';
}

}  // namespace FiltersCommon
