// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/declared_size.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "examples/encoders/jpeg_encoder.h"
#include "examples/encoders/jpx_encoder.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

// The size in the image's dictionary wins over the codec's: rows are cut or filled up with zeros,
// and only rows that are missing are damage.
TEST(DeclaredSize, Wins) {
  const int width = 40, height = 48;
  const std::string jpeg = encode_jpeg({.stored = JCS_GRAYSCALE, .width = width, .height = height},
                                       [](int x, int y, int) { return 60 + (x * 3 + y * 2) % 128; });
  std::string open_height = jpeg;
  const std::size_t frame = jpeg.find("\xFF\xC0");
  open_height[frame + 5] = open_height[frame + 6] = 0;
  const std::string jpx = encode_jpx({{{}}, width, height}, [](int, int x, int y) { return (x * 7 + y * 5) % 256; });
  const struct {
    const char *name, *filter;
    std::string encoded, sound;
  } codecs[] = {{"DCT", "DCT", jpeg, jpeg}, {"no height", "DCT", open_height, jpeg}, {"JPX", "JPXDecode", jpx, jpx}};
  for (const auto& codec : codecs) {
    const std::string rows = decode(codec.filter, codec.sound).bytes;
    for (const auto& [columns, lines] : {std::pair{40, 48}, {33, 20}, {57, 48}, {40, 60}, {40, 30}}) {
      SCOPED_TRACE(testing::Message() << codec.name << ' ' << columns << 'x' << lines);
      const Parms image({{"Width", columns}, {"Height", lines}});
      std::string expected;
      for (int y = 0; y < std::min(height, lines); ++y) {
        expected += rows.substr(static_cast<std::size_t>(y * width), width);
        expected.resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(y + 1), '\0');
      }
      const Decoded decoded = decode(codec.filter, codec.encoded, nullptr, 7, &image.dict);
      EXPECT_EQ(decoded.bytes, expected);
      EXPECT_EQ(decoded.report.damaged, lines > height) << decoded.report.problem;
    }
  }
}

}  // namespace
}  // namespace filter_test
