// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// Writes the sample PDF: one picture for each kind of image that the library reads, with a line
// below it that names the kind. A new kind is a new function and its line in the table.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>
#include <vector>

#include "examples/painters.h"
#include "examples/press_profile.h"
#include "examples/samples.h"

namespace {

using Object = QPDFObjectHandle;

// A picture as a page shows it.
struct Shown {
  int width, height;
  Object image;             // Null for an inline image.
  std::string inline_data;  // BI to EI.
  std::string background;   // Operators that paint what shows through; the unit square.
};

// A grid of squares in two tints, to see transparency.
const char* const checkerboard =
    "0.92 g 0 0 1 1 re f 0.78 g\n"
    "0 0 .125 .125 re .25 0 .125 .125 re .5 0 .125 .125 re .75 0 .125 .125 re\n"
    ".125 .125 .125 .125 re .375 .125 .125 .125 re .625 .125 .125 .125 re .875 .125 .125 .125 re\n"
    "0 .25 .125 .125 re .25 .25 .125 .125 re .5 .25 .125 .125 re .75 .25 .125 .125 re\n"
    ".125 .375 .125 .125 re .375 .375 .125 .125 re .625 .375 .125 .125 re .875 .375 .125 .125 re\n"
    "0 .5 .125 .125 re .25 .5 .125 .125 re .5 .5 .125 .125 re .75 .5 .125 .125 re\n"
    ".125 .625 .125 .125 re .375 .625 .125 .125 re .625 .625 .125 .125 re .875 .625 .125 .125 re\n"
    "0 .75 .125 .125 re .25 .75 .125 .125 re .5 .75 .125 .125 re .75 .75 .125 .125 re\n"
    ".125 .875 .125 .125 re .375 .875 .125 .125 re .625 .875 .125 .125 re .875 .875 .125 .125 re "
    "f\n";

// An image XObject; `entries` is the rest of its dictionary in PDF syntax.
Shown make_image(QPDF& pdf, int width, int height, int bits, const std::string& color_space,
                 const std::string& data, const std::string& entries = "/Filter /FlateDecode") {
  Object image = Object::newStream(&pdf, data);
  Object dict = Object::parse("<< /Type /XObject /Subtype /Image " + entries + " >>");
  dict.replaceKey("/Width", Object::newInteger(width));
  dict.replaceKey("/Height", Object::newInteger(height));
  dict.replaceKey("/BitsPerComponent", Object::newInteger(bits));
  if (!color_space.empty()) dict.replaceKey("/ColorSpace", Object::parse(color_space));
  image.replaceDict(dict);
  return {width, height, image, {}, {}};
}

// Calls paint(writer, x, y) for every pixel, x and y at its middle.
template <class Paint>
std::string samples_of(int width, int height, int bits, Paint paint) {
  SampleWriter writer(bits);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) paint(writer, (x + 0.5) / width, (y + 0.5) / height);
    writer.end_row();
  }
  return writer.bytes();
}

void add_color(SampleWriter& writer, const Color& color) {
  writer.add(color.r);
  writer.add(color.g);
  writer.add(color.b);
}

std::string rgb_samples(int width, int height, int bits, Color (*paint)(double, double)) {
  return samples_of(width, height, bits, [paint](SampleWriter& writer, double x, double y) {
    add_color(writer, paint(x, y));
  });
}

std::string gray_samples(int width, int height, int bits, double (*paint)(double, double)) {
  return samples_of(width, height, bits,
                    [paint](SampleWriter& writer, double x, double y) { writer.add(paint(x, y)); });
}

// Levels as bits, by the 4 x 4 matrix of ordered dithering.
std::string dithered(int width, int height, double (*paint)(double, double)) {
  constexpr int matrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
  return samples_of(width, height, 1, [=](SampleWriter& writer, double x, double y) {
    const int column = static_cast<int>(x * width), row = static_cast<int>(y * height);
    writer.add_value(paint(x, y) * 16 > matrix[row % 4][column % 4] + 0.5 ? 1 : 0);
  });
}

std::string hex_of(const std::string& bytes) {
  std::string text = "<";
  for (const char c : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02x",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += digits;
  }
  return text + ">";
}

