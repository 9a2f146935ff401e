// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/picture.h"

#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>

#include "kx/alloc.h"
#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/obj/fixed.h"
#include "pdf/obj/jpx_stream.h"

namespace {

using Row = std::vector<int>;

CPDFStream* stream_of(const Row& bytes) {
  auto* data = static_cast<unsigned char*>(KXAlloc(bytes.size()));
  for (std::size_t i = 0; i < bytes.size(); ++i) data[i] = static_cast<unsigned char>(bytes[i]);
  return new CPDFStream(data, static_cast<int>(bytes.size()), 0);
}

void set_decode(CPDFImage& image, const std::vector<double>& decode) {
  image.obj.set_stream();
  if (decode.empty()) return;
  CPDFArray* array = image.obj.stream()->dict.set("Decode")->set_array();
  for (double v : decode) array->append()->set_real(static_cast<std::int64_t>(v * fixed_one));
}

std::unique_ptr<CPDFImage> image_of(int width, int height, int bpc, CPDFCSBase* cs, const Row& bytes,
                                    const std::vector<double>& decode = {}) {
  auto image = std::make_unique<CPDFImage>();
  image->width = width;
  image->height = height;
  image->bpc = bpc;
  image->cs = cs;
  image->stream = stream_of(bytes);
  set_decode(*image, decode);
  return image;
}

struct Shown {
  CPDFRasterInfo info;
  std::vector<Row> rows;
  std::string problem;
};

Shown show(std::unique_ptr<CPDFImage> image, std::int64_t max_pixels = 1000) {
  CPDFLoadedImage loaded;
  loaded.image = std::move(image);
  Shown shown;
  auto picture = pdfbmp::open_picture(std::move(loaded), CPDFFoundImage(), max_pixels, shown.problem);
  if (picture == nullptr) return shown;
  shown.info = picture->info();
  std::vector<unsigned char> row(static_cast<std::size_t>(shown.info.row_bytes()));
  while (picture->read_row(row.data())) shown.rows.emplace_back(row.begin(), row.end());
  return shown;
}

class IndexedOfFour : public CPDFCSDeviceRGB {
 public:
  IndexedOfFour() {
    family = 8;
    comp_count = 1;
  }
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override {
    const auto index = static_cast<unsigned char>(color.val[0]);
    rgba = {static_cast<unsigned char>(index * 3), 7, index, 255};
  }
  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int n) override {
    for (int i = 0; i < n; ++i) get_rgb({{src[i]}}, dst[i]);
  }
};

class OpaqueToJpx : public CPDFStreamJPX {
 public:
  int read_block(void* dst, int n) override {
    std::memset(dst, 100, static_cast<std::size_t>(n));
    return n;
  }
  int read_alpha(void* dst, int n) override {
    std::memset(dst, 50, static_cast<std::size_t>(n));
    return n;
  }
};

struct DepthCase {
  const char* name;
  int width, bpc;
  CPDFCSBase* cs;
  Row bytes;
  std::vector<double> decode;
  CPDFPixelFormat format;
  Row expected;
};

TEST(Picture, BringsEveryDepthThroughDecodeToItsFullRange) {
  using F = CPDFPixelFormat;
  const DepthCase cases[] = {
      {"1-bit gray stays packed", 10, 1, new CPDFCSDeviceGray, {0xA5, 0xC0}, {}, F::gray1, {0xA5, 0xC0}},
      {"1-bit gray inverted", 10, 1, new CPDFCSDeviceGray, {0xA5, 0xC0}, {1, 0}, F::gray1, {0x5A, 0x3F}},
      {"2-bit gray tops at 255", 4, 2, new CPDFCSDeviceGray, {0x1B}, {}, F::gray8, {0, 85, 170, 255}},
      {"4-bit gray inverted", 2, 4, new CPDFCSDeviceGray, {0x0F}, {1, 0}, F::gray8, {255, 0}},
      {"8-bit gray, half range", 3, 8, new CPDFCSDeviceGray, {0, 128, 255}, {0, 0.5}, F::gray8, {0, 64, 128}},
      {"16-bit gray rounds", 3, 16, new CPDFCSDeviceGray, {0x80, 0x7F, 0x80, 0x80, 0xFF, 0xFF}, {}, F::gray8, {128, 128, 255}},
      {"16-bit gray inverted", 2, 16, new CPDFCSDeviceGray, {0, 0, 0xFF, 0xFF}, {1, 0}, F::gray8, {255, 0}},
      {"RGB bytes as they are", 2, 8, new CPDFCSDeviceRGB, {1, 2, 3, 4, 5, 6}, {}, F::rgb8, {1, 2, 3, 4, 5, 6}},
      {"RGB, one component inverted", 1, 8, new CPDFCSDeviceRGB, {1, 2, 3}, {0, 1, 1, 0, 0, 1}, F::rgb8, {1, 253, 3}},
      {"4-bit RGB crosses bytes",
       3,
       4,
       new CPDFCSDeviceRGB,
       {0x01, 0x2F, 0xED, 0x34, 0x50},
       {},
       F::rgb8,
       {0, 17, 34, 255, 238, 221, 51, 68, 85}},
      {"5-bit RGB", 1, 5, new CPDFCSDeviceRGB, {0x07, 0xE1}, {}, F::rgb8, {0, 255, 132}},
      {"CMYK through its space", 2, 8, new CPDFCSDeviceCMYK, {0, 0, 0, 0, 0, 255, 0, 0}, {}, F::rgb8, {254, 254, 254, 234, 0, 138}},
      {"CMYK inverted", 1, 8, new CPDFCSDeviceCMYK, {255, 0, 255, 255}, {1, 0, 1, 0, 1, 0, 1, 0}, F::rgb8, {234, 0, 138}},
      {"2-bit Indexed stays packed", 5, 2, new IndexedOfFour, {0x1B, 0x80}, {}, F::indexed, {0x1B, 0x80}},
  };
  for (const DepthCase& c : cases) {
    const Shown shown = show(image_of(c.width, 1, c.bpc, c.cs, c.bytes, c.decode));
    EXPECT_EQ(shown.info.format, c.format) << c.name;
    ASSERT_EQ(shown.rows.size(), 1u) << c.name;
    EXPECT_EQ(shown.rows[0], c.expected) << c.name;
  }
}

