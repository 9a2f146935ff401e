// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "pdf/filter/work_clock.h"

namespace pdfbmp {

/// The processor's time that the images of one file may take: each by itself, and, since small
/// files can make many images of little, all together. Any thread may use it.
class ImageTime : public std::enable_shared_from_this<ImageTime> {
 public:
  /// `seconds` as CPDFFilterLimits::max_image_seconds has them.
  ImageTime(int seconds, std::int64_t file_bytes);

  /// Whether what all images have together is used up.
  bool is_over() const { return left_ <= 0; }

  /// The clock of an image, from now on; what it took is taken from what all have when it ends.
  std::shared_ptr<CPDFWorkClock> begin();

  /// Sets what an image of so many pixels may take.
  void allow(CPDFWorkClock& clock, std::int64_t pixels);

 private:
  double seconds_;
  double plausible_;                ///< Seconds that the file's data may well need, more or less.
  std::atomic<double> left_;        ///< Seconds of all images.
  std::atomic<double> plain_left_;  ///< Pixels that give more seconds, whatever the data.
};

}  // namespace pdfbmp
