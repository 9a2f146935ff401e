// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "bench/cmyk_profile.h"

#include "pdf/cs/device_cmyk.h"

namespace {

constexpr cmsUInt32Number nodes = 17;
constexpr cmsUInt32Number conversion = cmsFLAGS_BLACKPOINTCOMPENSATION;

/// Samples the formula: four inks in 16 bits to Lab in 16 bits.
cmsInt32Number sample(const cmsUInt16Number inks[], cmsUInt16Number lab[], void* to_lab) {
  PDF_COLOR color = {};
  for (int i = 0; i < 4; ++i) color.val[i] = (inks[i] + 128) / 257;
  CPDFCSDeviceCMYK formula;
  _KXRGBA pixel;
  formula.get_rgb(color, pixel);
  const unsigned char rgb[3] = {pixel.r, pixel.g, pixel.b};
  cmsDoTransform(to_lab, rgb, lab, 1);
  return TRUE;
}

/// Adds the table from device to Lab to an empty profile.
bool write_table(cmsHPROFILE profile) {
  cmsHPROFILE srgb = cmsCreate_sRGBProfile(), lab = cmsCreateLab2Profile(nullptr);
  cmsHTRANSFORM to_lab = cmsCreateTransform(srgb, TYPE_RGB_8, lab, TYPE_LabV2_16,
                                            INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE);
  cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
  cmsStage* table = cmsStageAllocCLut16bit(nullptr, nodes, 4, 3, nullptr);
  const bool ok = to_lab && pipeline && table &&
                  cmsStageSampleCLut16bit(table, sample, to_lab, 0) &&
                  cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table) &&
                  cmsWriteTag(profile, cmsSigAToB0Tag, pipeline) &&
                  cmsWriteTag(profile, cmsSigAToB1Tag, pipeline);
  if (pipeline) cmsPipelineFree(pipeline);
  if (to_lab) cmsDeleteTransform(to_lab);
  cmsCloseProfile(srgb);
  cmsCloseProfile(lab);
  return ok;
}

}  // namespace

cmsHPROFILE make_cmyk_profile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  if (!profile) return nullptr;
  cmsSetProfileVersion(profile, 2.1);  // whose tables need no curves round them
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  const bool ok = write_table(profile);
  // Through its bytes, as a profile in a file would come.
  cmsUInt32Number size = 0;
  cmsHPROFILE read = nullptr;
  if (ok && cmsSaveProfileToMem(profile, nullptr, &size)) {
    std::vector<char> bytes(size);
    if (cmsSaveProfileToMem(profile, bytes.data(), &size)) {
      read = cmsOpenProfileFromMem(bytes.data(), size);
    }
  }
  cmsCloseProfile(profile);
  return read;
}

cmsHTRANSFORM make_cmyk_transform(cmsHPROFILE profile) {
  cmsHPROFILE srgb = cmsCreate_sRGBProfile();
  cmsHTRANSFORM transform = cmsCreateTransform(profile, TYPE_CMYK_8, srgb, TYPE_BGRA_8,
                                               INTENT_RELATIVE_COLORIMETRIC, conversion);
  cmsCloseProfile(srgb);
  return transform;
}

std::vector<unsigned short> make_cmyk_table(cmsHPROFILE profile) {
  cmsHPROFILE srgb = cmsCreate_sRGBProfile();
  cmsHTRANSFORM transform = cmsCreateTransform(profile, TYPE_CMYK_16, srgb, TYPE_RGB_16,
                                               INTENT_RELATIVE_COLORIMETRIC, conversion);
  cmsCloseProfile(srgb);
  if (!transform) return {};
  std::vector<unsigned short> inks;
  for (unsigned node = 0; node < nodes * nodes * nodes * nodes; ++node) {
    for (const unsigned stride : {nodes * nodes * nodes, nodes * nodes, nodes, 1u}) {
      const unsigned at = node / stride % nodes;
      inks.push_back(static_cast<unsigned short>(at == 0 ? 0 : (16 * at - 1) * 257));
    }
  }
  std::vector<unsigned short> table(inks.size() / 4 * 3);
  cmsDoTransform(transform, inks.data(), table.data(), nodes * nodes * nodes * nodes);
  cmsDeleteTransform(transform);
  return table;
}
