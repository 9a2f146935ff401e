// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

#include "pdf/obj/fixed.h"
#include "pdf/obj/object.h"
#include "pdf/obj/stream.h"
#include "pdf/obj/xref.h"

namespace testing_support {

/// Reads PDF syntax as the tests write it: null, true, false, numbers, /Names, <hex> strings,
/// (literal strings without escapes), [arrays], <<dictionaries>> and `N 0 R`.
class PdfText {
 public:
  explicit PdfText(std::string_view text) : text_(text) {}

  void read(CPDFObj& out) {
    const std::string token = next();
    if (token == "[") {
      CPDFArray* array = out.set_array();
      while (peek() != "]" && !peek().empty()) read(*array->append());
      next();
    } else if (token == "<<") {
      read_dict(*out.set_dict());
    } else if (token[0] == '/') {
      out.set_name(token.c_str() + 1);
    } else if (token[0] == '(') {
      out.set_string(token.data() + 1, static_cast<int>(token.size()) - 1);
    } else if (token[0] == '<') {
      std::string bytes;
      for (std::size_t i = 1; i + 1 < token.size(); i += 2)
        bytes += static_cast<char>(std::strtol(token.substr(i, 2).c_str(), nullptr, 16));
      out.set_string(bytes.data(), static_cast<int>(bytes.size()));
    } else if (token == "true" || token == "false") {
      out.set_bool(token == "true");
    } else if (token == "null" || token.empty()) {
      out.free();
    } else if (token.find('.') != std::string::npos) {
      out.set_real(std::llround(std::atof(token.c_str()) * static_cast<double>(fixed_one)));
    } else {
      const std::string_view rest = text_;
      if (next() == "0" && next() == "R") {
        out.set_ref({std::atoi(token.c_str()), 0});
      } else {
        text_ = rest;
        out.set_int(std::atoi(token.c_str()));
      }
    }
  }

  void read_dict(CPDFDictionary& dict) {
    while (peek() != ">>" && !peek().empty()) {
      const std::string key = next();
      read(*dict.set(key.c_str() + 1));
    }
    next();
  }

 private:
  std::string peek() {
    const std::string_view rest = text_;
    std::string token = next();
    text_ = rest;
    return token;
  }

  std::string next() {
    text_.remove_prefix(std::min(text_.find_first_not_of(" \n"), text_.size()));
    if (text_.empty()) return {};
    std::size_t length = 1;
    if (text_.starts_with("<<") || text_.starts_with(">>")) {
      length = 2;
    } else if (text_[0] == '(' || text_[0] == '<') {
      length = std::min(text_.find(text_[0] == '(' ? ')' : '>'), text_.size());
      std::string token(text_.substr(0, length));
      text_.remove_prefix(std::min(length + 1, text_.size()));
      return token;
    } else if (text_[0] != '[' && text_[0] != ']') {
      length = std::min(text_.find_first_of(" \n/[]<>()", 1), text_.size());
    }
    std::string token(text_.substr(0, length));
    text_.remove_prefix(length);
    return token;
  }

  std::string_view text_;
};

inline void parse_pdf(std::string_view text, CPDFObj& out) { PdfText(text).read(out); }

/// A table of objects given as text, and of streams given as a dictionary and decoded bytes.
class TextXRef : public CPDFXRefTable {
 public:
  void add(int number, std::string text) { texts_[number] = std::move(text); }
  void add_stream(int number, std::string dict, std::string bytes) {
    texts_[number] = std::move(dict);
    streams_[number] = std::move(bytes);
  }

  int get_entity(CPDFObj& out, const PDF_REF& ref) override {
    const auto text = texts_.find(ref.num);
    if (text == texts_.end()) return 0;
    if (!streams_.contains(ref.num)) {
      parse_pdf(text->second, out);
      return 1;
    }
    CPDFStreamRec* record = out.set_stream();
    record->location[1] = static_cast<std::uint64_t>(ref.num);
    CPDFObjHolder dict;
    parse_pdf(text->second, dict);
    if (dict.dict() != nullptr) record->dict.copy_from(dict.dict());
    return 1;
  }

  CPDFStream* make_stream(const CPDFStreamRec* record) override {
    const auto bytes = streams_.find(static_cast<int>(record->location[1]));
    if (bytes == streams_.end()) return nullptr;
    return new CPDFStream(reinterpret_cast<unsigned char*>(bytes->second.data()), static_cast<int>(bytes->second.size()), 1);
  }

 private:
  std::map<int, std::string> texts_, streams_;
};

}  // namespace testing_support
