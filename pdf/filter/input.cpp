// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/input.h"

#include <algorithm>
#include <utility>

#include "kx/alloc.h"
#include "pdf/filter/window_stream.h"

CPDFInput::CPDFInput(std::unique_ptr<CPDFStream> stream) : stream_(std::move(stream)) {}

CPDFInput::~CPDFInput() { KXFree(buffer_); }

bool CPDFInput::fill(int least) {
  // As large as a window, so that a filter below writes its piece straight into this buffer.
  constexpr int size = CPDFWindowStream::window_bytes;
  if (buffer_ == nullptr) {
    buffer_ = static_cast<unsigned char*>(KXAlloc(size));
    if (buffer_ == nullptr) return false;
  }
  int n = 0;
  for (int got = 1; n < least && got > 0; n += got) {
    got = std::clamp(stream_->read_block(buffer_ + n, size - n), 0, size - n);
  }
  begin = cursor = buffer_;
  end = buffer_ + n;
  if (n > 0) ++pieces;
  return n > 0;
}
