// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include <cstring>
#include <string>

#include "pdf/image/image.h"
#include "pdf/obj/resources.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/image_seams.h"
#include "tests/support/spaces.h"

namespace {

/// A filter that adds its number to every byte: /+1, /+2, ...; /Big makes 5 MiB, and other names
/// are unknown.
class AddStream : public CPDFStream {
 public:
  AddStream(int& live, unsigned char* bytes, int count, int added) : CPDFStream(bytes, count, 1), live_(live), added_(added) { ++live_; }
  ~AddStream() override { --live_; }
  int read_block(void* dst, int n) override {
    const int read = CPDFStream::read_block(dst, n);
    auto* at = static_cast<unsigned char*>(dst);
    for (int i = 0; i < read; ++i) at[i] = static_cast<unsigned char>(at[i] + added_);
    return read;
  }

 private:
  int& live_;
  int added_;
};

class BigStream : public CPDFStream {
 public:
  int read_block(void* dst, int n) override {
    const int read = std::min(n, left_);
    std::memset(dst, 7, static_cast<size_t>(read));
    left_ -= read;
    return read;
  }

 private:
  int left_ = 5 << 20;
};

class Inline : public testing::Test {
 protected:
  Inline() {
    image_seams().parser_cs = [this](const CPDFObj* entry, CPDFXRefTable* xref) -> CPDFCSBase* {
      EXPECT_EQ(xref, nullptr);
      const bool known = entry->type == PDF_NAME && std::strcmp(entry->name(), "Own") == 0;
      return known ? new (std::nothrow) TestSpace(space, 8, 1) : nullptr;
    };
    image_seams().inline_stream = [this](unsigned char* bytes, int len, const char* filter, const CPDFDictionary* parms) -> CPDFStream* {
      calls += filter != nullptr ? filter : "null";
      if (parms != nullptr) calls += "{" + std::string(CPDFDictionary::key_of(parms->items[0])) + "}";
      calls += " ";
      if (filter != nullptr && std::strcmp(filter, "Big") == 0) return new (std::nothrow) BigStream;
      if (filter != nullptr && filter[0] != '+') return nullptr;
      return new (std::nothrow) AddStream(live, bytes, bytes != nullptr ? len : 0, filter != nullptr ? filter[1] - '0' : 0);
    };
  }
  ~Inline() override {
    image_seams() = {};
    EXPECT_EQ(live, 0);
    EXPECT_EQ(space.live, 0);
  }

  void load(CPDFImage& image, const std::string& dict, const CPDFResources* res = nullptr) {
    CPDFObjHolder obj;
    read_object(obj, ("<<" + dict + ">>").c_str());
    image.load_inline(obj.dict(), data, 3, res);
  }

