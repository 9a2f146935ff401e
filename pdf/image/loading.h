// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/image/image.h"

class CPDFStreamJPX;

// What load() and load_inline() share. Internal to pdf/image.

namespace image_loading {

/// Values that each array of the record holds: pairs of Mask and Decode, values of Matte.
inline constexpr int capacity = 16;

/// Walks an array in pairs: `store(i, first, second)` for pair i, at most `capacity` of them; the
/// missing partner of an odd last item is null.
template <class Store>
void for_pairs(const CPDFArray& array, Store store) {
  for (int i = 0; i < array.count && i / 2 < capacity; i += 2) {
    store(i / 2, &array.items[i], i + 1 < array.count ? &array.items[i + 1] : nullptr);
  }
}

/// Stores a colour space that the image owns; one owned until now is deleted.
void own_color_space(CPDFImage& image, CPDFCSBase* cs);

/// Stores a stream; one held until now is deleted.
void set_stream(CPDFImage& image, CPDFStream* stream);

/// Records the alpha channel of a JPEG 2000 stream and makes sure that the image has a colour space
/// with the codestream's component count: the dictionary's where it fits, else a device space.
void apply_jpx_rule(CPDFImage& image, const CPDFStreamJPX& stream);

}  // namespace image_loading
