// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#include "kx/api.h"

// The byte allocator behind every bitmap, row buffer, string and container of the library.
//
// The four functions stand alone in one translation unit: a program that defines all four itself
// replaces them: the linker then never takes that unit from the archive, and the shared library
// calls the program's functions instead of its own. Every function may be called from any thread.
// None of them throws; a result of null means that there was no memory.

/// `size` bytes of unspecified content, or null. A size of 0 gives a pointer that KXFree takes.
PDFBMP_API void* KXAlloc(std::size_t size);

/// `count * size` zero bytes, or null, also where the product does not fit `size_t`.
PDFBMP_API void* KXCalloc(std::size_t count, std::size_t size);

/// `ptr` grown or shrunk to `size` bytes, its content kept up to the smaller size. Null leaves
/// `ptr` as it was. A null `ptr` makes this KXAlloc.
PDFBMP_API void* KXRealloc(void* ptr, std::size_t size);

/// Gives back what one of the functions above returned. Null is allowed.
PDFBMP_API void KXFree(void* ptr);
