// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tiny_pdf.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "pdf/obj/access.h"
#include "pdf/obj/stream.h"

namespace {

constexpr int deepest = 32;
constexpr const char* blanks = " \t\r\n\f";
constexpr const char* delimiters = " \t\r\n\f/<>[]()";

}  // namespace

TinyPdf::TinyPdf(std::string bytes) : bytes_(std::move(bytes)) {
  for (std::size_t at = 0; (at = bytes_.find(" obj", at)) != std::string::npos; at += 4) {
    const std::size_t line = bytes_.rfind('\n', at) + 1;  // "5 0 obj" begins a line; npos + 1 is 0
    numbers_.push_back(std::atoi(bytes_.c_str() + line));
    bodies_.push_back(at + 4);
  }
}

int TinyPdf::get_entity(CPDFObj& out, const PDF_REF& ref) {
  for (std::size_t i = 0; i < numbers_.size(); ++i) {
    if (numbers_[i] != ref.num) continue;
    std::size_t at = bodies_[i];
    if (!parse(at, out, 0)) out.free();
    skip_blanks(at);
    if (out.type != PDF_DICTIONARY || bytes_.compare(at, 6, "stream") != 0) return 1;

    // A dictionary with data behind it: a stream. What `location` holds is up to the parser.
    CPDFObjHolder dict;
    dict.copy_from(&out);
    CPDFStreamRec* stream = out.set_stream();
    if (stream == nullptr) return 0;
    stream->dict.copy_from(dict.dict());
    stream->location[0] = bytes_.find('\n', at) + 1;
    stream->location[1] = i;
    return 1;
  }
  return 0;
}

CPDFStream* TinyPdf::make_stream(const CPDFStreamRec* rec) {
  const CPDFObj* length_entry = find_key(&rec->dict, "Length");
  const int length = length_entry != nullptr ? get_int_value(length_entry, this) : 0;
  const std::size_t at = rec->location[0];
  if (length < 0 || at > bytes_.size() || bytes_.size() - at < static_cast<std::size_t>(length)) {
    return nullptr;
  }
  CPDFObjHolder filter;
  resolve_copy(find_key(&rec->dict, CPDFDictionary::sm_tag_filter), this, filter);
  if (filter.type != PDF_EMPTY && filter.type != PDF_NAME) return nullptr;  // no chains here
  auto* data = reinterpret_cast<unsigned char*>(bytes_.data()) + at;
  return CPDFStream::make_inline_stream(data, length, filter.name(), nullptr);
}

bool TinyPdf::parse(std::size_t& at, CPDFObj& out, int depth) {
  skip_blanks(at);
  if (at >= bytes_.size() || depth > deepest) return false;
  if (bytes_.compare(at, 2, "<<") == 0) {
    CPDFDictionary* dict = out.set_dict();
    return dict != nullptr && parse_dict(at += 2, *dict, depth);
  }
  if (bytes_[at] == '/') {
    out.set_name(word(++at).c_str());
    return true;
  }
  if (bytes_[at] == '[') {
    CPDFArray* array = out.set_array();
    for (skip_blanks(++at); array != nullptr && at < bytes_.size(); skip_blanks(at)) {
      if (bytes_[at] == ']') return ++at, true;
      CPDFObj* item = array->append();
      if (item == nullptr || !parse(at, *item, depth + 1)) return false;
    }
    return false;
  }
  return parse_number(at, out);
}

bool TinyPdf::parse_dict(std::size_t& at, CPDFDictionary& dict, int depth) {
  for (skip_blanks(at); at < bytes_.size(); skip_blanks(at)) {
    if (bytes_.compare(at, 2, ">>") == 0) return at += 2, true;
    if (bytes_[at] != '/') return false;
    CPDFObj* entry = dict.set(word(++at).c_str());
    if (entry == nullptr || !parse(at, *entry, depth + 1)) return false;
  }
  return false;
}

/// A boolean, an integer, or the three words of a reference.
bool TinyPdf::parse_number(std::size_t& at, CPDFObj& out) {
  const std::string first = word(at);
  if (first == "true" || first == "false") {
    out.set_bool(first == "true");
    return true;
  }
  if (first.empty() || first.find_first_not_of("0123456789-") != std::string::npos) return false;
  out.set_int(std::atoi(first.c_str()));
  std::size_t ahead = at;
  skip_blanks(ahead);
  const std::string second = word(ahead);
  skip_blanks(ahead);
  if (!second.empty() && word(ahead) == "R") {
    out.set_ref({std::atoi(first.c_str()), std::atoi(second.c_str())});
    at = ahead;
  }
  return true;
}

std::string TinyPdf::word(std::size_t& at) {
  const std::size_t start = at;
  at = std::min(bytes_.find_first_of(delimiters, at), bytes_.size());
  return bytes_.substr(start, at - start);
}

void TinyPdf::skip_blanks(std::size_t& at) const {
  at = std::min(bytes_.find_first_not_of(blanks, at), bytes_.size());
}
