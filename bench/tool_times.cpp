// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// Times `pdfbmp extract` on the benchmark set beside other programs that take images out of PDF
// files, all of them run whole: tool_times TOOL SET PEER_SCRIPT [CLASS...]. The runs are
// interleaved, so that a slow spell of the machine falls on all; medians are printed as Markdown.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include "bench/timed_run.h"

namespace {

constexpr int own_runs = 5, peer_runs = 3;
constexpr double limit = 60, slow = 6;  // seconds

/// Beside whom PNG output is timed. pdfimages takes long; of CMYK mutool writes the four inks, and
/// no PNG.
enum class Png { none, mutool, pdfimages, both };

struct Class {
  const char* name;
  const char* format;
  double least;  ///< Times the speed of the faster peer.
  bool several;  ///< Images, so that two threads have work.
  Png png;
  /// Only pdfimages does the same work: Debian's MuPDF takes samples of a profile as plain RGB.
  bool by_profile = false;
};

constexpr Class classes[] = {
    {"rgb", "pam", 2, true, Png::both},
    {"rgb-png", "pam", 2, true, Png::mutool},
    {"rgb-tiff", "pam", 2, true, Png::none},
    {"rgb-grain", "pam", 0, true, Png::none},
    {"rgb-large", "pam", 2, false, Png::none},
    {"gray", "pam", 1.5, true, Png::both},
    {"indexed", "pam", 1.5, true, Png::mutool},
    {"cmyk", "pam", 2, true, Png::pdfimages},
    {"rgb16", "pam", 2, true, Png::mutool},
    {"softmask", "pam", 1.5, true, Png::mutool},
    {"bilevel", "pnm", 1, true, Png::mutool},
    {"ccitt", "pnm", 1, true, Png::mutool},
    {"jbig2", "pnm", 1, true, Png::none},
    {"icc-rgb", "pam", 2, true, Png::none, true},
    {"separation", "pam", 2, true, Png::none},
    {"dct-rgb", "pam", 1, true, Png::none},
    {"dct-rgb-decode", "pam", 1, true, Png::none},
    {"dct-cmyk", "pam", 1.5, true, Png::none},
    {"dct-cmyk-decode", "pam", 1.5, true, Png::none},
    {"jpx", "pam", 1, true, Png::none},
    {"small", "pam", 1, true, Png::mutool},
};

/// Memory-backed where there is such a place; gone with its content at the end.
class Scratch {
 public:
  Scratch() {
    const char* memory = "/dev/shm";
    const std::filesystem::path base =
        access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    path_ = base / ("pdfbmp-bench-" + std::to_string(getpid()));
    renew();
  }
  ~Scratch() { remove(); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  void renew() {
    remove();
    std::error_code error;
    std::filesystem::create_directories(path_, error);
  }
  std::string path() const { return path_.string(); }

 private:
  void remove() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  std::filesystem::path path_;
};

/// A program of a round, and what it has cost.
struct Runner {
  std::vector<std::string> words = {};  ///< None: it is not there.
  int runs = 0;
  double limit_seconds = limit;
  std::vector<double> seconds = {};
  double peak_mb = 0;
  bool failed = false, stopped = false;

