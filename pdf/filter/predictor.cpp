// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/predictor.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "kx/alloc.h"
#include "pdf/filter/parms.h"
#include "pdf/filter/png_rows.h"
#include "pdf/filter/tiff_rows.h"
#include "pdf/filter/window_stream.h"

namespace {

struct RowShape {
  int bytes;  // Of a decoded row, without a PNG row's filter type.
  int colors;
  int bits;  // Of a sample.
  bool png;  // Otherwise TIFF.
};

// Rows are read whole and finished in place. A PNG row keeps the row above it for the next.
class PredictorStream : public CPDFWindowStream {
 public:
  PredictorStream(std::unique_ptr<CPDFStream> decoded, const CPDFFilterSetup& setup,
                  const RowShape& shape)
      : CPDFWindowStream(setup.report, shape.bytes), decoded_(std::move(decoded)), shape_(shape) {
    length = decoded_->length;
  }
  ~PredictorStream() override {
    KXFree(row_);
    KXFree(above_);
  }
  PredictorStream(const PredictorStream&) = delete;
  PredictorStream& operator=(const PredictorStream&) = delete;

  bool allocate() {
    // The byte of the filter type, the row, and what the row functions may read after it.
    const std::size_t size = std::size_t{1} + static_cast<std::size_t>(shape_.bytes) +
                             static_cast<std::size_t>(pdfbmp::png_row_slack);
    row_ = static_cast<unsigned char*>(KXCalloc(size, 1));
    if (shape_.png) above_ = static_cast<unsigned char*>(KXCalloc(size, 1));
    return row_ != nullptr && (!shape_.png || above_ != nullptr);
  }

 private:
  int produce(unsigned char* dst, int capacity) override {
    int done = 0;
    while (capacity - done >= shape_.bytes) {
      const int n = shape_.png ? png_row() : tiff_row();
      if (n < 1) break;
      std::memcpy(dst + done, row_ + 1, static_cast<std::size_t>(n));
      if (shape_.png) std::swap(row_, above_);
      done += n;
      if (n < shape_.bytes) break;
    }
    return done;
  }

  int png_row() {
    const int n = pdfbmp::read_fully(*decoded_, row_, shape_.bytes + 1) - 1;
    if (n < 1) return 0;
    if (row_[0] > 4) note("a row has an unknown PNG predictor");
    const int step = (shape_.colors * shape_.bits + 7) / 8;
    pdfbmp::undo_png_row(row_[0], row_ + 1, above_ + 1, n, step);
    return n;
  }

  int tiff_row() {
    const int n = pdfbmp::read_fully(*decoded_, row_ + 1, shape_.bytes);
    pdfbmp::undo_tiff_row(row_ + 1, n, shape_.colors, shape_.bits);
    return n;
  }

  std::unique_ptr<CPDFStream> decoded_;
  RowShape shape_;
  unsigned char* row_ = nullptr;
  unsigned char* above_ = nullptr;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> add_predictor(std::unique_ptr<CPDFStream> decoded,
                                          const CPDFFilterSetup& setup) {
  const int predictor = int_parm(setup.parms, setup.xref, "Predictor", 1);
  if (predictor == 1) return decoded;
  const int colors = int_parm(setup.parms, setup.xref, "Colors", 1);
  const int bits = int_parm(setup.parms, setup.xref, "BitsPerComponent", 8);
  const int columns = int_parm(setup.parms, setup.xref, "Columns", 1);
  if (predictor != 2 && (predictor < 10 || predictor > 15)) {
    setup.report->note("the predictor is unknown");
    return nullptr;
  }
  const bool known_bits = bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16;
  constexpr int most_colors = 1 << 16;  // Keeps the products below within 64 bits.
  if (!known_bits || colors < 1 || colors > most_colors || columns < 1) {
    setup.report->note("the parameters of the predictor are out of range");
    return nullptr;
  }
  const std::int64_t bytes = (std::int64_t{columns} * colors * bits + 7) / 8;
  const std::int64_t most = std::min<std::int64_t>(setup.limits.max_codec_bytes / 2,
                                                   std::numeric_limits<int>::max() - 64);
  if (bytes > most) {
    setup.report->note("a row of the predictor is beyond the limits");
    return nullptr;
  }
  const RowShape shape = {static_cast<int>(bytes), colors, bits, predictor >= 10};
  std::unique_ptr<PredictorStream> stream(new (std::nothrow)
                                              PredictorStream(std::move(decoded), setup, shape));
  if (stream == nullptr || !stream->allocate()) {
    setup.report->note("no memory for a row of the predictor");
    return nullptr;
  }
  return stream;
}

}  // namespace pdfbmp
