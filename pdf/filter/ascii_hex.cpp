// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/ascii_hex.h"

#include <new>
#include <utility>

#include "pdf/filter/input.h"
#include "pdf/filter/white_space.h"
#include "pdf/filter/window_stream.h"

namespace {

/// The value of a hexadecimal digit, -1 for any other character.
constexpr int digit(int c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

class ASCIIHexStream : public CPDFWindowStream {
 public:
  ASCIIHexStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report), input_(std::move(input)) {}

 private:
  int produce(unsigned char* dst, int capacity) override {
    int made = 0;
    while (!finished_ && made < capacity) {
      const int c = input_.get();
      const int value = digit(c);
      if (value >= 0) {
        if (high_ < 0) {
          high_ = value;
          continue;
        }
        dst[made++] = static_cast<unsigned char>(high_ << 4 | value);
        high_ = -1;
      } else if (!pdfbmp::is_white_space(c)) {
        made += finish(c, dst + made);
      }
    }
    return made;
  }

  /// An odd last digit counts as if a 0 followed it.
  int finish(int c, unsigned char* dst) {
    finished_ = true;
    if (c < 0) {
      stop("the ASCIIHex data has no end marker");
    } else if (c != '>') {
      note("the ASCIIHex data is damaged");
    }
    if (high_ < 0) return 0;
    *dst = static_cast<unsigned char>(high_ << 4);
    return 1;
  }

  CPDFInput input_;
  int high_ = -1;  // The first digit of a byte, where only that has come.
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_ascii_hex(std::unique_ptr<CPDFStream> input,
                                           const CPDFFilterSetup& setup) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow) ASCIIHexStream(std::move(input), setup));
}

}  // namespace pdfbmp
