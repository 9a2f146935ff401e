// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// What one run of a program cost.
struct TimedRun {
  bool ok = false;       ///< It ended by itself, with 0.
  bool stopped = false;  ///< It was still at work after the time that it was given.
  double seconds = 0;    ///< From its start to its end.
  double peak_mb = 0;    ///< The largest resident set of it or of a child that it waited for, 2^20.
};

/// Runs `words` in `folder`, standard output and error thrown away; it is stopped after `limit`
/// seconds. The first word is a path.
TimedRun timed_run(const std::vector<std::string>& words, const std::string& folder, double limit);

/// The path of a program in PATH, or nothing.
std::string find_program(const std::string& name);
