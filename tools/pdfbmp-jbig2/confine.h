// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Gives up what a decoder does not need, for good: more than `max_seconds` of the processor,
/// memory beyond `max_bytes` (and some for the program itself), open files but the first three, new
/// files, new processes, and every system call but those that read, write, take memory, set a timer
/// and end. False where the system refuses any of it.
bool confine(std::uint64_t max_bytes, std::uint64_t max_seconds);
