// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include "pdf/image/decode/scale.h"
#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"

// Pictures at and above the sizes from which bitmaps are reduced. Their streams deliver few rows,
// so that what is compared is how many are read and where the kept ones go.

namespace {

/// Delivers the first row and every 501st after it.
const ReadScript few_rows = {[](int call, int n) { return call % 501 == 0 ? n : 0; }, 7};

TEST(LargeImage, ScaleByPixelCount) {
  using image_decoding::Scale;
  using image_decoding::scale_of;
  struct Case {
    std::int64_t count;
    Scale scale, without_quarter;
  } const cases[] = {{0, Scale::full, Scale::full},           {41943040, Scale::full, Scale::full},
                     {41943041, Scale::half, Scale::half},    {83886080, Scale::half, Scale::half},
                     {83886081, Scale::quarter, Scale::half}, {std::int64_t{1} << 33, Scale::quarter, Scale::half}};
  for (const Case& c : cases) {
    EXPECT_EQ(scale_of(c.count, false), c.scale) << c.count;
    EXPECT_EQ(scale_of(c.count, true), c.without_quarter) << c.count;
  }
}

/// Each layout at each scale, told by the rows read, the colours asked for and the first row.
TEST(LargeImage, ColorIsReduced) {
  struct Layout {
    int bpc, components, colors;
  } const layouts[] = {{1, 1, 2}, {2, 1, 4}, {4, 1, 16}, {8, 1, 256}, {8, 3, -1}, {8, 4, -1}, {8, 2, -1}, {16, 1, -1}};
  struct Size {
    int width, height, step;
    unsigned flags;
  } const sizes[] = {{8203, 5124, 2, 0}, {16933, 2477, 2, 0}, {8203, 10247, 4, 0}, {8201, 10245, 2, CPDFImage::no_quarter}};
  for (const Size& size : sizes) {
    for (const Layout& layout : layouts) {
      if (size.flags != 0 && layout.bpc != 1) continue;
      SCOPED_TRACE(testing::Message() << layout.bpc << " x " << layout.components << " at 1/" << size.step);
      TestImage t(size.width, size.height, layout.bpc, 7, layout.components);
      t.image->flags = size.flags;
      StreamLog expected_reads;
      ScriptedStream stream(expected_reads, few_rows);
      const Bytes expected = image_reference::color(*t.image, size.step, stream);
      t.space.colors = 0;
      t.give(few_rows);
      const CKXBmp32* bmp = t.image->get_bmp();
      ASSERT_NE(bmp, nullptr);
      EXPECT_EQ(bmp->width, (size.width + size.step - 1) / size.step);
      EXPECT_EQ(bmp->height, (size.height + size.step - 1) / size.step);
      EXPECT_TRUE(memory_of(bmp) == expected);
      EXPECT_TRUE(t.reads.reads == expected_reads.reads);
      if (layout.colors >= 0) { EXPECT_EQ(t.space.colors, layout.colors); }
    }
  }
}

TEST(LargeImage, MonoIsAveraged) {
  struct Case {
    int width, height, bpc, step;
  } const cases[] = {
      {8192, 4096, 1, 1},   // 2^25
      {8283, 4051, 1, 2},   // 2^25 + 1
      {16384, 8192, 1, 2},  // 2^27
      {1539, 87211, 1, 4},  // 2^27 + 1
      {8192, 8192, 8, 1},   // 2^26
      {8321, 8065, 8, 4},   // 2^26 + 1
      {8322, 8067, 8, 4},  {8323, 8067, 8, 4},  {8324, 8066, 8, 4},  {10005, 3401, 1, 2}, {10006, 3401, 1, 2},
      {10007, 3402, 1, 2}, {10000, 3402, 1, 2}, {20002, 6803, 1, 4}, {20005, 6805, 1, 4}, {20008, 6806, 1, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.bpc << " bits, " << c.width << " x " << c.height);
    TestImage t(c.width, c.height, c.bpc, 1, 1);
    StreamLog expected_reads;
    ScriptedStream stream(expected_reads, few_rows);
    const Bytes expected = image_reference::mono(*t.image, c.step, stream);
    t.give(few_rows);
    _KXRGBA palette[256];
    const CKXBmp8* bmp = t.image->get_bmp_mono(palette);
    ASSERT_NE(bmp, nullptr);
    EXPECT_EQ(bmp->width, (c.width + c.step - 1) / c.step);
    EXPECT_TRUE(memory_of(bmp) == expected);
    EXPECT_TRUE(t.reads.reads == expected_reads.reads);
  }
}

/// A stream of one byte again and again.
class ConstantStream : public CPDFStream {
 public:
  explicit ConstantStream(unsigned char byte) : byte_(byte) {}
  int read_block(void* dst, int n) override {
    std::fill_n(static_cast<unsigned char*>(dst), n, byte_);
    return n;
  }

 private:
  unsigned char byte_;
};

/// Sizes whose counts or rows do not fit 32 bits end without a bitmap and without reading.
TEST(LargeImage, ImpossibleSizes) {
  struct Case {
    int width, height, bpc, components;
  } const cases[] = {{1 << 30, 1, 16, 3}, {2147483647, 2147483647, 8, 4}, {2147483647, 1, 16, 16}};
  for (const Case& c : cases) {
    for (const bool gray : {false, true}) {
      TestImage t(c.width, c.height, c.bpc, 7, c.components);
      t.image->flags = CPDFImage::no_quarter;
      t.give({});
      if (gray && c.height == 1) continue;  // A row of that many gray pixels may well be had.
      EXPECT_EQ(gray ? static_cast<CKXBmp*>(t.image->get_bmp_gray()) : t.image->get_bmp(), nullptr);
      EXPECT_EQ(t.image->stream, nullptr);
      EXPECT_TRUE(t.reads.reads.empty());
    }
  }
}

}  // namespace
