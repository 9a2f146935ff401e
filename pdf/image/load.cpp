// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdint>
#include <new>
#include <utility>

#include "pdf/image/image.h"
#include "pdf/image/loading.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"
#include "pdf/obj/jpx_stream.h"
#include "pdf/obj/xref.h"

using image_loading::capacity;

namespace {

constexpr int family_indexed = 8;
constexpr int max_mask_depth = 4;  ///< The outermost image is at depth 0.

/// An image being loaded and those whose mask or soft mask it is.
struct Chain {
  const CPDFImage& image;
  const Chain* parent;
  int depth;
};

std::uint32_t identity_of(const CPDFStreamRec& rec) {
  return static_cast<std::uint32_t>(rec.location[1]);
}

/// Whether a mask stream leads back to an image on the chain, or lies too deep below its start.
/// `rec` is null for what is no stream.
bool is_refused(const CPDFStreamRec* rec, const Chain& chain) {
  if (chain.depth >= max_mask_depth) return true;
  if (rec == nullptr) return false;
  for (const Chain* link = &chain; link != nullptr; link = link->parent) {
    if (identity_of(*link->image.obj.stream()) == identity_of(*rec)) return true;
  }
  return false;
}

void load_chain(CPDFImage& image, const Chain* parent, int depth);

/// Replaces `slot` by a loaded sub-image of `object`. False, with nothing changed, where memory
/// for it failed.
bool load_sub_image(CPDFImage*& slot, const CPDFObj& object, const Chain& chain) {
  auto* sub = new (std::nothrow) CPDFImage;
  if (sub == nullptr) return false;
  delete std::exchange(slot, sub);
  sub->xref = chain.image.xref;
  sub->obj.copy_from(&object);
  load_chain(*sub, &chain, chain.depth + 1);
  return true;
}

void load_mask(CPDFImage& image, const CPDFObj* entry, const Chain& chain) {
  CPDFObjHolder resolved;
  resolve_copy(entry, image.xref, resolved);
  if (const CPDFArray* key = resolved.array()) {
    image_loading::for_pairs(*key, [&](int i, const CPDFObj* min, const CPDFObj* max) {
      image.mask_min.val[i] = get_int_value(min, image.xref);
      image.mask_max.val[i] = max != nullptr ? get_int_value(max, image.xref) : 0;
    });
    image.has_mask = 1;
  } else if (resolved.type == PDF_STREAM) {
    if (is_refused(resolved.stream(), chain)) return;
    if (load_sub_image(image.mask, resolved, chain)) image.has_mask = 1;
  }
}

void load_soft_mask(CPDFImage& image, const CPDFObj* entry, const Chain& chain) {
  CPDFObjHolder resolved;
  resolve_copy(entry, image.xref, resolved);
  // What is no stream still makes a sub-image, one that stays unloaded.
  if (is_refused(resolved.stream(), chain)) return;
  load_sub_image(image.smask, resolved, chain);
}

/// Decode and Matte values: indices in an Indexed space, else the unit range brought to a byte.
int color_value(const CPDFObj* item, CPDFXRefTable* xref, bool indexed) {
  if (item == nullptr) return 0;
  return indexed ? get_int_value(item, xref) : fixed_to_byte(get_fixed_value(item, xref));
}

void load_decode(CPDFImage& image, const CPDFObj* entry, bool indexed) {
  CPDFObjHolder resolved;
  const CPDFArray* array = get_array_value(entry, image.xref, resolved);
  if (array == nullptr) return;
  image_loading::for_pairs(*array, [&](int i, const CPDFObj* min, const CPDFObj* max) {
    image.decode_min[i] = color_value(min, image.xref, indexed);
    image.decode_max[i] = color_value(max, image.xref, indexed);
  });
  image.has_decode = 1;
}

void load_matte(CPDFImage& image, const CPDFObj* entry, bool indexed) {
  CPDFObjHolder resolved;
  const CPDFArray* array = get_array_value(entry, image.xref, resolved);
  if (array == nullptr) return;
  for (int i = 0; i < array->count && i < capacity; ++i) {
    image.matte.val[i] = color_value(&array->items[i], image.xref, indexed);
  }
  image.flags |= CPDFImage::has_matte;
}

/// load() of an image on a chain of masks.
void load_chain(CPDFImage& image, const Chain* parent, int depth) {
  if (image.width != 0 || image.height != 0) return;
  const CPDFStreamRec* rec = image.obj.stream();
  if (rec == nullptr) return;
  const Chain chain = {image, parent, depth};
  const CPDFDictionary* dict = &rec->dict;
  CPDFXRefTable* xref = image.xref;
  const auto int_of = [&](const char* key, int absent) {
    const CPDFObj* entry = find_key(dict, key);
    return entry != nullptr ? get_int_value(entry, xref) : absent;
  };
  const auto bool_of = [&](const char* key) {
    const CPDFObj* entry = find_key(dict, key);
    return entry != nullptr ? get_bool_value(entry, xref) : 0;
  };

  image.width = int_of(CPDFDictionary::sm_tag_width, 0);
  image.height = int_of(CPDFDictionary::sm_tag_height, 0);
  image.bpc = int_of(CPDFDictionary::sm_tag_bpc, image.bpc);
  if (const CPDFObj* entry = find_key(dict, CPDFDictionary::sm_tag_cs)) {
    image_loading::own_color_space(image, CPDFCSBase::parser_cs(entry, xref));
  }
  if (bool_of("ImageMask") != 0) image.flags |= CPDFImage::image_mask;
  if (int_of("SMaskInData", 0) != 0) image.flags |= CPDFImage::smask_in_data;
  image.interpolate = bool_of("Interpolate");
  if (const CPDFObj* entry = find_key(dict, "Mask")) load_mask(image, entry, chain);
  if (const CPDFObj* entry = find_key(dict, "SMask")) load_soft_mask(image, entry, chain);

  image_loading::set_stream(image, xref != nullptr ? xref->make_stream(rec) : nullptr);
  if (image.stream != nullptr && image.stream->kind == 9) {
    image_loading::apply_jpx_rule(image, *static_cast<CPDFStreamJPX*>(image.stream));
  }
  if (image.bpc == 0) image.bpc = 8;

  // Both are read in the space that the rule for JPEG 2000 left.
  const bool indexed = image.cs != nullptr && image.cs->family == family_indexed;
  if (const CPDFObj* entry = find_key(dict, CPDFDictionary::sm_tag_decode)) {
    load_decode(image, entry, indexed);
  }
  if (const CPDFObj* entry = find_key(dict, "Matte")) load_matte(image, entry, indexed);
}

}  // namespace

void image_loading::own_color_space(CPDFImage& image, CPDFCSBase* cs) {
  CPDFCSBase* old = std::exchange(image.cs, cs);
  if (image.cs_borrowed == 0) delete old;
  if (cs != nullptr) image.cs_borrowed = 0;
}

void image_loading::set_stream(CPDFImage& image, CPDFStream* stream) {
  delete std::exchange(image.stream, stream);
}

void CPDFImage::load() { load_chain(*this, nullptr, 0); }
