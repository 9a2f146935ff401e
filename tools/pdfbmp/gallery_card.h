// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "pdf/doc/document.h"
#include "tools/pdfbmp/chosen_images.h"
#include "tools/pdfbmp/options.h"

/// One image of the gallery.
struct GalleryCard {
  std::string html;  ///< Empty where memory failed.
  bool has_picture = false;
  std::string problem;  ///< Why its picture is missing or incomplete; empty where it is whole.
};

/// Decodes image `i` to a thumbnail, a mask or soft mask to its opacity, and sets it in HTML with
/// its facts. Thumbnails are smaller where there are many images, or no browser would hold the
/// page. Any thread. Nothing is thrown.
GalleryCard make_gallery_card(CPDFDocument& document, const ChosenImages& chosen, std::size_t i,
                              const Options& options);
