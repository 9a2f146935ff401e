// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <exception>

#include "pdf/cs/device_cmyk.h"
#include "pdf/cs/device_cmyk_ext.h"
#include "pdf/cs/device_gray.h"
#include "pdf/cs/device_rgb.h"
#include "pdf/cs/parsed/makers.h"

namespace {

template <int CompCount>
std::unique_ptr<CPDFCSBase> device(const CPDFArray&, CPDFCSParseContext&) {
  return pdfbmp::make_device(CompCount);
}

// Pattern is not here: no image may have it.
struct Family {
  const char* name;
  const char* abbreviation;  // Of inline images; null where there is none.
  CPDFCSMaker make;
};
constexpr Family families[] = {
    {"DeviceGray", "G", device<1>},
    {"DeviceRGB", "RGB", device<3>},
    {"DeviceCMYK", "CMYK", device<4>},
    {"Indexed", "I", pdfbmp::make_indexed},
    {"ICCBased", nullptr, pdfbmp::make_icc_based},
    {"CalGray", nullptr, pdfbmp::make_cal_gray},
    {"CalRGB", nullptr, pdfbmp::make_cal_rgb},
    {"CalCMYK", nullptr, device<4>},  // Of PDF 1.1, never specified; read as DeviceCMYK.
    {"Lab", nullptr, pdfbmp::make_lab},
    {"Separation", nullptr, pdfbmp::make_separation},
    {"DeviceN", nullptr, pdfbmp::make_device_n},
};

const Family* family_of(const char* name) {
  for (const Family& family : families) {
    if (std::strcmp(name, family.name) == 0) return &family;
    if (family.abbreviation != nullptr && std::strcmp(name, family.abbreviation) == 0)
      return &family;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<CPDFCSBase> pdfbmp::make_device(int comp_count) {
  switch (comp_count) {
    case 1:
      return std::make_unique<CPDFCSDeviceGray>();
    case 3:
      return std::make_unique<CPDFCSDeviceRGB>();
    case 4:
      if (CPDFCSDeviceCMYKExt::ms_icc != nullptr) return std::make_unique<CPDFCSDeviceCMYKExt>();
      return std::make_unique<CPDFCSDeviceCMYK>();
    default:
      return nullptr;
  }
}

std::unique_ptr<CPDFCSBase> CPDFCSParseContext::parse_space(const CPDFObj* entry) {
  if (spaces_left_-- <= 0) return nullptr;
  CPDFObjHolder temporary;
  entry = resolve(entry, temporary);
  if (entry == nullptr) return nullptr;

  const CPDFArray no_items;
  const CPDFArray* array = entry->array();
  const CPDFObj* name = entry;
  CPDFObjHolder name_temporary;
  if (array == nullptr) {
    array = &no_items;
  } else {
    name = resolve(pdfbmp::item(*array, 0), name_temporary);
  }
  if (name == nullptr || name->name() == nullptr) return nullptr;
  const Family* family = family_of(name->name());
  return family == nullptr ? nullptr : family->make(*array, *this);
}

CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj* entry, CPDFXRefTable* xref) {
  try {
    return CPDFCSParseContext(xref).parse_space(entry).release();
  } catch (const std::exception&) {  // Memory.
    return nullptr;
  }
}
