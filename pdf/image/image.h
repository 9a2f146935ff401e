// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kx/bmp.h"
#include "kx/rgba.h"
#include "pdf/cs/color_space.h"
#include "pdf/obj/object.h"
#include "pdf/obj/stream.h"

class CPDFXRefTable;
struct CPDFResources;

/// The base record of external objects.
class PDFBMP_API CPDFXObject {
 public:
  CPDFXObject() = default;
  virtual ~CPDFXObject();  ///< Frees `obj`.
  CPDFXObject(const CPDFXObject&) = delete;
  CPDFXObject& operator=(const CPDFXObject&) = delete;

  int xobj_type = 0;              ///< 1 for an image.
  CPDFObj obj;                    ///< The object itself, owned; for an image a stream value.
  CPDFXRefTable* xref = nullptr;  ///< Not owned. Null: references stay unresolved.
};

/// A PDF image: its description, a reader of its samples, and the bitmaps made of them.
///
/// Use: set `xref`, copy the image XObject into `obj`, call load() (or load_inline() for an inline
/// image), then ask for bitmaps. The samples are read once: the first request that decodes takes
/// the stream, and afterwards every request gives its own cached bitmap, null if it never ran.
/// Bitmaps stay the image's and live until unload() or the destructor. Failures are null results;
/// nothing throws. One image, with its sub-images, is used by one thread at a time.
class PDFBMP_API CPDFImage : public CPDFXObject {
 public:
  CPDFImage();
  ~CPDFImage() override;

  /// Bits of `flags`.
  enum : std::uint32_t {
    image_mask = 1,     ///< A stencil mask: no colour or gray bitmap.
    smask_in_data = 2,  ///< SMaskInData is not 0: no colour, gray or mono bitmap.
    no_quarter = 4,     ///< Set by the image's creator: get_bmp never goes below half size.
    has_matte = 8,      ///< `matte` was read.
  };

  // ---- Description, set by load() and load_inline().

  int width = 0;             ///< Samples in a row; 0 means not loaded.
  int height = 0;            ///< Rows; 0 means not loaded.
  int bpc = 0;               ///< Bits per component.
  std::uint32_t flags = 0;   ///< Only ever added to.
  CPDFCSBase* cs = nullptr;  ///< Owned unless `cs_borrowed`.
  int cs_borrowed = 0;       ///< Non-zero: `cs` belongs to the page's resources.
  int has_mask = 0;          ///< 1: `mask`, or the colour key in `mask_min` and `mask_max`.
  int interpolate = 1;
  CPDFImage* mask = nullptr;  ///< Owned; the image of a Mask stream.
  PDF_COLOR mask_min = {};    ///< Colour key in sample units, at most 16 components.
  PDF_COLOR mask_max = {};
  CPDFImage* smask = nullptr;    ///< Owned; the image of the SMask entry.
  CPDFStream* stream = nullptr;  ///< Owned; the samples, until the first bitmap is made.

  // ---- Caches, owned.

  CKXBmp32* bmp = nullptr;
  CKXBmpGray* bmp_gray = nullptr;
  CKXBmp8* bmp_mono = nullptr;
  CKXBmp8* bmp_mask = nullptr;

  int has_decode = 0;       ///< 1: a Decode array was read.
  int jpx_alpha = 0;        ///< 1: `stream` is a CPDFStreamJPX with an alpha channel.
  int decode_min[16] = {};  ///< 0..255; palette indices for an Indexed XObject.
  int decode_max[16] = {};
  PDF_COLOR matte = {};  ///< Valid with `has_matte`; in the parent image's colour space.

  // ---- Loading.

  /// Reads the dictionary of `obj` and makes the stream and the sub-images. Does nothing where
  /// `width` or `height` is set or `obj` is no stream. What is missing or unusable is left at its
  /// default, and the requests then refuse the image. Of Mask and Decode the first 16 pairs are
  /// taken, of Matte the first 16 values; the missing partner of an odd last entry is 0. A Decode
  /// or Matte that is no array counts as absent. A mask that leads back to an image on its own
  /// chain is dropped, and so is one more than 4 levels deep. A stream, space or sub-image left
  /// from an earlier load is released when its successor is stored (the stream in any case).
  void load();

