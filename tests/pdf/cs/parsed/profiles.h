// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <lcms2.h>
#include <string>

// ICC profiles as bytes, made on the spot.

namespace testing_support {

inline std::string profile_bytes(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

inline constexpr cmsCIExyY d65_xy = {0.3127, 0.3290, 1};

/// Matrix and shaper: the primaries of sRGB with red moved to `red`, and a power curve.
inline std::string rgb_profile(double gamma, cmsCIExyY red = {0.64, 0.33, 1}) {
  cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
  cmsToneCurve* curves[3] = {curve, curve, curve};
  const cmsCIExyYTRIPLE primaries = {red, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
  const std::string bytes = profile_bytes(cmsCreateRGBProfile(&d65_xy, &primaries, curves));
  cmsFreeToneCurve(curve);
  return bytes;
}

inline std::string srgb_profile() { return profile_bytes(cmsCreate_sRGBProfile()); }

inline std::string gray_profile(double gamma) {
  cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
  const std::string bytes = profile_bytes(cmsCreateGrayProfile(&d65_xy, curve));
  cmsFreeToneCurve(curve);
  return bytes;
}

inline std::string lab_profile() { return profile_bytes(cmsCreateLab4Profile(nullptr)); }

/// A grid of `nodes` an input, filled by `sample`, as a tag of the profile.
inline void write_grid(cmsHPROFILE profile, cmsTagSignature tag, unsigned nodes, unsigned inputs, unsigned outputs, cmsSAMPLER16 sample,
                       void* cargo) {
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, inputs, outputs);
  cmsStage* grid = cmsStageAllocCLut16bit(nullptr, nodes, inputs, outputs, nullptr);
  cmsStageSampleCLut16bit(grid, sample, cargo, 0);
  cmsPipelineInsertStage(pipeline, cmsAT_END, grid);
  cmsWriteTag(profile, tag, pipeline);
  cmsPipelineFree(pipeline);
}

/// An output profile whose grid of `nodes` an ink says that inks (0..1) show as the sRGB colour
/// (1 - ink) * (1 - k) * (1 - lift) + lift: `lift` is how far the darkest colour is from black. The
/// way back, which tells Little CMS the black point, uses as much black ink as it can.
inline std::string cmyk_profile(double lift = 0, unsigned nodes = 6) {
  struct Cargo {
    cmsHTRANSFORM transform;
    double lift;
  };
  const auto from_inks = [](const cmsUInt16Number in[], cmsUInt16Number out[], void* user) -> int {
    const Cargo& c = *static_cast<Cargo*>(user);
    cmsUInt16Number rgb[3];
    for (int i = 0; i < 3; ++i) {
      const double light = (1 - in[i] / 65535.0) * (1 - in[3] / 65535.0);
      rgb[i] = static_cast<cmsUInt16Number>(65535 * (light * (1 - c.lift) + c.lift) + 0.5);
    }
    cmsDoTransform(c.transform, rgb, out, 1);
    return 1;
  };
  const auto to_inks = [](const cmsUInt16Number in[], cmsUInt16Number out[], void* user) -> int {
    const Cargo& c = *static_cast<Cargo*>(user);
    cmsUInt16Number rgb[3];
    cmsDoTransform(c.transform, in, rgb, 1);
    double light[3], most = 0;
    for (int i = 0; i < 3; ++i) {
      light[i] = std::max(0.0, (rgb[i] / 65535.0 - c.lift) / (1 - c.lift));
      most = std::max(most, light[i]);
    }
    for (int i = 0; i < 3; ++i) out[i] = static_cast<cmsUInt16Number>(most > 0 ? 65535 * (1 - light[i] / most) : 0);
    out[3] = static_cast<cmsUInt16Number>(65535 * (1 - most));
    return 1;
  };

  const cmsHPROFILE srgb = cmsCreate_sRGBProfile(), lab = cmsCreateLab2Profile(nullptr);
  const cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  constexpr cmsUInt32Number intent = INTENT_RELATIVE_COLORIMETRIC, flags = cmsFLAGS_NOOPTIMIZE;
  Cargo to_lab = {cmsCreateTransform(srgb, TYPE_RGB_16, lab, TYPE_LabV2_16, intent, flags), lift};
  Cargo to_rgb = {cmsCreateTransform(lab, TYPE_LabV2_16, srgb, TYPE_RGB_16, intent, flags), lift};
  write_grid(profile, cmsSigAToB0Tag, nodes, 4, 3, from_inks, &to_lab);
  write_grid(profile, cmsSigBToA0Tag, 17, 3, 4, to_inks, &to_rgb);
  cmsDeleteTransform(to_lab.transform);
  cmsDeleteTransform(to_rgb.transform);
  cmsCloseProfile(srgb);
  cmsCloseProfile(lab);
  return profile_bytes(profile);
}

}  // namespace testing_support
