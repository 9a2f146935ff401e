// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

/// The family codes of all colour spaces, the values of CPDFCSBase::family.
enum CPDFCSFamily : int {
  PDF_CS_DEVICE_GRAY = 1,
  PDF_CS_CAL_GRAY = 2,
  PDF_CS_DEVICE_RGB = 3,

  /// The image unit copies the samples of 8-bit images of this family as R, G, B where it halves or
  /// quarters them; at full size they go through the calibration.
  PDF_CS_CAL_RGB = 4,

  PDF_CS_DEVICE_CMYK = 5,  ///< By formula.
  PDF_CS_LAB = 6,
  PDF_CS_ICC_BASED = 7,
  PDF_CS_INDEXED = 8,
  PDF_CS_SEPARATION = 9,
  PDF_CS_DEVICE_N = 10,  ///< NChannel too.

  // 11 is left free: Pattern has no place in an image.
  PDF_CS_DEVICE_CMYK_EXT = 12,  ///< By lookup table.
};
