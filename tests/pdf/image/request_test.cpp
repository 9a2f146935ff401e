// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>

#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"
#include "tests/support/fault_alloc.h"

namespace {

/// What a request does: B makes a bitmap and takes the stream; x gives null and takes the stream;
/// d the same, and takes the colour space too; '.' gives null and leaves the image as it was.
struct Case {
  int width, height, bpc, family, components;
  unsigned flags;
  char sub;            ///< 'm' with a mask image, 's' with a soft mask.
  const char* answer;  ///< One letter for each request: colour, gray, mask, soft mask, mono.
};

constexpr unsigned stencil = CPDFImage::image_mask, in_data = CPDFImage::smask_in_data;
const Case cases[] = {{5, 3, 8, 1, 1, 0, 0, "BB.BB"},       {5, 3, 1, 1, 1, 0, 0, "BBBBB"},       {5, 3, 4, 1, 1, 0, 0, "BB..."},
                      {5, 3, 8, 3, 3, 0, 0, "BB..."},       {5, 3, 1, 3, 3, 0, 0, "BBB.."},       {5, 3, 8, 2, 1, 0, 0, "BB..B"},
                      {5, 3, 1, 8, 1, 0, 0, "BBB.B"},       {5, 3, 8, 8, 1, 0, 0, "BB..."},       {5, 3, 8, 1, 1, stencil, 0, "..BB."},
                      {5, 3, 1, 0, 0, stencil, 0, "..B.."}, {5, 3, 8, 1, 1, in_data, 0, "...B."}, {5, 3, 8, 0, 0, 0, 0, "....."},
                      {5, 3, 8, 1, 1, 0, 'm', "BB.B."},     {5, 3, 8, 1, 1, 0, 's', "BB.B."},     {0, 3, 1, 1, 1, 0, 0, "xx..x"},
                      {5, 0, 8, 1, 1, 0, 0, "xx..x"},       {-5, -3, 1, 1, 1, 0, 0, "xx..x"},     {5, 3, 17, 7, 1, 0, 0, "dB..."},
                      {5, 3, 0, 7, 1, 0, 0, "dB..."},       {5, 3, 8, 7, 17, 0, 0, "dB..."}};

/// Request number `which` on a fresh image, then once more, then all others.
void expect_answer(const Case& c, int which, int borrowed) {
  TestImage t(c.width, c.height, c.bpc, c.family, c.components);
  CPDFImage& image = *t.image;
  CPDFCSBase* space = image.cs;
  image.flags = c.flags;
  image.cs_borrowed = borrowed;
  if (c.sub == 'm') image.mask = new CPDFImage;
  if (c.sub == 's') image.smask = new CPDFImage;
  t.give({});
  _KXRGBA palette[256];
  std::memset(palette, 0x5A, sizeof palette);

  const char answer = c.answer[which];
  const CKXBmp* bmp = request(image, which, palette);
  const size_t reads = t.reads.reads.size();
  EXPECT_EQ(bmp != nullptr, answer == 'B');
  EXPECT_EQ(t.reads.live, answer == '.' ? 1 : 0);
  EXPECT_EQ(image.stream != nullptr, answer == '.');
  const bool space_goes = borrowed == 0 && (answer == 'd' || (answer == 'B' && which < mask));
  EXPECT_EQ(image.cs, space_goes ? nullptr : space);
  if (answer == '.') { EXPECT_EQ(palette[0].a, 0x5A); }

  for (int again = 0; again < 5; ++again) {
    if (answer == '.' && again != which) continue;
    const bool shares_bitmap = (which == mask && again == soft_mask) || (which == soft_mask && again == mask);
    const CKXBmp* second = request(image, again, palette);
    if (again == which && !space_goes) { EXPECT_EQ(second, bmp); }
    if (again != which && !shares_bitmap) { EXPECT_EQ(second, nullptr); }
  }
  EXPECT_EQ(t.reads.reads.size(), reads);
  t.image.reset();
  EXPECT_EQ(t.reads.live, 0);
  EXPECT_EQ(t.space.live, borrowed != 0 && space != nullptr ? 1 : 0);
  if (borrowed != 0) delete space;
}

TEST(Requests, TakeWhatTheyReadAndCacheIt) {
  for (const Case& c : cases) {
    for (int which = 0; which < 5; ++which) {
      for (const int borrowed : {0, 1}) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << ", " << c.bpc << " bits x " << c.components << " of family "
                                        << c.family << ", flags " << c.flags << ", request " << which << ", borrowed " << borrowed);
        expect_answer(c, which, borrowed);
      }
    }
  }
}

