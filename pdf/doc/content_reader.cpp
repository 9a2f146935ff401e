// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/content_reader.h"

#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "pdf/doc/object_values.h"

namespace {

using Token = QPDFTokenizer::Token;

constexpr std::size_t max_operands = 100'000;
constexpr int max_depth = 16;
constexpr int max_entries = 256;  ///< Of the dictionary of an inline image.

double number_from(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

int int_from(const std::string& text) {
  return pdfbmp::int_from(std::strtoll(text.c_str(), nullptr, 10));
}

}  // namespace

CPDFContentReader::CPDFContentReader(std::string& content)
    : content_(content),
      buffer_(reinterpret_cast<unsigned char*>(content.data()), content.size()),
      input_(std::make_shared<BufferInputSource>("content", &buffer_, false)) {
  tokenizer_.allowEOF();
}

Token CPDFContentReader::read_token() { return tokenizer_.readToken(input_, "content", true); }

std::size_t CPDFContentReader::position() { return static_cast<std::size_t>(input_->tell()); }

void CPDFContentReader::seek(std::size_t position) {
  input_->seek(static_cast<qpdf_offset_t>(position), SEEK_SET);
}

bool CPDFContentReader::next() {
  operands_.clear();
  for (;;) {
    const Token token = read_token();
    switch (token.getType()) {
      case QPDFTokenizer::tt_eof:
        return false;
      case QPDFTokenizer::tt_word:
        operation_ = token.getValue();
        return true;
      case QPDFTokenizer::tt_integer:
      case QPDFTokenizer::tt_real:
        if (operands_.size() < max_operands) {
          operands_.push_back({CPDFOperand::Kind::number, number_from(token.getValue()), {}});
        }
        break;
      case QPDFTokenizer::tt_name:
        if (operands_.size() < max_operands) {
          operands_.push_back(
              {CPDFOperand::Kind::name, 0, pdfbmp::without_slash(token.getValue())});
        }
        break;
      case QPDFTokenizer::tt_string:
        if (operands_.size() < max_operands) {
          operands_.push_back({CPDFOperand::Kind::string, 0, token.getValue()});
        }
        break;
      default:
        break;  // Brackets, and what is none of the language.
    }
  }
}

double CPDFContentReader::number(std::size_t back) const {
  if (back >= operands_.size()) return 0;
  const CPDFOperand& operand = operands_[operands_.size() - 1 - back];
  return operand.kind == CPDFOperand::Kind::number ? operand.number : 0;
}

std::string_view CPDFContentReader::name() const {
  if (operands_.empty() || operands_.back().kind != CPDFOperand::Kind::name) return {};
  return operands_.back().text;
}

bool CPDFContentReader::read_value(const Token& token, CPDFObj& out, int depth) {
  const std::string& text = token.getValue();
  switch (token.getType()) {
    case QPDFTokenizer::tt_bool:
      out.set_bool(text == "true");
      return true;
    case QPDFTokenizer::tt_integer:
      out.set_int(int_from(text));
      return true;
    case QPDFTokenizer::tt_real:
      out.set_real(pdfbmp::fixed_from_text(text));
      return true;
    case QPDFTokenizer::tt_name:
      out.set_name(pdfbmp::without_slash(text));
      return true;
    case QPDFTokenizer::tt_string:
      if (text.size() <= INT_MAX) out.set_string(text.data(), static_cast<int>(text.size()));
      return true;
    case QPDFTokenizer::tt_array_open: {
      CPDFArray* array = out.set_array();
      for (;;) {
        const Token item = read_token();
        if (item.getType() == QPDFTokenizer::tt_array_close) return true;
        if (item.getType() == QPDFTokenizer::tt_eof || item.isWord() || depth >= max_depth) {
          return false;
        }
        CPDFObj* slot = array != nullptr ? array->append() : nullptr;
        if (slot == nullptr || !read_value(item, *slot, depth + 1)) return false;
      }
    }
    case QPDFTokenizer::tt_dict_open: {
      CPDFDictionary* dict = out.set_dict();
      for (;;) {
        const Token key = read_token();
        if (key.getType() == QPDFTokenizer::tt_dict_close) return true;
        if (key.getType() != QPDFTokenizer::tt_name || depth >= max_depth) return false;
        CPDFObj* slot =
            dict != nullptr ? dict->set(pdfbmp::without_slash(key.getValue())) : nullptr;
        if (slot == nullptr || !read_value(read_token(), *slot, depth + 1)) return false;
      }
    }
    case QPDFTokenizer::tt_null:
      return true;
    default:
      return false;
  }
}

bool CPDFContentReader::read_inline_dictionary(CPDFDictionary& dict) {
  for (;;) {
    const Token key = read_token();
    if (key.getType() == QPDFTokenizer::tt_eof) return false;
    if (key.isWord("ID")) return true;
    if (key.getType() != QPDFTokenizer::tt_name) continue;  // Whatever it is, it is no key.
    const Token value = read_token();
    if (value.isWord("ID")) return true;
    CPDFObjHolder parsed;
    if (!read_value(value, parsed, 0) || dict.count >= max_entries) continue;
    if (CPDFObj* entry = dict.set(pdfbmp::without_slash(key.getValue()))) entry->copy_from(&parsed);
  }
}
