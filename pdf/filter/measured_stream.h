// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "pdf/filter/filter.h"

/// What streams have that keep a report of what they delivered.
class CPDFReportedStream {
 public:
  explicit CPDFReportedStream(std::shared_ptr<CPDFDecodeReport> report);
  virtual ~CPDFReportedStream();
  const std::shared_ptr<CPDFDecodeReport>& report() const { return report_; }

 protected:
  /// As CPDFStream::read_block on `stream`, counted. A reader that gets too little at the end of
  /// damaged data has the damage in the report, without having to ask again.
  int read_counted(CPDFStream& stream, void* dst, int n);

 private:
  std::shared_ptr<CPDFDecodeReport> report_;
};

namespace pdfbmp {

/// A stream that delivers what `stream` does and counts it in the report. It is a CPDFStreamJPX
/// where `stream` is one. Null where memory failed.
std::unique_ptr<CPDFStream> make_measured_stream(std::unique_ptr<CPDFStream> stream,
                                                 std::shared_ptr<CPDFDecodeReport> report);

}  // namespace pdfbmp
