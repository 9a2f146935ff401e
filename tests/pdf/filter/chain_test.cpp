// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <gtest/gtest.h>

#include "kx/alloc.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/filter_table.h"
#include "tests/pdf/filter/samples.h"
#include "tests/support/pdf_text.h"

namespace filter_test {
namespace {

TEST(Chain, DecodesInTheOrderOfItsNames) {
  const std::string rows = sample_bytes(500, 3), flate = deflate(png_predict(rows, 10, 1, 2)), text = encode_ascii85(flate);
  testing_support::TextXRef xref;
  xref.add(1, "[/ASCII85Decode 2 0 R]");
  xref.add(2, "/FlateDecode");
  xref.add(3, "<</Predictor 12/Columns 10>>");
  CPDFFilterLimits limits;
  limits.max_filters = 3;
  const struct {
    std::string dict, encoded;
    std::vector<std::string> names;
    bool made = true;
  } cases[] = {
      {"<<>>", rows, {}},
      {"<</Filter/FlateDecode/DecodeParms<</Predictor 12/Columns 10>>>>", flate, {"FlateDecode"}},
      {"<</F[/AHx/A85/Fl]/DP[null null 3 0 R]>>", encode_ascii_hex(text), {"ASCIIHexDecode", "ASCII85Decode", "FlateDecode"}},
      {"<</Filter 1 0 R/DecodeParms[null 3 0 R]>>", text, {"ASCII85Decode", "FlateDecode"}},
      {"<</Filter[/A85/Fl]/DecodeParms 3 0 R>>", text, {"ASCII85Decode", "FlateDecode"}},
      {"<</Filter[/Crypt]/F(file)>>", rows, {"Crypt"}},
      {"<</Filter[/AHx/AHx/AHx/AHx]>>", rows, {4, "ASCIIHexDecode"}, false},
      {"<</Filter[/A85/NoSuchDecode]>>", encode_ascii85(rows), {"ASCII85Decode", "NoSuchDecode"}, false},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.dict);
    CPDFObjHolder dict;
    testing_support::parse_pdf(one.dict, dict);
    const auto report = std::make_shared<CPDFDecodeReport>();
    const auto stream = pdfbmp::make_filter_chain(stream_over(one.encoded), *dict.dict(), &xref, limits, report);
    ASSERT_EQ(stream != nullptr, one.made);
    EXPECT_EQ(pdfbmp::filter_names(*dict.dict(), &xref), one.names);
    EXPECT_EQ(report->damaged, !one.made);
    EXPECT_EQ(report->problem.empty(), one.made);
    if (!one.made) continue;
    EXPECT_EQ(read_all(*stream, 77), rows);
    EXPECT_EQ(report->bytes, 500);
  }
}

TEST(Chain, BoundsWhatOneFilterDeliversToTheNext) {
  CPDFObjHolder dict;
  testing_support::parse_pdf("<</Filter[/Fl/AHx]>>", dict);
  CPDFFilterLimits limits;
  limits.max_stage_bytes = 1000;
  limits.max_expansion = 1;
  for (const int blanks : {990, 100'000}) {
    const auto report = std::make_shared<CPDFDecodeReport>();
    const std::string encoded = deflate(std::string(static_cast<std::size_t>(blanks), ' ') + "41>");
    const auto stream = pdfbmp::make_filter_chain(stream_over(encoded), *dict.dict(), nullptr, limits, report);
    EXPECT_EQ(read_all(*stream, 77), blanks < 1000 ? "A" : "");
    EXPECT_EQ(report->problem.find("limits") != std::string::npos, blanks > 1000) << report->problem;
  }
}

TEST(Chain, TellsDamageWithAReadThatGotTooLittle) {
  CPDFDictionary dict;
  dict.set("Filter")->set_name("FlateDecode");
  const auto report = std::make_shared<CPDFDecodeReport>();
  const std::string encoded = deflate(sample_bytes(500, 3)).substr(0, 100);
  const auto stream = pdfbmp::make_filter_chain(stream_over(encoded), dict, nullptr, {}, report);
  char buffer[500];
  EXPECT_LT(stream->read_block(buffer, 500), 500);
  EXPECT_TRUE(report->damaged);
  EXPECT_EQ(pdfbmp::report_of(stream.get()), report);
  EXPECT_EQ(pdfbmp::report_of(stream_over(encoded).get()), nullptr);
  stream->close();
  EXPECT_EQ(stream->read_block(buffer, 500), 0);
}

TEST(InlineStream, DecodesByEitherName) {
  const char* const names[][2] = {
      {"Fl", "FlateDecode"}, {"LZW", "LZWDecode"}, {"RL", "RunLengthDecode"}, {"A85", "ASCII85Decode"}, {"AHx", "ASCIIHexDecode"}};
  for (const auto& [brief, full] : names) EXPECT_EQ(pdfbmp::find_filter(brief), pdfbmp::find_filter(full)) << full;
  const std::string bytes = sample_bytes(300, 3);
  for (const char* name : {"Fl", "FlateDecode", static_cast<const char*>(nullptr)}) {
    // The stream is handed the input, as the last stage of a chain is.
    const std::string encoded = name != nullptr ? deflate(bytes) : bytes;
    auto* const data = static_cast<unsigned char*>(KXAlloc(encoded.size()));
    std::memcpy(data, encoded.data(), encoded.size());
    const std::unique_ptr<CPDFStream> stream(CPDFStream::make_inline_stream(data, static_cast<int>(encoded.size()), name, nullptr));
    ASSERT_TRUE(stream != nullptr && stream->data == data && stream->data_borrowed == 1);
    stream->data_borrowed = 0;
    EXPECT_EQ(read_all(*stream, 13), bytes);
  }
  unsigned char none = 0;
  EXPECT_EQ(CPDFStream::make_inline_stream(&none, 0, "NoSuchDecode", nullptr), nullptr);
}

}  // namespace
}  // namespace filter_test
