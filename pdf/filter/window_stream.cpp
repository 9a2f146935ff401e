// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/window_stream.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "kx/alloc.h"

CPDFWindowStream::CPDFWindowStream(std::shared_ptr<CPDFDecodeReport> report, int least,
                                   bool look_ahead)
    : report_(std::move(report)), least_(std::max(least, 1)), look_ahead_(look_ahead) {
  kind = 1;
}

void CPDFWindowStream::close() {
  CPDFStream::close();
  ended_ = true;
  stopped_ = nullptr;
}

int CPDFWindowStream::read_block(void* dst, int n) {
  auto* out = static_cast<unsigned char*>(dst);
  int done = 0;
  while (done < n) {
    if (remaining > 0) {
      const int k = std::min(remaining, n - done);
      std::memcpy(out + done, cursor, static_cast<std::size_t>(k));
      cursor += k;
      remaining -= k;
      done += k;
    } else if (ended_) {
      break;
    } else if (n - done >= least_) {
      const int k = produce(out + done, n - done);
      if (k < 1) ended_ = true;
      done += std::max(k, 0);
    } else if (!fill()) {
      break;
    }
  }
  if (look_ahead_ && remaining == 0 && done > 0 && !ended_) fill();
  if (done == 0 && n > 0 && stopped_ != nullptr) note(std::exchange(stopped_, nullptr));
  return done;
}

bool CPDFWindowStream::fill() {
  const int size = std::max(least_, window_bytes);
  if (data == nullptr) {
    data = static_cast<unsigned char*>(KXAlloc(static_cast<std::size_t>(size)));
    if (data == nullptr) {
      ended_ = true;
      note("no memory for a stream's window");
      return false;
    }
    data_borrowed = 0;
  }
  cursor = data;
  remaining = std::clamp(produce(data, size), 0, size);
  if (remaining == 0) ended_ = true;
  return remaining > 0;
}

void CPDFWindowStream::note(const char* what) {
  if (report_ != nullptr) report_->note(what);
}

int CPDFWindowStream::stop(const char* why) {
  stopped_ = why;
  return 0;
}

namespace pdfbmp {

int read_fully(CPDFStream& stream, void* dst, int n) {
  auto* out = static_cast<unsigned char*>(dst);
  int done = 0;
  while (done < n) {
    const int k = stream.read_block(out + done, n - done);
    if (k < 1) break;
    done += std::min(k, n - done);
  }
  return done;
}

}  // namespace pdfbmp
