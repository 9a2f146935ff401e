// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tests/support/image_seams.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "pdf/obj/object.h"

ImageSeams& image_seams() {
  static ImageSeams seams;
  return seams;
}

CPDFCSBase* CPDFCSBase::parser_cs(const CPDFObj* entry, CPDFXRefTable* xref) {
  const auto& parse = image_seams().parser_cs;
  return parse ? parse(entry, xref) : nullptr;
}

CPDFStream* CPDFStream::make_inline_stream(unsigned char* data, int len, const char* filter, const CPDFDictionary* parms) {
  const auto& make = image_seams().inline_stream;
  return make ? make(data, len, filter, parms) : nullptr;
}

int TestTable::get_entity(CPDFObj& out, const PDF_REF& ref) {
  const auto found = objects.find(ref.num);
  if (found == objects.end()) return 0;
  read_object(out, found->second.c_str());
  return 1;
}

namespace {

const char* skip_space(const char* at) {
  while (std::isspace(static_cast<unsigned char>(*at)) != 0) ++at;
  return at;
}

std::string word_at(const char* at) { return {at, std::strcspn(at, " []<>()/\n")}; }

const char* read_entries(CPDFDictionary* dict, const char* at) {
  for (at = skip_space(at + 2); *at == '/'; at = skip_space(at)) {
    const std::string key = word_at(at + 1);
    at += 1 + key.size();
    CPDFObjHolder dropped;
    CPDFObj* entry = dict != nullptr ? dict->set(key.c_str()) : nullptr;
    at = read_object(entry != nullptr ? *entry : dropped, at);
  }
  return at + 2;
}

const char* read_items(CPDFArray* array, const char* at) {
  for (at = skip_space(at + 1); *at != ']'; at = skip_space(at)) {
    CPDFObjHolder dropped;
    CPDFObj* item = array != nullptr ? array->append() : nullptr;
    at = read_object(item != nullptr ? *item : dropped, at);
  }
  return at + 1;
}

}  // namespace

const char* read_object(CPDFObj& out, const char* text) {
  const char* at = skip_space(text);
  if (*at == '[') return read_items(out.set_array(), at);
  if (*at == '<') return read_entries(out.set_dict(), at);
  if (*at == '(') {
    const auto length = std::strcspn(at, ")") - 1;
    out.set_string(at + 1, static_cast<int>(length));
    return at + length + 2;
  }
  if (*at == '/') {
    const std::string name = word_at(at + 1);
    out.set_name(name.c_str());
    return at + 1 + name.size();
  }
  const std::string word = word_at(at);
  at += word.size();
  if (word == "null") {
    out.free();
  } else if (word == "true" || word == "false") {
    out.set_bool(word == "true");
  } else if (word == "stream") {
    char* end = nullptr;
    const auto identity = std::strtoull(at, &end, 10);
    CPDFStreamRec* rec = out.set_stream();
    if (rec != nullptr) rec->location[1] = identity;
    at = read_entries(rec != nullptr ? &rec->dict : nullptr, skip_space(end));
  } else if (word.find('.') != std::string::npos) {
    out.set_real(std::llround(std::ldexp(std::atof(word.c_str()), 26)));
  } else if (const char* after = skip_space(at); *after == 'R') {
    out.set_ref({std::atoi(word.c_str()), 0});
    at = after + 1;
  } else {
    out.set_int(std::atoi(word.c_str()));
  }
  return at;
}
