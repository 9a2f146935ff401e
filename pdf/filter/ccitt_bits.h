// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <memory>
#include <utility>

#include "pdf/filter/input.h"

/// The bits of fax data, the highest of each byte first. After the last one come zeros without end.
class CCITTBits {
 public:
  explicit CCITTBits(std::unique_ptr<CPDFStream> input) : input_(std::move(input)) {}

  /// Makes the next 32 bits ready for peek() and skip().
  void need() {
    if (count_ < 32 && !ended_) refill();
  }

  /// The next `n` bits (1 to 32) as a number. After need().
  unsigned peek(int n) const { return static_cast<unsigned>(bits_ >> (64 - n)); }

  /// Uses up `n` bits, no more than need() made ready.
  void skip(int n) {
    bits_ <<= n;
    count_ -= n;
  }

  void skip_to_byte() {
    if (count_ > 0) skip(count_ & 7);
  }

  bool at_end() { return short_of(1); }

  /// Whether fewer than `n` (up to 32) real bits are left.
  bool short_of(int n) {
    need();
    return count_ < n;
  }

  /// Whether more than the real bits were used.
  bool overrun() const { return count_ < 0; }

  /// Uses up an end-of-line code (eleven zeros or more, then a one) where one comes next.
  bool skip_end_of_line() {
    need();
    return peek(11) == 0 && skip_zeros_and_one();
  }

  /// Uses up everything up to and with the next end-of-line code; false where there is none.
  bool find_end_of_line() {
    for (;;) {
      need();
      const int zeros = std::countl_zero(bits_);
      if (zeros >= 11) return skip_zeros_and_one();
      if (count_ <= 0) return false;
      skip(zeros + 1);
    }
  }

 private:
  bool skip_zeros_and_one() {
    while (!at_end()) {
      const int zeros = std::countl_zero(peek(32));
      if (zeros < 32) {
        skip(zeros + 1);
        return true;
      }
      skip(32);
    }
    return false;
  }

  void refill() {
    if (input_.end - input_.cursor >= 4) {
      const unsigned char* const p = input_.cursor;
      const std::uint64_t four = std::uint64_t{p[0]} << 24 | std::uint64_t{p[1]} << 16 |
                                 std::uint64_t{p[2]} << 8 | std::uint64_t{p[3]};
      bits_ |= four << (32 - count_);
      count_ += 32;
      input_.cursor += 4;
      return;
    }
    while (count_ <= 56) {
      const int c = input_.get();
      if (c < 0) {
        ended_ = true;
        return;
      }
      bits_ |= static_cast<std::uint64_t>(c) << (56 - count_);
      count_ += 8;
    }
  }

  CPDFInput input_;
  std::uint64_t bits_ = 0;  // The next bit is the highest; below the real ones are zeros.
  int count_ = 0;           // Real bits; negative where zeros after the end were used.
  bool ended_ = false;
};
