// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/parsed_space.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pdf/cs/device_rgb.h"

namespace {

constexpr int max_components = 16;
constexpr int block_pixels = 64;

bool overlap(const void* a, std::size_t a_bytes, const void* b, std::size_t b_bytes) {
  const auto a0 = reinterpret_cast<std::uintptr_t>(a);
  const auto b0 = reinterpret_cast<std::uintptr_t>(b);
  return a0 < b0 + b_bytes && b0 < a0 + a_bytes;
}

void clamp_color(const PDF_COLOR& color, int count, unsigned char* bytes) {
  for (int i = 0; i < count; ++i)
    bytes[i] = static_cast<unsigned char>(std::clamp(color.val[i], 0, 255));
}

unsigned char gray_of(const _KXRGBA& pixel) {
  unsigned char gray = 0;
  CPDFCSDeviceRGB rgb;
  rgb.get_gray({{pixel.r, pixel.g, pixel.b}}, gray);
  return gray;
}

}  // namespace

double CPDFCSRange::byte_of(double value) const {
  if (!(high > low)) return 0;
  return (std::clamp(value, low, high) - low) / (high - low) * 255;
}

CPDFCSParsed::CPDFCSParsed(int family_code, int components) {
  family = family_code;
  comp_count = components;
}

CPDFCSRange CPDFCSParsed::range_of(int) const { return {}; }

void CPDFCSParsed::get_gray(const PDF_COLOR& color, unsigned char& gray) {
  unsigned char bytes[max_components];
  clamp_color(color, comp_count, bytes);
  unsigned char pair[2];
  convert_gray(pair, bytes, 1);
  gray = pair[0];
}

void CPDFCSParsed::get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) {
  unsigned char bytes[max_components];
  clamp_color(color, comp_count, bytes);
  convert(&rgba, bytes, 1);
}

void CPDFCSParsed::get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) {
  _KXRGBA pixel{};
  get_rgb(color, pixel);
  CPDFCSDeviceRGB().get_cmyk({{pixel.r, pixel.g, pixel.b}}, cmyk);
}

void CPDFCSParsed::get_default_color(PDF_COLOR& color) {
  for (int i = 0; i < comp_count; ++i)
    color.val[i] = static_cast<int>(std::lround(range_of(i).byte_of(0)));
}

void CPDFCSParsed::convert_gray(unsigned char* dst, const unsigned char* src, int pixels) const {
  _KXRGBA block[block_pixels];
  while (pixels > 0) {
    const int n = std::min(pixels, block_pixels);
    convert(block, src, n);
    for (int i = 0; i < n; ++i) {
      *dst++ = gray_of(block[i]);
      *dst++ = 255;
    }
    src += n * comp_count;
    pixels -= n;
  }
}

// Runs that overlap are converted one pixel at a time, in order; all others in blocks.

template <int Step>
void CPDFCSParsed::walk_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) const {
  const auto pixel_bytes = static_cast<std::size_t>(comp_count);
  int pixels = (nbytes / comp_count + Step - 1) / Step;
  const int block = overlap(dst, static_cast<std::size_t>(pixels) * sizeof *dst, src,
                            static_cast<std::size_t>(nbytes))
                        ? 1
                        : block_pixels;
  unsigned char kept[block_pixels * max_components];
  while (pixels > 0) {
    const int n = std::min(pixels, block);
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
      std::memcpy(kept + i * pixel_bytes, src + i * Step * pixel_bytes, pixel_bytes);
    convert(dst, kept, n);
    dst += n;
    pixels -= n;
    // The last kept pixel may be the last of the run: no pointer is formed beyond it.
    if (pixels > 0) src += static_cast<std::size_t>(n) * Step * pixel_bytes;
  }
}

void CPDFCSParsed::batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  const int pixels = nbytes / comp_count;
  if (pixels < 1) return;
  const auto n = static_cast<std::size_t>(pixels);
  if (overlap(dst, n * sizeof *dst, src, static_cast<std::size_t>(nbytes)))
    walk_rgb<1>(dst, src, nbytes);
  else
    convert(dst, src, pixels);
}

void CPDFCSParsed::batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  if (nbytes > 0) walk_rgb<2>(dst, src, nbytes);
}

void CPDFCSParsed::batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) {
  if (nbytes > 0) walk_rgb<4>(dst, src, nbytes);
}

void CPDFCSParsed::batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) {
  const int pixels = nbytes / comp_count;
  if (pixels < 1) return;
  const auto n = static_cast<std::size_t>(pixels);
  if (!overlap(dst, n * 2, src, static_cast<std::size_t>(nbytes)))
    return convert_gray(dst, src, pixels);
  for (int i = 0; i < pixels; ++i, dst += 2, src += comp_count) convert_gray(dst, src, 1);
}

std::int64_t pdfbmp::pixel_work(const CPDFCSBase* space) {
  const auto* parsed = dynamic_cast<const CPDFCSParsed*>(space);
  return parsed == nullptr ? 1 : parsed->work();
}

CPDFCSRange pdfbmp::range_of(const CPDFCSBase& space, int component) {
  const auto* parsed = dynamic_cast<const CPDFCSParsed*>(&space);
  return parsed == nullptr ? CPDFCSRange{} : parsed->range_of(component);
}
