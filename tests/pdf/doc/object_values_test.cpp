// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/object_values.h"

#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>

#include "pdf/obj/access.h"

namespace {

constexpr std::int64_t one = std::int64_t{1} << 26;

TEST(ObjectValues, RealsFromText) {
  const std::int64_t least = INT64_MIN, most = INT64_MAX;
  const std::pair<const char*, std::int64_t> cases[] = {
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
      {"137438953472", most},
      {"-99999999999999999999999.1", least},
      {"137438953471.9999999999", most},
      {"", 0},
      {"-", 0},
      {"x1", 0},
  };
  for (const auto& [text, fixed] : cases) EXPECT_EQ(pdfbmp::fixed_from_text(text), fixed) << text;
}

TEST(ObjectValues, EveryKindInADictionary) {
  const auto source = QPDFObjectHandle::parse(
      "<< /B true /I -7 /Big 99999999999 /Small -99999999999 /R 0.25 /S (a\\000b) /Na#6De /x#20y "
      "/A [1 [2] null] /D << /K 1 >> /N null >>");
  CPDFObjHolder value;
  pdfbmp::convert_object(source, value);
  const CPDFDictionary* dict = value.dict();
  ASSERT_TRUE(dict != nullptr && dict->count == 9);  // Null is as if absent.
  const auto at = [&](const char* key) { return find_key(dict, key); };
  EXPECT_EQ(at("B")->type, PDF_BOOLEAN);
  EXPECT_TRUE(at("I")->as_int() == -7 && at("Big")->as_int() == INT_MAX && at("Small")->as_int() == INT_MIN);
  EXPECT_EQ(at("R")->as_fixed(), one / 4);
  EXPECT_EQ(std::string(reinterpret_cast<char*>(at("S")->str_bytes), static_cast<std::size_t>(at("S")->as_int())), std::string("a\0b", 3));
  EXPECT_STREQ(at("Name")->name(), "x y");
  const CPDFArray* array = at("A")->array();
  ASSERT_EQ(array->count, 3);  // In an array null keeps its place.
  EXPECT_TRUE(array->items[1].array()->items[0].as_int() == 2 && array->items[2].type == PDF_EMPTY);
  EXPECT_EQ(find_key(at("D")->dict(), "K")->as_int(), 1);
}

}  // namespace
