// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <jbig2.h>

#include "tools/pdfbmp-jbig2/protocol.h"

/// The first thing that went wrong, in words.
struct Jbig2Problem {
  char text[160] = "";
  void say(const char* what);
};

/// The page that `size` bytes, the global segments first, describe; null where there is none. The
/// decoder owns it and is never given back: its memory, of `allocator` (null: the C library's),
/// goes with the process.
const Jbig2Image* decode_page(const Jbig2Request& request, const unsigned char* bytes,
                              std::size_t size, Jbig2Allocator* allocator, Jbig2Problem& problem);
