// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/limits/bombs.h"

#include <cstdint>

#include "tools/encoders/encoders.h"
#include "tools/encoders/fax_encoder.h"
#include "tools/encoders/jbig2_encoder.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/jpx_encoder.h"
#include "tools/encoders/pdf_builder.h"

namespace {

using encoders::deflate;
using encoders::jbig2_segment;
using encoders::jpx::big_endian;

const std::string gray = "/ColorSpace /DeviceGray /BitsPerComponent 8 ";
const std::string bits = "/ColorSpace /DeviceGray /BitsPerComponent 1 ";

std::string file_with(int width, int height, const std::string& entries, const std::string& data) {
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(width, height, entries, data)});
  return pdf.finish();
}

std::string zeros(std::size_t megabytes) { return std::string(megabytes << 20, '\0'); }

// So many megabytes of one character, deflated so many times.
std::string nested_zeros(std::size_t megabytes, int levels, char fill = '\0') {
  std::string data(megabytes << 20, fill);
  for (int i = 0; i < levels; ++i) data = deflate(data);
  return data;
}

std::string jpeg(int width, int height, bool progressive, int declared_width, int declared_height) {
  std::string data = encoders::encode_jpeg({JCS_GRAYSCALE, -1, width, height, progressive},
                                           [](int x, int, int) { return x / 8 & 255; });
  const std::size_t frame = data.find(progressive ? "\xFF\xC2" : "\xFF\xC0");
  return data.replace(frame + 5, 4,
                      big_endian(static_cast<std::uint32_t>(declared_height), 2) +
                          big_endian(static_cast<std::uint32_t>(declared_width), 2));
}

// The last scan of a progressive JPEG, a thousand times.
std::string many_scans(int side) {
  std::string data = jpeg(side, side, true, side, side);
  const std::string scan =
      data.substr(data.rfind("\xFF\xDA"), data.size() - 2 - data.rfind("\xFF\xDA"));
  data.resize(data.size() - 2);
  for (int i = 0; i < 1000; ++i) data += scan;
  return data + "\xFF\xD9";
}

std::string jpx(std::uint32_t width, std::uint32_t height, std::uint32_t tile) {
  std::string data = encoders::encode_jpx({{{}}}, [](int, int x, int) { return x; });
  data.replace(8, 8, big_endian(width, 4) + big_endian(height, 4));
  return data.replace(24, 8, big_endian(tile, 4) + big_endian(tile, 4));
}

// A blank picture of 65,535 layers in precincts of 64 x 64.
std::string layered_jpx(std::uint32_t side) {
  std::string data = jpx(side, side, side);
  const std::size_t style = data.find("\xFF\x52");
  const auto levels = static_cast<unsigned char>(data[style + 9]);
  data[style + 4] = 1;
  data[style + 3] = static_cast<char>(12 + levels + 1);
  data[style + 6] = data[style + 7] = '\xFF';
  return data.insert(style + 14, std::string(levels + 1U, '\x66'));
}

// A blank picture whose one tile is divided into precincts of 2 x 2, or code blocks of 4 x 4.
std::string divided_jpx(std::uint32_t side, bool precincts) {
  std::string data = jpx(side, side, side);
  const std::size_t style = data.find("\xFF\x52");
  const auto levels = static_cast<unsigned char>(data[style + 9]);
  if (precincts) {
    data[style + 4] = 1;
    data[style + 3] = static_cast<char>(12 + levels + 1);
    data.insert(style + 14, std::string(levels + 1U, '\x11'));
  } else {
    data[style + 10] = data[style + 11] = 0;
  }
  return data;
}

// A halftone of patterns that lie one over the other.
std::string halftone(std::uint32_t side) {
  const auto square = [](std::uint32_t length) {
    return big_endian(length, 4) + big_endian(length, 4);
  };
  const std::string patterns = "\1\xFF\xFF" + big_endian(1, 4) + std::string(64, '\xFF');
  const std::string cells = square(2000) + square(0) + big_endian(0x01000100, 4);
  return encoders::jbig2_page(side, side) + jbig2_segment(2, 16, 1, patterns) +
         jbig2_segment(
             3, 22, 1,
             encoders::jbig2_region(side, side, 0) + '\1' + cells + std::string(600, '\xFF'),
             "\2") +
         jbig2_segment(4, 49, 1, "");
}

