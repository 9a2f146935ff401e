// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "kx/bmp.h"

/// Takes values off a fuzz target's input, from the front; past its end they are 0.
class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

  bool done() const { return left_.empty(); }
  std::uint8_t byte() {
    if (left_.empty()) return 0;
    const char first = left_.front();
    left_.remove_prefix(1);
    return static_cast<std::uint8_t>(first);
  }

  /// `count` bytes, up to 8, the highest first.
  std::uint64_t number(int count) {
    std::uint64_t value = 0;
    for (int i = 0; i < count; ++i) value = value << 8 | byte();
    return value;
  }

  /// Up to `most` bytes, where they lie in the input.
  std::string_view text(std::size_t most = std::string_view::npos) {
    const std::string_view front = left_.substr(0, most);
    left_.remove_prefix(front.size());
    return front;
  }

 private:
  std::string_view left_;
};

/// What must hold in every run: the fuzzer keeps the input where it does not.
inline void require(bool holds) {
  if (!holds) std::abort();
}

/// Adds all bytes of a bitmap, which may be null, to `result`.
inline void add(std::string& result, const CKXBmp* bmp) {
  result += bmp == nullptr ? '-' : '+';
  if (bmp == nullptr) return;
  require(bmp->pixels != nullptr && bmp->width > 0 && bmp->height > 0 && bmp->stride > 0);
  result.append(reinterpret_cast<const char*>(bmp->pixels), static_cast<std::size_t>(bmp->stride) * static_cast<std::size_t>(bmp->height));
}

/// Whether an allocation of this run has been made to fail.
bool memory_failed();

/// What each target defines: does with the input what it is there for, and tells what came of it.
/// Called three times: over memory that is filled with 0, over memory that is filled otherwise
/// (`second`), and while memory fails, where the first two bytes of the whole input say so. The
/// first two must tell the same, and nothing may live after any.
std::string run_target(FuzzInput in, bool second);
