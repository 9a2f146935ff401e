// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/filter/filter_table.h"

#include <cstring>

#include "pdf/filter/crypt.h"
#include "pdf/filter/dct.h"
#include "pdf/filter/flate.h"

namespace {

constexpr pdfbmp::FilterEntry filters[] = {
    {"FlateDecode", "Fl", pdfbmp::make_flate},
    {"DCTDecode", "DCT", pdfbmp::make_dct},
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
