// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/dct.h"

#include <cstdint>
#include <new>
#include <utility>

#include "pdf/filter/dct_decoder.h"
#include "pdf/filter/declared_size.h"
#include "pdf/filter/parms.h"
#include "pdf/filter/row_bytes.h"
#include "pdf/filter/window_stream.h"

namespace {

class DCTStream : public CPDFWindowStream {
 public:
  DCTStream(std::unique_ptr<CPDFStream> input, const CPDFFilterSetup& setup)
      : CPDFWindowStream(setup.report, 1),
        size_(pdfbmp::declared_size(setup)),
        color_transform_(pdfbmp::int_parm(setup.parms, setup.xref, "ColorTransform", -1)),
        limits_(setup.limits),
        file_bytes_(setup.file_bytes),
        decoder_(std::move(input), size_.height > max_side ? 0 : size_.height) {}

 protected:
  int produce(unsigned char* dst, int capacity) override {
    if (!started_ && !start()) return 0;
    const int n = rows_.read(dst, capacity, [&](unsigned char* row) { return next_row(row); });
    if (n > 0 || y_ == size_.height) return n;
    const char* const problem = decoder_.problem();
    return stop(problem != nullptr ? problem : "the JPEG has fewer rows than the image");
  }

 private:
  static constexpr int max_side = 65500;  // A JPEG's own bound.

  bool start() {
    started_ = true;
    if (!decoder_.start(color_transform_, limits_, file_bytes_)) {
      stop(decoder_.problem());
      return false;
    }
    if (size_.width == 0) size_.width = decoder_.width();
    if (size_.height == 0) size_.height = decoder_.height();
    const std::int64_t step = decoder_.components();
    if (!rows_.set_size(decoder_.width() * step, size_.width * step)) {
      stop("no memory for a row");
      return false;
    }
    if (decoder_.coarse()) note(decoder_.problem());
    return true;
  }

  bool next_row(unsigned char* row) {
    if (y_ == size_.height || !decoder_.next_row(row)) return false;
    ++y_;
    return true;
  }

  pdfbmp::DeclaredSize size_;
  int color_transform_;
  CPDFFilterLimits limits_;
  std::int64_t file_bytes_;
  CPDFJpegDecoder decoder_;
  CPDFRowBytes rows_;
  int y_ = 0;
  bool started_ = false;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_dct(std::unique_ptr<CPDFStream> input,
                                     const CPDFFilterSetup& setup) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow) DCTStream(std::move(input), setup));
}

}  // namespace pdfbmp
