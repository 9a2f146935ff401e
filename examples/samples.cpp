// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "examples/samples.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/Pl_Buffer.hh>
#include <qpdf/Pl_Flate.hh>

namespace {

int paeth(int a, int b, int c) {
  const int p = a + b - c;
  const int pa = std::abs(p - a), pb = std::abs(p - b), pc = std::abs(p - c);
  return pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
}

std::string filtered_row(const std::string& bytes, std::size_t at, std::size_t row_bytes,
                         std::size_t pixel_bytes, int filter) {
  std::string row(1, static_cast<char>(filter));
  for (std::size_t i = 0; i < row_bytes; ++i) {
    const auto byte = [&](bool there, std::size_t back) -> int {
      return there ? static_cast<unsigned char>(bytes[at + i - back]) : 0;
    };
    const bool has_left = i >= pixel_bytes, has_up = at > 0;
    const int left = byte(has_left, pixel_bytes), up = byte(has_up, row_bytes);
    const int corner = byte(has_left && has_up, pixel_bytes + row_bytes);
    const int guesses[] = {0, left, up, (left + up) / 2, paeth(left, up, corner)};
    row += static_cast<char>(byte(true, 0) - guesses[filter]);
  }
  return row;
}

}  // namespace

void SampleWriter::add(double level) {
  const double top = (1u << bits_) - 1;
  add_value(static_cast<unsigned>((level < 0 ? 0 : level > 1 ? 1 : level) * top + 0.5));
}

void SampleWriter::add_value(unsigned value) {
  pending_ = pending_ << bits_ | value;
  pending_bits_ += bits_;
  while (pending_bits_ >= 8) {
    pending_bits_ -= 8;
    bytes_ += static_cast<char>(pending_ >> pending_bits_);
  }
}

void SampleWriter::end_row() {
  if (pending_bits_ > 0) bytes_ += static_cast<char>(pending_ << (8 - pending_bits_));
  pending_ = 0;
  pending_bits_ = 0;
}

std::string flate(const std::string& bytes) {
  Pl_Buffer buffer("compressed");
  Pl_Flate deflate("deflate", &buffer, Pl_Flate::a_deflate);
  deflate.writeString(bytes);
  deflate.finish();
  const std::unique_ptr<Buffer> result(buffer.getBuffer());
  return std::string(reinterpret_cast<const char*>(result->getBuffer()), result->getSize());
}

std::string png_predicted(const std::string& bytes, std::size_t row_bytes,
                          std::size_t pixel_bytes) {
  std::string result;
  for (std::size_t at = 0; at < bytes.size(); at += row_bytes) {
    std::string best;
    long smallest = std::numeric_limits<long>::max();
    for (int filter = 0; filter <= 4; ++filter) {
      std::string row = filtered_row(bytes, at, row_bytes, pixel_bytes, filter);
      long sum = 0;
      for (const char c : row) sum += std::abs(static_cast<signed char>(c));
      if (sum >= smallest) continue;
      smallest = sum;
      best = std::move(row);
    }
    result += best;
  }
  return result;
}

std::string tiff_predicted(const std::string& bytes, std::size_t row_bytes,
                           std::size_t pixel_bytes) {
  std::string result = bytes;
  for (std::size_t i = bytes.size(); i-- > 0;) {
    if (i % row_bytes >= pixel_bytes) {
      result[i] = static_cast<char>(bytes[i] - bytes[i - pixel_bytes]);
    }
  }
  return result;
}
