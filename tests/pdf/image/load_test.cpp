// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include <cstring>
#include <string>

#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/image/image.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/image_seams.h"
#include "tests/support/spaces.h"
#include "tests/support/streams.h"

namespace {

/// The space that a name stands for in these tests: its family and components, as in /I8-1 (all
/// but the last two are a family code); null for other names.
CPDFCSBase* parse_space(SpaceLog& log, const CPDFObj* entry) {
  const std::string name = entry->type == PDF_NAME ? entry->name() : "";
  if (name == "Gray") return new (std::nothrow) TestSpace(log, 1, 1);
  if (name == "RGB") return new (std::nothrow) TestSpace(log, 3, 3);
  if (name == "CMYK") return new (std::nothrow) TestSpace(log, 5, 4);
  if (name == "Indexed") return new (std::nothrow) TestSpace(log, 8, 1);
  return nullptr;
}

/// Loads images whose streams log; what the streams are depends on the test.
class Load : public testing::Test {
 protected:
  Load() {
    table.make = [this](const CPDFStreamRec*) -> CPDFStream* { return new (std::nothrow) ScriptedStream(reads, {}); };
    image_seams().parser_cs = [this](const CPDFObj* entry, CPDFXRefTable*) { return parse_space(space, entry); };
  }
  ~Load() override {
    image_seams() = {};
    EXPECT_EQ(reads.live, 0);
    EXPECT_EQ(space.live, 0);
  }

  void load(CPDFImage& image, const std::string& text) {
    image.xref = &table;
    read_object(image.obj, text.c_str());
    image.load();
  }

