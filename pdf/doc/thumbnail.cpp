// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/thumbnail.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace pdfbmp {
namespace {

struct Layout {
  CPDFPixelFormat format;  // Of the reduced picture.
  std::ptrdiff_t channels;
  bool alpha;  // The last channel is.
};

Layout reduced_layout(CPDFPixelFormat format) {
  switch (format) {
    case CPDFPixelFormat::gray1:
    case CPDFPixelFormat::gray8:
      return {CPDFPixelFormat::gray8, 1, false};
    case CPDFPixelFormat::gray_alpha8:
      return {CPDFPixelFormat::gray_alpha8, 2, true};
    case CPDFPixelFormat::indexed:
    case CPDFPixelFormat::rgb8:
      return {CPDFPixelFormat::rgb8, 3, false};
    case CPDFPixelFormat::rgba8:
      break;
  }
  return {CPDFPixelFormat::rgba8, 4, true};
}

// Where box `i` of `boxes` begins on a side of `length` pixels. There are no more boxes than
// pixels, so none is empty.
std::int64_t box_begin(std::int64_t i, std::int64_t length, std::int64_t boxes) {
  return i * length / boxes;
}

class Thumbnail final : public CPDFRasterReader {
 public:
  Thumbnail(std::unique_ptr<CPDFRasterReader> source, int max_side)
      : source_(std::move(source)),
        from_(source_->info()),
        layout_(reduced_layout(from_.format)),
        row_(static_cast<std::size_t>(from_.row_bytes())) {
    const int longer = std::max(from_.width, from_.height);
    const auto reduced = [&](int side) {
      const std::int64_t rounded = (std::int64_t{side} * max_side + longer / 2) / longer;
      return static_cast<int>(std::max<std::int64_t>(rounded, 1));
    };
    info_.width = reduced(from_.width);
    info_.height = reduced(from_.height);
    info_.format = layout_.format;
    info_.ppi_x = from_.ppi_x * info_.width / from_.width;
    info_.ppi_y = from_.ppi_y * info_.height / from_.height;
    sums_.resize(static_cast<std::size_t>(info_.width * layout_.channels));
    // An index past the palette is black.
    for (std::size_t i = 0; i < std::min(from_.palette.size(), palette_.size()); ++i) {
      const _KXRGBA& color = from_.palette[i];
      palette_[i] = {color.r, color.g, color.b};
    }
  }

  const CPDFRasterInfo& info() const override { return info_; }

  bool read_row(unsigned char* dst) override {
    if (y_ >= info_.height) return false;
    const std::int64_t begin = box_begin(y_, from_.height, info_.height);
    const std::int64_t end = box_begin(++y_, from_.height, info_.height);
    std::fill(sums_.begin(), sums_.end(), 0);
    for (std::int64_t y = begin; y < end; ++y) {
      if (!source_->read_row(row_.data())) return false;
      add_row();
    }
    write_averages(dst, static_cast<std::uint64_t>(end - begin));
    return true;
  }

 private:
  using Sum = std::uint64_t;  // A box of a picture 2^31 pixels wide and high fits.

  void add_row() {
    const unsigned char* row = row_.data();
    switch (from_.format) {
      case CPDFPixelFormat::gray1:
        return add_boxes<1>([row](std::int64_t x, Sum* sums) {
          sums[0] += row[x >> 3] >> (7 - (x & 7)) & 1 ? 255u : 0u;
        });
      case CPDFPixelFormat::gray8:
        return add_boxes<1>([row](std::int64_t x, Sum* sums) { sums[0] += row[x]; });
      case CPDFPixelFormat::gray_alpha8:
        return add_boxes<2>([row](std::int64_t x, Sum* sums) {
          const unsigned char* pixel = row + 2 * x;
          sums[0] += Sum{pixel[0]} * pixel[1];
          sums[1] += pixel[1];
        });
      case CPDFPixelFormat::indexed:
        return add_indexed(row);
      case CPDFPixelFormat::rgb8:
        return add_boxes<3>([row](std::int64_t x, Sum* sums) {
          for (std::ptrdiff_t k = 0; k < 3; ++k) sums[k] += row[3 * x + k];
        });
      case CPDFPixelFormat::rgba8:
        return add_boxes<4>([row](std::int64_t x, Sum* sums) {
          const unsigned char* pixel = row + 4 * x;
          for (std::ptrdiff_t k = 0; k < 3; ++k) sums[k] += Sum{pixel[k]} * pixel[3];
          sums[3] += pixel[3];
        });
    }
  }

  void add_indexed(const unsigned char* row) {
    const int bits = from_.index_bits;
    const unsigned mask = (1u << bits) - 1;
    add_boxes<3>([&](std::int64_t x, Sum* sums) {
      const std::int64_t bit = x * bits;
      const unsigned index = unsigned{row[bit >> 3]} >> (8 - bits - (bit & 7)) & mask;
      for (std::size_t k = 0; k < 3; ++k) sums[k] += palette_[index][k];
    });
  }

  // Has `add` add each pixel of a row to the sums of its box, which the compiler then keeps in
  // registers.
  template <std::size_t Channels, class Add>
  void add_boxes(Add add) {
    std::int64_t x = 0;
    for (int i = 0; i < info_.width; ++i) {
      Sum sums[Channels] = {};
      for (const std::int64_t end = box_begin(i + 1, from_.width, info_.width); x < end; ++x) {
        add(x, sums);
      }
      for (std::size_t k = 0; k < Channels; ++k) {
        sums_[static_cast<std::size_t>(i) * Channels + k] += sums[k];
      }
    }
  }

  void write_averages(unsigned char* dst, Sum rows) const {
    const auto average = [](Sum sum, Sum weight) {
      return static_cast<unsigned char>(weight == 0 ? 0 : (sum + weight / 2) / weight);
    };
    const Sum* sums = sums_.data();
    const std::ptrdiff_t colors = layout_.channels - (layout_.alpha ? 1 : 0);
    for (int i = 0; i < info_.width; ++i) {
      const std::int64_t columns =
          box_begin(i + 1, from_.width, info_.width) - box_begin(i, from_.width, info_.width);
      const Sum pixels = rows * static_cast<Sum>(columns);
      const Sum weight = layout_.alpha ? sums[colors] : pixels;
      for (std::ptrdiff_t k = 0; k < colors; ++k) dst[k] = average(sums[k], weight);
      if (layout_.alpha) dst[colors] = average(weight, pixels);
      sums += layout_.channels;
      dst += layout_.channels;
    }
  }

  std::unique_ptr<CPDFRasterReader> source_;
  const CPDFRasterInfo& from_;
  Layout layout_;
  CPDFRasterInfo info_;
  std::array<std::array<unsigned char, 3>, 256> palette_ = {};
  std::vector<unsigned char> row_;
  std::vector<Sum> sums_;
  int y_ = 0;
};

}  // namespace

std::unique_ptr<CPDFRasterReader> make_thumbnail(std::unique_ptr<CPDFRasterReader> source,
                                                 int max_side) {
  if (std::max(source->info().width, source->info().height) <= max_side) return source;
  try {
    return std::make_unique<Thumbnail>(std::move(source), max_side);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace pdfbmp
