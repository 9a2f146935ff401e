// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/png_writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <isa-l.h>
#include <limits>
#include <new>

#include "pdf/doc/png_chunk.h"

using pdfbmp::png_chunk_head;
using pdfbmp::png_chunk_overhead;
using pdfbmp::seal_png_chunk;
using pdfbmp::store_big_endian;

namespace {

// Rows are filtered into a block of this size, which may hold many rows or a piece of one, and
// only whole blocks go to the deflater: its calls cost more than the copying.
constexpr std::size_t most_filtered = 256 * 1024;

// One data chunk of the file, and one call of the sink.
constexpr std::size_t most_chunk_data = 256 * 1024;

// The deflater looks this far past the end of its input, or less.
constexpr std::size_t input_slack = 512;

// Up to as many bytes are held by the smaller buffer of the deflater's tokens.
constexpr std::size_t small_picture = 16 * 1024;

// Level 1 is a quarter faster on noise and several times on smooth gradients, but for some inputs
// levels 1 and 2 of ISA-L 2.30 give other bytes when the state, all of it zero, lies elsewhere in
// memory: the same picture would not always be the same file.
constexpr int compression_level = 3;

constexpr unsigned char signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

// Values of the filter byte in front of each row.
constexpr unsigned char filter_none = 0;
constexpr unsigned char filter_sub = 1;

struct ColorType {
  unsigned char code, depth;
};

ColorType color_type_of(const CPDFRasterInfo& info) {
  switch (info.format) {
    case CPDFPixelFormat::gray1:
      return {0, 1};
    case CPDFPixelFormat::gray8:
      return {0, 8};
    case CPDFPixelFormat::gray_alpha8:
      return {4, 8};
    case CPDFPixelFormat::indexed:
      return {3, static_cast<unsigned char>(info.index_bits)};
    case CPDFPixelFormat::rgb8:
      return {2, 8};
    case CPDFPixelFormat::rgba8:
      return {6, 8};
  }
  return {};
}

bool valid(const CPDFRasterInfo& info) {
  if (info.width < 1 || info.height < 1) return false;
  if (info.format != CPDFPixelFormat::indexed) return true;
  const int bits = info.index_bits;
  if (bits != 1 && bits != 2 && bits != 4 && bits != 8) return false;
  return !info.palette.empty() && info.palette.size() <= std::size_t{1} << bits;
}

// Pixels per metre, or 0 where the resolution is unknown or beyond what a chunk can tell.
std::uint32_t per_metre(double ppi) {
  const double value = std::round(ppi / 0.0254);
  const bool fits = value >= 1 && value <= std::numeric_limits<std::int32_t>::max();
  return fits ? static_cast<std::uint32_t>(value) : 0;
}

// Each byte less the one `distance` before it; those before `src` are there too.
void subtract_left(unsigned char* __restrict dst, const unsigned char* __restrict src,
                   std::size_t distance, std::size_t n) {
  const unsigned char* left = src - distance;
  for (std::size_t i = 0; i < n; ++i) dst[i] = static_cast<unsigned char>(src[i] - left[i]);
}

}  // namespace

// The sizes are bounded, so that a picture of any width costs the same; one that is smaller than
// they are needs less, since clearing them would take longer than writing it.
struct CPDFPngWriter::Encoder {
  using Bytes = std::unique_ptr<unsigned char[]>;

  isal_zstream stream;
  std::size_t filtered_size, filtered_used, chunk_data_size;
  Bytes filtered, chunk, level_buffer;

  // All of it zero, since the deflater looks past the end of its input. False where memory failed.
  // One byte more than there are, so that the end of a small picture comes with all of its bytes.
  bool allocate(std::uint64_t filtered_bytes) {
    filtered_size =
        static_cast<std::size_t>(std::min<std::uint64_t>(filtered_bytes + 1, most_filtered));
    chunk_data_size = std::min(filtered_size + input_slack, most_chunk_data);
    const std::size_t level_size =
        filtered_bytes > small_picture ? ISAL_DEF_LVL3_DEFAULT : ISAL_DEF_LVL3_SMALL;
    const auto zeros = [](std::size_t n) { return Bytes(new (std::nothrow) unsigned char[n]()); };
    filtered = zeros(filtered_size + input_slack);
    chunk = zeros(chunk_data_size + png_chunk_overhead);
    level_buffer = zeros(level_size);
    stream.level_buf = level_buffer.get();
    stream.level_buf_size = static_cast<std::uint32_t>(level_size);
    return filtered != nullptr && chunk != nullptr && level_buffer != nullptr;
  }

  void restart_chunk() {
    stream.next_out = chunk.get() + png_chunk_head;
    stream.avail_out = static_cast<std::uint32_t>(chunk_data_size);
  }
};

CPDFPngWriter::CPDFPngWriter(CPDFByteSink& sink) : sink_(sink) {}

CPDFPngWriter::~CPDFPngWriter() = default;

