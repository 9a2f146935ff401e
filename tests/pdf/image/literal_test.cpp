// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "tests/pdf/image/test_image.h"

// Rows worked out by hand, which also guard the reference decoder.

namespace {

const std::array<int, 2> none = {-1, -1};

struct {
  const char* name;
  Request request;
  int width, height, bpc, components;
  std::array<int, 2> decode, key;
  Bytes samples, memory;
} const cases[] = {
    {"1-bit", color, 2, 1, 1, 1, none, none, {0x40}, {0, 0, 0, 255, 255, 255, 255, 255}},
    {"1-bit turned", color, 2, 1, 1, 1, {255, 0}, none, {0x40}, {255, 255, 255, 255, 0, 0, 0, 255}},
    {"2-bit top", color, 2, 1, 2, 1, none, none, {0xD0}, {192, 192, 192, 255, 64, 64, 64, 255}},
    {"4-bit top", color, 1, 1, 4, 1, none, none, {0xF7}, {240, 240, 240, 255}},
    {"8-bit turned", color, 1, 1, 8, 1, {255, 0}, none, {10}, {245, 245, 245, 255}},
    {"8-bit part range", color, 1, 1, 8, 1, {51, 204}, none, {10}, {10, 10, 10, 255}},
    {"8-bit keyed", color, 3, 1, 8, 1, none, {10, 20}, {9, 10, 20}, {9, 9, 9, 255, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"8-bit key turned", color, 2, 1, 8, 1, none, {20, 10}, {15, 21}, {0, 0, 0, 0, 21, 21, 21, 255}},
    {"bottom-up RGB", color, 1, 2, 8, 3, none, none, {1, 2, 3, 4, 5, 6}, {6, 5, 4, 255, 3, 2, 1, 255}},
    {"RGB keyed", color, 2, 1, 8, 3, none, {1, 5}, {1, 5, 3, 1, 6, 3}, {3, 5, 1, 0, 3, 6, 1, 255}},
    {"2-bit RGB", color, 2, 1, 2, 3, none, none, {0x1B, 0xF0}, {170, 85, 0, 255, 255, 255, 255, 255}},
    {"16-bit", color, 2, 1, 16, 1, none, none, {255, 255, 128, 0}, {255, 255, 255, 255, 127, 127, 127, 255}},
    {"gray 1-bit", gray, 3, 1, 1, 1, none, none, {0x5F}, {0, 255, 255, 255, 0, 255, 0, 0}},
    {"gray 2-bit", gray, 4, 1, 2, 1, none, none, {0x1B}, {0, 255, 64, 255, 128, 255, 192, 255}},
    {"gray 4-bit", gray, 2, 1, 4, 1, none, none, {0xF1}, {240, 255, 16, 255}},
    {"gray 8-bit turned", gray, 2, 1, 8, 1, {255, 0}, none, {0, 200}, {255, 255, 55, 255}},
    {"gray 16-bit", gray, 2, 1, 16, 1, none, none, {255, 255, 128, 0}, {255, 255, 127, 255}},
    {"gray row lost", gray, 1, 2, 8, 1, none, none, {9}, {0, 0, 0, 0, 9, 255, 0, 0}},
    {"mask", mask, 9, 2, 1, 1, none, none, {0xFF, 0x80, 0, 0}, {255, 255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"mask half turned", mask, 4, 1, 1, 1, {128, 255}, none, {0x60}, {0, 255, 255, 0}},
    {"mask row lost", mask, 2, 2, 1, 1, none, none, {0x40}, {0, 0, 255, 0}},
    {"soft mask 1-bit", soft_mask, 3, 1, 1, 1, none, none, {0x40}, {0, 255, 0}},
    {"soft mask turned", soft_mask, 2, 1, 8, 1, {255, 0}, none, {0, 200}, {255, 55}},
    {"mono 1-bit", mono, 9, 1, 1, 1, none, none, {0xA5, 0x80}, {255, 0, 255, 0, 0, 255, 0, 255, 255}},
    {"mono 8-bit raw", mono, 2, 2, 8, 1, {255, 0}, none, {1, 2, 3, 4}, {3, 4, 1, 2}},
};

TEST(Literal, Rows) {
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TestImage t(c.width, c.height, c.bpc, 0, 0);
    t.image->cs = c.components == 3 ? static_cast<CPDFCSBase*>(new CPDFCSDeviceRGB) : new CPDFCSDeviceGray;
    if (c.decode != none) t.set_decode(c.decode[0], c.decode[1]);
    t.image->has_mask = c.key != none ? 1 : 0;
    std::fill_n(t.image->mask_min.val, 3, c.key[0]);
    std::fill_n(t.image->mask_max.val, 3, c.key[1]);
    Bytes samples = c.samples;
    t.image->stream = new CPDFStream(samples.data(), static_cast<int>(samples.size()), 1);
    EXPECT_EQ(memory_of(request(*t.image, c.request)), c.memory);
  }
}

/// The colours of a mono bitmap: 1 bit runs between two colours, 8 bits are the gray ramp.
TEST(Literal, MonoPalette) {
  struct {
    int bpc, family;
    std::array<int, 2> decode;
    int first, last;  ///< `val[0]` of the ends; for 8 bits the levels.
  } const rows[] = {{1, 1, none, 0, 255}, {1, 8, none, 0, 1},     {1, 1, {255, 0}, 255, 0}, {1, 8, {5, 3}, 5, 3},
                    {8, 1, none, 0, 255}, {8, 2, {7, 7}, 0, 255}, {8, 2, {9, 8}, 255, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.bpc << " bits, family " << row.family << ", from " << row.first);
    TestImage t(3, 1, row.bpc, row.family, 1);
    if (row.decode != none) t.set_decode(row.decode[0], row.decode[1]);
    _KXRGBA lo = {0, 0, 0, 0}, hi = {255, 255, 255, 0};
    if (row.first > row.last) std::swap(lo, hi);
    if (row.bpc == 1) {
      t.image->cs->get_rgb({{row.first}}, lo);
      t.image->cs->get_rgb({{row.last}}, hi);
    }
    _KXRGBA palette[256] = {};
    EXPECT_EQ(t.image->get_bmp_mono(palette), nullptr);  // No stream: the palette all the same.
    for (int i = 0; i < 256; ++i) {
      const auto level = [i](int from, int to) { return ((255 - i) * from + i * to) / 255; };
      ASSERT_TRUE(palette[i].b == level(lo.b, hi.b) && palette[i].g == level(lo.g, hi.g) && palette[i].r == level(lo.r, hi.r)) << i;
      ASSERT_EQ(palette[i].a, 255) << i;
    }
  }
}

}  // namespace
