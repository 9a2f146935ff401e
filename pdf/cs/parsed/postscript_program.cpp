// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/postscript_program.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

enum class CPDFPostScriptProgram::Code : std::uint8_t {
  push,
  jump,
  jump_if_false,  // Not the language's own.
  abs,
  add,
  atan,
  ceiling,
  copy,
  cos,
  cvi,
  cvr,
  div,
  dup,
  eq,
  exch,
  exp,
  false_,
  floor,
  ge,
  gt,
  idiv,
  index,
  le,
  ln,
  log,
  lt,
  mod,
  mul,
  ne,
  neg,
  or_,
  and_,
  bitshift,
  not_,
  pop,
  roll,
  round,
  sin,
  sqrt,
  sub,
  true_,
  truncate,
  xor_,
};

struct CPDFPostScriptProgram::Operator {
  std::string_view name;
  Code code;
  int takes, leaves;  // `copy`, `index` and `roll` look at the rest themselves.
};

class CPDFPostScriptProgram::Stack {
 public:
  int depth = 0;

  bool fits(int takes, int leaves) const {
    return depth >= takes && depth - takes + leaves <= stack_size;
  }
  void push(double number, bool is_bool = false) { places_[depth++] = {number, is_bool}; }
  double pop() { return places_[--depth].number; }
  int pop_int() { return to_int(pop()); }

  bool top_is_bool() const { return places_[depth - 1].is_bool; }
  bool both_bool() const { return top_is_bool() && places_[depth - 2].is_bool; }
  bool same_kind() const { return top_is_bool() == places_[depth - 2].is_bool; }

  bool copy(int n) {
    if (n < 0 || n > depth || depth + n > stack_size) return false;
    std::copy_n(places_ + depth - n, n, places_ + depth);
    depth += n;
    return true;
  }
  bool index(int n) {
    if (n < 0 || n >= depth) return false;
    places_[depth] = places_[depth - 1 - n];
    ++depth;
    return true;
  }
  bool roll(int n, int by) {
    if (n < 0 || n > depth) return false;
    if (n == 0) return true;
    by = (by % n + n) % n;
    std::rotate(places_ + depth - n, places_ + depth - by, places_ + depth);
    return true;
  }

  static int to_int(double v) {
    if (!(v > std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    if (v >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    return static_cast<int>(v);
  }

 private:
  struct Place {
    double number;
    bool is_bool;
  };
  Place places_[stack_size];
};

const CPDFPostScriptProgram::Operator* CPDFPostScriptProgram::find_operator(std::string_view name) {
  static constexpr Operator operators[] = {
      {"abs", Code::abs, 1, 1},
      {"add", Code::add, 2, 1},
      {"and", Code::and_, 2, 1},
      {"atan", Code::atan, 2, 1},
      {"bitshift", Code::bitshift, 2, 1},
      {"ceiling", Code::ceiling, 1, 1},
      {"copy", Code::copy, 1, 0},
      {"cos", Code::cos, 1, 1},
      {"cvi", Code::cvi, 1, 1},
      {"cvr", Code::cvr, 1, 1},
      {"div", Code::div, 2, 1},
      {"dup", Code::dup, 1, 2},
      {"eq", Code::eq, 2, 1},
      {"exch", Code::exch, 2, 2},
      {"exp", Code::exp, 2, 1},
      {"false", Code::false_, 0, 1},
      {"floor", Code::floor, 1, 1},
      {"ge", Code::ge, 2, 1},
      {"gt", Code::gt, 2, 1},
      {"idiv", Code::idiv, 2, 1},
      {"index", Code::index, 1, 1},
      {"le", Code::le, 2, 1},
      {"ln", Code::ln, 1, 1},
      {"log", Code::log, 1, 1},
      {"lt", Code::lt, 2, 1},
      {"mod", Code::mod, 2, 1},
      {"mul", Code::mul, 2, 1},
      {"ne", Code::ne, 2, 1},
      {"neg", Code::neg, 1, 1},
      {"not", Code::not_, 1, 1},
      {"or", Code::or_, 2, 1},
      {"pop", Code::pop, 1, 0},
      {"roll", Code::roll, 2, 0},
      {"round", Code::round, 1, 1},
      {"sin", Code::sin, 1, 1},
      {"sqrt", Code::sqrt, 1, 1},
      {"sub", Code::sub, 2, 1},
      {"true", Code::true_, 0, 1},
      {"truncate", Code::truncate, 1, 1},
      {"xor", Code::xor_, 2, 1},
  };
  const auto at = std::find_if(std::begin(operators), std::end(operators),
                               [&](const Operator& o) { return o.name == name; });
  return at == std::end(operators) ? nullptr : at;
}

namespace {

constexpr std::string_view white_space{" \t\r\n\f\0", 6};
constexpr double degree = 3.14159265358979323846 / 180;

/// Cuts the next token off `text`, empty at its end. Braces are tokens, comments are skipped.
std::string_view next_token(std::string_view& text) {
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(white_space), text.size()));
    if (text.empty() || text[0] != '%') break;
    text.remove_prefix(std::min(text.find_first_of("\r\n"), text.size()));
  }
  if (text.empty()) return {};
  std::size_t length = 1;
  if (text[0] != '{' && text[0] != '}') {
    constexpr std::string_view ends{" \t\r\n\f\0{}%", 9};
    length = std::min(text.find_first_of(ends), text.size());
  }
  const std::string_view token = text.substr(0, length);
  text.remove_prefix(length);
  return token;
}

bool read_number(std::string_view token, double& number) {
  if (token[0] == '+') token.remove_prefix(1);
  const char* end = token.data() + token.size();
  const auto result = std::from_chars(token.data(), end, number);
  return result.ec == std::errc{} && result.ptr == end && std::isfinite(number);
}

double atan_degrees(double num, double den) {
  const double angle = std::atan2(num, den) / degree;
  return angle < 0 ? angle + 360 : angle;
}

int shifted(int value, int by) {
  if (by <= -32 || by >= 32) return by < 0 && value < 0 ? -1 : 0;
  if (by < 0) return value >> -by;
  return static_cast<int>(static_cast<std::uint32_t>(value) << by);
}

}  // namespace

