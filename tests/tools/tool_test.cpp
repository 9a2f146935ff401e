// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Runs the built program and looks at what a caller sees: exit codes, messages, files, JSON.

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/json_lines.h"
#include "tests/support/png_reader.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"
#include "tests/tools/tar_reader.h"
#include "tools/encoders/encoders.h"
#include "tools/encoders/pdf_builder.h"

namespace {

using Words = std::vector<std::string>;

const std::string rgb = "/ColorSpace /DeviceRGB /BitsPerComponent 8", gray = "/ColorSpace /DeviceGray /BitsPerComponent 8";
const std::string rgb_rows = "\1\2\3\4\5\6ghijkl";

// Two pages that share an RGB image; a gray one and a stencil besides.
std::string good_pdf() {
  PdfBuilder pdf;
  const int shared = pdf.add_image(2, 2, rgb, rgb_rows), levels = pdf.add_image(3, 1, gray, "\x10\x80\xF0");
  const int stencil = pdf.add_image(8, 1, "/ImageMask true /BitsPerComponent 1", "\xF0");
  pdf.add_page_with({shared, levels});
  pdf.add_page_with({shared, stencil});
  return pdf.finish();
}

std::string one_image_pdf(const std::string& entries, const std::string& data) {
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(2, 2, entries, data)});
  return pdf.finish();
}

class Tool : public testing::Test {
 protected:
  void SetUp() override {
    write_file(path("good.pdf"), good_pdf());
    write_file(path("short.pdf"), one_image_pdf(rgb, rgb_rows.substr(0, 8)));
    write_file(path("empty.pdf"), one_image_pdf(rgb, ""));
    write_file(path("foreign.pdf"), one_image_pdf(rgb + " /Filter /NoSuchDecode", rgb_rows));
    write_file(path("fax.pdf"), one_image_pdf("/ColorSpace /DeviceGray /BitsPerComponent 1 /Filter /CCITTFaxDecode"
                                              " /DecodeParms << /K -1 /Columns 2 >>",
                                              "\xCD"));
    write_file(path("text.pdf"), "This is no PDF.\n");
    QPDF pdf;
    const std::string plain = good_pdf();
    pdf.processMemoryFile("plain", plain.data(), plain.size());
    const std::string secret = path("secret.pdf");  // The writer keeps the pointer.
    QPDFWriter writer(pdf, secret.c_str());
    writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full, true);
    writer.write();
  }

  std::string path(const std::string& name) const { return folder_.path() / name; }

  // Words that are names of the test's files become their paths.
  ProgramRun run(Words words, const std::string& input = "", const std::string& out = "") const {
    for (std::string& word : words) {
      if (word.find('.') != std::string::npos || word == "out") word = path(word);
    }
    words.insert(words.begin(), PDFBMP_TOOL);
    return run_program(words, input, out);
  }

  // Names below a folder, sorted.
  std::vector<std::string> files_in(const std::string& name) const {
    std::vector<std::string> files;
    const std::filesystem::path top = path(name);
    if (!std::filesystem::exists(top)) return files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
      if (entry.is_regular_file()) files.push_back(entry.path().lexically_relative(top));
    }
    std::sort(files.begin(), files.end());
    return files;
  }

  TemporaryFolder folder_;
};

