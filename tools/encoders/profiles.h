// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <lcms2.h>
#include <string>

// ICC profiles as the bytes of a file, made on the spot; the same at every call. Empty where Little
// CMS fails.

namespace encoders {

inline constexpr cmsCIExyY d65_xy = {0.3127, 0.3290, 1};
inline constexpr cmsCIExyYTRIPLE srgb_primaries = {
    {0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};

/// Matrix and shaper: primaries under D65, and a power curve.
std::string rgb_profile(double gamma, const cmsCIExyYTRIPLE& primaries = srgb_primaries);
std::string srgb_profile();
std::string gray_profile(double gamma);
std::string lab_profile();

/// How inks (c, m, y, k, each 0..1) show: as sRGB, 0..1.
using InksToRgb = std::function<std::array<double, 3>(const std::array<double, 4>& inks)>;
using RgbToInks = std::function<std::array<double, 4>(const std::array<double, 3>& rgb)>;

/// An output profile: a table from inks to Lab of `nodes` an axis, and where `to_inks` is there the
/// way back, which tells Little CMS the black point.
std::string cmyk_profile(unsigned nodes, const InksToRgb& to_rgb, const RgbToInks& to_inks = {});

}  // namespace encoders