bool CPDFPostScriptProgram::emit(Code code, int takes, int leaves, double number) {
  if (code_.size() >= max_instructions) return false;
  code_.push_back(
      {code, static_cast<std::int8_t>(takes), static_cast<std::int8_t>(leaves), 0, number});
  return true;
}

bool CPDFPostScriptProgram::compile(std::string_view text) {
  code_.clear();
  return next_token(text) == "{" && compile_block(text, 0) && next_token(text).empty();
}

// Everything up to and with the brace that closes the block.
bool CPDFPostScriptProgram::compile_block(std::string_view& text, int depth) {
  if (depth > max_depth) return false;
  for (;;) {
    const std::string_view token = next_token(text);
    if (token.empty()) return false;
    if (token == "}") return true;
    double number = 0;
    if (token == "{") {
      if (!compile_condition(text, depth + 1)) return false;
    } else if (const Operator* op = find_operator(token)) {
      if (!emit(op->code, op->takes, op->leaves)) return false;
    } else if (!read_number(token, number) || !emit(Code::push, 0, 1, number)) {
      return false;
    }
  }
}

// `{a} if` becomes                 jump_if_false E, a, E:
// `{a} {b} ifelse` becomes         jump_if_false B, a, jump E, B: b, E:
bool CPDFPostScriptProgram::compile_condition(std::string_view& text, int depth) {
  const auto here = [this] { return static_cast<std::int32_t>(code_.size()); };
  const std::size_t condition = code_.size();
  if (!emit(Code::jump_if_false, 1, 0) || !compile_block(text, depth)) return false;
  std::string_view token = next_token(text);
  if (token == "{") {
    const std::size_t over = code_.size();
    if (!emit(Code::jump, 0, 0)) return false;
    code_[condition].target = here();
    if (!compile_block(text, depth)) return false;
    code_[over].target = here();
    return next_token(text) == "ifelse";
  }
  code_[condition].target = here();
  return token == "if";
}

bool CPDFPostScriptProgram::run(const double* in, int inputs, double* out, int outputs) const {
  if (inputs > stack_size) return false;
  Stack stack;
  for (int i = 0; i < inputs; ++i) stack.push(in[i]);
  for (std::size_t at = 0; at < code_.size();) {
    const Instruction& instruction = code_[at++];
    if (!stack.fits(instruction.takes, instruction.leaves)) return false;
    switch (instruction.code) {
      case Code::push:
        stack.push(instruction.number);
        break;
      case Code::jump_if_false:
        if (stack.pop() != 0) break;
        [[fallthrough]];
      case Code::jump:
        at = static_cast<std::size_t>(instruction.target);
        break;
      default:
        if (!execute(instruction.code, stack)) return false;
    }
  }
  if (stack.depth < outputs) return false;
  for (int i = outputs; i-- > 0;) out[i] = stack.pop();
  return true;
}

