// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "pdf/cs/parsed/postscript_program.h"

namespace {

TEST(PostScriptProgram, RunsEachOperator) {
  struct Case {
    const char* program;
    std::vector<double> in, out;  // No `out`: the run fails.
  };
  const Case cases[] = {
      {"{ abs }", {-4.5}, {4.5}},
      {"{ add }", {3, 4.5}, {7.5}},
      {"{ sub }", {3, 4.5}, {-1.5}},
      {"{ mul }", {3, -2}, {-6}},
      {"{ div }", {3, 2}, {1.5}},
      {"{ idiv }", {7, 2}, {3}},
      {"{ idiv }", {-5, 2}, {-2}},
      {"{ idiv }", {5, 0}, {}},
      {"{ mod }", {5, 3}, {2}},
      {"{ mod }", {-5, 3}, {-2}},
      {"{ mod }", {5, 0}, {}},
      {"{ -2147483648 -1 idiv }", {}, {2147483648.0}},
      {"{ neg }", {4.5}, {-4.5}},
      {"{ ceiling }", {3.2}, {4}},
      {"{ ceiling }", {-4.8}, {-4}},
      {"{ floor }", {-4.8}, {-5}},
      {"{ round }", {6.5}, {7}},
      {"{ round }", {-6.5}, {-6}},
      {"{ truncate }", {-4.8}, {-4}},
      {"{ cvi }", {-47.8}, {-47}},
      {"{ 1e20 cvi }", {}, {2147483647}},
      {"{ cvr }", {12}, {12}},
      {"{ sqrt }", {2.25}, {1.5}},
      {"{ exp }", {9, 0.5}, {3}},
      {"{ ln 1000000 mul cvi }", {10}, {2302585}},
      {"{ log }", {1000}, {3}},
      {"{ sin 1000 mul round }", {30}, {500}},
      {"{ cos 1000 mul round }", {180}, {-1000}},
      {"{ atan round }", {1, 1}, {45}},
      {"{ atan round }", {-100, 0}, {270}},
      {"{ 0 1 atan }", {}, {0}},
      {"{ eq }", {4, 4}, {1}},
      {"{ ne }", {4, 4}, {0}},
      {"{ 0 eq }", {0}, {1}},
      {"{ false 0 eq }", {}, {0}},
      {"{ gt }", {4, 3}, {1}},
      {"{ ge }", {3, 4}, {0}},
      {"{ lt }", {3, 4}, {1}},
      {"{ le }", {4, 4}, {1}},
      {"{ and }", {99, 52}, {32}},
      {"{ or }", {17, 5}, {21}},
      {"{ xor }", {7, 3}, {4}},
      {"{ true false and }", {}, {0}},
      {"{ true false or }", {}, {1}},
      {"{ true true xor }", {}, {0}},
      {"{ not }", {52}, {-53}},
      {"{ true not }", {}, {0}},
      {"{ bitshift }", {7, 3}, {56}},
      {"{ bitshift }", {142, -3}, {17}},
      {"{ bitshift }", {1, 40}, {0}},
      {"{ pop }", {1, 2}, {1}},
      {"{ exch }", {1, 2}, {2, 1}},
      {"{ dup }", {7}, {7, 7}},
      {"{ 2 copy }", {1, 2, 3}, {1, 2, 3, 2, 3}},
      {"{ 0 copy }", {1}, {1}},
      {"{ 2 index }", {1, 2, 3}, {1, 2, 3, 1}},
      {"{ 3 -1 roll }", {1, 2, 3}, {2, 3, 1}},
      {"{ 3 1 roll }", {1, 2, 3}, {3, 1, 2}},
      {"{ 2 -7 roll }", {1, 2, 3}, {1, 3, 2}},
      {"{ 0 5 roll }", {1, 2}, {1, 2}},
      {"{ 0.5 gt { 10 } if }", {0.6}, {10}},
      {"{ dup 0.5 gt { pop 10 } if }", {0.4}, {0.4}},
      {"{ 0.5 gt { 1 } { 2 } ifelse 3 }", {0.6}, {1, 3}},
      {"{ 0.5 gt { 1 } { 2 } ifelse 3 }", {0.4}, {2, 3}},
      {"{ 0 gt {{true {1}{2} ifelse}} pop }", {1}, {}},  // Blocks that nothing takes.
      {"{ true { false { 1 } { 2 } ifelse } { 3 } ifelse }", {}, {2}},
      {"{2.5 .5 -.5 +1 1e1}", {}, {2.5, 0.5, -0.5, 1, 10}},
      {"% head\n{ 1 % one }\r 2 add }", {}, {3}},
      {"{}", {5}, {5}},
      // What the stack does not hold, or cannot.
      {"{ add }", {1}, {}},
      {"{ pop pop }", {1}, {}},
      {"{ 5 index }", {1, 2}, {}},
      {"{ -1 index }", {1, 2}, {}},
      {"{ 5 copy }", {1, 2}, {}},
      {"{ -1 copy }", {1, 2}, {}},
      {"{ 5 1 roll }", {1, 2}, {}},
      {"{ if }", {1}, {}},
  };
  for (const Case& c : cases) {
    CPDFPostScriptProgram program;
    std::vector<double> out(std::max(c.out.size(), std::size_t{1}), 77);
    const bool ran =
        program.compile(c.program) && program.run(c.in.data(), static_cast<int>(c.in.size()),
                                                  out.data(), static_cast<int>(out.size()));
    EXPECT_EQ(ran, !c.out.empty()) << c.program;
    for (std::size_t i = 0; i < c.out.size(); ++i)
      EXPECT_NEAR(out[i], c.out[i], 1e-9) << c.program << ", result " << i;
  }
}

TEST(PostScriptProgram, RefusesMalformedText) {
  for (const char* text : {"", "{", "}", "1 add", "{ 1 } }", "{ 1 } 2", "{ frob }", "{ {1} }",
                           "{ true {1} {2} if }", "{ true {1} ifelse }", "{ 1e999 }", "{ 1.2.3 }",
                           "{ nan }", "{ true {1} {2} {3} ifelse }", "{ + }", "{ - }"}) {
    CPDFPostScriptProgram program;
    EXPECT_FALSE(program.compile(text)) << text;
  }
}

TEST(PostScriptProgram, KeepsItsLimits) {
  const auto nested = [](int depth) {
    std::string text = "{ 1 ";
    for (int i = 0; i < depth; ++i) text += "true { ";
    for (int i = 0; i < depth; ++i) text += "} if ";
    return text + "}";
  };
  const auto repeated = [](const std::string& what, int times) {
    std::string text = "{ ";
    for (int i = 0; i < times; ++i) text += what;
    return text + "}";
  };
  using Program = CPDFPostScriptProgram;
  EXPECT_TRUE(Program().compile(nested(Program::max_depth)));
  EXPECT_FALSE(Program().compile(nested(Program::max_depth + 1)));
  EXPECT_TRUE(Program().compile(repeated("neg ", Program::max_instructions)));
  EXPECT_FALSE(Program().compile(repeated("neg ", Program::max_instructions + 1)));

  for (const auto& [what, times, fits] : {std::tuple{"1 ", Program::stack_size, true},
                                          {"1 ", Program::stack_size + 1, false},
                                          {"dup ", Program::stack_size - 1, true},
                                          {"dup ", Program::stack_size, false}}) {
    Program program;
    double value = 1, out = 0;
    ASSERT_TRUE(program.compile(repeated(what, times)));
    EXPECT_EQ(program.run(&value, *what == 'd' ? 1 : 0, &out, 1), fits) << what << times;
  }
}

}  // namespace
