// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "examples/painters.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>

namespace {

constexpr double pi = 3.14159265358979323846;

double clamped(double v) { return std::clamp(v, 0.0, 1.0); }

// 0 below `from`, 1 above `to`, smooth between.
double step(double from, double to, double v) {
  const double t = clamped((v - from) / (to - from));
  return t * t * (3 - 2 * t);
}

Color mix(const Color& a, const Color& b, double t) {
  return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

// The height of a range of hills; later ranges are nearer and lower.
double ridge(double x, int range) {
  const double phase = 1.7 * range;
  return 0.42 + 0.07 * range - 0.09 * std::sin(3.1 * x + phase) -
         0.035 * std::sin(9 * x + 2 * phase) - 0.012 * std::sin(31 * x + phase);
}

Color sky_and_hills(double x, double y) {
  Color color = mix({0.16, 0.32, 0.62}, {0.99, 0.78, 0.55}, clamped(y / 0.55));
  const double sun = std::hypot((x - 0.68) * 1.6, y - 0.27);
  color = mix(color, {1, 0.93, 0.7}, 0.6 * std::exp(-sun * sun * 40));
  color = mix({1, 0.97, 0.85}, color, step(0.05, 0.055, sun));
  const Color far = {0.52, 0.5, 0.62}, near = {0.1, 0.22, 0.2};
  for (int range = 0; range < 4; ++range) {
    const double edge = ridge(x, range);
    color = mix(color, mix(far, near, range / 3.0), step(edge, edge + 0.004, y));
  }
  return color;
}

// Light from the upper left on a ball at the middle of a square of half-width 1.
double shade(double dx, double dy) {
  const double height = std::sqrt(std::max(0.0, 1 - dx * dx - dy * dy));
  const double diffuse = std::max(0.0, -0.45 * dx - 0.55 * dy + 0.7 * height);
  const double gloss = std::pow(std::max(0.0, -0.36 * dx - 0.44 * dy + 0.82 * height), 40);
  return clamped(0.08 + 0.75 * diffuse + 0.5 * gloss);
}

// Seven rows of five dots, most significant bit to the left.
constexpr unsigned char letters[26][7] = {
    {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}, {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E},
    {0x0E, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0E}, {0x1E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x1E},
    {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x1F}, {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10},
    {0x0E, 0x11, 0x10, 0x17, 0x11, 0x11, 0x0F}, {0x11, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11},
    {0x0E, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E}, {0x07, 0x02, 0x02, 0x02, 0x02, 0x12, 0x0C},
    {0x11, 0x12, 0x14, 0x18, 0x14, 0x12, 0x11}, {0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1F},
    {0x11, 0x1B, 0x15, 0x15, 0x11, 0x11, 0x11}, {0x11, 0x19, 0x15, 0x13, 0x11, 0x11, 0x11},
    {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}, {0x1E, 0x11, 0x11, 0x1E, 0x10, 0x10, 0x10},
    {0x0E, 0x11, 0x11, 0x11, 0x15, 0x12, 0x0D}, {0x1E, 0x11, 0x11, 0x1E, 0x14, 0x12, 0x11},
    {0x0F, 0x10, 0x10, 0x0E, 0x01, 0x01, 0x1E}, {0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04},
    {0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}, {0x11, 0x11, 0x11, 0x11, 0x11, 0x0A, 0x04},
    {0x11, 0x11, 0x11, 0x15, 0x15, 0x1B, 0x11}, {0x11, 0x11, 0x0A, 0x04, 0x0A, 0x11, 0x11},
    {0x11, 0x11, 0x0A, 0x04, 0x04, 0x04, 0x04}, {0x1F, 0x01, 0x02, 0x04, 0x08, 0x10, 0x1F},
};
constexpr int cell_columns = 6;

}  // namespace

Color landscape(double x, double y) {
  constexpr double shore = 0.72;
  if (y < shore) return sky_and_hills(x, y);
  const double depth = (y - shore) / (1 - shore);
  const double wave = 0.006 * std::sin(180 * depth * depth + 9 * x) * depth;
  const Color mirrored = sky_and_hills(x + wave, std::max(0.0, shore - depth * 0.7 + 3 * wave));
  return mix(mirrored, {0.08, 0.16, 0.25}, 0.25 + 0.35 * depth);
}

Color color_wheel(double x, double y) {
  const double dx = 2 * x - 1, dy = 1 - 2 * y;
  const double radius = std::hypot(dx, dy) / 0.94;
  const double turn = std::atan2(dy, dx) / pi * 3;  // Six sectors.
  const auto channel = [&](double shift) {
    const double away = std::abs(std::remainder(turn - shift, 6));
    return clamped(2 - away);
  };
  const Color hue = {channel(0), channel(2), channel(4)};
  return mix(mix({1, 1, 1}, hue, clamped(radius)), {0.16, 0.16, 0.18}, step(0.99, 1.01, radius));
}

Color smooth(double x, double y) {
  return {0.5 + 0.5 * std::sin(pi * x - 0.5), 0.3 + 0.25 * std::cos(2 * pi * y + x),
          0.6 + 0.2 * x - 0.4 * y};
}

double spheres(double x, double y) {
  x *= 1.5;  // Balls are round in a picture of 3 : 2.
  double level = 0.35 + 0.45 * y;
  constexpr double balls[][3] = {{0.42, 0.42, 0.26}, {1.12, 0.36, 0.18}, {0.9, 0.7, 0.22}};
  for (const auto& [cx, cy, r] : balls) {
    level *= 1 - 0.5 * std::exp(-12 * std::hypot(x - cx - 0.5 * r, (y - cy - 0.9 * r) * 2.2));
  }
  for (const auto& [cx, cy, r] : balls) {
    const double dx = (x - cx) / r, dy = (y - cy) / r;
    if (dx * dx + dy * dy < 1) level = shade(dx, dy);
  }
  return clamped(level);
}

double ripples(double x, double y) {
  const double square = (x - 0.5) * (x - 0.5) + (y - 0.5) * (y - 0.5);
  return 0.5 + 0.5 * std::cos(110 * square);
}

double mandelbrot(double x, double y) {
  const std::complex<double> c(-2.15 + 2.9 * x, -1.09 + 2.18 * y);
  std::complex<double> z = 0;
  constexpr int most = 200;
  for (int i = 0; i < most; ++i) {
    z = z * z + c;
    if (std::norm(z) > 1e4) {
      const double smooth_count = i + 1 - std::log2(std::log2(std::norm(z)) / 2);
      return clamped(std::pow(smooth_count / most, 0.45));
    }
  }
  return 0;
}

double ball(double x, double y) {
  const double dx = (2 * x - 1) / 0.9, dy = (2 * y - 1) / 0.9;
  const double beyond = std::max(1.0, std::hypot(dx, dy));
  return shade(dx / beyond, dy / beyond);
}

double ball_cover(double x, double y) {
  return 1 - step(0.8, 0.96, std::hypot(2 * x - 1, 2 * y - 1));
}

int text_columns(const std::string& text) {
  return static_cast<int>(text.size()) * cell_columns + 1;
}

bool text_dot(const std::string& text, int column, int row) {
  if (column < 1 || row < 1 || row > 7) return false;
  const auto cell = static_cast<std::size_t>((column - 1) / cell_columns);
  const int dot = (column - 1) % cell_columns;
  if (cell >= text.size() || dot > 4 || text[cell] < 'a' || text[cell] > 'z') return false;
  return (letters[text[cell] - 'a'][row - 1] >> (4 - dot) & 1) != 0;
}
