// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/run_length.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "pdf/filter/input.h"
#include "pdf/filter/window_stream.h"

namespace {

constexpr int end_of_data = 128;
constexpr int longest_run = 128;

class RunLengthStream : public CPDFWindowStream {
 public:
  RunLengthStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report), input_(std::move(input)) {}

 private:
  int produce(unsigned char* dst, int capacity) override {
    int made = 0;
    while (!finished_ && capacity - made >= longest_run) {
      const int code = input_.get();
      if (code == end_of_data) {
        finished_ = true;
      } else if (code < 0) {
        end_early();
      } else if (code < end_of_data) {
        made += copy(dst + made, code + 1);
      } else {
        made += repeat(dst + made, 257 - code);
      }
    }
    return made;
  }

  int copy(unsigned char* dst, int n) {
    int done = 0;
    while (done < n) {
      if (input_.cursor == input_.end && !input_.fill()) {
        end_early();
        break;
      }
      const int k =
          static_cast<int>(std::min<std::ptrdiff_t>(n - done, input_.end - input_.cursor));
      std::memcpy(dst + done, input_.cursor, static_cast<std::size_t>(k));
      input_.cursor += k;
      done += k;
    }
    return done;
  }

  int repeat(unsigned char* dst, int n) {
    const int value = input_.get();
    if (value < 0) {
      end_early();
      return 0;
    }
    std::memset(dst, value, static_cast<std::size_t>(n));
    return n;
  }

  void end_early() {
    finished_ = true;
    stop("the RunLength data has no end marker");
  }

  CPDFInput input_;
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_run_length(std::unique_ptr<CPDFStream> input,
                                            const CPDFFilterSetup& setup) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow) RunLengthStream(std::move(input), setup));
}

}  // namespace pdfbmp