// Pattern dictionaries of 1,000 patterns each, side by side in bitmaps of a few bytes of data.
std::string many_patterns() {
  std::string page = encoders::jbig2_page(64, 64);
  for (std::uint32_t i = 2; i < 100; ++i) {
    const std::string patterns = "\1\xFF\xFF" + big_endian(1000, 4) + std::string(64, '\xFF');
    page += jbig2_segment(i, 16, 1, patterns);
  }
  return page;
}

// A page of unknown height that a stripe makes very high.
std::string high_stripe() {
  const std::string columns = big_endian(8192, 4), unknown = big_endian(0xFFFFFFFF, 4);
  const std::string striped = std::string(9, '\0') + "\xFF\xFF";
  return jbig2_segment(1, 48, 1, columns + unknown + striped) +
         jbig2_segment(2, 38, 1,
                       encoders::jbig2_region(8192, 999, 0) + '\1' + std::string(999, '\xFF')) +
         jbig2_segment(3, 50, 1, big_endian(0x3FFFFFFF, 4)) +
         jbig2_segment(4, 38, 1,
                       encoders::jbig2_region(64, 64, 1 << 20) + '\1' + std::string(99, '\0'));
}

// A page with one region of MMR data on it.
std::string jbig2(std::uint32_t width, std::uint32_t height, const std::string& fax) {
  std::string page = encoders::jbig2_page(width, height);
  if (!fax.empty()) {
    page += jbig2_segment(2, 38, 1, encoders::jbig2_region(width, height, 0) + '\1' + fax);
  }
  return page + jbig2_segment(3, 49, 1, "");
}

// A page of such regions, one over the other; `data` is what follows the region's size.
std::string jbig2_regions(int type, std::uint32_t side, int count, const std::string& data) {
  std::string page = encoders::jbig2_page(side, side);
  for (int i = 0; i < count; ++i) {
    page += jbig2_segment(2, type, 1, encoders::jbig2_region(side, side, 0) + data);
  }
  return page;
}

// T.6 data: `repeats` times a block of rows, which ends with so many white rows, a bit each, that
// the next begins with a byte.
std::string fax(int width, int height, int repeats, bool dense) {
  encoders::FaxRows rows(static_cast<std::size_t>(height));
  std::uint32_t noise = 1;
  for (auto& row : rows) {
    while (row.size() < static_cast<std::size_t>(width)) {
      noise = noise * 1664525 + 1013904223;
      const std::size_t run = dense ? 1 + (noise >> 30) : 20 + (noise >> 24);
      row.append(run, row.empty() || row.back() == '1' ? '0' : '1');
    }
    row.resize(static_cast<std::size_t>(width));
  }
  rows.resize(rows.size() + 10, std::string(static_cast<std::size_t>(width), '0'));
  std::vector<std::size_t> begins;
  const std::string coded = encoders::encode_fax(rows, {-1}, &begins);
  std::size_t used = static_cast<std::size_t>(height) + 1;  // Below the first white row.
  while (begins[used] % 8 != 0) ++used;
  std::string block = coded.substr(0, begins[used] / 8), data;
  for (int i = 0; i < repeats; ++i) data += block;
  return data;
}

std::string fax_file(int width, int height, const std::string& data) {
  return file_with(width, height,
                   bits + "/Filter /CCITTFaxDecode /DecodeParms << /K -1 /Columns " +
                       std::to_string(width) + " /Rows " + std::to_string(height) + " >>",
                   data);
}

// Objects of every kind that hold themselves. 3: image, 4: mask, 5: colour space, 6: function,
// 7: form, 8: filters.
std::string cycles() {
  PdfBuilder pdf;
  pdf.add_image(8, 8, "/SMask 4 0 R /ColorSpace 5 0 R /BitsPerComponent 8", std::string(64, 'x'));
  pdf.add_image(8, 8, gray + "/SMask 3 0 R /Mask 4 0 R", std::string(64, 'x'));
  pdf.add("[/Separation /Ink 5 0 R 6 0 R]");
  pdf.add(
      "<< /FunctionType 3 /Domain [0 1] /Functions [6 0 R 6 0 R] /Bounds [0.5] /Encode [0 1 0 1] "
      ">>");
  pdf.add_form("/Resources << /XObject << /F 7 0 R /I 3 0 R /J 9 0 R >> >>", "/F Do /I Do /J Do");
  pdf.add("[8 0 R 8 0 R /FlateDecode]");
  pdf.add_image(8, 8, gray + "/Filter 8 0 R", "x");
  pdf.add_page("/XObject << /F 7 0 R >>", "/F Do /F Do");
  std::string file = pdf.finish();
  return file.replace(file.find("/Kids [") + 7, 2, "2 ");
}

