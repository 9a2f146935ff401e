// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "pdf/doc/raster.h"

/// Writes to an open file descriptor, which it does not own: a pipe, a terminal, an open file.
class PDFBMP_API CPDFDescriptorSink final : public CPDFByteSink {
 public:
  explicit CPDFDescriptorSink(int descriptor) : descriptor_(descriptor) {}

  /// After the first failure nothing more is written.
  bool write(const void* bytes, std::size_t n) override;

  std::int64_t written() const { return written_; }

  /// Why a write failed, in words; empty where none did.
  const std::string& error() const { return error_; }

 private:
  int descriptor_;
  std::int64_t written_ = 0;
  std::string error_;
};

/// Makes a file that appears under its name only when it is whole: the bytes go to a temporary
/// file beside it, which commit() renames (replacing what was there) and the destructor removes
/// where commit() never came.
class PDFBMP_API CPDFFileSink final : public CPDFByteSink {
 public:
  explicit CPDFFileSink(std::string path);
  ~CPDFFileSink() override;
  CPDFFileSink(const CPDFFileSink&) = delete;
  CPDFFileSink& operator=(const CPDFFileSink&) = delete;

  /// Short pieces are gathered, so a failure may show some kilobytes later, at commit() the latest.
  bool write(const void* bytes, std::size_t n) override;

  /// Closes the file and gives it its name. False where that, or any write before, failed.
  bool commit();

  const std::string& error() const { return error_; }

 private:
  bool fail();
  bool pass_on(const void* bytes, std::size_t n);
  bool flush();

  std::string path_;
  std::string temporary_;  ///< Empty where there is no temporary file.
  int descriptor_ = -1;
  CPDFDescriptorSink bytes_;
  std::unique_ptr<unsigned char[]> gathered_;
  std::size_t gathered_bytes_ = 0;
  std::string error_;
};
