// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <memory>
#include <new>

#include "kx/alloc.h"
#include "pdf/image/image.h"
#include "pdf/image/loading.h"
#include "pdf/obj/access.h"
#include "pdf/obj/fixed.h"
#include "pdf/obj/resources.h"

namespace {

/// What one stage of a filter chain may make: 4 MiB.
constexpr int stage_limit = 0x400000;

/// The entry of the abbreviated key, or of the full one where that is absent.
const CPDFObj* find_either(const CPDFDictionary& dict, const char* abbreviation, const char* full) {
  const CPDFObj* entry = find_key(&dict, abbreviation);
  return entry != nullptr ? entry : find_key(&dict, full);
}

/// As find_either, but an entry that `is_usable` refuses counts as absent.
template <class IsUsable>
const CPDFObj* find_usable(const CPDFDictionary& dict, const char* abbreviation, const char* full,
                           IsUsable is_usable) {
  for (const char* key : {abbreviation, full}) {
    const CPDFObj* entry = find_key(&dict, key);
    if (entry != nullptr && is_usable(*entry)) return entry;
  }
  return nullptr;
}

bool is_number(const CPDFObj& obj) { return obj.is_number(); }
bool is_flag(const CPDFObj& obj) { return obj.type == PDF_BOOLEAN || obj.is_number(); }

int low_word(const CPDFObj& obj) { return static_cast<int>(static_cast<std::uint32_t>(obj.value)); }

void read_number(const CPDFDictionary& dict, const char* abbreviation, const char* full, int& out) {
  const CPDFObj* entry = find_usable(dict, abbreviation, full, is_number);
  if (entry == nullptr) return;
  out = entry->type == PDF_REAL ? fixed_to_int(entry->as_fixed()) : entry->as_int();
}

/// A name's text, or the bytes of a string (NUL-terminated); null for other kinds.
const char* text_of(const CPDFObj& obj) {
  return obj.type == PDF_NAME ? obj.name() : reinterpret_cast<const char*>(obj.str_bytes);
}

/// The resources' colour space of that name, or null.
CPDFCSBase* find_color_space(const CPDFResources* res, const char* name) {
  if (res == nullptr || name == nullptr) return nullptr;
  int lo = 0;
  int hi = res->cs_count - 1;
  while (lo <= hi) {
    const int mid = lo + (hi - lo) / 2;
    const int order = std::strcmp(res->cs_table[mid].name, name);
    if (order == 0) return res->cs_table[mid].cs;
    if (order < 0) {
      lo = mid + 1;
    } else {
      hi = mid - 1;
    }
  }
  return nullptr;
}

void load_color_space(CPDFImage& image, const CPDFObj& entry, const CPDFResources* res) {
  CPDFCSBase* own = CPDFCSBase::parser_cs(&entry, nullptr);
  image_loading::own_color_space(image, own);
  if (own != nullptr) return;
  image.cs = find_color_space(res, text_of(entry));
  image.cs_borrowed = 1;
}

/// The filter parameters of an inline image: DP, or DecodeParms where DP is absent.
class Parameters {
 public:
  explicit Parameters(const CPDFDictionary& dict)
      : entry_(find_either(dict, "DP", "DecodeParms")) {}

  /// The entry itself, where it is a dictionary.
  const CPDFDictionary* whole() const { return entry_ != nullptr ? entry_->dict() : nullptr; }

  /// Item `i`, where the entry is an array of at least `min_count` items and that is a dictionary.
  const CPDFDictionary* item(int i, int min_count) const {
    const CPDFArray* array = entry_ != nullptr ? entry_->array() : nullptr;
    return array != nullptr && array->count >= min_count && i < array->count
               ? array->items[i].dict()
               : nullptr;
  }

  /// For an array of one filter: its parameters may stand in an array of just one item, or alone.
  const CPDFDictionary* for_only_filter() const {
    if (whole() != nullptr) return whole();
    const CPDFArray* array = entry_ != nullptr ? entry_->array() : nullptr;
    return array != nullptr && array->count == 1 ? array->items[0].dict() : nullptr;
  }

