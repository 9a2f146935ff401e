// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
// make_files FOLDER COUNT: writes COUNT small PDF files, every hundredth hostile ("bad" in its
// name), the others in turn of every kind of image.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>

#include "tools/encoders/encoders.h"
#include "tools/encoders/fax_encoder.h"
#include "tools/encoders/jpeg_encoder.h"
#include "tools/encoders/jpx_encoder.h"
#include "tools/encoders/pdf_builder.h"

namespace {

constexpr int kinds = 10;
const std::string rgb = "/ColorSpace /DeviceRGB /BitsPerComponent 8 ";
const std::string gray = "/ColorSpace /DeviceGray /BitsPerComponent 8 ";
const std::string bits = "/ColorSpace /DeviceGray /BitsPerComponent 1 ";

int level(int x, int y, int c, int seed) { return (x * (c + 2) + y * 3 + seed * 7) & 0xFF; }

std::string samples(int width, int height, int components, int seed) {
  std::string text;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      for (int c = 0; c < components; ++c) text += static_cast<char>(level(x, y, c, seed));
    }
  }
  return text;
}

encoders::FaxRows fax_rows(int width, int height, int seed) {
  encoders::FaxRows rows(static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      rows[static_cast<std::size_t>(y)] += level(x, y, 0, seed) > 100 ? '1' : '0';
    }
  }
  return rows;
}

// An image of one of the kinds; its object number.
int add_image(PdfBuilder& pdf, int kind, int seed) {
  const int width = 40 + seed % 90, height = 30 + seed % 70;
  const auto sample = [&](int x, int y, int c) { return level(x, y, c, seed); };
  const auto add = [&](const std::string& entries, const std::string& data) {
    return pdf.add_image(width, height, entries, data);
  };
  const auto flate = [&](int components) {
    return encoders::deflate(samples(width, height, components, seed));
  };
  const std::string columns = "/DecodeParms << /K -1 /Columns " + std::to_string(width) + " >>";
  switch (kind) {
    case 0:
      return add(rgb + "/Filter /FlateDecode", flate(3));
    case 1:
      return add(gray + "/Filter /LZWDecode",
                 encoders::encode_lzw(samples(width, height, 1, seed)));
    case 2:
      return add(rgb + "/Filter /DCTDecode",
                 encoders::encode_jpeg({JCS_YCbCr, -1, width, height}, sample));
    case 3:
      return add(gray + "/Filter /JPXDecode",
                 encoders::encode_jpx({{{}}, width, height},
                                      [&](int c, int x, int y) { return sample(x, y, c); }));
    case 4:
      return add(bits + "/Filter /CCITTFaxDecode " + columns,
                 encoders::encode_fax(fax_rows(width, height, seed), {-1}));
    case 5:
      return add("/ImageMask true /BitsPerComponent 1 /Filter /CCITTFaxDecode " + columns,
                 encoders::encode_fax(fax_rows(width, height, seed), {-1}));
    case 6:
      return add(
          "/ColorSpace [/Indexed /DeviceRGB 2 <FF000000FF000000FF>] /BitsPerComponent 8 "
          "/Filter /FlateDecode",
          flate(1));
    case 7:
      return add("/ColorSpace /DeviceCMYK /BitsPerComponent 8 /Filter /FlateDecode", flate(4));
    case 8: {
      const int mask = add(gray + "/Filter /FlateDecode", flate(1));
      return add(rgb + "/SMask " + PdfBuilder::ref(mask) + " /Filter /FlateDecode", flate(3));
    }
    default:
      return add(
          rgb + "/Filter [/ASCII85Decode /RunLengthDecode]",
          encoders::encode_ascii85(encoders::encode_run_length(samples(width, height, 3, seed))));
  }
}

std::string good_file(int seed) {
  PdfBuilder pdf;
  pdf.add_page_with({add_image(pdf, seed % kinds, seed), add_image(pdf, (seed + 3) % kinds, seed)});
  return pdf.finish();
}

std::string file_with(const std::string& entries, const std::string& data, int width = 8) {
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(width, 8, entries, data)});
  return pdf.finish();
}

std::string damaged(std::string file) {
  for (std::size_t i = 97; i < file.size(); i += 61) file[i] = static_cast<char>(file[i] ^ 0x15);
  return file;
}

// One object that holds itself, in one way or another.
std::string loop() {
  PdfBuilder pdf;
  const int image = pdf.add_image(8, 8, "/SMask 3 0 R /Mask 3 0 R");
  const int form = pdf.add_form("/Resources << /XObject << /F 4 0 R >> >>", "/F Do");
  pdf.add_page("/XObject << /F " + PdfBuilder::ref(form) + " /I " + PdfBuilder::ref(image) + " >>",
               "/F Do /I Do");
  std::string file = pdf.finish();
  const std::size_t kids = file.find("/Kids [") + 7;
  return file.replace(kids, 1, "2");  // The page tree is its own child.
}

std::string encrypted() {
  const std::string plain = good_file(1);
  QPDF pdf;
  pdf.processMemoryFile("plain", plain.data(), plain.size());
  QPDFWriter writer(pdf);
  writer.setOutputMemory();
  writer.setR6EncryptionParameters("open", "own", true, true, true, true, true, true, qpdf_r3p_full,
                                   true);
  writer.write();
  const auto buffer = writer.getBufferSharedPointer();
  return {buffer->getBuffer(), buffer->getBuffer() + buffer->getSize()};
}

// A codestream of a picture whose side is as long as its header can say.
std::string vast_jpx() {
  std::string file = encoders::encode_jpx({{{}}}, [](int, int, int) { return 1; });
  return file.replace(8, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF");
}

std::string hostile_file(int which) {
  switch (which % 10) {
    case 0:
      return "";
    case 1:
      return "This is no PDF.\n";
    case 2:
      return file_with(gray + "/Filter /FlateDecode",
                       encoders::deflate(std::string(std::size_t{64} << 20, '\0')), 2147483647);
    case 3:
      return file_with(gray + "/Filter [/FlateDecode /FlateDecode /FlateDecode]",
                       encoders::deflate(encoders::deflate(
                           encoders::deflate(std::string(std::size_t{64} << 20, '\0')))));
    case 4:
      return loop();
    case 5:
      return encrypted();
    case 6:
      return good_file(2).substr(0, 700);
    case 7:
      return damaged(good_file(3));
    case 8:
      return file_with("/ColorSpace " + std::string(100000, '[') + " /BitsPerComponent 8", "x");
    default:
      return file_with(gray + "/Filter /JPXDecode", vast_jpx());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  const int count = std::atoi(argv[2]);
  for (int i = 1; i <= count; ++i) {
    const bool bad = i % 100 == 50;
    char name[32];
    std::snprintf(name, sizeof name, "%04d-%s.pdf", i, bad ? "bad" : "good");
    std::ofstream(folder / name, std::ios::binary) << (bad ? hostile_file(i / 100) : good_file(i));
  }
  return 0;
}
