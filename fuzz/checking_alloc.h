// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

/// The four functions of kx/alloc.h for a fuzz target: they count what lives, fill what they hand
/// out, and fail when told. For one thread.
namespace checking_alloc {

/// From here on new memory is filled with `fill`, and the call number `fail_at` (1 is the next)
/// gives null; 0 never.
void begin(unsigned char fill, int fail_at);

/// Blocks that were handed out and not freed.
int live_blocks();

}  // namespace checking_alloc
