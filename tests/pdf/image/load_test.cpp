// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <map>
#include <string>

#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/device_gray.h"
#include "pdf/obj/resources.h"
#include "tests/pdf/image/test_image.h"
#include "tests/support/fault_alloc.h"
#include "tests/support/image_seams.h"
#include "tests/support/pdf_text.h"

using namespace testing_support;

namespace {

/// Loads images from text. Their streams log; /Gray, /RGB, /CMYK and /Indexed are colour spaces.
class Load : public testing::Test {
 protected:
  Load() {
    table.make = [this]() -> CPDFStream* { return new (std::nothrow) ScriptedStream(reads, {}); };
    image_seams().parser_cs = [this](const CPDFObj* entry, CPDFXRefTable* xref) -> CPDFCSBase* {
      static const std::map<std::string, std::array<int, 2>> known = {
          {"Gray", {1, 1}}, {"RGB", {3, 3}}, {"CMYK", {5, 4}}, {"Indexed", {8, 1}}};
      EXPECT_EQ(xref, expected_xref);
      const auto found = known.find(entry->type == PDF_NAME ? entry->name() : "");
      return found == known.end() ? nullptr : new (std::nothrow) TestSpace(space, found->second[0], found->second[1]);
    };
  }
  ~Load() override {
    image_seams() = {};
    EXPECT_EQ(reads.live + space.live, 0);
  }

  void load(CPDFImage& image, const std::string& text) {
    image.xref = expected_xref = &table;
    parse_pdf(text, image.obj);
    image.load();
  }

