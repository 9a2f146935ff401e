// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/color_space.h"

/// DeviceCMYK by lookup table: RGB comes from a grid of 17 nodes an axis, linear along cyan and
/// tetrahedral in magenta, yellow and black. Gray, CMYK and the default colour are DeviceCMYK's.
///
/// The table is installed for the whole process, by whoever has one, before any object of this
/// class is made, and does not change while one exists.
///
///     node (ci, mi, yi, ki), each 0..16, starts at entry  ci * 14739 + mi * 867 + yi * 51 + ki * 3
///     and holds red, green, blue in 16 bits; a complete table has 17^4 * 3 = 250,563 entries
///     node i of an axis is the colour of component 16 * i - 1; node 0 that of component 0
///
/// A colour is left untouched where its base node is not in the table, or where a node it needs
/// lies past the end: nothing outside ms_icc..ms_icc_end is ever read.
class PDFBMP_API CPDFCSDeviceCMYKExt : public CPDFCSBase {
 public:
  CPDFCSDeviceCMYKExt();

  void get_gray(const PDF_COLOR& color, unsigned char& gray) override;
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override;
  /// Copies all 16 words, those past the fourth too.
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override;
  /// Black: C = M = Y = 0, K = 255; val[4..15] left alone.
  void get_default_color(PDF_COLOR& color) override;
  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) override;
  int support_op() override;  ///< 0

  /// Interpolates in the magenta-yellow-black cube whose lowest node starts at `node`. `frac` holds
  /// four fractions of 4096 (cyan's is not used), `out` receives red, green and blue on the table's
  /// 16-bit scale. Nodes that only steps of fraction 0 lead to are not read.
  static void cmyk_calc(unsigned short* node, int* frac, int* out);

  static unsigned short* ms_icc;      ///< First entry; null while no table is installed.
  static unsigned short* ms_icc_end;  ///< One past the last entry.
};
