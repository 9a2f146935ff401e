// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "pdf/filter/source.h"

namespace pdfbmp {

/// A file that the parser has opened, or why it could not.
struct OpenedFile {
  std::shared_ptr<QPDF> qpdf;  ///< Null where the file could not be opened.
  std::int64_t base = 0;       ///< Where the PDF header stands: the parser counts from there.
  CPDFOpenStatus status = CPDFOpenStatus::unreadable;
  std::string message;  ///< One line; empty for an opened file.
};

/// Opens a PDF: with its cross-reference table, or else with one that is rebuilt by reading the
/// whole file; where that fails for want of a trailer, once more with what a scan of the file finds
/// in its place. Warnings are left in `qpdf`. Throws std::bad_alloc only.
OpenedFile open_qpdf(const std::shared_ptr<CPDFSource>& source, const std::string& password);

/// `text` as one line.
std::string single_line(std::string text);

}  // namespace pdfbmp