  StreamLog reads;
  SpaceLog space;
  TextXRef table;
  CPDFXRefTable* expected_xref = nullptr;
};

/// The fields that are not as a dictionary without entries leaves them, as text.
std::string describe(const CPDFImage& image) {
  std::string out;
  const auto add = [&out](const char* name, const int* values, int count = 16, int usual = 0) {
    while (count > 0 && values[count - 1] == usual) --count;
    for (int i = 0; i < count; ++i) out += (i == 0 ? std::string(name) + "=" : ",") + std::to_string(values[i]);
    out += count > 0 ? " " : "";
  };
  const auto flags = static_cast<int>(image.flags), family = image.cs != nullptr ? image.cs->family : 0;
  add("w", &image.width, 1), add("h", &image.height, 1), add("bpc", &image.bpc, 1, 8), add("flags", &flags, 1);
  add("cs", &family, 1), add("has_mask", &image.has_mask, 1), add("interpolate", &image.interpolate, 1);
  add("key_min", image.mask_min.val), add("key_max", image.mask_max.val), add("has_decode", &image.has_decode, 1);
  add("dmin", image.decode_min), add("dmax", image.decode_max), add("matte", image.matte.val);
  if (image.stream == nullptr) out += "no-stream ";
  if (image.mask != nullptr) out += "mask(" + describe(*image.mask) + ") ";
  if (image.smask != nullptr) out += "smask(" + describe(*image.smask) + ") ";
  return out.substr(0, out.empty() ? 0 : out.size() - 1);
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
      {"numbers", "/Width 10 /Height -7 /BitsPerComponent 4 /SMaskInData 2 /ColorSpace /RGB", "w=10 h=-7 bpc=4 flags=2 cs=3"},
      {"numbers by reference", "/Width 1 0 R /Height 6 0 R /SMaskInData 6 0 R /BitsPerComponent 99 0 R", "w=40 h=1 flags=2"},
      {"reals", "/Width 99.5 /Height -0.5 /SMaskInData 0.4", "w=100"},
      {"flags", "/ImageMask true /Interpolate true", "flags=1 interpolate=1"},
      {"flag by reference, space unresolved", "/ImageMask 2 0 R /ColorSpace 5 0 R", "flags=1"},
      {"wrong kinds", "/Width /A /Height (9) /BitsPerComponent true /ImageMask 1 /Interpolate 1 /Mask /N /Decode 1 /Matte /A", ""},
      {"key", "/Mask [0 10 20 30 40 50]", "has_mask=1 key_min=0,20,40 key_max=10,30,50"},
      {"key empty", "/Mask []", "has_mask=1"},
      {"key odd", "/Mask [1 2 3]", "has_mask=1 key_min=1,3 key_max=2"},
      {"key kinds", "/Mask [1.5 1 0 R /A 7]", "has_mask=1 key_min=2 key_max=40,7"},
      {"key by reference", "/Mask 3 0 R", "has_mask=1 key_min=1"},
      {"key too long", "/Mask [1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 1 2 9 9]",
       "has_mask=1 key_min=1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1 key_max=2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,2"},
      {"masks", "/Mask 4 0 R /SMask 4 0 R", "has_mask=1 mask(w=3) smask(w=3)"},
      {"masks are itself", "/Mask 7 0 R /SMask 7 0 R", ""},
      {"masks of the parent", "/SMask stream 2 <</Width 2 /SMask 7 0 R /Mask stream 2 <<>> >>", "smask(w=2)"},
      {"mask of the grandparent", "/SMask stream 2 <</Mask stream 4294967299 <</Width 3 /SMask 7 0 R>> >>", "smask(has_mask=1 mask(w=3))"},
      {"same low word", "/SMask stream 4294967303 <<>>", ""},
      {"five deep", "/SMask stream 2 <</SMask stream 3 <</Mask stream 4 <</SMask stream 5 <</Width 5 /SMask 4 0 R /Mask 4 0 R>> >> >> >>",
       "smask(smask(has_mask=1 mask(smask(w=5))))"},
      {"soft mask is a name", "/SMask /None", "smask(bpc=0 interpolate=1 no-stream)"},
      {"soft mask lost", "/SMask 99 0 R", "smask(bpc=0 interpolate=1 no-stream)"},
      {"decode", "/ColorSpace /Gray /Decode [1 0]", "cs=1 has_decode=1 dmin=255"},
      {"decode without space", "/Decode [0 1 0.5 1.2 -1 3 0 R]", "has_decode=1 dmin=0,128 dmax=255,255"},
      {"decode indexed", "/ColorSpace /Indexed /Decode [15 0.5]", "cs=8 has_decode=1 dmin=15 dmax=1"},
      {"decode empty", "/Decode []", "has_decode=1"},
      {"decode odd", "/Decode [0 1 1]", "has_decode=1 dmin=0,255 dmax=255"},
      {"decode by reference", "/Decode 3 0 R", "has_decode=1 dmin=255 dmax=64"},
      {"matte", "/Matte [0.5 0.5 6 0 R]", "flags=8 matte=128,128,128"},
      {"matte indexed", "/ColorSpace /Indexed /Matte [7]", "flags=8 cs=8 matte=7"},
      {"matte too long", "/Matte [1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1]",
       "flags=8 matte=255,255,255,255,255,255,255,255,255,255,255,255,255,255,255,255"},
  };
  for (const Case& c : cases) {
    CPDFImage image;
    load(image, std::string("stream 7 <<") + c.dict + ">>");
    EXPECT_EQ(describe(image), c.result) << c.name;
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

  CPDFImage empty;  // Without a size it counts as not loaded.
  load(empty, "stream 1 <</ColorSpace /Gray /Mask stream 2 <<>> /SMask stream 3 <<>> >>");
  load(empty, "stream 1 <</ColorSpace /RGB /Mask stream 2 <<>> /SMask stream 3 <<>> >>");
  EXPECT_EQ(describe(empty), "cs=3 has_mask=1 mask() smask()");
  EXPECT_EQ(reads.live, 4);
  EXPECT_EQ(space.live, 1);

  CPDFImage alone;  // Without a table references stay, and no stream is made.
  parse_pdf("stream 1 <</Width 1 0 R /Height 2 /SMask 4 0 R>>", alone.obj);
  alone.load();
  EXPECT_EQ(describe(alone), "h=2 no-stream smask(bpc=0 interpolate=1 no-stream)");
}

TEST_F(Load, JpxRule) {
  struct {
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
      {3, -1, 4, "/RGB", false, 3, 4, false},    {5, -1, 8, "/CMYK", false, 3, 8, true}};
  unsigned short cmyk[3] = {};
  for (const auto& rule : rules) {
    SCOPED_TRACE(testing::Message() << rule.components << " " << rule.space << " " << rule.bpc);
    table.make = [&] {
      auto* stream = new ScriptedJpxStream(reads, {}, {});
      stream->comp_count = rule.components;
      stream->alpha_channel = rule.alpha;
      return stream;
    };
    CPDFCSDeviceCMYKExt::ms_icc = rule.table ? cmyk : nullptr;
    CPDFImage image;
    load(image,
         std::string("stream 1 <</ColorSpace ") + rule.space + " /BitsPerComponent " + std::to_string(rule.bpc) + " /Decode [1 2]>>");
    ASSERT_NE(image.cs, nullptr);
    EXPECT_EQ(image.cs->family, rule.family);
    EXPECT_EQ(dynamic_cast<TestSpace*>(image.cs) == nullptr, rule.replaced);
    EXPECT_EQ(space.live, rule.replaced ? 0 : 1);
    EXPECT_EQ(image.bpc, rule.bpc_after);
    EXPECT_EQ(image.jpx_alpha, rule.alpha >= 0 ? 1 : 0);
    EXPECT_EQ(image.decode_max[0], rule.family == 8 ? 2 : 255);  // Decode is read in the space that is left.
  }
  CPDFCSDeviceCMYKExt::ms_icc = nullptr;
}

/// Load, each request, unload, load again, with every allocation failing in turn.
TEST_F(Load, SurvivesFailingAllocations) {
  table.objects[4] = "stream 4 <</Width 5 /Height 3 /ColorSpace /Gray /Matte [1] /Decode [1 0]>>";
  expected_xref = &table;
  for (const char* dict : {"/ColorSpace /Gray /Mask [1 2] /SMask 4 0 R /Decode [1 0]", "/ColorSpace /RGB /Mask 4 0 R",
                           "/ColorSpace /Gray /BitsPerComponent 1", "/ColorSpace /CMYK /Decode [1 0 1 0]"}) {
    SCOPED_TRACE(dict);
    CPDFObjHolder source;
    parse_pdf(std::string("stream 1 <</Width 9 /Height 3 ") + dict + ">>", source);
    for (int which = 0; which < 5; ++which) {
      fault_alloc::sweep([&] {
        CPDFImage image;
        image.xref = &table;
        image.obj.copy_from(&source);
        for (int round = 0; round < 2; ++round) {
          image.load();
          for (CPDFImage* one : {&image, image.mask, image.smask}) {
            const CKXBmp* bmp = one != nullptr ? request(*one, which) : nullptr;
            if (bmp != nullptr) { ASSERT_NE(bmp->pixels, nullptr); }
          }
          image.get_matte();
          image.unload();
        }
      });
      EXPECT_EQ(reads.live + space.live, 0);
      if (HasFailure()) return;
    }
  }
}

/// Where a request has no memory, it either keeps the stream for the next call or drops it: what is
/// left after its first, second, ... allocation failed. B a bitmap, S the stream, C the colour space.
TEST_F(Load, RequestsWithoutMemory) {
  struct {
    Request which;
    const char* dict;
    const char* left;
  } const requests[] = {{color, "RGB", "C C - B"},
                        {gray, "RGB", "C C B B"},
                        {mask, "None /ImageMask true", "S S S B"},
                        {soft_mask, "Gray", "SC SC BC"},
                        {soft_mask, "Gray /Decode [1 0]", "SC SC SC BC"},
                        {soft_mask, "Gray /BitsPerComponent 1", "SC SC SC BC"},
                        {mono, "Gray", "C C BC"},
                        {mono, "Gray /BitsPerComponent 1", "SC C C BC"}};
  for (const auto& r : requests) {
    std::string left;
    bool failed = true;
    for (int n = 1; failed; ++n) {
      CPDFImage image;
      load(image, std::string("stream 1 <</Width 9 /Height 3 /ColorSpace /") + r.dict + ">>");
      reads.reads.clear();
      fault_alloc::fail_at(n);
      const CKXBmp* bmp = request(image, r.which);
      failed = fault_alloc::failed;
      fault_alloc::fail_at(0);
      const std::string now =
          std::string(bmp != nullptr ? "B" : "") + (image.stream != nullptr ? "S" : "") + (image.cs != nullptr ? "C" : "");
      left += (n > 1 ? " " : "") + (now.empty() ? "-" : now);
      if (!failed) continue;
      EXPECT_EQ(image.bmp_mask, nullptr);
      EXPECT_TRUE(reads.reads.empty());
      for (const unsigned char byte : memory_of(bmp)) EXPECT_EQ(byte, 0);
    }
    EXPECT_EQ(left, r.left) << r.which << " " << r.dict;
  }
}

/// Loads inline images. A filter adds its number to every byte: /+1, /+2, ...; /Big gives bytes
/// without end, and other names are unknown.
class Inline : public Load {
 protected:
  Inline() {
    image_seams().inline_stream = [this](unsigned char* bytes, int len, const char* filter, const CPDFDictionary* parms) -> CPDFStream* {
      const std::string name = filter != nullptr ? filter : "null";
      calls += name + (parms != nullptr && parms->count > 0 ? "{" + std::string(CPDFDictionary::key_of(parms->items[0])) + "} " : " ");
      if (name == "Big") return new (std::nothrow) ScriptedStream(reads, {});
      if (name[0] != '+' && filter != nullptr) return nullptr;
      for (int i = 0; i < len && filter != nullptr && bytes != nullptr; ++i)
        bytes[i] = static_cast<unsigned char>(bytes[i] + name[1] - '0');
      return new (std::nothrow) CPDFStream(bytes, bytes != nullptr ? len : 0, 1);
    };
  }