TEST_F(Tool, ExitCodesAndMessages) {
  struct {
    Words words;
    int exit_code;
    std::string message;                  // Part of standard error, which is empty where this is.
    std::vector<std::string> files = {};  // Below the folder "out".
  } const cases[] = {
      {{"--version"}, 0, ""},
      {{"extract", "--help"}, 0, ""},
      {{"list", "good.pdf"}, 0, ""},
      {{"extract", "good.pdf", "-o", "out"}, 0, "3 images written", {"0001-001-o3.png", "0001-002-o4.png", "0002-001-o5.png"}},
      {{"extract", "-q", "good.pdf", "-o", "out", "-f", "2"}, 0, "", {"0002-001-o3.png", "0002-002-o5.png"}},
      {{"extract", "good.pdf", "-o", "out", "--format", "pnm"}, 0, "3 images", {"0001-001-o3.ppm", "0001-002-o4.pgm", "0002-001-o5.pam"}},
      {{"extract", "good.pdf", "-o", "out", "--format", "pam", "--kind", "mask"}, 0, "1 image written, 2 passed over", {"0002-001-o5.pam"}},
      {{"extract", "good.pdf", "-o", "out", "--kind", "mono"}, 0, "1 image written", {"0001-002-o4.png"}},
      {{"extract", "good.pdf", "-o", "out", "--kind", "gray"}, 0, "2 images written", {"0001-001-o3.png", "0001-002-o4.png"}},
      {{"extract", "good.pdf", "-o", "out", "-f", "9"}, 0, "has no page 9"},
      {{"extract", "short.pdf", "-o", "out"}, 1, "short.pdf: page 1, object 3: incomplete: ", {"0001-001-o3.png"}},
      {{"extract", "empty.pdf", "-o", "out"}, 1, "page 1, object 3: "},
      {{"extract", "foreign.pdf", "-o", "out"}, 1, "foreign.pdf: page 1, object 3: "},
      {{"extract", "good.pdf", "-o", "out", "--max-pixels", "3"}, 1, "object 3: its 2 x 2 pixels", {"0001-002-o4.png"}},
      {{"extract", "good.pdf", "-o", "out", "--min-size", "3x1"}, 0, "2 images written", {"0001-002-o4.png", "0002-001-o5.png"}},
      {{"extract", "good.pdf", "-o", "out", "--min-size", "2"}, 0, "1 image written", {"0001-001-o3.png"}},
      {{"extract", "good.pdf", "-o", "out", "--objects", "5,3,7"}, 0, "object 7 is no image", {"0001-001-o3.png", "0002-001-o5.png"}},
      {{"extract", "good.pdf", "-o", "out", "--format", "native", "--objects", "3"}, 0, "1 image written", {"0001-001-o3.png"}},
      {{"extract", "fax.pdf", "-o", "out", "--format", "native"}, 0, "1 image written", {"0001-001-o3.tif"}},
      {{"extract", "fax.pdf", "-o", "out", "--format", "native", "--kind", "mask"}, 0, "1 passed over"},
      {{"extract", "fax.pdf", "-o", "out", "--format", "native", "--kind", "gray"}, 2, "native"},
      {{"list", "good.pdf", "--min-size", "3x"}, 2, "3x is no size"},
      {{"list", "good.pdf", "--objects", "3,,4"}, 2, "object number"},
      {{}, 2, "Try"},
      {{"extract", "good.pdf"}, 2, "--output"},
      {{"extract", "good.pdf", "-o", "out", "--kind", "gold"}, 2, "gold"},
      {{"list", "good.pdf", "-f", "2", "-l", "1"}, 2, "first page"},
      {{"extract", "good.pdf", "-o", "out", "--cmyk-profile", "text.pdf"}, 2, "text.pdf: "},
      {{"gallery", "good.pdf", "-o", "page.html"}, 0, "3 images shown"},
      {{"gallery", "short.pdf", "-o", "page.html"}, 1, "short.pdf: page 1, object 3: incomplete: "},
      {{"gallery", "good.pdf"}, 2, "--output"},
      {{"gallery", "good.pdf", "short.pdf", "-o", "page.html"}, 2, "Try"},
      {{"gallery", "text.pdf", "-o", "page.html"}, 3, "text.pdf: "},
      {{"gallery", "good.pdf", "-o", "text.pdf/page.html"}, 5, "page.html: "},
      {{"list", "text.pdf"}, 3, "text.pdf: "},
      {{"list", "missing.pdf"}, 3, "missing.pdf: "},
      {{"extract", "text.pdf", "-o", "out"}, 3, "text.pdf: "},
      {{"list", "secret.pdf"}, 4, "secret.pdf: "},
      {{"list", "secret.pdf", "--password", "wrong"}, 4, "secret.pdf: "},
      {{"list", "secret.pdf", "--password", "open"}, 0, ""},
      {{"extract", "good.pdf", "-o", "text.pdf"}, 5, "text.pdf: "},
      {{"extract", "good.pdf", "-o", "text.pdf/below"}, 5, "text.pdf/below: "},
      {{"list", "text.pdf", "secret.pdf", "good.pdf"}, 3, "secret.pdf: "},
      {{"extract", "foreign.pdf", "secret.pdf", "-o", "out"}, 4, "foreign.pdf: page 1"},
  };
  for (const auto& c : cases) {
    std::filesystem::remove_all(path("out"));
    const ProgramRun ran = run(c.words);
    const std::string call = testing::PrintToString(c.words);
    EXPECT_EQ(ran.exit_code, c.exit_code) << call << "\n" << ran.err;
    EXPECT_EQ(ran.err.empty(), c.message.empty()) << call << "\n" << ran.err;
    EXPECT_NE(ran.err.find(c.message), std::string::npos) << call << "\n" << ran.err;
    EXPECT_EQ(files_in("out"), c.files) << call;
  }
  EXPECT_EQ(run({"list", "good.pdf"}, "", "/dev/full").exit_code, 5);
  EXPECT_EQ(run({"extract", "good.pdf", "-o", "-"}, "", "/dev/full").exit_code, 5);
}

