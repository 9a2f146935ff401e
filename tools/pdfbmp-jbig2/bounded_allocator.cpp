// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp-jbig2/bounded_allocator.h"

#include <cstdlib>
#include <malloc.h>

namespace {

void* resize(Jbig2Allocator* allocator, void* old, std::size_t size) {
  auto& self = *static_cast<BoundedAllocator*>(allocator);
  const std::size_t had = malloc_usable_size(old);
  void* const block = size <= self.left + had ? std::realloc(old, size) : nullptr;
  if (block == nullptr) {
    self.ran_out = true;
    return nullptr;
  }
  // What the block has beyond its size may be more than there was left.
  const std::size_t has = malloc_usable_size(block);
  self.left = self.left + had > has ? self.left + had - has : 0;
  return block;
}

}  // namespace

BoundedAllocator::BoundedAllocator(std::size_t most) : Jbig2Allocator(), left(most) {
  alloc = [](Jbig2Allocator* self, std::size_t size) { return resize(self, nullptr, size); };
  realloc = resize;
  free = [](Jbig2Allocator* self, void* block) {
    static_cast<BoundedAllocator*>(self)->left += malloc_usable_size(block);
    std::free(block);
  };
}
