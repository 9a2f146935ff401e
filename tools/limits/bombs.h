// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/// The exit code of a run whose time ends it: whether an image was found by then that is not whole
/// (1) depends on the machine.
constexpr int by_speed = -1;

/// A file that asks for far more than it holds, or one that is honestly large.
struct LimitCase {
  std::string name;
  int exit_code;        ///< Or by_speed.
  std::string message;  ///< Part of the line on standard error.
  std::function<std::string()> make;
  std::vector<std::string> words = {};  ///< More of the command line.
};

/// Must end within little time and memory.
std::vector<LimitCase> bombs();

/// Must come out whole, however long it takes.
std::vector<LimitCase> large_files();
