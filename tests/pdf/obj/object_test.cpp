// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/object.h"

#include "gtest/gtest.h"

#include <climits>
#include <cstring>
#include <string>

#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/object_text.h"
#include "tests/support/pdf_text.h"

using namespace testing_support;

namespace {

const char* const values[] = {"null",   "true",         "-5",     "[1 [2 (x)] <</B 1 /A [/N]>> 3 0 R]",
                              "2.5",    "()",           "(text)", "<</C <</D (y)>> /B 0.5 /A true>>",
                              "/N",     "[]",           "<<>>",   "stream 9 <</Z [1] /A stream 3 <</K 1>>>>",
                              "12 0 R", "stream 7 <<>>"};

/// Where memory fails, a name is empty, a string has no bytes and the others lack what is in them.
TEST(Object, CopiesAreDeepAndReleasedAndNeedNotHaveMemory) {
  for (const char* text : values) {
    for (const char* old : values) {
      SCOPED_TRACE(testing::Message() << text << " over " << old);
      CPDFObjHolder source, copy;
      parse_pdf(text, source);
      const std::string expected = text_of(source);
      fault_alloc::sweep([&] {
        CPDFObjHolder tried;
        parse_pdf(old, tried);
        tried.copy_from(&source);
        if (text_of(tried) == expected) return;
        EXPECT_TRUE(fault_alloc::failed);
        EXPECT_EQ(tried.type, source.type == PDF_NAME ? PDF_EMPTY : source.type);
        if (source.type == PDF_STRING) { EXPECT_EQ(text_of(tried), "() 0"); }
      });
      parse_pdf(old, copy);
      copy.copy_from(&source);
      source.free();
      EXPECT_EQ(text_of(copy), expected);
      EXPECT_EQ(text_of(source), "0:0 ");
      copy.copy_from(nullptr);
      EXPECT_EQ(text_of(copy), "0:0 ");
      EXPECT_EQ(copy.str_bytes, nullptr);
    }
  }
}

TEST(Object, OddSources) {
  unsigned char bytes[] = "abc";
  struct {
    std::uint32_t type;
    std::int64_t value;
    unsigned char* bytes;
    const char* copy;  ///< An unknown tag owns nothing.
  } const cases[] = {{PDF_STRING, -1, bytes, "() 0"},
                     {PDF_STRING, INT_MIN, bytes, "() 0"},
                     {PDF_STRING, 5, nullptr, "() 0"},
                     {77, 5, nullptr, "77:5 "},
                     {PDF_STREAM, 0, nullptr, "stream0 0 0 0 <<>> "}};
  CPDFObjHolder copy;
  for (const auto& c : cases) {
    CPDFObj source;
    source.type = c.type;
    source.value = c.value;
    source.str_bytes = c.bytes;
    copy.copy_from(&source);
    EXPECT_EQ(text_of(copy), c.copy);
  }
}

TEST(Object, DictionaryIsSortedAndSearched) {
  CPDFDictionary dict;
  EXPECT_EQ(dict.words[0] & dict.words[1], ~std::uint64_t{0});
  EXPECT_EQ(find_key(nullptr, "A"), nullptr);
  const char* const keys[] = {"M", "C", "X", "", "Ma", "B", "C1"};
  for (int count = 0; count <= 7; ++count) {
    for (int i = 0; i < 7; ++i) {
      const CPDFObj* found = find_key(&dict, keys[i]);
      EXPECT_EQ(found != nullptr ? found->as_int() : -1, i < count ? i : -1) << keys[i];
    }
    for (int i = 1; i < dict.count; ++i) {
      EXPECT_LT(std::strcmp(CPDFDictionary::key_of(dict.items[i - 1]), CPDFDictionary::key_of(dict.items[i])), 0);
    }
    if (count < 7) dict.set(keys[count])->set_int(count);
  }
  EXPECT_EQ(dict.set("M")->type, PDF_EMPTY);
  EXPECT_EQ(dict.count, 7);
}

TEST(Access, ReadsEachKind) {
  TextXRef table;
  table.objects = {{1, "5"}, {2, "true"}, {3, "2.5"}, {4, "[1 2]"}, {5, "1 0 R"}};
  struct {
    const char* text;
    int number, boolean;
    double fixed;
    int items;
  } const cases[] = {{"7", 7, 0, 7, -1},      {"-0.5", 0, 0, -0.5, -1}, {"-2.5", -2, 0, -2.5, -1}, {"true", 0, 1, 0, -1},
                     {"false", 0, 0, 0, -1},  {"/A", 0, 0, 0, -1},      {"(5)", 0, 0, 0, -1},      {"null", 0, 0, 0, -1},
                     {"[1 2 3]", 0, 0, 0, 3}, {"1 0 R", 5, 0, 5, -1},   {"2 0 R", 0, 1, 0, -1},    {"3 0 R", 3, 0, 2.5, -1},
                     {"4 0 R", 0, 0, 0, 2},   {"5 0 R", 0, 0, 0, -1},   {"9 0 R", 0, 0, 0, -1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    CPDFObjHolder entry, temporary;
    parse_pdf(c.text, entry);
    for (CPDFXRefTable* xref : {static_cast<CPDFXRefTable*>(&table), static_cast<CPDFXRefTable*>(nullptr)}) {
      const bool lost = entry.type == PDF_REFERENCE && xref == nullptr;
      EXPECT_EQ(get_int_value(&entry, xref), lost ? 0 : c.number);
      EXPECT_EQ(get_bool_value(&entry, xref), lost ? 0 : c.boolean);
      EXPECT_EQ(get_fixed_value(&entry, xref), lost ? 0 : static_cast<std::int64_t>(c.fixed * fixed_one));
      const CPDFArray* array = get_array_value(&entry, xref, temporary);
      EXPECT_EQ(array != nullptr ? array->count : -1, lost ? -1 : c.items);
      if (array != nullptr) { EXPECT_NE(array, entry.array()); }  // Always a copy.
    }
  }
}

TEST(Fixed, Conversions) {
  struct {
    double value;
    int integer, byte;
  } const cases[] = {{0, 0, 0},   {0.5, 1, 128}, {-0.5, 0, 0},    {-1.5, -1, 0}, {2.5, 3, 255}, {-2.5, -2, 0},  {100.7, 101, 255},
                     {1, 1, 255}, {1.2, 1, 255}, {0.999, 1, 255}, {0.25, 0, 64}, {-7, -7, 0},   {0.498, 0, 127}};
  for (const auto& c : cases) {
    const auto v = static_cast<std::int64_t>(c.value * fixed_one);
    EXPECT_EQ(fixed_to_int(v), c.integer) << c.value;
    EXPECT_EQ(fixed_to_byte(v), c.byte) << c.value;
  }
  EXPECT_EQ(fixed_to_byte(1), 0);
  EXPECT_EQ(fixed_to_byte(0x3FFFFFF), 255);
  EXPECT_EQ(fixed_to_int(INT64_MAX), 0);
  for (const int i : {0, 1, -1, INT_MAX, INT_MIN}) EXPECT_EQ(fixed_to_int(int_to_fixed(i)), i);
}

}  // namespace