Shown rgb_png_predictor(QPDF& pdf) {
  const std::string rows = png_predicted(rgb_samples(360, 240, 8, landscape), 3 * 360, 3);
  return make_image(pdf, 360, 240, 8, "/DeviceRGB", flate(rows),
                    "/Filter /FlateDecode "
                    "/DecodeParms << /Predictor 15 /Colors 3 /Columns 360 >> /Interpolate true");
}

Shown rgb_tiff_predictor(QPDF& pdf) {
  const std::string rows = tiff_predicted(rgb_samples(201, 201, 8, color_wheel), 3 * 201, 3);
  return make_image(pdf, 201, 201, 8, "/DeviceRGB", flate(rows),
                    "/Filter [/FlateDecode] "
                    "/DecodeParms [<< /Predictor 2 /Colors 3 /Columns 201 >>]");
}

Shown rgb_16_bits(QPDF& pdf) {
  const std::string rows = png_predicted(rgb_samples(150, 100, 16, smooth), 6 * 150, 6);
  return make_image(pdf, 150, 100, 16, "/DeviceRGB", flate(rows),
                    "/Filter /FlateDecode /DecodeParms << /Predictor 15 /Colors 3 "
                    "/BitsPerComponent 16 /Columns 150 >>");
}

Shown gray_1_bit(QPDF& pdf) {
  return make_image(pdf, 301, 201, 1, "/DeviceGray", flate(dithered(301, 201, spheres)));
}

Shown gray_2_bits(QPDF& pdf) {
  return make_image(pdf, 203, 203, 2, "/DeviceGray", flate(gray_samples(203, 203, 2, ripples)));
}

Shown gray_4_bits(QPDF& pdf) {
  return make_image(pdf, 241, 161, 4, "/DeviceGray", flate(gray_samples(241, 161, 4, spheres)));
}

Shown gray_8_bits(QPDF& pdf) {
  const std::string rows = png_predicted(gray_samples(300, 200, 8, spheres), 300, 1);
  return make_image(pdf, 300, 200, 8, "/DeviceGray", flate(rows),
                    "/Filter /FlateDecode /DecodeParms << /Predictor 12 /Columns 300 >>");
}

// A negative that Decode makes positive.
Shown gray_reversed(QPDF& pdf) {
  const std::string rows = samples_of(240, 160, 8, [](SampleWriter& writer, double x, double y) {
    const Color color = landscape(x, y);
    writer.add(1 - (0.3 * color.r + 0.59 * color.g + 0.11 * color.b));
  });
  return make_image(pdf, 240, 160, 8, "/DeviceGray", flate(rows),
                    "/Filter /FlateDecode /Decode [1 0]");
}

Shown indexed_8_bits(QPDF& pdf) {
  std::string palette;
  for (int i = 0; i < 256; ++i) {
    const double t = i / 255.0;
    for (const double power : {2.2, 1.1, 0.55}) {
      const double level = i == 0 ? 0 : 0.08 + 0.92 * (t < 0.5 ? 2 * t : 2 - 2 * t) / power;
      palette += static_cast<char>(std::min(255.0, 255 * level));
    }
  }
  return make_image(pdf, 320, 240, 8, "[/Indexed /DeviceRGB 255 " + hex_of(palette) + "]",
                    flate(gray_samples(320, 240, 8, mandelbrot)));
}

Shown indexed_4_bits(QPDF& pdf) {
  const std::string rows = samples_of(160, 160, 4, [](SampleWriter& writer, double x, double y) {
    const unsigned warp = static_cast<unsigned>(x * 20) % 4;
    const unsigned weft = static_cast<unsigned>(y * 20) % 4;
    writer.add_value(warp << 2 | weft);
  });
  std::string palette;
  for (unsigned i = 0; i < 16; ++i) {
    palette += static_cast<char>(40 + 65 * (i >> 2));
    palette += static_cast<char>(50 + 20 * (i >> 2) + 30 * (i & 3));
    palette += static_cast<char>(90 + 50 * (i & 3));
  }
  return make_image(pdf, 160, 160, 4, "[/Indexed /DeviceRGB 15 " + hex_of(palette) + "]",
                    flate(rows));
}

