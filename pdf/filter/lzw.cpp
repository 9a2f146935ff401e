// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/lzw.h"

#include <cstdint>
#include <new>
#include <utility>

#include "pdf/filter/input.h"
#include "pdf/filter/parms.h"
#include "pdf/filter/predictor.h"
#include "pdf/filter/window_stream.h"

namespace {

constexpr int clear_table = 256;
constexpr int end_of_data = 257;
constexpr int first_free = 258;
constexpr int table_size = 4096;
constexpr int narrowest = 9;
constexpr int widest = 12;

// A table that was never cleared is taken for a new one. Once it is full the codes stay 12 bits
// wide and nothing is added, until it is cleared: some writers go on with it.
class LZWStream : public CPDFWindowStream {
 public:
  LZWStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report),
        input_(std::move(input)),
        early_(pdfbmp::int_parm(setup.parms, setup.xref, "EarlyChange", 1) != 0 ? 1 : 0) {
    for (int i = 0; i < first_free; ++i) {
      table_[i] = {0, 1, static_cast<unsigned char>(i), static_cast<unsigned char>(i)};
    }
  }

 private:
  // A string is the one of its prefix and a last byte. Strings of the table stay shorter than it.
  struct String {
    std::uint16_t prefix;
    std::uint16_t length;
    unsigned char first;
    unsigned char last;
  };

  int produce(unsigned char* dst, int capacity) override {
    int made = 0;
    while (!finished_ && capacity - made >= table_size) {
      const int code = next_code();
      if (code == clear_table) {
        next_ = first_free;
        width_ = narrowest;
        previous_ = -1;
      } else if (code < 0 || code == end_of_data) {
        finished_ = true;
        if (code < 0) stop("the LZW data has no end marker");
      } else if (code > next_ || (code == next_ && (previous_ < 0 || next_ == table_size))) {
        finished_ = true;
        note("the LZW data is damaged");
      } else {
        add(code);
        made += put(code, dst + made);
        previous_ = code;
      }
    }
    return made;
  }

  /// -1 at the end of the input; bits that make no whole code are none.
  int next_code() {
    while (bit_count_ < width_) {
      const int c = input_.get();
      if (c < 0) return -1;
      bits_ = bits_ << 8 | static_cast<unsigned>(c);
      bit_count_ += 8;
    }
    bit_count_ -= width_;
    return static_cast<int>(bits_ >> bit_count_ & ((1U << width_) - 1));
  }

  /// Adds the string before this code, continued by the first byte of this one. That string may be
  /// the one of this very code.
  void add(int code) {
    if (previous_ < 0 || next_ == table_size) return;
    const String& before = table_[previous_];
    const unsigned char last = code == next_ ? before.first : table_[code].first;
    table_[next_] = {static_cast<std::uint16_t>(previous_),
                     static_cast<std::uint16_t>(before.length + 1), before.first, last};
    ++next_;
    if (next_ + early_ >= 1 << width_ && width_ < widest) ++width_;
  }

  int put(int code, unsigned char* dst) const {
    const int n = table_[code].length;
    for (int i = n - 1; i >= 0; --i) {
      dst[i] = table_[code].last;
      code = table_[code].prefix;
    }
    return n;
  }

  CPDFInput input_;
  String table_[table_size];
  std::uint32_t bits_ = 0;  // The lowest bit_count_ of them are still to be used.
  int bit_count_ = 0;
  int early_;
  int width_ = narrowest;
  int next_ = first_free;  // The code of the next string to be added.
  int previous_ = -1;      // The code before this one, -1 after a clear.
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_lzw(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup) {
  std::unique_ptr<CPDFStream> stream(new (std::nothrow) LZWStream(std::move(input), setup));
  if (stream == nullptr) {
    setup.report->note("no memory for an LZW stream");
    return nullptr;
  }
  return add_predictor(std::move(stream), setup);
}

}  // namespace pdfbmp