TEST(Picture, PutsTheDecodeOfAnIndexedPictureIntoItsPalette) {
  const Shown shown = show(image_of(4, 1, 2, new IndexedOfFour, {0x1B}, {3, 0}));
  ASSERT_EQ(shown.info.palette.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(shown.info.palette[i].r, 3 - i);
}

TEST(Picture, ComparesTheColourKeyWithRawSamples) {
  auto image = image_of(3, 1, 4, new CPDFCSDeviceGray, {0x45, 0x60}, {1, 0});
  image->has_mask = 1;
  image->mask_min.val[0] = 5;
  image->mask_max.val[0] = 15;
  const Shown shown = show(std::move(image));
  EXPECT_EQ(shown.info.format, CPDFPixelFormat::gray_alpha8);
  EXPECT_EQ(shown.rows.at(0), (Row{187, 255, 170, 0, 153, 0}));

  auto color = image_of(2, 2, 8, new CPDFCSDeviceCMYK, {1, 2, 3, 4, 1, 2, 3, 5, 9, 9, 9, 9, 1, 2, 3, 4});
  color->has_mask = 1;
  color->mask_min = color->mask_max = {{1, 2, 3, 4}};
  const Shown keyed = show(std::move(color));
  ASSERT_EQ(keyed.rows.size(), 2u);
  EXPECT_EQ((Row{keyed.rows[0][3], keyed.rows[0][7], keyed.rows[1][3], keyed.rows[1][7]}), (Row{0, 255, 255, 0}));
}

struct MaskCase {
  const char* name;
  bool soft;
  int width, height, bpc;
  Row bytes;
  std::vector<double> decode;
  std::vector<Row> alpha;  ///< Of the picture, row by row.
};

TEST(Picture, TakesTheLargerSizeOfImageAndMask) {
  const MaskCase cases[] = {
      {"same size", true, 2, 2, 8, {10, 20, 30, 40}, {}, {{10, 20}, {30, 40}}},
      {"inverted", true, 2, 2, 8, {10, 20, 30, 40}, {1, 0}, {{245, 235}, {225, 215}}},
      {"4 bits at full range", true, 2, 2, 4, {0x0F, 0x30}, {}, {{0, 255}, {51, 0}}},
      {"larger mask", true, 4, 2, 8, {1, 2, 3, 4, 5, 6, 7, 8}, {}, {{1, 2, 3, 4}, {5, 6, 7, 8}}},
      {"taller mask", true, 1, 4, 8, {1, 2, 3, 4}, {}, {{1, 1}, {2, 2}, {3, 3}, {4, 4}}},
      {"smaller mask", true, 1, 1, 8, {9}, {}, {{9, 9}, {9, 9}}},
      {"stencil mask: 0 paints", false, 2, 2, 1, {0x40, 0x80}, {}, {{255, 0}, {0, 255}}},
      {"stencil mask, inverted", false, 2, 2, 1, {0x40, 0x80}, {1, 0}, {{0, 255}, {255, 0}}},
      {"mask that ends early", true, 2, 2, 8, {7, 8}, {}, {{7, 8}, {0, 0}}},
  };
  for (const MaskCase& c : cases) {
    auto image = image_of(2, 2, 8, new CPDFCSDeviceGray, {100, 110, 120, 130});
    auto mask = image_of(c.width, c.height, c.bpc, c.soft ? new CPDFCSDeviceGray : nullptr, c.bytes, c.decode);
    if (!c.soft) mask->flags |= CPDFImage::image_mask;
    image->has_mask = c.soft ? 0 : 1;
    (c.soft ? image->smask : image->mask) = mask.release();
    const Shown shown = show(std::move(image));
    ASSERT_EQ(shown.rows.size(), c.alpha.size()) << c.name;
    for (std::size_t y = 0; y < c.alpha.size(); ++y) {
      Row alpha;
      for (std::size_t i = 1; i < shown.rows[y].size(); i += 2) alpha.push_back(shown.rows[y][i]);
      EXPECT_EQ(alpha, c.alpha[y]) << c.name << ", row " << y;
    }
    EXPECT_EQ(shown.rows[0][0], 100) << c.name;
    EXPECT_EQ(shown.rows.back()[shown.rows.back().size() - 2], 130) << c.name;
  }
}

TEST(Picture, UndoesTheMatteColour) {
  // Stored: c' = m + a * (c - m) with m = (255, 0, 51).
  auto image = image_of(3, 1, 8, new CPDFCSDeviceRGB, {205, 25, 61, 255, 0, 51, 1, 2, 3});
  auto smask = image_of(3, 1, 8, new CPDFCSDeviceGray, {51, 0, 255});
  smask->flags |= CPDFImage::has_matte;
  smask->matte = {{255, 0, 51}};
  image->smask = smask.release();
  const Shown shown = show(std::move(image));
  EXPECT_EQ(shown.rows.at(0), (Row{5, 125, 101, 51, 255, 0, 51, 0, 1, 2, 3, 255}));
}

TEST(Picture, ShowsAStencilInBlackWithItsOpacity) {
  auto image = image_of(3, 2, 8, nullptr, {0x40, 0xA0});  // Always one bit, whatever it says.
  image->flags |= CPDFImage::image_mask;
  const Shown shown = show(std::move(image));
  EXPECT_EQ(shown.info.format, CPDFPixelFormat::gray_alpha8);
  EXPECT_EQ(shown.rows, (std::vector<Row>{{0, 255, 0, 0, 0, 255}, {0, 0, 0, 255, 0, 0}}));
}

TEST(Picture, TakesTheAlphaOfJpegOnlyWhereItIsAskedFor) {
  struct Case {
    int in_data;
    bool with_smask;
    Row row;
  };
  const Case cases[] = {{0, false, {100}}, {1, false, {100, 50}}, {2, false, {255, 50}}, {1, true, {100, 9}}};
  for (const Case& c : cases) {
    auto image = image_of(1, 1, 8, new CPDFCSDeviceGray, {0});
    delete image->stream;
    image->stream = new OpaqueToJpx;
    image->jpx_alpha = 1;
    image->obj.stream()->dict.set("SMaskInData")->set_int(c.in_data);
    if (c.in_data != 0) image->flags |= CPDFImage::smask_in_data;
    if (c.with_smask) image->smask = image_of(1, 1, 8, new CPDFCSDeviceGray, {9}).release();
    EXPECT_EQ(show(std::move(image)).rows.at(0), c.row) << c.in_data << c.with_smask;
  }
}

TEST(Picture, CrossesTheEdgesOfBandsWithoutASeam) {
  // Rows of 1000 CMYK pixels: bands of 262 rows. Every row is told apart by its yellow.
  constexpr int width = 1000, height = 600;
  Row bytes;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) bytes.insert(bytes.end(), {0, 0, y % 256, y / 256});
  }
  const Shown shown = show(image_of(width, height, 8, new CPDFCSDeviceCMYK, bytes), 1 << 20);
  ASSERT_EQ(shown.rows.size(), static_cast<std::size_t>(height));
  CPDFCSDeviceCMYK cs;
  for (int y = 0; y < height; ++y) {
    _KXRGBA pixel;
    cs.get_rgb({{0, 0, y % 256, y / 256}}, pixel);
    const Row& row = shown.rows[static_cast<std::size_t>(y)];
    EXPECT_EQ((Row{row[2997], row[2998], row[2999]}), (Row{pixel.r, pixel.g, pixel.b})) << y;
  }
}

TEST(Picture, RefusesWhatItCannotShowAndSaysWhy) {
  EXPECT_NE(show(image_of(40, 40, 8, new CPDFCSDeviceGray, {0})).problem.find("limit of 1000"), std::string::npos);
  EXPECT_FALSE(show(image_of(4, 4, 8, nullptr, {0})).problem.empty());
  EXPECT_FALSE(show(image_of(0, 4, 8, new CPDFCSDeviceGray, {0})).problem.empty());
  EXPECT_FALSE(show(image_of(4, 4, 17, new CPDFCSDeviceGray, {0})).problem.empty());
}

TEST(Picture, ShowsTheImageWhereItsMaskIsOfNoUse) {
  auto image = image_of(1, 1, 8, new CPDFCSDeviceGray, {42});
  image->smask = image_of(1, 1, 99, new CPDFCSDeviceGray, {0}).release();
  const Shown shown = show(std::move(image));
  EXPECT_EQ(shown.rows.at(0), Row{42});
  EXPECT_FALSE(shown.problem.empty());
}

}  // namespace
