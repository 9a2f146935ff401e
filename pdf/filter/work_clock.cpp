// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/work_clock.h"

#include <algorithm>
#include <ctime>

namespace {

double thread_seconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// An address that is every thread's own.
const void* this_thread() {
  static thread_local const char mark = 0;
  return &mark;
}

}  // namespace

CPDFWorkClock::CPDFWorkClock(double allowed_seconds) : allowed_(allowed_seconds) { look(); }

void CPDFWorkClock::look() {
  const double now = thread_seconds();
  // An address may come again after its thread's end, with a clock that began anew.
  if (thread_ == this_thread()) used_ += std::max(now - last_, 0.0);
  thread_ = this_thread();
  last_ = now;
  steps_to_look_ = interval_;
}
