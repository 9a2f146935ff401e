// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "kx/alloc.h"

#include <cstdlib>

// A size of 0 is asked for as 1 byte, so that null always means failure.

void* KXAlloc(std::size_t size) { return std::malloc(size != 0 ? size : 1); }

void* KXCalloc(std::size_t count, std::size_t size) {
  return count != 0 && size != 0 ? std::calloc(count, size) : std::calloc(1, 1);
}

void* KXRealloc(void* ptr, std::size_t size) { return std::realloc(ptr, size != 0 ? size : 1); }

void KXFree(void* ptr) { std::free(ptr); }