TEST_F(Tool, PicturesHoldThePixels) {
  ASSERT_EQ(run({"extract", "good.pdf", "-o", "out"}).exit_code, 0);
  const struct {
    const char* file;
    int color_type;
    std::string rows;
  } cases[] = {
      {"out/0001-001-o3.png", 2, rgb_rows},
      {"out/0001-002-o4.png", 0, "\x10\x80\xF0"},
      {"out/0002-001-o5.png", 4, std::string("\0\0\0\0\0\0\0\0\0\xFF\0\xFF\0\xFF\0\xFF", 16)},
  };
  for (const auto& [file, color_type, rows] : cases) {
    const PngReader png(file_content(path(file)));
    EXPECT_EQ(png.error, "") << file;
    EXPECT_EQ(png.color_type, color_type) << file;
    EXPECT_EQ(png.rows, rows) << file;
  }
}

// More pixels arrive, and more are missing, than are ever written blank.
TEST_F(Tool, VastPictureEndsWhereItsDataDoes) {
  const std::string rows(std::size_t{2048} * 5000, '\x55'), bits = "/ColorSpace /DeviceGray /BitsPerComponent 1 /Filter /FlateDecode";
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(16384, 16384, bits, encoders::deflate(rows))});
  write_file(path("vast.pdf"), pdf.finish());
  EXPECT_EQ(run({"extract", "vast.pdf", "-o", "out"}).exit_code, 1);
  const PngReader png(file_content(path("out/0001-001-o3.png")));
  EXPECT_EQ(png.error, "");
  EXPECT_TRUE(png.rows == rows);
  EXPECT_EQ(run({"extract", "vast.pdf", "-o", "out", "--limit", "blank-pixels=268435456"}).exit_code, 1);
  EXPECT_EQ(PngReader(file_content(path("out/0001-001-o3.png"))).rows.size(), std::size_t{2048} * 16384);
}

// Where colours are dear, those rows are decoded that there is time for; without any, none.
TEST_F(Tool, TimeIsLimited) {
  std::string program = "{ pop ", ramp;
  for (int i = 0; i < 12000; ++i) program += "sin ";
  for (unsigned i = 0; i < 1U << 18; ++i) ramp += static_cast<char>(i * i >> 8);
  PdfBuilder pdf;
  const int function = pdf.add_stream("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1]", program + "}");
  const std::string space = "/ColorSpace [/DeviceN [/A /B] /DeviceGray " + PdfBuilder::ref(function) + "] /BitsPerComponent 8";
  pdf.add_page_with({pdf.add_image(512, 256, space + " /Filter /FlateDecode", encoders::deflate(ramp))});
  write_file(path("late.pdf"), pdf.finish());
  const std::string late = run({"extract", "late.pdf", "-o", "out", "--kind", "color"}).err;
  EXPECT_NE(late.find("longer than the limits allow; only its first"), std::string::npos) << late;
  const std::string none = run({"extract", "late.pdf", "-o", "out", "--limit", "image-seconds=0"}).err;
  EXPECT_NE(none.find("longer than the limits allow"), std::string::npos) << none;
  const ProgramRun unfound = run({"list", "late.pdf", "--limit", "search-seconds=0"});
  EXPECT_NE(unfound.err.find("longer than the limits allow: not all"), std::string::npos) << unfound.err;
}

