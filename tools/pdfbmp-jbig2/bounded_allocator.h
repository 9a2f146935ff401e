// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
// What jbig2.h needs.
#include <cstdint>
//
#include <jbig2.h>

/// The decoder's memory, up to so many bytes at a time.
struct BoundedAllocator : Jbig2Allocator {
  explicit BoundedAllocator(std::size_t most);

  std::size_t left;
  bool ran_out = false;  ///< More was asked for.
};
