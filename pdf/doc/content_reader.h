// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/BufferInputSource.hh>
#include <qpdf/QPDFTokenizer.hh>
#include <string>
#include <string_view>
#include <vector>

#include "pdf/obj/object.h"

/// An operand of a content stream's operator. Arrays come as their items.
struct CPDFOperand {
  enum class Kind { number, name, string } kind = Kind::number;
  double number = 0;
  std::string text;  ///< A name without its slash, or a string's bytes.
};

/// Splits a content stream into operators and their operands. May throw what the parser throws.
class CPDFContentReader {
 public:
  /// `content` must outlive the reader.
  explicit CPDFContentReader(std::string& content);

  /// Reads on to the next operator; false at the end.
  bool next();

  const std::string& operation() const { return operation_; }
  const std::vector<CPDFOperand>& operands() const { return operands_; }

  /// The number `back` places before the last operand (0: the last), 0 where it is none.
  double number(std::size_t back) const;

  /// The last operand where it is a name, else empty.
  std::string_view name() const;

  /// After BI: reads the dictionary of an inline image up to ID. False where the content ends.
  bool read_inline_dictionary(CPDFDictionary& dict);

  std::string_view content() const { return content_; }
  std::size_t position();  ///< Of the byte after the last operator.
  void seek(std::size_t position);

 private:
  QPDFTokenizer::Token read_token();
  bool read_value(const QPDFTokenizer::Token& token, CPDFObj& out, int depth);

  std::string_view content_;
  Buffer buffer_;
  std::shared_ptr<BufferInputSource> input_;
  QPDFTokenizer tokenizer_;
  std::string operation_;
  std::vector<CPDFOperand> operands_;
};
