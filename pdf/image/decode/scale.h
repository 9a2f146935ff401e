// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace image_decoding {

/// The size of a bitmap against its image: the value is the base-2 logarithm of the divisor.
enum class Scale { full = 0, half = 1, quarter = 2 };

inline constexpr std::int64_t half_size_from = std::int64_t{40} * (1 << 20) + 1;
inline constexpr std::int64_t quarter_size_from = std::int64_t{80} * (1 << 20) + 1;

/// The scale of the colour bitmap of an image of `count` pixels.
constexpr Scale scale_of(std::int64_t count, bool no_quarter) {
  if (!no_quarter && count >= quarter_size_from) return Scale::quarter;
  return count < half_size_from ? Scale::full : Scale::half;
}

/// A width or height at a scale: the first sample of every group is kept, a part group's too.
constexpr int scaled(int size, Scale scale) {
  const int shift = static_cast<int>(scale);
  return static_cast<int>((std::int64_t{size} + (1 << shift) - 1) >> shift);
}

}  // namespace image_decoding
