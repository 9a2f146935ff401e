// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/messages.h"
#include "tools/pdfbmp/options.h"

struct ChosenImages {
  std::vector<CPDFFoundImage> images;
  std::vector<int> numbers;  ///< Of each image, from 1, among all on the first page that uses it.
  Outcome outcome = Outcome::ok;  ///< Not ok where they could not be found; that was told.
};

/// The images of a file that the options ask for: pages, objects, size. Says what was odd about the
/// file, and where a page or an object that was asked for is not there.
ChosenImages choose_images(CPDFDocument& document, const std::string& file, const Options& options,
                           Messages& messages);
