// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/flate.h"

#include <cstddef>
#include <isa-l/igzip_lib.h>
#include <new>
#include <utility>

#include "kx/alloc.h"
#include "pdf/filter/input.h"
#include "pdf/filter/predictor.h"
#include "pdf/filter/window_stream.h"

namespace {

// Below 64 KiB of room the inflater keeps decoded bytes to itself, and loses them when it meets an
// error; at or above it everything before the error comes out. The window is just that large.
// It is filled ahead of the reader so that the checksum is seen with the last byte of the data.
class FlateStream : public CPDFWindowStream {
 public:
  FlateStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report, window_bytes, true), input_(std::move(input)) {}
  ~FlateStream() override { KXFree(state_); }
  FlateStream(const FlateStream&) = delete;
  FlateStream& operator=(const FlateStream&) = delete;

  bool allocate() {
    // Zeros: of broken data the inflater may deliver bytes of its own that it has never written.
    state_ = static_cast<inflate_state*>(KXCalloc(1, sizeof(inflate_state)));
    return state_ != nullptr;
  }

 private:
  // The ways to read the data, in order of trial.
  enum class Form { unknown, zlib, raw_after_header, raw, none };

  int produce(unsigned char* dst, int capacity) override {
    if (form_ == Form::unknown && !begin()) {
      return stop(input_.begin == nullptr ? "no memory for Flate data" : "the Flate data is empty");
    }
    while (!finished_) {
      if (input_.cursor == input_.end && !input_ended_) input_ended_ = !input_.fill();
      const unsigned char* const before = input_.cursor;
      int made = 0;
      const int result = inflate(dst, capacity, made);
      delivered_ = delivered_ || made > 0;
      finished_ = state_->block_state == ISAL_BLOCK_FINISH;
      if (result == ISAL_INCORRECT_CHECKSUM) {
        finished_ = true;
        note("the checksum of the Flate data is wrong");
      } else if (result != ISAL_DECOMP_OK && result != ISAL_END_INPUT &&
                 result != ISAL_OUT_OVERFLOW) {
        if (!delivered_ && input_.pieces == 1 && next_form()) continue;
        finished_ = true;
        note("the Flate data is damaged");
      }
      if (made > 0) return made;
      if (!finished_ && input_ended_ && input_.cursor == before) {
        finished_ = true;
        return stop("the Flate data ends early");
      }
    }
    return 0;
  }

  int inflate(unsigned char* dst, int capacity, int& made) {
    // The inflater's fields are not const; it only reads its input.
    state_->next_in = const_cast<unsigned char*>(input_.cursor);
    state_->avail_in = static_cast<std::uint32_t>(input_.end - input_.cursor);
    state_->next_out = dst;
    state_->avail_out = static_cast<std::uint32_t>(capacity);
    const int result = isal_inflate(state_);
    input_.cursor = input_.end - state_->avail_in;
    made = capacity - static_cast<int>(state_->avail_out);
    return result;
  }

  /// Looks at the two bytes of the zlib header (RFC 1950); false where there is no data.
  bool begin() {
    if (!input_.fill(2)) return false;
    const std::ptrdiff_t n = input_.end - input_.begin;
    const unsigned cmf = input_.begin[0];
    const unsigned flg = n > 1 ? input_.begin[1] : 0;
    deflate_method_ = (cmf & 15) == 8 && cmf >> 4 <= 7;
    if (deflate_method_ && (cmf * 256 + flg) % 31 == 0 && (flg & 0x20) == 0) {
      start(Form::zlib);
    } else {
      note("the header of the Flate data is damaged");
      start(deflate_method_ ? Form::raw_after_header : Form::raw);
    }
    return true;
  }

  /// After an error before any output: the data read in another way, from its first byte.
  bool next_form() {
    const auto next = static_cast<Form>(static_cast<int>(form_) + 1);
    if (next == Form::none || input_.end - input_.begin <= 2) return false;
    note("the header of the Flate data is damaged");
    start(next);
    return true;
  }

  void start(Form form) {
    form_ = form;
    isal_inflate_init(state_);
    state_->crc_flag = form == Form::zlib ? ISAL_ZLIB : ISAL_DEFLATE;
    const std::ptrdiff_t skip = form == Form::raw_after_header ? 2 : 0;
    input_.cursor = input_.end - input_.begin > skip ? input_.begin + skip : input_.begin;
  }

  CPDFInput input_;
  inflate_state* state_ = nullptr;  // 87 kB.
  Form form_ = Form::unknown;
  bool deflate_method_ = false;
  bool delivered_ = false;
  bool input_ended_ = false;
  bool finished_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_flate(std::unique_ptr<CPDFStream> input,
                                       const CPDFFilterSetup& setup) {
  std::unique_ptr<FlateStream> flate(new (std::nothrow) FlateStream(std::move(input), setup));
  if (flate == nullptr || !flate->allocate()) {
    setup.report->note("no memory for a Flate stream");
    return nullptr;
  }
  return add_predictor(std::move(flate), setup);
}

}  // namespace pdfbmp
