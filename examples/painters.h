// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

// The pictures of the sample as functions of a point: x to the right and y down, both 0 to 1.

struct Color {
  double r = 0, g = 0, b = 0;  ///< 0 to 1.
};

Color landscape(double x, double y);    ///< Hills and a sun over a lake.
Color color_wheel(double x, double y);  ///< All hues round white, on dark gray.
Color smooth(double x, double y);       ///< Slow gradients that show every missing bit.
double spheres(double x, double y);     ///< Three shaded balls, as a gray level; for 3 : 2.
double ripples(double x, double y);     ///< Rings that get finer outwards.
double mandelbrot(double x, double y);  ///< 0 inside the set, rising with the speed of escape.
double ball(double x, double y);        ///< One ball that fills the picture, beside it its rim.
double ball_cover(double x, double y);  ///< 1 on that ball, 0 beside it, soft at the edge.

/// Whether a point lies on the strokes of a line of text (letters of 5 x 7 dots; a to z only).
bool text_dot(const std::string& text, int column, int row);
inline constexpr int text_rows = 9;
int text_columns(const std::string& text);
