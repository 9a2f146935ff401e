// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/encoders/encoders.h"

#include <cstdint>
#include <cstdlib>
#include <isa-l/igzip_lib.h>
#include <map>
#include <memory>

namespace encoders {

std::string pack_bits(const std::string& bits) {
  std::string bytes((bits.size() + 7) / 8, '\0');
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (bits[i] == '1') bytes[i / 8] = static_cast<char>(bytes[i / 8] | 0x80 >> (i % 8));
  }
  return bytes;
}

std::string encode_ascii85(const std::string& bytes) {
  std::string out;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    const std::size_t n = bytes.size() - i < 4 ? bytes.size() - i : 4;
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      group = group << 8 | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    std::string digits;
    for (int k = 0; k < 5; ++k, group /= 85) {
      digits.insert(digits.begin(), static_cast<char>('!' + group % 85));
    }
    out += n == 4 && digits == "!!!!!" ? "z" : digits.substr(0, n + 1);
    if (i % 60 == 0) out += '\n';
  }
  return out + "~>";
}

std::string encode_ascii_hex(const std::string& bytes) {
  std::string out;
  for (const char c : bytes) {
    const unsigned value = static_cast<unsigned char>(c);
    out += "0123456789abcdef"[value >> 4];
    out += "0123456789ABCDEF"[value & 15];
    if (value % 7 == 0) out += "\r\n";
  }
  return out + ">";
}

std::string encode_run_length(const std::string& bytes) {
  std::string out;
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t run = 1;
    while (i + run < bytes.size() && run < 128 && bytes[i + run] == bytes[i]) ++run;
    if (run > 1) {
      out += static_cast<char>(257 - run);
      out += bytes[i];
    } else {
      while (i + run < bytes.size() && run < 128 && bytes[i + run] != bytes[i + run - 1]) ++run;
      out += static_cast<char>(run - 1);
      out += bytes.substr(i, run);
    }
    i += run;
  }
  return out + '\x80';
}

std::string encode_lzw(const std::string& bytes, int early_change, bool full_table, bool markers) {
  std::string out;
  unsigned bits = 0;
  int bit_count = 0;
  int width = 9;
  const auto put = [&](int code) {
    bits = bits << width | static_cast<unsigned>(code);
    for (bit_count += width; bit_count >= 8; bit_count -= 8) {
      out += static_cast<char>(bits >> (bit_count - 8) & 255);
    }
  };
  std::map<std::string, int> table;
  int next = 0;
  const auto clear = [&] {
    table.clear();
    for (int i = 0; i < 256; ++i) table[std::string(1, static_cast<char>(i))] = i;
    next = 258;
    width = 9;
  };
  clear();
  if (markers) put(256);
  // The reader's table is one string behind this one: it adds a string with the code after it.
  const auto widen = [&] {
    if (next - 1 + early_change >= 1 << width && width < 12) ++width;
  };
  std::string current;
  for (const char c : bytes) {
    if (table.count(current + c) != 0) {
      current += c;
      continue;
    }
    put(table[current]);
    if (next < 4096) {
      table[current + c] = next++;
      widen();
    } else if (!full_table) {
      put(256);
      clear();
    }
    current = c;
  }
  if (!current.empty()) {
    put(table[current]);
    if (next < 4096) ++next;
    widen();
  }
  if (markers) put(257);
  if (bit_count > 0) out += static_cast<char>(bits << (8 - bit_count) & 255);
  return out;
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
          rows[static_cast<std::size_t>(row) * static_cast<std::size_t>(row_bytes) +
               static_cast<std::size_t>(i)])};
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
  const std::size_t samples_in_row =
      static_cast<std::size_t>(row_bytes) * 8 / static_cast<std::size_t>(bits);
  const std::size_t width = static_cast<std::size_t>(bits);
  const unsigned mask = (1U << bits) - 1;
  const auto sample = [&](std::size_t row, std::size_t i) {
    unsigned value = 0;
    for (std::size_t k = 0; k < width; ++k) {
      const std::size_t bit = (row * static_cast<std::size_t>(row_bytes)) * 8 + i * width + k;
      value =
          value << 1 | (unsigned{static_cast<unsigned char>(rows[bit / 8])} >> (7 - bit % 8) & 1U);
    }
    return value;
  };
  for (std::size_t y = 0; y * static_cast<std::size_t>(row_bytes) < rows.size(); ++y) {
    for (std::size_t i = 0; i < samples_in_row; ++i) {
      const std::size_t step = static_cast<std::size_t>(colors);
      const unsigned value = (sample(y, i) - (i >= step ? sample(y, i - step) : 0)) & mask;
      for (std::size_t k = 0; k < width; ++k) {
        const std::size_t bit = (y * static_cast<std::size_t>(row_bytes)) * 8 + i * width + k;
        if ((value >> (width - 1 - k) & 1U) != 0) {
          out[bit / 8] = static_cast<char>(out[bit / 8] | 0x80 >> (bit % 8));
        }
      }
    }
  }
  return out;
}

}  // namespace encoders
