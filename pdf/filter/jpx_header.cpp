// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx_header.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::int64_t no_end = std::numeric_limits<std::int64_t>::max();

constexpr std::uint32_t box(const char (&name)[5]) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(name[i]);
  return value;
}

std::int64_t divide_up(std::int64_t a, std::int64_t b) { return (a + b - 1) / b; }

}  // namespace

int CPDFJpxHeader::step_x() const {
  int step = 255;
  for (const Component& c : components) step = std::min(step, c.dx);
  return step;
}

int CPDFJpxHeader::step_y() const {
  int step = 255;
  for (const Component& c : components) step = std::min(step, c.dy);
  return step;
}

std::int64_t CPDFJpxHeader::width() const {
  return divide_up(x1, step_x()) - divide_up(x0, step_x());
}

std::int64_t CPDFJpxHeader::height() const {
  return divide_up(y1, step_y()) - divide_up(y0, step_y());
}

std::int64_t CPDFJpxHeader::tiles_across() const { return divide_up(x1 - tile_x0, tile_width); }
std::int64_t CPDFJpxHeader::tiles_down() const { return divide_up(y1 - tile_y0, tile_height); }

const char* CPDFJpxHeader::read(CPDFLoadedBytes& bytes) {
  constexpr std::uint32_t start = 0xFF4FFF51;  // The markers that begin a codestream.
  if (bytes.number(4, 4) == box("jP  ")) {
    codestream = -1;
    read_boxes(bytes, 0, no_end, 0);
    if (codestream < 0 || bytes.number(codestream, 4) != start) {
      return "the JPEG 2000 file has no codestream";
    }
  } else {
    // A raw codestream; what stands before it is passed over.
    constexpr std::int64_t most_junk = 4096;
    for (codestream = 0; bytes.number(codestream, 4) != start; ++codestream) {
      if (codestream == most_junk || codestream >= bytes.size()) {
        return "there is no JPEG 2000 image in the data";
      }
    }
  }
  return read_size(bytes);
}

void CPDFJpxHeader::read_boxes(CPDFLoadedBytes& bytes, std::int64_t at, std::int64_t end,
                               int depth) {
  while (at <= end - 8 && bytes.load(at + 8)) {
    std::int64_t length = bytes.number(at, 4);
    const std::uint32_t type = bytes.number(at + 4, 4);
    std::int64_t body = at + 8;
    if (length == 1) {
      // A box of more than 4 GB is the codestream or nothing that we need.
      length = bytes.number(at + 8, 4) != 0 ? no_end - at : bytes.number(at + 12, 4);
      body += 8;
    } else if (length == 0) {
      length = end - at;
    }
    if (type == box("jp2c")) {
      codestream = body;  // To the end of the data: its own markers end it.
      return;
    }
    if (length < body - at) return;
    const std::int64_t next = length > end - at ? end : at + length;
    if (type == box("jp2h") && depth == 0) {
      read_boxes(bytes, body, next, depth + 1);
    } else if (type == box("colr") && space == 0 && bytes.number(body, 1) == 1) {
      space = static_cast<int>(bytes.number(body + 3, 4) & 0xFFFF);
    } else if (type == box("pclr")) {
      read_palette(bytes, body, next);
    } else if (type == box("cmap") && mappings.empty()) {
      for (std::int64_t i = body; i <= next - 4 && bytes.load(i + 4); i += 4) {
        const bool direct = bytes.number(i + 2, 1) == 0;
        mappings.push_back({static_cast<int>(bytes.number(i, 2)),
                            direct ? -1 : static_cast<int>(bytes.number(i + 3, 1))});
      }
    } else if (type == box("cdef") && definitions.empty()) {
      for (std::int64_t i = body + 2; i <= next - 6 && bytes.load(i + 6); i += 6) {
        const auto field = [&](int k) { return static_cast<int>(bytes.number(i + k, 2)); };
        definitions.push_back({field(0), field(2), field(4)});
      }
    }
    at = next;
  }
}

void CPDFJpxHeader::read_palette(CPDFLoadedBytes& bytes, std::int64_t at, std::int64_t end) {
  const int entries = static_cast<int>(bytes.number(at, 2));
  palette_columns = static_cast<int>(bytes.number(at + 2, 1));
  at += 3;
  palette.clear();
  palette_bits.clear();
  for (int c = 0; c < palette_columns; ++c) {
    palette_bits.push_back(static_cast<int>(bytes.number(at++, 1) & 0x7F) + 1);
  }
  for (int i = 0; i < std::min(entries, 1024) * palette_columns; ++i) {
    const int bits = palette_bits[static_cast<std::size_t>(i % palette_columns)];
    const int size = (bits + 7) / 8;
    if (size > 4 || at > end - size) break;
    palette.push_back(bytes.number(at, size));
    at += size;
  }
}

const char* CPDFJpxHeader::read_size(CPDFLoadedBytes& bytes) {
  constexpr const char* broken = "the JPEG 2000 image declares no size that can be";
  const std::int64_t at = codestream + 4;
  const auto field = [&](int k) { return std::int64_t{bytes.number(at + k, 4)}; };
  const int count = static_cast<int>(bytes.number(at + 36, 2));
  if (count < 1 || count > 16384 || !bytes.load(at + 38 + 3 * count)) return broken;
  x1 = field(4), y1 = field(8), x0 = field(12), y0 = field(16);
  tile_width = field(20), tile_height = field(24), tile_x0 = field(28), tile_y0 = field(32);
  constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
  if (x1 > most || y1 > most || x0 >= x1 || y0 >= y1 || tile_width < 1 || tile_height < 1 ||
      tile_x0 > x0 || tile_y0 > y0 || tile_x0 + tile_width <= x0 || tile_y0 + tile_height <= y0) {
    return broken;
  }
  for (int i = 0; i < count; ++i) {
    const std::int64_t place = at + 38 + 3 * i;
    const int depth = static_cast<int>(bytes.number(place, 1));
    const Component component = {(depth & 0x7F) + 1, (depth & 0x80) != 0,
                                 static_cast<int>(bytes.number(place + 1, 1)),
                                 static_cast<int>(bytes.number(place + 2, 1))};
    if (component.dx < 1 || component.dy < 1 || component.bits > 31) return broken;
    components.push_back(component);
  }
  return width() > 0 && height() > 0 ? nullptr : broken;
}
