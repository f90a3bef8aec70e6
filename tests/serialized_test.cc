#include "FiltersCommon/filter_serialized.h"

#include <gtest/gtest.h>

#include <string>

namespace FiltersCommon {
namespace {

std::string Contents(const FiltersSerialized& buf) {
  return std::string(buf.data(), buf.size());
}

TEST(FiltersSerialized, DefaultIsEmptyWithNullData) {
  FiltersSerialized buf;
  EXPECT_EQ(buf.size(), 0u);
  EXPECT_EQ(buf.data(), nullptr);
}

TEST(FiltersSerialized, EmptyStringGivesSizeOneAndOneZeroByte) {
  FiltersSerialized buf{std::string()};
  ASSERT_EQ(buf.size(), 1u);
  ASSERT_NE(buf.data(), nullptr);
  EXPECT_EQ(buf.data()[0], '\0');
}

TEST(FiltersSerialized, TenBytesGiveSizeElevenWithTrailingZero) {
  const std::string bytes("\x01\x00\x02\x00\xff\x00\x7f\x00\x00\x09", 10);
  FiltersSerialized buf(bytes);
  ASSERT_EQ(buf.size(), 11u);
  EXPECT_EQ(Contents(buf), bytes + std::string(1, '\0'));
}

TEST(FiltersSerialized, SetDataOnDefaultBufferFillsIt) {
  FiltersSerialized buf;
  buf.setData("abc");
  ASSERT_EQ(buf.size(), 4u);
  EXPECT_EQ(Contents(buf), std::string("abc\0", 4));
}

TEST(FiltersSerializedDeathTest, SecondSetDataAborts) {
  FiltersSerialized buf;
  buf.setData("first");
  EXPECT_DEATH(buf.setData("second"), "data_ == nullptr");
}

TEST(FiltersSerializedDeathTest, SecondSetDataNamesFunction) {
  FiltersSerialized buf;
  buf.setData("first");
  EXPECT_DEATH(buf.setData("second"),
               "filter_serialized.*virtual void "
               "FiltersCommon::FiltersSerialized::setData\\(const string&\\)");
}

TEST(FiltersSerializedDeathTest, SetDataAfterStringConstructorAborts) {
  FiltersSerialized buf("filled");
  EXPECT_DEATH(buf.setData("again"), "data_ == nullptr");
}

TEST(FiltersSerialized, SetDataThroughBaseReferenceIsVirtual) {
  // Readers and writers reach the buffer through its virtual interface, so a
  // derived buffer can observe every fill.
  struct CountingBuffer : FiltersSerialized {
    int fills = 0;
    void setData(const std::string& bytes) override {
      ++fills;
      FiltersSerialized::setData(bytes);
    }
  };
  CountingBuffer counting;
  FiltersSerialized& base = counting;
  base.setData("xy");
  EXPECT_EQ(counting.fills, 1);
  EXPECT_EQ(base.size(), 3u);
}

}  // namespace
}  // namespace FiltersCommon
