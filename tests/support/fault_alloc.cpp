// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/support/fault_alloc.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "kx/alloc.h"

namespace {

using fault_alloc::Failure;

int calls_to_failure = 0;
Failure how = Failure::once;
bool failed = false;
int live = 0;
std::vector<std::size_t> sizes;

bool fails_now() {
  if (failed && how == Failure::from_then_on) return true;
  if (calls_to_failure == 0 || --calls_to_failure != 0) return false;
  failed = true;
  return true;
}

}  // namespace

void fault_alloc::fail_at(int n, Failure failure) {
  calls_to_failure = n;
  how = failure;
  failed = false;
}

bool fault_alloc::has_failed() { return failed; }
int fault_alloc::live_blocks() { return live; }
std::vector<std::size_t> fault_alloc::take_sizes() { return std::exchange(sizes, {}); }

void* KXAlloc(std::size_t size) {
  sizes.push_back(size);
  void* block = fails_now() ? nullptr : std::malloc(size != 0 ? size : 1);
  if (block == nullptr) return nullptr;
  ++live;
  return std::memset(block, 0xA5, size);
}

void* KXCalloc(std::size_t count, std::size_t size) {
  void* block = fails_now() ? nullptr : std::calloc(count, size);
  if (block != nullptr) ++live;
  return block;
}

void* KXRealloc(void* ptr, std::size_t size) {
  if (ptr == nullptr) return KXAlloc(size);
  sizes.push_back(size);
  return fails_now() ? nullptr : std::realloc(ptr, size != 0 ? size : 1);
}

void KXFree(void* ptr) {
  if (ptr != nullptr) --live;
  std::free(ptr);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return fails_now() ? nullptr : ::operator new(size); }
