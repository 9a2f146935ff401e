// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <lcms2.h>
#include <memory>

// Owners of Little CMS handles. Makers are given null profiles without harm; results may be null.

namespace pdfbmp {

struct LcmsClose {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct LcmsDelete {
  void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using LcmsProfile = std::unique_ptr<void, LcmsClose>;
using LcmsTransform = std::unique_ptr<void, LcmsDelete>;

inline LcmsProfile open_profile(const void* bytes, std::size_t size) {
  if (size == 0 || size > 0xFFFFFFFFU) return nullptr;
  return LcmsProfile(cmsOpenProfileFromMem(bytes, static_cast<cmsUInt32Number>(size)));
}

/// To sRGB as PDF renders by default: relative colorimetric, with the black point compensated. The
/// transform may be used by several threads at a time.
inline LcmsTransform transform_to_srgb(const LcmsProfile& from, cmsUInt32Number from_format,
                                       cmsUInt32Number to_format, cmsUInt32Number flags) {
  const LcmsProfile srgb(cmsCreate_sRGBProfile());
  if (!from || !srgb) return nullptr;
  return LcmsTransform(cmsCreateTransform(
      from.get(), from_format, srgb.get(), to_format, INTENT_RELATIVE_COLORIMETRIC,
      flags | cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION));
}

}  // namespace pdfbmp
