// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/input.h"

#include <algorithm>
#include <utility>

#include "kx/alloc.h"
#include "pdf/filter/window_stream.h"

CPDFInput::CPDFInput(std::unique_ptr<CPDFStream> stream) : stream_(std::move(stream)) {}

CPDFInput::~CPDFInput() { KXFree(buffer_); }

bool CPDFInput::fill() {
  // As large as a window, so that a filter below writes its piece straight into this buffer.
  constexpr int size = CPDFWindowStream::window_bytes;
  if (buffer_ == nullptr) {
    buffer_ = static_cast<unsigned char*>(KXAlloc(size));
    if (buffer_ == nullptr) return false;
  }
  const int n = std::clamp(stream_->read_block(buffer_, size), 0, size);
  begin = cursor = buffer_;
  end = buffer_ + n;
  if (n > 0) ++pieces;
  return n > 0;
}
