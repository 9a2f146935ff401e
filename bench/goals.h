// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// Benchmarks that are held against goals. A program registers its benchmarks, each of which does
// the same work per iteration as its references, and calls run_with_goals from main.

/// What one operation must reach, as a multiple of another benchmark's speed or as a rate.
struct Goal {
  std::string operation;  ///< As the table names it.
  std::string benchmark;  ///< The name it is registered by.
  std::string reference;  ///< A registered name; empty for a goal in items a second.
  double least;           ///< Times the reference's speed, or items a second; 0 to show it only.
};

/// Runs all registered benchmarks in several interleaved repetitions and prints, after Google
/// Benchmark's own output, a Markdown table of the medians against the goals. Arguments are Google
/// Benchmark's; a filter leaves out the goals that it leaves without a figure. The result is for
/// main: 0 also where goals are missed, since the figures are the machine's, unless --strict is
/// given.
int run_with_goals(int argc, char** argv, const std::vector<Goal>& goals);
