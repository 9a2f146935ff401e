// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/pam_writer.h"

#include <gtest/gtest.h>
#include <string>

#include "tests/support/memory_sink.h"

namespace {

using Dialect = CPDFPamWriter::Dialect;

const _KXRGBA red = {0, 0, 255, 255}, white = {255, 255, 255, 255}, gray = {9, 9, 9, 255};

std::string pam_head(int width, int depth, int max_value, const char* type) {
  return "P7\nWIDTH " + std::to_string(width) + "\nHEIGHT 1\nDEPTH " + std::to_string(depth) + "\nMAXVAL " + std::to_string(max_value) +
         "\nTUPLTYPE " + type + "\nENDHDR\n";
}

CPDFRasterInfo info_of(int width, CPDFPixelFormat format, int bits = 8, std::vector<_KXRGBA> palette = {}) {
  return {width, 1, format, bits, std::move(palette), 0, 0};
}

TEST(PamWriter, WritesEveryFormatInBothDialects) {
  const auto pam = Dialect::pam, pnm = Dialect::pnm;
  const auto bits = info_of(10, CPDFPixelFormat::gray1);
  const auto levels = info_of(2, CPDFPixelFormat::gray8);
  const auto levels_alpha = info_of(1, CPDFPixelFormat::gray_alpha8);
  const auto rgb = info_of(1, CPDFPixelFormat::rgb8);
  const auto rgba = info_of(1, CPDFPixelFormat::rgba8);
  const auto two = info_of(3, CPDFPixelFormat::indexed, 2, {red, white, red, gray});
  const auto grays = info_of(2, CPDFPixelFormat::indexed, 4, {white, gray});
  const struct {
    const char* name;
    CPDFRasterInfo info;
    std::string row;
    Dialect dialect;
    std::string suffix, file;
  } cases[] = {
      {"bits", bits, "\xA0\x40", pam, "pam", pam_head(10, 1, 1, "BLACKANDWHITE") + std::string("\1\0\1\0\0\0\0\0\0\1", 10)},
      {"bits", bits, "\xA0\x40", pnm, "pbm", "P4\n10 1\n\x5F\xBF"},
      {"levels", levels, "ab", pam, "pam", pam_head(2, 1, 255, "GRAYSCALE") + "ab"},
      {"levels", levels, "ab", pnm, "pgm", "P5\n2 1\n255\nab"},
      {"levels and alpha", levels_alpha, "ab", pnm, "pam", pam_head(1, 2, 255, "GRAYSCALE_ALPHA") + "ab"},
      {"colours", rgb, "abc", pam, "pam", pam_head(1, 3, 255, "RGB") + "abc"},
      {"colours", rgb, "abc", pnm, "ppm", "P6\n1 1\n255\nabc"},
      {"colours and alpha", rgba, "abcd", pnm, "pam", pam_head(1, 4, 255, "RGB_ALPHA") + "abcd"},
      {"palette", two, "\x1C", pnm, "ppm", std::string("P6\n3 1\n255\n\xFF\0\0\xFF\xFF\xFF\x09\x09\x09", 20)},
      {"gray palette", grays, "\x10", pnm, "pgm", "P5\n2 1\n255\n\x09\xFF"},
      {"index past the palette", grays, "\x0F", pnm, "pgm", std::string("P5\n2 1\n255\n\xFF\0", 13)},
  };
  for (const auto& c : cases) {
    MemorySink sink;
    CPDFPamWriter writer(sink, c.dialect);
    const auto* row = reinterpret_cast<const unsigned char*>(c.row.data());
    EXPECT_TRUE(writer.begin(c.info) && writer.write_row(row) && writer.finish()) << c.name;
    EXPECT_EQ(sink.text, c.file) << c.name;
    EXPECT_EQ(CPDFPamWriter::suffix_of(c.info, c.dialect), c.suffix) << c.name;
  }
}

}  // namespace
