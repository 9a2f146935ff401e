// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/glyphs.h"

#include <algorithm>

namespace pdfbmp {

GlyphFont::GlyphFont(QPDFObjectHandle font, const SceneResources& page)
    : glyphs_(QPDFObjectHandle::newNull()), resources_(page) {
  nodes_.fill(-1);
  const bool type3 = font.getKey("/Subtype").isNameAndEquals("/Type3");
  matrix_ = type3 ? matrix_from(font.getKey("/FontMatrix")) : CPDFMatrix{0.001, 0, 0, 0.001, 0, 0};
  read_widths(font, matrix_.a);
  if (!type3 || !font.getKey("/CharProcs").isDictionary()) return;
  glyphs_ = font.getKey("/CharProcs");
  nodes_.fill(unknown);
  QPDFObjectHandle own = font.getKey("/Resources");
  if (own.isDictionary()) resources_ = {own, "font " + identity_of(font)};
  read_encoding(font.getKey("/Encoding"));
}

void GlyphFont::read_widths(QPDFObjectHandle font, double unit) {
  QPDFObjectHandle first = font.getKey("/FirstChar");
  QPDFObjectHandle widths = font.getKey("/Widths");
  if (!first.isInteger() || !widths.isArray()) return;
  const long long start = first.getIntValue();
  if (start < 0 || start > 255) return;
  const int count = std::min(widths.getArrayNItems(), 256 - static_cast<int>(start));
  for (int i = 0; i < count; ++i) {
    QPDFObjectHandle width = widths.getArrayItem(i);
    if (!width.isNumber()) continue;
    widths_[static_cast<std::size_t>(start + i)] = width.getNumericValue() * unit;
  }
}

void GlyphFont::read_encoding(QPDFObjectHandle encoding) {
  if (!encoding.isDictionary() || !encoding.getKey("/Differences").isArray()) return;
  long long code = 0;
  for (QPDFObjectHandle item : encoding.getKey("/Differences").aitems()) {
    if (item.isInteger()) {
      code = item.getIntValue();
    } else if (item.isName() && code >= 0 && code < 256) {
      names_[static_cast<std::size_t>(code++)] = item.getName();
    }
  }
}

int GlyphFont::glyph(Scene& scene, unsigned char code) const {
  int& node = nodes_[code];
  if (node != unknown) return node;
  node = -1;
  if (names_[code].empty()) return node;
  QPDFObjectHandle glyphs = glyphs_;
  return node = scene.add_stream(glyphs.getKey(names_[code]), resources_);
}

}  // namespace pdfbmp
