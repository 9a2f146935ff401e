// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/extract_image.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>

#include "pdf/doc/native_file.h"
#include "pdf/doc/pam_writer.h"
#include "pdf/doc/png_writer.h"
#include "tools/pdfbmp/copy_rows.h"
#include "tools/pdfbmp/picture.h"

namespace {

const char* suffix_of(FileFormat format, const CPDFRasterInfo& info) {
  switch (format) {
    case FileFormat::png:
    case FileFormat::native:
      return "png";
    case FileFormat::pam:
      return CPDFPamWriter::suffix_of(info, CPDFPamWriter::Dialect::pam);
    case FileFormat::pnm:
      return CPDFPamWriter::suffix_of(info, CPDFPamWriter::Dialect::pnm);
  }
  return "";
}

std::unique_ptr<CPDFRasterWriter> make_writer(FileFormat format, CPDFByteSink& sink) {
  switch (format) {
    case FileFormat::png:
    case FileFormat::native:
      return std::make_unique<CPDFPngWriter>(sink);
    case FileFormat::pam:
      return std::make_unique<CPDFPamWriter>(sink, CPDFPamWriter::Dialect::pam);
    case FileFormat::pnm:
      return std::make_unique<CPDFPamWriter>(sink, CPDFPamWriter::Dialect::pnm);
  }
  return nullptr;
}

// The picture's description with the resolution it is first painted at; a bitmap of reduced size
// has as much less.
CPDFRasterInfo described(const CPDFRasterInfo& info, const CPDFFoundImage& found) {
  CPDFRasterInfo result = info;
  if (!found.placements.empty() && found.width > 0 && found.height > 0) {
    const CPDFPlacement& placement = found.placements[0];
    result.ppi_x = placement.ppi[0] * info.width / found.width;
    result.ppi_y = placement.ppi[1] * info.height / found.height;
  }
  return result;
}

// A codec's data holds no other picture than its own.
bool has_own_data(const CPDFFoundImage& found, PictureKind kind) {
  const bool is_mask = found.kind == CPDFImageKind::mask || found.kind == CPDFImageKind::smask;
  return kind == PictureKind::mask ? is_mask || found.image_mask : !is_mask;
}

bool write_all(const CPDFNativeFile& native, CPDFByteSink& sink) {
  return sink.write(native.head.data(), native.head.size()) &&
         sink.write(native.data->data(), static_cast<std::size_t>(native.data->size())) &&
         sink.write(native.tail.data(), native.tail.size());
}

// False where the image's data cannot be passed on as it is.
bool extract_native(CPDFDocument& document, const CPDFFoundImage& found, const std::string& name,
                    const Options& options, Output& output, ExtractedImage& result) {
  result.passed_over = !has_own_data(found, options.kind);
  if (result.passed_over) return true;
  CPDFNativeFile native;
  if (!pdfbmp::open_native_file(document, found, options.limits, native)) return false;
  result.name = name + "." + native.suffix;
  std::unique_ptr<OutputFile> file = output.create(result.name, result.error);
  if (file != nullptr && !write_all(native, file->sink())) result.error = file->failure();
  result.output_failed = file == nullptr || !result.error.empty();
  if (result.output_failed) return true;
  result.passed_on = true;
  result.error = native.problem;
  result.complete = native.problem.empty();
  result.file = std::move(file);
  return true;
}

std::string only_first(std::int64_t rows, const char* done) {
  return "only its first " + std::to_string(rows) + (rows == 1 ? " row is " : " rows are ") + done;
}

void extract(CPDFDocument& document, const CPDFFoundImage& found, const std::string& name,
             const Options& options, Output& output, ExtractedImage& result) {
  result.error = too_many_pixels(found, options);
  if (!result.error.empty()) return;
  if (options.format == FileFormat::native &&
      extract_native(document, found, name, options, output, result)) {
    return;
  }
  Picture picture = open_picture(document, found, options);
  result.passed_over = picture.passed_over;
  result.error = picture.problem;
  if (picture.reader == nullptr) return;

  CPDFRasterInfo info = described(picture.reader->info(), found);
  result.name = name + "." + suffix_of(options.format, info);
  std::unique_ptr<OutputFile> file = output.create(result.name, result.error);
  RowBounds bounds;
  bounds.max_blank_pixels = options.max_blank_pixels;
  Copied copied = Copied::unwritten;
  if (file != nullptr) {
    copied = copy_rows(picture, *make_writer(options.format, file->sink()), info, bounds);
  }
  std::string why_fewer;
  if (copied == Copied::cut && bounds.rows > 0) {
    why_fewer = delivery_of(picture).problem + "; " + only_first(bounds.rows, "written");
    // The height stands before the rows, so all is made once more.
    file.reset();
    file = output.create(result.name, result.error);
    picture = Picture();  // What it holds goes before the new one comes.
    picture = open_picture(document, found, options);
    result.error = picture.problem;
    if (picture.reader == nullptr) return;
    info.height = bounds.rows;
    bounds = RowBounds();
    if (file != nullptr) {
      copied = copy_rows(picture, *make_writer(options.format, file->sink()), info, bounds);
    }
  }
  result.output_failed = file == nullptr;
  if (file == nullptr) return;
  if (copied == Copied::unwritten) {
    result.error = file->failure();
    result.output_failed = !result.error.empty();
    if (!result.output_failed) result.error = "there is not enough memory to write it";
    return;
  }

  const Delivery delivery = delivery_of(picture);
  result.rows = delivery.rows;
  const auto& report = picture.loaded.report;
  if (why_fewer.empty() && report != nullptr && report->late && delivery.rows > 0) {
    why_fewer = delivery.problem + "; " + only_first(delivery.rows, "decoded");
  }
  result.error = why_fewer.empty() ? delivery.problem : why_fewer;
  if (copied == Copied::unread || (!delivery.complete && delivery.rows == 0)) {
    if (result.error.empty()) result.error = "its rows cannot be read";
    return;
  }
  result.complete = delivery.complete && copied == Copied::all;
  result.width = info.width;
  result.height = info.height;
  result.file = std::move(file);
}

}  // namespace

ExtractedImage extract_image(CPDFDocument& document, const CPDFFoundImage& found,
                             const std::string& name, const Options& options, Output& output) {
  ExtractedImage result;
  try {
    extract(document, found, name, options, output, result);
  } catch (const std::bad_alloc&) {
    result = ExtractedImage();
    result.error = "there is not enough memory for it";
  }
  return result;
}
