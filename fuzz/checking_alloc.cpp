// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "fuzz/checking_alloc.h"

#include <cstdlib>
#include <cstring>
#include <malloc.h>

#include "kx/alloc.h"

namespace {

unsigned char fill_byte = 0;
int calls_to_failure = 0;
int live = 0;

bool fails_now() { return calls_to_failure > 0 && --calls_to_failure == 0; }

}  // namespace

void checking_alloc::begin(unsigned char fill, int fail_at) {
  fill_byte = fill;
  calls_to_failure = fail_at;
}

int checking_alloc::live_blocks() { return live; }

void* KXAlloc(std::size_t size) { return KXRealloc(nullptr, size); }

void* KXCalloc(std::size_t count, std::size_t size) {
  if (size != 0 && count > static_cast<std::size_t>(-1) / size) return nullptr;
  void* block = KXAlloc(count * size);
  if (block != nullptr) std::memset(block, 0, count * size);
  return block;
}

void* KXRealloc(void* ptr, std::size_t size) {
  if (fails_now()) return nullptr;
  const std::size_t old_size = ptr != nullptr ? malloc_usable_size(ptr) : 0;
  void* block = std::realloc(ptr, size != 0 ? size : 1);
  if (block == nullptr) return nullptr;
  if (ptr == nullptr) ++live;
  if (size > old_size) { std::memset(static_cast<unsigned char*>(block) + old_size, fill_byte, size - old_size); }
  return block;
}

void KXFree(void* ptr) {
  if (ptr != nullptr) --live;
  std::free(ptr);
}
