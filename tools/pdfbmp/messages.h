// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// What is said on standard error: a line a message, and on a terminal a line of progress below
/// them. For one thread.
class Messages {
 public:
  explicit Messages(bool quiet);
  ~Messages();

  /// Of a whole file, or of the program where `file` is empty.
  void error(const std::string& file, const std::string& text);
  void warning(const std::string& file, const std::string& text);  ///< Not when quiet.
  void note(const std::string& file, const std::string& text);     ///< Not when quiet.

  /// Shows that `done` of `total` images are through.
  void progress(std::size_t done, std::size_t total);

  /// Takes the progress away. Messages do so by themselves.
  void clear_progress();

 private:
  using Clock = std::chrono::steady_clock;

  void line(const std::string& file, const std::string& text);

  bool quiet_;
  bool terminal_;
  bool progress_shown_ = false;
  Clock::time_point start_, last_shown_;
};