bool CPDFPngWriter::begin(const CPDFRasterInfo& info) {
  if (!valid(info)) return false;
  row_bytes_ = static_cast<std::size_t>(info.row_bytes());
  encoder_.reset(new (std::nothrow) Encoder());
  if (encoder_ == nullptr) return false;
  isal_deflate_init(&encoder_->stream);
  encoder_->stream.level = compression_level;
  encoder_->stream.gzip_flag = IGZIP_ZLIB;
  const auto height = static_cast<std::uint64_t>(info.height);
  if (!encoder_->allocate((std::uint64_t{row_bytes_} + 1) * height)) {
    encoder_.reset();
    return false;
  }
  encoder_->restart_chunk();

  const bool whole_samples =
      info.format != CPDFPixelFormat::indexed && info.format != CPDFPixelFormat::gray1;
  filter_distance_ = whole_samples ? static_cast<std::size_t>(info.bits_per_pixel()) / 8 : 0;
  return write_header(info);
}

bool CPDFPngWriter::write_header(const CPDFRasterInfo& info) {
  // Signature, IHDR, sRGB, pHYs and a palette of 256 colours take less than 1 KiB.
  unsigned char bytes[1024];
  unsigned char* at = bytes;
  std::memcpy(at, signature, sizeof(signature));
  at += sizeof(signature);

  const ColorType type = color_type_of(info);
  unsigned char* data = at + png_chunk_head;
  store_big_endian(data, static_cast<std::uint32_t>(info.width));
  store_big_endian(data + 4, static_cast<std::uint32_t>(info.height));
  data[8] = type.depth;
  data[9] = type.code;
  data[10] = data[11] = data[12] = 0;  // Deflate, adaptive filtering, not interlaced.
  at += seal_png_chunk(at, "IHDR", 13);

  at[png_chunk_head] = 0;  // Perceptual intent.
  at += seal_png_chunk(at, "sRGB", 1);

  const std::uint32_t x = per_metre(info.ppi_x), y = per_metre(info.ppi_y);
  if (x != 0 && y != 0) {
    data = at + png_chunk_head;
    store_big_endian(data, x);
    store_big_endian(data + 4, y);
    data[8] = 1;  // The unit is the metre.
    at += seal_png_chunk(at, "pHYs", 9);
  }

  if (info.format == CPDFPixelFormat::indexed) {
    data = at + png_chunk_head;
    for (const _KXRGBA& color : info.palette) {
      *data++ = color.r;
      *data++ = color.g;
      *data++ = color.b;
    }
    at += seal_png_chunk(at, "PLTE", 3 * info.palette.size());
  }
  return sink_.write(bytes, static_cast<std::size_t>(at - bytes));
}

bool CPDFPngWriter::write_row(const unsigned char* row) {
  if (encoder_ == nullptr) return false;
  const unsigned char filter = filter_distance_ == 0 ? filter_none : filter_sub;
  if (!append(&filter, 1, false)) return false;
  // The first pixel has nothing to its left and stands as it is.
  return append(row, filter_distance_, false) &&
         append(row + filter_distance_, row_bytes_ - filter_distance_, filter_distance_ != 0);
}

bool CPDFPngWriter::append(const unsigned char* bytes, std::size_t n, bool subtract) {
  Encoder& e = *encoder_;
  while (n > 0) {
    const std::size_t piece = std::min(n, e.filtered_size - e.filtered_used);
    unsigned char* dst = e.filtered.get() + e.filtered_used;
    if (subtract) {
      subtract_left(dst, bytes, filter_distance_, piece);
    } else {
      std::memcpy(dst, bytes, piece);
    }
    e.filtered_used += piece;
    bytes += piece;
    n -= piece;
    if (e.filtered_used == e.filtered_size && !deflate_filtered()) return false;
  }
  return true;
}

bool CPDFPngWriter::deflate_filtered() {
  Encoder& e = *encoder_;
  e.stream.next_in = e.filtered.get();
  e.stream.avail_in = static_cast<std::uint32_t>(e.filtered_used);
  e.filtered_used = 0;
  for (;;) {
    if (isal_deflate(&e.stream) != COMP_OK) return false;
    // Room left means that the input is taken, or at the end of the stream that all is written.
    if (e.stream.avail_out != 0) return true;
    if (!write_data_chunk()) return false;
  }
}

bool CPDFPngWriter::write_data_chunk() {
  Encoder& e = *encoder_;
  const std::size_t length = e.chunk_data_size - e.stream.avail_out;
  e.restart_chunk();
  return length == 0 || sink_.write(e.chunk.get(), seal_png_chunk(e.chunk.get(), "IDAT", length));
}

bool CPDFPngWriter::finish() {
  if (encoder_ == nullptr) return false;
  encoder_->stream.end_of_stream = 1;
  const bool whole = deflate_filtered() && write_data_chunk();
  encoder_.reset();
  unsigned char end[png_chunk_overhead];
  return whole && sink_.write(end, seal_png_chunk(end, "IEND", 0));
}
