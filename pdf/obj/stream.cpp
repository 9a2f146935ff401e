// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/obj/stream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "kx/alloc.h"

namespace {

// How buffer_load grows: a first read of the size hint, then chunks that double.
constexpr int first_chunk = 1024;
constexpr int largest_chunk = 65536;
constexpr std::int64_t largest_int = std::numeric_limits<int>::max();
constexpr int spare_bytes = 4;  ///< Beyond the capacity in use; the first of them holds the 0.

/// What a read brought, whatever the stream claims: never more than was asked for, never negative.
int read_clamped(CPDFStream& stream, void* dst, int n) {
  return std::clamp(stream.read_block(dst, n), 0, n);
}

unsigned char* grow(unsigned char* buf, std::int64_t size) {
  auto* grown = static_cast<unsigned char*>(KXRealloc(buf, static_cast<std::size_t>(size)));
  if (grown == nullptr) KXFree(buf);
  return grown;
}

}  // namespace

CPDFStream::CPDFStream(unsigned char* bytes, int byte_count, int borrowed)
    : data(bytes),
      cursor(bytes),
      remaining(byte_count),
      length(byte_count),
      data_borrowed(borrowed) {}

CPDFStream::~CPDFStream() { CPDFStream::close(); }

void CPDFStream::open() {}

void CPDFStream::close() {
  if (data == nullptr) return;
  if (data_borrowed == 0) KXFree(data);
  data_borrowed = 0;
  data = nullptr;
  cursor = nullptr;
  remaining = 0;
}

int CPDFStream::read_block(void* dst, int n) {
  if (remaining < 1) return 0;
  const int k = std::min(remaining, n);
  if (k >= 1) std::memcpy(dst, cursor, static_cast<std::size_t>(k));
  remaining -= k;
  cursor += k;
  return k;
}

unsigned char* CPDFStream::buffer_load(int limit, int& len) {
  const std::int64_t rounded = std::int64_t{len != 0 ? len : length} + first_chunk - 1;
  const std::int64_t cap = rounded & ~std::int64_t{first_chunk - 1};
  len = 0;
  if (cap < 0 || rounded > largest_int) return nullptr;

  auto* buf = static_cast<unsigned char*>(KXAlloc(static_cast<std::size_t>(cap + spare_bytes)));
  if (buf == nullptr) return nullptr;
  int chunk = static_cast<int>(cap);
  int n = read_clamped(*this, buf, chunk);
  std::int64_t capacity = cap;
  std::int64_t used = 0;

  // While each read fills its chunk there may be more. The limit is not asked before the first
  // chunk after the hint: that much is read in any case.
  for (bool first = true; n == chunk; first = false) {
    used += chunk;
    chunk = first ? first_chunk : std::min(chunk * 2, largest_chunk);
    capacity += chunk;
    if (capacity > (first ? largest_int - spare_bytes
                          : std::min<std::int64_t>(limit, largest_int - spare_bytes))) {
      n = 0;
      break;
    }
    buf = grow(buf, capacity + spare_bytes);
    if (buf == nullptr) return nullptr;
    n = read_clamped(*this, buf + used, chunk);
  }
  used += n;
  len = static_cast<int>(used);
  buf[used] = 0;
  return buf;
}
