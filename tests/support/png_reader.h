// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <isa-l.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A PNG file taken apart by the book, slowly: every CRC and the Adler sum are checked, all five
/// filters undone. Not interlaced.
struct PngReader {
  std::string error;                ///< Empty for a good file.
  std::vector<std::string> chunks;  ///< Types in their order, a run of IDAT as one.
  std::uint32_t width = 0, height = 0;
  int depth = 0, color_type = 0;
  std::string palette;     ///< r, g, b of each entry.
  std::string resolution;  ///< The data of pHYs.
  std::string rows;        ///< Unfiltered, without filter bytes.
  std::string filters;     ///< The filter byte of each row.

  explicit PngReader(const std::string& file) { error = read(file); }

  std::size_t bits_per_pixel() const {
    static constexpr std::size_t samples[] = {1, 0, 3, 1, 2, 0, 4};
    return samples[color_type] * static_cast<std::size_t>(depth);
  }
  std::size_t row_bytes() const { return (width * bits_per_pixel() + 7) / 8; }

 private:
  static std::uint32_t number(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
  }

  static std::uint32_t crc_of(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
      crc ^= static_cast<unsigned char>(byte);
      for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
    }
    return ~crc;
  }

  std::string read(const std::string& file) {
    if (file.compare(0, 8, std::string("\x89PNG\r\n\x1A\n", 8)) != 0) return "no signature";
    std::string data;
    std::size_t at = 8;
    while (file.size() - at >= 12) {
      const std::size_t length = number(file, at);
      if (length > file.size() - at - 12) return "a chunk leaves the file";
      const std::string_view chunk(file.data() + at + 4, length + 4);
      if (crc_of(chunk) != number(file, at + 8 + length)) return "wrong CRC";
      const std::string type(chunk.substr(0, 4));
      const std::string body(chunk.substr(4));
      if (type != "IDAT" || chunks.empty() || chunks.back() != "IDAT") chunks.push_back(type);
      if (type == "IHDR" && length == 13) {
        width = number(body, 0);
        height = number(body, 4);
        depth = body[8];
        color_type = body[9];
      }
      if (type == "PLTE") palette = body;
      if (type == "pHYs") resolution = body;
      if (type == "IDAT") data += body;
      at += length + 12;
    }
    if (at != file.size()) return "bytes after the last chunk";
    if (chunks.empty() || chunks.front() != "IHDR" || chunks.back() != "IEND") return "chunk order";
    return unfilter(inflate(data));
  }

  std::string inflate(std::string& data) const {
    std::string out((row_bytes() + 1) * height + 1, '\0');
    const auto state = std::make_unique<inflate_state>();
    isal_inflate_init(state.get());
    state->crc_flag = ISAL_ZLIB;
    state->next_in = reinterpret_cast<std::uint8_t*>(data.data());
    state->avail_in = static_cast<std::uint32_t>(data.size());
    state->next_out = reinterpret_cast<std::uint8_t*>(out.data());
    state->avail_out = static_cast<std::uint32_t>(out.size());
    if (isal_inflate(state.get()) != ISAL_DECOMP_OK) return {};
    if (state->block_state != ISAL_BLOCK_FINISH || state->avail_in != 0) return {};
    out.resize(out.size() - state->avail_out);
    return out;
  }

  static int paeth(int a, int b, int c) {
    const int p = a + b - c;
    const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
    return pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
  }

  std::string unfilter(const std::string& data) {
    const std::size_t n = row_bytes(), step = (bits_per_pixel() + 7) / 8;
    if (data.size() != (n + 1) * height) return "the image data is broken or of the wrong length";
    for (std::size_t y = 0; y < height; ++y) {
      filters += data[y * (n + 1)];
      for (std::size_t i = 0; i < n; ++i) {
        const auto byte_at = [&](std::size_t back, bool there) { return there ? static_cast<unsigned char>(rows[rows.size() - back]) : 0; };
        const int left = byte_at(step, i >= step), up = byte_at(n, y > 0);
        const int corner = byte_at(n + step, i >= step && y > 0);
        const int guess[] = {0, left, up, (left + up) / 2, paeth(left, up, corner)};
        const int filter = filters.back();
        if (filter < 0 || filter > 4) return "no such filter";
        rows += static_cast<char>(data[y * (n + 1) + 1 + i] + guess[filter]);
      }
    }
    return {};
  }
};
