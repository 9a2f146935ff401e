// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Takes values off a fuzz target's input, from the front; past its end they are 0.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : at_(data), left_(size) {}

  bool done() const { return left_ == 0; }
  std::size_t left() const { return left_; }

  std::uint8_t byte() {
    if (left_ == 0) return 0;
    --left_;
    return *at_++;
  }

  /// Eight bytes, the highest first.
  std::uint64_t word() {
    std::uint64_t w = 0;
    for (int i = 0; i < 8; ++i) w = w << 8 | byte();
    return w;
  }

  /// Up to `n` bytes, where they lie in the input; `n` becomes how many there are.
  const std::uint8_t* bytes(std::size_t& n) {
    if (n > left_) n = left_;
    const std::uint8_t* first = at_;
    at_ += n;
    left_ -= n;
    return first;
  }

 private:
  const std::uint8_t* at_;
  std::size_t left_;
};

/// What must hold in every run: the fuzzer keeps the input where it does not.
inline void require(bool holds) {
  if (!holds) std::abort();
}
