// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/document.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

#include "kx/alloc.h"
#include "pdf/doc/image_time.h"
#include "pdf/doc/image_walk.h"
#include "pdf/doc/load_image.h"
#include "pdf/doc/object_table.h"
#include "pdf/doc/object_values.h"
#include "pdf/doc/open_qpdf.h"
#include "pdf/doc/page_list.h"
#include "pdf/doc/scene.h"
#include "pdf/doc/search_budget.h"

namespace {

constexpr int max_profile_bytes = 64 * 1024 * 1024;

class QpdfDocument final : public CPDFDocument {
 public:
  QpdfDocument(pdfbmp::OpenedFile file, std::shared_ptr<CPDFSource> source,
               const CPDFFilterLimits& limits)
      : file_bytes_(source->size()),
        time_(std::make_shared<pdfbmp::ImageTime>(limits.max_image_seconds, file_bytes_)),
        table_(std::move(file.qpdf), std::move(source), file.base, limits) {}

  void find_pages() {
    guarded([&] {
      pages_ = pdfbmp::list_pages(table_, pdfbmp::search_clock(table_.limits(), file_bytes_));
    });
  }

  int page_count() const override { return static_cast<int>(pages_.size()); }

  std::vector<std::string> warnings() const override { return table_.warnings(); }

  std::vector<CPDFFoundImage> find_images(int first, int last) override {
    std::vector<CPDFFoundImage> found;
    guarded([&] {
      pdfbmp::SearchBudget budget(table_, file_bytes_);
      found = pdfbmp::walk_images(table_, pages_, std::max(first, 1), std::min(last, page_count()),
                                  budget);
    });
    return found;
  }

  CPDFLoadedImage load_image(const CPDFFoundImage& found) override {
    if (time_->is_over()) {
      CPDFLoadedImage loaded;
      loaded.image.reset(new (std::nothrow) CPDFImage);
      loaded.problem = "the images before it took longer than the limits allow";
      return loaded;
    }
    if (found.inline_image != nullptr) {
      return pdfbmp::load_inline_image(table_, found.inline_image, *time_);
    }
    std::shared_ptr<const CPDFDictionary> spaces;
    guarded([&] { spaces = default_spaces(found.page); });
    return pdfbmp::load_image_object(table_, {found.object, found.generation}, spaces.get(),
                                     *time_);
  }

  std::unique_ptr<CPDFStream> raw_stream(const CPDFFoundImage& found) override {
    if (found.inline_image == nullptr) {
      return table_.make_raw_stream({found.object, found.generation});
    }
    const std::string& bytes = found.inline_image->data;
    if (bytes.size() > INT_MAX) return nullptr;
    auto* copy = static_cast<unsigned char*>(KXAlloc(bytes.size()));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, bytes.data(), bytes.size());
    const int length = static_cast<int>(bytes.size());
    CPDFStream* stream = CPDFStream::make_inline_stream(copy, length, nullptr, nullptr);
    if (stream == nullptr) {
      KXFree(copy);
    } else {
      stream->data_borrowed = 0;  // The copy is the stream's own.
    }
    return std::unique_ptr<CPDFStream>(stream);
  }

  CPDFXRefTable& xref() override { return table_; }

  std::string output_intent_profile() override {
    CPDFObjHolder profile;
    guarded([&] { find_profile(profile); });
    if (profile.stream() == nullptr) return {};
    const std::unique_ptr<CPDFStream> stream(table_.make_stream(profile.stream()));
    if (stream == nullptr) return {};
    int length = 0;
    unsigned char* bytes = stream->buffer_load(max_profile_bytes, length);
    std::string result;
    if (bytes != nullptr && length > 0) {
      result.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    }
    KXFree(bytes);
    return result;
  }

 private:
  /// Runs something over the parser with the lock held; what the parser throws becomes a warning.
  template <class Action>
  void guarded(Action action) {
    const auto guard = table_.lock();
    try {
      action();
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      table_.add_warning(pdfbmp::single_line(error.what()));
    }
  }

  /// The ColorSpace resources of a page that stand in for device spaces; null where it has none.
  /// Images of one page come one after the other: those of the last page asked for are kept.
  std::shared_ptr<const CPDFDictionary> default_spaces(int page) {
    if (page < 1 || page > page_count()) return nullptr;
    if (spaces_page_ == page) return spaces_;
    spaces_page_ = page;
    spaces_.reset();
    pdfbmp::SceneResources resources;
    resources.dict =
        pdfbmp::page_attribute(pages_[static_cast<std::size_t>(page) - 1], "/Resources");
    return spaces_ = pdfbmp::copy_spaces(resources, {"DefaultGray", "DefaultRGB", "DefaultCMYK"});
  }

  /// The profile of the first output intent that has one for CMYK.
  void find_profile(CPDFObj& out) {
    QPDFObjectHandle intents = table_.qpdf().getRoot().getKey("/OutputIntents");
    if (!intents.isArray()) return;
    for (const QPDFObjectHandle& item : intents.aitems()) {
      QPDFObjectHandle intent = item;
      if (!intent.isDictionary()) continue;
      QPDFObjectHandle profile = intent.getKey("/DestOutputProfile");
      if (!profile.isStream()) continue;
      QPDFObjectHandle components = profile.getDict().getKey("/N");
      if (!components.isInteger() || components.getIntValue() != 4) continue;
      pdfbmp::convert_object(profile, out);
      return;
    }
  }

  std::int64_t file_bytes_;
  std::shared_ptr<pdfbmp::ImageTime> time_;
  mutable CPDFObjectTable table_;
  std::vector<QPDFObjectHandle> pages_;
  int spaces_page_ = 0;
  std::shared_ptr<const CPDFDictionary> spaces_;
};

}  // namespace

std::unique_ptr<CPDFDocument> CPDFDocument::open(std::shared_ptr<CPDFSource> source,
                                                 const CPDFOpenOptions& options,
                                                 CPDFOpenStatus& status, std::string& message) {
  status = CPDFOpenStatus::unreadable;
  if (source == nullptr) {
    // Whoever could not open the file may have said why, in the same string.
    if (message.empty()) message = "there is no file";
    return nullptr;
  }
  pdfbmp::OpenedFile file = pdfbmp::open_qpdf(source, options.password);
  status = file.status;
  message = file.message;
  if (file.qpdf == nullptr) return nullptr;
  auto document =
      std::make_unique<QpdfDocument>(std::move(file), std::move(source), options.limits);
  document->find_pages();
  return document;
}
