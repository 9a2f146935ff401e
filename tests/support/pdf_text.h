// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <functional>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "pdf/obj/fixed.h"
#include "pdf/obj/object.h"
#include "pdf/obj/stream.h"
#include "pdf/obj/xref.h"

namespace testing_support {

/// Reads PDF syntax as the tests write it: null, true, false, numbers, /Names, <hex> strings,
/// (literal strings without escapes), [arrays], <<dictionaries>>, `N 0 R`, and `stream N <<...>>`
/// for a stream whose record's identity is N. What has no memory is read and dropped.
class PdfText {
 public:
  explicit PdfText(const std::string& text) {
    static const std::regex token(R"(<<|>>|\[|\]|\([^)]*\)|<[^>]*>|/?[^ \n/<>()[\]]+|/)");
    tokens_.assign(std::sregex_token_iterator(text.begin(), text.end(), token), {});
    tokens_.insert(tokens_.end(), 3, "null");  // So that one may look ahead.
  }

  void read(CPDFObj& out) {
    const std::string token = tokens_[at_++];
    CPDFObjHolder dropped;
    if (token == "[") {
      for (CPDFArray* array = out.set_array(); !passes("]");) {
        CPDFObj* item = array != nullptr ? array->append() : nullptr;
        read(item != nullptr ? *item : dropped);
      }
    } else if (token == "<<") {
      read_entries(out.set_dict());
    } else if (token == "stream") {
      CPDFStreamRec* record = out.set_stream();
      if (record != nullptr) record->location[1] = std::stoull(tokens_[at_]);
      at_ += 2;
      read_entries(record != nullptr ? &record->dict : nullptr);
    } else if (token[0] == '/') {
      out.set_name(token.c_str() + 1);
    } else if (token[0] == '(') {
      out.set_string(token.data() + 1, static_cast<int>(token.size()) - 2);
    } else if (token[0] == '<') {
      std::string bytes;
      for (std::size_t i = 1; i + 2 < token.size(); i += 2) bytes += static_cast<char>(std::stoi(token.substr(i, 2), nullptr, 16));
      out.set_string(bytes.data(), static_cast<int>(bytes.size()));
    } else if (token == "true" || token == "false") {
      out.set_bool(token == "true");
    } else if (token == "null") {
      out.free();
    } else if (token.find('.') != std::string::npos) {
      out.set_real(std::llround(std::stod(token) * static_cast<double>(fixed_one)));
    } else if (tokens_[at_] == "0" && tokens_[at_ + 1] == "R") {
      at_ += 2;
      out.set_ref({std::stoi(token), 0});
    } else {
      out.set_int(std::stoi(token));
    }
  }

 private:
  void read_entries(CPDFDictionary* dict) {
    while (!passes(">>")) {
      CPDFObjHolder dropped;
      CPDFObj* entry = dict != nullptr ? dict->set(tokens_[at_].c_str() + 1) : nullptr;
      ++at_;
      read(entry != nullptr ? *entry : dropped);
    }
  }
  bool passes(const char* token) {
    const bool is_next = tokens_.at(at_) == token;
    at_ += is_next ? 1 : 0;
    return is_next;
  }

  std::vector<std::string> tokens_;
  std::size_t at_ = 0;
};

inline void parse_pdf(const std::string& text, CPDFObj& out) { PdfText(text).read(out); }

/// A table of objects given as text, and of streams given as a dictionary and decoded bytes.
class TextXRef : public CPDFXRefTable {
 public:
  void add(int number, std::string text) { objects[number] = std::move(text); }
  void add_stream(int number, const std::string& dict, std::string bytes) {
    objects[number] = "stream " + std::to_string(number) + " " + dict;
    streams_[static_cast<std::uint64_t>(number)] = std::move(bytes);
  }

  int get_entity(CPDFObj& out, const PDF_REF& ref) override {
    const auto text = objects.find(ref.num);
    if (text != objects.end()) parse_pdf(text->second, out);
    return text != objects.end() ? 1 : 0;
  }
  CPDFStream* make_stream(const CPDFStreamRec* record) override {
    const auto bytes = streams_.find(record->location[1]);
    if (bytes == streams_.end()) return make ? make() : nullptr;
    return new CPDFStream(reinterpret_cast<unsigned char*>(bytes->second.data()), static_cast<int>(bytes->second.size()), 1);
  }

  std::map<int, std::string> objects;
  std::function<CPDFStream*()> make;  ///< Makes the streams that have no bytes here.

 private:
  std::map<std::uint64_t, std::string> streams_;
};

}  // namespace testing_support
