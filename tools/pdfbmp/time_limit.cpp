// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/time_limit.h"

#include <ctime>
#include <limits>

namespace {

double thread_seconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

TimeLimit::TimeLimit(std::int64_t seconds)
    : seconds_(static_cast<double>(seconds)), begin_(thread_seconds()) {}

double TimeLimit::used(std::int64_t pixels) const {
  const double allowed = seconds_ * static_cast<double>(1 + (pixels >> 20));
  return allowed > 0 ? (thread_seconds() - begin_) / allowed
                     : std::numeric_limits<double>::infinity();
}
