// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstring>
#include <gtest/gtest.h>

#include "kx/alloc.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/measured_stream.h"
#include "pdf/obj/jpx_stream.h"
#include "pdf/obj/xref.h"
#include "tests/pdf/filter/samples.h"

namespace filter_test {
namespace {

// Every reference is the name or dictionary given to it.
class Table : public CPDFXRefTable {
 public:
  CPDFObjHolder entities[3];
  int get_entity(CPDFObj& out, const PDF_REF& ref) override {
    out.copy_from(&entities[ref.num]);
    return 1;
  }
  CPDFStream* make_stream(const CPDFStreamRec*) override { return nullptr; }
};

class Chain : public testing::Test {
 protected:
  // Sets a Filter array of names.
  void set_filters(const char* key, std::initializer_list<const char*> names) {
    CPDFArray* const array = dict_.set(key)->set_array();
    for (const char* name : names) array->append()->set_name(name);
  }

  static void set_predictor(CPDFDictionary* parms) {
    parms->set("Predictor")->set_int(12);
    parms->set("Columns")->set_int(10);
  }

  std::string run(const std::string& encoded) {
    const auto stream = pdfbmp::make_filter_chain(stream_over(encoded), dict_, &table_, limits_, report_);
    made_ = stream != nullptr;
    return made_ ? read_all(*stream, 77) : "";
  }

  CPDFDictionary dict_;
  Table table_;
  CPDFFilterLimits limits_;
  std::shared_ptr<CPDFDecodeReport> report_ = std::make_shared<CPDFDecodeReport>();
  bool made_ = false;
  const std::string rows_ = sample_bytes(500, 3);
  const std::string flate_ = deflate(png_predict(rows_, 10, 1, 2));
};

TEST_F(Chain, TakesArraysWithNullsAndAbbreviations) {
  set_filters("F", {"AHx", "A85", "Fl"});
  CPDFArray* const parms = dict_.set("DP")->set_array();
  parms->append();
  parms->append();
  set_predictor(parms->append()->set_dict());
  EXPECT_EQ(run(encode_ascii_hex(encode_ascii85(flate_))), rows_);
  EXPECT_EQ(report_->bytes, 500);
  EXPECT_EQ(pdfbmp::filter_names(dict_, nullptr), (std::vector<std::string>{"ASCIIHexDecode", "ASCII85Decode", "FlateDecode"}));
}

TEST_F(Chain, FollowsReferences) {
  CPDFArray* const names = table_.entities[0].set_array();
  names->append()->set_name("ASCII85Decode");
  names->append()->set_ref({1, 0});
  table_.entities[1].set_name("FlateDecode");
  set_predictor(table_.entities[2].set_dict());
  dict_.set("Filter")->set_ref({0, 0});
  CPDFArray* const parms = dict_.set("DecodeParms")->set_array();
  parms->append();
  parms->append()->set_ref({2, 0});
  EXPECT_EQ(run(encode_ascii85(flate_)), rows_);
}

TEST_F(Chain, RefusesWhatItDoesNotKnow) {
  set_filters("Filter", {"A85", "NoSuchDecode"});
  run(encode_ascii85(rows_));
  EXPECT_FALSE(made_);
  EXPECT_TRUE(report_->damaged);
  EXPECT_FALSE(report_->problem.empty());
}

TEST_F(Chain, KeepsToTheLimits) {
  limits_.max_filters = 3;
  set_filters("Filter", {"AHx", "AHx", "AHx"});
  run(encode_ascii_hex(encode_ascii_hex(encode_ascii_hex(rows_))));
  EXPECT_TRUE(made_);
  set_filters("Filter", {"AHx", "AHx", "AHx", "AHx"});
  run(rows_);
  EXPECT_FALSE(made_);
}

TEST_F(Chain, TellsDamageWithAReadThatGotTooLittle) {
  dict_.set("Filter")->set_name("FlateDecode");
  const std::string encoded = deflate(rows_).substr(0, 100);
  const auto stream = pdfbmp::make_filter_chain(stream_over(encoded), dict_, nullptr, limits_, report_);
  std::string buffer(500, '\0');
  EXPECT_LT(stream->read_block(buffer.data(), 500), 500);
  EXPECT_TRUE(report_->damaged);
  EXPECT_EQ(pdfbmp::report_of(stream.get()), report_);
  EXPECT_EQ(pdfbmp::report_of(stream_over(encoded).get()), nullptr);
  stream->close();
  EXPECT_EQ(stream->read_block(buffer.data(), 500), 0);
}

class Jpx : public CPDFStreamJPX {
 public:
  Jpx() { comp_count = 3, alpha_channel = 1; }
  int read_block(void* dst, int n) override { return std::memset(dst, 7, 5) != nullptr ? 5 : n; }
  int read_alpha(void* dst, int) override { return std::memset(dst, 9, 2) != nullptr ? 2 : 0; }
};

TEST_F(Chain, StaysAJpxStream) {
  const auto stream = pdfbmp::make_measured_stream(std::make_unique<Jpx>(), report_);
  auto* const jpx = dynamic_cast<CPDFStreamJPX*>(stream.get());
  ASSERT_NE(jpx, nullptr);
  EXPECT_EQ(jpx->kind, 9);
  EXPECT_EQ(jpx->comp_count, 3);
  EXPECT_EQ(jpx->alpha_channel, 1);
  char buffer[5];
  EXPECT_EQ(jpx->read_alpha(buffer, 5), 2);
  EXPECT_EQ(report_->bytes, 0);
  EXPECT_EQ(jpx->read_block(buffer, 5), 5);
  EXPECT_EQ(report_->bytes, 5);
}

TEST(InlineStream, DecodesEveryFilterByEitherName) {
  const std::string bytes = sample_bytes(300, 3);
  const struct {
    const char* filter;
    std::string encoded;
  } cases[] = {
      {"Fl", deflate(bytes)},
      {"FlateDecode", deflate(bytes)},
      {"LZW", encode_lzw(bytes)},
      {"LZWDecode", encode_lzw(bytes)},
      {"RL", encode_run_length(bytes)},
      {"RunLengthDecode", encode_run_length(bytes)},
      {"A85", encode_ascii85(bytes)},
      {"ASCII85Decode", encode_ascii85(bytes)},
      {"AHx", encode_ascii_hex(bytes)},
      {"ASCIIHexDecode", encode_ascii_hex(bytes)},
      {nullptr, bytes},
  };
  for (const auto& one : cases) {
    // The stream is handed the input, as the last stage of a chain is.
    const std::size_t n = one.encoded.size();
    auto* const data = static_cast<unsigned char*>(KXAlloc(n));
    std::memcpy(data, one.encoded.data(), n);
    const std::unique_ptr<CPDFStream> stream(CPDFStream::make_inline_stream(data, static_cast<int>(n), one.filter, nullptr));
    ASSERT_NE(stream, nullptr) << one.filter;
    EXPECT_EQ(stream->data, data);
    EXPECT_EQ(stream->data_borrowed, 1);
    stream->data_borrowed = 0;
    EXPECT_EQ(read_all(*stream, 13), bytes) << one.filter;
  }
  unsigned char none = 0;
  EXPECT_EQ(CPDFStream::make_inline_stream(&none, 0, "NoSuchDecode", nullptr), nullptr);
}

}  // namespace
}  // namespace filter_test
