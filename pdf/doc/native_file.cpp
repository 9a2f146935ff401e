// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/native_file.h"

#include <algorithm>
#include <utility>

#include "pdf/doc/native_wraps.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/jpx_header.h"
#include "pdf/filter/parms.h"
#include "pdf/obj/object.h"

namespace {

struct Codec {
  const char* filter;
  bool (*wrap)(const CPDFFilterSetup&, const CPDFFoundImage&, CPDFNativeFile&);
};

constexpr Codec codecs[] = {
    {"DCTDecode", pdfbmp::wrap_jpeg},
    {"JPXDecode", pdfbmp::wrap_jpx},
    {"JBIG2Decode", pdfbmp::wrap_jbig2},
    {"CCITTFaxDecode", pdfbmp::wrap_ccitt},
};

const Codec* find_codec(const std::string& filter) {
  for (const Codec& codec : codecs) {
    if (filter == codec.filter) return &codec;
  }
  return nullptr;
}

// The codec of the last filter, if it is the only one.
const Codec* codec_of(const CPDFFoundImage& found) {
  if (found.filters.empty()) return nullptr;
  const bool another = std::any_of(found.filters.begin(), found.filters.end() - 1,
                                   [](const std::string& name) { return find_codec(name); });
  return another ? nullptr : find_codec(found.filters.back());
}

// What a reader of the file alone goes by.
struct JpegHeader {
  int components = 0;
  bool has_adobe_marker = false;

  void read(CPDFLoadedBytes& data) {
    for (std::int64_t at = 2; data.number(at, 1) == 0xFF;) {
      const std::uint32_t marker = data.number(at, 2), size = data.number(at + 2, 2);
      const bool is_fill = marker == 0xFFFF;
      if (!is_fill && size < 2) return;
      if (marker == 0xFFEE && data.number(at + 4, 4) == 0x41646F62) has_adobe_marker = true;
      const bool is_table = marker == 0xFFC4 || marker == 0xFFC8 || marker == 0xFFCC;
      if (marker >= 0xFFC0 && marker <= 0xFFCF && !is_table) {
        components = static_cast<int>(data.number(at + 9, 1));
      }
      if (marker == 0xFFDA) return;
      at += is_fill ? 1 : 2 + std::int64_t{size};
    }
  }
};

}  // namespace

namespace pdfbmp {

bool wrap_jpeg(const CPDFFilterSetup& setup, const CPDFFoundImage&, CPDFNativeFile& file) {
  if (file.data->number(0, 2) != 0xFFD8) return false;
  file.suffix = "jpg";
  JpegHeader header;
  header.read(*file.data);
  const int transform = int_parm(setup.parms, setup.xref, "ColorTransform", -1);
  if (transform < 0 || header.has_adobe_marker) return true;
  // Without a marker three components are taken for YCC, four for CMYK.
  return header.components == 3 ? transform != 0 : header.components != 4 || transform == 0;
}

bool wrap_jpx(const CPDFFilterSetup&, const CPDFFoundImage&, CPDFNativeFile& file) {
  CPDFJpxHeader header;
  if (header.read(*file.data) != nullptr) return false;
  file.suffix = header.codestream == 0 ? "j2k" : "jp2";
  return true;
}

bool open_native_file(CPDFDocument& document, const CPDFFoundImage& found,
                      const CPDFFilterLimits& limits, CPDFNativeFile& file) {
  const Codec* const codec = codec_of(found);
  if (codec == nullptr) return false;
  CPDFObjHolder object;
  const CPDFDictionary* dict = nullptr;
  if (found.inline_image != nullptr) {
    dict = found.inline_image->dict.get();
  } else {
    document.xref().get_entity(object, {found.object, found.generation});
    if (object.stream() != nullptr) dict = &object.stream()->dict;
  }
  if (dict == nullptr) return false;

  CPDFObjHolder parms;
  CPDFFilterSetup setup;
  setup.image = dict;
  setup.xref = &document.xref();
  setup.limits = limits;
  setup.report = std::make_shared<CPDFDecodeReport>();
  std::unique_ptr<CPDFStream> stream =
      make_codec_input(document.raw_stream(found), *dict, setup.xref, limits, setup.report, parms);
  if (stream == nullptr) return false;
  setup.parms = parms.dict();
  file.data = std::make_unique<CPDFLoadedBytes>(std::move(stream), limits.max_codec_bytes);
  // More than the limit, or than there is memory for, is no file that could be passed on.
  if (file.data->load(limits.max_codec_bytes) || !file.data->at_end()) return false;
  if (!codec->wrap(setup, found, file)) return false;
  if (setup.report->damaged) file.problem = setup.report->problem;
  return true;
}

}  // namespace pdfbmp
