// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/support/fault_alloc.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "kx/alloc.h"

namespace {

int calls_to_failure = 0;
bool fails_all_after = false;

bool fails_now() {
  if (fault_alloc::failed && fails_all_after) return true;
  if (calls_to_failure == 0 || --calls_to_failure != 0) return false;
  return fault_alloc::failed = true;
}

}  // namespace

void fault_alloc::fail_at(int n, bool all_after) {
  calls_to_failure = n;
  fails_all_after = all_after;
  failed = false;
}

void* KXAlloc(std::size_t size) {
  void* block = KXRealloc(nullptr, size);
  return block != nullptr ? std::memset(block, 0xA5, size) : nullptr;
}

void* KXCalloc(std::size_t count, std::size_t size) {
  void* block = fails_now() ? nullptr : std::calloc(count, size);
  if (block != nullptr) ++fault_alloc::live;
  return block;
}

void* KXRealloc(void* ptr, std::size_t size) {
  fault_alloc::sizes.push_back(size);
  void* block = fails_now() ? nullptr : std::realloc(ptr, size != 0 ? size : 1);
  if (ptr == nullptr && block != nullptr) ++fault_alloc::live;
  return block;
}

void KXFree(void* ptr) {
  if (ptr != nullptr) --fault_alloc::live;
  std::free(ptr);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return fails_now() ? nullptr : ::operator new(size); }
