// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "examples/encoders/jpx_encoder.h"
#include "tests/pdf/filter/samples.h"

using namespace encoders::jpx;
using filter_test::Parms;

namespace {

/// Sample of a component at a pixel that it lies on, from 0 up.
int raw_sample(const Picture& picture, int c, int x, int y) {
  const auto& [bits, is_signed, step] = picture.components.begin()[c];
  x -= x % step, y -= y % step;
  return (x * 7 + y * 5 + c * 50) * ((1 << bits) - 1) / 700 % (1 << bits);
}

std::string encode(const Picture& picture) {
  return encoders::encode_jpx(picture, [&](int c, int x, int y) { return raw_sample(picture, c, x, y); });
}

filter_test::Decoded decode(const std::string& encoded, const CPDFDictionary* image = nullptr) {
  return filter_test::decode("JPXDecode", encoded, nullptr, 101, image);
}

/// The farthest that a byte lies from what `expected` says of its pixel and channel.
double worst_error(const std::string& got, const Picture& picture, int channels,
                   const std::function<double(int x, int y, int c)>& expected) {
  const auto n = static_cast<std::size_t>(channels);
  const auto width = static_cast<std::size_t>(picture.width);
  if (got.size() != width * static_cast<std::size_t>(picture.height) * n) return 999;
  double worst = 0;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const double value = expected(static_cast<int>(i / n % width), static_cast<int>(i / n / width), static_cast<int>(i % n));
    worst = std::max(worst, std::abs(static_cast<unsigned char>(got[i]) - value));
  }
  return worst;
}

double as_byte(const Picture& picture, int c, int x, int y) {
  return raw_sample(picture, c, x, y) * 255.0 / ((1 << picture.components.begin()[c].bits) - 1);
}

}  // namespace

