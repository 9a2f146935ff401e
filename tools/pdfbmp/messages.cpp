// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/messages.h"

#include <cstdio>
#include <unistd.h>

Messages::Messages(bool quiet) : quiet_(quiet), terminal_(::isatty(STDERR_FILENO) != 0) {}

Messages::~Messages() { clear_progress(); }

void Messages::line(const std::string& file, const std::string& text) {
  clear_progress();
  // One call a line, so that lines of several processes do not mix.
  const std::string whole = "pdfbmp: " + (file.empty() ? "" : file + ": ") + text + "\n";
  std::fputs(whole.c_str(), stderr);
}

void Messages::error(const std::string& file, const std::string& text) { line(file, text); }

void Messages::warning(const std::string& file, const std::string& text) {
  if (!quiet_) line(file, "warning: " + text);
}

void Messages::note(const std::string& file, const std::string& text) {
  if (!quiet_) line(file, text);
}

void Messages::progress(std::size_t done, std::size_t total) {
  if (quiet_ || !terminal_) return;
  const Clock::time_point now = Clock::now();
  if (done == 0) {
    start_ = now;
    last_shown_ = {};
  }
  if (now - last_shown_ < std::chrono::milliseconds(100)) return;
  last_shown_ = now;

  constexpr std::size_t bar_width = 30;
  const std::size_t filled = total == 0 ? bar_width : bar_width * done / total;
  const std::string bar = std::string(filled, '#') + std::string(bar_width - filled, '.');
  std::fprintf(stderr, "\r\033[K[%s] %zu of %zu images", bar.c_str(), done, total);
  const double seconds = std::chrono::duration<double>(now - start_).count();
  if (done > 0 && seconds > 1) {
    const double rate = static_cast<double>(done) / seconds;
    const long left = static_cast<long>(static_cast<double>(total - done) / rate + 0.5);
    std::fprintf(stderr, ", %.1f a second, %ld:%02ld left", rate, left / 60, left % 60);
  }
  std::fflush(stderr);
  progress_shown_ = true;
}

void Messages::clear_progress() {
  if (!progress_shown_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  progress_shown_ = false;
}
