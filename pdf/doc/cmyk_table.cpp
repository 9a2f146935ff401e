// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/cmyk_table.h"

#include <algorithm>

#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/parsed/lcms.h"

namespace {

constexpr int nodes = 17;
constexpr int row_nodes = nodes * nodes;  // Yellow and black.
unsigned short table[row_nodes * row_nodes * 3];

/// The ink that a node of an axis stands for: 16 * i - 1, and node 0, which would be -1, no ink.
constexpr unsigned char ink_of(int node) {
  return static_cast<unsigned char>(std::max(16 * node - 1, 0));
}

/// A channel from 0..65535 to the table's scale, whose high byte is the nearest 8-bit channel.
unsigned short entry_of(unsigned short channel) {
  return static_cast<unsigned short>(channel * 65280ULL / 65535 + 128);
}

}  // namespace

bool pdfbmp::install_cmyk_table(const void* icc_profile, std::size_t bytes, std::string& error) {
  const LcmsProfile profile = open_profile(icc_profile, bytes);
  if (!profile) {
    error = "not an ICC profile";
    return false;
  }
  if (cmsGetColorSpace(profile.get()) != cmsSigCmykData) {
    error = "the ICC profile is not one of CMYK colours";
    return false;
  }
  // Each node by the profile itself, not by a grid of Little CMS between it and ours.
  const LcmsTransform transform =
      transform_to_srgb(profile, TYPE_CMYK_8, TYPE_RGB_16, cmsFLAGS_NOOPTIMIZE);
  if (!transform) {
    error = "the ICC profile has no conversion to sRGB";
    return false;
  }

  unsigned short* out = table;
  for (int c = 0; c < nodes; ++c) {
    for (int m = 0; m < nodes; ++m) {
      unsigned char inks[row_nodes][4];
      for (int i = 0; i < row_nodes; ++i) {
        const unsigned char pixel[4] = {ink_of(c), ink_of(m), ink_of(i / nodes), ink_of(i % nodes)};
        std::copy(pixel, pixel + 4, inks[i]);
      }
      cmsDoTransform(transform.get(), inks, out, row_nodes);
      std::transform(out, out + row_nodes * 3, out, entry_of);
      out += row_nodes * 3;
    }
  }
  CPDFCSDeviceCMYKExt::ms_icc = table;
  CPDFCSDeviceCMYKExt::ms_icc_end = out;
  return true;
}

void pdfbmp::remove_cmyk_table() {
  CPDFCSDeviceCMYKExt::ms_icc = nullptr;
  CPDFCSDeviceCMYKExt::ms_icc_end = nullptr;
}
