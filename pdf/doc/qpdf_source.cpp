// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/qpdf_source.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::int64_t window_size = 64 * 1024;

}  // namespace

CPDFQpdfSource::CPDFQpdfSource(std::shared_ptr<CPDFSource> source, std::int64_t base,
                               std::string suffix)
    : source_(std::move(source)),
      base_(base),
      file_bytes_(std::max<std::int64_t>(0, source_->size() - base)),
      suffix_(std::move(suffix)),
      window_(window_size) {}

bool CPDFQpdfSource::fill(std::int64_t offset) {
  // A window before the offset too: tokens are often read a little backwards.
  window_start_ = std::max<std::int64_t>(0, offset - window_size / 8);
  window_bytes_ = source_->read_at(base_ + window_start_, window_.data(),
                                   std::min(window_size, file_bytes_ - window_start_));
  return offset < window_start_ + window_bytes_;
}

std::int64_t CPDFQpdfSource::copy_at(std::int64_t offset, char* dst, std::int64_t n) {
  if (offset >= file_bytes_) {
    const std::int64_t from = offset - file_bytes_;
    const std::int64_t have = static_cast<std::int64_t>(suffix_.size()) - from;
    const std::int64_t count = std::min(n, have);
    if (count <= 0) return 0;
    std::memcpy(dst, suffix_.data() + from, static_cast<std::size_t>(count));
    return count;
  }
  const bool inside = offset >= window_start_ && offset < window_start_ + window_bytes_;
  if (!inside && !fill(offset)) return 0;
  const std::int64_t count = std::min(n, window_start_ + window_bytes_ - offset);
  std::memcpy(dst, window_.data() + (offset - window_start_), static_cast<std::size_t>(count));
  return count;
}

size_t CPDFQpdfSource::read(char* to, size_t length) {
  setLastOffset(position_);
  const auto wanted = static_cast<std::int64_t>(
      std::min<std::uint64_t>(length, static_cast<std::uint64_t>(INT64_MAX)));
  std::int64_t done = 0;
  while (done < wanted) {
    const std::int64_t n = copy_at(position_, to + done, wanted - done);
    if (n == 0) break;
    done += n;
    position_ += n;
  }
  // As a file does: whoever read past the end stands at the end.
  if (done == 0 && wanted > 0) position_ = std::max(position_, size());
  return static_cast<size_t>(done);
}

void CPDFQpdfSource::seek(qpdf_offset_t offset, int whence) {
  const std::int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : size();
  std::int64_t target = 0;
  if (__builtin_add_overflow(from, offset, &target) || target < 0) {
    throw std::runtime_error("seek before the beginning of the file");
  }
  position_ = target;
}

qpdf_offset_t CPDFQpdfSource::findAndSkipNextEOL() {
  const auto is_eol = [](char c) { return c == '\r' || c == '\n'; };
  char c = 0;
  while (copy_at(position_, &c, 1) == 1 && !is_eol(c)) ++position_;
  const std::int64_t found = position_;
  while (copy_at(position_, &c, 1) == 1 && is_eol(c)) ++position_;
  return found;
}

void CPDFQpdfSource::unreadCh(char) {
  if (position_ > 0) --position_;
}
