// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "pdf/doc/raster.h"

/// Keeps what is written; refuses whatever goes beyond `capacity` bytes.
class MemorySink final : public CPDFByteSink {
 public:
  explicit MemorySink(std::size_t capacity = std::string::npos) : capacity_(capacity) {}

  bool write(const void* bytes, std::size_t n) override {
    if (n > capacity_ - text.size()) return false;
    text.append(static_cast<const char*>(bytes), n);
    return true;
  }

  std::string text;

 private:
  std::size_t capacity_;
};
