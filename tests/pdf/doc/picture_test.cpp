// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/picture.h"

#include <cmath>
#include <gtest/gtest.h>

#include "pdf/cs/device_cmyk.h"
#include "tests/pdf/doc/documents.h"
#include "tools/encoders/jpx_encoder.h"
#include "tools/encoders/pdf_builder.h"

namespace {

using F = CPDFPixelFormat;

struct Image {
  int width, height;
  std::string entries;
  Row bytes;
};

struct Shown {
  CPDFRasterInfo info;
  std::vector<Row> rows;
  std::string problem;
};

/// Shows the last of `images`; its masks stand before it in the file, from object 3 on.
Shown show(const std::vector<Image>& images, std::int64_t max_pixels = 1 << 20) {
  PdfBuilder pdf;
  int last = 0;
  for (const auto& [width, height, entries, bytes] : images) {
    last = pdf.add_image(width, height, entries, std::string(bytes.begin(), bytes.end()));
  }
  pdf.add_page_with({last});
  const auto document = open_bytes(pdf.finish());
  const CPDFFoundImage found = all_images(*document).at(0);
  Shown shown;
  const auto picture = pdfbmp::open_picture(document->load_image(found), found, max_pixels, shown.problem);
  if (picture == nullptr) return shown;
  shown.info = picture->info();
  shown.rows = rows_of(*picture);
  return shown;
}

std::string entries_of(const std::string& space, int bpc, const std::string& more = "") {
  return "/ColorSpace " + space + " /BitsPerComponent " + std::to_string(bpc) + " " + more;
}

const std::string gray8 = entries_of("/DeviceGray", 8), rgb8 = entries_of("/DeviceRGB", 8), cmyk8 = entries_of("/DeviceCMYK", 8);
const std::string indexed = "[/Indexed /DeviceRGB 3 <000700 010703 020706 030709>]";

TEST(Picture, BringsEveryDepthThroughDecodeToItsFullRange) {
  const std::string gray = "/DeviceGray", rgb = "/DeviceRGB", cmyk = "/DeviceCMYK";
  const struct {
    const char* name;
    int width, bpc;
    std::string space, decode;
    Row bytes;
    F format;
    Row expected;
  } cases[] = {
      {"1-bit gray stays packed", 10, 1, gray, "", {0xA5, 0xC0}, F::gray1, {0xA5, 0xC0}},
      {"1-bit gray inverted", 10, 1, gray, "1 0", {0xA5, 0xC0}, F::gray1, {0x5A, 0x3F}},
      {"2-bit gray tops at 255", 4, 2, gray, "", {0x1B}, F::gray8, {0, 85, 170, 255}},
      {"4-bit gray inverted", 2, 4, gray, "1 0", {0x0F}, F::gray8, {255, 0}},
      {"8-bit gray, half range", 3, 8, gray, "0 0.5", {0, 128, 255}, F::gray8, {0, 64, 128}},
      {"16-bit gray inverted", 2, 16, gray, "1 0", {0, 0, 0xFF, 0xFF}, F::gray8, {255, 0}},
      {"RGB bytes as they are", 2, 8, rgb, "", {1, 2, 3, 4, 5, 6}, F::rgb8, {1, 2, 3, 4, 5, 6}},
      {"RGB, one component inverted", 1, 8, rgb, "0 1 1 0 0 1", {1, 2, 3}, F::rgb8, {1, 253, 3}},
      {"4-bit RGB crosses bytes", 3, 4, rgb, "", {0x01, 0x2F, 0xED, 0x34, 0x50}, F::rgb8, {0, 17, 34, 255, 238, 221, 51, 68, 85}},
      {"5-bit RGB", 1, 5, rgb, "", {0x07, 0xE1}, F::rgb8, {0, 255, 132}},
      {"CMYK through its space", 2, 8, cmyk, "", {0, 0, 0, 0, 0, 255, 0, 0}, F::rgb8, {254, 254, 254, 234, 0, 138}},
      {"CMYK inverted", 1, 8, cmyk, "1 0 1 0 1 0 1 0", {255, 0, 255, 255}, F::rgb8, {234, 0, 138}},
      {"2-bit Indexed stays packed", 5, 2, indexed, "", {0x1B, 0x80}, F::indexed, {0x1B, 0x80}},
  };
  for (const auto& c : cases) {
    const std::string decode = c.decode.empty() ? "" : "/Decode [" + c.decode + "]";
    const Shown shown = show({{c.width, 1, entries_of(c.space, c.bpc, decode), c.bytes}});
    EXPECT_EQ(shown.info.format, c.format) << c.name;
    EXPECT_EQ(shown.rows, std::vector<Row>{c.expected}) << c.name;
  }
}

// Every value that a sample of 16 bits has becomes the byte nearest to it.
TEST(Picture, RoundsSamplesOf16Bits) {
  Row bytes;
  for (int v = 0; v < 65536; ++v) bytes.insert(bytes.end(), {static_cast<unsigned char>(v >> 8), static_cast<unsigned char>(v)});
  const Row row = show({{65536, 1, entries_of("/DeviceGray", 16), bytes}}).rows.at(0);
  for (std::size_t v = 0; v < 65536; ++v) ASSERT_EQ(row.at(v), std::lround(static_cast<double>(v) / 257)) << v;
}

TEST(Picture, PutsTheDecodeOfAnIndexedPictureIntoItsPalette) {
  const Shown shown = show({{4, 1, entries_of(indexed, 2, "/Decode [3 0]"), {0x1B}}});
  ASSERT_EQ(shown.info.palette.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(shown.info.palette[i].r, 3 - i);
}

TEST(Picture, ComparesTheColourKeyWithRawSamples) {
  const Shown gray = show({{3, 1, entries_of("/DeviceGray", 4, "/Decode [1 0] /Mask [5 15]"), {0x45, 0x60}}});
  EXPECT_EQ(gray.info.format, F::gray_alpha8);
  EXPECT_EQ(gray.rows, std::vector<Row>({{187, 255, 170, 0, 153, 0}}));
  const Shown cmyk = show({{2, 2, cmyk8 + "/Mask [1 1 2 2 3 3 4 4]", {1, 2, 3, 4, 1, 2, 3, 5, 9, 9, 9, 9, 1, 2, 3, 4}}});
  EXPECT_EQ((Row{cmyk.rows.at(0)[3], cmyk.rows[0][7], cmyk.rows.at(1)[3], cmyk.rows[1][7]}), (Row{0, 255, 255, 0}));
}

TEST(Picture, TakesTheLargerSizeOfImageAndMask) {
  const struct {
    const char *name, *key;
    Image mask;
    std::vector<Row> alpha;  ///< Of the picture, row by row.
  } cases[] = {
      {"same size", "/SMask", {2, 2, gray8, {10, 20, 30, 40}}, {{10, 20}, {30, 40}}},
      {"inverted", "/SMask", {2, 2, gray8 + "/Decode [1 0]", {10, 20, 30, 40}}, {{245, 235}, {225, 215}}},
      {"4 bits at full range", "/SMask", {2, 2, entries_of("/DeviceGray", 4), {0x0F, 0x30}}, {{0, 255}, {51, 0}}},
      {"larger mask", "/SMask", {4, 2, gray8, {1, 2, 3, 4, 5, 6, 7, 8}}, {{1, 2, 3, 4}, {5, 6, 7, 8}}},
      {"taller mask", "/SMask", {1, 4, gray8, {1, 2, 3, 4}}, {{1, 1}, {2, 2}, {3, 3}, {4, 4}}},
      {"smaller mask", "/SMask", {1, 1, gray8, {9}}, {{9, 9}, {9, 9}}},
      {"stencil mask: 0 paints", "/Mask", {2, 2, "/ImageMask true", {0x40, 0x80}}, {{255, 0}, {0, 255}}},
      {"stencil mask, inverted", "/Mask", {2, 2, "/ImageMask true /Decode [1 0]", {0x40, 0x80}}, {{0, 255}, {255, 0}}},
      {"mask that ends early", "/SMask", {2, 2, gray8, {7, 8}}, {{7, 8}, {0, 0}}},
  };
  for (const auto& c : cases) {
    const Shown shown = show({c.mask, {2, 2, gray8 + c.key + " 3 0 R", {100, 110, 120, 130}}});
    std::vector<Row> alpha(shown.rows.size());
    for (std::size_t y = 0; y < alpha.size(); ++y) {
      for (std::size_t i = 1; i < shown.rows[y].size(); i += 2) alpha[y].push_back(shown.rows[y][i]);
    }
    ASSERT_EQ(alpha, c.alpha) << c.name;
    EXPECT_EQ(shown.rows[0][0], 100) << c.name;
    EXPECT_EQ(shown.rows.back().end()[-2], 130) << c.name;
  }
}

TEST(Picture, UndoesTheMatteColour) {
  // Stored: c' = m + a * (c - m) with m = (255, 0, 51).
  const Shown shown =
      show({{3, 1, gray8 + "/Matte [1 0 0.2]", {51, 0, 255}}, {3, 1, rgb8 + "/SMask 3 0 R", {205, 25, 61, 255, 0, 51, 1, 2, 3}}});
  EXPECT_EQ(shown.rows, std::vector<Row>({{5, 125, 101, 51, 255, 0, 51, 0, 1, 2, 3, 255}}));
}

TEST(Picture, ShowsAStencilInBlackWithItsOpacity) {
  const Shown shown = show({{3, 2, "/ImageMask true /BitsPerComponent 8", {0x40, 0xA0}}});  // Always one bit, whatever it says.
  EXPECT_EQ(shown.info.format, F::gray_alpha8);
  EXPECT_EQ(shown.rows, (std::vector<Row>{{0, 255, 0, 0, 0, 255}, {0, 0, 0, 255, 0, 0}}));
}

TEST(Picture, TakesTheAlphaOfJpegOnlyWhereItIsAskedFor) {
  using namespace encoders::jpx;
  const std::string channels("\0\2\0\0\0\0\0\0\0\1\0\1\0\0", 14);  // Two: the first is gray, the second the alpha of all.
  const std::string codestream = encoders::encode_jpx({{{}, {}}, 4, 4}, [](int c, int, int) { return c == 0 ? 100 : 50; });
  const std::string gray_and_alpha = file_of(codestream, color_box(17) + box("cdef", channels));
  const struct {
    const char* entries;
    Row first;
  } cases[] = {{"", {100}}, {"/SMaskInData 1", {100, 50}}, {"/SMaskInData 2", {255, 50}}, {"/SMaskInData 1 /SMask 3 0 R", {100, 9}}};
  for (const auto& [entries, first] : cases) {
    const std::string all = std::string("/ColorSpace /DeviceGray /Filter /JPXDecode ") + entries;
    const Shown shown = show({{1, 1, gray8, {9}}, {4, 4, all, Row(gray_and_alpha.begin(), gray_and_alpha.end())}});
    const Row& row = shown.rows.at(0);
    EXPECT_EQ(Row(row.begin(), row.begin() + static_cast<int>(row.size() / 4)), first) << entries;
  }
}

TEST(Picture, CrossesTheEdgesOfBandsWithoutASeam) {
  // Rows of 1000 CMYK pixels: bands of 262 rows. Every row is told apart by its yellow and black.
  constexpr int width = 1000, height = 600;
  Row bytes;
  for (int i = 0; i < width * height; ++i) {
    bytes.insert(bytes.end(), {0, 0, static_cast<unsigned char>(i / width), static_cast<unsigned char>(i / width / 256)});
  }
  const Shown shown = show({{width, height, cmyk8, bytes}});
  ASSERT_EQ(shown.rows.size(), static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    _KXRGBA pixel;
    CPDFCSDeviceCMYK().get_rgb({{0, 0, y % 256, y / 256}}, pixel);
    const Row& row = shown.rows[static_cast<std::size_t>(y)];
    EXPECT_EQ(Row(row.end() - 3, row.end()), (Row{pixel.r, pixel.g, pixel.b})) << y;
  }
}

TEST(Picture, RefusesWhatItCannotShowAndSaysWhy) {
  EXPECT_NE(show({{40, 40, gray8, {0}}}, 1000).problem.find("limit of 1000"), std::string::npos);
  for (const Image& image : {Image{4, 4, "/BitsPerComponent 8", {0}}, {0, 4, gray8, {0}}, {4, 4, entries_of("/DeviceGray", 17), {0}}}) {
    const Shown shown = show({image});
    EXPECT_TRUE(shown.rows.empty() && !shown.problem.empty()) << image.entries;
  }
}

TEST(Picture, ShowsTheImageWhereItsMaskIsOfNoUse) {
  const Shown shown = show({{1, 1, entries_of("/DeviceGray", 99), {0}}, {1, 1, gray8 + "/SMask 3 0 R", {42}}});
  EXPECT_EQ(shown.rows, std::vector<Row>{Row{42}});
  EXPECT_FALSE(shown.problem.empty());
}

}  // namespace
