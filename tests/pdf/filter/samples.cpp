// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/pdf/filter/samples.h"

#include <cstdlib>
#include <isa-l/igzip_lib.h>
#include <new>

#include "pdf/filter/filter_table.h"

namespace filter_test {

Parms::Parms(std::initializer_list<std::pair<const char*, int>> entries) {
  for (const auto& [key, value] : entries) dict.set(key)->set_int(value);
}

Parms& Parms::with_bool(const char* key, bool value) {
  dict.set(key)->set_bool(value);
  return *this;
}

std::unique_ptr<CPDFStream> stream_over(const std::string& bytes) {
  // A borrowing stream never writes to its bytes.
  auto* const data = reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data()));
  return std::make_unique<CPDFStream>(data, static_cast<int>(bytes.size()), 1);
}

std::string read_all(CPDFStream& stream, int piece, std::size_t most) {
  std::string all;
  std::string buffer(static_cast<std::size_t>(piece), '\0');
  for (;;) {
    const int n = stream.read_block(buffer.data(), piece);
    if (n < 0 || n > piece) std::abort();  // The contract of read_block is broken.
    all.append(buffer, 0, static_cast<std::size_t>(n));
    if (n == 0 || all.size() > most) return all;
  }
}

Decoded decode(const char* filter, const std::string& encoded, const CPDFDictionary* parms, int piece, const CPDFDictionary* image) {
  Decoded decoded;
  CPDFFilterSetup setup;
  setup.parms = parms;
  setup.image = image;
  setup.report = std::make_shared<CPDFDecodeReport>();
  const auto stream = pdfbmp::find_filter(filter)->make(stream_over(encoded), setup);
  decoded.made = stream != nullptr;
  if (decoded.made) decoded.bytes = read_all(*stream, piece);
  decoded.report = *setup.report;
  return decoded;
}

std::string sample_bytes(std::size_t n, std::uint32_t seed) {
  std::string bytes(n, '\0');
  std::uint32_t state = seed * 2654435761U + 1;
  for (std::size_t i = 0; i < n; ++i) {
    state = state * 1664525U + 1013904223U;
    const std::uint32_t block = static_cast<std::uint32_t>(i / 97) + seed;
    const std::uint32_t value = block % 3 == 0 ? block : block % 3 == 1 ? static_cast<std::uint32_t>(i) * 3 : state >> 24;
    bytes[i] = static_cast<char>(value & 255);
  }
  return bytes;
}

std::string deflate(const std::string& bytes, bool zlib_wrapper) {
  auto stream = std::make_unique<isal_zstream>();
  isal_deflate_init(stream.get());
  std::string level_buffer(ISAL_DEF_LVL1_DEFAULT, '\0');
  std::string out(bytes.size() + bytes.size() / 8 + 1024, '\0');
  std::string in = bytes;
  stream->level = 1;
  stream->level_buf = reinterpret_cast<std::uint8_t*>(level_buffer.data());
  stream->level_buf_size = static_cast<std::uint32_t>(level_buffer.size());
  stream->gzip_flag = zlib_wrapper ? IGZIP_ZLIB : IGZIP_DEFLATE;
  stream->end_of_stream = 1;
  stream->next_in = reinterpret_cast<std::uint8_t*>(in.data());
  stream->avail_in = static_cast<std::uint32_t>(in.size());
  stream->next_out = reinterpret_cast<std::uint8_t*>(out.data());
  stream->avail_out = static_cast<std::uint32_t>(out.size());
  if (isal_deflate(stream.get()) != COMP_OK || stream->avail_in != 0) std::abort();
  out.resize(stream->total_out);
  return out;
}

std::string png_predict(const std::string& rows, int row_bytes, int step, int type) {
  std::string out;
  const int count = static_cast<int>(rows.size()) / row_bytes;
  for (int y = 0; y < count; ++y) {
    const auto at = [&](int row, int i) {
      if (row < 0 || i < 0) return 0;
      return int{static_cast<unsigned char>(
          rows[static_cast<std::size_t>(row) * static_cast<std::size_t>(row_bytes) + static_cast<std::size_t>(i)])};
    };
    const int filter = type <= 4 ? type : y % 5;
    out.push_back(static_cast<char>(filter));
    for (int i = 0; i < row_bytes; ++i) {
      const int left = at(y, i - step);
      const int above = at(y - 1, i);
      const int corner = i >= step ? at(y - 1, i - step) : 0;
      const int p = left + above - corner;
      const int a = std::abs(p - left);
      const int b = std::abs(p - above);
      const int c = std::abs(p - corner);
      const int nearest = a <= b && a <= c ? left : b <= c ? above : corner;
      const int guess[] = {0, left, above, (left + above) / 2, nearest};
      out.push_back(static_cast<char>(at(y, i) - guess[filter]));
    }
  }
  return out;
}

std::string tiff_predict(const std::string& rows, int row_bytes, int colors, int bits) {
  std::string out(rows.size(), '\0');
  const std::size_t samples_in_row = static_cast<std::size_t>(row_bytes) * 8 / static_cast<std::size_t>(bits);
  const std::size_t width = static_cast<std::size_t>(bits);
  const unsigned mask = (1U << bits) - 1;
  const auto sample = [&](std::size_t row, std::size_t i) {
    unsigned value = 0;
    for (std::size_t k = 0; k < width; ++k) {
      const std::size_t bit = (row * static_cast<std::size_t>(row_bytes)) * 8 + i * width + k;
      value = value << 1 | (unsigned{static_cast<unsigned char>(rows[bit / 8])} >> (7 - bit % 8) & 1U);
    }
    return value;
  };
  for (std::size_t y = 0; y * static_cast<std::size_t>(row_bytes) < rows.size(); ++y) {
    for (std::size_t i = 0; i < samples_in_row; ++i) {
      const std::size_t step = static_cast<std::size_t>(colors);
      const unsigned value = (sample(y, i) - (i >= step ? sample(y, i - step) : 0)) & mask;
      for (std::size_t k = 0; k < width; ++k) {
        const std::size_t bit = (y * static_cast<std::size_t>(row_bytes)) * 8 + i * width + k;
        if ((value >> (width - 1 - k) & 1U) != 0) { out[bit / 8] = static_cast<char>(out[bit / 8] | 0x80 >> (bit % 8)); }
      }
    }
  }
  return out;
}

}  // namespace filter_test
