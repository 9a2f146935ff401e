// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdint>
#include <map>

#include "tests/pdf/filter/samples.h"

namespace filter_test {

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
    for (std::size_t k = 0; k < 4; ++k) { group = group << 8 | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0U); }
    std::string digits;
    for (int k = 0; k < 5; ++k, group /= 85) { digits.insert(digits.begin(), static_cast<char>('!' + group % 85)); }
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
    for (bit_count += width; bit_count >= 8; bit_count -= 8) { out += static_cast<char>(bits >> (bit_count - 8) & 255); }
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

}  // namespace filter_test
