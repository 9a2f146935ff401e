// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/sample_rows.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#include "pdf/image/bit_reader.h"
#include "pdf/image/unpack.h"

using image_decoding::BitReader;

namespace {

constexpr int max_components = 16;
constexpr int max_bits = 16;
constexpr CPDFSampleLayout::Range full_range = {0, 255};

bool is_full(const CPDFSampleLayout::Range& range) { return range.low == 0 && range.high == 255; }

bool is_default(const std::vector<CPDFSampleLayout::Range>& decode) {
  return std::all_of(decode.begin(), decode.end(), is_full);
}

/// The byte of sample `value` of 0..`top`, rounded.
unsigned char byte_of(unsigned value, unsigned top, const CPDFSampleLayout::Range& range) {
  const double scaled = range.low + value * (range.high - range.low) / top;
  return static_cast<unsigned char>(std::lround(std::clamp(scaled, 0.0, 255.0)));
}

/// 16-bit samples, high byte first, to the nearest byte: v / 257 without a division, in steps that
/// stay within 16 bits, which the compiler's vectors have twice as many of.
void widen16(unsigned char* __restrict dst, const unsigned char* __restrict src,
             std::ptrdiff_t count) {
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    const unsigned char high = src[2 * i], low = src[2 * i + 1];
    const auto v = static_cast<std::uint16_t>(high << 8 | low);
    dst[i] =
        static_cast<unsigned char>(static_cast<std::uint16_t>(v - high + 127 + (high >> 7)) >> 8);
  }
}

}  // namespace

std::int64_t CPDFSampleLayout::row_bytes() const {
  return image_decoding::packed_bytes(width, std::int64_t{bpc} * components);
}

bool CPDFSampleLayout::is_plain() const { return bpc == 8 && is_default(decode); }

std::unique_ptr<CPDFSampleRows> CPDFSampleRows::make(CPDFStream& stream, CPDFSampleLayout layout) {
  std::unique_ptr<CPDFSampleRows> rows(new (std::nothrow)
                                           CPDFSampleRows(stream, std::move(layout)));
  return rows != nullptr && rows->prepare() ? std::move(rows) : nullptr;
}

bool CPDFSampleRows::prepare() {
  const int bpc = layout_.bpc, components = layout_.components;
  if (layout_.width < 1 || bpc < 1 || bpc > max_bits) return false;
  if (components < 1 || components > max_components) return false;
  const std::int64_t out_bytes = std::int64_t{layout_.width} * components;
  if (std::max(layout_.row_bytes(), out_bytes) > std::numeric_limits<int>::max()) return false;

  // A key looks at raw samples, so they must not be overwritten where they land.
  if (!layout_.is_plain() || layout_.has_key) {
    row_.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(layout_.row_bytes())]);
    if (row_ == nullptr) return false;
  }
  if (layout_.has_key) {
    key_.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(layout_.width)]);
    if (key_ == nullptr) return false;
  }
  if (layout_.is_plain() || (bpc == 16 && is_default(layout_.decode))) return true;

  layout_.decode.resize(static_cast<std::size_t>(components), full_range);
  const auto differs = [&](const auto& range) {
    return range.low != layout_.decode[0].low || range.high != layout_.decode[0].high;
  };
  one_table_ = std::none_of(layout_.decode.begin(), layout_.decode.end(), differs);
  const std::size_t tables = one_table_ ? 1 : static_cast<std::size_t>(components);
  tables_.reset(new (std::nothrow) unsigned char[tables << bpc]);
  if (tables_ == nullptr) return false;
  fill_tables();
  return true;
}

void CPDFSampleRows::fill_tables() {
  const unsigned top = (1U << layout_.bpc) - 1;
  unsigned char* entry = tables_.get();
  for (int i = 0; i < (one_table_ ? 1 : layout_.components); ++i) {
    const auto& range = layout_.decode[static_cast<std::size_t>(i)];
    for (unsigned value = 0; value <= top; ++value) *entry++ = byte_of(value, top, range);
  }
}

const unsigned char* CPDFSampleRows::table_of(int component) const {
  return tables_.get() + (one_table_ ? 0 : std::ptrdiff_t{component} << layout_.bpc);
}

bool CPDFSampleRows::read(unsigned char* dst) {
  const auto row_bytes = static_cast<int>(layout_.row_bytes());
  const auto out_bytes =
      static_cast<std::size_t>(layout_.width) * static_cast<std::size_t>(layout_.components);
  unsigned char* row = row_ != nullptr ? row_.get() : dst;
  const int arrived = std::clamp(stream_.read_block(row, row_bytes), 0, row_bytes);
  if (arrived == 0) {
    std::memset(dst, 0, out_bytes);
    if (key_ != nullptr) std::memset(key_.get(), 0, static_cast<std::size_t>(layout_.width));
    return false;
  }
  std::memset(row + arrived, 0, static_cast<std::size_t>(row_bytes - arrived));
  if (row_ != nullptr) widen(dst);
  if (layout_.has_key) compare_key();
  return true;
}

void CPDFSampleRows::widen(unsigned char* dst) const {
  const int count = layout_.width * layout_.components;  // Fits: prepare() saw to it.
  const unsigned char* row = row_.get();
  if (tables_ == nullptr) {
    if (layout_.bpc == 16) return widen16(dst, row, count);
    std::memcpy(dst, row, static_cast<std::size_t>(count));
    return;
  }
  if (one_table_) {
    const unsigned char* table = tables_.get();
    switch (layout_.bpc) {
      case 1:
        return image_decoding::unpack_row<1, 1>(dst, row, count, table);
      case 2:
        return image_decoding::unpack_row<2, 1>(dst, row, count, table);
      case 4:
        return image_decoding::unpack_row<4, 1>(dst, row, count, table);
      case 8:
        return image_decoding::unpack_row<8, 1>(dst, row, count, table);
      default:
        break;
    }
  }
  BitReader bits(row, layout_.row_bytes(), layout_.bpc);
  for (int x = 0; x < layout_.width; ++x) {
    for (int i = 0; i < layout_.components; ++i) *dst++ = table_of(i)[bits.next()];
  }
}

void CPDFSampleRows::compare_key() {
  BitReader bits(row_.get(), layout_.row_bytes(), layout_.bpc);
  for (int x = 0; x < layout_.width; ++x) {
    bool inside = true;
    for (int i = 0; i < layout_.components; ++i) {
      const int sample = static_cast<int>(bits.next());
      inside &= sample >= layout_.key_min.val[i] && sample <= layout_.key_max.val[i];
    }
    key_[static_cast<std::size_t>(x)] = inside ? 0 : 255;
  }
}
