// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/parsed/icc_transform.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
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

/// Whether two transforms agree over a few thousand colours: nothing is off by more than two
/// levels, and less than one value in a thousand by more than one.
bool agree(cmsHTRANSFORM a, cmsHTRANSFORM b, cmsUInt32Number channels) {
  constexpr cmsUInt32Number pixels = 4096;
  std::vector<unsigned char> samples(pixels * channels), of_a(pixels * 4), of_b(pixels * 4);
  std::uint32_t state = 1;
  for (unsigned char& sample : samples) {
    state = state * 1664525U + 1013904223U;
    const std::uint32_t level = state >> 24;
    // The outermost levels of each ink are where grids differ most, and what pictures hold most.
    const std::uint32_t outer = level < 128 ? level / 16 : 255 - (255 - level) / 16;
    sample = static_cast<unsigned char>((state >> 20 & 1) != 0 ? outer : level);
  }
  cmsDoTransform(a, samples.data(), of_a.data(), pixels);
  cmsDoTransform(b, samples.data(), of_b.data(), pixels);
  std::size_t off_by_two = 0;
  for (std::size_t i = 0; i < of_a.size(); ++i) {
    const int off = std::abs(of_a[i] - of_b[i]);
    if (off > 2) return false;
    if (off == 2) ++off_by_two;
  }
  return off_by_two * 1000 < of_a.size();
}

/// Little CMS resamples what is no matrix and curves into a grid of its own. That makes it five
/// times as fast and, where the grid of the profile does not fit that one, wrong by some levels.
/// The smallest grid that serves is taken, or else none.
pdfbmp::LcmsTransform fastest_true(const pdfbmp::LcmsProfile& profile, cmsUInt32Number format,
                                   cmsUInt32Number channels) {
  const auto with = [&](cmsUInt32Number flags) {
    return pdfbmp::transform_to_srgb(profile, format, TYPE_BGRA_8, flags);
  };
  pdfbmp::LcmsTransform exact = with(cmsFLAGS_NOOPTIMIZE);
  if (!exact || channels == 1) return exact;
  // Nodes an axis. The 30 cells of 31 nodes, and the 60 of 61, fall together with those of most
  // coarse grids.
  const cmsUInt32Number three[] = {cmsFLAGS_GRIDPOINTS(33U), cmsFLAGS_GRIDPOINTS(61U)};
  const cmsUInt32Number four[] = {cmsFLAGS_GRIDPOINTS(23U), cmsFLAGS_GRIDPOINTS(31U)};
  for (const cmsUInt32Number flags : channels == 4 ? four : three) {
    pdfbmp::LcmsTransform fast = with(flags);
    if (fast && agree(fast.get(), exact.get(), channels)) return fast;
  }
  return exact;
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
  result->transform_ = fastest_true(profile, format, channels);
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
