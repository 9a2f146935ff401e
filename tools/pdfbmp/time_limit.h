// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// How long an image may keep the processor, in the thread that makes this and from then on.
class TimeLimit {
 public:
  explicit TimeLimit(std::int64_t seconds);

  /// Whether the time is over for an image of so many pixels: the seconds, and as many again for
  /// each 2^20 of them.
  bool is_over(std::int64_t pixels) const;

 private:
  double seconds_, begin_;
};
