// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Every colour space through every codec, with and without an inverted Decode: each pixel of the
// picture against what the formulas of the standards give.
#include <functional>
#include <map>

#include "pdf/cs/device_cmyk.h"
#include "pdf/doc/picture.h"
#include "tests/pdf/cs/parsed/cie_reference.h"
#include "tests/pdf/cs/parsed/profiles.h"
#include "tests/pdf/doc/documents.h"
#include "tools/encoders/encoders.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/jpx_encoder.h"
#include "tools/encoders/pdf_builder.h"

namespace {

using namespace testing_support;
using Values = std::vector<double>;

struct Space {
  std::string name, entry;
  Values range;                           ///< Low and high of each component.
  std::function<Rgb(const Values&)> rgb;  ///< Of component values.
};

int byte_of(double v) { return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255)); }
Rgb gray_rgb(const Values& v) { return {byte_of(v[0]), byte_of(v[0]), byte_of(v[0])}; }
Rgb device_rgb(const Values& v) { return {byte_of(v[0]), byte_of(v[1]), byte_of(v[2])}; }
Rgb cmyk_rgb(const Values& v) {
  CPDFCSDeviceCMYK space;
  return rgb_of(space, {byte_of(v[0]), byte_of(v[1]), byte_of(v[2]), byte_of(v[3])});
}
Rgb lab_rgb(const Values& v) { return srgb_of_lab(v[0], v[1], v[2], {0.9642, 1, 0.8249}); }
Rgb cal_rgb(const Values& v) {
  const double a = std::pow(v[0], 1.8), b = std::pow(v[1], 2), c = std::pow(v[2], 2.2);
  return srgb_of({0.5767 * a + 0.1856 * b + 0.1882 * c, 0.2973 * a + 0.6274 * b + 0.0753 * c, 0.027 * a + 0.0707 * b + 0.9911 * c},
                 {0.9505, 1, 1.089});
}
int shaped(double v) { return srgb_encode(std::pow(v, 1.8)); }
Rgb shaped_gray(const Values& v) { return {shaped(v[0]), shaped(v[0]), shaped(v[0])}; }
Rgb shaped_rgb(const Values& v) { return {shaped(v[0]), shaped(v[1]), shaped(v[2])}; }
Rgb spot_rgb(const Values& v) { return cmyk_rgb({0.25 * v[0], v[0], 0.5 * v[0], 0.125 * v[0]}); }
Rgb inks_rgb(const Values& v) { return cmyk_rgb({v[0], v[2], v[1], 0}); }
Rgb two_inks_rgb(const Values& v) { return cmyk_rgb({v[0], v[1], 0, 0}); }

int table_byte(int entry, int component) { return (entry * 37 + component * 91 + entry / 7) % 256; }

/// Values of 8-bit samples: ISO 32000-1, 8.9.5.2, with the lows and highs of a Decode array.
Values decoded(const std::vector<int>& samples, const Values& decode) {
  Values v;
  for (std::size_t c = 0; c < samples.size(); ++c) v.push_back(decode[2 * c] + samples[c] * (decode[2 * c + 1] - decode[2 * c]) / 255);
  return v;
}

Space indexed_over(const Space& base) {
  const auto n = static_cast<int>(base.range.size() / 2);
  std::string table;
  for (int i = 0; i < 256 * n; ++i) table += static_cast<char>(table_byte(i / n, i % n));
  const auto rgb = [base, n](const Values& v) {
    std::vector<int> entry;
    for (int c = 0; c < n; ++c) entry.push_back(table_byte(static_cast<int>(v[0] + 0.5), c));
    return base.rgb(decoded(entry, base.range));
  };
  return {"Indexed over " + base.name, "[/Indexed " + base.entry + " 255 <" + encoders::encode_ascii_hex(table) + "]", {0, 255}, rgb};
}

const std::string lab = "[/Lab << /WhitePoint [0.9642 1 0.8249] /Range [-60 70 -80 50] >>]";

/// What the spaces refer to comes first in the file, from object 3 on.
PdfBuilder with_parts_of_spaces() {
  PdfBuilder pdf;
  pdf.add_stream("/N 1", gray_profile(1.8));
  pdf.add_stream("/N 3", rgb_profile(1.8));
  pdf.add_stream("/N 3 /Alternate " + lab, rgb_profile(1.8).substr(0, 200));
  pdf.add_stream("/N 4", "no profile");
  pdf.add_stream("/N 1", rgb_profile(1.8));
  pdf.add_stream("/FunctionType 4 /Domain [0 1 0 1 0 1] /Range [0 1 0 1 0 1 0 1]", "{ exch 0 }");
  pdf.add_stream("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1 0 1]", "{ 0 0 }");
  return pdf;
}

