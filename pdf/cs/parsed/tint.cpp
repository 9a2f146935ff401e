// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "pdf/cs/parsed/families.h"
#include "pdf/cs/parsed/function.h"
#include "pdf/cs/parsed/makers.h"
#include "pdf/cs/parsed/table_space.h"
#include "pdf/obj/access.h"

// [/Separation name alternate tint] and [/DeviceN names alternate tint attributes], ISO 32000-1
// 8.6.6.4 and 8.6.6.5. A screen has none of the colorants: colours go through the tint transform
// into the alternate space. Two names need neither: None marks nothing, so it is white; All is
// every colorant at once, black where it is full.

namespace {

constexpr int max_colorants = 16;  // What a PDF_COLOR holds.

class TintTransform {
 public:
  TintTransform(std::unique_ptr<CPDFCSBase> alternate, std::unique_ptr<CPDFFunction> function)
      : alternate_(std::move(alternate)),
        parsed_(dynamic_cast<const CPDFCSParsed*>(alternate_.get())),
        function_(std::move(function)) {
    for (int i = 0; i < alternate_->comp_count; ++i) ranges_[i] = pdfbmp::range_of(*alternate_, i);
  }

  /// Null where the two do not fit together or `inputs`.
  static std::unique_ptr<TintTransform> read(const CPDFArray& array, int inputs,
                                             CPDFCSParseContext& context) {
    auto alternate = context.parse_space(pdfbmp::item(array, 2));
    auto function = CPDFFunction::parse(pdfbmp::item(array, 3), context);
    if (!alternate || !function || alternate->family == PDF_CS_INDEXED ||
        function->inputs() != inputs || function->outputs() < alternate->comp_count)
      return nullptr;
    return std::make_unique<TintTransform>(std::move(alternate), std::move(function));
  }

  std::int64_t work() const {
    return function_->work() + (parsed_ != nullptr ? parsed_->work() : 1);
  }

  void convert(const double* tints, _KXRGBA& rgba) const {
    double components[CPDFFunction::max_outputs];
    function_->evaluate(tints, components);
    for (int i = 0; i < alternate_->comp_count; ++i)
      components[i] = std::clamp(components[i], ranges_[i].low, ranges_[i].high);
    if (parsed_ != nullptr) return parsed_->rgb_of(components, rgba);
    // A device space works on 0..255.
    PDF_COLOR color;
    for (int i = 0; i < alternate_->comp_count; ++i)
      color.val[i] = static_cast<int>(components[i] * 255 + 0.5);
    rgba = {0, 0, 0, 255};  // What a table that cannot serve the colour leaves.
    alternate_->get_rgb(color, rgba);
  }

 private:
  std::unique_ptr<CPDFCSBase> alternate_;
  const CPDFCSParsed* parsed_;  // The alternate, where it is no device space.
  std::unique_ptr<CPDFFunction> function_;
  CPDFCSRange ranges_[CPDFFunction::max_outputs];
};

/// Two colorants or more: each pixel goes through the transform, but for those that a small cache
/// of the row remembers.
class CPDFCSDeviceN final : public CPDFCSParsed {
 public:
  CPDFCSDeviceN(int components, std::unique_ptr<TintTransform> tint)
      : CPDFCSParsed(PDF_CS_DEVICE_N, components), tint_(std::move(tint)) {}

  void rgb_of(const double* components, _KXRGBA& rgba) const override {
    tint_->convert(components, rgba);
  }

  void get_default_color(PDF_COLOR& color) override { std::fill_n(color.val, comp_count, 255); }

  std::int64_t work() const override { return tint_->work(); }

