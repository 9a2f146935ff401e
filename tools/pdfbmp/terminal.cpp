// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/terminal.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

int terminal_columns(int descriptor) {
  winsize size = {};
  return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool is_terminal(int descriptor) { return ::isatty(descriptor) != 0 && variable("TERM") != "dumb"; }

bool shows_colors(int descriptor) {
  return is_terminal(descriptor) && variable("NO_COLOR").empty();
}
