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
#include "tools/encoders/pdf_builder.h"

namespace {

std::string one_image_file() {
  PdfBuilder pdf;
  pdf.add_page_with({pdf.add_image(4, 2)});
  return pdf.finish();
}

/// The file as qpdf writes it anew.
std::string rewrite(const std::string& bytes, const std::function<void(QPDFWriter&)>& set_up) {
  QPDF qpdf;
  qpdf.processMemoryFile("test", bytes.data(), bytes.size());
  QPDFWriter writer(qpdf);
  writer.setOutputMemory();
  writer.setCompressStreams(false);
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

void expect_one_image(CPDFDocument* document, const std::string& data) {
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
  const std::string compressed = rewrite(good, [](QPDFWriter& writer) { writer.setObjectStreamMode(qpdf_o_generate); });
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
      {"pages in a circle", replaced(good, "/Kids [", "/Kids [2 0 R ")},
      {"a Length that is no number", replaced(good, "/Length 8 ", "/Length /8 "), recovered},
      {"object streams", compressed},
      {"object streams, startxref lost", cut_at(compressed, "startxref")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    expect_one_image(open_bytes(c.bytes).get(), c.data);
  }
}

TEST(Open, WhatIsNoPdfIsRefused) {
  for (const std::string& bytes :
       std::vector<std::string>{"", "hello", "%PDF-1.4\n", std::string(5000, '\xFF'), "/Type /Catalog" + std::string(99, 'x'),
                                "%PDF-1.4\n1 0 obj 5 endobj trailer <</Root 1 0 R>>"}) {
    CPDFOpenStatus status{};
    EXPECT_EQ(open_bytes(bytes, status), nullptr);
    EXPECT_EQ(status, CPDFOpenStatus::unreadable);
  }
}

TEST(Open, Passwords) {
  const auto rc4 = [](QPDFWriter& w) {
    w.setR3EncryptionParametersInsecure("user", "owner", true, true, true, true, true, true, qpdf_r3p_full);
  };
  const auto aes = [](QPDFWriter& w) {
    w.setR6EncryptionParameters("user", "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
  };
  for (const std::string& bytes : {rewrite(one_image_file(), rc4), rewrite(one_image_file(), aes)}) {
    for (const std::string password : {"user", "owner", "", "wrong"}) {
      SCOPED_TRACE(password);
      CPDFOpenStatus status{};
      const auto document = open_bytes(bytes, status, password);
      const bool opens = password == "user" || password == "owner";
      EXPECT_EQ(status, opens ? CPDFOpenStatus::ok : CPDFOpenStatus::needs_password);
      ASSERT_EQ(document != nullptr, opens);
      if (opens) expect_one_image(document.get(), "xxxxxxxx");
    }
  }
}

}  // namespace
