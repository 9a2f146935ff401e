// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <memory>
#include <new>
#include <utility>

#include "pdf/filter/filter_table.h"
#include "pdf/filter/measured_stream.h"
#include "pdf/obj/stream.h"

namespace {

// The base's `data` is the encoded input, so that a caller who sets `data_borrowed` to 0 hands it
// over; the filter reads it through a stream of its own.
class InlineStream : public CPDFStream, public CPDFReportedStream {
 public:
  InlineStream(unsigned char* bytes, int count, std::shared_ptr<CPDFDecodeReport> report)
      : CPDFStream(bytes, count, 1), CPDFReportedStream(std::move(report)) {
    kind = 1;
  }

  void set_decoder(std::unique_ptr<CPDFStream> decoder) { decoder_ = std::move(decoder); }

  void close() override {
    decoder_.reset();
    CPDFStream::close();
  }

  int read_block(void* dst, int n) override {
    return decoder_ != nullptr ? read_counted(*decoder_, dst, n) : 0;
  }

 private:
  std::unique_ptr<CPDFStream> decoder_;
};

}  // namespace

CPDFStream* CPDFStream::make_inline_stream(unsigned char* data, int len, const char* filter,
                                           const CPDFDictionary* parms) {
  if (filter == nullptr) return new (std::nothrow) CPDFStream(data, len, 1);
  const pdfbmp::FilterEntry* const entry = pdfbmp::find_filter(filter);
  if (entry == nullptr) return nullptr;
  CPDFFilterSetup setup;
  setup.parms = parms;
  setup.file_bytes = len;
  try {
    setup.report = std::make_shared<CPDFDecodeReport>();
  } catch (...) {
    return nullptr;
  }
  std::unique_ptr<InlineStream> stream(new (std::nothrow) InlineStream(data, len, setup.report));
  std::unique_ptr<CPDFStream> input(new (std::nothrow) CPDFStream(data, len, 1));
  if (stream == nullptr || input == nullptr) return nullptr;
  std::unique_ptr<CPDFStream> decoder = entry->make(std::move(input), setup);
  if (decoder == nullptr) return nullptr;
  stream->set_decoder(std::move(decoder));
  return stream.release();
}
