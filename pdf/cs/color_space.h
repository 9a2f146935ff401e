// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include "kx/api.h"
#include "kx/rgba.h"

class CPDFObj;
class CPDFXRefTable;

// A colour space turns the samples of an image into pixels.
//
//     family   colour space                      components   file
//     1        DeviceGray                        1            pdf/cs/device_gray.h
//     2        CalGray                           1            pdf/cs/parsed/
//     3        DeviceRGB                         3            pdf/cs/device_rgb.h
//     4        CalRGB, and RGB that is sRGB      3            pdf/cs/parsed/
//     5        DeviceCMYK, by formula            4            pdf/cs/device_cmyk.h
//     8        Indexed                           1            pdf/cs/parsed/
//     12       DeviceCMYK, by lookup table       4            pdf/cs/device_cmyk_ext.h
//     others   made by parser_cs                 1 to 16      pdf/cs/parsed/
//
// Shapes:
//   pixel    _KXRGBA, bytes b, g, r, a (kx/rgba.h)
//   gray     two bytes: gray level, then 255 as alpha
//   samples  8-bit, `comp_count` bytes a pixel, components in the space's own order
//
// Colour spaces do not change after they are made: any number of threads may use one at a time.
// No operation reports a failure, allocates or locks.

/// One colour. `val[i]` is component i on the scale 0..255 (255 is 1.0; for Indexed `val[0]` is
/// the index). It carries no component count: the space knows its own.
struct PDF_COLOR {
  int val[16];
};

class PDFBMP_API CPDFCSBase {
 public:
  virtual ~CPDFCSBase() = default;

  /// Stores the 8-bit gray level of `color`.
  virtual void get_gray(const PDF_COLOR& color, unsigned char& gray) = 0;

  /// Stores b, g, r and a = 255. A space that cannot serve the colour leaves `rgba` untouched.
  virtual void get_rgb(const PDF_COLOR& color, _KXRGBA& rgba) = 0;

  /// Stores C, M, Y, K (0..255) in `cmyk.val[0..3]`. The two objects are distinct.
  virtual void get_cmyk(const PDF_COLOR& color, PDF_COLOR& cmyk) = 0;

  /// Stores the space's initial colour. Here: `val[0..3]` = 0, the rest left alone.
  virtual void get_default_color(PDF_COLOR& color);

  // Runs. `nbytes` counts source bytes, a multiple of `comp_count`; below 1 nothing is written.
  // n = nbytes / comp_count source pixels give n results, or for batch_rgb2 (n + 1) >> 1, the
  // first pixel of every two, and for batch_rgb4 (n + 3) >> 2, the first of every four. Pixels are
  // converted strictly in order, each as by get_rgb or get_gray; source and destination may
  // overlap only as that order allows. Nothing before or past the named bytes is read or written.

  virtual void batch_rgb(_KXRGBA* dst, const unsigned char* src, int nbytes) = 0;
  virtual void batch_gray(unsigned char* dst, const unsigned char* src, int nbytes) = 0;
  virtual void batch_rgb2(_KXRGBA* dst, const unsigned char* src, int nbytes) = 0;
  virtual void batch_rgb4(_KXRGBA* dst, const unsigned char* src, int nbytes) = 0;

  /// A capability that callers outside the image unit ask for. Here: 0.
  virtual int support_op();

  /// The seam to the colour-space parser: a new space, owned by the caller, for a ColorSpace entry
  /// (a name, an array, or a reference to one where `xref` is given); null for what it cannot make.
  /// Declared here, defined by whoever links the image library: the document library does so.
  static CPDFCSBase* parser_cs(const CPDFObj* entry, CPDFXRefTable* xref);

  int family = 0;
  int comp_count = 0;  ///< Components of a colour, bytes of a pixel in the runs.
};
