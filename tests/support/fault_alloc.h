// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "gtest/gtest.h"

#include <cstddef>
#include <vector>

/// The four functions of kx/alloc.h and the non-throwing operator new, for one thread: they fill
/// new bytes with a pattern, count the blocks that live, and fail when told. Linked into a program
/// they replace the library's own.
namespace fault_alloc {

inline bool failed = false;             ///< Whether the failure has been met since fail_at().
inline int live = 0;                    ///< Byte blocks that were handed out and not freed.
inline std::vector<std::size_t> sizes;  ///< What was asked of KXAlloc and KXRealloc.

/// Allocation number `n` from here (1 is the next) gives null, alone or with all after it; 0: none.
void fail_at(int n, bool all_after = false);

/// Repeats `action` with its first, second, ... allocation failing, until it runs free of failure.
/// After each run no block of it may live.
template <class Action>
void sweep(Action action) {
  for (const bool all_after : {false, true}) {
    for (int n = 1;; ++n) {
      SCOPED_TRACE(testing::Message() << "allocation " << n);
      const int before = live;
      fail_at(n, all_after);
      action();
      const bool done = !failed;
      fail_at(0);
      ASSERT_EQ(live, before);
      if (done) break;
    }
  }
}

}  // namespace fault_alloc
