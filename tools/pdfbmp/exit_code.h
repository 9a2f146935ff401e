// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

/// How the program ends. In the order of weight: of several files or images that fail in different
/// ways, the last one here is told.
enum class Outcome {
  ok,              ///< Every image was written whole.
  incomplete,      ///< Some image could not be decoded, or only partly.
  needs_password,  ///< A file needs a password, or another one.
  unreadable,      ///< A file cannot be read as a PDF.
  no_output,       ///< The output cannot be written.
  usage,           ///< The call is wrong.
};

inline Outcome worse(Outcome a, Outcome b) { return std::max(a, b); }

/// The number that the program returns; told in its help text.
inline int exit_code_of(Outcome outcome) {
  switch (outcome) {
    case Outcome::ok:
      return 0;
    case Outcome::incomplete:
      return 1;
    case Outcome::usage:
      return 2;
    case Outcome::unreadable:
      return 3;
    case Outcome::needs_password:
      return 4;
    case Outcome::no_output:
      return 5;
  }
  return 2;
}
