// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// What is said on standard error: a line a message, and on a terminal a line of progress below
/// them. For one thread.
class Messages {
 public:
  Messages(bool quiet, std::size_t files);
  ~Messages();

  /// Of a whole file, or of the program where `file` is empty.
  void error(const std::string& file, const std::string& text);
  void warning(const std::string& file, const std::string& text);  ///< Not when quiet.
  void note(const std::string& file, const std::string& text);     ///< Not when quiet.

  /// Shows that `done` of `total` images of the current file are through.
  void progress(std::size_t done, std::size_t total);

  /// Goes on to the next file.
  void end_file();

  /// Takes the progress away. Messages do so by themselves.
  void clear_progress();

 private:
  using Clock = std::chrono::steady_clock;

  void line(const std::string& file, const char* color, const std::string& text);

  bool quiet_;
  bool progress_wanted_, colored_;
  bool progress_shown_ = false;
  std::size_t files_, files_done_ = 0;
  std::size_t images_before_ = 0;  ///< In the files that are done.
  std::size_t images_done_ = 0;    ///< In the current one.
  Clock::time_point start_ = Clock::now(), last_shown_ = start_;
};