  SpaceLog space;
  int live = 0;
  std::string calls;  ///< The filters that were asked for, with the first key of their parameters.
  unsigned char data[3] = {10, 20, 30};
};

TEST_F(Inline, Keys) {
  struct Case {
    const char* name;
    const char* dict;
    int width, height, bpc;
    unsigned flags;
    bool has_decode;
    int min, max;
  } const cases[] = {
      {"empty", "", -1, -1, 0, 0, false, 0, 0},
      {"abbreviated", "/W 5 /H 6 /BPC 4 /IM true /D [1 0]", 5, 6, 4, 1, true, 255, 0},
      {"full", "/Width 5 /Height 6 /BitsPerComponent 4 /ImageMask true /Decode [0 0.5]", 5, 6, 4, 1, true, 0, 128},
      {"abbreviated wins", "/W 5 /Width 6 /IM false /ImageMask true /D [] /Decode [1 1]", 5, -1, 0, 0, true, 0, 0},
      {"reals", "/W 2.5 /H -0.5", 3, 0, 0, 0, false, 0, 0},
      {"wrong kinds", "/W /A /Width 7 /H (x) /IM /A /ImageMask 1", 7, -1, 0, 1, false, 0, 0},
      {"not resolved", "/W 3 R /D 3 R", -1, -1, 0, 0, false, 0, 0},
      {"stencil by real", "/IM 0.5", -1, -1, 0, 1, false, 0, 0},
      {"decode kinds", "/CS /Own /D [/A 2]", -1, -1, 0, 0, true, 0, 255},
      {"decode odd", "/D [1]", -1, -1, 0, 0, true, 255, 0},
      {"decode no array", "/D 1", -1, -1, 0, 0, false, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CPDFImage image;
    image.width = image.height = -1;
    load(image, c.dict);
    EXPECT_EQ(image.width, c.width);
    EXPECT_EQ(image.height, c.height);
    EXPECT_EQ(image.bpc, c.bpc);
    EXPECT_EQ(image.flags, c.flags);
    EXPECT_EQ(image.has_decode, c.has_decode ? 1 : 0);
    EXPECT_EQ(image.decode_min[0], c.min);
    EXPECT_EQ(image.decode_max[0], c.max);
    EXPECT_EQ(image.interpolate, 1);
    ASSERT_NE(image.stream, nullptr);
    EXPECT_EQ(image.stream->data, data);
    EXPECT_EQ(image.stream->remaining, 3);
    EXPECT_EQ(image.stream->data_borrowed, 1);
  }
}

TEST_F(Inline, ColorSpaces) {
  MuteSpace a, b, c;
  CPDFResources::NamedCS named[] = {{"CsA", &a}, {"CsB", &b}, {"CsC", &c}};
  const CPDFResources resources = {named, 3}, none = {nullptr, 0};
  struct Case {
    const char* dict;
    const CPDFResources* res;
    const CPDFCSBase* expected;
    int borrowed;
  } const cases[] = {
      {"/W 1", &resources, nullptr, 0},   {"/CS /CsA", &resources, &a, 1},       {"/ColorSpace /CsB", &resources, &b, 1},
      {"/CS (CsC)", &resources, &c, 1},   {"/CS /CsAA", &resources, nullptr, 1}, {"/CS /A", &resources, nullptr, 1},
      {"/CS /Z", &resources, nullptr, 1}, {"/CS 5", &resources, nullptr, 1},     {"/CS /CsA", nullptr, nullptr, 1},
      {"/CS /CsA", &none, nullptr, 1},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.dict);
    CPDFImage image;
    load(image, test.dict, test.res);
    EXPECT_EQ(image.cs, test.expected);
    EXPECT_EQ(image.cs_borrowed, test.borrowed);
  }
  CPDFImage image;  // What it owned goes, and what it owns again is its own.
  load(image, "/CS /Own", &resources);
  load(image, "/CS /CsA", &resources);
  EXPECT_EQ(space.live, 0);
  load(image, "/CS /Own", &resources);
  EXPECT_EQ(image.cs_borrowed, 0);
  EXPECT_EQ(space.live, 1);
}

TEST_F(Inline, FilterChains) {
  struct Case {
    const char* dict;
    const char* calls;
    int first;  ///< The first byte of the image's stream; -1 for no stream, -2 for no byte.
    bool owns;
  } const cases[] = {
      {"/F /+1", "+1 ", 11, false},
      {"/Filter /+1 /DP <</P 1>>", "+1{P} ", 11, false},
      {"/F /+1 /DecodeParms <</Q 1>>", "+1{Q} ", 11, false},
      {"/F /+1 /DP 3 /DecodeParms <</Q 1>>", "+1 ", 11, false},
      {"/F /+1 /DP [<</P 1>>]", "+1 ", 11, false},
      {"/F /X", "X ", -1, false},
      {"/F 3", "", -1, false},
      {"/F 3 /Filter /+1", "", -1, false},
      {"/F []", "null ", 10, false},
      {"/F [/+1]", "+1 ", 11, false},
      {"/F [(+1)]", "+1 ", 11, false},
      {"/F [/+1] /DP [<</P 1>>]", "+1{P} ", 11, false},
      {"/F [/+1] /DP [<</P 1>> <</R 1>>]", "+1 ", 11, false},
      {"/F [/+1] /DP [3]", "+1 ", 11, false},
      {"/F [/+1] /DP <</P 1>> /DecodeParms [<</Q 1>>]", "+1{P} ", 11, false},
      {"/F [/+1] /DecodeParms [<</Q 1>>]", "+1{Q} ", 11, false},
      {"/F [/+1] /DP null /DecodeParms <</Q 1>>", "+1 ", 11, false},
      {"/F [/+1 /+2]", "+1 +2 ", 13, true},
      {"/F [/+1 /+2] /DP [null <</P 1>>]", "+1 +2{P} ", 13, true},
      {"/F [/+1 /+2] /DP [<</P 1>>]", "+1 +2 ", 13, true},
      {"/F [/+1 /+2] /DP [<</P 1>> <</R 1>>]", "+1{P} +2{R} ", 13, true},
      {"/F [/+1 /+2] /DP <</P 1>>", "+1 +2 ", 13, true},
      {"/F [/+1 /+2 /+4] /DecodeParms [<</P 1>> <</Q 1>>]", "+1{P} +2{Q} +4 ", 17, true},
      {"/F [/+1 /+2 /+4] /DP [<</P 1>> 3 <</R 1>> 4]", "+1{P} +2 +4{R} ", 17, true},
      {"/F [/+1 (+2) /+4 /+1]", "+1 +2 +4 +1 ", 18, true},
      {"/F [/X /+1]", "X ", -1, false},
      {"/F [/+1 /X /+2]", "+1 X ", -1, false},
      {"/F [/+1 /+2 /X]", "+1 +2 X ", -1, false},
      {"/F [3 /+1]", "null +1 ", 11, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.dict);
    calls.clear();
    const int blocks = fault_alloc::live_blocks();
    {
      CPDFImage image;
      load(image, c.dict);
      EXPECT_EQ(calls, c.calls);
      ASSERT_EQ(image.stream != nullptr, c.first != -1);
      if (image.stream != nullptr) {
        // All but the last stream are gone, and so is every buffer but the last.
        EXPECT_EQ(live, 1);
        EXPECT_EQ(fault_alloc::live_blocks() - blocks, c.owns ? 1 : 0);
        EXPECT_EQ(image.stream->data_borrowed, c.owns ? 0 : 1);
        unsigned char read[9];
        ASSERT_EQ(image.stream->read_block(read, 9), 3);
        EXPECT_EQ(read[0], c.first);
        EXPECT_EQ(read[2], c.first + 20);
      }
    }
    EXPECT_EQ(fault_alloc::live_blocks(), blocks);
    EXPECT_EQ(live, 0);
  }
}

/// A stage is cut where its buffer would pass 4 MiB: after 1024 bytes each of the hint and the
/// first chunk come chunks of 2, 4, ... 64 KiB.
TEST_F(Inline, StageIsCutAt4MiB) {
  CPDFImage image;
  load(image, "/F [/Big /+1]");
  ASSERT_NE(image.stream, nullptr);
  int capacity = 2048, chunk = 1024, expected = 0;
  for (;;) {
    expected = capacity;
    chunk = std::min(2 * chunk, 65536);
    capacity += chunk;
    if (capacity > 0x400000) break;
  }
  EXPECT_EQ(image.stream->length, expected);
}

TEST_F(Inline, SurvivesFailingAllocations) {
  CPDFObjHolder dict;
  read_object(dict, "<</W 3 /H 1 /BPC 8 /CS /Own /F [/+1 /+2 /+4] /DP [<</P 1>> null null] /D [1 0]>>");
  fault_alloc::sweep([&] {
    CPDFImage image;
    image.load_inline(dict.dict(), data, 3, nullptr);
    image.get_bmp();
    image.load_inline(dict.dict(), data, 3, nullptr);
  });
}

}  // namespace
