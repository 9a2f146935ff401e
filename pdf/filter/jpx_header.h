// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "pdf/filter/loaded_bytes.h"

/// What stands before the coded data of a JPEG 2000 image: the boxes of the file (ISO/IEC 15444-1,
/// annex I), where it has some, and the size marker of the codestream.
struct CPDFJpxHeader {
  struct Component {
    int bits = 8;
    bool is_signed = false;
    int dx = 1, dy = 1;  ///< Points of the reference grid from one sample to the next.
  };

  /// A channel as the component-mapping box makes it.
  struct Mapping {
    int component = 0;
    int column = -1;  ///< Of the palette; negative: the component's samples as they are.
  };

  /// An entry of the channel-definition box.
  struct Definition {
    int channel = 0;
    int type = 0;         ///< 0 colour, 1 opacity, 2 premultiplied opacity, others unknown.
    int association = 0;  ///< The colour, from 1; 0 the whole image.
  };

  enum EnumeratedSpace { cmyk = 12, srgb = 16, gray = 17, sycc = 18, esycc = 24 };

  std::int64_t codestream = 0;                  ///< Where it begins in the data.
  std::int64_t x0 = 0, y0 = 0, x1 = 0, y1 = 0;  ///< The image on the reference grid.
  std::int64_t tile_x0 = 0, tile_y0 = 0, tile_width = 0, tile_height = 0;
  std::vector<Component> components;  ///< At least one.

  int space = 0;  ///< The first enumerated colour space, or 0.
  int palette_columns = 0;
  std::vector<int> palette_bits;       ///< Of each column.
  std::vector<std::uint32_t> palette;  ///< Entry by entry.
  std::vector<Mapping> mappings;       ///< Empty: each component is a channel.
  std::vector<Definition> definitions;

  // The pixel grid: as fine as the finest component.
  int step_x() const;
  int step_y() const;
  std::int64_t width() const;
  std::int64_t height() const;

  std::int64_t tiles_across() const;
  std::int64_t tiles_down() const;

  /// Reads no more than the header. Null, or what is wrong with it, in words.
  const char* read(CPDFLoadedBytes& bytes);

 private:
  void read_boxes(CPDFLoadedBytes& bytes, std::int64_t at, std::int64_t end, int depth);
  void read_palette(CPDFLoadedBytes& bytes, std::int64_t at, std::int64_t end);
  const char* read_size(CPDFLoadedBytes& bytes);
};
