// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/doc/document.h"
#include "pdf/doc/image_time.h"
#include "pdf/doc/object_table.h"

namespace pdfbmp {

/// A loaded record of an image XObject. `spaces` are the ColorSpace resources of the page that uses
/// it, or null.
CPDFLoadedImage load_image_object(CPDFObjectTable& table, const PDF_REF& ref,
                                  const CPDFDictionary* spaces, ImageTime& time);

/// A loaded record of an inline image.
CPDFLoadedImage load_inline_image(CPDFObjectTable& table,
                                  const std::shared_ptr<const CPDFInlineImage>& image,
                                  ImageTime& time);

}  // namespace pdfbmp
