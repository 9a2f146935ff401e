// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/object.h"

#include "gtest/gtest.h"

#include <climits>
#include <cstring>
#include <string>

#include "kx/alloc.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/image_seams.h"

namespace {

/// A value as text, every byte of it.
std::string text_of(const CPDFObj& obj) {
  const auto entries = [](const CPDFDictionary& dict) {
    std::string out;
    for (int i = 0; i < dict.count; ++i) {
      out += std::string("/") + CPDFDictionary::key_of(dict.items[i]) + " " + text_of(*dict.items[i]);
    }
    return out;
  };
  switch (obj.type) {
    case PDF_STRING:
      if (obj.str_bytes == nullptr) return "() ";
      EXPECT_EQ(obj.str_bytes[obj.as_int()], 0);
      return "(" + std::string(obj.str_bytes, obj.str_bytes + obj.as_int()) + ") ";
    case PDF_NAME:
      return std::string("/") + obj.name() + " ";
    case PDF_ARRAY: {
      std::string out = "[";
      for (int i = 0; i < obj.array()->count; ++i) out += text_of(obj.array()->items[i]);
      return out + "] ";
    }
    case PDF_DICTIONARY:
      return "<<" + entries(*obj.dict()) + ">> ";
    case PDF_STREAM:
      return "stream" + std::to_string(obj.stream()->location[1]) + entries(obj.stream()->dict) + " ";
    default:
      return std::to_string(obj.type) + ":" + std::to_string(obj.value) + " ";
  }
}

const char* const values[] = {"null",
                              "true",
                              "-5",
                              "2.5",
                              "()",
                              "(text)",
                              "/Name",
                              "[]",
                              "<<>>",
                              "12 R",
                              "stream 7 <<>>",
                              "[1 [2 (x) /N] <</B 1 /A [2]>> 3 R]",
                              "<</C <</D (y)>> /B 0.5 /A true>>",
                              "stream 9 <</Z [1 2] /A stream 3 <</K /V>> >>"};

TEST(Object, CopiesAreDeepAndReleased) {
  const int before = fault_alloc::live_blocks();
  for (const char* text : values) {
    for (const char* old : values) {
      SCOPED_TRACE(testing::Message() << text << " over " << old);
      CPDFObj source, copy;
      read_object(source, text);
      read_object(copy, old);
      const std::string expected = text_of(source);
      copy.copy_from(&source);
      source.free();
      EXPECT_EQ(text_of(copy), expected);
      EXPECT_EQ(text_of(source), "0:0 ");
      copy.copy_from(nullptr);
      EXPECT_EQ(text_of(copy), "0:0 ");
      EXPECT_EQ(copy.str_bytes, nullptr);
    }
  }
  EXPECT_EQ(fault_alloc::live_blocks(), before);
}

TEST(Object, OddSources) {
  CPDFObj source, copy;
  unsigned char bytes[] = "abc";
  source.type = PDF_STRING;
  for (const int length : {-1, INT_MIN}) {
    source.value = length;
    source.str_bytes = bytes;
    copy.copy_from(&source);
    EXPECT_EQ(copy.type, PDF_STRING);
    EXPECT_EQ(copy.value, 0);
    EXPECT_EQ(copy.str_bytes, nullptr);
  }
  source.str_bytes = nullptr;
  source.value = 5;
  copy.copy_from(&source);
  EXPECT_EQ(copy.value, 0);
  source.type = 77;  // An unknown tag owns nothing.
  copy.copy_from(&source);
  EXPECT_EQ(text_of(copy), "77:5 ");
  source.type = PDF_STREAM;
  source.value = 0;
  copy.copy_from(&source);
  EXPECT_NE(copy.stream(), nullptr);
  copy.free();
  source.free();
}

TEST(Object, CopiesWithoutMemory) {
  for (const char* text : values) {
    SCOPED_TRACE(text);
    CPDFObjHolder source;
    read_object(source, text);
    fault_alloc::sweep([&] {
      CPDFObjHolder copy;
      copy.copy_from(&source);
      if (!fault_alloc::has_failed()) {
        EXPECT_EQ(text_of(copy), text_of(source));
      } else if (source.type == PDF_NAME) {
        EXPECT_EQ(copy.type, PDF_EMPTY);
      } else {
        EXPECT_EQ(copy.type, source.type);
      }
      if (fault_alloc::has_failed() && source.type == PDF_STRING) {
        EXPECT_EQ(copy.str_bytes, nullptr);
        EXPECT_EQ(copy.value, 0);
      }
    });
  }
}

TEST(Object, DictionaryIsSortedAndSearched) {
  CPDFDictionary dict;
  EXPECT_EQ(dict.words[0] & dict.words[1], ~std::uint64_t{0});
  EXPECT_EQ(find_key(&dict, "A"), nullptr);
  EXPECT_EQ(find_key(nullptr, "A"), nullptr);
  const char* const keys[] = {"M", "C", "X", "", "Ma", "B", "C1"};
  for (int count = 0; count < 7; ++count) {
    dict.set(keys[count])->set_int(count);
    for (int i = 0; i < 7; ++i) {
      const CPDFObj* found = find_key(&dict, keys[i]);
      ASSERT_EQ(found != nullptr, i <= count) << keys[i];
      if (found != nullptr) { EXPECT_EQ(found->as_int(), i); }
    }
    for (int i = 1; i < dict.count; ++i) {
      EXPECT_LT(std::strcmp(CPDFDictionary::key_of(dict.items[i - 1]), CPDFDictionary::key_of(dict.items[i])), 0);
    }
  }
  CPDFObj* again = dict.set("M");
  EXPECT_EQ(again->type, PDF_EMPTY);
  EXPECT_EQ(dict.count, 7);
}

TEST(Access, ReadsEachKind) {
  TestTable table;
  table.objects = {{1, "5"}, {2, "true"}, {3, "2.5"}, {4, "[1 2]"}, {5, "1 R"}};
  struct Case {
    const char* text;
    int number, boolean;
    double fixed;
    int items;
  } const cases[] = {
      {"7", 7, 0, 7, -1},   {"-0.5", 0, 0, -0.5, -1}, {"-2.5", -2, 0, -2.5, -1}, {"true", 0, 1, 0, -1},   {"false", 0, 0, 0, -1},
      {"/A", 0, 0, 0, -1},  {"(5)", 0, 0, 0, -1},     {"null", 0, 0, 0, -1},     {"[1 2 3]", 0, 0, 0, 3}, {"1 R", 5, 0, 5, -1},
      {"2 R", 0, 1, 0, -1}, {"3 R", 3, 0, 2.5, -1},   {"4 R", 0, 0, 0, 2},       {"5 R", 0, 0, 0, -1},    {"9 R", 0, 0, 0, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    CPDFObjHolder entry, temporary;
    read_object(entry, c.text);
    const bool is_reference = entry.type == PDF_REFERENCE;
    for (CPDFXRefTable* xref : {static_cast<CPDFXRefTable*>(&table), static_cast<CPDFXRefTable*>(nullptr)}) {
      const bool lost = is_reference && xref == nullptr;
      EXPECT_EQ(get_int_value(&entry, xref), lost ? 0 : c.number);
      EXPECT_EQ(get_bool_value(&entry, xref), lost ? 0 : c.boolean);
      EXPECT_EQ(get_fixed_value(&entry, xref), lost ? 0 : static_cast<std::int64_t>(c.fixed * fixed_one));
      const CPDFArray* array = get_array_value(&entry, xref, temporary);
      ASSERT_EQ(array != nullptr, c.items >= 0 && !lost);
      if (array != nullptr) {
        EXPECT_EQ(array->count, c.items);
        EXPECT_NE(array, entry.array());  // Always a copy.
      }
    }
  }
}

TEST(Fixed, Conversions) {
  struct Case {
    double value;
    int integer, byte;
  } const cases[] = {{0, 0, 0},   {0.5, 1, 128}, {-0.5, 0, 0},    {-1.5, -1, 0}, {2.5, 3, 255}, {-2.5, -2, 0},  {100.7, 101, 255},
                     {1, 1, 255}, {1.2, 1, 255}, {0.999, 1, 255}, {0.25, 0, 64}, {-7, -7, 0},   {0.498, 0, 127}};
  for (const Case& c : cases) {
    const auto v = static_cast<std::int64_t>(c.value * fixed_one);
    EXPECT_EQ(fixed_to_int(v), c.integer) << c.value;
    EXPECT_EQ(fixed_to_byte(v), c.byte) << c.value;
  }
  EXPECT_EQ(fixed_to_byte(1), 0);
  EXPECT_EQ(fixed_to_byte(0x3FFFFFF), 255);
  EXPECT_EQ(fixed_to_int(INT64_MAX), 0);
  for (const int i : {0, 1, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(int_to_fixed(i), i * (std::int64_t{1} << 26));
    EXPECT_EQ(fixed_to_int(int_to_fixed(i)), i);
  }
}

}  // namespace
