// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx_structure.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr std::uint32_t of_component = 0xFF53;
constexpr std::int64_t most_added = std::int64_t{1} << 18;
constexpr int max_levels = 32;

/// The fields of the segment that matter here; sizes are exponents of 2.
struct Style {
  int levels = 0;
  int block_width = 0, block_height = 0;
  int precinct_width[max_levels + 1], precinct_height[max_levels + 1];  ///< From the coarsest.
};

/// `flags` is where the style's flags stand and `fields` where its other fields begin.
Style read_style(CPDFLoadedBytes& bytes, std::int64_t flags, std::int64_t fields) {
  const auto field = [&](int i) { return static_cast<int>(bytes.number(fields + i, 1)); };
  Style style;
  style.levels = std::min(field(0), max_levels);
  style.block_width = (field(1) & 15) + 2;
  style.block_height = (field(2) & 15) + 2;
  const bool are_given = (bytes.number(flags, 1) & 1) != 0;
  for (int i = 0; i <= style.levels; ++i) {
    const int both = are_given ? field(5 + i) : 0xFF;
    style.precinct_width[i] = both & 15;
    style.precinct_height[i] = both >> 4;
  }
  return style;
}

double count(double length, int exponent) { return std::ceil(std::ldexp(length, -exponent)) + 1; }

}  // namespace

void CPDFJpxStructure::add(CPDFLoadedBytes& bytes, std::int64_t at, const CPDFJpxHeader& header) {
  components_.resize(header.components.size());
  std::size_t first = 0, end = components_.size();
  std::int64_t flags = at + 4, fields = at + 9;
  if (bytes.number(at, 2) == of_component) {
    const int size = end < 257 ? 1 : 2;
    first = bytes.number(at + 4, size);
    end = std::min(first + 1, end);
    flags += size;
    fields = flags + 1;
  } else {
    layers_ = std::max<double>(layers_, bytes.number(at + 6, 2));
  }
  const Style style = read_style(bytes, flags, fields);
  for (std::size_t k = first; k < end && added_++ < most_added; ++k) {
    const CPDFJpxHeader::Component& c = header.components[k];
    const auto side = [](std::int64_t image, std::int64_t tile, int step) {
      return static_cast<double>(std::min(image, tile)) / step;
    };
    const double width = side(header.x1 - header.x0, header.tile_width, c.dx);
    const double height = side(header.y1 - header.y0, header.tile_height, c.dy);
    Parts sum;
    for (int i = 0; i <= style.levels; ++i) {
      const double x = std::ldexp(width, i - style.levels);
      const double y = std::ldexp(height, i - style.levels);
      sum.precincts += count(x, style.precinct_width[i]) * count(y, style.precinct_height[i]);
      // Three bands of half the size but in the coarsest; a block lies within one precinct.
      const int half = i > 0 ? 1 : 0, bands = i > 0 ? 3 : 1;
      sum.code_blocks +=
          bands *
          count(x / (1 + half), std::min(style.block_width, style.precinct_width[i] - half)) *
          count(y / (1 + half), std::min(style.block_height, style.precinct_height[i] - half));
    }
    components_[k].precincts = std::max(components_[k].precincts, sum.precincts);
    components_[k].code_blocks = std::max(components_[k].code_blocks, sum.code_blocks);
  }
}

double CPDFJpxStructure::precincts() const {
  if (added_ > most_added) return std::numeric_limits<double>::infinity();
  return std::accumulate(components_.begin(), components_.end(), 0.0,
                         [](double sum, const Parts& c) { return sum + c.precincts; });
}

double CPDFJpxStructure::code_blocks() const {
  return std::accumulate(components_.begin(), components_.end(), 0.0,
                         [](double sum, const Parts& c) { return sum + c.code_blocks; });
}
