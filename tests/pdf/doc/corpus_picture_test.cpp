// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "pdf/doc/picture.h"
#include "tests/pdf/doc/documents.h"

namespace {

/// Mean colour and opacity of a picture's quarters, as another viewer decodes image and mask.
struct Expected {
  const char* file;
  int object, width, height;
  std::array<std::array<int, 4>, 4> quarters;  ///< r, g, b, alpha; left before right, from the top.
};

const Expected pictures[] = {
    {"real/smaskdim.pdf", 142, 76, 102, {{{0, 0, 0, 17}, {0, 0, 0, 0}, {0, 0, 0, 77}, {0, 0, 0, 0}}}},
    {"real/issue4246.pdf", 2, 1000, 800, {{{255, 175, 0, 35}, {255, 175, 0, 37}, {248, 129, 5, 40}, {248, 129, 5, 45}}}},
    {"real/issue6621.pdf", 5, 250, 247, {{{184, 184, 184, 177}, {183, 183, 183, 177}, {173, 173, 173, 180}, {169, 169, 169, 182}}}},
    {"real/issue9972-3.pdf", 15, 474, 46, {{{154, 155, 156, 63}, {163, 164, 165, 58}, {159, 159, 160, 46}, {159, 159, 159, 45}}}},
    {"synth/synth-masks.pdf", 5, 26, 28, {{{158, 153, 176, 97}, {75, 93, 43, 214}, {180, 187, 76, 152}, {84, 64, 111, 182}}}},
    {"synth/synth-masks.pdf", 25, 78, 56, {{{120, 90, 147, 9}, {101, 37, 113, 20}, {153, 72, 136, 182}, {138, 177, 114, 249}}}},
};

TEST(CorpusPictures, LookAsOtherViewersShowThem) {
  const char* const corpus = std::getenv("PDFBMP_CORPUS");
  if (corpus == nullptr) GTEST_SKIP() << "PDFBMP_CORPUS names no folder";
  for (const Expected& e : pictures) {
    SCOPED_TRACE(e.file + std::string(" ") + std::to_string(e.object));
    std::string problem;
    CPDFOpenStatus status;
    const auto document = CPDFDocument::open(pdfbmp::open_file_source(std::string(corpus) + "/" + e.file, problem), {}, status, problem);
    ASSERT_NE(document, nullptr) << problem;
    for (const CPDFFoundImage& found : all_images(*document)) {
      if (found.object != e.object) continue;
      const auto picture = pdfbmp::open_picture(document->load_image(found), found, 1 << 30, problem);
      ASSERT_NE(picture, nullptr) << problem;
      ASSERT_EQ(std::pair(picture->info().width, picture->info().height), std::pair(e.width, e.height));
      const int channels = picture->info().bits_per_pixel() / 8;
      const std::vector<Row> rows = rows_of(*picture);
      double sums[4][4] = {}, counts[4] = {};
      for (int i = 0; i < e.width * e.height; ++i) {
        const int x = i % e.width, y = i / e.width, quarter = (y >= e.height / 2 ? 2 : 0) + (x >= e.width / 2 ? 1 : 0);
        const unsigned char* pixel = rows.at(static_cast<std::size_t>(y)).data() + x * channels;
        for (int c = 0; c < 4; ++c) sums[quarter][c] += pixel[c == 3 ? channels - 1 : channels == 4 ? c : 0];
        ++counts[quarter];
      }
      for (std::size_t q = 0; q < 4; ++q) {
        for (std::size_t c = 0; c < 4; ++c) EXPECT_NEAR(sums[q][c] / counts[q], e.quarters[q][c], 2) << q << c;
      }
    }
  }
}

}  // namespace
