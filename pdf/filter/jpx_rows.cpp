// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/jpx_rows.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int table_bits = 16;

/// A sample of `bits` bits as 8, rounded.
unsigned char to_byte(std::uint64_t sample, int bits) {
  const std::uint64_t top = (std::uint64_t{1} << bits) - 1;
  return static_cast<unsigned char>((std::min(sample, top) * 255 + top / 2) / top);
}

/// Colours of an enumerated space; 0 where it is unknown.
int colors_of(int space) {
  switch (space) {
    case CPDFJpxHeader::gray:
      return 1;
    case CPDFJpxHeader::srgb:
    case CPDFJpxHeader::sycc:
    case CPDFJpxHeader::esycc:
      return 3;
    case CPDFJpxHeader::cmyk:
      return 4;
    default:
      return 0;
  }
}

/// The inverse of the transform of BT.601, that of sYCC, rounded.
void ycc_to_rgb(unsigned char* pixel, std::int64_t count) {
  const auto byte = [](float v) {
    return static_cast<unsigned char>(std::clamp(v + 0.5F, 0.0F, 255.0F));
  };
  for (; count > 0; --count, pixel += 3) {
    const auto y = static_cast<float>(pixel[0]);
    const auto cb = static_cast<float>(pixel[1] - 128);
    const auto cr = static_cast<float>(pixel[2] - 128);
    pixel[0] = byte(y + 1.402F * cr);
    pixel[1] = byte(y - 0.344136F * cb - 0.714136F * cr);
    pixel[2] = byte(y + 1.772F * cb);
  }
}

}  // namespace

CPDFJpxRows::CPDFJpxRows(const CPDFJpxHeader& header, bool indexed, bool alpha_expected)
    : step_x_(header.step_x()),
      step_y_(header.step_y()),
      width_(header.width()),
      first_column_((header.x0 + step_x_ - 1) / step_x_),
      first_row_((header.y0 + step_y_ - 1) / step_y_) {
  if (indexed) {
    color_channels_ = {0};
  } else {
    const std::size_t count =
        header.mappings.empty() ? header.components.size() : header.mappings.size();
    choose_colors(header, static_cast<int>(count), alpha_expected);
  }
  for (const int number : color_channels_) colors_.push_back(make_channel(header, number, indexed));
  if (alpha_channel_ >= 0) alpha_ = make_channel(header, alpha_channel_, false);

  if (indexed || colors_.size() != 3 || color_channels_[0] == color_channels_[1]) return;
  // Without a word about the space, components that are coarser than the first are chroma.
  const bool coarser = colors_[1].dx > colors_[0].dx && colors_[2].dx > colors_[0].dx;
  ycc_ = header.space == CPDFJpxHeader::sycc || header.space == CPDFJpxHeader::esycc ||
         (header.space == 0 && coarser);
}

void CPDFJpxRows::choose_colors(const CPDFJpxHeader& header, int channel_count,
                                bool alpha_expected) {
  // The colours in the order that the definitions give them; channels without one, in their own.
  struct Color {
    int place, channel;
  };
  std::vector<Color> colors;
  for (int i = 0; i < channel_count; ++i) {
    int type = 0, association = i + 1;
    for (const CPDFJpxHeader::Definition& d : header.definitions) {
      if (d.channel == i) type = d.type, association = d.association;
    }
    if (type == 0) {
      colors.push_back({association > 0 ? association : i + 1, i});
    } else if ((type == 1 || type == 2) && alpha_channel_ < 0) {
      alpha_channel_ = i;
    }
  }
  if (colors.empty()) {
    colors.push_back({1, 0});
    alpha_channel_ = -1;
  }
  if (alpha_expected && header.definitions.empty() && (colors.size() == 2 || colors.size() == 4)) {
    alpha_channel_ = colors.back().channel;
    colors.pop_back();
  }
  std::stable_sort(colors.begin(), colors.end(),
                   [](const Color& a, const Color& b) { return a.place < b.place; });
  const int known = colors_of(header.space);
  if (known > 0 && static_cast<std::size_t>(known) < colors.size()) {
    colors.resize(static_cast<std::size_t>(known));
  }
  for (const Color& color : colors) all_channels_.push_back(color.channel);
  const std::size_t delivered = colors.size() == 1 || colors.size() == 4 ? colors.size() : 3;
  for (std::size_t i = 0; i < delivered; ++i) {
    color_channels_.push_back(colors[colors.size() == 2 ? 0 : i].channel);
  }
}

