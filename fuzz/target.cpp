// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// The runs of a target, over the four functions of kx/alloc.h and the non-throwing operator new:
// these count what lives, fill what they hand out, and fail when told. For one thread.
#include "fuzz/target.h"

#include <cstring>
#include <malloc.h>
#include <new>

#include "kx/alloc.h"

namespace {

unsigned char fill_byte = 0;
unsigned calls_to_failure = 0;
bool fails_on = false, failed = false;
int live = 0;

bool fails_now() {
  if (failed && fails_on) return true;
  if (calls_to_failure == 0 || --calls_to_failure != 0) return false;
  return failed = true;
}

/// The low 15 bits of `failure` are the number of the call that gives null (1 is the first, 0
/// none), alone or, with bit 15, with all after it.
std::string run(const FuzzInput& in, bool second, unsigned char fill, std::uint64_t failure) {
  const int before = live;
  fill_byte = fill;
  calls_to_failure = static_cast<unsigned>(failure & 0x7FFF);
  fails_on = (failure & 0x8000) != 0;
  failed = false;
  std::string result = run_target(in, second);
  calls_to_failure = 0;
  failed = false;
  require(live == before);
  return result;
}

}  // namespace

bool memory_failed() { return failed; }

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
  if (size > old_size) std::memset(static_cast<unsigned char*>(block) + old_size, fill_byte, size - old_size);
  return block;
}

void KXFree(void* ptr) {
  if (ptr != nullptr) --live;
  std::free(ptr);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return fails_now() ? nullptr : ::operator new(size); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput in(data, size);
  const std::uint64_t failure = in.number(2);
  const std::string first = run(in, false, 0x00, 0);
  require(first == run(in, true, 0xA5, 0));
  if (failure != 0) run(in, false, 0x5A, failure);
  return 0;
}