Shown color_key(QPDF& pdf) {
  const std::string rows = samples_of(160, 160, 8, [](SampleWriter& writer, double x, double y) {
    const double level = ball(x, y);
    const bool inside = ball_cover(x, y) > 0.5;
    add_color(writer, inside ? Color{level, 0.55 * level, 0.2 * level} : Color{0.85, 0.85, 0.85});
  });
  Shown shown = make_image(pdf, 160, 160, 8, "/DeviceRGB", flate(rows),
                           "/Filter /FlateDecode /Mask [212 222 212 222 212 222]");
  shown.background = checkerboard;
  return shown;
}

Shown soft_mask(QPDF& pdf) {
  const Shown mask =
      make_image(pdf, 120, 120, 8, "/DeviceGray", flate(gray_samples(120, 120, 8, ball_cover)));
  const std::string rows = samples_of(240, 240, 8, [](SampleWriter& writer, double x, double y) {
    const double level = ball(x, y);
    add_color(writer, {0.25 * level, 0.6 * level, level});
  });
  Shown shown = make_image(pdf, 240, 240, 8, "/DeviceRGB", flate(rows));
  shown.image.getDict().replaceKey("/SMask", mask.image);
  shown.background = checkerboard;
  return shown;
}

// The four inks in circles that overlap, and their full range below.
Shown inks(QPDF& pdf, const std::string& color_space) {
  const std::string rows = samples_of(240, 240, 8, [](SampleWriter& writer, double x, double y) {
    constexpr double middles[4][2] = {{0.38, 0.32}, {0.62, 0.32}, {0.5, 0.52}, {0.5, 0.39}};
    for (int ink = 0; ink < 4; ++ink) {
      const double dx = x - middles[ink][0], dy = y - middles[ink][1];
      const double radius = ink == 3 ? 0.07 : 0.26;
      const bool band = y > 0.84 && static_cast<int>((y - 0.84) * 25) == ink;
      writer.add(y > 0.84 ? (band ? x : 0) : dx * dx + dy * dy < radius * radius ? 0.95 : 0);
    }
  });
  return make_image(pdf, 240, 240, 8, color_space, flate(rows));
}

Shown cmyk(QPDF& pdf) { return inks(pdf, "/DeviceCMYK"); }

// The profile of the press that the document is meant for, which a first call makes its output
// intent.
Object press_profile(QPDF& pdf) {
  Object catalog = pdf.getRoot();
  if (!catalog.hasKey("/OutputIntents")) {
    Object profile = pdf.makeIndirectObject(Object::newStream(&pdf, flate(make_press_profile())));
    profile.getDict().replaceKey("/N", Object::newInteger(4));
    profile.getDict().replaceKey("/Filter", Object::newName("/FlateDecode"));
    Object intent = Object::parse(
        "<< /Type /OutputIntent /S /GTS_PDFX /OutputConditionIdentifier (Sample press) >>");
    intent.replaceKey("/DestOutputProfile", profile);
    catalog.replaceKey("/OutputIntents", Object::newArray({intent}));
  }
  return catalog.getKey("/OutputIntents").getArrayItem(0).getKey("/DestOutputProfile");
}

Shown cmyk_by_profile(QPDF& pdf) {
  Shown shown = inks(pdf, "");
  shown.image.getDict().replaceKey(
      "/ColorSpace", Object::newArray({Object::newName("/ICCBased"), press_profile(pdf)}));
  return shown;
}

Shown stencil(QPDF& pdf) {
  const std::string text = "pdfbmp";
  constexpr int dot = 6;
  const int width = text_columns(text) * dot, height = text_rows * dot;
  const std::string rows =
      samples_of(width, height, 1, [&](SampleWriter& writer, double x, double y) {
        const int column = static_cast<int>(x * text_columns(text));
        writer.add_value(text_dot(text, column, static_cast<int>(y * text_rows)) ? 0 : 1);
      });
  Shown shown =
      make_image(pdf, width, height, 1, "", flate(rows), "/ImageMask true /Filter /FlateDecode");
  shown.background = "0.1 0.25 0.6 rg\n";
  return shown;
}

