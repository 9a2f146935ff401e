// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "pdf/doc/document.h"
#include "pdf/doc/raster.h"
#include "tools/pdfbmp/options.h"

/// An image opened as the bitmap of one kind.
struct Picture {
  CPDFLoadedImage loaded;                    ///< What the reader reads from; its reports.
  std::unique_ptr<CPDFRasterReader> reader;  ///< Null where there is no such picture.
  bool passed_over = false;                  ///< There is none by the nature of the image.
  std::string problem;  ///< Why there is none where there should be one, or what it lacks.

  int source_rows = 0;         ///< Rows of samples that the whole picture needs.
  std::int64_t row_bytes = 0;  ///< Bytes of a row of samples.
};

/// Why an image is refused for its size, however it is to be opened; empty where it is not.
std::string too_many_pixels(const CPDFFoundImage& found, const Options& options);

/// Opens a found image as the options want it.
Picture open_picture(CPDFDocument& document, const CPDFFoundImage& found, const Options& options);

/// How much of an image's data arrived. To be asked after the last row is read.
struct Delivery {
  bool complete = false;
  std::int64_t rows = 0;  ///< Whole rows of samples that the stream delivered.
  std::string problem;    ///< Where it is not complete.
};
Delivery delivery_of(const Picture& picture);
