// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT

// Writes the PDF files that the tool is timed on, one a class of images: make_bench_set FOLDER
// [CLASS...]. A file that is there already stays. Most classes are ten images of ten megapixels.
// Flate data is zlib's at its default level, as in most files there are.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>
#include <zlib.h>

#include "tools/bench_set/scenes.h"
#include "tools/encoders/encoders.h"
#include "tools/encoders/fax_encoder.h"
#include "tools/encoders/jbig2_encoder.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/jpx_encoder.h"
#include "tools/encoders/pdf_builder.h"
#include "tools/encoders/profiles.h"

namespace {

struct Size {
  int width, height;
};

constexpr Size ten_megapixels = {4000, 2500};

// Of a picture that was smoothed, and of one as it comes from a camera, which Flate hardly makes
// any smaller.
constexpr float slight_grain = 0.7F, strong_grain = 2.5F;

/// Lines of marks, as a page of text has.
bool is_ink(int x, int y, int seed) {
  if (y % 48 >= 30 || x % 26 >= 20) return false;
  const auto mark = static_cast<std::uint32_t>(x / 26 * 31 + y / 48 * 17 + seed);
  const int stroke = x % 26 / 5 + y % 48 / 6 * 4;
  return (mark * 2654435761U >> (stroke % 20) & 3) != 0;
}

std::string samples(Size size, int components, int seed, int bytes = 1,
                    float grain = slight_grain) {
  return Scene{size.width, size.height, components, static_cast<unsigned>(seed), grain}.samples(
      bytes);
}

std::string zlib(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string data(size, '\0');
  const auto* in = reinterpret_cast<const Bytef*>(bytes.data());
  if (compress(reinterpret_cast<Bytef*>(data.data()), &size, in, bytes.size()) != Z_OK)
    std::abort();
  data.resize(size);
  return data;
}

encoders::FaxRows page_of_text(Size size, int seed) {
  encoders::FaxRows rows;
  for (int y = 0; y < size.height; ++y) {
    std::string& row = rows.emplace_back();
    for (int x = 0; x < size.width; ++x) row += is_ink(x, y, seed) ? '1' : '0';
  }
  return rows;
}

std::string entries(Size size, const std::string& space, int bits, const std::string& rest) {
  return "/Type /XObject /Subtype /Image /Width " + std::to_string(size.width) + " /Height " +
         std::to_string(size.height) + " /BitsPerComponent " + std::to_string(bits) +
         (space.empty() ? "" : " /ColorSpace " + space) + " " + rest;
}

void add_page_of(PdfBuilder& pdf, const std::vector<int>& images) {
  std::string names, content;
  for (const int image : images) {
    const std::string name = "/I" + std::to_string(image) + " ";
    names += name + PdfBuilder::ref(image) + " ";
    content += "q 600 0 0 800 0 0 cm " + name + "Do Q\n";
  }
  pdf.add_page("/XObject << " + names + ">>", content);
}

/// Ten pages of an image each, that `add` makes of its number.
std::string ten_images(PdfBuilder& pdf, const std::function<int(int seed)>& add) {
  for (int seed = 0; seed < 10; ++seed) add_page_of(pdf, {add(seed)});
  return pdf.finish();
}

/// `predictor` is 10 and the type of a PNG filter, 2 for the one of TIFF, 1 for none.
std::string flate(const std::string& space, int components, int bits = 8, int predictor = 1,
                  float grain = slight_grain) {
  PdfBuilder pdf;
  return ten_images(pdf, [&](int seed) {
    const Size size = ten_megapixels;
    std::string rows = samples(size, components, seed, bits / 8, grain);
    std::string rest = "/Filter /FlateDecode";
    if (predictor != 1) {
      const int step = components * bits / 8;
      rows = predictor == 2 ? encoders::tiff_predict(rows, size.width * step, components, bits)
                            : encoders::png_predict(rows, size.width * step, step, predictor - 10);
      rest += " /DecodeParms << /Predictor " + std::to_string(predictor) + " /Colors " +
              std::to_string(components) + " /BitsPerComponent " + std::to_string(bits) +
              " /Columns " + std::to_string(size.width) + " >>";
    }
    return pdf.add_stream(entries(size, space, bits, rest), zlib(rows));
  });
}

std::string one_large() {
  PdfBuilder pdf;
  const Size size = {12000, 9000};
  add_page_of(pdf, {pdf.add_stream(entries(size, "/DeviceRGB", 8, "/Filter /FlateDecode"),
                                   zlib(samples(size, 3, 0)))});
  return pdf.finish();
}

std::string soft_masked() {
  PdfBuilder pdf;
  return ten_images(pdf, [&](int seed) {
    const int mask =
        pdf.add_stream(entries(ten_megapixels, "/DeviceGray", 8, "/Filter /FlateDecode"),
                       zlib(samples(ten_megapixels, 1, seed + 5)));
    return pdf.add_stream(entries(ten_megapixels, "/DeviceRGB", 8,
                                  "/Filter /FlateDecode /SMask " + PdfBuilder::ref(mask)),
                          zlib(samples(ten_megapixels, 3, seed)));
  });
}

/// A matrix profile of wide primaries and a plain gamma, which is not sRGB's curve.
std::string wide_profile() {
  return encoders::rgb_profile(2.2, {{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}});
}

std::string icc_rgb() {
  PdfBuilder pdf;
  const int profile = pdf.add_stream("/N 3", wide_profile());
  return ten_images(pdf, [&](int seed) {
    return pdf.add_stream(entries(ten_megapixels, "[/ICCBased " + PdfBuilder::ref(profile) + "]", 8,
                                  "/Filter /FlateDecode"),
                          zlib(samples(ten_megapixels, 3, seed)));
  });
}

std::string indexed_space() {
  std::string palette;
  for (int i = 0; i < 256; ++i) {
    char entry[8];
    std::snprintf(entry, sizeof entry, "%02x%02x%02x", i, 255 - i, i * 7 & 255);
    palette += entry;
  }
  return "[/Indexed /DeviceRGB 255 <" + palette + ">]";
}

enum class Bilevel { flate, fax, jbig2 };

std::string bilevel(Bilevel how) {
  PdfBuilder pdf;
  return ten_images(pdf, [&](int seed) {
    const Size size = ten_megapixels;
    const encoders::FaxRows rows = page_of_text(size, seed);
    encoders::FaxOptions group_4;
    group_4.k = -1;
    const auto add = [&](const std::string& rest, const std::string& data) {
      return pdf.add_stream(entries(size, "/DeviceGray", 1, rest), data);
    };
    switch (how) {
      case Bilevel::flate:
        return add("/Filter /FlateDecode", zlib(encoders::pack_fax_rows(rows, false)));
      case Bilevel::fax:
        return add("/Filter /CCITTFaxDecode /DecodeParms << /K -1 /Columns " +
                       std::to_string(size.width) + " /Rows " + std::to_string(size.height) + " >>",
                   encoders::encode_fax(rows, group_4));
      case Bilevel::jbig2:
        break;
    }
    return add("/Filter /JBIG2Decode", encoders::jbig2_page(rows[0].size(), rows.size()) +
                                           encoders::jbig2_generic(2, rows, 0));
  });
}

std::string dct(J_COLOR_SPACE stored, const std::string& space, const std::string& rest = "") {
  PdfBuilder pdf;
  encoders::Jpeg jpeg;
  jpeg.stored = stored;
  jpeg.adobe = stored == JCS_YCCK ? 2 : -1;
  jpeg.width = ten_megapixels.width;
  jpeg.height = ten_megapixels.height;
  jpeg.quality = 85;
  jpeg.subsampled = true;
  const int components = stored == JCS_YCCK ? 4 : 3;
  return ten_images(pdf, [&](int seed) {
    const std::string levels = samples(ten_megapixels, components, seed);
    const auto level = [&](int x, int y, int c) {
      return int{static_cast<unsigned char>(
          levels[static_cast<std::size_t>((y * jpeg.width + x) * components + c)])};
    };
    return pdf.add_stream(entries(ten_megapixels, space, 8, "/Filter /DCTDecode " + rest),
                          encoders::encode_jpeg(jpeg, level));
  });
}

/// Twenty megapixels, in five images.
std::string jpx() {
  PdfBuilder pdf;
  encoders::jpx::Picture picture;
  picture.components.resize(3);
  picture.width = picture.height = 2000;
  picture.tile = 1000;
  for (int seed = 0; seed < 5; ++seed) {
    const std::string levels = samples({2000, 2000}, 3, seed);
    const std::string data = encoders::encode_jpx(picture, [&](int c, int x, int y) {
      const char level = levels[static_cast<std::size_t>((y * 2000 + x) * 3 + c)];
      return static_cast<unsigned char>(level) & 0xf8;
    });
    add_page_of(
        pdf, {pdf.add_stream(entries({2000, 2000}, "/DeviceRGB", 8, "/Filter /JPXDecode"), data)});
  }
  return pdf.finish();
}

/// 5,000 images of 32 x 32, on fifty pages.
std::string small_images() {
  PdfBuilder pdf;
  for (int page = 0; page < 50; ++page) {
    std::vector<int> images;
    for (int i = 0; i < 100; ++i) {
      images.push_back(pdf.add_stream(entries({32, 32}, "/DeviceRGB", 8, "/Filter /FlateDecode"),
                                      zlib(samples({32, 32}, 3, page * 100 + i))));
    }
    add_page_of(pdf, images);
  }
  return pdf.finish();
}

struct Class {
  const char* name;
  std::function<std::string()> make;
};

const char* const separation =
    "[/Separation /Orange /DeviceCMYK << /FunctionType 2 /Domain [0 1] "
    "/C0 [0 0 0 0] /C1 [0 0.5 1 0] /N 1 >>]";

const Class classes[] = {
    {"rgb", [] { return flate("/DeviceRGB", 3); }},
    {"rgb-png", [] { return flate("/DeviceRGB", 3, 8, 14); }},
    {"rgb-tiff", [] { return flate("/DeviceRGB", 3, 8, 2); }},
    {"rgb-grain", [] { return flate("/DeviceRGB", 3, 8, 1, strong_grain); }},
    {"rgb-large", one_large},
    {"gray", [] { return flate("/DeviceGray", 1); }},
    {"indexed", [] { return flate(indexed_space(), 1); }},
    {"cmyk", [] { return flate("/DeviceCMYK", 4); }},
    {"rgb16", [] { return flate("/DeviceRGB", 3, 16); }},
    {"softmask", soft_masked},
    {"bilevel", [] { return bilevel(Bilevel::flate); }},
    {"ccitt", [] { return bilevel(Bilevel::fax); }},
    {"jbig2", [] { return bilevel(Bilevel::jbig2); }},
    {"icc-rgb", icc_rgb},
    {"separation", [] { return flate(separation, 1); }},
    {"dct-rgb", [] { return dct(JCS_YCbCr, "/DeviceRGB"); }},
    {"dct-rgb-decode", [] { return dct(JCS_YCbCr, "/DeviceRGB", "/Decode [1 0 1 0 1 0]"); }},
    {"dct-cmyk", [] { return dct(JCS_YCCK, "/DeviceCMYK"); }},
    {"dct-cmyk-decode", [] { return dct(JCS_YCCK, "/DeviceCMYK", "/Decode [1 0 1 0 1 0 1 0]"); }},
    {"jpx", jpx},
    {"small", small_images},
};

/// Written under another name first, so that a file that is there is whole.
bool write(const std::filesystem::path& path, const std::string& bytes) {
  std::filesystem::path part = path;
  part += ".part";
  {
    std::ofstream out(part, std::ios::binary);
    if (!(out << bytes).flush()) return false;
  }
  std::error_code error;
  std::filesystem::rename(part, path, error);
  return !error;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: make_bench_set FOLDER [CLASS...]\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const std::vector<std::string> wanted(argv + 2, argv + argc);
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  for (const Class& c : classes) {
    if (!wanted.empty() && std::find(wanted.begin(), wanted.end(), c.name) == wanted.end())
      continue;
    const std::filesystem::path path = folder / (std::string(c.name) + ".pdf");
    if (std::filesystem::exists(path, error)) continue;
    std::cerr << "making " << path.string() << "\n";
    if (!write(path, c.make())) {
      std::cerr << "cannot write " << path.string() << "\n";
      return 1;
    }
  }
  return 0;
}
