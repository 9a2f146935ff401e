// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/source_stream.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "pdf/filter/window_stream.h"

namespace {

class SourceStream : public CPDFWindowStream {
 public:
  SourceStream(std::shared_ptr<CPDFSource> source, std::int64_t offset, std::int64_t bytes)
      : CPDFWindowStream(nullptr), source_(std::move(source)), offset_(offset), left_(bytes) {
    length = static_cast<int>(std::min<std::int64_t>(bytes, std::numeric_limits<int>::max()));
  }

 private:
  int produce(unsigned char* dst, int capacity) override {
    const std::int64_t want = std::min<std::int64_t>(capacity, left_);
    const std::int64_t got = source_->read_at(offset_, dst, want);
    offset_ += got;
    left_ -= got;
    return static_cast<int>(got);
  }

  std::shared_ptr<CPDFSource> source_;
  std::int64_t offset_;
  std::int64_t left_;
};

}  // namespace

namespace pdfbmp {

std::unique_ptr<CPDFStream> make_source_stream(std::shared_ptr<CPDFSource> source,
                                               std::int64_t offset, std::int64_t length) {
  if (source == nullptr) return nullptr;
  const std::int64_t start = std::clamp<std::int64_t>(offset, 0, source->size());
  const std::int64_t bytes =
      std::clamp<std::int64_t>(offset < 0 ? 0 : length, 0, source->size() - start);
  return std::unique_ptr<CPDFStream>(new (std::nothrow)
                                         SourceStream(std::move(source), start, bytes));
}

}  // namespace pdfbmp