 private:
  const CPDFObj* entry_;
};

struct KXFreeDeleter {
  void operator()(unsigned char* bytes) const { KXFree(bytes); }
};

/// A stage's bytes: the caller's own to begin with, then a buffer of ours.
struct StageBytes {
  unsigned char* data;
  int len;
  std::unique_ptr<unsigned char, KXFreeDeleter> owned;
};

/// Runs one filter into memory. False where it cannot be made; its output may be empty.
bool run_stage(StageBytes& bytes, const char* filter, const CPDFDictionary* parms) {
  const std::unique_ptr<CPDFStream> stream(
      CPDFStream::make_inline_stream(bytes.data, bytes.len, filter, parms));
  if (stream == nullptr) return false;
  int len = bytes.len;
  unsigned char* output = stream->buffer_load(stage_limit, len);
  // The old buffer goes when the stage has been read; the stream no longer looks at it.
  bytes.owned.reset(output);
  bytes.data = output;
  bytes.len = len;
  return true;
}

/// The stream behind two or more filters: all but the last are run into memory one by one, and the
/// result owns what the last of those left. Null where a stage cannot be made.
CPDFStream* make_chain(const CPDFArray& filters, const Parameters& parms, unsigned char* data,
                       int len) {
  const int last = filters.count - 1;
  StageBytes bytes = {data, len, nullptr};
  for (int i = 0; i <= last; ++i) {
    // The first stage takes its parameters only from an array of two and more.
    const CPDFDictionary* own_parms = parms.item(i, i == 0 ? 2 : i + 1);
    const char* filter = text_of(filters.items[i]);
    if (i < last) {
      if (!run_stage(bytes, filter, own_parms)) return nullptr;
      continue;
    }
    CPDFStream* stream = CPDFStream::make_inline_stream(bytes.data, bytes.len, filter, own_parms);
    if (stream != nullptr) {
      stream->data_borrowed = 0;
      static_cast<void>(bytes.owned.release());
    }
    return stream;
  }
  return nullptr;
}

CPDFStream* make_array_stream(const CPDFArray& filters, const Parameters& parms,
                              unsigned char* data, int len) {
  switch (filters.count) {
    case 0:
      return CPDFStream::make_inline_stream(data, len, nullptr, nullptr);
    case 1:
      return CPDFStream::make_inline_stream(data, len, text_of(filters.items[0]),
                                            parms.for_only_filter());
    default:
      return make_chain(filters, parms, data, len);
  }
}

void load_stream(CPDFImage& image, const CPDFDictionary& dict, unsigned char* data, int len) {
  const CPDFObj* filter = find_either(dict, "F", CPDFDictionary::sm_tag_filter);
  CPDFStream* stream = nullptr;
  if (filter == nullptr) {
    stream = new (std::nothrow) CPDFStream(data, len, 1);
  } else if (filter->type == PDF_NAME) {
    stream = CPDFStream::make_inline_stream(data, len, filter->name(), Parameters(dict).whole());
  } else if (const CPDFArray* filters = filter->array()) {
    stream = make_array_stream(*filters, Parameters(dict), data, len);
  }
  image_loading::set_stream(image, stream);
}

void load_decode(CPDFImage& image, const CPDFArray& decode) {
  const auto byte_of = [](const CPDFObj* item) {
    if (item == nullptr || !item->is_number()) return 0;
    return fixed_to_byte(item->type == PDF_REAL ? item->as_fixed() : int_to_fixed(item->as_int()));
  };
  image_loading::for_pairs(decode, [&](int i, const CPDFObj* min, const CPDFObj* max) {
    image.decode_min[i] = byte_of(min);
    image.decode_max[i] = byte_of(max);
  });
  image.has_decode = 1;
}

}  // namespace

void CPDFImage::load_inline(const CPDFDictionary* dict, unsigned char* bytes, int len,
                            const CPDFResources* res) {
  const CPDFDictionary no_entries;
  const CPDFDictionary& entries = dict != nullptr ? *dict : no_entries;

  read_number(entries, "W", CPDFDictionary::sm_tag_width, width);
  read_number(entries, "H", CPDFDictionary::sm_tag_height, height);
  read_number(entries, "BPC", CPDFDictionary::sm_tag_bpc, bpc);
  if (const CPDFObj* entry = find_either(entries, "CS", CPDFDictionary::sm_tag_cs)) {
    load_color_space(*this, *entry, res);
  }
  // A stencil by "IM true", or by any number whose word is not 0.
  const CPDFObj* stencil = find_usable(entries, "IM", "ImageMask", is_flag);
  if (stencil != nullptr && low_word(*stencil) != 0) flags |= image_mask;
  load_stream(*this, entries, bytes, len);
  const CPDFObj* decode = find_either(entries, "D", CPDFDictionary::sm_tag_decode);
  if (decode != nullptr && decode->array() != nullptr) load_decode(*this, *decode->array());
}