std::vector<Space> all_spaces() {
  const Values one = {0, 1}, three = {0, 1, 0, 1, 0, 1}, four = {0, 1, 0, 1, 0, 1, 0, 1}, lab_range = {0, 100, -60, 70, -80, 50};
  std::vector<Space> spaces = {
      {"Gray", "/DeviceGray", one, gray_rgb},
      {"RGB", "/DeviceRGB", three, device_rgb},
      {"CMYK", "/DeviceCMYK", four, cmyk_rgb},
      {"Separation", "[/Separation /Spot /DeviceCMYK << /FunctionType 2 /Domain [0 1] /N 1 /C0 [0 0 0 0] /C1 [0.25 1 0.5 0.125] >>]", one,
       spot_rgb},
      {"DeviceN", "[/DeviceN [/A /B /C] /DeviceCMYK 8 0 R]", three, inks_rgb},
      {"DeviceN of two", "[/DeviceN [/A /B] /DeviceCMYK 9 0 R]", {0, 1, 0, 1}, two_inks_rgb},
      {"Lab", lab, lab_range, lab_rgb},
      {"CalRGB",
       "[/CalRGB << /WhitePoint [0.9505 1 1.089] /Gamma [1.8 2 2.2] /Matrix [0.5767 0.2973 0.027 0.1856 0.6274 0.0707 0.1882 0.0753 "
       "0.9911] >>]",
       three, cal_rgb},
      {"ICC gray", "[/ICCBased 3 0 R]", one, shaped_gray},
      {"ICC RGB", "[/ICCBased 4 0 R]", three, shaped_rgb},
      {"ICC broken, with an alternate", "[/ICCBased 5 0 R]", lab_range, lab_rgb},
      {"ICC broken", "[/ICCBased 6 0 R]", four, cmyk_rgb},
      {"ICC of a wrong N", "[/ICCBased 7 0 R]", one, gray_rgb},
  };
  for (std::size_t i = 0, n = spaces.size(); i < n; ++i) spaces.push_back(indexed_over(spaces[i]));
  return spaces;
}

// Uniform blocks of 8 x 8 pass through JPEG's transform without a loss.
constexpr int width = 64, height = 48;

int stored(int x, int y, int c) {
  constexpr int levels[] = {0, 255, 128, 51, 17, 200, 77, 242};
  return levels[(x / 8 * (c + 1) + y / 8 * (c + 2)) % 8];
}

struct Coded {
  std::string filter, data;
  bool transformed;  ///< The samples are YCC or YCCK.
};

/// An Adobe marker tells of the transform, then ColorTransform, then the components.
const struct {
  J_COLOR_SPACE space;
  int adobe, parameter;
  bool transformed;
} jpegs[] = {
    {JCS_GRAYSCALE, -1, -1, false}, {JCS_GRAYSCALE, -1, 1, false}, {JCS_YCbCr, -1, -1, true}, {JCS_YCbCr, -1, 0, false},
    {JCS_YCbCr, -1, 1, true},       {JCS_YCbCr, 0, 1, false},      {JCS_YCbCr, 0, -1, false}, {JCS_YCbCr, 1, 0, true},
    {JCS_RGB, -1, -1, false},       {JCS_RGB, -1, 1, true},        {JCS_RGB, 0, -1, false},   {JCS_CMYK, -1, -1, false},
    {JCS_CMYK, 0, -1, false},       {JCS_CMYK, 0, 1, false},       {JCS_YCCK, -1, 1, true},   {JCS_YCCK, -1, 0, false},
    {JCS_YCCK, 2, -1, true},        {JCS_YCCK, 2, 0, true},
};

