// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/filter_table.h"

#include <cstring>

#include "pdf/filter/ascii85.h"
#include "pdf/filter/ascii_hex.h"
#include "pdf/filter/ccitt.h"
#include "pdf/filter/crypt.h"
#include "pdf/filter/dct.h"
#include "pdf/filter/flate.h"
#include "pdf/filter/jbig2.h"
#include "pdf/filter/jpx.h"
#include "pdf/filter/lzw.h"
#include "pdf/filter/run_length.h"

namespace {

constexpr pdfbmp::FilterEntry filters[] = {
    {"FlateDecode", "Fl", pdfbmp::make_flate},
    {"DCTDecode", "DCT", pdfbmp::make_dct},
    {"LZWDecode", "LZW", pdfbmp::make_lzw},
    {"CCITTFaxDecode", "CCF", pdfbmp::make_ccitt},
    {"RunLengthDecode", "RL", pdfbmp::make_run_length},
    {"ASCII85Decode", "A85", pdfbmp::make_ascii85},
    {"ASCIIHexDecode", "AHx", pdfbmp::make_ascii_hex},
    {"JPXDecode", "JPXDecode", pdfbmp::make_jpx},
    {"JBIG2Decode", "JBIG2Decode", pdfbmp::make_jbig2},
    {"Crypt", "Crypt", pdfbmp::make_crypt},
};

}  // namespace

namespace pdfbmp {

const FilterEntry* find_filter(const char* name) {
  if (name == nullptr) return nullptr;
  for (const FilterEntry& filter : filters) {
    if (std::strcmp(name, filter.name) == 0 || std::strcmp(name, filter.abbreviation) == 0) {
      return &filter;
    }
  }
  return nullptr;
}

}  // namespace pdfbmp