TEST_F(Tool, JsonTellsEveryFact) {
  const Words facts = {"page",   "pages", "object",     "generation", "kind",    "image_mask",  "mask_of", "width",
                       "height", "bpc",   "colorspace", "components", "filters", "interpolate", "bytes",   "placements"};
  const auto listed = json_lines(run({"list", "--json", "good.pdf"}).out);
  ASSERT_EQ(listed.size(), 3u);
  for (const Json& line : listed) EXPECT_EQ(keys_of(line), facts);
  EXPECT_TRUE(listed[0]["pages"].size() == 2 && listed[0]["colorspace"] == "DeviceRGB" && listed[0]["bytes"] == 12) << listed[0];
  EXPECT_TRUE(listed[2]["kind"] == "stencil" && listed[2]["image_mask"] == true && listed[2]["page"] == 2) << listed[2];

  Words extract_facts = facts;
  extract_facts.insert(extract_facts.end(), {"file", "bitmap", "complete", "rows", "error"});
  const struct {
    const char* file;
    Json written;
    bool complete;
    int rows;
  } cases[] = {{"good.pdf", "0001-001-o3.png", true, 2}, {"short.pdf", "0001-001-o3.png", false, 1}, {"foreign.pdf", nullptr, false, 0}};
  for (const auto& c : cases) {
    const Json line = json_lines(run({"extract", "--json", c.file, "-o", "out"}).out).at(0);
    EXPECT_EQ(keys_of(line), extract_facts);
    EXPECT_TRUE(line["file"] == c.written && line["bitmap"].size() == (c.written.is_null() ? 0 : 2)) << line;
    EXPECT_TRUE(line["complete"] == c.complete && line["rows"] == c.rows && line["error"].is_null() == c.complete) << line;
  }
}

TEST_F(Tool, MasksBelongToTheirImageAndInlineImagesCount) {
  PdfBuilder pdf;
  const int mask = pdf.add_image(1, 2, gray, "\x40\xFF");
  const int masked = pdf.add_image(1, 2, gray + " /SMask " + PdfBuilder::ref(mask), "\x10\x20");
  pdf.add_page_with({masked}, "BI /W 1 /H 1 /BPC 8 /CS /G ID \x80 EI\n");
  write_file(path("masks.pdf"), pdf.finish());

  const auto lines = json_lines(run({"list", "--json", "masks.pdf"}).out);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_TRUE(lines[0]["kind"] == "image" && lines[0]["mask_of"].is_null()) << lines[0];
  EXPECT_TRUE(lines[1]["kind"] == "smask" && lines[1]["mask_of"] == masked) << lines[1];
  EXPECT_TRUE(lines[2]["kind"] == "inline" && lines[2]["object"] == 0) << lines[2];
  EXPECT_EQ(lines[0]["placements"].at(0)["ppi"][1], 2);

  ASSERT_EQ(run({"extract", "masks.pdf", "-o", "out"}).exit_code, 0);
  EXPECT_EQ(files_in("out"), (Words{"0001-001-o4.png", "0001-003-inline.png"}));
  const PngReader png(file_content(path("out/0001-001-o4.png")));
  EXPECT_EQ(png.rows, "\x10\x40\x20\xFF");
  EXPECT_EQ(std::pair(png.ppm_x, png.ppm_y), std::pair(39U, 79U));  // One and two pixels an inch.
  EXPECT_EQ(run({"extract", "masks.pdf", "-o", "out", "--kind", "mask"}).exit_code, 0);
  EXPECT_EQ(PngReader(file_content(path("out/0001-002-o3.png"))).rows, "\x40\xFF");
}

