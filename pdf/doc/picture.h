// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "pdf/doc/document.h"
#include "pdf/doc/raster.h"

namespace pdfbmp {

/// A found and loaded image as a person would see it, read row by row at full size, however large:
///
///   - samples through Decode at their full range and through the colour space; of a JPEG 2000
///     image without Decode, which is nothing to it (ISO 32000-1, 7.4.9), and through a DeviceN
///     space that fits its channels too;
///   - a soft mask, else a stencil mask, else a colour key as alpha, the picture at the larger of
///     the image's and the mask's width and height (the nearest pixel of the smaller one);
///   - the Matte colour of a soft mask undone (ISO 32000-1, 11.6.5.3);
///   - the alpha of a JPEG 2000 image where SMaskInData asks for it and there is no soft mask;
///   - a stencil in black, with its opacity.
///
/// The format follows from the kind of image alone, before a row is read: see make_color_rows for
/// opaque pictures; gray_alpha8 and rgba8 where something makes alpha. Memory does not depend on
/// the height. The picture owns `loaded`; its reports are complete when all rows have been read.
/// Null, with the reason in `problem`, where there is nothing to show or it is above `max_pixels`.
/// `problem` also tells of a mask that had to be left out.
PDFBMP_API std::unique_ptr<CPDFRasterReader> open_picture(CPDFLoadedImage loaded,
                                                          const CPDFFoundImage& found,
                                                          std::int64_t max_pixels,
                                                          std::string& problem);

}  // namespace pdfbmp
