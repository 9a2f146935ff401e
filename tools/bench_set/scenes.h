// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// What the pictures of the benchmark files look like to an entropy coder: soft shapes of several
/// sizes, with the grain of a sensor in every sample. The same on every machine.
struct Scene {
  int width, height, components;
  unsigned seed;
  float grain;  ///< Levels that a sample of 8 bits is moved by at most, either way.

  /// Samples of 8 bits, component by component, row by row; of 16 bits, 12 that are scaled up.
  std::string samples(int bytes_per_sample = 1) const;
};
