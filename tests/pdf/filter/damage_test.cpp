// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "examples/encoders/jpeg_encoder.h"
#include "pdf/filter/jbig2_helper.h"
#include "tests/pdf/filter/jbig2_builder.h"
#include "tests/pdf/filter/samples.h"
#include "tests/support/pdf_text.h"

namespace filter_test {
namespace {

struct Format {
  const char *name, *filter, *parms;
  std::string encoded;
  std::size_t told = 0;                ///< At least so many percent of the changes are noticed.
  std::size_t unsure = 0;              ///< Bytes that may be made up where the data ends.
  std::vector<std::size_t> ends = {};  ///< Where the data of each group of rows ends; where none are given,
                                       ///< what decodes when nothing follows tells what is sound.
  std::size_t group = 0;               ///< Decoded bytes of such a group.
  std::size_t header = 0;              ///< Bytes before a group's data that place it: they are not changed.
};

CPDFFilterSetup setup_of(const Format& format, CPDFObjHolder& parms) {
  testing_support::parse_pdf(format.parms, parms);
  CPDFFilterSetup setup;
  setup.parms = parms.dict();
  return setup;
}

/// How many decoded bytes depend on none of the data from `at` on.
std::size_t sound_bytes(const Format& format, const CPDFFilterSetup& setup, std::size_t at) {
  const auto& ends = format.ends;
  if (!ends.empty()) return format.group * static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), at) - ends.begin());
  const std::size_t size = decode(format.filter, format.encoded.substr(0, at), setup).bytes.size();
  return size - std::min(size, format.unsure);
}

Format fax(const char* name, const char* parms, const FaxOptions& options, std::size_t told) {
  FaxRows rows;
  for (std::size_t y = 0; y < 60; ++y)
    rows.push_back(std::string(40 + y % 7 * 3, '0') + std::string(60, '1') + std::string(100 - y % 7 * 3, '0'));
  std::vector<std::size_t> begins;
  Format format = {name, "CCF", parms, encode_fax(rows, options, &begins), told};
  for (std::size_t y = 1; y < 60; ++y) format.ends.push_back((begins[y] + 7) / 8);
  format.group = 25;
  return format;
}

std::string jpeg(unsigned restart_rows) {
  return encode_jpeg({.restart_rows = restart_rows}, [](int x, int y, int c) { return 60 + (x * (c + 1) + y * 3) % 128; });
}

/// Ten tiles, one below the other.
Format tiles() {
  Format format = {"JPX", "JPXDecode", "<<>>",
                   encode_jpx({{{}, {}, {}}, 16, 160, 16}, [](int c, int x, int y) { return (x * 7 + y * y + c * 50) % 256; }), 0};
  const std::string tile_begin = "\xFF\x90";
  for (std::size_t at = format.encoded.find(tile_begin); (at = format.encoded.find(tile_begin, at + 1)) != std::string::npos;) {
    format.ends.push_back(at);
  }
  format.group = 16 * 16 * 3, format.header = 14;
  return format;
}

/// Ten regions of three rows each.
Format stripes() {
  Format format = {"JBIG2", "JBIG2Decode", "<<>>", jbig2_page(48, 30)};
  for (std::uint32_t i = 0; i < 10; ++i) {
    const std::string row = std::string(3 + i, '0') + std::string(30, '1') + std::string(15 - i, '0');
    format.encoded += jbig2_generic(2 + i, {row, row.substr(1) + '0', std::string(48, '0')}, 3 * i);
    format.ends.push_back(format.encoded.size());
  }
  format.group = 18, format.header = 29;
  return format;
}

/// Every filter that decodes.
std::vector<Format> formats() {
  const std::string bytes = sample_bytes(150000, 1);
  FaxOptions t6, lines, mixed;
  t6.k = -1;
  mixed.k = 2, mixed.end_of_line = true;
  std::vector<Format> all = {
      {"Flate", "Fl", "<<>>", deflate(bytes), 100},
      {"predictor", "Fl", "<</Predictor 15/Columns 100>>", deflate(png_predict(bytes, 100, 1, 5)), 100},
      {"LZW", "LZW", "<<>>", encode_lzw(bytes), 15},
      {"RunLength", "RL", "<<>>", encode_run_length(bytes)},
      {"ASCII85", "A85", "<<>>", encode_ascii85(bytes), 60, 4},
      {"ASCIIHex", "AHx", "<<>>", encode_ascii_hex(bytes), 60, 1},
      fax("T.6", "<</K -1/Columns 200/Rows 60>>", t6, 80),
      fax("T.4", "<</Columns 200/Rows 60>>", lines, 90),
      fax("T.4 mixed", "<</K 2/Columns 200/Rows 60>>", mixed, 90),
      {"DCT", "DCT", "<<>>", jpeg(0), 5},
      {"DCT with restarts", "DCT", "<<>>", jpeg(1), 35},
      tiles(),
  };
#ifdef PDFBMP_JBIG2_HELPER
  pdfbmp::set_jbig2_helper(PDFBMP_JBIG2_HELPER);
  all.push_back(stripes());
#endif
  return all;
}

// Data that is cut gives what decodes before the cut, and the report tells.
TEST(Damage, CutDataGivesWhatCameBefore) {
  for (const Format& format : formats()) {
    CPDFObjHolder parms;
    const CPDFFilterSetup setup = setup_of(format, parms);
    const Decoded whole = decode(format.filter, format.encoded, setup);
    EXPECT_FALSE(whole.report.damaged) << format.name << ": " << whole.report.problem;
    for (const std::size_t percent : {10U, 50U, 90U}) {
      SCOPED_TRACE(testing::Message() << format.name << " cut at " << percent << " %");
      const std::size_t at = format.encoded.size() * percent / 100;
      const Decoded cut = decode(format.filter, format.encoded.substr(0, at), setup, 999);
      const std::size_t sound = sound_bytes(format, setup, at);
      EXPECT_TRUE(cut.report.damaged);
      EXPECT_FALSE(cut.report.problem.empty());
      EXPECT_GE(sound * 100 + whole.bytes.size() * 30, whole.bytes.size() * percent);
      EXPECT_TRUE(cut.bytes.starts_with(whole.bytes.substr(0, sound)));
    }
  }
}

// A changed byte leaves alone what depends on the bytes before it only. A checksum tells of each, a
// format with codes that do not exist of some: else one good code has become another.
TEST(Damage, ChangedBytesLeaveWhatCameBefore) {
  for (const Format& format : formats()) {
    SCOPED_TRACE(format.name);
    CPDFObjHolder parms;
    const CPDFFilterSetup setup = setup_of(format, parms);
    const std::string whole = decode(format.filter, format.encoded, setup).bytes;
    std::size_t told = 0, changes = 0;
    for (std::size_t at = 2; at < format.encoded.size(); at += 1 + format.encoded.size() / 67) {
      const auto next = std::upper_bound(format.ends.begin(), format.ends.end(), at);
      if (next == format.ends.begin() ? format.header > 0 : at < *(next - 1) + format.header) continue;
      const std::size_t sound = sound_bytes(format, setup, at);
      for (const int change : {1, 128, 255}) {
        std::string bad = format.encoded;
        bad[at] = static_cast<char>(bad[at] ^ change);
        const Decoded decoded = decode(format.filter, bad, setup, 1000);
        EXPECT_TRUE(decoded.bytes.starts_with(whole.substr(0, sound))) << at << ' ' << change;
        ++changes, told += decoded.report.damaged ? 1 : 0;
      }
    }
    EXPECT_GE(told * 100, changes * format.told);
  }
}

}  // namespace
}  // namespace filter_test
