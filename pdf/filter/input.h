// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/obj/stream.h"

/// The encoded bytes that a filter reads, a piece at a time.
class CPDFInput {
 public:
  explicit CPDFInput(std::unique_ptr<CPDFStream> stream);
  ~CPDFInput();
  CPDFInput(const CPDFInput&) = delete;
  CPDFInput& operator=(const CPDFInput&) = delete;

  /// Reads the next piece over the last one, whose bytes must have been used; false at the end, or
  /// where there is no memory for a piece. One of fewer than `least` bytes ends the data.
  bool fill(int least = 1);

  /// The next byte, or -1 at the end.
  int get() { return cursor < end || fill() ? *cursor++ : -1; }

  const unsigned char* begin = nullptr;   ///< The current piece.
  const unsigned char* cursor = nullptr;  ///< Its next byte to use.
  const unsigned char* end = nullptr;     ///< The byte after it.
  int pieces = 0;                         ///< Pieces read so far.

 private:
  std::unique_ptr<CPDFStream> stream_;
  unsigned char* buffer_ = nullptr;
};
