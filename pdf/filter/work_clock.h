// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// The processor's time that a piece of work has taken: what passes from one look to the next in
/// the same thread. Where another thread takes the work over, the time between is not counted.
/// Serves one thread at a time.
class CPDFWorkClock {
 public:
  /// Begins now.
  explicit CPDFWorkClock(double allowed_seconds);

  void allow(double seconds) { allowed_ = seconds; }
  double allowed_seconds() const { return allowed_; }

  /// Sets after how many steps the time is looked at: asking the system takes about a microsecond.
  void look_every(std::int64_t steps) { steps_to_look_ = interval_ = steps; }

  /// Counts so many steps of work. Whether the time is over, as of the last look.
  bool is_over(std::int64_t steps) {
    steps_to_look_ -= steps;
    if (steps_to_look_ < 0) look();
    return used_ >= allowed_;
  }

  double used_seconds() {
    look();
    return used_;
  }

 private:
  void look();

  double allowed_;
  double used_ = 0;
  double last_ = 0;               ///< The thread's clock at the last look.
  const void* thread_ = nullptr;  ///< The one that looked.
  std::int64_t interval_ = 4096;
  std::int64_t steps_to_look_ = 0;
};
