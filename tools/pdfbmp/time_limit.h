// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// How long an image may keep the processor, in the thread that makes this and from then on.
class TimeLimit {
 public:
  explicit TimeLimit(std::int64_t seconds);

  /// The share of its time that an image of so many pixels has taken; above 1 it is over. Its time
  /// is the seconds, and as many again for each 2^20 pixels. This asks the system, and is slow.
  double used(std::int64_t pixels) const;

 private:
  double seconds_, begin_;
};
