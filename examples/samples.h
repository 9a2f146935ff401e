// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

// Sample data as PDF files hold it.

/// Gathers samples of 1 to 16 bits, most significant first; rows end on a byte.
class SampleWriter {
 public:
  explicit SampleWriter(int bits) : bits_(bits) {}

  /// A level of 0 to 1, brought to the nearest value that the bits hold.
  void add(double level);
  void add_value(unsigned value);
  void end_row();

  const std::string& bytes() const { return bytes_; }

 private:
  int bits_;
  unsigned pending_ = 0;
  int pending_bits_ = 0;
  std::string bytes_;
};

std::string flate(const std::string& bytes);

/// Rows with the PNG filter that leaves the smallest differences in front (ISO 32000-1, 7.4.4.4).
std::string png_predicted(const std::string& bytes, std::size_t row_bytes, std::size_t pixel_bytes);

/// Each sample of 8 bits less the one to its left (TIFF predictor 2).
std::string tiff_predicted(const std::string& bytes, std::size_t row_bytes,
                           std::size_t pixel_bytes);
