// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "pdf/filter/input.h"

/// The encoded bytes of a format that has to be read here and there, loaded from a stream as far as
/// they are needed and kept.
class CPDFLoadedBytes {
 public:
  CPDFLoadedBytes(std::unique_ptr<CPDFStream> stream, std::int64_t limit);
  ~CPDFLoadedBytes();
  CPDFLoadedBytes(const CPDFLoadedBytes&) = delete;
  CPDFLoadedBytes& operator=(const CPDFLoadedBytes&) = delete;

  /// Loads until there are `n` bytes; false where the data, the limit or memory ends before that.
  bool load(std::int64_t n);
  void load_all() { load(limit_); }

  bool at_end() const { return at_end_; }              ///< A load has met the end of the data.
  const unsigned char* data() const { return data_; }  ///< Good until the next load.
  std::int64_t size() const { return size_; }

  /// The big-endian number of `count` bytes (at most 4) at `at`; 0 where they cannot be loaded.
  std::uint32_t number(std::int64_t at, int count);

  /// Writes such a number of 4 bytes over loaded ones.
  void put_number(std::int64_t at, std::uint32_t value);

 private:
  bool grow(std::int64_t n);

  CPDFInput input_;
  std::int64_t limit_;
  std::int64_t size_ = 0, room_ = 0;
  bool at_end_ = false;
  unsigned char* data_ = nullptr;
};
