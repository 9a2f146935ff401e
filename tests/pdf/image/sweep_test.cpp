// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"

// Every decoder against the slow one, over layouts, sizes, Decode arrays, colour keys and streams
// that end, fail, fall short or lie.

namespace {

struct Layout {
  int bpc, components, family;
};
constexpr Layout layouts[] = {{1, 1, 7}, {1, 1, 8}, {2, 1, 7}, {2, 1, 8}, {4, 1, 7},  {4, 1, 8},  {8, 1, 7}, {8, 1, 8},
                              {1, 2, 7}, {2, 2, 7}, {1, 4, 7}, {4, 2, 7}, {2, 4, 7},  {1, 8, 7},  {8, 3, 7}, {8, 3, 3},
                              {8, 3, 4}, {8, 4, 7}, {8, 2, 7}, {8, 5, 7}, {16, 1, 7}, {16, 3, 7}, {9, 1, 7}, {3, 1, 7},
                              {2, 3, 7}, {5, 3, 7}, {1, 3, 7}, {7, 2, 7}, {12, 2, 7}, {4, 4, 7},  {3, 16, 7}};

using Decoder = int (CPDFImage::*)();
struct Reduced {
  int n;
  Decoder half, quarter;
};
constexpr Reduced reduced[] = {{1, &CPDFImage::load_bmp_from1_half, &CPDFImage::load_bmp_from1_4in1},
                               {2, &CPDFImage::load_bmp_from2_half, &CPDFImage::load_bmp_from2_4in1},
                               {4, &CPDFImage::load_bmp_from4_half, &CPDFImage::load_bmp_from4_4in1},
                               {8, &CPDFImage::load_bmp_from8_half, &CPDFImage::load_bmp_from8_4in1},
                               {24, &CPDFImage::load_bmp_from24_half, &CPDFImage::load_bmp_from24_4in1},
                               {32, &CPDFImage::load_bmp_from32_half, &CPDFImage::load_bmp_from32_4in1}};

/// Runs a reduced decoder as its request would.
int decode_reduced(CPDFImage& image, int step) {
  const int components = image.cs->comp_count;
  image.bmp = new CKXBmp32((image.width + step - 1) / step, (image.height + step - 1) / step);
  for (const Reduced& r : reduced) {
    if (r.n != image.bpc * components || image.bpc > 8) continue;
    return (image.*(step == 2 ? r.half : r.quarter))();
  }
  return step == 2 ? image.load_bmp_fromN_half(components) : image.load_bmp_fromN_4in1(components);
}

enum class Decode { none, rising, falling };

void set_decode(CPDFImage& image, Decode decode) {
  image.has_decode = decode != Decode::none ? 1 : 0;
  for (int i = 0; i < 16; ++i) {
    const bool falls = decode == Decode::falling && i % 3 != 1;
    image.decode_min[i] = falls ? 210 - i : 30 + i;
    image.decode_max[i] = falls ? 30 + i : 210 - i;
  }
}

/// Keys: none, in order, turned round, from below the table, past the table, turned round to below
/// it, a mask image's.
constexpr int key_count = 7;
void set_key(CPDFImage& image, int key) {
  constexpr int bounds[key_count][2] = {{0, 0}, {1, 130}, {140, 2}, {-7, 9}, {13, 400}, {90, -7}, {0, 255}};
  if (key == 0) return;
  image.has_mask = 1;
  if (key == 6) image.mask = new CPDFImage;
  for (int i = 0; i < 16; ++i) {
    image.mask_min.val[i] = bounds[key][0];
    image.mask_max.val[i] = bounds[key][1];
  }
}

/// Calls `check(case, decode, key, script)` for all widths, and heights, keys and scripts in turn.
template <class Check>
void sweep(Check check) {
  unsigned turn = 0;
  for (const Layout& layout : layouts) {
    for (const Decode decode : {Decode::none, Decode::rising, Decode::falling}) {
      for (int width = 1; width <= 33; ++width) {
        for (int i = 0; i < 2; ++i, ++turn) {
          const int height = 1 + static_cast<int>(turn * 5 % 9);
          const ReadScript& script = read_scripts[turn / 7 % read_scripts.size()];
          const int key = static_cast<int>(turn % key_count);
          TestImage t(width, height, layout.bpc, layout.family, layout.components);
          set_decode(*t.image, decode);
          set_key(*t.image, key);
          SCOPED_TRACE(testing::Message() << layout.bpc << " bits x " << layout.components << ", family " << layout.family << ", " << width
                                          << " x " << height << ", decode " << static_cast<int>(decode) << ", key " << key << ", script "
                                          << script.seed);
          check(t, script);
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(ImageSweep, ColorAtFullSize) {
  sweep([](TestImage& t, const ReadScript& script) {
    StreamLog expected_reads;
    ScriptedStream stream(expected_reads, script);
    Bytes expected = image_reference::color(*t.image, 1, stream);
    image_reference::clear_key(*t.image, expected);
    t.give(script);
    ASSERT_TRUE(memory_of(t.image->get_bmp()) == expected);
    ASSERT_EQ(t.reads.reads, expected_reads.reads);
    EXPECT_EQ(t.reads.live, 0);
    EXPECT_EQ(t.space.live, 0);
  });
}

TEST(ImageSweep, ColorAtReducedSize) {
  for (const int step : {2, 4}) {
    SCOPED_TRACE(step);
    sweep([step](TestImage& t, const ReadScript& script) {
      StreamLog expected_reads;
      ScriptedStream stream(expected_reads, script);
      const Bytes expected = image_reference::color(*t.image, step, stream);
      t.give(script);
      ASSERT_EQ(decode_reduced(*t.image, step), 1);
      ASSERT_TRUE(memory_of(t.image->bmp) == expected);
      ASSERT_EQ(t.reads.reads, expected_reads.reads);
    });
  }
}

TEST(ImageSweep, Gray) {
  sweep([](TestImage& t, const ReadScript& script) {
    StreamLog expected_reads;
    ScriptedStream stream(expected_reads, script);
    const Bytes expected = image_reference::gray(*t.image, stream);
    t.give(script);
    ASSERT_TRUE(memory_of(t.image->get_bmp_gray()) == expected);
    ASSERT_EQ(t.reads.reads, expected_reads.reads);
    EXPECT_EQ(t.reads.live, 0);
    EXPECT_EQ(t.space.live, 0);
  });
}

TEST(ImageSweep, MasksSoftMasksAndMono) {
  enum Request { stencil, mask, soft_mask, mono };
  struct Case {
    Request request;
    int bpc;
  } const cases[] = {{stencil, 8}, {mask, 1}, {soft_mask, 1}, {soft_mask, 8}, {mono, 1}, {mono, 8}};
  for (const Case& c : cases) {
    for (int turn = 0; turn < 33 * 18; ++turn) {
      TestImage t(1 + turn % 33, 1 + turn * 5 % 9, c.bpc, 1, 1);
      const ReadScript& script = read_scripts[static_cast<size_t>(turn / 33) % 6];
      SCOPED_TRACE(testing::Message() << c.request << ", turn " << turn);
      // One is the least that reverses a mask.
      t.image->has_decode = turn / 198 > 0 ? 1 : 0;
      t.image->decode_min[0] = turn / 198 == 2 ? 1 : 0;
      const bool reversed = turn / 198 == 2;
      if (c.request == stencil) t.image->flags = CPDFImage::image_mask;
      t.give(script);
      StreamLog expected_reads;
      ScriptedStream stream(expected_reads, script);
      _KXRGBA palette[256];
      const Bytes got = memory_of(c.request == mono        ? t.image->get_bmp_mono(palette)
                                  : c.request == soft_mask ? t.image->get_smask()
                                                           : t.image->get_mask());
      const int one = (c.request == soft_mask) != reversed ? 255 : 0;
      const Bytes expected = c.request == mono                      ? image_reference::mono(*t.image, 1, stream)
                             : c.bpc == 8 && c.request == soft_mask ? image_reference::bytes(*t.image, reversed, stream)
                                                                    : image_reference::bits(*t.image, 255 - one, one, stream);
      ASSERT_TRUE(got == expected);
      ASSERT_EQ(t.reads.reads, expected_reads.reads);
      EXPECT_EQ(t.reads.live, 0);
      EXPECT_EQ(t.space.live, 1);
    }
  }
}

}  // namespace
