// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

/// A file that asks for far more than it holds, or one that is honestly large.
struct LimitCase {
  std::string name;
  int exit_code;
  std::string message;  ///< Part of the line on standard error.
  std::function<std::string()> make;
  std::vector<std::string> words = {};  ///< More of the command line.
};

/// Must end within little time and memory.
std::vector<LimitCase> bombs();

/// Must come out whole, however long it takes.
std::vector<LimitCase> large_files();
