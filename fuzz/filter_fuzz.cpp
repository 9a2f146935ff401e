// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// One filter, the FILTER of the build, or the predictors: decodes in reads of one size and of
// another, from which nothing may differ.
//
// Input: the size of the reads (a byte), which of the entries below there are (two
// bytes) and their values (two bytes each), then the encoded bytes.
#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "fuzz/small_limits.h"
#include "fuzz/target.h"
#include "pdf/filter/filter_table.h"
#include "pdf/filter/predictor.h"
#include "pdf/obj/jpx_stream.h"
#include "pdf/obj/object.h"

namespace {

// Numbers, truth values, and of the image numbers and a colour space.
constexpr std::size_t booleans = 8, of_image = 12, space = 15;
constexpr const char* keys[] = {"Predictor", "Colors",         "BitsPerComponent", "Columns",          "EarlyChange", "K",
                                "Rows",      "ColorTransform", "EndOfLine",        "EncodedByteAlign", "EndOfBlock",  "BlackIs1",
                                "Width",     "Height",         "SMaskInData",      "ColorSpace"};

void set(CPDFObj* entry, std::size_t key, int value) {
  if (entry == nullptr) return;
  if (key == space) {
    CPDFArray* array = entry->set_array();
    if (CPDFObj* family = array != nullptr ? array->append() : nullptr) family->set_name("Indexed");
  } else if (key >= booleans && key < of_image) {
    entry->set_bool((value & 1) != 0);
  } else {
    entry->set_int(value);
  }
}

constexpr std::size_t most = 1 << 20;  ///< Of decoded bytes.

template <class Read>
std::string read_all(std::size_t piece, Read read) {
  std::string all;
  std::vector<char> block(piece);
  while (all.size() < most) {
    const int n = read(block.data(), static_cast<int>(piece));
    require(n <= static_cast<int>(piece));
    if (n <= 0) break;
    all.append(block.data(), static_cast<std::size_t>(n));
  }
  all.resize(std::min(all.size(), most));
  return all;
}

}  // namespace

std::string run_target(FuzzInput in, bool second) {
  std::size_t piece = in.byte() + std::size_t{1};
  if (!second) piece = 4096;
  CPDFObjHolder parms, image;
  CPDFFilterSetup setup;
  setup.parms = parms.set_dict();
  setup.image = image.set_dict();
  auto present = in.number(2);
  for (std::size_t key = 0; key <= space; ++key, present >>= 1) {
    CPDFDictionary* dict = (key >= of_image ? image : parms).dict();
    if ((present & 1) != 0 && dict != nullptr) set(dict->set(keys[key]), key, static_cast<std::int16_t>(in.number(2)));
  }
  setup.limits = small_limits();
  setup.report = std::make_shared<CPDFDecodeReport>();
  std::string encoded(in.text());
  auto* bytes = reinterpret_cast<unsigned char*>(encoded.data());
  std::unique_ptr<CPDFStream> stream(new (std::nothrow) CPDFStream(bytes, static_cast<int>(encoded.size()), 1));
  if (stream == nullptr) return "";
  const pdfbmp::FilterEntry* filter = pdfbmp::find_filter(FILTER);
  stream = filter != nullptr ? filter->make(std::move(stream), setup) : pdfbmp::add_predictor(std::move(stream), setup);
  if (stream == nullptr) return setup.report->problem;
  std::string color, alpha;
  for (const bool reads_alpha : {second, !second}) {
    if (!reads_alpha) {
      color = read_all(piece, [&](void* dst, int n) { return stream->read_block(dst, n); });
    } else if (auto* jpx = dynamic_cast<CPDFStreamJPX*>(stream.get()); jpx != nullptr && jpx->alpha_channel >= 0) {
      alpha = read_all(piece, [&](void* dst, int n) { return jpx->read_alpha(dst, n); });
    }
  }
  return color + '/' + alpha + '/' + std::to_string(color.size() < most && setup.report->damaged);
}
