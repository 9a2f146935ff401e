// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The decoding of the JBIG2 helper program, in memory that ends as the helper's would.
//
// Input: how many of the bytes behind are globals (two bytes), the bytes.
#include <cstring>
#include <set>

#include "fuzz/target.h"
#include "kx/alloc.h"
#include "tools/pdfbmp-jbig2/page.h"

namespace {

constexpr std::size_t max_block = 1 << 24;

/// What the decoder holds and never gives back.
struct Arena : Jbig2Allocator {
  Arena() {
    alloc = [](Jbig2Allocator* self, std::size_t size) { return take(self, nullptr, size); };
    realloc = take;
    free = [](Jbig2Allocator* self, void* block) {
      static_cast<Arena*>(self)->blocks.erase(block);
      KXFree(block);
    };
  }
  ~Arena() {
    for (void* block : blocks) KXFree(block);
  }
  static void* take(Jbig2Allocator* self, void* old, std::size_t size) {
    void* block = size <= max_block ? KXRealloc(old, size) : nullptr;
    if (block == nullptr) return nullptr;
    static_cast<Arena*>(self)->blocks.erase(old);
    static_cast<Arena*>(self)->blocks.insert(block);
    return block;
  }
  std::set<void*> blocks;
};

}  // namespace

std::string run_target(FuzzInput in, bool) {
  const Jbig2Request request = {1 << 18, 1 << 24, in.number(2)};
  const std::string_view segments = in.text();
  Arena arena;
  Jbig2Problem problem;
  const auto* bytes = reinterpret_cast<const unsigned char*>(segments.data());
  const Jbig2Image* page = decode_page(request, bytes, segments.size(), &arena, problem);
  require(std::memchr(problem.text, '\0', sizeof problem.text) != nullptr);
  std::string result = problem.text;
  if (page == nullptr || page->data == nullptr) return result;
  require(page->stride >= (page->width + 7) / 8);
  return result.append(reinterpret_cast<const char*>(page->data), std::size_t{page->stride} * page->height);
}
