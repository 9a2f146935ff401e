// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/color_rows.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "pdf/cs/device_rgb.h"
#include "pdf/cs/parsed/families.h"
#include "pdf/cs/rows.h"
#include "pdf/doc/band_rows.h"

namespace {

using Bytes = std::unique_ptr<unsigned char[]>;

/// Samples that are the picture's bytes themselves, as they are or through a table.
class ByteRows : public CPDFColorRows {
 public:
  ByteRows(std::unique_ptr<CPDFSampleRows> samples, CPDFPixelFormat format)
      : samples_(std::move(samples)) {
    info_.width = samples_->layout().width;
    info_.height = samples_->layout().height;
    info_.format = format;
  }

  /// Looks every sample up in 256 entries.
  bool set_table(const unsigned char* table) {
    table_.reset(new (std::nothrow) unsigned char[256]);
    if (table_ != nullptr) std::memcpy(table_.get(), table, 256);
    return table_ != nullptr;
  }

  void set_palette(std::vector<_KXRGBA> palette) { info_.palette = std::move(palette); }

  void read(unsigned char* dst, unsigned char* key) override {
    const auto& layout = samples_->layout();
    const bool is_read = samples_->read(dst);
    if (is_read && table_ != nullptr) {
      rows().bytes_from_8bit(dst, dst, static_cast<std::size_t>(layout.width), table_.get());
    }
    if (key != nullptr) {
      std::memcpy(key, samples_->key_opacity(), static_cast<std::size_t>(layout.width));
    }
  }

 private:
  std::unique_ptr<CPDFSampleRows> samples_;
  Bytes table_;
};

/// Packed samples handed on as they are, or complemented.
class PackedRows : public CPDFColorRows {
 public:
  PackedRows(CPDFStream& stream, const CPDFSampleLayout& layout, CPDFPixelFormat format)
      : stream_(stream) {
    info_.width = layout.width;
    info_.height = layout.height;
    info_.format = format;
    info_.index_bits = layout.bpc;
  }

  void set_complemented(bool complemented) { complemented_ = complemented; }
  void set_palette(std::vector<_KXRGBA> palette) { info_.palette = std::move(palette); }

  void read(unsigned char* dst, unsigned char*) override {
    const auto n = static_cast<int>(info_.row_bytes());
    const int arrived = std::clamp(stream_.read_block(dst, n), 0, n);
    if (complemented_) rows().complement(dst, dst, static_cast<std::size_t>(arrived));
    std::memset(dst + arrived, 0, static_cast<std::size_t>(n - arrived));
  }

 private:
  CPDFStream& stream_;
  bool complemented_ = false;
};

/// The colours of the 256 bytes that samples of one component become.
std::vector<_KXRGBA> colors_of(CPDFCSBase& cs) {
  std::vector<_KXRGBA> colors(256, _KXRGBA{0, 0, 0, 255});
  unsigned char bytes[256];
  for (int i = 0; i < 256; ++i) bytes[i] = static_cast<unsigned char>(i);
  cs.batch_rgb(colors.data(), bytes, 256);
  return colors;
}

bool is_gray(const _KXRGBA& color) { return color.r == color.g && color.g == color.b; }

bool is_all_gray(const std::vector<_KXRGBA>& colors) {
  return std::all_of(colors.begin(), colors.end(), is_gray);
}

/// The colours that each sample value comes to stand for once it went through Decode.
std::vector<_KXRGBA> palette_of(const CPDFSampleLayout& layout,
                                const std::vector<_KXRGBA>& colors) {
  const int top = (1 << layout.bpc) - 1;
  const CPDFSampleLayout::Range range =
      layout.decode.empty() ? CPDFSampleLayout::Range{0, 255} : layout.decode[0];
  std::vector<_KXRGBA> palette;
  for (int value = 0; value <= top; ++value) {
    const double byte = range.low + value * (range.high - range.low) / top;
    palette.push_back(colors[static_cast<std::size_t>(std::clamp(byte, 0.0, 255.0) + 0.5)]);
  }
  return palette;
}

/// Packed samples of one component without alpha: black and white at one bit, or a palette. Null
/// for what is neither.
std::unique_ptr<CPDFColorRows> make_packed_rows(CPDFImage& image, const CPDFSampleLayout& layout,
                                                const std::vector<_KXRGBA>& colors) {
  const int bpc = layout.bpc;
  const bool indexed = image.cs->family == PDF_CS_INDEXED;
  if ((bpc != 1 && bpc != 2 && bpc != 4 && bpc != 8) || (bpc != 1 && !indexed)) return nullptr;

  std::vector<_KXRGBA> palette = palette_of(layout, colors);
  const auto is = [&](std::size_t i, unsigned char level) {
    return is_gray(palette[i]) && palette[i].r == level;
  };
  const bool is_bilevel = bpc == 1 && ((is(0, 0) && is(1, 255)) || (is(0, 255) && is(1, 0)));
  auto rows = std::make_unique<PackedRows>(
      *image.stream, layout, is_bilevel ? CPDFPixelFormat::gray1 : CPDFPixelFormat::indexed);
  rows->set_complemented(is_bilevel && is(0, 255));
  if (!is_bilevel) rows->set_palette(std::move(palette));
  return rows;
}

std::unique_ptr<CPDFColorRows> make_gray_rows(std::unique_ptr<CPDFSampleRows> samples,
                                              const std::vector<_KXRGBA>& colors) {
  unsigned char table[256];
  bool is_identity = true;
  for (std::size_t i = 0; i < 256; ++i) {
    table[i] = colors[i].r;
    is_identity &= table[i] == i;
  }
  auto rows = std::make_unique<ByteRows>(std::move(samples), CPDFPixelFormat::gray8);
  return is_identity || rows->set_table(table) ? std::move(rows) : nullptr;
}

}  // namespace

std::unique_ptr<CPDFColorRows> pdfbmp::make_color_rows(CPDFImage& image, CPDFSampleLayout layout,
                                                       bool packed) {
  std::vector<_KXRGBA> colors;
  if (image.cs->comp_count == 1) colors = colors_of(*image.cs);
  if (packed && !colors.empty()) {
    if (auto rows = make_packed_rows(image, layout, colors)) return rows;
  }
  auto samples = CPDFSampleRows::make(*image.stream, std::move(layout));
  if (samples == nullptr) return nullptr;
  if (!colors.empty() && is_all_gray(colors)) return make_gray_rows(std::move(samples), colors);
  // The pixels are the samples, also where a profile says just what DeviceRGB does.
  if (dynamic_cast<const CPDFCSDeviceRGB*>(image.cs) != nullptr) {
    return std::make_unique<ByteRows>(std::move(samples), CPDFPixelFormat::rgb8);
  }
  return make_band_rows(*image.cs, std::move(samples));
}