TEST_F(Tool, GalleryIsOnePageWhateverTheFileSays) {
  PdfBuilder pdf;
  const int wide = pdf.add_image(1000, 10, gray, std::string(std::size_t{10000}, '\x40'));
  const int hostile = pdf.add_image(2, 2, gray + " /Filter /A#22#3E#3C#2Fli#3E#3Cscript#3E#26#27#FF#01", "1234");
  pdf.add_page_with({wide, hostile});
  write_file(path("<b>&{{cards}}\".pdf"), pdf.finish());
  const std::size_t files = files_in("").size();
  EXPECT_EQ(run({"gallery", "<b>&{{cards}}\".pdf", "-o", "page.html"}).exit_code, 1);
  EXPECT_EQ(files_in("").size(), files + 1);  // No temporary file is left.

  const std::string page = file_content(path("page.html"));
  for (const char* text : {"<title>Images of &lt;b&gt;&amp;{{cards}}&quot;.pdf</title>", "<strong>Not decoded:</strong>",
                           "A&quot;&gt;&lt;/li&gt;&lt;script&gt;&amp;&#39;\xEF\xBF\xBD&#xFFFD;</dd>", "1 image could not be decoded",
                           "<dd>10,000 bytes</dd>", "width=\"320\" height=\"3\" loading=\"lazy\" decoding=\"async\""}) {
    EXPECT_NE(page.find(text), page.npos) << text;
  }
  // Nothing is loaded, and each part is there as often as the program wrote it.
  const struct {
    const char* part;
    int count;
  } parts[] = {{"://", 0}, {"url(", 0}, {"src=", 1}, {"src=\"data:image/png;base64,iVBOR", 1}, {"<script", 2}, {"<li", 2}, {"</li", 2}};
  for (const auto& [part, expected] : parts) {
    int count = 0;
    for (std::size_t at = 0; (at = page.find(part, at)) != page.npos; ++at) ++count;
    EXPECT_EQ(count, expected) << part;
  }
  EXPECT_EQ(run({"gallery", "-", "-o", "-"}, file_content(path("good.pdf"))).exit_code, 0);
  EXPECT_EQ(run({"gallery", "good.pdf", "-o", "-"}, "", "/dev/full").exit_code, 5);
}

TEST_F(Tool, SeveralFilesEndWithALineEach) {
  const ProgramRun ran = run({"extract", "--json", "short.pdf", "text.pdf", "good.pdf", "-o", "out"});
  EXPECT_EQ(ran.exit_code, 3);
  EXPECT_EQ(files_in("out"), (Words{"good/0001-001-o3.png", "good/0001-002-o4.png", "good/0002-001-o5.png", "short/0001-001-o3.png"}));
  const auto lines = json_lines(ran.out);
  ASSERT_EQ(lines.size(), 7u);
  const Words summary = {"pdf", "images", "failed", "error"};
  EXPECT_EQ(lines[0]["pdf"], path("short.pdf"));
  for (const std::size_t i : {1U, 2U, 6U}) EXPECT_EQ(keys_of(lines[i]), summary);
  EXPECT_TRUE(lines[2]["error"].is_string());
  EXPECT_EQ(lines[3]["file"], "good/0001-001-o3.png");
  EXPECT_TRUE(lines[6]["images"] == 3 && lines[6]["error"].is_null()) << lines[6];
}

TEST_F(Tool, TarHasTheFilesOfTheFolderAndTheIndexLast) {
  ASSERT_EQ(run({"extract", "good.pdf", "-o", "out"}).exit_code, 0);
  const ProgramRun ran = run({"extract", "-", "-o", "-"}, good_pdf());
  EXPECT_EQ(ran.exit_code, 0);
  auto members = read_tar(ran.out);
  ASSERT_EQ(members.size(), 4u);
  EXPECT_EQ(members.back().first, "index.jsonl");
  EXPECT_EQ(json_lines(members.back().second).size(), 3u);
  members.pop_back();
  for (const auto& [name, content] : members) { EXPECT_TRUE(content == file_content(path("out/" + name))) << name; }
}

TEST_F(Tool, BytesDoNotDependOnTheNumberOfThreads) {
  PdfBuilder pdf;
  std::vector<int> images;
  for (int i = 0; i < 40; ++i) {
    const int side = 1 + i * 37 % 60;
    const int count = i % 7 == 6 ? side * side / 2 : side * side;  // Every seventh ends early.
    images.push_back(pdf.add_image(side, side, gray, std::string(static_cast<std::size_t>(count), static_cast<char>(i))));
  }
  pdf.add_page_with(images);
  write_file(path("many.pdf"), pdf.finish());
  const ProgramRun one = run({"extract", "-j", "1", "many.pdf", "-o", "-"});
  EXPECT_EQ(one.exit_code, 1);
  for (const char* jobs : {"2", "7"}) {
    const ProgramRun several = run({"extract", "-j", jobs, "many.pdf", "-o", "-"});
    EXPECT_TRUE(several.exit_code == 1 && several.out == one.out) << jobs;
    EXPECT_EQ(several.err, one.err) << jobs;
  }
}

}  // namespace
