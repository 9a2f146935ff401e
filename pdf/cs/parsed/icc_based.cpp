// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstring>

#include "pdf/cs/device_rgb.h"
#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/icc_transform.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/table_space.h"
#include "pdf/obj/access.h"

// [/ICCBased stream], ISO 32000-1 8.6.5.5: by the profile where it can be used and has N
// components, otherwise by Alternate where that has N components, otherwise as the device space of
// N components.

namespace {

constexpr int max_profile_bytes = 16 << 20;

/// The place of a component value on the 0..255 scale of the profile's own 8-bit samples.
unsigned char profile_byte(double value, bool is_lab, int component) {
  constexpr CPDFCSRange lab[3] = {{0, 100}, {-128, 127}, {-128, 127}};
  const CPDFCSRange range = is_lab ? lab[component] : CPDFCSRange{};
  return static_cast<unsigned char>(std::lround(range.byte_of(value)));
}

/// Three or four components.
class CPDFCSIccBased final : public CPDFCSParsed {
 public:
  CPDFCSIccBased(std::shared_ptr<const CPDFIccTransform> transform, const CPDFCSRange* ranges)
      : CPDFCSParsed(PDF_CS_ICC_BASED, transform->components()), transform_(std::move(transform)) {
    for (int c = 0; c < comp_count; ++c) {
      ranges_[c] = ranges[c];
      for (int i = 0; i < 256; ++i) {
        map_[c][i] = profile_byte(ranges[c].at(i), transform_->is_lab(), c);
        mapped_ = mapped_ || map_[c][i] != i;
      }
    }
  }

  /// Samples go to the profile as they are.
  bool is_direct() const { return !mapped_; }

  CPDFCSRange range_of(int component) const override { return ranges_[component]; }

  void rgb_of(const double* components, _KXRGBA& rgba) const override {
    unsigned char bytes[4];
    for (int c = 0; c < comp_count; ++c)
      bytes[c] = profile_byte(components[c], transform_->is_lab(), c);
    transform_->convert(&rgba, bytes, 1);
  }

 protected:
  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const override {
    if (!mapped_) return transform_->convert(dst, src, pixels);
    constexpr int block = 256;
    unsigned char bytes[block * 4];
    while (pixels > 0) {
      const int n = std::min(pixels, block);
      for (int i = 0; i < n * comp_count; ++i) bytes[i] = map_[i % comp_count][src[i]];
      transform_->convert(dst, bytes, n);
      dst += n;
      src += n * comp_count;
      pixels -= n;
    }
  }

 private:
  std::shared_ptr<const CPDFIccTransform> transform_;
  CPDFCSRange ranges_[4];
  unsigned char map_[4][256];
  bool mapped_ = false;
};

std::unique_ptr<CPDFCSBase> make_from(std::shared_ptr<const CPDFIccTransform> transform,
                                      const std::vector<double>& range) {
  const int n = transform->components();
  CPDFCSRange ranges[4];
  if (transform->is_lab()) {
    ranges[0] = {0, 100};
    ranges[1] = ranges[2] = {-100, 100};
  }
  if (range.size() == static_cast<std::size_t>(2 * n))
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i)
      if (range[2 * i] < range[2 * i + 1]) ranges[i] = {range[2 * i], range[2 * i + 1]};

  if (n == 1) {
    unsigned char bytes[256];
    for (int i = 0; i < 256; ++i) bytes[i] = profile_byte(ranges[0].at(i), false, 0);
    CPDFCSTable::Colors colors;
    transform->convert(colors.data(), bytes, 256);
    return std::make_unique<CPDFCSTable>(PDF_CS_ICC_BASED, colors, ranges[0]);
  }
  const bool is_srgb = transform->is_srgb();
  auto space = std::make_unique<CPDFCSIccBased>(std::move(transform), ranges);
  if (!is_srgb || !space->is_direct()) return space;
  auto plain = std::make_unique<CPDFCSDeviceRGB>();
  plain->family = PDF_CS_ICC_BASED;
  return plain;
}

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_icc_based(const CPDFArray& array,
                                                   CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* stream = context.resolve(item(array, 1), temporary);
  if (stream == nullptr || stream->stream() == nullptr) return nullptr;
  const CPDFDictionary* dict = &stream->stream()->dict;

  auto transform = CPDFIccTransform::of(context.load_stream(stream, max_profile_bytes));
  // A stream without N is taken at its profile's word.
  const int n = context.integer(find_key(dict, "N"), transform ? transform->components() : 0);
  if (transform && transform->components() == n)
    return make_from(std::move(transform), context.numbers(find_key(dict, "Range"), 2 * n));

  std::unique_ptr<CPDFCSBase> alternate = context.parse_space(find_key(dict, "Alternate"));
  if (alternate && (alternate->comp_count == n || n == 0)) return alternate;
  return make_device(n);
}
