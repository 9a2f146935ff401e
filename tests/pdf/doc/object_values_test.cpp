// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/object_values.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "pdf/obj/access.h"

namespace {

constexpr std::int64_t one = std::int64_t{1} << 26;

TEST(ObjectValues, RealsFromText) {
  const struct {
    const char* text;
    std::int64_t fixed;
  } cases[] = {
      {"1.0", one},
      {"+.5", one / 2},
      {"-.5", -one / 2},
      {"4.", 4 * one},
      {"-0.0", 0},
      {"0.000000007450580596923828125", 1},   // Half of the last bit.
      {"0.0000000074505805969238281249", 0},  // A little less than half.
      {"-0.000000007450580596923828125", -1},
      {"0.99999999999999999999999999", one},
      {"137438953471.5", (std::int64_t{137438953471} << 26) + one / 2},
      {"137438953472", std::numeric_limits<std::int64_t>::max()},
      {"-99999999999999999999999.1", std::numeric_limits<std::int64_t>::min()},
      {"137438953471.9999999999", std::numeric_limits<std::int64_t>::max()},
      {"", 0},
      {"-", 0},
      {"x1", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(pdfbmp::fixed_from_text(c.text), c.fixed) << c.text;
}

TEST(ObjectValues, EveryKindInADictionary) {
  const auto source = QPDFObjectHandle::parse(
      "<< /B true /I -7 /Big 99999999999 /Small -99999999999 /R 0.25 /S (a\\000b) /Na#6De /x#20y "
      "/A [1 [2] null] /D << /K 1 >> /N null >>");
  CPDFObjHolder value;
  pdfbmp::convert_object(source, value);
  const CPDFDictionary* dict = value.dict();
  ASSERT_NE(dict, nullptr);
  EXPECT_EQ(dict->count, 9);  // Null is as if absent.
  EXPECT_EQ(find_key(dict, "B")->type, PDF_BOOLEAN);
  EXPECT_EQ(find_key(dict, "I")->as_int(), -7);
  EXPECT_EQ(find_key(dict, "Big")->as_int(), INT_MAX);
  EXPECT_EQ(find_key(dict, "Small")->as_int(), INT_MIN);
  EXPECT_EQ(find_key(dict, "R")->as_fixed(), one / 4);
  EXPECT_EQ(find_key(dict, "S")->as_int(), 3);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(find_key(dict, "S")->str_bytes), 3), std::string("a\0b", 3));
  EXPECT_STREQ(find_key(dict, "Name")->name(), "x y");
  const CPDFArray* array = find_key(dict, "A")->array();
  ASSERT_EQ(array->count, 3);  // In an array null keeps its place.
  EXPECT_EQ(array->items[1].array()->items[0].as_int(), 2);
  EXPECT_EQ(array->items[2].type, PDF_EMPTY);
  EXPECT_EQ(find_key(find_key(dict, "D")->dict(), "K")->as_int(), 1);
}

}  // namespace
