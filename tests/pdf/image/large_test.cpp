// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/image/decode/scale.h"
#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"

// Pictures at and above the sizes from which bitmaps are reduced. Their streams deliver few rows,
// so that what is compared is how many are read and where the kept ones go.

namespace {

/// Delivers the first row and every 501st after it.
const ReadScript few_rows = {[](int call, int n) { return call % 501 == 0 ? n : 0; }, 7};

TEST(LargeImage, ScaleByPixelCount) {
  using enum image_decoding::Scale;
  struct {
    std::int64_t count;
    image_decoding::Scale scale, without_quarter;
  } const cases[] = {{0, full, full},        {41943040, full, full},    {41943041, half, half},
                     {83886080, half, half}, {83886081, quarter, half}, {std::int64_t{1} << 33, quarter, half}};
  for (const auto& c : cases) {
    EXPECT_EQ(image_decoding::scale_of(c.count, false), c.scale) << c.count;
    EXPECT_EQ(image_decoding::scale_of(c.count, true), c.without_quarter) << c.count;
  }
}

/// Each layout at each scale, told by the rows read, the colours asked for and the first row.
TEST(LargeImage, ColorIsReduced) {
  struct {
    int bpc, components, colors;
  } const layouts[] = {{1, 1, 2}, {2, 1, 4}, {4, 1, 16}, {8, 1, 256}, {8, 3, -1}, {8, 4, -1}, {8, 2, -1}, {16, 1, -1}};
  struct {
    int width, height, step;
    unsigned flags;
  } const sizes[] = {{8203, 5124, 2, 0}, {16933, 2477, 2, 0}, {8203, 10247, 4, 0}, {8201, 10245, 2, CPDFImage::no_quarter}};
  for (const auto& size : sizes) {
    for (const auto& layout : layouts) {
      if (size.flags != 0 && layout.bpc != 1) continue;
      SCOPED_TRACE(testing::Message() << layout.bpc << " x " << layout.components << " at 1/" << size.step);
      TestImage t(size.width, size.height, layout.bpc, 7, layout.components);
      t.image->flags = size.flags;
      compare(
          t, few_rows, [](CPDFImage& image) { return image.get_bmp(); },
          [&](const CPDFImage& image, CPDFStream& stream) { return image_reference::color(image, size.step, stream); });
      EXPECT_EQ(t.image->bmp->width, (size.width + size.step - 1) / size.step);
      if (layout.colors >= 0) { EXPECT_EQ(t.space.colors, layout.colors); }
    }
  }
}

/// Averages start past 2^25 and 2^27 samples of 1 bit, and past 2^26 of 8.
TEST(LargeImage, MonoIsAveraged) {
  struct {
    int width, height, bpc, step;
  } const cases[] = {{8192, 4096, 1, 1},  {8283, 4051, 1, 2},  {16384, 8192, 1, 2}, {1539, 87211, 1, 4},
                     {8192, 8192, 8, 1},  {8321, 8065, 8, 4},  {8322, 8067, 8, 4},  {8323, 8067, 8, 4},
                     {8324, 8066, 8, 4},  {10005, 3401, 1, 2}, {10006, 3401, 1, 2}, {10007, 3402, 1, 2},
                     {10000, 3402, 1, 2}, {20002, 6803, 1, 4}, {20005, 6805, 1, 4}, {20008, 6806, 1, 4}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.bpc << " bits, " << c.width << " x " << c.height);
    TestImage t(c.width, c.height, c.bpc, 1, 1);
    compare(
        t, few_rows, [](CPDFImage& image) { return request(image, mono); },
        [&](const CPDFImage& image, CPDFStream& stream) { return image_reference::mono(image, c.step, stream); });
    EXPECT_EQ(t.image->bmp_mono->width, (c.width + c.step - 1) / c.step);
  }
}

/// Sizes whose counts or rows do not fit 32 bits end without a bitmap and without reading.
TEST(LargeImage, ImpossibleSizes) {
  struct {
    Request request;
    int width, height, bpc, components;
  } const cases[] = {{color, 1 << 30, 1, 16, 3},
                     {color, 2147483647, 2147483647, 8, 4},
                     {gray, 2147483647, 2147483647, 8, 4},
                     {color, 2147483647, 1, 16, 16}};
  for (const auto& c : cases) {
    TestImage t(c.width, c.height, c.bpc, 7, c.components);
    t.image->flags = CPDFImage::no_quarter;
    t.give({});
    EXPECT_EQ(request(*t.image, c.request), nullptr);
    EXPECT_EQ(t.image->stream, nullptr);
    EXPECT_TRUE(t.reads.reads.empty());
  }
}

}  // namespace
