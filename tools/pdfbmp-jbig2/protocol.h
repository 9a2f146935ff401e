// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// What the document library and its JBIG2 helper say to each other, over one socket that is the
// helper's standard input and output. Both run on one machine: numbers are as it keeps them.
//
//   to the helper:   a Jbig2Request, the global segments, the page's segments, the end
//   from the helper: a Jbig2Reply, what went wrong in words, the rows from the top, of
//                    (width + 7) / 8 bytes each, 0 is black, the end
//
// The helper answers when it has read everything, so neither waits for the other.

struct Jbig2Request {
  std::uint64_t max_pixels = 0;
  std::uint64_t max_bytes = 0;
  std::uint64_t globals_bytes = 0;
  std::uint64_t max_seconds = 0;  ///< Of the processor, and again for each 2^23 pixels.

  std::uint64_t seconds_for(std::uint64_t pixels) const {
    return max_seconds * (1 + (pixels >> 23));
  }
};

struct Jbig2Reply {
  std::uint32_t width = 0, height = 0;  ///< Both 0 where there is no picture.
  std::uint32_t problem_bytes = 0;      ///< At most 255; 0 where nothing went wrong.
};
