// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/ccitt_row.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pdf/filter/ccitt_codes.h"

namespace {

// Every table is looked up with the next bits, as many as its longest code has. Entries are small,
// so that all tables together stay in the fastest cache; one of length 0 is no code.
class Entry {
 public:
  constexpr Entry() = default;
  constexpr Entry(int value, int length)
      : packed_(static_cast<std::uint16_t>((value + bias) << 4 | length)) {}
  constexpr int value() const { return (packed_ >> 4) - bias; }
  constexpr int length() const { return packed_ & 15; }

 private:
  static constexpr int bias = 3;  // The least value is -3, of a vertical mode.
  std::uint16_t packed_ = 0;
};

constexpr int white_bits = 12;
constexpr int black_bits = 13;
constexpr int mode_bits = 7;

template <int Bits>
using Table = std::array<Entry, std::size_t{1} << Bits>;

template <int Bits, std::size_t N>
constexpr void add(Table<Bits>& table, const pdfbmp::CCITTCode (&codes)[N]) {
  for (const pdfbmp::CCITTCode& code : codes) {
    std::size_t first = 0;
    int length = 0;
    for (; code.bits[length] != '\0'; ++length) first = first * 2 + (code.bits[length] == '1');
    const std::size_t span = std::size_t{1} << (Bits - length);
    for (std::size_t i = first * span; i < (first + 1) * span; ++i) {
      table[i] = Entry(code.value, length);
    }
  }
}

template <int Bits, std::size_t N>
constexpr Table<Bits> make_run_table(const pdfbmp::CCITTCode (&codes)[N]) {
  Table<Bits> table = {};
  add<Bits>(table, codes);
  add<Bits>(table, pdfbmp::ccitt_long_codes);
  return table;
}

constexpr Table<mode_bits> make_mode_table() {
  Table<mode_bits> table = {};
  add<mode_bits>(table, pdfbmp::ccitt_mode_codes);
  return table;
}

constexpr auto white_table = make_run_table<white_bits>(pdfbmp::ccitt_white_codes);
constexpr auto black_table = make_run_table<black_bits>(pdfbmp::ccitt_black_codes);
constexpr auto mode_table = make_mode_table();

// By colour, 0 white.
constexpr struct {
  const Entry* table;
  int bits;
} run_tables[] = {{white_table.data(), white_bits}, {black_table.data(), black_bits}};

/// The length of a run, or -1: no code, or longer than `most`.
int read_run(CCITTBits& bits, int color, int most) {
  const auto& codes = run_tables[color];
  int run = 0;
  for (;;) {
    bits.need();
    const Entry entry = codes.table[bits.peek(codes.bits)];
    if (entry.length() == 0) return -1;
    run += entry.value();
    if (run > most) return -1;
    bits.skip(entry.length());
    if (entry.value() < 64) return run;
  }
}

}  // namespace

namespace pdfbmp {

bool decode_ccitt_1d(CCITTBits& bits, CCITTRow& row, int columns) {
  row.count = 0;
  for (int place = 0; place < columns;) {
    const int run = read_run(bits, row.color(), columns - place);
    if (run < 0) return false;
    place += run;
    row.change(place);
  }
  row.finish(columns);
  return true;
}

// In T.4's words: a0 is the place up to which the row is known, b1 the first change of `above` to
// the right of a0 to the colour opposite to the row's at a0, b2 the change after it. Before the
// first pixel a0 lies one to the left of the row, so that a change at place 0 is to its right.
bool decode_ccitt_2d(CCITTBits& bits, const CCITTRow& above, CCITTRow& row, int columns) {
  const int* const changes = above.changes;
  int a0 = 0;
  int b1 = 0;  // As an index of `changes`; even as long as the row is white.
  row.count = 0;
  while (a0 < columns) {
    bits.need();
    const Entry mode = mode_table[bits.peek(mode_bits)];
    if (mode.length() == 0) return false;
    if (mode.value() == ccitt_pass) {
      bits.skip(mode.length());
      a0 = changes[b1 + 1];
      b1 += 2;
      continue;
    }
    if (mode.value() == ccitt_horizontal) {
      bits.skip(mode.length());
      for (int i = 0; i < 2; ++i) {
        const int run = read_run(bits, row.color(), columns - a0);
        if (run < 0) return false;
        a0 += run;
        row.change(a0);
      }
    } else {
      const int a1 = changes[b1] + mode.value();
      if (a1 < a0 || a1 > columns) return false;
      bits.skip(mode.length());
      a0 = a1;
      row.change(a0);
      // To the left of b1 the change before it may be the next b1, but none before that.
      b1 += mode.value() < 0 && b1 > 0 ? -1 : 1;
    }
    while (changes[b1] <= a0 && changes[b1] < columns) b1 += 2;
  }
  row.finish(columns);
  return true;
}

void paint_ccitt_row(const CCITTRow& row, int columns, bool black_is_1, unsigned char* dst) {
  const int white = black_is_1 ? 0 : 255;
  std::memset(dst, white, static_cast<std::size_t>((columns + 7) / 8));
  // Runs are inverted: whole bytes are set, those at the ends changed by their bits.
  const auto invert = [dst](int at, int mask) {
    dst[at] = static_cast<unsigned char>(dst[at] ^ mask);
  };
  for (int i = 0; i < row.count; i += 2) {
    const int from = row.changes[i];
    const int to = i + 1 < row.count ? row.changes[i + 1] : columns;
    const int first = from >> 3;
    const int last = to >> 3;
    const int from_mask = 255 >> (from & 7);
    const int to_mask = 255 & ~(255 >> (to & 7));
    if (first == last) {
      if (from < to) invert(first, from_mask & to_mask);
      continue;
    }
    invert(first, from_mask);
    std::memset(dst + first + 1, 255 - white, static_cast<std::size_t>(last - first - 1));
    if (to_mask != 0) invert(last, to_mask);
  }
}

}  // namespace pdfbmp
