// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/icc_transform.h"

#include <algorithm>
#include <list>
#include <mutex>
#include <utility>

#include "pdf/cs/parsed/cie.h"

namespace {

/// The last transforms used, newest first, failed ones (null) too.
class Cache {
 public:
  using Value = std::shared_ptr<const CPDFIccTransform>;

  bool find(const std::vector<unsigned char>& profile, Value& value) {
    const std::lock_guard lock(mutex_);
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const Entry& e) { return e.profile == profile; });
    if (at == entries_.end()) return false;
    entries_.splice(entries_.begin(), entries_, at);
    value = at->value;
    return true;
  }

  void insert(std::vector<unsigned char> profile, const Value& value) {
    const std::lock_guard lock(mutex_);
    bytes_ += profile.size();
    entries_.push_front({std::move(profile), value});
    while (entries_.size() > 1 && (entries_.size() > max_entries || bytes_ > max_bytes)) {
      bytes_ -= entries_.back().profile.size();
      entries_.pop_back();
    }
  }

 private:
  static constexpr std::size_t max_entries = 16;
  static constexpr std::size_t max_bytes = std::size_t{16} << 20;

  struct Entry {
    std::vector<unsigned char> profile;
    Value value;
  };
  std::mutex mutex_;
  std::list<Entry> entries_;
  std::size_t bytes_ = 0;
};

Cache& cache() {
  static Cache the_cache;
  return the_cache;
}

}  // namespace

std::shared_ptr<const CPDFIccTransform> CPDFIccTransform::of(std::vector<unsigned char> profile) {
  std::shared_ptr<const CPDFIccTransform> result;
  if (profile.empty() || cache().find(profile, result)) return result;
  // Made outside the lock: two threads that meet here make the same transform twice, no more.
  result = make(profile);
  cache().insert(std::move(profile), result);
  return result;
}

std::shared_ptr<const CPDFIccTransform> CPDFIccTransform::make(
    const std::vector<unsigned char>& bytes) {
  const pdfbmp::LcmsProfile profile = pdfbmp::open_profile(bytes.data(), bytes.size());
  if (!profile) return nullptr;
  const cmsColorSpaceSignature space = cmsGetColorSpace(profile.get());
  const cmsUInt32Number channels = cmsChannelsOf(space);
  if (channels != 1 && channels != 3 && channels != 4) return nullptr;
  const cmsUInt32Number format = COLORSPACE_SH(static_cast<unsigned>(_cmsLCMScolorSpace(space))) |
                                 CHANNELS_SH(channels) | BYTES_SH(1);

  auto result = std::make_shared<CPDFIccTransform>();
  result->components_ = static_cast<int>(channels);
  result->is_lab_ = space == cmsSigLabData;
  result->transform_ =
      pdfbmp::transform_to_srgb(profile, format, TYPE_BGRA_8, cmsFLAGS_HIGHRESPRECALC);
  if (!result->transform_) return nullptr;
  result->is_srgb_ = space == cmsSigRgbData &&
                     pdfbmp::is_srgb([&](_KXRGBA* dst, const unsigned char* src, int pixels) {
                       result->convert(dst, src, pixels);
                     });
  return result;
}

void CPDFIccTransform::convert(_KXRGBA* dst, const unsigned char* src, int pixels) const {
  cmsDoTransform(transform_.get(), src, dst, static_cast<cmsUInt32Number>(pixels));
  for (int i = 0; i < pixels; ++i) dst[i].a = 255;  // The library leaves the alpha alone.
}