std::string repeat(const std::string& what, int times) {
  std::string text;
  text.reserve(what.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) text += what;
  return text;
}

std::string with_content(const std::string& what, int times, const std::string& resources = "") {
  PdfBuilder pdf;
  const int stream = pdf.add_stream("/Filter /FlateDecode", deflate(repeat(what, times)));
  pdf.add_page_of(resources, stream);
  return pdf.finish();
}

// Forms of a page, each with a stream of its own under the same resources, which name them all.
std::string forms_of_forms(int forms) {
  PdfBuilder pdf;
  const int first = 4;
  std::string names;
  for (int i = 0; i < forms; ++i) {
    names += "/F" + std::to_string(i) + " " + PdfBuilder::ref(first + i) + " ";
  }
  const int all = pdf.add("<< " + names + ">>");
  for (int i = 0; i < forms; ++i) {
    pdf.add_form("/Resources << /XObject " + PdfBuilder::ref(all) + " >>", "");
  }
  pdf.add_page("/XObject " + PdfBuilder::ref(all), "/F0 Do");
  return pdf.finish();
}

// A thousand pages with one and the same content.
std::string same_pages(const std::string& contents, const std::string& data) {
  PdfBuilder pdf;
  pdf.add_stream("/Filter /FlateDecode", deflate(data));
  const int streams = pdf.add(contents);
  for (int i = 0; i < 1000; ++i) pdf.add_page_of("", streams);
  return pdf.finish();
}

// A page tree in which each of 40 nodes holds the one below it twice.
std::string doubling_pages() {
  PdfBuilder pdf;
  const int page = pdf.add_page("", "");
  int below = page;
  for (int i = 0; i < 40; ++i) {
    below = pdf.add("<< /Kids [" + PdfBuilder::ref(below) + " " + PdfBuilder::ref(below) + "] >>");
  }
  std::string file = pdf.finish();
  return file.replace(file.find("/Pages 2 0 R"), 12, "/Pages " + std::to_string(below) + " 0 R");
}

