// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "kx/rgba.h"
#include "pdf/cs/parsed/lcms.h"

/// An ICC profile made ready for 8-bit rows. Making one costs more than converting a small image,
/// so the last ones are kept, by content, for all images of the process.
class CPDFIccTransform {
 public:
  /// The transform of a profile; null where Little CMS cannot use it, or it has other than 1, 3 or
  /// 4 components. May be called from any thread.
  static std::shared_ptr<const CPDFIccTransform> of(std::vector<unsigned char> profile);

  int components() const { return components_; }
  bool is_lab() const { return is_lab_; }    ///< Of CIE L*a*b* data: samples are L*, a*, b*.
  bool is_srgb() const { return is_srgb_; }  ///< R, G, B pass through unchanged, within one level.

  /// `components()` bytes a pixel to pixels, one call of the library. Thread-safe.
  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const;

 private:
  static std::shared_ptr<const CPDFIccTransform> make(const std::vector<unsigned char>& profile);

  pdfbmp::LcmsTransform transform_;
  int components_ = 0;
  bool is_lab_ = false;
  bool is_srgb_ = false;
};