  StreamLog reads;
  SpaceLog space;
  TestTable table;
};

/// The fields that a load left other than in a new image, as text.
std::string describe(const CPDFImage& image) {
  std::string out;
  const auto add = [&out](const char* name, int value, int usual) {
    if (value != usual) out += std::string(name) + "=" + std::to_string(value) + " ";
  };
  const auto add_list = [&out](const char* name, const int* values) {
    int count = 16;
    while (count > 0 && values[count - 1] == 0) --count;
    if (count == 0) return;
    out += name;
    for (int i = 0; i < count; ++i) out += (i == 0 ? "=" : ",") + std::to_string(values[i]);
    out += " ";
  };
  add("w", image.width, 0);
  add("h", image.height, 0);
  add("bpc", image.bpc, 8);
  add("flags", static_cast<int>(image.flags), 0);
  if (image.cs != nullptr) add("cs", image.cs->family, 0);
  add("borrowed", image.cs_borrowed, 0);
  add("has_mask", image.has_mask, 0);
  add("interpolate", image.interpolate, 0);
  add_list("key_min", image.mask_min.val);
  add_list("key_max", image.mask_max.val);
  add("alpha", image.jpx_alpha, 0);
  add("has_decode", image.has_decode, 0);
  add_list("dmin", image.decode_min);
  add_list("dmax", image.decode_max);
  add_list("matte", image.matte.val);
  if (image.stream == nullptr) out += "no-stream ";
  if (image.mask != nullptr) out += "mask(" + describe(*image.mask) + ") ";
  if (image.smask != nullptr) out += "smask(" + describe(*image.smask) + ") ";
  if (!out.empty()) out.pop_back();
  return out;
}

struct Case {
  const char* name;
  const char* dict;
  const char* result;
};

TEST_F(Load, Keys) {
  table.objects = {{1, "40"}, {2, "true"}, {3, "[1 0.25]"}, {4, "stream 40 <</Width 3>>"}, {5, "/Gray"}, {6, "0.5"}, {7, "stream 7 <<>>"}};
  const Case cases[] = {
      {"nothing", "", ""},
      {"sizes", "/Width 10 /Height 20 /BitsPerComponent 4", "w=10 h=20 bpc=4"},
      {"sizes by reference", "/Width 1 R /Height 6 R", "w=40 h=1"},
      {"reals", "/Width 99.5 /Height -0.5", "w=100"},
      {"wrong kinds", "/Width /A /Height (9) /BitsPerComponent true", ""},
      {"lost reference", "/Width 99 R /Height -7", "h=-7"},
      {"space", "/ColorSpace /RGB", "cs=3"},
      {"space unresolved", "/ColorSpace 5 R", ""},
      {"stencil", "/ImageMask true", "flags=1"},
      {"stencil by reference", "/ImageMask 2 R", "flags=1"},
      {"stencil by number", "/ImageMask 1", ""},
      {"in data", "/SMaskInData 1", "flags=2"},
      {"in data 0.4", "/SMaskInData 0.4", ""},
      {"in data 0.5", "/SMaskInData 6 R", "flags=2"},
      {"interpolate", "/Interpolate true", "interpolate=1"},
      {"interpolate number", "/Interpolate 1", ""},
      {"key", "/Mask [0 10 20 30 40 50]", "has_mask=1 key_min=0,20,40 key_max=10,30,50"},
      {"key empty", "/Mask []", "has_mask=1"},
      {"key odd", "/Mask [1 2 3]", "has_mask=1 key_min=1,3 key_max=2"},
      {"key kinds", "/Mask [1.5 1 R /A 7]", "has_mask=1 key_min=2 key_max=40,7"},
      {"key by reference", "/Mask 3 R", "has_mask=1 key_min=1"},
      {"key too long", "/Mask [1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 9 9]",
       "has_mask=1 key_min=1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1 "
       "key_max=2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,2"},
      {"mask", "/Mask 4 R", "has_mask=1 mask(w=3)"},
      {"mask is itself", "/Mask 7 R", ""},
      {"mask of another kind", "/Mask /Name", ""},
      {"soft mask", "/SMask 4 R", "smask(w=3)"},
      {"soft mask is itself", "/SMask 7 R", ""},
      {"soft mask is a name", "/SMask /None", "smask(bpc=0 interpolate=1 no-stream)"},
      {"soft mask lost", "/SMask 99 R", "smask(bpc=0 interpolate=1 no-stream)"},
      {"decode", "/ColorSpace /Gray /Decode [1 0]", "cs=1 has_decode=1 dmin=255"},
      {"decode without space", "/Decode [0 1 0.5 1.2 -1 3 R]", "has_decode=1 dmin=0,128 dmax=255,255"},
      {"decode indexed", "/ColorSpace /Indexed /Decode [15 0.5]", "cs=8 has_decode=1 dmin=15 dmax=1"},
      {"decode empty", "/Decode []", "has_decode=1"},
      {"decode odd", "/Decode [0 1 1]", "has_decode=1 dmin=0,255 dmax=255"},
      {"decode by reference", "/Decode 3 R", "has_decode=1 dmin=255 dmax=64"},
      {"decode no array", "/Decode 1", ""},
      {"matte", "/Matte [0.5 0.5 6 R]", "flags=8 matte=128,128,128"},
      {"matte indexed", "/ColorSpace /Indexed /Matte [7]", "flags=8 cs=8 matte=7"},
      {"matte no array", "/Matte /A", ""},
      {"matte too long", "/Matte [1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1]",
       "flags=8 matte=255,255,255,255,255,255,255,255,255,255,255,255,255,255,255,255"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CPDFImage image;
    load(image, std::string("stream 7 <<") + c.dict + ">>");
    EXPECT_EQ(describe(image), c.result);
  }
}

TEST_F(Load, RunsOnlyOnUnloadedStreams) {
  for (const char* text : {"<</Width 3>>", "null"}) {
    CPDFImage image;
    load(image, text);
    EXPECT_EQ(describe(image), "bpc=0 interpolate=1 no-stream");
  }
  CPDFImage image;
  load(image, "stream 1 <</Width 3 /ColorSpace /Gray /ImageMask true>>");
  load(image, "stream 1 <</Width 4>>");
  EXPECT_EQ(image.width, 3);
  image.unload();
  image.load();  // What is left of the first load, its stream, goes; flags are only added to.
  EXPECT_EQ(describe(image), "w=4 flags=1");
  EXPECT_EQ(reads.live, 1);
  EXPECT_EQ(space.live, 0);

  CPDFImage empty;  // Without a size it counts as not loaded.
  load(empty, "stream 1 <</ColorSpace /Gray /Mask stream 2 <<>> /SMask stream 3 <<>> >>");
  load(empty, "stream 1 <</ColorSpace /RGB /Mask stream 2 <<>> /SMask stream 3 <<>> >>");
  EXPECT_EQ(describe(empty), "cs=3 has_mask=1 mask() smask()");
  EXPECT_EQ(reads.live, 4);
  EXPECT_EQ(space.live, 1);

  CPDFImage alone;  // Without a table references stay, and no stream is made.
  read_object(alone.obj, "stream 1 <</Width 1 R /Height 2 /SMask 4 R>>");
  alone.load();
  EXPECT_EQ(describe(alone), "h=2 no-stream smask(bpc=0 interpolate=1 no-stream)");
}

TEST_F(Load, MaskChains) {
  struct Chain {
    const char* name;
    std::map<int, std::string> objects;
    const char* result;
  } const chains[] = {
      {"self", {{1, "stream 1 <</Width 1 /Mask 1 R /SMask 1 R>>"}}, "w=1"},
      {"parent", {{1, "stream 1 <</Width 1 /SMask 2 R>>"}, {2, "stream 2 <</Width 2 /SMask 1 R /Mask 2 R>>"}}, "w=1 smask(w=2)"},
      {"grandparent",
       {{1, "stream 1 <</Width 1 /SMask 2 R>>"}, {2, "stream 2 <</Width 2 /Mask 3 R>>"}, {3, "stream 4294967299 <</Width 3 /SMask 1 R>>"}},
       "w=1 smask(w=2 has_mask=1 mask(w=3))"},
      {"same low word", {{1, "stream 1 <</SMask 2 R>>"}, {2, "stream 4294967297 <<>>"}}, ""},
      {"five deep",
       {{1, "stream 1 <</Width 1 /SMask 2 R>>"},
        {2, "stream 2 <</Width 2 /SMask 3 R>>"},
        {3, "stream 3 <</Width 3 /Mask 4 R>>"},
        {4, "stream 4 <</Width 4 /SMask 5 R>>"},
        {5, "stream 5 <</Width 5 /SMask 6 R /Mask 6 R>>"},
        {6, "stream 6 <</Width 6>>"}},
       "w=1 smask(w=2 smask(w=3 has_mask=1 mask(w=4 smask(w=5))))"},
      {"siblings", {{1, "stream 1 <</Mask 2 R /SMask 2 R>>"}, {2, "stream 2 <</Width 2>>"}}, "has_mask=1 mask(w=2) smask(w=2)"},
  };
  for (const Chain& chain : chains) {
    SCOPED_TRACE(chain.name);
    table.objects = chain.objects;
    CPDFImage image;
    load(image, table.objects[1]);
    EXPECT_EQ(describe(image), chain.result);
  }
}

TEST_F(Load, JpxRule) {
  struct Rule {
    int components, alpha, bpc;
    const char* space;
    bool table;
    int family, bpc_after;
    bool replaced;
  } const rules[] = {
      {4, -1, 8, "/Gray", false, 5, 8, true},    {4, -1, 8, "/Gray", true, 12, 8, true},   {4, -1, 8, "/CMYK", true, 5, 8, false},
      {4, -1, 8, "/None", false, 5, 8, true},    {1, 0, 4, "/Indexed", false, 1, 8, true}, {1, 3, 8, "/Indexed", false, 8, 8, false},
      {1, -1, 7, "/Gray", false, 1, 8, true},    {1, -1, 4, "/RGB", false, 1, 4, true},    {1, -1, 0, "/None", false, 1, 8, true},
      {1, -1, 16, "/Gray", false, 1, 16, false}, {3, -1, 8, "/None", false, 3, 8, true},   {2, -1, 8, "/None", false, 3, 8, true},
      {3, -1, 4, "/RGB", false, 3, 4, false},    {5, -1, 8, "/CMYK", false, 3, 8, true},
  };
  int made_components = 0, made_alpha = 0;
  table.make = [&](const CPDFStreamRec*) -> CPDFStream* {
    auto* stream = new ScriptedJpxStream(reads, {}, {});
    stream->comp_count = made_components;
    stream->alpha_channel = made_alpha;
    return stream;
  };
  unsigned short cmyk[3] = {};
  for (const Rule& rule : rules) {
    SCOPED_TRACE(testing::Message() << rule.components << " " << rule.space << " " << rule.bpc);
    made_components = rule.components;
    made_alpha = rule.alpha;
    CPDFCSDeviceCMYKExt::ms_icc = rule.table ? cmyk : nullptr;
    CPDFImage image;
    load(image, "stream 1 <</Width 1 /ColorSpace " + std::string(rule.space) + " /BitsPerComponent " + std::to_string(rule.bpc) +
                    " /Decode [1 2] >>");
    ASSERT_NE(image.cs, nullptr);
    EXPECT_EQ(image.cs->family, rule.family);
    EXPECT_EQ(dynamic_cast<TestSpace*>(image.cs) == nullptr, rule.replaced);
    EXPECT_EQ(space.live, rule.replaced ? 0 : 1);
    EXPECT_EQ(image.bpc, rule.bpc_after);
    EXPECT_EQ(image.jpx_alpha, rule.alpha >= 0 ? 1 : 0);
    // Decode is read in the space that is left.
    EXPECT_EQ(image.decode_max[0], image.cs->family == 8 ? 2 : 255);
  }
  CPDFCSDeviceCMYKExt::ms_icc = nullptr;
}

/// Load, each request, unload, load again, with every allocation failing in turn.
TEST_F(Load, SurvivesFailingAllocations) {
  table.objects[4] = "stream 4 <</Width 5 /Height 3 /ColorSpace /Gray /Matte [1] /Decode [1 0]>>";
  CPDFObjHolder source;
  const char* const dicts[] = {"/ColorSpace /Gray /Mask [1 2] /SMask 4 R /Decode [1 0]", "/ColorSpace /RGB /Mask 4 R",
                               "/ColorSpace /Gray /BitsPerComponent 1", "/ColorSpace /CMYK /Decode [1 0 1 0]",
                               "/ColorSpace /Gray /Decode [1 0]"};
  for (const char* dict : dicts) {
    SCOPED_TRACE(dict);
    read_object(source, (std::string("stream 1 <</Width 9 /Height 3 ") + dict + ">>").c_str());
    for (int which = 0; which < 5; ++which) {
      fault_alloc::sweep([&] {
        CPDFImage image;
        image.xref = &table;
        image.obj.copy_from(&source);
        for (int round = 0; round < 2; ++round) {
          image.load();
          _KXRGBA palette[256];
          for (CPDFImage* one : {&image, image.mask, image.smask}) {
            if (one == nullptr) continue;
            const CKXBmp* bmp = which == 0   ? static_cast<CKXBmp*>(one->get_bmp())
                                : which == 1 ? one->get_bmp_gray()
                                : which == 2 ? one->get_mask()
                                : which == 3 ? one->get_smask()
                                             : static_cast<CKXBmp*>(one->get_bmp_mono(palette));
            if (bmp != nullptr) { ASSERT_NE(bmp->pixels, nullptr); }
          }
          image.get_matte();
          image.unload();
        }
      });
      EXPECT_EQ(reads.live, 0);
      EXPECT_EQ(space.live, 0);
      if (HasFatalFailure()) return;
    }
  }
}

/// Where a request has no memory, it either keeps the stream for the next call or drops it.
TEST_F(Load, RequestsWithoutMemory) {
  struct Request {
    const char* name;
    const char* dict;
    int which, failing;
    bool has_bitmap, keeps_stream, keeps_space;
  } const requests[] = {
      {"bmp: object", "/ColorSpace /RGB", 0, 1, false, false, true},
      {"bmp: pixels", "/ColorSpace /RGB", 0, 2, false, false, true},
      {"bmp: row", "/ColorSpace /RGB", 0, 3, false, false, false},
      {"gray: pixels", "/ColorSpace /RGB", 1, 2, false, false, true},
      {"gray: row", "/ColorSpace /RGB", 1, 3, true, false, false},
      {"mask: row", "/ImageMask true", 2, 1, false, true, true},
      {"mask: object", "/ImageMask true", 2, 2, false, true, true},
      {"mask: pixels", "/ImageMask true", 2, 3, false, true, true},
      {"soft mask: pixels", "/ColorSpace /Gray", 3, 2, false, true, true},
      {"soft mask: row", "/ColorSpace /Gray /Decode [1 0]", 3, 3, false, true, true},
      {"soft mask: 1-bit row", "/ColorSpace /Gray /BitsPerComponent 1", 3, 3, false, true, true},
      {"mono: row", "/ColorSpace /Gray /BitsPerComponent 1", 4, 1, false, true, true},
      {"mono: pixels", "/ColorSpace /Gray /BitsPerComponent 1", 4, 3, false, false, true},
      {"mono 8-bit: pixels", "/ColorSpace /Gray", 4, 2, false, false, true},
  };
  for (const Request& r : requests) {
    SCOPED_TRACE(r.name);
    CPDFImage image;
    load(image, std::string("stream 1 <</Width 9 /Height 3 ") + r.dict + ">>");
    const bool had_space = image.cs != nullptr;
    _KXRGBA palette[256];
    fault_alloc::fail_at(r.failing, fault_alloc::Failure::once);
    const CKXBmp* bmp = r.which == 0   ? static_cast<CKXBmp*>(image.get_bmp())
                        : r.which == 1 ? image.get_bmp_gray()
                        : r.which == 2 ? image.get_mask()
                        : r.which == 3 ? image.get_smask()
                                       : static_cast<CKXBmp*>(image.get_bmp_mono(palette));
    EXPECT_TRUE(fault_alloc::has_failed());
    fault_alloc::fail_at(0, fault_alloc::Failure::once);
    EXPECT_EQ(bmp != nullptr, r.has_bitmap);
    EXPECT_EQ(image.stream != nullptr, r.keeps_stream);
    EXPECT_EQ(image.cs != nullptr, r.keeps_space && had_space);
    EXPECT_EQ(image.bmp_mask, nullptr);
    EXPECT_TRUE(reads.reads.empty());
    if (r.has_bitmap) {
      for (int i = 0; i < bmp->height * bmp->stride; ++i) EXPECT_EQ(bmp->pixels[i], 0);
    }
  }
}

}  // namespace
