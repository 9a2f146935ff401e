// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/png_chunk.h"

#include <cstring>
#include <isa-l.h>

namespace pdfbmp {

std::size_t seal_png_chunk(unsigned char* chunk, const char* type, std::size_t length) {
  store_big_endian(chunk, static_cast<std::uint32_t>(length));
  std::memcpy(chunk + 4, type, 4);
  store_big_endian(chunk + png_chunk_head + length,
                   crc32_gzip_refl(0, chunk + 4, static_cast<std::uint64_t>(length) + 4));
  return length + png_chunk_overhead;
}

}  // namespace pdfbmp
