// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include "pdf/filter/jbig2_helper.h"
#include "tests/pdf/filter/samples.h"
#include "tools/encoders/jbig2_encoder.h"
#include "tools/encoders/jpeg_encoder.h"

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

/// How many decoded bytes depend on none of the data from `at` on.
std::size_t sound_bytes(const Format& format, std::size_t at) {
  const auto& ends = format.ends;
  if (!ends.empty()) return format.group * static_cast<std::size_t>(std::upper_bound(ends.begin(), ends.end(), at) - ends.begin());
  const std::size_t size = decode(format.filter, format.encoded.substr(0, at), {format.parms}).bytes.size();
  return size - std::min(size, format.unsure);
}

Format fax(const char* name, const char* parms, const FaxOptions& options, std::size_t told) {
  FaxRows rows;
  for (std::size_t y = 0, left = 40; y < 60; ++y, left = 40 + y % 7 * 3) {
    rows.push_back(std::string(left, '0') + std::string(60, '1') + std::string(140 - left, '0'));
  }
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
  std::size_t at = format.encoded.find("\xFF\x90");
  while ((at = format.encoded.find("\xFF\x90", at + 1)) != std::string::npos) format.ends.push_back(at);
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
  std::vector<Format> all = {
      {"Flate", "Fl", "<<>>", deflate(bytes), 100},
      {"predictor", "Fl", "<</Predictor 15/Columns 100>>", deflate(png_predict(bytes, 100, 1, 5)), 100},
      {"LZW", "LZW", "<<>>", encode_lzw(bytes), 15},
      {"RunLength", "RL", "<<>>", encode_run_length(bytes)},
      {"ASCII85", "A85", "<<>>", encode_ascii85(bytes), 60, 4},
      {"ASCIIHex", "AHx", "<<>>", encode_ascii_hex(bytes), 60, 1},
      fax("T.6", "<</K -1/Columns 200/Rows 60>>", {-1}, 80),
      fax("T.4", "<</Columns 200/Rows 60>>", {}, 90),
      fax("T.4 mixed", "<</K 2/Columns 200/Rows 60>>", {2, true}, 90),
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

// Data that is cut gives what decodes before the cut, and the report tells. A changed byte leaves
// alone what depends on the bytes before it only; a checksum tells of each, a format with codes that
// do not exist of some: else one good code has become another.
TEST(Damage, LeavesWhatCameBefore) {
  for (const Format& format : formats()) {
    SCOPED_TRACE(format.name);
    const std::size_t size = format.encoded.size();
    const Decoded whole = decode(format.filter, format.encoded, {format.parms});
    EXPECT_FALSE(whole.report.damaged) << whole.report.problem;
    const auto decode_bad = [&](const std::string& bad, std::size_t sound) {
      const Decoded decoded = decode(format.filter, bad, {format.parms, "", 999});
      EXPECT_TRUE(decoded.bytes.starts_with(whole.bytes.substr(0, sound))) << sound;
      return decoded.report;
    };
    for (const std::size_t percent : {10U, 50U, 90U}) {
      const std::size_t at = size * percent / 100, sound = sound_bytes(format, at);
      EXPECT_GE(sound * 100 + whole.bytes.size() * 30, whole.bytes.size() * percent);
      const CPDFDecodeReport report = decode_bad(format.encoded.substr(0, at), sound);
      EXPECT_TRUE(report.damaged && !report.problem.empty()) << percent;
    }
    std::size_t told = 0, changes = 0;
    for (std::size_t at = 2; at < size; at += 1 + size / 67) {
      const auto next = std::upper_bound(format.ends.begin(), format.ends.end(), at);
      if (next == format.ends.begin() ? format.header > 0 : at < *(next - 1) + format.header) continue;
      const std::size_t sound = sound_bytes(format, at);
      for (const int change : {1, 128, 255}) {
        std::string bad = format.encoded;
        bad[at] = static_cast<char>(bad[at] ^ change);
        told += std::size_t{decode_bad(bad, sound).damaged};
        ++changes;
      }
    }
    EXPECT_GE(told * 100, changes * format.told);
  }
}

// The size in the image's dictionary wins over the codec's: rows are cut or filled up with zeros
// (with white, where they are bits), and only rows that are missing are damage.
TEST(DeclaredSize, Wins) {
  const struct {
    std::string name;
    int width, height, bits;
  } sizes[] = {{"DCT", 40, 48, 24}, {"JPX", 16, 160, 24}, {"JBIG2", 48, 30, 1}};
  for (const Format& format : formats()) {
    const auto size = std::find_if(std::begin(sizes), std::end(sizes), [&](const auto& one) { return one.name == format.name; });
    if (size == std::end(sizes)) continue;
    const auto& [name, width, height, bits] = *size;
    const std::string rows = decode(format.filter, format.encoded).bytes;
    std::string open_height = format.encoded;
    if (name == "DCT") open_height.replace(open_height.find("\xFF\xC0") + 5, 2, 2, '\0');
    for (const std::string& encoded : {format.encoded, open_height}) {
      for (const auto& [columns, lines] : {std::pair{width, height}, {width - 7, 20}, {width + 17, height}, {width, height + 9}}) {
        SCOPED_TRACE(testing::Message() << name << ' ' << columns << 'x' << lines);
        const auto row_bytes = static_cast<std::size_t>(width * bits / 8), bytes = static_cast<std::size_t>((columns * bits + 7) / 8);
        std::string expected;
        for (std::size_t y = 0; y < static_cast<std::size_t>(std::min(height, lines)); ++y) {
          expected += rows.substr(y * row_bytes, std::min(row_bytes, bytes));
          expected.resize((y + 1) * bytes, bits == 1 ? '\xFF' : '\0');
        }
        const Decoded decoded = decode(format.filter, encoded, {"", dict_of({{"Width", columns}, {"Height", lines}}), 7});
        EXPECT_EQ(decoded.bytes, expected);
        EXPECT_EQ(decoded.report.damaged, lines > height) << decoded.report.problem;
      }
    }
  }
}

}  // namespace
}  // namespace filter_test
