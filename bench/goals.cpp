// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "bench/goals.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <map>

namespace {

struct Figure {
  double seconds = 0;  // an iteration
  double items = 0;    // a second
};

/// Google Benchmark's console output, and the medians kept.
class Medians : public benchmark::ConsoleReporter {
 public:
  Medians() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      Figure& figure = figures[run.run_name.function_name];
      figure.seconds = run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
      const auto items = run.counters.find("items_per_second");
      if (items != run.counters.end()) figure.items = items->second;
    }
  }

  std::map<std::string, Figure> figures;
};

std::string times(double ratio) {
  char text[32];
  std::snprintf(text, sizeof text, ratio < 10 ? "%.2f x" : "%.1f x", ratio);
  return text;
}

std::string rate(double items) {
  char text[32];
  std::snprintf(text, sizeof text, items < 1e9 ? "%.0f M/s" : "%.2f G/s",
                items / (items < 1e9 ? 1e6 : 1e9));
  return text;
}

/// One line of the table; whether the goal is reached.
bool report(const Goal& goal, const Figure& figure, const Figure* reference) {
  const double reached = reference ? reference->seconds / figure.seconds : figure.items;
  const auto text = reference ? times : rate;
  const bool ok = reached >= goal.least;
  const std::string least = goal.least > 0 ? text(goal.least) : "";
  const char* verdict = goal.least > 0 ? ok ? "yes" : "NO" : "";
  std::printf("| %-34s | %-18s | %9s | %9s | %9s | %-7s |\n", goal.operation.c_str(),
              reference ? goal.reference.c_str() : "rate", rate(figure.items).c_str(),
              text(reached).c_str(), least.c_str(), verdict);
  return ok;
}

}  // namespace

int run_with_goals(int argc, char** argv, const std::vector<Goal>& goals) {
  // Before the caller's arguments, so that those win. Interleaved, a slow spell of the machine
  // falls on the operations and their references alike.
  std::vector<std::string> arguments = {
      argv[0], "--benchmark_repetitions=11", "--benchmark_enable_random_interleaving=true",
      "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.02"};
  bool strict = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--strict") == 0) {
      strict = true;
    } else {
      arguments.emplace_back(argv[i]);
    }
  }
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;

  Medians medians;
  benchmark::RunSpecifiedBenchmarks(&medians);

  std::printf(
      "\n| operation                          | against            |      rate |   reached |"
      "  at least | reached |\n|---|---|--:|--:|--:|---|\n");
  bool all = true;
  for (const Goal& goal : goals) {
    const auto figure = medians.figures.find(goal.benchmark);
    const auto reference = medians.figures.find(goal.reference);
    if (figure == medians.figures.end()) continue;
    if (!goal.reference.empty() && reference == medians.figures.end()) continue;
    all &= report(goal, figure->second, goal.reference.empty() ? nullptr : &reference->second);
  }
  return strict && !all ? 1 : 0;
}
