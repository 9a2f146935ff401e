// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/messages.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>

#include "tools/pdfbmp/terminal.h"

namespace {

constexpr const char *red = "\033[31m", *yellow = "\033[33m", *plain = "";

std::string counted(std::size_t done, std::size_t total) {
  return std::to_string(done) + " of " + std::to_string(total);
}

std::string bar(std::size_t width, double share) {
  const auto filled =
      std::min(width, static_cast<std::size_t>(static_cast<double>(width) * share + 0.5));
  return "[" + std::string(filled, '#') + std::string(width - filled, '.') + "] ";
}

}  // namespace

Messages::Messages(bool quiet, std::size_t files)
    : quiet_(quiet),
      progress_wanted_(!quiet && is_terminal(STDERR_FILENO)),
      colored_(shows_colors(STDERR_FILENO)),
      files_(files) {}

Messages::~Messages() { clear_progress(); }

void Messages::line(const std::string& file, const char* color, const std::string& text) {
  clear_progress();
  const bool colored = colored_ && *color != '\0';
  const std::string name = colored ? color + std::string("pdfbmp:\033[0m ") : "pdfbmp: ";
  // One call a line, so that lines of several processes do not mix.
  const std::string whole = name + (file.empty() ? "" : file + ": ") + text + "\n";
  std::fputs(whole.c_str(), stderr);
}

void Messages::error(const std::string& file, const std::string& text) { line(file, red, text); }

void Messages::warning(const std::string& file, const std::string& text) {
  if (!quiet_) line(file, yellow, "warning: " + text);
}

void Messages::note(const std::string& file, const std::string& text) {
  if (!quiet_) line(file, plain, text);
}

void Messages::progress(std::size_t done, std::size_t total) {
  images_done_ = done;
  if (!progress_wanted_) return;
  // What is soon over shows nothing.
  const Clock::time_point now = Clock::now();
  if (now - last_shown_ < std::chrono::milliseconds(progress_shown_ ? 100 : 300)) return;
  last_shown_ = now;

  const double of_file = total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total);
  const double share = (static_cast<double>(files_done_) + of_file) /
                       static_cast<double>(std::max(files_, files_done_ + 1));
  std::string text = counted(done, total) + " images";
  if (files_ > 1) text = "file " + counted(files_done_ + 1, files_) + ", " + text;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  if (share > 0 && seconds > 1) {
    char rate[64];
    const auto left = static_cast<long>(seconds * (1 - share) / share + 0.5);
    std::snprintf(rate, sizeof(rate), ", %.1f a second, %ld:%02ld left",
                  static_cast<double>(images_before_ + done) / seconds, left / 60, left % 60);
    text += rate;
  }
  // In the line's last column the terminal might begin a new one.
  const auto columns = static_cast<std::size_t>(std::max(terminal_columns(STDERR_FILENO), 40)) - 1;
  constexpr std::size_t brackets = 3, shortest_bar = 5, longest_bar = 30;
  if (text.size() + brackets + shortest_bar <= columns) {
    text = bar(std::min(columns - text.size() - brackets, longest_bar), share) + text;
  }
  std::fprintf(stderr, "\r\033[K%.*s", static_cast<int>(columns), text.c_str());
  std::fflush(stderr);
  progress_shown_ = true;
}

void Messages::end_file() {
  ++files_done_;
  images_before_ += images_done_;
  images_done_ = 0;
}

void Messages::clear_progress() {
  if (!progress_shown_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
  progress_shown_ = false;
}
