// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Gives up what a decoder does not need, for good: time beyond a minute of the processor's, memory
/// beyond `max_bytes` (and some for the program itself), open files but the first three, new files,
/// new processes, and every system call but those that read, write, take memory and end. False
/// where the system refuses any of it.
bool confine(std::uint64_t max_bytes);