bool CPDFJpxRows::choose_all(const CPDFJpxHeader& header, int count) {
  if (all_channels_.empty() || all_channels_.size() != static_cast<std::size_t>(count)) {
    return false;
  }
  color_channels_ = all_channels_;
  colors_.clear();
  for (const int number : color_channels_) colors_.push_back(make_channel(header, number, false));
  ycc_ = false;
  return true;
}

CPDFJpxRows::Channel CPDFJpxRows::make_channel(const CPDFJpxHeader& header, int number,
                                               bool indexed) const {
  CPDFJpxHeader::Mapping mapping = {number, -1};
  if (!header.mappings.empty() && !indexed) {
    mapping = header.mappings[static_cast<std::size_t>(number)];
  }
  if (static_cast<std::size_t>(mapping.component) >= header.components.size()) {
    mapping.component = 0;
  }
  const auto& component = header.components[static_cast<std::size_t>(mapping.component)];
  Channel channel;
  channel.component = mapping.component;
  channel.dx = component.dx;
  channel.dy = component.dy;
  channel.top = (std::int64_t{1} << component.bits) - 1;
  channel.offset = component.is_signed ? (channel.top + 1) / 2 : 0;
  channel.shift = std::max(component.bits - table_bits, 0);
  channel.levels.resize(static_cast<std::size_t>(channel.top >> channel.shift) + 1);

  const auto columns = static_cast<std::size_t>(header.palette_columns);
  const bool from_palette = mapping.column >= 0 && mapping.column < header.palette_columns &&
                            header.palette.size() >= columns;
  const std::size_t entries = columns > 0 ? header.palette.size() / columns : 0;
  for (std::size_t i = 0; i < channel.levels.size(); ++i) {
    if (from_palette) {
      const auto column = static_cast<std::size_t>(mapping.column);
      channel.levels[i] = to_byte(header.palette[std::min(i, entries - 1) * columns + column],
                                  header.palette_bits[column]);
    } else if (indexed) {
      channel.levels[i] = static_cast<unsigned char>(std::min<std::size_t>(i, 255));
    } else {
      channel.levels[i] = to_byte(i, std::min(component.bits, table_bits));
    }
  }
  return channel;
}

void CPDFJpxRows::fill(const CPDFJpxCodestream& tiles, std::int64_t y, const Channel& channel,
                       unsigned char* dst, int step) const {
  const CPDFJpxPlane plane = tiles.plane(channel.component);
  if (plane.samples == nullptr || plane.width < 1 || plane.height < 1) {
    for (std::int64_t x = 0; x < width_; ++x) dst[x * step] = 0;
    return;
  }
  // The sample that lies on the pixel's point of the reference grid, or last before it.
  const std::int64_t row =
      std::clamp<std::int64_t>(line_of(y) / channel.dy - plane.y0, 0, plane.height - 1);
  const std::int32_t* const samples = plane.samples + row * plane.width;
  const unsigned char* const levels = channel.levels.data();
  const auto level = [&](std::int64_t i) {
    const std::int64_t v = std::clamp<std::int64_t>(samples[i] + channel.offset, 0, channel.top);
    return levels[v >> channel.shift];
  };
  if (channel.dx == step_x_ && plane.width >= width_) {
    for (std::int64_t x = 0; x < width_; ++x) dst[x * step] = level(x);
    return;
  }
  for (std::int64_t x = 0; x < width_; ++x) {
    const std::int64_t column = (first_column_ + x) * step_x_ / channel.dx - plane.x0;
    dst[x * step] = level(std::clamp<std::int64_t>(column, 0, plane.width - 1));
  }
}

void CPDFJpxRows::color_row(const CPDFJpxCodestream& tiles, std::int64_t y,
                            unsigned char* dst) const {
  for (int c = 0; c < channels(); ++c) {
    fill(tiles, y, colors_[static_cast<std::size_t>(c)], dst + c, channels());
  }
  if (ycc_) ycc_to_rgb(dst, width_);
}

void CPDFJpxRows::alpha_row(const CPDFJpxCodestream& tiles, std::int64_t y,
                            unsigned char* dst) const {
  fill(tiles, y, alpha_, dst, 1);
}