  /// Fills the record from an inline image's dictionary (abbreviated or full keys) and its `len`
  /// raw bytes at `data`, which must outlive the stream. `res` gives the named colour spaces; null
  /// is an empty table. W, H and BPC that are no numbers, IM that is neither boolean nor number,
  /// and a Decode that is no array count as absent. Where a filter is unknown, `stream` is null.
  void load_inline(const CPDFDictionary* dict, unsigned char* data, int len,
                   const CPDFResources* res);

  /// Drops the bitmaps, the sub-images and an owned colour space, so that load() can run again.
  /// The stream stays.
  void unload();

  // ---- Requests.

  /// The matte colour of the soft mask, or else of the mask, in this image's colour space, a = 255;
  /// four zero bytes where there is none.
  _KXRGBA get_matte() const;

  /// The picture in colour. Above 40 * 2^20 pixels it is half the size in each direction, above
  /// 80 * 2^20 a quarter (unless `no_quarter`). Colour keys clear alpha; Mask, SMask and Matte are
  /// not applied. Null for stencils, SMaskInData, no colour space, or a size or layout that cannot
  /// be decoded. Consumes the stream and an owned colour space.
  CKXBmp32* get_bmp();

  /// The picture in gray with an alpha byte, always at full size. Null as for get_bmp(). Consumes
  /// the stream and an owned colour space. A layout that cannot be decoded is all transparent.
  CKXBmpGray* get_bmp_gray();

  /// The opacity of a stencil or 1-bit mask image: 0 bits are opaque, unless Decode says otherwise.
  CKXBmp8* get_mask();

  /// The opacity of a soft mask: a DeviceGray image of 1 or 8 bits.
  CKXBmp8* get_smask();

  /// An index bitmap of a 1-bit one-component or 8-bit gray image without masks, and its 256
  /// colours. Above 2^25 (1-bit) pixels at half size, above 2^27 (1-bit) or 2^26 (8-bit) at a
  /// quarter, averaged. `palette` is written by every call that does not refuse the image's kind.
  CKXBmp8* get_bmp_mono(_KXRGBA* palette);

  // ---- Sample decoders, one a pixel layout and scale. Each fills the bitmap that its request has
  // made from `stream` through `cs` and returns 1, or 0 where nothing was decoded: no row buffer,
  // no colour space, or a layout that is out of range.

  int load_bmp_from1();
  int load_bmp_from1_half();
  int load_bmp_from1_4in1();
  int load_bmp_from2();
  int load_bmp_from2_half();
  int load_bmp_from2_4in1();
  int load_bmp_from4();
  int load_bmp_from4_half();
  int load_bmp_from4_4in1();
  int load_bmp_from8();
  int load_bmp_from8_half();
  int load_bmp_from8_4in1();
  int load_bmp_from24();
  int load_bmp_from24_half();
  int load_bmp_from24_4in1();
  int load_bmp_from32();
  int load_bmp_from32_half();
  int load_bmp_from32_4in1();
  int load_bmp_fromN(int comp_count);
  int load_bmp_fromN_half(int comp_count);
  int load_bmp_fromN_4in1(int comp_count);

  /// The colours of the 16 (256) values of a 4-bit (8-bit) pixel, colour key applied.
  void load_pals_from4(_KXRGBA* table);
  void load_pals_from8(unsigned int* table);

  /// Multiply the alpha of `bmp` by the alpha channel of the JPEG 2000 stream. 0 where there is
  /// none, or no memory for a row of it.
  int load_jpx_alpha();
  int load_jpx_alpha_half();
  int load_jpx_alpha_4in1();

  int load_bmpg_from1();
  int load_bmpg_from2();
  int load_bmpg_from4();
  int load_bmpg_from8();
  int load_bmpg_from24();
  int load_bmpg_from32();
  int load_bmpg_fromN(int comp_count);
};
