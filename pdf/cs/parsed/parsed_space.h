// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pdf/cs/color_space.h"

/// The values that a component may have.
struct CPDFCSRange {
  double low = 0, high = 1;

  double at(double byte) const { return low + (high - low) * byte / 255; }

  /// The place of `value` on the scale 0..255, values outside taken as the nearest inside.
  double byte_of(double value) const;
};

/// What all colour spaces that parser_cs makes have in common. A space says how a row of samples
/// becomes pixels; everything else follows from that.
///
/// A sample, and a component of a PDF_COLOR, of 0 stands for the low end of the component's range
/// and 255 for the high end (ISO 32000, "default Decode array"):
///
///     CalGray, CalRGB, Separation, DeviceN    0..1
///     Lab                                     L* 0..100, a* and b* by Range (-100..100)
///     ICCBased                                by Range (0..1)
///     Indexed                                 the index itself
///
/// Components of a PDF_COLOR outside 0..255 are taken as the nearest inside. Gray is the luma of
/// the converted colour, with DeviceRGB's weights; CMYK comes from it by DeviceRGB's under-colour
/// removal. Indexed asks its base for both.
class CPDFCSParsed : public CPDFCSBase {
 public:
  void get_gray(const PDF_COLOR& color, unsigned char& gray) override;
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) final;
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override;

  /// Every component the value nearest to 0 that its range has; for Separation and DeviceN 1.
  void get_default_color(PDF_COLOR& color) override;

  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) final;
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) final;
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) final;
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) final;

  /// Converts the colour whose components have these values (`comp_count` of them, each inside its
  /// range), at better than 8-bit precision where the space has it.
  virtual void rgb_of(const double* components, _KXRGBA& rgba) const = 0;

  virtual CPDFCSRange range_of(int component) const;

  /// The most that converting a pixel takes, in steps of about a nanosecond.
  virtual std::int64_t work() const { return 16; }

 protected:
  CPDFCSParsed(int family_code, int components);

  /// Converts `pixels` (1 or more) pixels of `comp_count` bytes each. The runs do not overlap, but
  /// that both may lie one pixel at a time.
  virtual void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const = 0;

  /// The same into gray and alpha.
  virtual void convert_gray(unsigned char* dst, const unsigned char* src, int pixels) const;

 private:
  template <int Step>
  void walk_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) const;
};

namespace pdfbmp {

/// The most that converting a pixel takes in any colour space, as CPDFCSParsed::work().
std::int64_t pixel_work(const CPDFCSBase* space);

/// What the conversion of one row of an image may take: time is looked at between rows.
constexpr std::int64_t max_row_work = std::int64_t{1} << 28;

/// The range of a component of any colour space but Indexed.
CPDFCSRange range_of(const CPDFCSBase& space, int component);

}  // namespace pdfbmp
