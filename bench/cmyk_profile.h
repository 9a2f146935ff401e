// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <lcms2.h>
#include <vector>

/// A CMYK output profile made on the spot: DeviceCMYK's own formula, as a printer's table from
/// inks to Lab with 17 nodes an axis. Null where Little CMS fails; closed by the caller.
cmsHPROFILE make_cmyk_profile();

/// The profile to 8-bit B, G, R, A (sRGB, relative colorimetric, black point compensated).
cmsHTRANSFORM make_cmyk_transform(cmsHPROFILE profile);

/// The lookup table of CPDFCSDeviceCMYKExt from the same profile; empty where Little CMS fails.
std::vector<unsigned short> make_cmyk_table(cmsHPROFILE profile);
