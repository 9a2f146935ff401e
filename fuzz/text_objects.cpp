// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "fuzz/text_objects.h"

#include <exception>
#include <qpdf/QPDF.hh>
#include <utility>

#include "fuzz/small_limits.h"
#include "pdf/doc/object_values.h"
#include "pdf/filter/filter_chain.h"

namespace {

constexpr std::string_view stream_mark = " stream\n";

}  // namespace

struct TextObjects::Parser {
  QPDF qpdf;
};

TextObjects::TextObjects(std::string_view input) : parser_(std::make_unique<Parser>()) {
  parser_->qpdf.setSuppressWarnings(true);
  parser_->qpdf.emptyPDF();
  while (parts_.size() < 32) {
    const std::size_t end = parts_.size() == 31 ? input.npos : input.find('\f');
    parts_.emplace_back(input.substr(0, end));
    if (end >= input.size()) break;
    input.remove_prefix(end + 1);
  }
}

TextObjects::~TextObjects() = default;

int TextObjects::get_entity(CPDFObj& out, const PDF_REF& ref) {
  if (ref.num < 0 || static_cast<std::size_t>(ref.num) >= parts_.size()) return 0;
  const std::string& part = parts_[static_cast<std::size_t>(ref.num)];
  const std::size_t end = part.find(stream_mark);
  try {
    pdfbmp::convert_object(QPDFObjectHandle::parse(&parser_->qpdf, part.substr(0, end)), out);
  } catch (const std::exception&) {
    out.free();
    return 0;
  }
  if (end == part.npos || out.type != PDF_DICTIONARY) return 1;
  CPDFObjHolder dict;
  dict.copy_from(&out);
  CPDFStreamRec* record = out.set_stream();
  if (record == nullptr || dict.dict() == nullptr) return 0;
  record->dict.copy_from(dict.dict());
  record->location[1] = static_cast<std::uint64_t>(ref.num);
  return 1;
}

CPDFStream* TextObjects::make_stream(const CPDFStreamRec* record) {
  if (record->location[1] >= parts_.size()) return nullptr;
  std::string& part = parts_[record->location[1]];
  const std::size_t begin = part.find(stream_mark) + stream_mark.size();
  auto* bytes = reinterpret_cast<unsigned char*>(part.data() + begin);
  auto encoded = std::make_unique<CPDFStream>(bytes, static_cast<int>(part.size() - begin), 1);
  return pdfbmp::make_filter_chain(std::move(encoded), record->dict, this, small_limits(), std::make_shared<CPDFDecodeReport>()).release();
}
