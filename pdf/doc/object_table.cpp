// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/object_table.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <qpdf/Pipeline.hh>
#include <qpdf/QPDFExc.hh>
#include <utility>

#include "kx/alloc.h"
#include "pdf/doc/object_values.h"
#include "pdf/doc/open_qpdf.h"
#include "pdf/filter/filter_chain.h"
#include "pdf/filter/source_stream.h"

namespace {

constexpr std::size_t max_warnings = 1000;
constexpr std::size_t max_failures = 10000;

/// The end of the parser's pipeline: counts what comes, and keeps it where asked to.
class Collector final : public Pipeline {
 public:
  explicit Collector(bool keep) : Pipeline("", nullptr), keep_(keep) {}
  ~Collector() override { KXFree(bytes_); }

  void write(unsigned char const* data, size_t n) override {
    if (keep_ && !failed_ && !append(data, n)) failed_ = true;
    count_ += static_cast<std::int64_t>(n);
  }
  void finish() override {}

  std::int64_t count() const { return count_; }

  /// A stream that owns the bytes; null where they did not fit.
  std::unique_ptr<CPDFStream> take() {
    if (failed_) return nullptr;
    std::unique_ptr<CPDFStream> stream(new (std::nothrow)
                                           CPDFStream(bytes_, static_cast<int>(count_), 0));
    if (stream != nullptr) bytes_ = nullptr;
    return stream;
  }

 private:
  bool append(unsigned char const* data, size_t n) {
    const std::uint64_t needed = static_cast<std::uint64_t>(count_) + n;
    if (needed > INT_MAX) return false;
    if (needed > capacity_) {
      const auto grown = static_cast<std::size_t>(needed + needed / 2);
      void* bytes = KXRealloc(bytes_, grown);
      if (bytes == nullptr) return false;
      bytes_ = static_cast<unsigned char*>(bytes);
      capacity_ = grown;
    }
    if (n > 0) std::memcpy(bytes_ + count_, data, n);
    return true;
  }

  bool keep_;
  bool failed_ = false;
  unsigned char* bytes_ = nullptr;
  std::size_t capacity_ = 0;
  std::int64_t count_ = 0;
};

/// Sends the stream's data through the parser, undecoded but decrypted.
void pipe_raw(QPDFObjectHandle stream, Collector& collector) {
  stream.pipeStreamData(&collector, nullptr, 0, qpdf_dl_none, true, false);
}

}  // namespace

CPDFObjectTable::CPDFObjectTable(std::shared_ptr<QPDF> qpdf, std::shared_ptr<CPDFSource> source,
                                 std::int64_t base, const CPDFFilterLimits& limits)
    : qpdf_(std::move(qpdf)), source_(std::move(source)), base_(base), limits_(limits) {}

int CPDFObjectTable::get_entity(CPDFObj& out, const PDF_REF& ref) {
  out.free();
  try {
    const auto guard = lock();
    pdfbmp::convert_object(qpdf_->getObject(ref.num, ref.gen), out);
  } catch (...) {
    out.free();  // What cannot be read is as if it were not there.
  }
  return out.type != PDF_EMPTY ? 1 : 0;
}

CPDFStream* CPDFObjectTable::make_stream(const CPDFStreamRec* rec) {
  if (rec == nullptr) return nullptr;
  try {
    const PDF_REF ref = {static_cast<int>(static_cast<std::uint32_t>(rec->location[1])),
                         static_cast<int>(rec->location[1] >> 32)};
    auto report = std::make_shared<CPDFDecodeReport>();
    std::unique_ptr<CPDFStream> stream =
        pdfbmp::make_filter_chain(make_raw_stream(ref), rec->dict, this, limits_, report);
    const auto guard = lock();
    if (stream != nullptr) {
      failures_.erase(ref.num);
    } else if (failures_.size() < max_failures) {
      failures_[ref.num] = report->problem.empty() ? "the data cannot be read" : report->problem;
    }
    return stream.release();
  } catch (...) {
    return nullptr;
  }
}

std::int64_t CPDFObjectTable::available(std::int64_t offset) const {
  return std::max<std::int64_t>(0, source_->size() - offset);
}

bool CPDFObjectTable::ends_there(std::int64_t offset) {
  char text[16] = {};
  const std::int64_t got = source_->read_at(offset, text, sizeof text - 1);
  if (got <= 0) return false;
  const char* word = text + std::strspn(text, "\r\n \t");
  return std::strncmp(word, "endstream", 9) == 0;
}

CPDFObjectTable::Place CPDFObjectTable::find_data(QPDFObjectHandle stream) {
  Place place;
  if (qpdf_->isEncrypted()) return place;
  const std::int64_t parsed = stream.getParsedOffset();
  if (parsed <= 0) return place;
  const std::int64_t offset = base_ + parsed;
  QPDFObjectHandle length = stream.getDict().getKey("/Length");
  if (length.isInteger()) {
    place.length = length.getIntValue();
    const bool fits = place.length >= 0 && place.length <= available(offset);
    if (fits && ends_there(offset + place.length)) {
      place.offset = offset;
      return place;
    }
  }
  // The parser found the end by another way when it read the object, and does not tell it but by
  // sending the data.
  Collector counter(false);
  pipe_raw(stream, counter);
  place.length = std::min(counter.count(), available(offset));
  place.offset = offset;
  return place;
}

std::unique_ptr<CPDFStream> CPDFObjectTable::load_through_parser(QPDFObjectHandle stream) {
  Collector collector(true);
  pipe_raw(stream, collector);
  return collector.take();
}

std::unique_ptr<CPDFStream> CPDFObjectTable::make_raw_stream(const PDF_REF& ref) {
  try {
    const auto guard = lock();
    QPDFObjectHandle stream = qpdf_->getObject(ref.num, ref.gen);
    if (!stream.isStream()) return nullptr;
    const Place place = find_data(stream);
    if (place.offset < 0) return load_through_parser(stream);
    return pdfbmp::make_source_stream(source_, place.offset, place.length);
  } catch (...) {
    return nullptr;
  }
}

std::int64_t CPDFObjectTable::encoded_bytes(const PDF_REF& ref) {
  try {
    const auto guard = lock();
    QPDFObjectHandle stream = qpdf_->getObject(ref.num, ref.gen);
    if (!stream.isStream()) return 0;
    const Place place = find_data(stream);
    if (place.offset >= 0) return place.length;
    Collector counter(false);
    pipe_raw(stream, counter);
    return counter.count();
  } catch (...) {
    return 0;
  }
}

std::int64_t CPDFObjectTable::object_count() {
  return static_cast<std::int64_t>(qpdf_->getXRefTable().size());
}

std::string CPDFObjectTable::failure_of(int object) {
  const auto guard = lock();
  const auto found = failures_.find(object);
  return found != failures_.end() ? found->second : std::string();
}

void CPDFObjectTable::keep_warnings() {
  for (const QPDFExc& warning : qpdf_->getWarnings()) {
    // The parser's own text begins with a name that it was given for the file.
    std::string place = warning.getObject();
    if (warning.getFilePosition() > 0) {
      place +=
          (place.empty() ? "offset " : ", offset ") + std::to_string(warning.getFilePosition());
    }
    add_warning(
        pdfbmp::single_line((place.empty() ? "" : place + ": ") + warning.getMessageDetail()));
  }
}

std::vector<std::string> CPDFObjectTable::warnings() {
  const auto guard = lock();
  keep_warnings();
  return warnings_;
}

void CPDFObjectTable::add_warning(const std::string& line) {
  const auto guard = lock();
  if (warnings_.size() < max_warnings) warnings_.push_back(line);
}
