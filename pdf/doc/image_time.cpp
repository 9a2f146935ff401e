// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/image_time.h"

#include <algorithm>

namespace {

// The dearest colours that honest files have take a second for about 2^20 pixels, blank pixels one
// for 2^27. Pixels cost nothing in a file, so only as many count as its bytes may stand for.
constexpr double dear_pixels = 1 << 20, dear_bytes = 1 << 14;
constexpr double plain_pixels = 1 << 27, plain_pixels_of_byte = 1 << 12;
constexpr double least_plain_pixels = 1 << 28;
// A small image is a file to be written, too.
constexpr double seconds_of_image = 0.001;

}  // namespace

namespace pdfbmp {

ImageTime::ImageTime(int seconds, std::int64_t file_bytes)
    : seconds_(seconds),
      plausible_(static_cast<double>(file_bytes) / dear_bytes),
      left_(seconds_ * (1 + plausible_)),
      plain_left_(least_plain_pixels + static_cast<double>(file_bytes) * plain_pixels_of_byte) {}

std::shared_ptr<CPDFWorkClock> ImageTime::begin() {
  const auto end = [all = shared_from_this()](CPDFWorkClock* clock) {
    all->left_ -= clock->used_seconds();
    delete clock;
  };
  return std::shared_ptr<CPDFWorkClock>(new CPDFWorkClock(left_), end);
}

void ImageTime::allow(CPDFWorkClock& clock, std::int64_t pixels) {
  const auto count = static_cast<double>(pixels);
  const double own = seconds_ * (1 + std::min(count / dear_pixels, plausible_));
  const double plain = seconds_ * std::clamp(plain_left_.load(), 0.0, count) / plain_pixels;
  plain_left_ -= count;
  left_ += plain + seconds_ * seconds_of_image;
  clock.allow(std::min(own + plain, left_.load()));
}

}  // namespace pdfbmp
