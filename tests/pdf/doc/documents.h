// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "pdf/obj/stream.h"

/// Opens bytes as a document; null where that fails.
inline std::unique_ptr<CPDFDocument> open_bytes(const std::string& bytes, CPDFOpenStatus& status, const std::string& password = "") {
  CPDFOpenOptions options;
  options.password = password;
  std::string message;
  auto document = CPDFDocument::open(pdfbmp::make_memory_source(bytes), options, status, message);
  // A message, of one line, exactly where there is no document.
  if ((document == nullptr) == message.empty() || message.find('\n') != std::string::npos) { return nullptr; }
  return document;
}

inline std::unique_ptr<CPDFDocument> open_bytes(const std::string& bytes) {
  CPDFOpenStatus status{};
  return open_bytes(bytes, status);
}

inline std::vector<CPDFFoundImage> all_images(CPDFDocument& document) { return document.find_images(1, document.page_count()); }

/// What is left in a stream.
inline std::string read_all(CPDFStream* stream) {
  std::string bytes;
  char piece[4096];
  for (int n = 1; stream != nullptr && n > 0;) {
    n = stream->read_block(piece, sizeof piece);
    bytes.append(piece, static_cast<std::size_t>(std::max(n, 0)));
  }
  return bytes;
}
