// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "gtest/gtest.h"

#include <cstring>
#include <string>

#include "tests/pdf/image/test_image.h"
#include "tests/reference/image_reference.h"

namespace {

const char* const request_names[] = {"bmp", "gray", "mask", "smask", "mono"};

CKXBmp* request(CPDFImage& image, int which, _KXRGBA* palette) {
  switch (which) {
    case 0:
      return image.get_bmp();
    case 1:
      return image.get_bmp_gray();
    case 2:
      return image.get_mask();
    case 3:
      return image.get_smask();
    default:
      return image.get_bmp_mono(palette);
  }
}

/// What a request does: B makes a bitmap and takes the stream; x gives null and takes the stream;
/// d the same, and takes the colour space too; '.' gives null and leaves the image as it was.
struct Case {
  const char* name;
  int width, height, bpc, family, components;
  unsigned flags;
  char sub;            ///< 'm' with a mask image, 's' with a soft mask.
  const char* answer;  ///< One letter for each request, in the order above.
};

const Case cases[] = {
    {"gray 8", 5, 3, 8, 1, 1, 0, 0, "BB.BB"},
    {"gray 1", 5, 3, 1, 1, 1, 0, 0, "BBBBB"},
    {"gray 4", 5, 3, 4, 1, 1, 0, 0, "BB..."},
    {"RGB 8", 5, 3, 8, 3, 3, 0, 0, "BB..."},
    {"RGB 1", 5, 3, 1, 3, 3, 0, 0, "BBB.."},
    {"family 2", 5, 3, 8, 2, 1, 0, 0, "BB..B"},
    {"indexed 1", 5, 3, 1, 8, 1, 0, 0, "BBB.B"},
    {"indexed 8", 5, 3, 8, 8, 1, 0, 0, "BB..."},
    {"stencil of 8 bits", 5, 3, 8, 1, 1, CPDFImage::image_mask, 0, "..BB."},
    {"stencil without space", 5, 3, 1, 0, 0, CPDFImage::image_mask, 0, "..B.."},
    {"soft mask in data", 5, 3, 8, 1, 1, CPDFImage::smask_in_data, 0, "...B."},
    {"no space", 5, 3, 8, 0, 0, 0, 0, "....."},
    {"with mask image", 5, 3, 8, 1, 1, 0, 'm', "BB.B."},
    {"with soft mask", 5, 3, 8, 1, 1, 0, 's', "BB.B."},
    {"no width", 0, 3, 1, 1, 1, 0, 0, "xx..x"},
    {"no height", 5, 0, 8, 1, 1, 0, 0, "xx..x"},
    {"negative", -5, -3, 1, 1, 1, 0, 0, "xx..x"},
    {"17 bits", 5, 3, 17, 7, 1, 0, 0, "dB..."},
    {"0 bits", 5, 3, 0, 7, 1, 0, 0, "dB..."},
    {"17 components", 5, 3, 8, 7, 17, 0, 0, "dB..."},
};

/// Each request on a fresh image, then once more, then all others.
TEST(Requests, TakeWhatTheyReadAndCacheIt) {
  for (const Case& c : cases) {
    for (int which = 0; which < 5; ++which) {
      for (const int borrowed : {0, 1}) {
        SCOPED_TRACE(testing::Message() << c.name << ", " << request_names[which] << ", " << borrowed);
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
        const bool space_goes = borrowed == 0 && (answer == 'd' || (answer == 'B' && which < 2));
        EXPECT_EQ(image.cs, space_goes ? nullptr : space);
        if (answer == '.') { EXPECT_EQ(palette[0].a, 0x5A); }

        for (int again = 0; again < 5; ++again) {
          if (answer == '.' && again != which) continue;
          const bool is_cached = again == which || (which + again == 5 && which > 1 && again > 1);
          const CKXBmp* second = request(image, again, palette);
          if (again == which && !space_goes) { EXPECT_EQ(second, bmp); }
          if (!is_cached) { EXPECT_EQ(second, nullptr); }
        }
        EXPECT_EQ(t.reads.reads.size(), reads);
        t.image.reset();
        EXPECT_EQ(t.reads.live, 0);
        EXPECT_EQ(t.space.live, borrowed != 0 && space != nullptr ? 1 : 0);
        if (borrowed != 0) delete space;
      }
    }
  }
}

TEST(Requests, JpxAlpha) {
  const auto alpha_answer = [](int call, int n) { return call == 2 ? 0 : n; };
  for (const int step : {1, 2, 4}) {
    for (const bool alpha : {true, false}) {
      SCOPED_TRACE(step);
      TestImage t(11, 6, 8, 7, 3);
      ScriptedStream stream(t.reads, {});
      const Bytes colors = image_reference::color(*t.image, step, stream);
      CPDFImage& image = *t.image;
      image.jpx_alpha = alpha ? 1 : 0;
      image.stream = new ScriptedJpxStream(t.reads, {}, {alpha_answer, 9});
      const int width = (11 + step - 1) / step, height = (6 + step - 1) / step;
      if (step == 1) {
        image.get_bmp();
      } else {
        image.bmp = new CKXBmp32(width, height);
        EXPECT_EQ(step == 2 ? image.load_bmp_from24_half() : image.load_bmp_from24_4in1(), 1);
        EXPECT_EQ(step == 2 ? image.load_jpx_alpha_half() : image.load_jpx_alpha_4in1(), alpha ? 1 : 0);
      }
      Bytes expected = colors;
      for (int y = 0; y < height && alpha; ++y) {
        for (int x = 0; x < width && y * step != 2; ++x) {
          expected[static_cast<size_t>(((height - 1 - y) * width + x) * 4 + 3)] = sample_byte(9, y * step, x * step);
        }
      }
      EXPECT_EQ(memory_of(image.bmp), expected);
      const auto rows = static_cast<size_t>((height - 1) * step + 1);
      EXPECT_EQ(t.reads.alpha_reads, std::vector<int>(alpha ? rows : 0, 11));
    }
  }
}

TEST(Requests, Matte) {
  for (int has = 0; has < 8; ++has) {
    SCOPED_TRACE(has);
    TestImage t(1, 1, 8, 7, (has & 4) != 0 ? 0 : 3);
    CPDFImage& image = *t.image;
    image.mask = new CPDFImage;
    image.smask = new CPDFImage;
    image.mask->matte.val[1] = 3;
    image.smask->matte.val[1] = 4;
    if ((has & 1) != 0) image.mask->flags = CPDFImage::has_matte;
    if ((has & 2) != 0) image.smask->flags = CPDFImage::has_matte;
    _KXRGBA expected = {0, 0, 0, 0};
    if (has >= 1 && has <= 3) {
      image.cs->get_rgb((has & 2) != 0 ? image.smask->matte : image.mask->matte, expected);
      expected.a = 255;
    }
    const _KXRGBA got = image.get_matte();
    EXPECT_EQ(std::memcmp(&got, &expected, 4), 0);
  }
}

/// Anything that writes its name into a log when it goes.
template <class Base>
class Logged : public Base {
 public:
  template <class... Args>
  Logged(std::string& log, const char* name, Args... args) : Base(args...), log_(log), name_(name) {}
  ~Logged() override { log_ += std::string(name_) + " "; }

