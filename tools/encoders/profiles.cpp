// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/encoders/profiles.h"

#include <algorithm>
#include <cstddef>

namespace {

using encoders::InksToRgb;
using encoders::RgbToInks;

/// The profile's bytes, which it is closed for. Bytes 24 to 35 of the header are the time of
/// making.
std::string bytes_of(cmsHPROFILE profile) {
  std::string bytes;
  cmsUInt32Number size = 0;
  if (cmsSaveProfileToMem(profile, nullptr, &size) != 0) {
    bytes.resize(size);
    if (cmsSaveProfileToMem(profile, bytes.data(), &size) == 0) bytes.clear();
  }
  cmsCloseProfile(profile);
  if (bytes.size() >= 128) std::fill_n(bytes.begin() + 24, 12, '\0');
  return bytes;
}

/// A conversion between sRGB and Lab, both in 16 bits.
class Conversion {
 public:
  explicit Conversion(bool to_lab) {
    cmsHPROFILE srgb = cmsCreate_sRGBProfile(), lab = cmsCreateLab2Profile(nullptr);
    constexpr cmsUInt32Number intent = INTENT_RELATIVE_COLORIMETRIC;
    constexpr cmsUInt32Number flags = cmsFLAGS_NOCACHE;
    transform_ = to_lab ? cmsCreateTransform(srgb, TYPE_RGB_16, lab, TYPE_LabV2_16, intent, flags)
                        : cmsCreateTransform(lab, TYPE_LabV2_16, srgb, TYPE_RGB_16, intent, flags);
    cmsCloseProfile(srgb);
    cmsCloseProfile(lab);
  }
  ~Conversion() {
    if (transform_ != nullptr) cmsDeleteTransform(transform_);
  }
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  void run(const cmsUInt16Number* in, cmsUInt16Number* out) const {
    cmsDoTransform(transform_, in, out, 1);
  }

 private:
  cmsHTRANSFORM transform_ = nullptr;
};

template <std::size_t N>
std::array<double, N> fractions(const cmsUInt16Number* words) {
  std::array<double, N> values;
  for (std::size_t i = 0; i < N; ++i) values[i] = words[i] / 65535.0;
  return values;
}

template <std::size_t N>
void store(const std::array<double, N>& values, cmsUInt16Number* words) {
  for (std::size_t i = 0; i < N; ++i) {
    words[i] = static_cast<cmsUInt16Number>(std::clamp(values[i], 0.0, 1.0) * 65535 + 0.5);
  }
}

/// What Little CMS calls for each node of a table: the function and the conversion beside it.
template <class Function>
struct Sampled {
  const Function& function;
  Conversion conversion;
};

cmsInt32Number sample_lab(const cmsUInt16Number inks[], cmsUInt16Number lab[], void* user) {
  const auto& sampled = *static_cast<Sampled<InksToRgb>*>(user);
  cmsUInt16Number rgb[3];
  store(sampled.function(fractions<4>(inks)), rgb);
  sampled.conversion.run(rgb, lab);
  return TRUE;
}

cmsInt32Number sample_inks(const cmsUInt16Number lab[], cmsUInt16Number inks[], void* user) {
  const auto& sampled = *static_cast<Sampled<RgbToInks>*>(user);
  cmsUInt16Number rgb[3];
  sampled.conversion.run(lab, rgb);
  store(sampled.function(fractions<3>(rgb)), inks);
  return TRUE;
}

bool write_table(cmsHPROFILE profile, cmsTagSignature tag, unsigned nodes, unsigned inputs,
                 unsigned outputs, cmsSAMPLER16 sample, void* user) {
  cmsPipeline* const pipeline = cmsPipelineAlloc(nullptr, inputs, outputs);
  cmsStage* const table = cmsStageAllocCLut16bit(nullptr, nodes, inputs, outputs, nullptr);
  const bool ok = pipeline != nullptr && table != nullptr &&
                  cmsStageSampleCLut16bit(table, sample, user, 0) != 0 &&
                  cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table) != 0 &&
                  cmsWriteTag(profile, tag, pipeline) != 0;
  if (pipeline != nullptr) cmsPipelineFree(pipeline);
  return ok;
}

}  // namespace

namespace encoders {

std::string rgb_profile(double gamma, const cmsCIExyYTRIPLE& primaries) {
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
  cmsToneCurve* curves[3] = {curve, curve, curve};
  std::string bytes = bytes_of(cmsCreateRGBProfile(&d65_xy, &primaries, curves));
  cmsFreeToneCurve(curve);
  return bytes;
}

std::string srgb_profile() { return bytes_of(cmsCreate_sRGBProfile()); }

std::string gray_profile(double gamma) {
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
  std::string bytes = bytes_of(cmsCreateGrayProfile(&d65_xy, curve));
  cmsFreeToneCurve(curve);
  return bytes;
}

std::string lab_profile() { return bytes_of(cmsCreateLab4Profile(nullptr)); }

std::string cmyk_profile(unsigned nodes, const InksToRgb& to_rgb, const RgbToInks& to_inks) {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);  // Its tables need no curves round them.
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  Sampled<InksToRgb> forth = {to_rgb, Conversion(true)};
  bool ok = write_table(profile, cmsSigAToB0Tag, nodes, 4, 3, sample_lab, &forth);
  if (ok && to_inks) {
    Sampled<RgbToInks> back = {to_inks, Conversion(false)};
    ok = write_table(profile, cmsSigBToA0Tag, 17, 3, 4, sample_inks, &back);
  }
  if (ok) return bytes_of(profile);
  cmsCloseProfile(profile);
  return {};
}

}  // namespace encoders
