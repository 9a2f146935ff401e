// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <sys/mman.h>
#include <unistd.h>

/// Bytes between two pages that must not be touched: a read or write before the first or past the
/// last of them is a fault, in code that sanitizers do not see into as well.
class Guarded {
 public:
  /// At least `size` bytes, all zero.
  explicit Guarded(size_t size) {
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    size_ = (size + page - 1) / page * page;
    whole_ = size_ + 2 * page;
    void* all = mmap(nullptr, whole_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (all == MAP_FAILED) return;
    all_ = static_cast<unsigned char*>(all);
    mprotect(all_ + page, size_, PROT_READ | PROT_WRITE);
    begin_ = all_ + page;
  }
  ~Guarded() {
    if (all_) munmap(all_, whole_);
  }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  /// Null where memory failed.
  unsigned char* begin() const { return begin_; }
  /// The last `count` bytes.
  unsigned char* last(size_t count) const { return begin_ + size_ - count; }

 private:
  unsigned char* all_ = nullptr;
  unsigned char* begin_ = nullptr;
  size_t size_ = 0, whole_ = 0;
};
