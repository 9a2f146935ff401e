// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/options.h"

/// One image of the gallery.
struct GalleryCard {
  std::string html;  ///< Empty where memory failed.
  bool has_picture = false;
  bool whole = false;
  std::string problem;  ///< Why its picture is missing or incomplete; empty where it is whole.
};

/// Decodes images[i] to a thumbnail, a mask or soft mask to its opacity, and sets it in HTML with
/// its facts. `number` is its running number on its page. Any thread. Nothing is thrown.
GalleryCard make_gallery_card(CPDFDocument& document, const std::vector<CPDFFoundImage>& images,
                              std::size_t i, int number, const Options& options);
