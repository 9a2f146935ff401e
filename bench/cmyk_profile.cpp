// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "bench/cmyk_profile.h"

#include <cmath>

#include "pdf/cs/device_cmyk.h"
#include "tools/encoders/profiles.h"

namespace {

constexpr cmsUInt32Number nodes = 17;
constexpr cmsUInt32Number conversion = cmsFLAGS_BLACKPOINTCOMPENSATION;

std::array<double, 3> by_formula(const std::array<double, 4>& inks) {
  PDF_COLOR color = {};
  for (std::size_t i = 0; i < 4; ++i) color.val[i] = static_cast<int>(std::lround(inks[i] * 255));
  _KXRGBA pixel;
  CPDFCSDeviceCMYK().get_rgb(color, pixel);
  return {pixel.r / 255.0, pixel.g / 255.0, pixel.b / 255.0};
}

}  // namespace

cmsHPROFILE make_cmyk_profile() {
  // Through its bytes, as a profile in a file would come.
  const std::string bytes = encoders::cmyk_profile(nodes, by_formula);
  return cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
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
