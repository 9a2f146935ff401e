// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/options.h"
#include "tools/pdfbmp/output.h"

/// What became of one image.
struct ExtractedImage {
  bool passed_over = false;          ///< It has no bitmap of the wanted kind.
  bool passed_on = false;            ///< Its encoded data is in the file, nothing was decoded.
  std::unique_ptr<OutputFile> file;  ///< Written but not committed; null where there is none.
  std::string name;                  ///< Of the file, within the output.
  int width = 0, height = 0;         ///< Of the bitmap; 0 where there is none.
  bool complete = false;
  std::int64_t rows = 0;       ///< Rows of samples that the stream delivered.
  std::string error;           ///< Why it is missing or incomplete; empty where it is whole.
  bool output_failed = false;  ///< The error is the output's, not the image's.
};

/// Decodes an image and writes it to a new file of `output`; `name` is the file's without suffix.
/// Any thread. Nothing is thrown.
ExtractedImage extract_image(CPDFDocument& document, const CPDFFoundImage& found,
                             const std::string& name, const Options& options, Output& output);
