// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// A PostScript calculator program (ISO 32000-1 7.10.5), compiled once and run for each colour. The
/// language has no loops: a run takes no more steps than the program has instructions.
///
/// Numbers are doubles, which hold the language's 32-bit integers exactly; operators that want
/// integers cut off the fraction. Booleans keep their kind, since the bit operators differ.
class CPDFPostScriptProgram {
 public:
  static constexpr int max_instructions = 16384;
  static constexpr int max_depth = 32;  ///< Of blocks in blocks.
  static constexpr int stack_size = 100;

  /// Compiles the text, braces included; false where it is malformed or beyond the limits.
  bool compile(std::string_view text);

  std::int64_t instructions() const { return static_cast<std::int64_t>(code_.size()); }

  /// Runs on a stack that holds `inputs` numbers; the top `outputs` of what is left go to `out`,
  /// the topmost last. False, with `out` untouched, where the stack over- or underflows or a
  /// division of integers by zero is met.
  bool run(const double* in, int inputs, double* out, int outputs) const;

 private:
  enum class Code : std::uint8_t;
  struct Operator;
  struct Instruction {
    Code code;
    std::int8_t takes, leaves;  // Places of the stack.
    std::int32_t target;        // Of the jumps.
    double number;              // Of `push`.
  };
  class Stack;

  static const Operator* find_operator(std::string_view name);
  bool compile_block(std::string_view& text, int depth);
  bool compile_condition(std::string_view& text, int depth);
  bool emit(Code code, int takes, int leaves, double number = 0);
  static bool execute(Code code, Stack& stack);

  std::vector<Instruction> code_;
};
