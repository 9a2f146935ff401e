// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/encoders/fax_encoder.h"

#include <cstdlib>

#include "tools/encoders/encoders.h"

namespace encoders {
namespace {

constexpr const char* end_of_line_code = "000000000001";

template <std::size_t N>
const char* find_code(const pdfbmp::CCITTCode (&codes)[N], int value) {
  for (const auto& code : codes) {
    if (code.value == value) return code.bits;
  }
  return nullptr;
}

class Encoder {
 public:
  explicit Encoder(const FaxOptions& options) : options_(options) {}

  void add_row(const std::string& row, const std::string& above, bool two_dimensional) {
    if (options_.end_of_line) {
      if (options_.align == FaxAlign::row) align(0);
      if (options_.align == FaxAlign::code) align(4);
      bits += end_of_line_code;
    } else if (options_.align != FaxAlign::none) {
      align(0);
    }
    if (options_.k > 0) bits += two_dimensional ? '0' : '1';
    if (two_dimensional) {
      add_2d(row, above);
    } else {
      add_1d(row);
    }
  }

  void add_end() {
    const int codes = options_.k < 0 ? 2 : 6;
    for (int i = 0; i < codes; ++i) {
      bits += end_of_line_code;
      if (options_.k > 0) bits += '1';
    }
  }

  std::string bits;

 private:
  void align(std::size_t to) {
    while (bits.size() % 8 != to) bits += '0';
  }

  void add_run(char color, int run) {
    for (; run > 2560; run -= 2560) bits += find_code(pdfbmp::ccitt_long_codes, 2560);
    if (run >= 64) {
      const int part = run / 64 * 64;
      const char* code = color == '1' ? find_code(pdfbmp::ccitt_black_codes, part)
                                      : find_code(pdfbmp::ccitt_white_codes, part);
      bits += code != nullptr ? code : find_code(pdfbmp::ccitt_long_codes, part);
      run -= part;
    }
    bits += color == '1' ? find_code(pdfbmp::ccitt_black_codes, run)
                         : find_code(pdfbmp::ccitt_white_codes, run);
  }

  void add_1d(const std::string& row) {
    char color = '0';
    for (std::size_t at = 0; at < row.size();) {
      std::size_t end = at;
      while (end < row.size() && row[end] == color) ++end;
      add_run(color, static_cast<int>(end - at));
      at = end;
      color = color == '0' ? '1' : '0';
    }
  }

  static char pixel(const std::string& row, int i) {
    return i < 0 ? '0' : row[static_cast<std::size_t>(i)];
  }

  /// The first change after `from`; to `color` only, where that is given.
  static int next_change(const std::string& row, int from, char color = 0) {
    const int width = static_cast<int>(row.size());
    for (int i = from + 1; i < width; ++i) {
      if (pixel(row, i) != pixel(row, i - 1) && (color == 0 || pixel(row, i) == color)) return i;
    }
    return width;
  }

  void add_2d(const std::string& row, const std::string& above) {
    const int width = static_cast<int>(row.size());
    char color = '0';
    for (int a0 = -1; a0 < width;) {
      int a1 = a0 < 0 ? 0 : a0;
      while (a1 < width && pixel(row, a1) == color) ++a1;
      const int b1 = next_change(above, a0, color == '0' ? '1' : '0');
      const int b2 = next_change(above, b1);
      if (b2 < a1) {
        bits += find_code(pdfbmp::ccitt_mode_codes, pdfbmp::ccitt_pass);
        a0 = b2;
      } else if (std::abs(a1 - b1) <= 3) {
        bits += find_code(pdfbmp::ccitt_mode_codes, a1 - b1);
        a0 = a1;
        color = color == '0' ? '1' : '0';
      } else {
        int a2 = a1;
        while (a2 < width && pixel(row, a2) != color) ++a2;
        bits += find_code(pdfbmp::ccitt_mode_codes, pdfbmp::ccitt_horizontal);
        add_run(color, a1 - (a0 < 0 ? 0 : a0));
        add_run(color == '0' ? '1' : '0', a2 - a1);
        a0 = a2;
      }
    }
  }

  FaxOptions options_;
};

}  // namespace

std::string encode_fax(const FaxRows& rows, const FaxOptions& options,
                       std::vector<std::size_t>* row_begins) {
  Encoder encoder(options);
  std::string above(rows.empty() ? 0 : rows[0].size(), '0');
  int row_number = 0;
  for (const std::string& row : rows) {
    if (row_begins != nullptr) row_begins->push_back(encoder.bits.size());
    const bool two_dimensional = options.k < 0 || (options.k > 0 && row_number % options.k != 0);
    encoder.add_row(row, above, two_dimensional);
    above = row;
    ++row_number;
  }
  if (options.end_of_block) encoder.add_end();
  return pack_bits(encoder.bits);
}

std::string pack_fax_rows(const FaxRows& rows, bool black_is_1) {
  std::string bytes;
  for (std::string row : rows) {
    for (char& c : row) {
      if (!black_is_1) c = c == '1' ? '0' : '1';
    }
    while (row.size() % 8 != 0) row += black_is_1 ? '0' : '1';
    bytes += pack_bits(row);
  }
  return bytes;
}

}  // namespace encoders
