// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <gtest/gtest.h>

#include "kx/alloc.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/measured_stream.h"
#include "tests/pdf/filter/samples.h"
#include "tests/support/pdf_text.h"
#include "tests/support/streams.h"

namespace filter_test {
namespace {

constexpr const char* predictor = "<</Predictor 12/Columns 10>>";

TEST(Chain, DecodesInTheOrderOfItsNames) {
  const std::string rows = sample_bytes(500, 3), flate = deflate(png_predict(rows, 10, 1, 2)), text = encode_ascii85(flate);
  testing_support::TextXRef xref;
  xref.add(1, "[/ASCII85Decode 2 0 R]");
  xref.add(2, "/FlateDecode");
  xref.add(3, predictor);
  CPDFFilterLimits limits;
  limits.max_filters = 3;
  const struct {
    std::string dict, encoded;
    std::vector<std::string> names;
    bool made = true;
  } cases[] = {
      {"<<>>", rows, {}},
      {std::string("<</Filter/FlateDecode/DecodeParms ") + predictor + ">>", flate, {"FlateDecode"}},
      {std::string("<</F[/AHx/A85/Fl]/DP[null null ") + predictor + "]>>",
       encode_ascii_hex(text),
       {"ASCIIHexDecode", "ASCII85Decode", "FlateDecode"}},
      {"<</Filter 1 0 R/DecodeParms[null 3 0 R]>>", text, {"ASCII85Decode", "FlateDecode"}},
      {std::string("<</Filter[/A85/Fl]/DecodeParms ") + predictor + ">>", text, {"ASCII85Decode", "FlateDecode"}},
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
    EXPECT_FALSE(report->damaged);
  }
}

TEST(Chain, TellsDamageWithAReadThatGotTooLittle) {
  CPDFDictionary dict;
  dict.set("Filter")->set_name("FlateDecode");
  const auto report = std::make_shared<CPDFDecodeReport>();
  const std::string encoded = deflate(sample_bytes(500, 3)).substr(0, 100);
  const auto stream = pdfbmp::make_filter_chain(stream_over(encoded), dict, nullptr, {}, report);
  std::string buffer(500, '\0');
  EXPECT_LT(stream->read_block(buffer.data(), 500), 500);
  EXPECT_TRUE(report->damaged);
  EXPECT_EQ(pdfbmp::report_of(stream.get()), report);
  EXPECT_EQ(pdfbmp::report_of(stream_over(encoded).get()), nullptr);
  stream->close();
  EXPECT_EQ(stream->read_block(buffer.data(), 500), 0);
}

TEST(Chain, StaysAJpxStream) {
  StreamLog log;
  ReadScript alpha;
  alpha.answer = [](int, int) { return 2; };
  auto scripted = std::make_unique<ScriptedJpxStream>(log, ReadScript(), alpha);
  scripted->comp_count = 3, scripted->alpha_channel = 1;
  const auto report = std::make_shared<CPDFDecodeReport>();
  const auto stream = pdfbmp::make_measured_stream(std::move(scripted), report);
  auto* const jpx = dynamic_cast<CPDFStreamJPX*>(stream.get());
  ASSERT_NE(jpx, nullptr);
  EXPECT_EQ(jpx->kind, 9);
  EXPECT_EQ(jpx->comp_count, 3);
  EXPECT_EQ(jpx->alpha_channel, 1);
  char buffer[5];
  EXPECT_EQ(jpx->read_alpha(buffer, 5), 2);
  EXPECT_EQ(report->bytes, 0);
  EXPECT_EQ(jpx->read_block(buffer, 5), 5);
  EXPECT_EQ(report->bytes, 5);
}

TEST(InlineStream, DecodesEveryFilterByEitherName) {
  const std::string bytes = sample_bytes(300, 3);
  const struct {
    std::vector<const char*> names;
    std::string encoded;
  } cases[] = {{{"Fl", "FlateDecode"}, deflate(bytes)},
               {{"LZW", "LZWDecode"}, encode_lzw(bytes)},
               {{"RL", "RunLengthDecode"}, encode_run_length(bytes)},
               {{"A85", "ASCII85Decode"}, encode_ascii85(bytes)},
               {{"AHx", "ASCIIHexDecode"}, encode_ascii_hex(bytes)},
               {{nullptr}, bytes}};
  for (const auto& one : cases) {
    for (const char* name : one.names) {
      // The stream is handed the input, as the last stage of a chain is.
      const std::size_t n = one.encoded.size();
      auto* const data = static_cast<unsigned char*>(KXAlloc(n));
      std::memcpy(data, one.encoded.data(), n);
      const std::unique_ptr<CPDFStream> stream(CPDFStream::make_inline_stream(data, static_cast<int>(n), name, nullptr));
      ASSERT_NE(stream, nullptr) << name;
      EXPECT_EQ(stream->data, data);
      EXPECT_EQ(stream->data_borrowed, 1);
      stream->data_borrowed = 0;
      EXPECT_EQ(read_all(*stream, 13), bytes) << name;
    }
  }
  unsigned char none = 0;
  EXPECT_EQ(CPDFStream::make_inline_stream(&none, 0, "NoSuchDecode", nullptr), nullptr);
}

}  // namespace
}  // namespace filter_test
