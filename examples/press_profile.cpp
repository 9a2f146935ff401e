// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "examples/press_profile.h"

#include <algorithm>
#include <lcms2.h>

namespace {

constexpr cmsUInt32Number nodes = 7;

// What each ink lets through of red, green and blue, and the paper.
constexpr double inks[4][3] = {
    {0.22, 0.58, 0.74}, {0.76, 0.27, 0.45}, {0.93, 0.85, 0.30}, {0.20, 0.19, 0.19}};
constexpr double paper[3] = {0.90, 0.88, 0.83};

// Inks that multiply, with a little dot gain.
cmsInt32Number sample(const cmsUInt16Number amounts[], cmsUInt16Number lab[], void* to_lab) {
  cmsUInt16Number rgb[3];
  for (int channel = 0; channel < 3; ++channel) {
    double light = paper[channel];
    for (int ink = 0; ink < 4; ++ink) {
      const double amount = amounts[ink] / 65535.0;
      const double grown = amount + 0.6 * amount * (1 - amount);
      light *= 1 - std::min(grown, 1.0) * (1 - inks[ink][channel]);
    }
    rgb[channel] = static_cast<cmsUInt16Number>(light * 65535 + 0.5);
  }
  cmsDoTransform(to_lab, rgb, lab, 1);
  return TRUE;
}

bool write_tables(cmsHPROFILE profile) {
  cmsHPROFILE srgb = cmsCreate_sRGBProfile(), lab = cmsCreateLab2Profile(nullptr);
  cmsHTRANSFORM to_lab = cmsCreateTransform(srgb, TYPE_RGB_16, lab, TYPE_LabV2_16,
                                            INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE);
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage* table = cmsStageAllocCLut16bit(nullptr, nodes, 4, 3, nullptr);
  const bool ok = to_lab != nullptr && pipeline != nullptr && table != nullptr &&
                  cmsStageSampleCLut16bit(table, sample, to_lab, 0) != 0 &&
                  cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table) != 0 &&
                  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline) != 0;
  if (pipeline != nullptr) cmsPipelineFree(pipeline);
  if (to_lab != nullptr) cmsDeleteTransform(to_lab);
  cmsCloseProfile(srgb);
  cmsCloseProfile(lab);
  return ok;
}

}  // namespace

std::string make_press_profile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 2.1);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  std::string bytes;
  cmsUInt32Number size = 0;
  if (write_tables(profile) && cmsSaveProfileToMem(profile, nullptr, &size) != 0) {
    bytes.resize(size);
    if (cmsSaveProfileToMem(profile, bytes.data(), &size) == 0) bytes.clear();
  }
  cmsCloseProfile(profile);
  // Bytes 24 to 35 of the header are the time of making.
  if (bytes.size() >= 128) std::fill_n(bytes.begin() + 24, 12, '\0');
  return bytes;
}
