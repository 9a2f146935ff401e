// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "pdf/doc/raster.h"
#include "pdf/obj/stream.h"
#include "tools/encoders/pdf_builder.h"

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

inline std::vector<CPDFFoundImage> images_of(PdfBuilder& pdf) {
  const auto document = open_bytes(pdf.finish());
  return document != nullptr ? all_images(*document) : std::vector<CPDFFoundImage>();
}

/// What is left in a stream.
inline std::string read_all(CPDFStream* stream) {
  std::string bytes;
  char piece[4096];
  for (int n; stream != nullptr && (n = stream->read_block(piece, sizeof piece)) > 0;) bytes.append(piece, static_cast<std::size_t>(n));
  return bytes;
}

using Row = std::vector<unsigned char>;

/// The rows of a picture that are left, from the top.
inline std::vector<Row> rows_of(CPDFRasterReader& reader) {
  std::vector<Row> rows;
  Row row(static_cast<std::size_t>(reader.info().row_bytes()));
  while (reader.read_row(row.data())) rows.push_back(row);
  return rows;
}
