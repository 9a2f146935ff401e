// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

/// One 32-bit pixel, in memory order:
///
///     byte   0   1   2   3
///            b   g   r   a        as a little-endian 32-bit word 0xAARRGGBB
///
/// Colours are not premultiplied; a = 0 is fully transparent, a = 255 opaque.
struct _KXRGBA {
  unsigned char b, g, r, a;
};

static_assert(sizeof(_KXRGBA) == 4);