Shown inline_image(QPDF&) {
  const std::string face =
      "07E01FF8 3FFC7FFE 73CEF3CF F3CFFFFF FFFFDFFB EFF773CE 7C3E3FFC 1FF807E0>";
  return {16,
          16,
          Object::newNull(),
          "BI /W 16 /H 16 /BPC 1 /CS [/I /RGB 1 <F4F0E8D08020>] /F /AHx ID " + face + "\nEI\n",
          {}};
}

struct Entry {
  const char* caption;
  Shown (*make)(QPDF&);
};

constexpr Entry entries[] = {
    {"RGB, 8 bits, PNG predictors", rgb_png_predictor},
    {"RGB, 8 bits, TIFF predictor", rgb_tiff_predictor},
    {"RGB, 16 bits", rgb_16_bits},
    {"Gray, 1 bit", gray_1_bit},
    {"Gray, 2 bits", gray_2_bits},
    {"Gray, 4 bits", gray_4_bits},
    {"Gray, 8 bits, PNG predictor", gray_8_bits},
    {"Gray, 8 bits, Decode reversed", gray_reversed},
    {"Indexed, 8 bits", indexed_8_bits},
    {"Indexed, 4 bits", indexed_4_bits},
    {"RGB with a colour key", color_key},
    {"RGB with a soft mask", soft_mask},
    {"CMYK of the device", cmyk},
    {"CMYK of a press, by its profile", cmyk_by_profile},
    {"Stencil, painted blue", stencil},
    {"Inline image, Indexed, 1 bit", inline_image},
};

// Places pictures on A4 pages, two by three.
class Pages {
 public:
  explicit Pages(QPDF& pdf) : pdf_(pdf) {}

  void add(Shown shown, const std::string& caption) {
    constexpr double cell_width = 240, cell_height = 225, margin_x = 46, top = 790;
    const double left = margin_x + (count_ % 2) * (cell_width + 24);
    const double baseline = top - (count_ / 2 + 1) * (cell_height + 24);
    const double scale = std::min(cell_width / shown.width, (cell_height - 20) / shown.height);

    std::string& text = content_;
    text += "q " + number(shown.width * scale) + " 0 0 " + number(shown.height * scale) + " " +
            number(left) + " " + number(baseline + 18) + " cm\n" + shown.background;
    if (shown.image.isNull()) {
      text += shown.inline_data;
    } else {
      const std::string name = "/Im" + std::to_string(count_ + 1);
      images_.replaceKey(name, shown.image);
      text += name + " Do\n";
    }
    text += "Q\nBT /F1 11 Tf " + number(left) + " " + number(baseline) + " Td (" + caption +
            ") Tj ET\n";
    if (++count_ == 6) end_page();
  }

  void end_page() {
    if (count_ == 0) return;
    Object page = Object::parse(
        "<< /Type /Page /MediaBox [0 0 595 842] /Resources << /Font << /F1 << /Type /Font "
        "/Subtype /Type1 /BaseFont /Helvetica >> >> >> >>");
    page.getKey("/Resources").replaceKey("/XObject", images_);
    page.replaceKey("/Contents", Object::newStream(&pdf_, content_));
    QPDFPageDocumentHelper(pdf_).addPage(QPDFPageObjectHelper(pdf_.makeIndirectObject(page)),
                                         false);
    images_ = Object::newDictionary();
    content_.clear();
    count_ = 0;
  }

 private:
  static std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.2f", value);
    return text;
  }

  QPDF& pdf_;
  Object images_ = Object::newDictionary();
  std::string content_;
  int count_ = 0;  // Pictures on the page in the making.
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_sample FILE.pdf\n", stderr);
    return 2;
  }
  try {
    QPDF pdf;
    pdf.emptyPDF();
    Pages pages(pdf);
    for (const Entry& entry : entries) pages.add(entry.make(pdf), entry.caption);
    pages.end_page();

    // Streams stay as they were made, and the same pictures give the same bytes.
    QPDFWriter writer(pdf, argv[1]);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setDeterministicID(true);
    writer.write();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_sample: %s\n", error.what());
    return 1;
  }
  return 0;
}