TEST(JPX, DeliversEveryKindOfComponentAsBytes) {
  static const Component byte = {}, half = {8, false, 2}, wide = {16};
  struct Case {
    const char* name;
    Picture picture;
    std::vector<int> delivered;  ///< Which component each channel shows.
  };
  static const Case cases[] = {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string codestream = encode(c.picture);
    for (const std::string& encoded : {codestream, "?" + codestream, file_of(codestream, "")}) {
      const auto decoded = decode(encoded);
      const int n = static_cast<int>(c.delivered.size());
      EXPECT_EQ(decoded.components, n);
      const auto expected = [&](int x, int y, int k) { return as_byte(c.picture, c.delivered.begin()[k], x, y); };
      EXPECT_LE(worst_error(decoded.bytes, c.picture, n, expected), 0.51);
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
    for (const std::uint32_t field : {0u, 1u, 0u, 1u, 0u, 3u, 2u, 0u, 2u, 3u, 0u, 1u}) { definitions += big_endian(field, 2); }
    const auto decoded = decode(file_of(encode(picture), color_box(16) + box("cdef", definitions)));
    EXPECT_EQ(decoded.components, 3);
    EXPECT_GE(decoded.alpha_channel, 0);
    EXPECT_LE(worst_error(decoded.bytes, picture, 3, [&](int x, int y, int c) { return as_byte(picture, 3 - c, x, y); }), 0.51);
    EXPECT_LE(worst_error(decoded.alpha, picture, 1, [&](int x, int y, int) { return as_byte(picture, 0, x, y); }), 0.51);
  }
}

TEST(JPX, TheDictionaryMakesAnUndefinedLastChannelAlpha) {
  Parms image({{"SMaskInData", 1}});
  for (const int n : {1, 2, 3, 4}) {
    const Picture picture = {std::vector<Component>(static_cast<std::size_t>(n))};
    const auto decoded = decode(encode(picture), &image.dict);
    EXPECT_EQ(decoded.components, n - (n + 1) % 2);
    EXPECT_EQ(decoded.alpha_channel >= 0, n % 2 == 0);
    if (n % 2 != 0) continue;
    EXPECT_LE(worst_error(decoded.alpha, picture, 1, [&](int x, int y, int) { return as_byte(picture, n - 1, x, y); }), 0.51);
  }
}

TEST(JPX, PalettesAreAppliedUnlessTheDictionaryIsIndexed) {
  const Picture picture = {{{4}}};
  std::string palette = big_endian(16, 2) + "\3\7\7\3";
  for (int i = 0; i < 16; ++i) { palette += big_endian(static_cast<std::uint32_t>(i * 9 << 16 | (200 - i) << 8 | (15 - i)), 3); }
  std::string mapping;
  for (const std::uint32_t column : {0u, 1u, 2u}) mapping += big_endian(0x100 + column, 4);
  const std::string encoded = file_of(encode(picture), color_box(16) + box("pclr", palette) + box("cmap", mapping));
  const auto index = [&](int x, int y) { return raw_sample(picture, 0, x, y); };
  const auto plain = decode(encoded);
  EXPECT_EQ(plain.components, 3);
  const auto color = [&](int x, int y, int c) { return c == 0 ? index(x, y) * 9 : c == 1 ? 200 - index(x, y) : (15 - index(x, y)) * 17; };
  EXPECT_LE(worst_error(plain.bytes, picture, 3, color), 0.51);
  CPDFDictionary image;
  image.set("ColorSpace")->set_array()->append()->set_name("Indexed");
  const auto indexed = decode(encoded, &image);
  EXPECT_EQ(indexed.components, 1);
  EXPECT_EQ(worst_error(indexed.bytes, picture, 1, [&](int x, int y, int) { return index(x, y); }), 0);
}

TEST(JPX, LumaAndChromaBecomeRGB) {
  struct Case {
    int chroma_step;
    std::uint32_t space;  ///< 0: a codestream without a file around it.
    bool converted;
  };
  for (const Case& c : {Case{1, 18, true}, {2, 18, true}, {1, 24, true}, {2, 0, true}, {1, 16, false}, {2, 16, false}, {1, 0, false}}) {
    SCOPED_TRACE(::testing::Message() << c.chroma_step << ' ' << c.space);
    const Component chroma = {8, false, c.chroma_step};
    const Picture picture = {{{}, chroma, chroma}};
    const std::string codestream = encode(picture);
    const auto decoded = decode(c.space != 0 ? file_of(codestream, color_box(c.space)) : codestream);
    const auto expected = [&](int x, int y, int k) {
      const auto sample = [&](int component) { return as_byte(picture, component, x, y); };
      if (!c.converted) return sample(k);
      const double cb = sample(1) - 128, cr = sample(2) - 128;
      const double rgb[] = {sample(0) + 1.402 * cr, sample(0) - 0.344136 * cb - 0.714136 * cr, sample(0) + 1.772 * cb};
      return std::clamp(rgb[k], 0.0, 255.0);
    };
    EXPECT_LE(worst_error(decoded.bytes, picture, 3, expected), 0.51);
  }
}

// Of one tile that is cut the coarse parts are shown.
TEST(JPX, CutDataGivesWhatDecodes) {
  const std::string whole = encode({{{}, {}, {}}, 64, 64});
  for (const std::size_t percent : {50u, 90u}) {
    const auto cut = decode(whole.substr(0, whole.size() * percent / 100));
    EXPECT_TRUE(cut.report.damaged);
    EXPECT_GE(cut.bytes.size(), 64 * 64 * 3 * (percent - 25) / 100) << cut.report.problem;
  }
}

TEST(JPX, ADeclaredSizeTakesNoMemory) {
  std::string encoded = encode({{{}}});
  const std::size_t size = encoded.find("\xFF\x51") + 6;
  const std::array<std::uint32_t, 3> cases[] = {
      {20000, 20000, 20000}, {8000, 8000, 8000}, {60000, 60000, 60000}, {0xFFFFFFFF, 1, 1}, {20000, 20000, 100}, {0, 5, 5}, {5, 5, 0},
  };
  for (const auto& [width, height, tile] : cases) {
    SCOPED_TRACE(::testing::Message() << width << ' ' << tile);
    const std::string fields =
        big_endian(width, 4) + big_endian(height, 4) + big_endian(0, 4) + big_endian(0, 4) + big_endian(tile, 4) + big_endian(tile, 4);
    encoded.replace(size, fields.size(), fields);
    const auto decoded = decode(encoded);
    EXPECT_EQ(decoded.bytes, "");
    EXPECT_NE(decoded.report.problem, "");
  }
}