 protected:
  void convert(_KXRGBA* dst, const unsigned char* src, int pixels) const override {
    // Direct-mapped: a place is the top byte of a hash of the samples.
    constexpr std::size_t places = 256;
    const auto size = static_cast<std::size_t>(comp_count);
    struct {
      unsigned char samples[max_colorants];
      _KXRGBA pixel;
    } cache[places];
    bool used[places] = {};
    for (int i = 0; i < pixels; ++i, src += size) {
      std::uint32_t hash = 0;
      for (std::size_t c = 0; c < size; ++c) hash = (hash ^ src[c]) * 0x9E3779B1U;
      const std::size_t place = hash >> 24;
      auto& entry = cache[place];
      if (!used[place] || std::memcmp(entry.samples, src, size) != 0) {
        std::memcpy(entry.samples, src, size);
        convert_one(src, entry.pixel);
        used[place] = true;
      }
      dst[i] = entry.pixel;
    }
  }

 private:
  void convert_one(const unsigned char* src, _KXRGBA& rgba) const {
    double tints[max_colorants];
    for (int c = 0; c < comp_count; ++c) tints[c] = CPDFCSRange{}.at(src[c]);
    tint_->convert(tints, rgba);
  }

  std::unique_ptr<TintTransform> tint_;
};

/// White for all tints.
class CPDFCSNoMarks final : public CPDFCSParsed {
 public:
  explicit CPDFCSNoMarks(int components) : CPDFCSParsed(PDF_CS_DEVICE_N, components) {}

  void rgb_of(const double*, _KXRGBA& rgba) const override { rgba = {255, 255, 255, 255}; }
  void get_default_color(PDF_COLOR& color) override { std::fill_n(color.val, comp_count, 255); }

 protected:
  void convert(_KXRGBA* dst, const unsigned char*, int pixels) const override {
    std::fill_n(dst, pixels, _KXRGBA{255, 255, 255, 255});
  }
};

/// The table of a space of one colorant; `convert` takes the tint.
template <class Convert>
std::unique_ptr<CPDFCSBase> make_table(int family, Convert convert) {
  CPDFCSTable::Colors colors;
  for (std::size_t i = 0; i < colors.size(); ++i) {
    const double tint = CPDFCSRange{}.at(static_cast<double>(i));
    convert(tint, colors[i]);
  }
  return std::make_unique<CPDFCSTable>(family, colors);
}

bool is_name(const CPDFObj* object, const char* name) {
  return object != nullptr && object->name() != nullptr && std::strcmp(object->name(), name) == 0;
}

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_separation(const CPDFArray& array,
                                                    CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* name = context.resolve(item(array, 1), temporary);
  if (is_name(name, "None") || is_name(name, "All")) {
    const double darkness = is_name(name, "All") ? 255 : 0;
    return make_table(PDF_CS_SEPARATION, [&](double tint, _KXRGBA& rgba) {
      const auto gray = static_cast<unsigned char>(255.5 - darkness * tint);
      rgba = {gray, gray, gray, 255};
    });
  }
  const auto tint = TintTransform::read(array, 1, context);
  if (!tint) return nullptr;
  return make_table(PDF_CS_SEPARATION,
                    [&](double value, _KXRGBA& rgba) { tint->convert(&value, rgba); });
}

std::unique_ptr<CPDFCSBase> pdfbmp::make_device_n(const CPDFArray& array,
                                                  CPDFCSParseContext& context) {
  CPDFObjHolder temporary;
  const CPDFObj* names = context.resolve(item(array, 1), temporary);
  const CPDFArray* colorants = names == nullptr ? nullptr : names->array();
  if (colorants == nullptr || colorants->count < 1 || colorants->count > max_colorants)
    return nullptr;
  const int count = colorants->count;
  if (std::all_of(colorants->items, colorants->items + count, [&](const CPDFObj& colorant) {
        CPDFObjHolder resolved;
        return is_name(context.resolve(&colorant, resolved), "None");
      }))
    return std::make_unique<CPDFCSNoMarks>(count);

  auto tint = TintTransform::read(array, count, context);
  if (!tint) return nullptr;
  if (count > 1) return std::make_unique<CPDFCSDeviceN>(count, std::move(tint));
  return make_table(PDF_CS_DEVICE_N,
                    [&](double value, _KXRGBA& rgba) { tint->convert(&value, rgba); });
}
