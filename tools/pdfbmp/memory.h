// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "tools/pdfbmp/options.h"

/// Bounds what the process may take to `options.max_memory`, beside what each of `threads` threads
/// reserves for its stack and its allocations. Beyond it allocations fail. What a system or a
/// sanitizer does not let be bounded stays as it is.
void bound_memory(const Options& options, std::size_t threads);

/// Why something failed, where memory did.
std::string memory_problem(const Options& options);

/// Whether an allocation failed since this was last asked. A parser that catches the failure itself
/// tells something else, which is only what followed from it.
bool memory_ran_out();
