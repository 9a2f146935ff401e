// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/loaded_bytes.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "kx/alloc.h"

CPDFLoadedBytes::CPDFLoadedBytes(std::unique_ptr<CPDFStream> stream, std::int64_t limit)
    : input_(std::move(stream)), limit_(limit) {}

CPDFLoadedBytes::~CPDFLoadedBytes() { KXFree(data_); }

bool CPDFLoadedBytes::load(std::int64_t n) {
  if (n > limit_) n = limit_;
  while (size_ < n) {
    if (!input_.fill()) {
      at_end_ = true;
      return false;
    }
    const std::int64_t more = std::min<std::int64_t>(input_.end - input_.begin, limit_ - size_);
    if (size_ + more > room_ && !grow(size_ + more)) return false;
    std::memcpy(data_ + size_, input_.begin, static_cast<std::size_t>(more));
    size_ += more;
  }
  return true;
}

bool CPDFLoadedBytes::grow(std::int64_t n) {
  const std::int64_t room = std::max(n, room_ + room_ / 2);
  auto* const data = static_cast<unsigned char*>(KXRealloc(data_, static_cast<std::size_t>(room)));
  if (data == nullptr) return false;
  data_ = data;
  room_ = room;
  return true;
}

std::uint32_t CPDFLoadedBytes::number(std::int64_t at, int count) {
  if (at < 0 || at > limit_ - count || !load(at + count)) return 0;
  std::uint32_t value = 0;
  for (int i = 0; i < count; ++i) value = value << 8 | data_[at + i];
  return value;
}

void CPDFLoadedBytes::put_number(std::int64_t at, std::uint32_t value) {
  if (at < 0 || at > size_ - 4) return;
  for (int i = 0; i < 4; ++i) data_[at + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}
