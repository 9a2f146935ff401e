// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <csetjmp>
#include <cstring>
#include <png.h>
#include <string>

/// A PNG file as another library reads it: the samples as they are stored.
struct PngReader {
  std::string error;  ///< The first error or warning; empty for a good file.
  std::uint32_t width = 0, height = 0;
  int depth = 0, color_type = 0;
  bool has_srgb = false;
  std::string palette;                 ///< r, g, b of each entry.
  std::uint32_t ppm_x = 0, ppm_y = 0;  ///< Pixels a metre.
  std::string rows;

  explicit PngReader(std::string file) : file_(std::move(file)) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, fail, warn);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png)) == 0) read(png, info);
    png_destroy_read_struct(&png, &info, nullptr);
  }

 private:
  static void warn(png_structp png, png_const_charp message) { static_cast<PngReader*>(png_get_error_ptr(png))->error = message; }
  static void fail(png_structp png, png_const_charp message) {
    warn(png, message);
    png_longjmp(png, 1);
  }
  static void give(png_structp png, png_bytep to, size_t n) {
    auto& self = *static_cast<PngReader*>(png_get_io_ptr(png));
    if (self.file_.size() - self.at_ < n) png_error(png, "the file ends early");
    std::memcpy(to, self.file_.data() + self.at_, n);
    self.at_ += n;
  }

  void read(png_structp png, png_infop info) {
    png_set_user_limits(png, 0x7FFFFFFF, 0x7FFFFFFF);
    png_set_read_fn(png, this, give);
    png_read_info(png, info);
    png_get_IHDR(png, info, &width, &height, &depth, &color_type, nullptr, nullptr, nullptr);
    png_colorp colors = nullptr;
    int count = 0, intent = 0;
    if (png_get_PLTE(png, info, &colors, &count) != 0) palette.assign(reinterpret_cast<char*>(colors), static_cast<std::size_t>(count) * 3);
    has_srgb = png_get_sRGB(png, info, &intent) != 0;
    ppm_x = png_get_x_pixels_per_meter(png, info);
    ppm_y = png_get_y_pixels_per_meter(png, info);
    const std::size_t n = png_get_rowbytes(png, info);
    rows.resize(n * height);
    for (std::uint32_t y = 0; y < height; ++y) png_read_row(png, reinterpret_cast<png_bytep>(rows.data() + y * n), nullptr);
    png_read_end(png, nullptr);
    if (at_ != file_.size()) error = "bytes after the last chunk";
  }

  std::string file_;
  std::size_t at_ = 0;
};
