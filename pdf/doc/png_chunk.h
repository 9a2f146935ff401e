// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace pdfbmp {

/// Stores `value` in the four bytes at `dst`, most significant first, as PNG wants every integer.
inline void store_big_endian(unsigned char* dst, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) dst[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

// A chunk lies in memory as it goes to the file:
//
//     byte     0         4         8 ...          8 + length
//              length    type      data           CRC of type and data
inline constexpr std::size_t png_chunk_head = 8;
inline constexpr std::size_t png_chunk_overhead = 12;

/// Completes the chunk at `chunk`, whose `length` bytes of data are in place: writes the head and
/// the CRC. `type` has four letters. Returns the bytes of the whole chunk.
std::size_t seal_png_chunk(unsigned char* chunk, const char* type, std::size_t length);

}  // namespace pdfbmp