TEST(Requests, JpxAlpha) {
  for (const int step : {1, 2, 4}) {
    for (const int alpha : {0, 1}) {
      SCOPED_TRACE(testing::Message() << "step " << step << ", alpha " << alpha);
      TestImage t(11, 6, 8, 7, 3);
      CPDFImage& image = *t.image;
      ScriptedStream stream(t.reads, {});
      Bytes expected = image_reference::color(image, step, stream);
      image.jpx_alpha = alpha;
      image.stream = new ScriptedJpxStream(t.reads, {}, {[](int call, int n) { return call == 2 ? 0 : n; }, 9});
      const int width = (11 + step - 1) / step, height = (6 + step - 1) / step;
      if (step == 1) {
        image.get_bmp();
      } else {
        image.bmp = new CKXBmp32(width, height);
        EXPECT_EQ(step == 2 ? image.load_bmp_from24_half() : image.load_bmp_from24_4in1(), 1);
        EXPECT_EQ(step == 2 ? image.load_jpx_alpha_half() : image.load_jpx_alpha_4in1(), alpha);
      }
      for (int y = 0; y < height * alpha; ++y) {
        unsigned char* row = expected.data() + (height - 1 - y) * width * 4;
        for (int x = 0; x < width && y * step != 2; ++x) row[x * 4 + 3] = sample_byte(9, y * step, x * step);
      }
      EXPECT_EQ(memory_of(image.bmp), expected);
      const auto rows = static_cast<size_t>(((height - 1) * step + 1) * alpha);
      EXPECT_EQ(t.reads.alpha_reads, std::vector<int>(rows, 11));
    }
  }
}

/// Bits of `has`: a matte of the mask, one of the soft mask, no colour space.
TEST(Requests, Matte) {
  for (unsigned has = 0; has < 8; ++has) {
    SCOPED_TRACE(has);
    TestImage t(1, 1, 8, 7, has < 4 ? 3 : 0);
    CPDFImage& image = *t.image;
    image.mask = new CPDFImage;
    image.smask = new CPDFImage;
    image.mask->matte.val[1] = 3;
    image.smask->matte.val[1] = 4;
    if ((has & 1) != 0) image.mask->flags = CPDFImage::has_matte;
    if ((has & 2) != 0) image.smask->flags = CPDFImage::has_matte;
    _KXRGBA expected = {0, 0, 0, 0};
    if (has >= 1 && has <= 3) {
      image.cs->get_rgb(has >= 2 ? image.smask->matte : image.mask->matte, expected);
      expected.a = 255;
    }
    const _KXRGBA got = image.get_matte();
    EXPECT_EQ(std::memcmp(&got, &expected, 4), 0);
  }
}

TEST(Requests, UnloadKeepsTheStreamAndWhatIsBorrowed) {
  for (const int borrowed : {0, 1}) {
    const int blocks = fault_alloc::live;
    TestImage t(1, 1, 8, 1, 1);
    t.give({});
    CPDFImage& image = *t.image;
    const CPDFCSBase* space = image.cs;
    image.jpx_alpha = image.has_mask = image.has_decode = 1;
    image.cs_borrowed = borrowed;
    image.bmp = new CKXBmp32(1, 1);
    image.bmp_gray = new CKXBmpGray;
    image.bmp_gray->create(1, 1);
    image.bmp_mono = new CKXBmp8(1, 1);
    image.bmp_mask = new CKXBmp8(1, 1);
    image.mask = new CPDFImage;
    image.smask = new CPDFImage;
    for (int round = 0; round < 2; ++round) {
      image.unload();
      EXPECT_EQ(fault_alloc::live, blocks);
      EXPECT_TRUE(image.mask == nullptr && image.smask == nullptr && image.bmp == nullptr && image.bmp_mask == nullptr);
      EXPECT_EQ(image.cs, borrowed != 0 ? space : nullptr);
      EXPECT_EQ(image.width + image.height + image.jpx_alpha, 0);
      EXPECT_EQ(image.has_mask + image.has_decode, 2);
      EXPECT_EQ(t.reads.live, 1);
      EXPECT_EQ(t.space.live, borrowed);
    }
    t.image.reset();
    EXPECT_EQ(t.reads.live, 0);
    if (borrowed != 0) delete space;
  }
}

}  // namespace