  bool has_figure() const { return !seconds.empty() && !failed && !stopped; }
  double median() const {
    std::vector<double> sorted = seconds;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }
};

void run_interleaved(std::vector<Runner*> runners, Scratch& scratch) {
  for (int round = 0; round < own_runs; ++round) {
    for (Runner* runner : runners) {
      const bool long_one = !runner->seconds.empty() && runner->seconds[0] > slow;
      if (runner->words.empty() || round >= runner->runs || runner->failed || runner->stopped)
        continue;
      if (long_one) continue;
      scratch.renew();
      const TimedRun run = timed_run(runner->words, scratch.path(), runner->limit_seconds);
      runner->stopped = run.stopped;
      runner->failed = !run.ok && !run.stopped;
      runner->seconds.push_back(run.seconds);
      runner->peak_mb = std::max(runner->peak_mb, run.peak_mb);
    }
  }
  scratch.renew();
}

std::string figure(const Runner& runner) {
  if (runner.words.empty()) return "";
  if (runner.failed) return "failed";
  char text[32];
  std::snprintf(text, sizeof text, "%s%.2f", runner.stopped ? "> " : "", runner.median());
  return text;
}

std::string times(double ratio, const char* sign = "") {
  char text[32];
  std::snprintf(text, sizeof text, "%s%.2f x", sign, ratio);
  return text;
}

/// How often `own` goes into `peer`, and whether that is enough; both empty without figures.
struct Verdict {
  std::string ratio, reached;
};

Verdict compare(const Runner& own, const Runner& peer, double least) {
  if (!own.has_figure() || peer.words.empty() || peer.failed) return {};
  const double ratio = peer.median() / own.median();
  const char* verdict = least == 0 ? "" : ratio >= least ? "yes" : peer.stopped ? "" : "NO";
  return {times(ratio, peer.stopped ? "> " : ""), verdict};
}

const Runner& faster(const Runner& a, const Runner& b) {
  if (!a.has_figure()) return b;
  if (!b.has_figure()) return a;
  return a.median() <= b.median() ? a : b;
}

struct Programs {
  std::string tool, pdfimages, mutool, python, script;
};

Runner runner_of(const std::string& program, std::vector<std::string> arguments, int runs) {
  Runner runner;
  runner.runs = runs;
  if (program.empty()) return runner;
  runner.words = std::move(arguments);
  runner.words.insert(runner.words.begin(), program);
  return runner;
}

void time_raw(const std::vector<Class>& wanted, const Programs& programs, const std::string& set,
              Scratch& scratch) {
  std::puts(
      "\n| class | `-j 1`, s | pdfimages, s | PyMuPDF, s | times the faster | at least | reached "
      "| `-j 2`, s | times `-j 1` | peak, MB, `-j 1` | `-j 2` | pdfimages |\n"
      "|---|--:|--:|--:|--:|--:|---|--:|--:|--:|--:|--:|");
  for (const Class& c : wanted) {
    const std::string file = set + "/" + c.name + ".pdf";
    const auto own = [&](const char* jobs) {
      return runner_of(programs.tool,
                       {"extract", "-q", "--format", c.format, "-j", jobs, "-o", "out", file},
                       own_runs);
    };
    Runner one = own("1"), two = own("2");
    Runner images = runner_of(programs.pdfimages, {file, "p"}, peer_runs);
    Runner pixmaps = runner_of(programs.python, {programs.script, file}, peer_runs);
    run_interleaved({&one, &images, &two, &pixmaps}, scratch);
    const Verdict verdict = compare(one, c.by_profile ? images : faster(images, pixmaps), c.least);
    const Verdict gain = c.several ? compare(two, one, 1.8) : Verdict{};
    std::printf("| %s | %s | %s | %s | %s | %s | %s | %s | %s %s | %.0f | %.0f | %.0f |\n", c.name,
                figure(one).c_str(), figure(images).c_str(), figure(pixmaps).c_str(),
                verdict.ratio.c_str(), c.least == 0 ? "" : times(c.least).c_str(),
                verdict.reached.c_str(), figure(two).c_str(), gain.ratio.c_str(),
                gain.reached.c_str(), one.peak_mb, two.peak_mb, images.peak_mb);
    std::fflush(stdout);
  }
}

void time_png(const std::vector<Class>& wanted, const Programs& programs, const std::string& set,
              Scratch& scratch) {
  std::puts(
      "\n| class, as PNG | `-j 1`, s | mutool extract, s | times mutool | 3 x reached "
      "| pdfimages -png, s | times pdfimages | 20 x reached | peak, MB |\n"
      "|---|--:|--:|--:|---|--:|--:|---|--:|");
  for (const Class& c : wanted) {
    if (c.png == Png::none) continue;
    const std::string file = set + "/" + c.name + ".pdf";
    Runner one =
        runner_of(programs.tool, {"extract", "-q", "-j", "1", "-o", "out", file}, peer_runs);
    Runner mutool =
        runner_of(c.png == Png::pdfimages ? "" : programs.mutool, {"extract", file}, peer_runs);
    run_interleaved({&one, &mutool}, scratch);
    Runner images =
        runner_of(c.png == Png::mutool ? "" : programs.pdfimages, {"-png", file, "p"}, 1);
    // Long enough to see whether the goal is reached; the whole may take minutes.
    if (one.has_figure()) images.limit_seconds = 20.5 * one.median();
    run_interleaved({&images}, scratch);
    const Verdict to_mutool = compare(one, mutool, 3), to_images = compare(one, images, 20);
    std::printf("| %s | %s | %s | %s | %s | %s | %s | %s | %.0f |\n", c.name, figure(one).c_str(),
                figure(mutool).c_str(), to_mutool.ratio.c_str(), to_mutool.reached.c_str(),
                figure(images).c_str(), to_images.ratio.c_str(), to_images.reached.c_str(),
                one.peak_mb);
    std::fflush(stdout);
  }
}

/// The first Python whose PyMuPDF can be imported; Debian's own one is not always first in PATH.
std::string python_with_pymupdf(const std::string& folder) {
  for (const std::string& python : {find_program("python3"), std::string("/usr/bin/python3")}) {
    if (!python.empty() && timed_run({python, "-c", "import fitz"}, folder, limit).ok)
      return python;
  }
  return {};
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fputs("usage: tool_times TOOL SET PEER_SCRIPT [CLASS...]\n", stderr);
    return 2;
  }
  const auto absolute = [](const char* path) { return std::filesystem::absolute(path).string(); };
  const std::vector<std::string> names(argv + 4, argv + argc);
  std::vector<Class> wanted;
  for (const Class& c : classes) {
    if (names.empty() || std::find(names.begin(), names.end(), c.name) != names.end())
      wanted.push_back(c);
  }
  if (wanted.empty()) {
    std::fputs("No such class; there are:", stderr);
    for (const Class& c : classes) std::fprintf(stderr, " %s", c.name);
    std::fputs("\n", stderr);
    return 2;
  }
  Scratch scratch;
  const Programs programs = {absolute(argv[1]), find_program("pdfimages"), find_program("mutool"),
                             python_with_pymupdf(scratch.path()), absolute(argv[3])};
  if (programs.pdfimages.empty()) std::puts("Not found: pdfimages (poppler-utils).");
  if (programs.mutool.empty()) std::puts("Not found: mutool (mupdf-tools).");
  if (programs.python.empty()) std::puts("Not found: PyMuPDF (python3-fitz).");
  std::printf("Medians of %d runs, the peers' of %d (of 1 above %.0f s); output to %s.\n", own_runs,
              peer_runs, slow, scratch.path().c_str());
  const std::string set = absolute(argv[2]);
  time_raw(wanted, programs, set, scratch);
  time_png(wanted, programs, set, scratch);
  return 0;
}