std::vector<Coded> codings(int n) {
  std::string samples;
  for (int i = 0; i < width * height * n; ++i) samples += static_cast<char>(stored(i / n % width, i / n / width, i % n));
  const encoders::jpx::Picture picture = {std::vector<encoders::jpx::Component>(static_cast<std::size_t>(n)), width, height};
  std::vector<Coded> coded = {
      {"/FlateDecode", encoders::deflate(samples), false},
      {"/JPXDecode", encoders::encode_jpx(picture, [](int c, int x, int y) { return stored(x, y, c); }), false},
  };
  for (const auto& [space, adobe, parameter, transformed] : jpegs) {
    const encoders::Jpeg jpeg = {space, adobe, width, height};
    if (components_of(jpeg) != n) continue;
    const std::string parms = parameter < 0 ? "" : " /DecodeParms << /ColorTransform " + std::to_string(parameter) + " >>";
    coded.push_back({"/DCTDecode" + parms, encode_jpeg(jpeg, stored), transformed});
  }
  return coded;
}

std::vector<int> samples_at(int x, int y, int n, bool transformed) {
  std::vector<int> s;
  for (int c = 0; c < n; ++c) s.push_back(stored(x, y, c));
  if (!transformed) return s;
  const double luma = s[0], cb = s[1] - 128, cr = s[2] - 128;  // ITU-T T.871, 7.
  const double rgb[3] = {luma + 1.402 * cr, luma - 0.344136 * cb - 0.714136 * cr, luma + 1.772 * cb};
  for (std::size_t c = 0; c < 3; ++c) s[c] = n == 4 ? 255 - byte_of(rgb[c] / 255) : byte_of(rgb[c] / 255);
  return s;
}

void expect_colors(CPDFRasterReader& picture, const Space& space, const Values& decode, bool transformed) {
  const CPDFRasterInfo& info = picture.info();
  const bool indexed = info.format == CPDFPixelFormat::indexed && info.index_bits == 8;
  ASSERT_TRUE(indexed || info.format == CPDFPixelFormat::gray8 || info.format == CPDFPixelFormat::rgb8);
  const std::size_t step = info.format == CPDFPixelFormat::rgb8 ? 3 : 1;
  const std::vector<Row> rows = rows_of(picture);
  for (int i = 0; i < width * height; ++i) {
    const int x = i % width, y = i / width;
    const unsigned char* at = &rows.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x) * step);
    Rgb got = {at[0], at[step / 2], at[step - 1]};
    if (indexed) got = {info.palette.at(at[0]).r, info.palette.at(at[0]).g, info.palette.at(at[0]).b};
    const Rgb want = space.rgb(decoded(samples_at(x, y, static_cast<int>(decode.size() / 2), transformed), decode));
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    if (std::equal(got.begin(), got.end(), want.begin(), near)) continue;
    return expect_near(got, want, 2, std::to_string(x) + ", " + std::to_string(y));  // One pixel tells.
  }
}

TEST(ColorMatrix, EveryPixelIsAsTheStandardsSay) {
  std::map<std::size_t, std::vector<Coded>> coded;
  for (const int n : {1, 2, 3, 4}) coded[static_cast<std::size_t>(n) * 2] = codings(n);
  for (const Space& space : all_spaces()) {
    for (const bool inverted : {false, true}) {
      Values decode = space.range;
      std::string entry;
      for (std::size_t i = 0; inverted && i < decode.size(); i += 2) std::swap(decode[i], decode[i + 1]);
      for (const double v : decode) entry += std::to_string(static_cast<int>(v)) + " ";
      if (inverted) entry = " /Decode [" + entry + "]";
      for (const Coded& codec : coded[decode.size()]) {
        SCOPED_TRACE(space.name + codec.filter + (codec.transformed ? " transformed" : "") + (inverted ? " inverted" : ""));
        PdfBuilder pdf = with_parts_of_spaces();
        const std::string entries = "/BitsPerComponent 8 /ColorSpace " + space.entry + " /Filter " + codec.filter;
        pdf.add_page_with({pdf.add_image(width, height, entries + (inverted ? entry : ""), codec.data)});
        const auto document = open_bytes(pdf.finish());
        const CPDFFoundImage found = all_images(*document).at(0);
        std::string problem;
        const auto picture = pdfbmp::open_picture(document->load_image(found), found, 1 << 20, problem);
        ASSERT_NE(picture, nullptr) << problem;
        // Decode is nothing to a JPEG 2000 image that is no mask (ISO 32000-1, 7.4.9).
        expect_colors(*picture, space, codec.filter == "/JPXDecode" ? space.range : decode, codec.transformed);
      }
    }
  }
}

}  // namespace
