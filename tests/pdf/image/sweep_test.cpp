// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"

// Every decoder against the slow one, over layouts, sizes, Decode arrays, colour keys and streams
// that end, fail, fall short or lie.

namespace {

/// The ways in which a stream answers.
const std::array<ReadScript, 6> scripts = {{
    {},
    {[](int call, int n) { return call < 3 ? n : 0; }, 2},
    {[](int call, int n) { return call % 3 == 2 ? -1 : n; }, 3},
    {[](int call, int n) { return call % 2 == 1 ? n / 2 : n; }, 4},
    {[](int, int) { return 1; }, 5},
    {[](int call, int n) { return call % 2 == 0 ? n + 7 : n; }, 6},
}};

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
CKXBmp* decode_reduced(CPDFImage& image, int step) {
  const int components = image.cs->comp_count;
  image.bmp = new CKXBmp32((image.width + step - 1) / step, (image.height + step - 1) / step);
  int (CPDFImage::*any)(int) = step == 2 ? &CPDFImage::load_bmp_fromN_half : &CPDFImage::load_bmp_fromN_4in1;
  Decoder own = nullptr;
  for (const Reduced& r : reduced) {
    if (r.n == image.bpc * components && image.bpc <= 8) own = step == 2 ? r.half : r.quarter;
  }
  EXPECT_EQ(own != nullptr ? (image.*own)() : (image.*any)(components), 1);
  return image.bmp;
}

enum Decode { none, rising, falling };

void set_decode(CPDFImage& image, Decode decode) {
  image.has_decode = decode != none ? 1 : 0;
  for (int i = 0; i < 16; ++i) {
    const bool falls = decode == falling && i % 3 != 1;
    image.decode_min[i] = falls ? 210 - i : 30 + i;
    image.decode_max[i] = falls ? 30 + i : 210 - i;
  }
}

/// Keys: none, in order, turned round, from below the table, past the table, turned round to below
/// it, a mask image's.
constexpr int keys[7][2] = {{0, 0}, {1, 130}, {140, 2}, {-7, 9}, {13, 400}, {90, -7}, {0, 255}};
void set_key(CPDFImage& image, unsigned key) {
  image.has_mask = key != 0 ? 1 : 0;
  if (key == 6) image.mask = new CPDFImage;
  std::fill_n(image.mask_min.val, 16, keys[key][0]);
  std::fill_n(image.mask_max.val, 16, keys[key][1]);
}

/// All layouts, Decode arrays and widths, with heights, keys and scripts in turn. `step` is that of
/// the colour bitmap, 0 for the gray one.
void sweep(int step) {
  unsigned turn = 0;
  for (const Layout& layout : layouts) {
    for (const Decode decode : {none, rising, falling}) {
      for (int width = 1; width <= 33; ++width) {
        for (int i = 0; i < 2; ++i, ++turn) {
          const ReadScript& script = scripts[turn / 7 % scripts.size()];
          TestImage t(width, 1 + static_cast<int>(turn * 5 % 9), layout.bpc, layout.family, layout.components);
          set_decode(*t.image, decode);
          set_key(*t.image, turn % 7);
          SCOPED_TRACE(testing::Message() << layout.bpc << " bits x " << layout.components << ", family " << layout.family << ", " << width
                                          << " x " << t.image->height << ", decode " << decode << ", key " << turn % 7 << ", script "
                                          << script.seed);
          const auto decoder = [&](CPDFImage& image) {
            return step > 1 ? decode_reduced(image, step) : request(image, step == 1 ? color : gray);
          };
          compare(t, script, decoder, [&](const CPDFImage& image, CPDFStream& stream) {
            if (step == 0) return image_reference::gray(image, stream);
            Bytes bitmap = image_reference::color(image, step, stream);
            if (step == 1) image_reference::clear_key(image, bitmap);
            return bitmap;
          });
          // A request takes the stream and the space with it.
          if (step < 2) { EXPECT_EQ(t.reads.live + t.space.live, 0); }
          if (testing::Test::HasFailure()) return;
        }
      }
    }
  }
}

TEST(ImageSweep, ColorAtFullSize) { sweep(1); }
TEST(ImageSweep, ColorAtHalfSize) { sweep(2); }
TEST(ImageSweep, ColorAtQuarterSize) { sweep(4); }
TEST(ImageSweep, Gray) { sweep(0); }

TEST(ImageSweep, MasksSoftMasksAndMono) {
  struct {
    Request request;
    int bpc;
    unsigned flags;
  } const cases[] = {{mask, 8, CPDFImage::image_mask}, {mask, 1, 0}, {soft_mask, 1, 0}, {soft_mask, 8, 0}, {mono, 1, 0}, {mono, 8, 0}};
  for (const auto& c : cases) {
    for (int turn = 0; turn < 33 * 18; ++turn) {
      SCOPED_TRACE(testing::Message() << c.request << ", turn " << turn);
      TestImage t(1 + turn % 33, 1 + turn * 5 % 9, c.bpc, 1, 1);
      // One is the least that reverses a mask.
      const bool reversed = turn / 198 == 2;
      if (turn / 198 > 0) t.set_decode(reversed ? 1 : 0, 0);
      t.image->flags = c.flags;
      const int one = (c.request == soft_mask) != reversed ? 255 : 0;
      const auto decoder = [&](CPDFImage& image) { return request(image, c.request); };
      compare(t, scripts[static_cast<size_t>(turn / 33) % 6], decoder, [&](const CPDFImage& image, CPDFStream& stream) {
        if (c.request == mono) return image_reference::mono(image, 1, stream);
        if (c.request == soft_mask && c.bpc == 8) return image_reference::bytes(image, reversed, stream);
        return image_reference::bits(image, 255 - one, one, stream);
      });
      EXPECT_EQ(t.reads.live, 0);
      EXPECT_EQ(t.space.live, 1);
      if (HasFailure()) return;
    }
  }
}

}  // namespace
