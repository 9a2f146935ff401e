// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// Reals are signed 64-bit fixed-point numbers with 26 fraction bits: 1.0 is 0x4000000.

inline constexpr int fixed_fraction_bits = 26;
inline constexpr std::int64_t fixed_one = std::int64_t{1} << fixed_fraction_bits;
inline constexpr std::int64_t fixed_half = fixed_one / 2;

/// The nearest integer, half-way values upwards (2.5 gives 3, -2.5 gives -2); the low 32 bits of
/// what lies beyond them.
constexpr int fixed_to_int(std::int64_t v) {
  // The sum is formed unsigned: it wraps for the largest reals instead of overflowing.
  const auto rounded = static_cast<std::int64_t>(static_cast<std::uint64_t>(v) + fixed_half);
  return static_cast<int>(static_cast<std::uint32_t>(rounded >> fixed_fraction_bits));
}

constexpr std::int64_t int_to_fixed(int i) { return std::int64_t{i} * fixed_one; }

/// The unit range brought to 0..255, rounded: 0.5 gives 128; 1.0 and more 255; 0 and less 0.
constexpr int fixed_to_byte(std::int64_t v) {
  if (v >= fixed_one) return 255;
  if (v < 1) return 0;
  return static_cast<int>((v * 255 + fixed_half) >> fixed_fraction_bits);
}
