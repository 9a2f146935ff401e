// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <string>

#include "pdf/doc/document.h"
#include "tests/pdf/doc/documents.h"

namespace {

void expect_bytes_of_qpdf(QPDF& peer, CPDFDocument& document, const CPDFFoundImage& found) {
  const auto bytes = peer.getObject(found.object, found.generation).getRawStreamData();
  EXPECT_EQ(read_all(document.raw_stream(found).get()), std::string(reinterpret_cast<const char*>(bytes->getBuffer()), bytes->getSize()));
}

// Walks every PDF of the folder that PDFBMP_CORPUS names and loads each of its images.
TEST(Corpus, EveryImageLoadsOrSaysWhyNot) {
  const char* folder = std::getenv("PDFBMP_CORPUS");
  if (folder == nullptr) GTEST_SKIP() << "PDFBMP_CORPUS names no folder";
  int files = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".pdf") continue;
    SCOPED_TRACE(entry.path().filename().string());
    ++files;
    std::string message;
    CPDFOpenStatus status{};
    auto document = CPDFDocument::open(pdfbmp::open_file_source(entry.path().string(), message), {}, status, message);
    EXPECT_EQ(document == nullptr, status != CPDFOpenStatus::ok);
    EXPECT_EQ(document == nullptr, !message.empty()) << message;
    if (document == nullptr) continue;
    QPDF peer;
    peer.setSuppressWarnings(true);
    bool peer_opened = true;
    try {
      peer.processFile(entry.path().c_str());
    } catch (const std::exception&) {
      peer_opened = false;  // More files are opened here than there.
    }
    for (const CPDFFoundImage& found : all_images(*document)) {
      SCOPED_TRACE(found.object);
      EXPECT_FALSE(found.pages.empty());
      const CPDFLoadedImage loaded = document->load_image(found);
      ASSERT_NE(loaded.image, nullptr);
      const bool has_all = loaded.image->stream != nullptr && (loaded.image->cs != nullptr || found.image_mask);
      const bool limited = loaded.problem.find("limit") != std::string::npos;
      EXPECT_EQ(loaded.problem.empty(), has_all && found.width > 0 && found.height > 0 && !limited) << loaded.problem;
      EXPECT_EQ(std::pair(loaded.image->width, loaded.image->height), std::pair(found.width, found.height));
      EXPECT_EQ(read_all(document->raw_stream(found).get()).size(), static_cast<std::size_t>(found.bytes));
      if (peer_opened && found.object != 0) expect_bytes_of_qpdf(peer, *document, found);
    }
  }
  EXPECT_GT(files, 0);
}

}  // namespace