 private:
  std::string& log_;
  const char* name_;
};

TEST(Lifecycle, ReleasedInOrder) {
  for (const bool unload : {false, true}) {
    for (const bool borrowed : {false, true}) {
      std::string log;
      {
        CPDFImage image;
        EXPECT_EQ(image.xobj_type, 1);
        EXPECT_EQ(image.interpolate, 1);
        image.width = image.height = image.jpx_alpha = image.has_mask = image.has_decode = 1;
        image.bmp = new Logged<CKXBmp32>(log, "bmp", 1, 1);
        image.bmp_gray = new Logged<CKXBmpGray>(log, "gray");
        image.bmp_mono = new Logged<CKXBmp8>(log, "mono", 1, 1);
        image.bmp_mask = new Logged<CKXBmp8>(log, "opacity", 1, 1);
        image.stream = new Logged<CPDFStream>(log, "stream");
        image.mask = new Logged<CPDFImage>(log, "mask");
        image.smask = new Logged<CPDFImage>(log, "smask");
        CPDFCSBase* space = image.cs = new Logged<MuteSpace>(log, "space");
        image.cs_borrowed = borrowed ? 1 : 0;
        if (unload) {
          image.unload();
          EXPECT_EQ(log, borrowed ? "bmp gray mono opacity mask smask " : "bmp gray mono opacity mask smask space ");
          EXPECT_EQ(image.cs, borrowed ? space : nullptr);
          EXPECT_NE(image.stream, nullptr);
          EXPECT_EQ(image.width + image.height + image.jpx_alpha, 0);
          EXPECT_EQ(image.has_mask + image.has_decode, 2);
          image.unload();
          log.clear();
        }
        if (borrowed) delete std::exchange(image.cs, nullptr);
        if (borrowed) log.clear();
      }
      EXPECT_EQ(log, unload     ? "stream "
                     : borrowed ? "bmp gray mono opacity stream smask mask "
                                : "bmp gray mono opacity stream smask mask space ");
    }
  }
}

}  // namespace
