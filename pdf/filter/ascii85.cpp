// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/ascii85.h"

#include <cstdint>
#include <new>
#include <utility>

#include "pdf/filter/input.h"
#include "pdf/filter/white_space.h"
#include "pdf/filter/window_stream.h"

namespace {

class ASCII85Stream : public CPDFWindowStream {
 public:
  ASCII85Stream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report), input_(std::move(input)) {}

 private:
  int produce(unsigned char* dst, int capacity) override {
    int made = 0;
    while (!finished_ && capacity - made >= 4) {
      const int c = input_.get();
      if (c >= '!' && c <= 'u') {
        group_ = group_ * 85 + static_cast<unsigned>(c - '!');
        if (++digits_ == 5) made += flush(dst + made);
      } else if (c == 'z' && digits_ == 0) {
        digits_ = 5;
        made += flush(dst + made);
      } else if (!pdfbmp::is_white_space(c)) {
        made += finish(c, dst + made);
      }
    }
    return made;
  }

  /// The bytes of the group so far: one fewer than its digits. The sum is taken in 64 bits, since
  /// five digits reach beyond 2^32.
  int flush(unsigned char* dst) {
    const int bytes = digits_ - 1;
    for (; digits_ < 5; ++digits_) group_ = group_ * 85 + 84;
    if (group_ > UINT32_MAX) {
      finished_ = true;
      note("a group of the ASCII85 data is out of range");
      return 0;
    }
    for (int i = 0; i < bytes; ++i) {
      dst[i] = static_cast<unsigned char>(group_ >> (24 - 8 * i));
    }
    group_ = 0;
    digits_ = 0;
    return bytes;
  }

  /// What stands where no digit does: the end marker, whose second character need not be there, the
  /// end of the input, or damage. A last group of one digit holds no byte.
  int finish(int c, unsigned char* dst) {
    const int made = digits_ > 1 ? flush(dst) : 0;
    finished_ = true;
    if (c < 0) {
      stop("the ASCII85 data has no end marker");
    } else if (c != '~') {
      note("the ASCII85 data is damaged");
    }
    return made;
  }

  CPDFInput input_;
  std::uint64_t group_ = 0;
  int digits_ = 0;
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_ascii85(std::unique_ptr<CPDFStream> input,
                                         const CPDFFilterSetup& setup) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow) ASCII85Stream(std::move(input), setup));
}

}  // namespace pdfbmp
