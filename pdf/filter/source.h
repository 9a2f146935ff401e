// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "kx/api.h"

/// The bytes of a PDF file, or of a piece of one, at random access. Any number of threads may read
/// one source at a time. Nothing throws.
class PDFBMP_API CPDFSource {
 public:
  virtual ~CPDFSource() = default;

  /// Bytes in the source when it was opened.
  virtual std::int64_t size() const = 0;

  /// Copies up to `n` bytes from `offset` to `dst` and returns how many; 0 past the end, or where
  /// the file can no longer be read.
  virtual std::int64_t read_at(std::int64_t offset, void* dst, std::int64_t n) const = 0;
};

namespace pdfbmp {

/// A file, read with pread and never mapped: one that is cut short while it is read ends early and
/// raises no signal. Null, with the reason in `error`, where it cannot be opened or is no file
/// that can be read at an offset.
PDFBMP_API std::shared_ptr<CPDFSource> open_file_source(const std::string& path,
                                                        std::string& error);

/// Bytes in memory, owned by the source.
PDFBMP_API std::shared_ptr<CPDFSource> make_memory_source(std::string bytes);

}  // namespace pdfbmp
