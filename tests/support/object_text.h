// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <cstring>
#include <string>

#include "pdf/obj/object.h"

namespace testing_support {

std::string text_of(const CPDFObj& obj);

/// Aborts where the keys are not in order.
inline std::string text_of(const CPDFDictionary& dict) {
  std::string out = "<<";
  const char* last = nullptr;
  for (int i = 0; i < dict.count; ++i) {
    const char* const key = CPDFDictionary::key_of(dict.items[i]);
    if (last != nullptr && std::strcmp(last, key) >= 0) std::abort();
    out += std::string("/") + key + " " + text_of(*dict.items[i]);
    last = key;
  }
  return out + ">> ";
}

/// A value as text, every byte of it; "lost" for a copy whose inside there was no memory for.
inline std::string text_of(const CPDFObj& obj) {
  std::string out = "[";
  if (obj.type >= PDF_ARRAY && obj.type != PDF_REFERENCE && obj.value == 0) return "lost ";
  switch (obj.type) {
    case PDF_STRING:
      if (obj.str_bytes == nullptr) return "() " + std::to_string(obj.value);
      if (obj.str_bytes[obj.as_int()] != 0) std::abort();
      return "(" + std::string(obj.str_bytes, obj.str_bytes + obj.as_int()) + ") ";
    case PDF_NAME: return std::string("/") + obj.name() + " ";
    case PDF_ARRAY:
      for (int i = 0; i < obj.array()->count; ++i) out += text_of(obj.array()->items[i]);
      return out + "] ";
    case PDF_DICTIONARY: return text_of(*obj.dict());
    case PDF_STREAM:
      out = "stream";
      for (const std::uint64_t word : obj.stream()->location) out += std::to_string(word) + " ";
      return out + text_of(obj.stream()->dict);
    default: return std::to_string(obj.type) + ":" + std::to_string(obj.value) + " ";
  }
}

}  // namespace testing_support
