// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pdf/cs/parsed/postscript_program.h"

namespace {

TEST(PostScriptProgram, RunsEachOperator) {
  struct Case {
    const char* program;  // What stands between the outer braces.
    std::vector<double> left;
  };
  const Case cases[] = {
      {"-4.5 abs 3 4.5 add 3 4.5 sub 3 -2 mul 3 2 div 4.5 neg", {4.5, 7.5, -1.5, -6, 1.5, -4.5}},
      {"7 2 idiv -5 2 idiv -2147483648 -1 idiv 5 3 mod -5 3 mod", {3, -2, 2147483648.0, 2, -2}},
      {"3.2 ceiling -4.8 ceiling -4.8 floor 6.5 round -6.5 round", {4, -4, -5, 7, -6}},
      {"-4.8 truncate -47.8 cvi 1e20 cvi 12 cvr", {-4, -47, 2147483647, 12}},
      {"2.25 sqrt 9 0.5 exp 10 ln 1000000 mul cvi 1000 log", {1.5, 3, 2302585, 3}},
      {"30 sin 2 mul 180 cos 1 1 atan -100 0 atan 0 1 atan", {1, -1, 45, 270, 0}},
      {"4 4 eq 4 4 ne 0 0 eq false 0 eq false 0 ne", {1, 0, 1, 0, 1}},
      {"4 3 gt 3 4 ge 4 4 ge 3 4 lt 4 4 lt 4 4 le", {1, 0, 1, 1, 0, 1}},
      {"99 52 and 17 5 or 7 3 xor 52 not", {32, 21, 4, -53}},
      {"true false and true false or true true xor true not", {0, 1, 0, 0}},
      {"7 3 bitshift 142 -3 bitshift 1 40 bitshift -8 -1 bitshift", {56, 17, 0, -4}},
      {"1 2 pop 3 4 exch 7 dup", {1, 4, 3, 7, 7}},
      {"1 2 3 2 copy 0 copy 4 index", {1, 2, 3, 2, 3, 1}},
      {"1 2 3 3 -1 roll", {2, 3, 1}},
      {"1 2 3 3 1 roll 2 -7 roll 0 5 roll", {3, 2, 1}},
      {"0.6 0.5 gt { 10 } if 0.4 0.5 gt { 11 } if 12", {10, 12}},
      {"0.6 0.5 gt { 1 } { 2 } ifelse 0.4 0.5 gt { 3 } { 4 } ifelse", {1, 4}},
      {"true { false { 1 } { 2 } ifelse } { 3 } ifelse", {2}},
      {"2.5 .5 -.5 +1{}if%one}\r1e1", {2.5, 0.5, -0.5, 10}},
  };
  for (const Case& c : cases) {
    CPDFPostScriptProgram program;
    ASSERT_TRUE(program.compile(std::string("% head\n{") + c.program + "}")) << c.program;
    const int count = static_cast<int>(c.left.size());
    std::vector<double> out(c.left.size());
    const double below = 0;
    ASSERT_TRUE(program.run(&below, 1, out.data(), count)) << c.program;
    for (std::size_t i = 0; i < out.size(); ++i) EXPECT_NEAR(out[i], c.left[i], 1e-9) << c.program << ", result " << i;
    // Nothing but the input lies below them.
    std::vector<double> all(out.size() + 2);
    EXPECT_TRUE(program.run(&below, 1, all.data(), count + 1)) << c.program;
    EXPECT_FALSE(program.run(&below, 1, all.data(), count + 2)) << c.program;
  }
}

TEST(PostScriptProgram, FailsWhereTheStackOrANumberDoesNotServe) {
  for (const char* text : {"{ add }", "{ pop pop }", "{ 1 2 5 index }", "{ 1 -1 index }", "{ 1 2 5 copy }", "{ 1 -1 copy }",
                           "{ 1 2 5 1 roll }", "{ pop {1} if }", "{ 5 0 idiv }", "{ 5 0 mod }"}) {
    CPDFPostScriptProgram program;
    double value = 1, out = 77;
    ASSERT_TRUE(program.compile(text)) << text;
    EXPECT_FALSE(program.run(&value, 1, &out, 1)) << text;
    EXPECT_EQ(out, 77) << text;
  }
}

TEST(PostScriptProgram, KeepsItsLimits) {
  const auto repeated = [](const std::string& what, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += what;
    return text;
  };
  const auto compiles = [](const std::string& text) { return CPDFPostScriptProgram().compile("{ 1 " + text + "}"); };
  using Program = CPDFPostScriptProgram;
  for (const int more : {0, 1}) {
    const int depth = Program::max_depth + more;
    EXPECT_EQ(compiles(repeated("true { ", depth) + repeated("} if ", depth)), more == 0);
    EXPECT_EQ(compiles(repeated("neg ", Program::max_instructions - 1 + more)), more == 0);
  }
  for (const auto& [what, times, fits] : {std::tuple{"1 ", Program::stack_size, true},
                                          {"1 ", Program::stack_size + 1, false},
                                          {"dup ", Program::stack_size - 1, true},
                                          {"dup ", Program::stack_size, false}}) {
    Program program;
    double value = 1, out = 0;
    ASSERT_TRUE(program.compile("{ " + repeated(what, times) + "}"));
    EXPECT_EQ(program.run(&value, *what == 'd' ? 1 : 0, &out, 1), fits) << what << times;
  }
}

}  // namespace
