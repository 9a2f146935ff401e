// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <functional>
#include <string>
// After <cstdio>, whose types it uses.
#include <jpeglib.h>

namespace encoders {

struct Jpeg {
  J_COLOR_SPACE stored = JCS_YCbCr;  ///< The encoder stores the samples as they are.
  int adobe = -1;                    ///< The transform that an Adobe marker names; negative: none.
  int width = 40, height = 48;
  bool progressive = false;
  unsigned restart_rows = 0;
  int quality = 100;
  bool subsampled = false;  ///< The second and third component at half the size, both ways.
};

int components_of(const Jpeg& jpeg);

/// A JPEG, by default without losses to speak of: `sample` gives component c at (x, y), 0 to 255,
/// as it is stored.
std::string encode_jpeg(const Jpeg& jpeg, const std::function<int(int x, int y, int c)>& sample);

}  // namespace encoders