const std::string long_name = "/" + std::string(50'000, 'N');

// Images that name their filter by one and the same vast name.
std::string long_names(int images) {
  PdfBuilder pdf;
  const int name = pdf.add(long_name);
  std::vector<int> all;
  for (int i = 0; i < images; ++i) {
    all.push_back(pdf.add_image(1, 1, gray + "/Filter " + PdfBuilder::ref(name), "x"));
  }
  pdf.add_page_with(all);
  return pdf.finish();
}

// So many sine functions, one after the other, for the colour of a pixel.
int add_dear_function(PdfBuilder& pdf, int inputs, int sines) {
  std::string domain, program = "{ ";
  for (int i = 0; i < inputs; ++i) domain += "0 1 ";
  for (int i = 1; i < inputs; ++i) program += "pop ";
  return pdf.add_stream(
      "/FunctionType 4 /Filter /FlateDecode /Range [0 1] /Domain [" + domain + "]",
      deflate(program + repeat("sin ", sines) + "}"));
}

std::string dear_colours(int width, int height) {
  PdfBuilder pdf;
  std::string colours;
  const auto samples = 2 * static_cast<unsigned>(width) * static_cast<unsigned>(height);
  for (unsigned i = 0; i < samples; ++i) colours += static_cast<char>(i * i >> 8);
  const std::string space = "/ColorSpace [/DeviceN [/A /B] /DeviceGray " +
                            PdfBuilder::ref(add_dear_function(pdf, 2, 10'000)) + "]";
  pdf.add_page_with({pdf.add_image(
      width, height, space + " /BitsPerComponent 8 /Filter /FlateDecode", deflate(colours))});
  return pdf.finish();
}

// Small images whose colours take longer to be made ready than to be converted.
std::string many_dear_spaces(int images) {
  PdfBuilder pdf;
  const std::string space = "/BitsPerComponent 8 /ColorSpace [/Separation /A /DeviceGray " +
                            PdfBuilder::ref(add_dear_function(pdf, 1, 16'000)) + "]";
  std::vector<int> all;
  for (int i = 0; i < images; ++i) all.push_back(pdf.add_image(1, 1, space, "x"));
  pdf.add_page_with(all);
  return pdf.finish();
}

// A function that is made of others, each of which is the same vast table.
std::string stitched_tables() {
  PdfBuilder pdf;
  const int table = pdf.add_stream(
      "/FunctionType 0 /Domain [0 1] /Range [0 1] /Size [4000000] /BitsPerSample 8 /Filter "
      "/FlateDecode",
      deflate(std::string(4'000'000, 'x')));
  std::string bounds;
  for (int i = 1; i < 200; ++i) bounds += std::to_string(i * 0.005) + " ";
  const int function = pdf.add("<< /FunctionType 3 /Domain [0 1] /Functions [" +
                               repeat(PdfBuilder::ref(table) + " ", 200) + "] /Bounds [" + bounds +
                               "] /Encode [" + repeat("0 1 ", 200) + "] >>");
  const std::string space =
      "/ColorSpace [/Separation /A /DeviceGray " + PdfBuilder::ref(function) + "]";
  pdf.add_page_with({pdf.add_image(1, 1, space + " /BitsPerComponent 8", "x")});
  return pdf.finish();
}

// A page tree in which each of 30 nodes stands twice in the one above it.
std::string wide_tree(const std::string& what) {
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(8, 8)});
  int below = pdf.add_form("", "q Q");
  for (int i = 0; i < 30; ++i) {
    std::string resources = "/Resources << /XObject <<";
    for (const char* name : {" /A ", " /B "}) resources.append(name).append(PdfBuilder::ref(below));
    below = pdf.add_form(resources.append(" >> >>"), what);
  }
  pdf.add_page("/XObject << /A " + PdfBuilder::ref(below) + " >>", "/A Do");
  return pdf.finish();
}

// All of the file's objects in one compressed stream, after so many megabytes of blanks.
std::string object_stream(std::size_t megabytes) {
  std::string file = "%PDF-1.7\n";
  const std::string objects =
      "<< /Type /Catalog /Pages 2 0 R >> << /Type /Pages /Count 0 /Kids [] >>";
  const std::string data = deflate("1 0 2 34 " + objects + std::string(megabytes << 20, ' '));
  const std::size_t at = file.size();
  file += "3 0 obj\n<< /Type /ObjStm /N 2 /First 9 /Filter /FlateDecode /Length " +
          std::to_string(data.size()) + " >>\nstream\n" + data + "\nendstream\nendobj\n";
  const std::size_t table = file.size();
  const auto entry = [](int type, std::size_t a, int b) {
    return std::string(1, static_cast<char>(type)) + big_endian(static_cast<std::uint32_t>(a), 4) +
           static_cast<char>(b);
  };
  const std::string entries =
      entry(0, 0, 0) + entry(2, 3, 0) + entry(2, 3, 1) + entry(1, at, 0) + entry(1, table, 0);
  return file + "4 0 obj\n<< /Type /XRef /Size 5 /W [1 4 1] /Root 1 0 R /Length " +
         std::to_string(entries.size()) + " >>\nstream\n" + entries +
         "\nendstream\nendobj\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
}

std::string flates(int n, const std::string& last = "") {
  std::string names;
  for (int i = 0; i < n; ++i) names += "/FlateDecode ";
  return "/Filter [" + names + last + "] ";
}

}  // namespace

std::vector<LimitCase> bombs() {
  const std::string dct = gray + "/Filter /DCTDecode", jp2 = gray + "/Filter /JPXDecode",
                    jb2 = bits + "/Filter /JBIG2Decode";
  const std::string expands = "more than the limits allow",
                    search = "search for images takes longer than the limits allow";
  return {
      {"dictionary: too many pixels", 1, "--max-pixels",
       [] { return file_with(40000, 40000, gray, "x"); }},
      {"dictionary: a very long row", 1, "limit of 16777216",
       [] { return file_with(1 << 30, 1, gray, "x"); }},
      {"dictionary: one row arrives", 1, "ends early",
       [] { return file_with(32000, 32000, gray, std::string(32000, 'x')); }},
      {"dictionary: one row of a stencil", 1, "ends early",
       [] {
         return file_with(32000, 32000, "/ImageMask true /BitsPerComponent 1",
                          std::string(4000, 'x'));
       }},
      {"dictionary: one row of a gray bitmap",
       1,
       "bitmap-bytes",
       [] { return file_with(32000, 32000, gray, std::string(32000, 'x')); },
       {"--kind", "gray"}},
      {"mask: one row arrives", 1, "ends early",
       [] {
         PdfBuilder pdf;
         const int mask = pdf.add_image(32000, 32000, gray, std::string(32000, 'x'));
         pdf.add_page_with({pdf.add_image(8, 8, gray + "/SMask " + PdfBuilder::ref(mask), "x")});
         return pdf.finish();
       }},
      {"DCT: declared size", 1, "",
       [=] { return file_with(65500, 16000, dct, jpeg(64, 64, false, 65500, 16000)); }},
      {"DCT: declared size, progressive", 1, "more memory than the limits",
       [=] { return file_with(22000, 22000, dct, jpeg(64, 64, true, 22000, 22000)); }},
      {"DCT: 1,000 scans", 1, "more scans",
       [=] { return file_with(512, 512, dct, many_scans(512)); }},
      {"DCT: 1,000 scans of a large image", 1, "more scans",
       [=] { return file_with(4000, 4000, dct, many_scans(4000)); }},
      {"JPX: declared size", 1, "limits",
       [=] { return file_with(30000, 30000, jp2, jpx(30000, 30000, 30000)); }},
      {"JPX: vast size", 1, "limits",
       [=] { return file_with(8, 8, jp2, jpx(0x7FFFFFFF, 0x7FFFFFFF, 1000)); }},
      {"JPX: tiles", 1, "more tiles than",
       [=] { return file_with(30000, 30000, jp2, jpx(30000, 30000, 120)); }},
      {"JPX: precincts", 1, "divided more finely than the limits",
       [=] { return file_with(4000, 4000, jp2, divided_jpx(4000, true)); }},
      {"JPX: layers", 1, "divided more finely than the limits",
       [=] { return file_with(2400, 2400, jp2, layered_jpx(2400)); }},
      {"JPX: code blocks", 1, "divided more finely than the limits",
       [=] { return file_with(4000, 4000, jp2, divided_jpx(4000, false)); }},
      {"JBIG2: declared size", 0, "",
       [=] { return file_with(32000, 32000, jb2, jbig2(32000, 32000, "")); }},
      {"JBIG2: vast size", 1, "limits",
       [=] { return file_with(8, 8, jb2, jbig2(0x7FFFFFFF, 0x7FFFFFFF, "")); }},
      {"JBIG2: four billion symbols", 1, "more regions than the limits",
       [=] {
         const std::string symbols = std::string(2, '\0') + std::string(99, '\xFF');
         return file_with(999, 999, jb2, jbig2_regions(6, 999, 1, symbols));
       }},
      {"JBIG2: a page of regions", 1, "limits",
       [=] {
         const std::string blank("\6\2\xFF\0\0", 5);
         return file_with(999, 999, jb2, jbig2_regions(38, 999, 1000, blank));
       }},
      {"JBIG2: a halftone of patterns", 1, "more regions than the limits",
       [=] { return file_with(8000, 8000, jb2, halftone(8000)); }},
      {"JBIG2: dictionaries of patterns", 1, "more memory than the limits",
       [=] { return file_with(64, 64, jb2, many_patterns()); }},
      {"JBIG2: a high stripe", 1, "more memory than the limits",
       [=] { return file_with(8192, 100, jb2, high_stripe()); }},
      {"Flate: two levels", 1, expands,
       [=] { return file_with(32000, 32000, gray + flates(2), nested_zeros(300, 2)); }},
      {"Flate: two levels of blanks", 1, expands,
       [=] {
         return file_with(8, 8, gray + flates(2, "/ASCIIHexDecode"), nested_zeros(300, 2, ' '));
       }},
      {"Flate, RunLength", 1, expands,
       [=] {
         return file_with(32000, 32000, gray + flates(1, "/RunLengthDecode"),
                          deflate(encoders::encode_run_length(zeros(128))));
       }},
      {"RunLength: four levels", 1, "ends early",
       [=] {
         std::string data = encoders::encode_run_length(zeros(128));
         for (int i = 0; i < 3; ++i) data = encoders::encode_run_length(data);
         return file_with(
             32000, 32000,
             gray + "/Filter [/RunLengthDecode /RunLengthDecode /RunLengthDecode /RunLengthDecode]",
             data);
       }},
      {"17 filters", 1, "more filters than the limits",
       [=] { return file_with(8, 8, gray + flates(17), "x"); }},
      {"Flate, CCITT: fill bits", 1, "",
       [=] { return file_with(8, 8, bits + flates(2, "/CCITTFaxDecode"), nested_zeros(300, 2)); }},
      {"Flate, CCITT: rows", 1, "more rows than the limits",
       [=] {
         return file_with(1, 1 << 29,
                          bits + flates(2, "/CCITTFaxDecode") +
                              "/DecodeParms [null null << /K -1 /Columns 1 >>]",
                          nested_zeros(64, 2, '\xFF'));
       }},
      {"Flate, DCT: nothing but junk", 1, "",
       [=] { return file_with(8, 8, gray + flates(2, "/DCTDecode"), nested_zeros(300, 2)); }},
      {"content: operators", 0, "", [] { return with_content("q Q ", 16 << 20); }},
      {"content: inline images",
       1,
       "",
       [] { return with_content("BI /W 1 /H 1 ID x EI ", 1 << 20); },
       {"--limit", "images=1000"}},
      {"content: blanks that filters leave out", by_speed, search,
       [] {
         PdfBuilder pdf;
         pdf.add_stream(flates(2, "/ASCIIHexDecode"), nested_zeros(64, 2, ' '));
         pdf.add_page_of("", pdf.add("[" + repeat("3 0 R ", 1000) + "]"));
         return pdf.finish();
       }},
      {"content: images of many pages", by_speed, search,
       [] { return same_pages("[3 0 R]", repeat("BI /W 1 /H 1 ID x EI ", 20'000)); }},
      {"content: a font without a number", 0, "",
       [] { return with_content("/F 1 Tf ", 1 << 21, "/Font << /F << /Subtype /Type3 >> >>"); }},
      {"inline images: an EI that is none", by_speed, search,
       [] { return with_content("BI /W 1 ID x EI \1\n", 800'000); }},
      {"inline images: a vast default space", 1, "",
       [] {
         return with_content("BI /W 1 /H 1 /CS /G ID x EI ", 5'000,
                             "/ColorSpace << /DefaultGray [" + repeat("/A ", 20'000) + "] >>");
       }},
      {"inline images: blanks behind filters", by_speed, search,
       [] {
         return with_content(
             "BI /W 8192 /H 8192 /BPC 8 /F [/Fl /Fl] ID " + nested_zeros(64, 2) + "xx\nEI\n", 200);
       }},
      {"forms: all under the resources of all", by_speed, search,
       [] { return forms_of_forms(1500); }},
      {"pages: 2 to the power of 40", 0, "page tree is larger", doubling_pages},
      {"names of 50,000 bytes", 1, "filter NNN", [] { return long_names(5000); }},
      {"colours: a dear row", 1, "a row take more work than the limits",
       [] { return dear_colours(1 << 18, 1); }},
      {"colours: dear pixels",
       1,
       "longer than the limits",
       [] { return dear_colours(256, 1024); },
       {"--kind", "color"}},
      {"colours: a vast table, often", 1, "Separation cannot be used", stitched_tables},
      {"colours: dear spaces of many images", 1, "images before it took longer",
       [] { return many_dear_spaces(60); }},
      {"cycles of every kind", 1, "", cycles},
      {"forms: 2 to the power of 30", 0, "", [] { return wide_tree("/A Do /B Do"); }},
      {"arrays in arrays", 0, "",
       [] {
         return file_with(8, 8, "/ColorSpace " + std::string(100000, '[') + " /BitsPerComponent 8",
                          "x");
       }},
      {"object stream beyond --max-memory",
       3,
       "--max-memory",
       [] { return object_stream(200); },
       {"--max-memory", "100000000", "-j", "1"}},
  };
}

std::vector<LimitCase> large_files() {
  return {
      {"fax of 26 MB", 0, "", [] { return fax_file(10000, 12000, fax(10000, 800, 15, true)); }},
      {"fax of 24,688 x 14,400", 0, "",
       [] { return fax_file(24688, 14400, fax(24688, 144, 100, false)); }},
      {"JPX of a blank page", 0, "",
       [] {
         return file_with(
             2480, 3508, "/ColorSpace /DeviceRGB /Filter /JPXDecode",
             encoders::encode_jpx({{{}, {}, {}}, 2480, 3508}, [](int, int, int) { return 255; }));
       }},
      {"JBIG2 of 400 megapixels", 0, "",
       [] {
         return file_with(20000, 20000, bits + "/Filter /JBIG2Decode",
                          jbig2(20000, 20000, fax(20000, 200, 100, false)));
       }},
  };
}
