// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "pdf/cs/color_space.h"

/// What colour spaces under test were asked for. It outlives them.
struct SpaceLog {
  int live = 0;
  int colors = 0;  ///< Single conversions.
};

/// A colour space of any family and component count, in whose pixels every one of the 16 values
/// tells. A single conversion leaves an `a` that callers have to overwrite.
class TestSpace : public CPDFCSBase {
 public:
  TestSpace(SpaceLog& log, int its_family, int components) : log_(log) {
    family = its_family;
    comp_count = components;
    ++log_.live;
  }
  ~TestSpace() override { --log_.live; }

  void get_gray(const PDF_COLOR& color, unsigned char& gray) override {
    ++log_.colors;
    gray = sum(color, 3, 2);
  }
  void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) override {
    ++log_.colors;
    rgba = {sum(color, 1, 1), sum(color, 5, 2), sum(color, 7, 4), 9};
  }
  void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) override { cmyk = color; }

  void batch_rgb(_KXRGBA* dst, const unsigned char* src, int n) override { run(dst, src, n, 1); }
  void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int n) override { run(dst, src, n, 2); }
  void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int n) override { run(dst, src, n, 4); }
  void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) override {
    for (int at = 0; at + comp_count <= nbytes; at += comp_count, dst += 2) {
      get_gray(color_at(src + at), dst[0]);
      dst[1] = 255;
    }
  }

 private:
  static unsigned char sum(const PDF_COLOR& color, int first, int step) {
    int total = 0;
    for (int i = 0; i < 16; ++i) total += color.val[i] * (first + i * step);
    return static_cast<unsigned char>(total);
  }
  PDF_COLOR color_at(const unsigned char* src) const {
    PDF_COLOR color = {};
    for (int i = 0; i < comp_count && i < 16; ++i) color.val[i] = src[i];
    return color;
  }
  void run(_KXRGBA* dst, const unsigned char* src, int nbytes, int step) {
    for (int at = 0; at + comp_count <= nbytes; at += comp_count * step, ++dst) {
      get_rgb(color_at(src + at), *dst);
      dst->a = 255;
    }
  }

  SpaceLog& log_;
};
