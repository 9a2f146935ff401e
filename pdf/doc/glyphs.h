// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

#include "pdf/doc/scene.h"

namespace pdfbmp {

/// A font as far as images go: the glyph streams of a Type 3 font, and the widths by which text
/// moves on in any simple font.
class GlyphFont {
 public:
  /// `page` serves a font without resources of its own.
  GlyphFont(QPDFObjectHandle font, const SceneResources& page);

  /// The node of a code's glyph, -1 where it has none with images.
  int glyph(Scene& scene, unsigned char code) const;

  /// How far a code moves on, in text space for a font of size 1.
  double width(unsigned char code) const { return widths_[code]; }

  /// From glyph space to text space.
  const CPDFMatrix& matrix() const { return matrix_; }

 private:
  void read_widths(QPDFObjectHandle font, double unit);
  void read_encoding(QPDFObjectHandle encoding);

  static constexpr int unknown = -2;

  QPDFObjectHandle glyphs_;  ///< CharProcs; null for other kinds of font.
  SceneResources resources_;
  CPDFMatrix matrix_;
  std::array<double, 256> widths_ = {};
  std::array<std::string, 256> names_;
  mutable std::array<int, 256> nodes_;
};

}  // namespace pdfbmp
