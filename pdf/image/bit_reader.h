// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace image_decoding {

/// Reads samples of 1 to 16 bits from a row that is one string of bits, most significant first.
/// What would lie past the row's bytes reads as 0.
class BitReader {
 public:
  BitReader(const unsigned char* row, std::int64_t byte_count, int bits)
      : row_(row), byte_count_(byte_count), bits_(bits) {}

  unsigned next() {
    const std::int64_t first = position_ >> 3;
    const int offset = static_cast<int>(position_ & 7);
    position_ += bits_;
    if (position_ > byte_count_ * 8) return 0;
    // A sample of 16 bits touches at most three bytes.
    std::uint32_t window = 0;
    for (int i = 0; i < 3; ++i) {
      window = window << 8 | (first + i < byte_count_ ? row_[first + i] : 0U);
    }
    return (window >> (24 - offset - bits_)) & ((1U << bits_) - 1);
  }

  void skip(std::int64_t samples) { position_ += samples * bits_; }

 private:
  const unsigned char* row_;
  std::int64_t byte_count_;
  std::int64_t position_ = 0;  ///< In bits.
  int bits_;
};

/// A sample of `bits` bits brought to 0..255, truncated.
constexpr int sample_to_byte(unsigned sample, int bits) {
  return static_cast<int>(sample * 255U / ((1U << bits) - 1));
}

}  // namespace image_decoding
