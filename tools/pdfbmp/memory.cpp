// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/memory.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>
#include <new>
#include <sys/resource.h>

namespace {

// Sanitizers reserve address space by the terabyte.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool can_be_bounded = false;
#elif defined(__has_feature)
#  if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
      __has_feature(memory_sanitizer)
constexpr bool can_be_bounded = false;
#  else
constexpr bool can_be_bounded = true;
#  endif
#else
constexpr bool can_be_bounded = true;
#endif

// glibc reserves 64 MiB (for a moment twice that) of addresses for the allocations of a thread, and
// 8 MiB are the usual stack. Nearly all of it is never touched.
constexpr std::int64_t reserved_by_thread = std::int64_t{136} << 20;

std::atomic<bool> ran_out = false;

}  // namespace

void bound_memory(const Options& options, std::size_t threads) {
  std::set_new_handler([] {
    ran_out = true;
    throw std::bad_alloc();
  });
  if (!can_be_bounded) return;
  const auto reserved =
      static_cast<std::int64_t>(std::min<std::size_t>(threads, 1024)) * reserved_by_thread;
  if (options.max_memory > std::numeric_limits<std::int64_t>::max() - reserved) return;
  rlimit bounds;
  if (getrlimit(RLIMIT_AS, &bounds) != 0) return;
  // A bound that is there already stays the bound.
  const auto wanted = static_cast<rlim_t>(options.max_memory + reserved);
  bounds.rlim_cur = std::min(bounds.rlim_cur, wanted);
  setrlimit(RLIMIT_AS, &bounds);
}

std::string memory_problem(const Options& options) {
  return "it needs more memory than there is or --max-memory allows (" +
         std::to_string(options.max_memory) + " bytes)";
}

bool memory_ran_out() { return ran_out.exchange(false); }
