// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

/// The width of the terminal that a descriptor is; 0 where it is none, or does not tell.
int terminal_columns(int descriptor);

/// Whether a descriptor is a terminal that can go back in its line.
bool is_terminal(int descriptor);

/// Whether it is one that shows colours, and they are wanted (the variable NO_COLOR).
bool shows_colors(int descriptor);
