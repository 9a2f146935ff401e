// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <qpdf/InputSource.hh>
#include <string>
#include <vector>

#include "pdf/filter/source.h"

/// What the PDF parser reads: a source from `base` on, with `suffix` put behind its last byte.
/// Reads go through one window, since the parser asks for a hundred bytes at a time.
class CPDFQpdfSource final : public InputSource {
 public:
  CPDFQpdfSource(std::shared_ptr<CPDFSource> source, std::int64_t base, std::string suffix);

  qpdf_offset_t findAndSkipNextEOL() override;
  std::string const& getName() const override { return name_; }
  qpdf_offset_t tell() override { return position_; }
  void seek(qpdf_offset_t offset, int whence) override;
  void rewind() override { position_ = 0; }
  size_t read(char* to, size_t length) override;
  void unreadCh(char ch) override;

 private:
  std::int64_t size() const { return file_bytes_ + static_cast<std::int64_t>(suffix_.size()); }
  std::int64_t copy_at(std::int64_t offset, char* dst, std::int64_t n);
  bool fill(std::int64_t offset);

  std::shared_ptr<CPDFSource> source_;
  std::int64_t base_;
  std::int64_t file_bytes_;  ///< Of the source, from `base_` on.
  std::string suffix_;
  std::string name_ = "PDF";
  std::int64_t position_ = 0;
  std::vector<char> window_;
  std::int64_t window_start_ = 0;
  std::int64_t window_bytes_ = 0;
};
