// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "gtest/gtest.h"

#include <cstddef>
#include <vector>

/// The four functions of kx/alloc.h and the non-throwing operator new, for one thread: they fill
/// new bytes with a pattern, count the blocks that live, and fail when told. Linked into a program
/// they replace the library's own.
namespace fault_alloc {

enum class Failure { once, from_then_on };

/// Allocation number `n` from here (1 is the next) gives null, alone or with all after it; 0: none.
void fail_at(int n, Failure failure);
/// Whether the failure has been met since fail_at().
bool has_failed();

/// Byte blocks that were handed out and not freed.
int live_blocks();
/// The sizes asked of KXAlloc and KXRealloc since the last call.
std::vector<std::size_t> take_sizes();

/// Repeats `action` with its first, second, ... allocation failing, until it runs free of failure.
/// After each run no block of it may live.
template <class Action>
void sweep(Action action) {
  for (const Failure failure : {Failure::once, Failure::from_then_on}) {
    for (int n = 1;; ++n) {
      SCOPED_TRACE(testing::Message() << "allocation " << n);
      const int before = live_blocks();
      fail_at(n, failure);
      action();
      const bool failed = has_failed();
      fail_at(0, failure);
      ASSERT_EQ(live_blocks(), before);
      if (!failed) break;
    }
  }
}

}  // namespace fault_alloc