  void load_inline(CPDFImage& image, const std::string& dict, const CPDFResources* res = nullptr) {
    CPDFObjHolder obj;
    parse_pdf("<<" + dict + ">>", obj);
    data = {10, 20, 30};
    calls.clear();
    image.load_inline(obj.dict(), data.data(), 3, res);
  }

  std::string calls;  ///< The filters that were asked for, with the first key of their parameters.
  std::array<unsigned char, 3> data;
};

TEST_F(Inline, Keys) {
  const Case cases[] = {
      // Width and height are -1 where nothing sets them.
      {"empty", "", "w=-1 h=-1 bpc=0 interpolate=1"},
      {"abbreviated", "/W 5 /H 6 /BPC 4 /IM true /D [1 0]", "w=5 h=6 bpc=4 flags=1 interpolate=1 has_decode=1 dmin=255"},
      {"full", "/Width 5 /Height 6 /BitsPerComponent 4 /ImageMask true /Decode [0 0.5]",
       "w=5 h=6 bpc=4 flags=1 interpolate=1 has_decode=1 dmax=128"},
      {"abbreviated wins", "/W 5 /Width 6 /IM false /ImageMask true /D [] /Decode [1 1]", "w=5 h=-1 bpc=0 interpolate=1 has_decode=1"},
      {"reals", "/W 2.5 /H -0.5 /IM 0.5", "w=3 bpc=0 flags=1 interpolate=1"},
      {"wrong kinds", "/W /A /Width 7 /H (x) /IM /A /ImageMask 1 /D 1", "w=7 h=-1 bpc=0 flags=1 interpolate=1"},
      {"not resolved", "/W 3 0 R /D 3 0 R", "w=-1 h=-1 bpc=0 interpolate=1"},
      {"decode kinds", "/CS /Indexed /D [/A 2]", "w=-1 h=-1 bpc=0 cs=8 interpolate=1 has_decode=1 dmax=255"},
      {"decode odd", "/D [1]", "w=-1 h=-1 bpc=0 interpolate=1 has_decode=1 dmin=255"},
  };
  for (const Case& c : cases) {
    CPDFImage image;
    image.width = image.height = -1;
    load_inline(image, c.dict);
    EXPECT_EQ(describe(image), c.result) << c.name;
    ASSERT_NE(image.stream, nullptr);
    EXPECT_TRUE(image.stream->data == data.data() && image.stream->remaining == 3 && image.stream->data_borrowed == 1);
  }
}

TEST_F(Inline, ColorSpaces) {
  CPDFCSDeviceGray a, b, c;
  CPDFResources::NamedCS named[] = {{"CsA", &a}, {"CsB", &b}, {"CsC", &c}};
  const CPDFResources resources = {named, 3}, none = {nullptr, 0};
  struct {
    const char* dict;
    const CPDFResources* res;
    const CPDFCSBase* expected;
  } const cases[] = {{"/CS /CsA", &resources, &a},       {"/ColorSpace /CsB", &resources, &b}, {"/CS (CsC)", &resources, &c},
                     {"/CS /CsAA", &resources, nullptr}, {"/CS /A", &resources, nullptr},      {"/CS /Z", &resources, nullptr},
                     {"/CS 5", &resources, nullptr},     {"/CS /CsA", nullptr, nullptr},       {"/CS /CsA", &none, nullptr}};
  CPDFImage image;
  load_inline(image, "/W 1", &resources);
  EXPECT_TRUE(image.cs == nullptr && image.cs_borrowed == 0);
  for (const auto& test : cases) {
    SCOPED_TRACE(test.dict);
    load_inline(image, "/CS /Indexed", &resources);  // What it owned goes, and what it owns again is its own.
    EXPECT_TRUE(space.live == 1 && image.cs_borrowed == 0);
    load_inline(image, test.dict, test.res);
    EXPECT_TRUE(space.live == 0 && image.cs_borrowed == 1);
    EXPECT_EQ(image.cs, test.expected);
  }
}

TEST_F(Inline, FilterChains) {
  struct {
    const char* dict;
    const char* calls;
  } const cases[] = {{"/F /+1", "+1 "},
                     {"/Filter /+1 /DP <</P 1>>", "+1{P} "},
                     {"/F /+1 /DecodeParms <</Q 1>>", "+1{Q} "},
                     {"/F /+1 /DP 3 /DecodeParms <</Q 1>>", "+1 "},
                     {"/F /+1 /DP [<</P 1>>]", "+1 "},
                     {"/F 3 /Filter /+1", ""},
                     {"/F []", "null "},
                     {"/F [(+1)]", "+1 "},
                     {"/F [/+1] /DP [<</P 1>>]", "+1{P} "},
                     {"/F [/+1] /DP [<</P 1>> <</R 1>>]", "+1 "},
                     {"/F [/+1] /DP [3]", "+1 "},
                     {"/F [/+1] /DP <</P 1>>", "+1{P} "},
                     {"/F [/+1] /DP null /DecodeParms <</Q 1>>", "+1 "},
                     {"/F [/+1 /+2] /DP [null <</P 1>>]", "+1 +2{P} "},
                     {"/F [/+1 /+2] /DP [<</P 1>>]", "+1 +2 "},
                     {"/F [/+1 /+2] /DP <</P 1>>", "+1 +2 "},
                     {"/F [/+1 /+2 /+4] /DP [<</P 1>> <</Q 1>>]", "+1{P} +2{Q} +4 "},
                     {"/F [/+1 /+2 /+4] /DP [<</P 1>> 3 <</R 1>> 4]", "+1{P} +2 +4{R} "},
                     {"/F [/+1 (+2) /+4 /+1]", "+1 +2 +4 +1 "},
                     {"/F [/X /+1]", "X "},
                     {"/F [/+1 /+2 /X]", "+1 +2 X "},
                     {"/F [3 /+1]", "null +1 "}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.dict);
    const int blocks = fault_alloc::live;
    {
      CPDFImage image;
      load_inline(image, c.dict);
      ASSERT_EQ(calls, c.calls);
      ASSERT_EQ(image.stream != nullptr, !calls.empty() && calls.find('X') == std::string::npos);
      // Every buffer but the last is gone, and that is the stream's own behind more than one filter.
      const bool owns = image.stream != nullptr && std::count(calls.begin(), calls.end(), ' ') > 1;
      EXPECT_EQ(fault_alloc::live - blocks, owns ? 1 : 0);
      if (image.stream == nullptr) continue;
      EXPECT_EQ(image.stream->data_borrowed, owns ? 0 : 1);
      int added = 0;
      for (const char digit : calls) added += digit >= '0' && digit <= '9' ? digit - '0' : 0;
      unsigned char read[9];
      ASSERT_EQ(image.stream->read_block(read, 9), 3);
      EXPECT_TRUE(read[0] == 10 + added && read[2] == 30 + added);
    }
    EXPECT_EQ(fault_alloc::live, blocks);
  }
}

TEST_F(Inline, StageIsCutAt4MiB) {
  CPDFImage image;
  load_inline(image, "/F [/Big /+1]");
  ASSERT_NE(image.stream, nullptr);
  EXPECT_EQ(image.stream->length, 0x400000);
}

TEST_F(Inline, SurvivesFailingAllocations) {
  fault_alloc::sweep([&] {
    CPDFImage image;
    for (int round = 0; round < 2; ++round) {
      load_inline(image, "/W 3 /H 1 /BPC 8 /CS /Indexed /F [/+1 /+2 /+4] /DP [<</P 1>> null null] /D [1 0]");
      image.get_bmp();
    }
  });
}

}  // namespace
