// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/measured_stream.h"

#include <new>
#include <utility>

#include "pdf/filter/jpx_channels.h"
#include "pdf/filter/window_stream.h"
#include "pdf/filter/work_clock.h"
#include "pdf/obj/jpx_stream.h"

CPDFReportedStream::CPDFReportedStream(std::shared_ptr<CPDFDecodeReport> report)
    : report_(std::move(report)) {}

CPDFReportedStream::~CPDFReportedStream() = default;

int CPDFReportedStream::read_counted(CPDFStream& stream, void* dst, int n) {
  // A look at the clock takes as long as some hundred bytes.
  CPDFWorkClock* const clock = report_->clock.get();
  if (clock != nullptr && clock->is_over(64 + n / 4)) {
    report_->late = true;
    report_->note("it takes longer than the limits allow");
    return 0;
  }
  const int got = pdfbmp::read_fully(stream, dst, n);
  report_->bytes += got;
  return got;
}

namespace {

// Base is CPDFStream or CPDFStreamJPX, the class that the consumer looks for.
template <class Base>
class Measured : public Base, public CPDFReportedStream {
 public:
  Measured(std::unique_ptr<Base> stream, std::shared_ptr<CPDFDecodeReport> report)
      : CPDFReportedStream(std::move(report)), stream_(std::move(stream)) {
    this->length = stream_->length;
  }

  void open() override { stream_->open(); }
  void close() override { stream_->close(); }
  int read_block(void* dst, int n) override { return read_counted(*stream_, dst, n); }

 protected:
  std::unique_ptr<Base> stream_;
};

class MeasuredStream : public Measured<CPDFStream> {
 public:
  MeasuredStream(std::unique_ptr<CPDFStream> stream, std::shared_ptr<CPDFDecodeReport> report)
      : Measured(std::move(stream), std::move(report)) {
    kind = stream_->kind;
  }
};

class MeasuredJPX : public Measured<CPDFStreamJPX>, public CPDFJpxChannels {
 public:
  MeasuredJPX(std::unique_ptr<CPDFStreamJPX> stream, std::shared_ptr<CPDFDecodeReport> report)
      : Measured(std::move(stream), std::move(report)) {
    comp_count = stream_->comp_count;
    alpha_channel = stream_->alpha_channel;
  }

  int read_alpha(void* dst, int n) override { return stream_->read_alpha(dst, n); }

  bool deliver_all(int count) override {
    if (!pdfbmp::deliver_all_channels(*stream_, count)) return false;
    comp_count = count;
    return true;
  }
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_measured_stream(std::unique_ptr<CPDFStream> stream,
                                                 std::shared_ptr<CPDFDecodeReport> report) {
  if (auto* const jpx = dynamic_cast<CPDFStreamJPX*>(stream.get())) {
    std::unique_ptr<CPDFStreamJPX> owned(jpx);
    static_cast<void>(stream.release());  // It is `owned` now.
    return std::unique_ptr<CPDFStream>(new (std::nothrow)
                                           MeasuredJPX(std::move(owned), std::move(report)));
  }
  return std::unique_ptr<CPDFStream>(new (std::nothrow)
                                         MeasuredStream(std::move(stream), std::move(report)));
}

}  // namespace pdfbmp
