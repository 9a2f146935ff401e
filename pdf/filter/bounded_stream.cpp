// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/bounded_stream.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

class BoundedStream final : public CPDFStream {
 public:
  BoundedStream(std::unique_ptr<CPDFStream> stream, std::int64_t most,
                std::shared_ptr<CPDFDecodeReport> report)
      : stream_(std::move(stream)), left_(most), report_(std::move(report)) {
    kind = stream_->kind;
    length = stream_->length;
  }

  void open() override { stream_->open(); }
  void close() override { stream_->close(); }

  int read_block(void* dst, int n) override {
    const auto wanted = static_cast<int>(std::min<std::int64_t>(n, left_));
    const int got = std::clamp(stream_->read_block(dst, wanted), 0, wanted);
    left_ -= got;
    if (got < n && left_ == 0) report_->note("a filter delivers more than the limits allow");
    return got;
  }

 private:
  std::unique_ptr<CPDFStream> stream_;
  std::int64_t left_;
  std::shared_ptr<CPDFDecodeReport> report_;
};

}  // namespace

std::unique_ptr<CPDFStream> pdfbmp::make_bounded_stream(std::unique_ptr<CPDFStream> stream,
                                                        std::int64_t most,
                                                        std::shared_ptr<CPDFDecodeReport> report) {
  return std::unique_ptr<CPDFStream>(new (std::nothrow)
                                         BoundedStream(std::move(stream), most, std::move(report)));
}
