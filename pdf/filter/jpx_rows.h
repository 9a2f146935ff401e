// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "pdf/filter/jpx_codestream.h"
#include "pdf/filter/jpx_header.h"

/// Makes rows of 8-bit samples from the components of a JPEG 2000 image: chooses the channels,
/// looks up palettes, brings every precision to 8 bits and every component to the pixel grid, and
/// turns YCC into RGB.
class CPDFJpxRows {
 public:
  /// `indexed`: the samples are indices into a table outside of the image; they are delivered as
  /// they are, the first component's. `alpha_expected`: where no channel is defined to be alpha,
  /// the second of two and the fourth of four are.
  CPDFJpxRows(const CPDFJpxHeader& header, bool indexed, bool alpha_expected);

  /// Delivers every colour channel of an image that has `count` of them, in their order, instead of
  /// 1, 3 or 4. False for any other count.
  bool choose_all(const CPDFJpxHeader& header, int count);

  int channels() const { return static_cast<int>(colors_.size()); }  ///< Delivered.
  int alpha_channel() const { return alpha_channel_; }               ///< Negative: there is none.

  /// The line of the reference grid that row `y` of the image lies on.
  std::int64_t line_of(std::int64_t y) const { return (first_row_ + y) * step_y_; }

  /// Row `y`, out of tiles that hold its line: channels() bytes a pixel, or 1.
  void color_row(const CPDFJpxCodestream& tiles, std::int64_t y, unsigned char* dst) const;
  void alpha_row(const CPDFJpxCodestream& tiles, std::int64_t y, unsigned char* dst) const;

 private:
  struct Channel {
    int component = 0;
    int dx = 1, dy = 1;
    std::int64_t offset = 0;            ///< Makes signed samples unsigned.
    std::int64_t top = 0;               ///< The largest sample.
    int shift = 0;                      ///< Bits that the table leaves out.
    std::vector<unsigned char> levels;  ///< By sample.
  };

  Channel make_channel(const CPDFJpxHeader& header, int number, bool indexed) const;
  void choose_colors(const CPDFJpxHeader& header, int channel_count, bool alpha_expected);
  void fill(const CPDFJpxCodestream& tiles, std::int64_t y, const Channel& channel,
            unsigned char* dst, int step) const;

  int step_x_, step_y_;
  std::int64_t width_, first_column_, first_row_;
  std::vector<int> all_channels_;    ///< Of colour, in their order.
  std::vector<int> color_channels_;  ///< Those delivered.
  std::vector<Channel> colors_;
  Channel alpha_;
  int alpha_channel_ = -1;
  bool ycc_ = false;
};
