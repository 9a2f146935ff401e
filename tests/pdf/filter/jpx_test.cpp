// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "tests/pdf/filter/samples.h"
#include "tools/encoders/jpx_encoder.h"

namespace filter_test {
namespace {

using namespace encoders::jpx;

/// Sample of a component at a pixel that it lies on, from 0 up.
int raw_sample(const Picture& picture, int c, int x, int y) {
  const auto& [bits, is_signed, step] = picture.components.begin()[c];
  x -= x % step, y -= y % step;
  return (x * 7 + y * 5 + c * 50) * ((1 << bits) - 1) / 700 % (1 << bits);
}

double as_byte(const Picture& picture, int c, int x, int y) {
  return raw_sample(picture, c, x, y) * 255.0 / ((1 << picture.components.begin()[c].bits) - 1);
}

std::string encode(const Picture& picture) {
  return encode_jpx(picture, [&](int c, int x, int y) { return raw_sample(picture, c, x, y); });
}

Decoded decode_jpx(const std::string& encoded, const std::string& image = "") { return decode("JPXDecode", encoded, {"", image, 101}); }

/// Every byte is what `expected(x, y, channel)` says of it, rounded.
template <class Expected>
void expect_bytes(const std::string& got, const Picture& picture, int channels, const Expected& expected) {
  ASSERT_EQ(got.size(), static_cast<std::size_t>(picture.width * picture.height * channels));
  double worst = 0;
  for (int i = 0; i < static_cast<int>(got.size()); ++i) {
    const double value = expected(i / channels % picture.width, i / channels / picture.width, i % channels);
    worst = std::max(worst, std::abs(static_cast<unsigned char>(got.data()[i]) - value));
  }
  EXPECT_LE(worst, 0.51);
}

TEST(JPX, DeliversEveryKindOfComponentAsBytes) {
  const Component byte = {}, half = {8, false, 2}, wide = {16};
  const struct {
    const char* name;
    Picture picture;
    std::vector<int> delivered;  ///< Which component each channel shows.
  } cases[] = {
      {"gray", {{byte}}, {0}},
      {"two", {{byte, byte}}, {0, 0, 0}},
      {"RGB", {{byte, byte, byte}}, {0, 1, 2}},
      {"CMYK", {{byte, byte, byte, byte}}, {0, 1, 2, 3}},
      {"five", {{byte, byte, byte, byte, byte}}, {0, 1, 2}},
      {"1 bit", {{{1}}}, {0}},
      {"4 bits", {{{4}, {4}, {4}}}, {0, 1, 2}},
      {"12 and 5 bits", {{{12}, {5}, byte}}, {0, 1, 2}},
      {"16 bits", {{wide}}, {0}},
      {"signed", {{{8, true, 1}, {12, true, 1}, {4, true, 1}}}, {0, 1, 2}},
      {"tiled", {{byte, byte, byte}, 67, 45, 16}, {0, 1, 2}},
      {"tiled 16 bits", {{wide, wide, wide, wide}, 33, 60, 20}, {0, 1, 2, 3}},
      {"one coarse", {{byte, byte, half}}, {0, 1, 2}},
      {"one coarse in tiles", {{byte, half, byte}, 45, 39, 15}, {0, 1, 2}},
  };
  for (const auto& [name, picture, delivered] : cases) {
    SCOPED_TRACE(name);
    const auto shown = [&p = picture, &d = delivered](int x, int y, int c) { return as_byte(p, d.begin()[c], x, y); };
    const std::string codestream = encode(picture);
    for (const std::string& encoded : {codestream, "?" + codestream, file_of(codestream, "")}) {
      const Decoded decoded = decode_jpx(encoded);
      const int n = static_cast<int>(delivered.size());
      EXPECT_EQ(decoded.components, n);
      expect_bytes(decoded.bytes, picture, n, shown);
      EXPECT_LT(decoded.alpha_channel, 0);
      EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
    }
  }
}

TEST(JPX, ChannelDefinitionsOrderColorsAndFindAlpha) {
  for (const int tile : {0, 13}) {
    const Picture picture = {{{}, {}, {}, {}}, 37, 29, tile};
    // Alpha first, then blue, green and red.
    std::string definitions = big_endian(4, 2);
    for (const std::uint32_t field : {0u, 1u, 0u, 1u, 0u, 3u, 2u, 0u, 2u, 3u, 0u, 1u}) definitions += big_endian(field, 2);
    const Decoded decoded = decode_jpx(file_of(encode(picture), color_box(16) + box("cdef", definitions)));
    EXPECT_GE(decoded.alpha_channel, 0);
    expect_bytes(decoded.bytes, picture, 3, [&](int x, int y, int c) { return as_byte(picture, 3 - c, x, y); });
    expect_bytes(decoded.alpha, picture, 1, [&](int x, int y, int) { return as_byte(picture, 0, x, y); });
  }
}

TEST(JPX, TheDictionaryMakesAnUndefinedLastChannelAlpha) {
  for (const int n : {1, 2, 3, 4}) {
    const Picture picture = {std::vector<Component>(static_cast<std::size_t>(n))};
    const Decoded decoded = decode_jpx(encode(picture), "<</SMaskInData 1>>");
    EXPECT_EQ(decoded.components, n - (n + 1) % 2);
    EXPECT_EQ(decoded.alpha_channel >= 0, n % 2 == 0);
    if (n % 2 == 0) expect_bytes(decoded.alpha, picture, 1, [&](int x, int y, int) { return as_byte(picture, n - 1, x, y); });
  }
}

TEST(JPX, PalettesAreAppliedUnlessTheDictionaryIsIndexed) {
  const Picture picture = {{{4}}};
  // Columns of 4, 8 and 8 bits, mapped to channels 0 to 2.
  std::string palette = big_endian(16, 2) + "\3\7\7\3";
  for (std::uint32_t i = 0; i < 16; ++i) palette += big_endian(i * 9 << 16 | (200 - i) << 8 | (15 - i), 3);
  const std::string mapping = big_endian(0x100, 4) + big_endian(0x101, 4) + big_endian(0x102, 4);
  const std::string encoded = file_of(encode(picture), color_box(16) + box("pclr", palette) + box("cmap", mapping));
  const auto index = [&](int x, int y) { return raw_sample(picture, 0, x, y); };
  expect_bytes(decode_jpx(encoded).bytes, picture, 3, [&](int x, int y, int c) {
    return c == 0 ? index(x, y) * 9 : c == 1 ? 200 - index(x, y) : (15 - index(x, y)) * 17;
  });
  const std::string indexed = decode_jpx(encoded, "<</ColorSpace[/Indexed]>>").bytes;
  expect_bytes(indexed, picture, 1, [&](int x, int y, int) { return index(x, y); });
}

TEST(JPX, LumaAndChromaBecomeRGB) {
  const struct {
    int chroma_step;
    std::uint32_t space;  ///< 0: a codestream without a file around it.
    bool converted;
  } cases[] = {{1, 18, true}, {2, 18, true}, {1, 24, true}, {2, 0, true}, {1, 16, false}, {2, 16, false}, {1, 0, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.chroma_step << ' ' << c.space);
    const Component chroma = {8, false, c.chroma_step};
    const Picture picture = {{{}, chroma, chroma}};
    const std::string codestream = encode(picture);
    const Decoded decoded = decode_jpx(c.space != 0 ? file_of(codestream, color_box(c.space)) : codestream);
    expect_bytes(decoded.bytes, picture, 3, [&](int x, int y, int k) {
      const auto sample = [&](int component) { return as_byte(picture, component, x, y); };
      const double luma = sample(0), cb = sample(1) - 128, cr = sample(2) - 128;
      const double rgb[] = {luma + 1.402 * cr, luma - 0.344136 * cb - 0.714136 * cr, luma + 1.772 * cb};
      return c.converted ? std::clamp(rgb[k], 0.0, 255.0) : sample(k);
    });
  }
}

TEST(JPX, SegmentsOfUnknownKindAreNotSearchedForMarkers) {
  const std::string plain = encode({{{}}});
  std::string changed = plain;
  changed.insert(plain.find("\xFF\x5C"), std::string("\xFF\x7B\0\x10\xFF\x52\0\x0C\0\0\0\1\0\0\4\4\0\1", 18));
  const Decoded decoded = decode_jpx(changed);
  EXPECT_EQ(decoded.bytes, decode_jpx(plain).bytes);
  EXPECT_FALSE(decoded.report.damaged) << decoded.report.problem;
}

// Of one tile that is cut the coarse parts are shown.
TEST(JPX, CutDataGivesWhatDecodes) {
  const std::string whole = encode({{{}, {}, {}}, 64, 64});
  for (const std::size_t percent : {50u, 90u}) {
    const Decoded cut = decode_jpx(whole.substr(0, whole.size() * percent / 100));
    EXPECT_TRUE(cut.report.damaged);
    EXPECT_GE(cut.bytes.size(), 64 * 64 * 3 * (percent - 25) / 100) << cut.report.problem;
  }
  // Whole tiles, but too few.
  const std::string tiled = encode({{{}}, 16, 48, 16});
  const Decoded cut = decode_jpx(tiled.substr(0, tiled.rfind("\xFF\x90")));
  EXPECT_EQ(cut.bytes, decode_jpx(tiled).bytes.substr(0, 16 * 32));
  EXPECT_TRUE(cut.report.damaged);
  // A changed tile number, length or part number of the last tile is where the data breaks off.
  for (const auto& [offset, value] : {std::pair{5, '\1'}, {5, '\x7F'}, {9, '\5'}, {10, '\3'}}) {
    std::string changed = tiled;
    const std::size_t part = tiled.rfind("\xFF\x90");
    if (offset == 9) changed.replace(part + 6, 3, 3, '\0');
    changed[part + static_cast<std::size_t>(offset)] = value;
    const Decoded broken = decode_jpx(changed);
    EXPECT_EQ(broken.bytes, cut.bytes) << offset;
    EXPECT_TRUE(broken.report.damaged) << offset;
  }
}

}  // namespace
}  // namespace filter_test
