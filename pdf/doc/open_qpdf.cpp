// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/open_qpdf.h"

#include <algorithm>
#include <exception>
#include <new>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QUtil.hh>

#include "pdf/doc/qpdf_source.h"
#include "pdf/doc/trailer_scan.h"

namespace {

enum class Attempt { opened, wrong_password, failed };

/// One call of the parser.
Attempt try_open(const std::shared_ptr<CPDFSource>& source, const std::string& password,
                 const std::string& suffix, pdfbmp::OpenedFile& file) {
  try {
    const std::shared_ptr<QPDF> qpdf = QPDF::create();
    qpdf->setSuppressWarnings(true);
    qpdf->processInputSource(std::make_shared<CPDFQpdfSource>(source, file.base, suffix),
                             password.c_str());
    if (!qpdf->getRoot().isDictionary()) {
      file.message = "the file has no document catalog";
      return Attempt::failed;
    }
    file.qpdf = qpdf;
    return Attempt::opened;
  } catch (const QPDFExc& error) {
    if (error.getErrorCode() == qpdf_e_password) return Attempt::wrong_password;
    file.message = pdfbmp::single_line(error.getMessageDetail());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    file.message = pdfbmp::single_line(error.what());
  }
  return Attempt::failed;
}

/// try_open with the password as given, then in the encodings that older files may have used.
Attempt try_passwords(const std::shared_ptr<CPDFSource>& source, const std::string& password,
                      const std::string& suffix, pdfbmp::OpenedFile& file) {
  Attempt result = try_open(source, password, suffix, file);
  if (result != Attempt::wrong_password || password.empty()) return result;
  for (const std::string& variant : QUtil::possible_repaired_encodings(password)) {
    if (variant == password) continue;
    result = try_open(source, variant, suffix, file);
    if (result != Attempt::wrong_password) return result;
  }
  return result;
}

}  // namespace

namespace pdfbmp {

std::string single_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, ' ');
  return text;
}

OpenedFile open_qpdf(const std::shared_ptr<CPDFSource>& source, const std::string& password) {
  OpenedFile file;
  file.base = find_header(*source);
  std::string first_message;
  for (int round = 0; round < 3; ++round) {
    std::string suffix;
    if (round == 1) suffix = suffix_from_xref_stream(*source, file.base);
    if (round == 2) suffix = suffix_from_catalog(*source, file.base);
    if (round > 0 && suffix.empty()) continue;
    switch (try_passwords(source, password, suffix, file)) {
      case Attempt::opened:
        file.status = CPDFOpenStatus::ok;
        file.message.clear();
        return file;
      case Attempt::wrong_password:
        file.status = CPDFOpenStatus::needs_password;
        file.message = password.empty() ? "the file needs a password" : "the password is wrong";
        return file;
      case Attempt::failed:
        break;
    }
    if (round == 0) first_message = file.message;
  }
  file.message = first_message.empty() ? "the file is no PDF" : first_message;
  return file;
}

}  // namespace pdfbmp
