// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/table.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "tools/pdfbmp/image_facts.h"

namespace {

struct Column {
  const char* title;
  bool right;                    // Numbers stand to the right.
  const char* narrow = nullptr;  // The title where room is short.
};

constexpr Column columns[] = {
    {"page", true},           {"num", true},           {"type", false},
    {"width", true},          {"height", true},        {"color", false},
    {"comp", true},           {"bpc", true},           {"enc", false},
    {"interp", false, "int"}, {"object", true, "obj"}, {"x-ppi", true},
    {"y-ppi", true},          {"size", true},
};
constexpr std::size_t column_count = std::size(columns);
using Row = std::array<std::string, column_count>;

struct ShortName {
  std::string_view name, shown;
};

constexpr ShortName color_names[] = {
    {"DeviceGray", "gray"}, {"DeviceRGB", "rgb"}, {"DeviceCMYK", "cmyk"}, {"CalGray", "calgray"},
    {"CalRGB", "calrgb"},   {"Lab", "lab"},       {"ICCBased", "icc"},    {"Indexed", "index"},
    {"Separation", "sep"},  {"DeviceN", "devn"},  {"Pattern", "pattern"},
};

constexpr ShortName filter_names[] = {
    {"FlateDecode", "flate"},   {"LZWDecode", "lzw"},      {"DCTDecode", "jpeg"},
    {"JPXDecode", "jpx"},       {"JBIG2Decode", "jbig2"},  {"CCITTFaxDecode", "ccitt"},
    {"RunLengthDecode", "rle"}, {"ASCIIHexDecode", "hex"}, {"ASCII85Decode", "a85"},
    {"Crypt", "crypt"},
};

// A name that no table has is shown as the file has it, but for what would upset a terminal.
template <std::size_t N>
std::string shown_name(const ShortName (&names)[N], const std::string& name) {
  for (const ShortName& known : names) {
    if (known.name == name) return std::string(known.shown);
  }
  std::string text = name.substr(0, 16);
  for (char& c : text) {
    if (c <= ' ' || c > '~') c = '?';
  }
  return text.empty() ? "-" : text;
}

std::string shown_filters(const std::vector<std::string>& filters) {
  std::string text;
  for (const std::string& filter : filters) {
    text += (text.empty() ? "" : "+") + shown_name(filter_names, filter);
  }
  return text.empty() ? "raw" : text;
}

std::string shown_size(std::int64_t bytes) {
  constexpr char units[] = {'B', 'K', 'M', 'G', 'T'};
  double value = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (; value >= 999.5 && unit + 1 < std::size(units); ++unit) value /= 1024;
  char text[32];
  std::snprintf(text, sizeof(text), unit > 0 && value < 9.95 ? "%.1f%c" : "%.0f%c", value,
                units[unit]);
  return text;
}

std::string shown_ppi(const CPDFFoundImage& found, std::size_t axis) {
  if (found.placements.empty() || !(found.placements[0].ppi[axis] > 0)) return "-";
  char text[32];
  std::snprintf(text, sizeof(text), "%.0f", std::min(found.placements[0].ppi[axis], 1e9));
  return text;
}

Row row_of(const CPDFFoundImage& found, int number) {
  const bool is_inline = found.kind == CPDFImageKind::inline_image;
  return {std::to_string(found.page),
          std::to_string(number),
          kind_name(found.kind),
          std::to_string(found.width),
          std::to_string(found.height),
          found.image_mask ? "-" : shown_name(color_names, found.colorspace),
          std::to_string(found.components),
          std::to_string(found.bpc),
          shown_filters(found.filters),
          found.interpolate ? "yes" : "no",
          is_inline ? "-" : std::to_string(found.object),
          shown_ppi(found, 0),
          shown_ppi(found, 1),
          shown_size(found.bytes)};
}

// The first row is the titles.
std::string aligned(const std::vector<Row>& rows, const char* gap) {
  std::array<std::size_t, column_count> widths = {};
  for (const Row& row : rows) {
    for (std::size_t k = 0; k < column_count; ++k) widths[k] = std::max(widths[k], row[k].size());
  }
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::string line;
    for (std::size_t k = 0; k < column_count; ++k) {
      const std::string padding(widths[k] - rows[i][k].size(), ' ');
      line += columns[k].right ? padding + rows[i][k] : rows[i][k] + padding;
      if (k + 1 < column_count) line += gap;
    }
    text += line + "\n";
    if (i == 0) text += std::string(line.size(), '-') + "\n";
  }
  return text;
}

}  // namespace

std::string image_table(const ChosenImages& chosen, std::size_t width) {
  std::vector<Row> rows(1);
  for (std::size_t k = 0; k < column_count; ++k) rows[0][k] = columns[k].title;
  for (std::size_t i = 0; i < chosen.images.size(); ++i) {
    rows.push_back(row_of(chosen.images[i], chosen.numbers[i]));
  }
  std::string wide = aligned(rows, "  ");
  if (width == 0 || wide.find('\n') <= width) return wide;
  for (std::size_t k = 0; k < column_count; ++k) {
    if (columns[k].narrow != nullptr) rows[0][k] = columns[k].narrow;
  }
  return aligned(rows, " ");
}