// The stack holds what the operator takes, and has room for what it leaves.
bool CPDFPostScriptProgram::execute(Code code, Stack& stack) {
  const auto unary = [&stack](auto f) { stack.push(f(stack.pop())); };
  const auto binary = [&stack](auto f) {
    const double b = stack.pop(), a = stack.pop();
    stack.push(f(a, b));
  };
  const auto compare = [&stack](auto f) {
    const double b = stack.pop(), a = stack.pop();
    stack.push(f(a, b) ? 1 : 0, true);
  };
  const auto bitwise = [&stack](auto f) {
    const bool is_bool = stack.both_bool();
    const int b = stack.pop_int(), a = stack.pop_int();
    stack.push(f(a, b), is_bool);
  };

  switch (code) {
    case Code::abs:
      unary([](double a) { return std::abs(a); });
      break;
    case Code::ceiling:
      unary([](double a) { return std::ceil(a); });
      break;
    case Code::cos:
      unary([](double a) { return std::cos(a * degree); });
      break;
    case Code::cvi:
      unary([](double a) { return Stack::to_int(a); });
      break;
    case Code::cvr:
      break;
    case Code::floor:
      unary([](double a) { return std::floor(a); });
      break;
    case Code::ln:
      unary([](double a) { return std::log(a); });
      break;
    case Code::log:
      unary([](double a) { return std::log10(a); });
      break;
    case Code::neg:
      unary([](double a) { return -a; });
      break;
    case Code::round:
      unary([](double a) { return std::floor(a + 0.5); });
      break;
    case Code::sin:
      unary([](double a) { return std::sin(a * degree); });
      break;
    case Code::sqrt:
      unary([](double a) { return std::sqrt(a); });
      break;
    case Code::truncate:
      unary([](double a) { return std::trunc(a); });
      break;

    case Code::add:
      binary([](double a, double b) { return a + b; });
      break;
    case Code::atan:
      binary(atan_degrees);
      break;
    case Code::div:
      binary([](double a, double b) { return a / b; });
      break;
    case Code::exp:
      binary([](double a, double b) { return std::pow(a, b); });
      break;
    case Code::mul:
      binary([](double a, double b) { return a * b; });
      break;
    case Code::sub:
      binary([](double a, double b) { return a - b; });
      break;
    case Code::idiv:
    case Code::mod: {
      const std::int64_t b = stack.pop_int(), a = stack.pop_int();
      if (b == 0) return false;
      stack.push(static_cast<double>(code == Code::idiv ? a / b : a % b));
      break;
    }

    case Code::eq:
    case Code::ne: {
      const bool same = stack.same_kind();
      const double b = stack.pop(), a = stack.pop();
      stack.push((same && a == b) == (code == Code::eq) ? 1 : 0, true);
      break;
    }
    case Code::ge:
      compare([](double a, double b) { return a >= b; });
      break;
    case Code::gt:
      compare([](double a, double b) { return a > b; });
      break;
    case Code::le:
      compare([](double a, double b) { return a <= b; });
      break;
    case Code::lt:
      compare([](double a, double b) { return a < b; });
      break;

    case Code::and_:
      bitwise([](int a, int b) { return a & b; });
      break;
    case Code::or_:
      bitwise([](int a, int b) { return a | b; });
      break;
    case Code::xor_:
      bitwise([](int a, int b) { return a ^ b; });
      break;
    case Code::bitshift: {
      const int by = stack.pop_int(), value = stack.pop_int();
      stack.push(shifted(value, by));
      break;
    }
    case Code::not_: {
      const bool is_bool = stack.top_is_bool();
      const int value = stack.pop_int();
      stack.push(is_bool ? (value == 0 ? 1 : 0) : ~value, is_bool);
      break;
    }
    case Code::true_:
      stack.push(1, true);
      break;
    case Code::false_:
      stack.push(0, true);
      break;

    case Code::copy:
      return stack.copy(stack.pop_int());
    case Code::dup:
      return stack.copy(1);
    case Code::exch:
      return stack.roll(2, 1);
    case Code::index:
      return stack.index(stack.pop_int());
    case Code::pop:
      stack.pop();
      break;
    case Code::roll: {
      const int by = stack.pop_int(), n = stack.pop_int();
      return stack.roll(n, by);
    }

    case Code::push:
    case Code::jump:
    case Code::jump_if_false:
      return false;  // Not reached: `run` has its own.
  }
  return true;
}
