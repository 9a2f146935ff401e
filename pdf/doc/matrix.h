// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <array>

/// A PDF transformation: x' = a x + c y + e, y' = b x + d y + f.
struct CPDFMatrix {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

  /// This transformation, then `next`.
  CPDFMatrix then(const CPDFMatrix& next) const {
    return {a * next.a + b * next.c,          a * next.b + b * next.d,
            c * next.a + d * next.c,          c * next.b + d * next.d,
            e * next.a + f * next.c + next.e, e * next.b + f * next.d + next.f};
  }

  /// The image of the point (x, y).
  std::array<double, 2> apply(double x, double y) const {
    return {a * x + c * y + e, b * x + d * y + f};
  }
};
