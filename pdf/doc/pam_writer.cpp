// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/pam_writer.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace {

using Dialect = CPDFPamWriter::Dialect;

// Pixels that are converted at a time; a multiple of 8, so that pieces of a row start on a byte.
constexpr std::int64_t piece_pixels = 16 * 1024;

bool is_gray(const std::vector<_KXRGBA>& palette) {
  return std::all_of(palette.begin(), palette.end(),
                     [](const _KXRGBA& c) { return c.r == c.g && c.g == c.b; });
}

// What a file holds, and what its header says of it.
struct Layout {
  const char* suffix;
  const char* magic;  // Of the dialect; PAM has its own.
  const char* tuple_type;
  int depth;
  int max_value;
};

Layout layout_of(const CPDFRasterInfo& info) {
  static constexpr Layout bitmap = {"pbm", "P4", "BLACKANDWHITE", 1, 1};
  static constexpr Layout gray = {"pgm", "P5", "GRAYSCALE", 1, 255};
  static constexpr Layout rgb = {"ppm", "P6", "RGB", 3, 255};
  switch (info.format) {
    case CPDFPixelFormat::gray1:
      return bitmap;
    case CPDFPixelFormat::gray8:
      return gray;
    case CPDFPixelFormat::gray_alpha8:
      return {"pam", "P7", "GRAYSCALE_ALPHA", 2, 255};
    case CPDFPixelFormat::indexed:
      return is_gray(info.palette) ? gray : rgb;
    case CPDFPixelFormat::rgb8:
      return rgb;
    case CPDFPixelFormat::rgba8:
      return {"pam", "P7", "RGB_ALPHA", 4, 255};
  }
  return rgb;
}

bool is_pam(const Layout& layout, Dialect dialect) {
  return dialect == Dialect::pam || layout.depth == 2 || layout.depth == 4;
}

std::string header_of(const CPDFRasterInfo& info, Dialect dialect) {
  const Layout layout = layout_of(info);
  const std::string width = std::to_string(info.width), height = std::to_string(info.height);
  if (is_pam(layout, dialect)) {
    return "P7\nWIDTH " + width + "\nHEIGHT " + height + "\nDEPTH " + std::to_string(layout.depth) +
           "\nMAXVAL " + std::to_string(layout.max_value) + "\nTUPLTYPE " + layout.tuple_type +
           "\nENDHDR\n";
  }
  std::string header = std::string(layout.magic) + "\n" + width + " " + height + "\n";
  if (layout.max_value != 1) header += std::to_string(layout.max_value) + "\n";
  return header;
}

// Sample i of a row of `bits`-bit samples, most significant first.
unsigned sample_at(const unsigned char* row, int bits, std::int64_t i) {
  const std::int64_t bit = i * bits;
  return static_cast<unsigned>(row[bit >> 3] >> (8 - bits - (bit & 7))) & ((1u << bits) - 1);
}

}  // namespace

CPDFPamWriter::CPDFPamWriter(CPDFByteSink& sink, Dialect dialect)
    : sink_(sink), dialect_(dialect) {}

const char* CPDFPamWriter::suffix_of(const CPDFRasterInfo& info, Dialect dialect) {
  const Layout layout = layout_of(info);
  return is_pam(layout, dialect) ? "pam" : layout.suffix;
}

bool CPDFPamWriter::begin(const CPDFRasterInfo& info) {
  if (info.width < 1 || info.height < 1) return false;
  info_ = info;
  gray_palette_ = info.format == CPDFPixelFormat::indexed && is_gray(info.palette);
  // An index past the palette is written as black.
  if (info.format == CPDFPixelFormat::indexed) info_.palette.resize(256);
  piece_.resize(static_cast<std::size_t>(std::min<std::int64_t>(info.width, piece_pixels)) * 3);
  const std::string header = header_of(info, dialect_);
  return sink_.write(header.data(), header.size());
}

bool CPDFPamWriter::write_row(const unsigned char* row) {
  const bool one_bit = info_.format == CPDFPixelFormat::gray1;
  const bool indexed = info_.format == CPDFPixelFormat::indexed;
  if (!one_bit && !indexed) return sink_.write(row, static_cast<std::size_t>(info_.row_bytes()));

  for (std::int64_t done = 0; done < info_.width; done += piece_pixels) {
    const std::int64_t n = std::min<std::int64_t>(piece_pixels, info_.width - done);
    unsigned char* dst = piece_.data();
    if (one_bit && dialect_ == Dialect::pnm) {
      // PBM has 1 for black.
      const unsigned char* src = row + done / 8;
      for (std::int64_t i = 0; i < (n + 7) / 8; ++i) *dst++ = static_cast<unsigned char>(~src[i]);
    } else if (one_bit) {
      for (std::int64_t i = 0; i < n; ++i) {
        *dst++ = static_cast<unsigned char>(sample_at(row, 1, done + i));
      }
    } else {
      for (std::int64_t i = 0; i < n; ++i) {
        const _KXRGBA color = info_.palette[sample_at(row, info_.index_bits, done + i)];
        *dst++ = color.r;
        if (gray_palette_) continue;
        *dst++ = color.g;
        *dst++ = color.b;
      }
    }
    if (!sink_.write(piece_.data(), static_cast<std::size_t>(dst - piece_.data()))) return false;
  }
  return true;
}

bool CPDFPamWriter::finish() { return true; }
