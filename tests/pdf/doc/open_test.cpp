// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>

#include "pdf/doc/document.h"
#include "tests/pdf/doc/documents.h"
#include "tests/support/pdf_builder.h"

namespace {

std::string one_image_file() {
  PdfBuilder pdf;
  const int image = pdf.add_image(4, 2);
  pdf.add_page("/XObject << /Im " + PdfBuilder::ref(image) + " >>", "72 0 0 72 0 0 cm /Im Do");
  return pdf.finish();
}

/// The file as qpdf writes it anew.
std::string rewrite(const std::string& bytes, const std::function<void(QPDFWriter&)>& set_up) {
  QPDF qpdf;
  qpdf.processMemoryFile("test", bytes.data(), bytes.size());
  QPDFWriter writer(qpdf);
  writer.setOutputMemory();
  set_up(writer);
  writer.write();
  const std::shared_ptr<Buffer> out = writer.getBufferSharedPointer();
  return std::string(reinterpret_cast<const char*>(out->getBuffer()), out->getSize());
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.rfind(from);
  return at == std::string::npos ? std::string() : text.replace(at, from.size(), to);
}

std::string cut_at(const std::string& text, const std::string& word) { return text.substr(0, text.rfind(word)); }

void expect_one_image(const std::string& bytes, const std::string& data) {
  const auto document = open_bytes(bytes);
  ASSERT_NE(document, nullptr);
  const auto images = all_images(*document);
  ASSERT_EQ(images.size(), 1u);
  EXPECT_EQ(images[0].placements.size(), 1u);
  EXPECT_EQ(images[0].bytes, static_cast<std::int64_t>(data.size()));
  EXPECT_EQ(read_all(document->raw_stream(images[0]).get()), data);
  const CPDFLoadedImage loaded = document->load_image(images[0]);
  EXPECT_EQ(loaded.problem, "");
  EXPECT_EQ(read_all(loaded.image->stream), data);
  ASSERT_NE(loaded.report, nullptr);
  EXPECT_EQ(loaded.report->bytes, static_cast<std::int64_t>(data.size()));
}

TEST(Open, DamagedFilesGiveTheirImage) {
  const std::string good = one_image_file();
  const std::string compressed = rewrite(good, [](QPDFWriter& writer) {
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.setCompressStreams(false);
  });
  // Data that is found by the word behind it takes the line end between the two along.
  const std::string recovered = "xxxxxxxx\n";
  const struct {
    const char* name;
    std::string bytes;
    std::string data = "xxxxxxxx";
  } cases[] = {
      {"undamaged", good},
      {"junk before the header", "junk\n\x01\x02 more\n" + good},
      {"no header", replaced(good, "%PDF", "%XYZ")},
      {"wrong startxref", replaced(good, "startxref\n", "startxref\n1")},
      {"no startxref", cut_at(good, "startxref")},
      {"no trailer", cut_at(good, "trailer")},
      {"no cross-reference table", cut_at(good, "xref\n0")},
      {"cut inside the last object", cut_at(good, "endobj")},
      {"junk in front and no trailer", "junk" + cut_at(good, "trailer")},
      {"a Length too short", replaced(good, "/Length 8 ", "/Length 5 "), recovered},
      {"a Length too long", replaced(good, "/Length 8 ", "/Length 9999 "), recovered},
      {"a Length that is no number", replaced(good, "/Length 8 ", "/Length /8 "), recovered},
      {"object streams", compressed},
      {"object streams, startxref lost", cut_at(compressed, "startxref")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    expect_one_image(c.bytes, c.data);
  }
}

TEST(Open, WhatIsNoPdfIsRefused) {
  for (const std::string& bytes :
       {std::string(), std::string("hello"), std::string("%PDF-1.4\n"), std::string(5000, '\xFF'), "/Type /Catalog" + std::string(99, 'x'),
        std::string("%PDF-1.4\n1 0 obj 5 endobj trailer <</Root 1 0 R>>")}) {
    CPDFOpenStatus status{};
    EXPECT_EQ(open_bytes(bytes, status), nullptr);
    EXPECT_EQ(status, CPDFOpenStatus::unreadable);
  }
}

TEST(Open, PagesInACircleEnd) {
  const std::string file = one_image_file();
  const std::string circle = replaced(file, "/Kids [", "/Kids [2 0 R ");
  const auto document = open_bytes(circle);
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(document->page_count(), 1);
}

TEST(Open, Passwords) {
  const std::string good = one_image_file();
  const struct {
    const char* name;
    std::function<void(QPDFWriter&)> encrypt;
  } methods[] = {
      {"RC4",
       [](QPDFWriter& w) { w.setR3EncryptionParametersInsecure("user", "owner", true, true, true, true, true, true, qpdf_r3p_full); }},
      {"AES-256",
       [](QPDFWriter& w) { w.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true, qpdf_r3p_full, true); }},
  };
  const struct {
    const char* password;
    CPDFOpenStatus status;
  } cases[] = {{"user", CPDFOpenStatus::ok},
               {"owner", CPDFOpenStatus::ok},
               {"", CPDFOpenStatus::needs_password},
               {"wrong", CPDFOpenStatus::needs_password}};
  for (const auto& method : methods) {
    const std::string bytes = rewrite(good, method.encrypt);
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(method.name) + " " + c.password);
      CPDFOpenStatus status{};
      const auto document = open_bytes(bytes, status, c.password);
      EXPECT_EQ(status, c.status);
      ASSERT_EQ(document != nullptr, c.status == CPDFOpenStatus::ok);
      if (document == nullptr) continue;
      const auto images = all_images(*document);
      ASSERT_EQ(images.size(), 1u);
      const CPDFLoadedImage loaded = document->load_image(images[0]);
      EXPECT_EQ(read_all(loaded.image->stream), "xxxxxxxx");
    }
  }
}

}  // namespace
