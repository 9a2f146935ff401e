// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

#include "pdf/filter/filter.h"
#include "pdf/filter/source.h"
#include "pdf/obj/stream.h"
#include "pdf/obj/xref.h"

/// The objects and streams of a file that the parser has opened. The parser serves one thread at a
/// time, so that every call takes the lock; the streams that come out of it do not.
class CPDFObjectTable final : public CPDFXRefTable {
 public:
  CPDFObjectTable(std::shared_ptr<QPDF> qpdf, std::shared_ptr<CPDFSource> source, std::int64_t base,
                  const CPDFFilterLimits& limits);

  int get_entity(CPDFObj& out, const PDF_REF& ref) override;
  CPDFStream* make_stream(const CPDFStreamRec* rec) override;

  /// As make_stream, before any filter; decrypted.
  std::unique_ptr<CPDFStream> make_raw_stream(const PDF_REF& ref);

  /// Encoded bytes of a stream, 0 for what is none.
  std::int64_t encoded_bytes(const PDF_REF& ref);

  /// Why make_stream gave none for an object the last time, in words; empty where it did.
  std::string failure_of(int object);

  /// Lines that the parser, and others through add_warning, had to say: the first thousand.
  std::vector<std::string> warnings();
  void add_warning(const std::string& line);

  /// Objects that the file's cross-reference table knows. The caller holds the lock. Slow.
  std::int64_t object_count();

  QPDF& qpdf() { return *qpdf_; }
  std::unique_lock<std::recursive_mutex> lock() {
    return std::unique_lock<std::recursive_mutex>(mutex_);
  }
  const CPDFFilterLimits& limits() const { return limits_; }

 private:
  /// A run of the source's bytes.
  struct Place {
    std::int64_t offset = -1;  ///< Negative where the bytes do not stand in the file as they are.
    std::int64_t length = 0;
  };

  Place find_data(QPDFObjectHandle stream);
  bool ends_there(std::int64_t offset);
  std::int64_t available(std::int64_t offset) const;
  std::unique_ptr<CPDFStream> load_through_parser(QPDFObjectHandle stream);
  void keep_warnings();

  std::recursive_mutex mutex_;
  std::shared_ptr<QPDF> qpdf_;
  std::shared_ptr<CPDFSource> source_;
  std::int64_t base_;
  CPDFFilterLimits limits_;
  std::map<int, std::string> failures_;
  std::vector<std::string> warnings_;
};

namespace pdfbmp {

/// How many of something a file may reasonably lead to: some for each of its objects, and a
/// generous number where they are few. The objects are counted when they first matter.
class ObjectBound {
 public:
  ObjectBound(CPDFObjectTable& table, std::int64_t per_object)
      : table_(table), per_object_(per_object) {}

  bool holds(std::int64_t count) {
    if (count <= most_) return true;
    if (!is_counted_) most_ += per_object_ * table_.object_count();
    is_counted_ = true;
    return count <= most_;
  }

 private:
  CPDFObjectTable& table_;
  std::int64_t per_object_;
  std::int64_t most_ = 65'536;
  bool is_counted_ = false;
};

}  // namespace pdfbmp
