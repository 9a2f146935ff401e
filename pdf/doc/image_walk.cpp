// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/image_walk.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <iterator>
#include <map>
#include <new>
#include <utility>

#include "pdf/doc/object_values.h"
#include "pdf/doc/open_qpdf.h"
#include "pdf/doc/scene.h"

namespace {

constexpr std::size_t max_placements = 500'000;  ///< Of all images together.
constexpr int max_steps = 200'000;               ///< Edges followed for the placements of a page.

CPDFPlacement place(int page, const CPDFMatrix& m, const CPDFFoundImage& image) {
  CPDFPlacement placement;
  placement.page = page;
  placement.matrix = {m.a, m.b, m.c, m.d, m.e, m.f};
  const auto span = [](double origin, double p, double q) {
    return std::pair(origin + std::min(p, 0.0) + std::min(q, 0.0),
                     origin + std::max(p, 0.0) + std::max(q, 0.0));
  };
  const auto [x0, x1] = span(m.e, m.a, m.c);
  const auto [y0, y1] = span(m.f, m.b, m.d);
  placement.bbox = {x0, y0, x1, y1};
  const auto ppi = [](int samples, double points) {
    return points > 0 ? std::max(samples, 0) * 72.0 / points : 0;
  };
  placement.ppi = {ppi(image.width, std::hypot(m.a, m.b)), ppi(image.height, std::hypot(m.c, m.d))};
  return placement;
}

/// What the walk learns of one image.
struct Use {
  std::vector<int> drawn_on;                      ///< Pages, ascending.
  std::vector<int> listed_on;                     ///< Pages whose resources name it.
  std::size_t drawn_order = 0, listed_order = 0;  ///< Of the first such page; 0 for none.
  std::vector<CPDFPlacement> placements;

  const std::vector<int>& pages() const { return drawn_on.empty() ? listed_on : drawn_on; }
  std::size_t order() const { return drawn_on.empty() ? listed_order : drawn_order; }
};

class Finder {
  using SceneEdge = pdfbmp::SceneEdge;

 public:
  Finder(CPDFObjectTable& table, pdfbmp::SearchBudget& budget)
      : table_(table), budget_(budget), scene_(table, budget) {}

  void add_page(QPDFObjectHandle page, int number) {
    const int root = scene_.add_page(page);
    marks_.resize(scene_.nodes().size());
    uses_.resize(scene_.images().size());
    page_ = number;
    // What is painted comes first; then what only stands in the resources.
    collect_drawn(root);
    collect_listed(root);
    steps_ = 0;
    follow(root, {});
  }

  std::vector<CPDFFoundImage> finish() {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < uses_.size(); ++i) {
      if (uses_[i].order() > 0) order.push_back(i);
    }
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return uses_[a].order() < uses_[b].order(); });
    for (const std::size_t i : order) {
      if (budget_.is_over()) break;
      find_masks(i);
    }
    std::vector<CPDFFoundImage> found;
    for (const std::size_t i : order) emit(i, found);
    return found;
  }

 private:
  struct Mark {
    int drawn = 0, listed = 0;  ///< The last page on which the node was met this way.
  };

  const std::vector<SceneEdge>& edges_of(int node) const {
    return scene_.nodes()[static_cast<std::size_t>(node)].edges;
  }

  void note(int image, bool drawn) {
    Use& use = uses_[static_cast<std::size_t>(image)];
    std::vector<int>& pages = drawn ? use.drawn_on : use.listed_on;
    if (!pages.empty() && (pages.back() == page_ || !budget_.take_page_note())) return;
    if (pages.empty()) (drawn ? use.drawn_order : use.listed_order) = ++order_;
    pages.push_back(page_);
  }

  /// Notes the images that a node paints, each node once a page, in the order of painting.
  void collect_drawn(int node) {
    if (std::exchange(marks_[static_cast<std::size_t>(node)].drawn, page_) == page_) return;
    for (const SceneEdge& edge : edges_of(node)) {
      if (budget_.is_over()) return;
      if (!edge.drawn) continue;
      if (edge.to_image) {
        note(edge.target, true);
      } else {
        collect_drawn(edge.target);
      }
    }
  }

  /// Notes the images that can be reached in any way. Not by recursion: resources lead far.
  void collect_listed(int root) {
    std::vector<int> ahead = {root};
    marks_[static_cast<std::size_t>(root)].listed = page_;
    while (!ahead.empty()) {
      const int node = ahead.back();
      ahead.pop_back();
      for (const SceneEdge& edge : edges_of(node)) {
        if (budget_.is_over()) return;
        if (edge.to_image) {
          note(edge.target, false);
        } else if (std::exchange(marks_[static_cast<std::size_t>(edge.target)].listed, page_) !=
                   page_) {
          ahead.push_back(edge.target);
        }
      }
    }
  }

  /// Notes where the page paints its images, along every path.
  void follow(int node, const CPDFMatrix& matrix) {
    for (const SceneEdge& edge : edges_of(node)) {
      if (budget_.is_over()) return;
      if (!edge.drawn) continue;
      if (++steps_ > max_steps || placements_ >= max_placements) return;
      const CPDFMatrix whole = edge.matrix.then(matrix);
      if (!edge.to_image) {
        follow(edge.target, whole);
        continue;
      }
      const auto index = static_cast<std::size_t>(edge.target);
      uses_[index].placements.push_back(place(page_, whole, scene_.images()[index].record));
      ++placements_;
    }
  }

  /// The Mask and SMask streams of an image become images of their own, unless a page paints them.
  void find_masks(std::size_t image) {
    const CPDFFoundImage& record = scene_.images()[image].record;
    if (record.object == 0) return;
    QPDFObjectHandle dict = table_.qpdf().getObject(record.object, record.generation).getDict();
    for (const auto kind : {CPDFImageKind::mask, CPDFImageKind::smask}) {
      QPDFObjectHandle mask = dict.getKey(kind == CPDFImageKind::mask ? "/Mask" : "/SMask");
      if (!mask.isStream() || mask.getObjectID() == record.object) continue;
      const int target = scene_.add_image(mask);
      if (target < 0) continue;
      uses_.resize(scene_.images().size());
      const auto index = static_cast<std::size_t>(target);
      if (!uses_[index].drawn_on.empty()) continue;
      masks_of_[image].push_back(index);
      if (is_mask_.try_emplace(index, record.object).second) {
        CPDFFoundImage& own = scene_.images()[index].record;
        own.kind = kind;
        own.mask_of = record.object;
        uses_[index].listed_on.clear();
        uses_[index].placements.clear();
      }
      lend(uses_[image], uses_[index], scene_.images()[index].record);
    }
  }

  /// A mask stands wherever its image does.
  void lend(const Use& image, Use& mask, const CPDFFoundImage& record) {
    std::vector<int> pages;
    std::set_union(mask.listed_on.begin(), mask.listed_on.end(), image.pages().begin(),
                   image.pages().end(), std::back_inserter(pages));
    mask.listed_on = std::move(pages);
    for (const CPDFPlacement& at : image.placements) {
      if (placements_ >= 2 * max_placements) break;
      const auto& m = at.matrix;
      mask.placements.push_back(place(at.page, {m[0], m[1], m[2], m[3], m[4], m[5]}, record));
      ++placements_;
    }
  }

  void emit(std::size_t image, std::vector<CPDFFoundImage>& found) {
    if (is_mask_.count(image) != 0) return;
    put(image, found);
    const auto masks = masks_of_.find(image);
    if (masks == masks_of_.end()) return;
    for (const std::size_t mask : masks->second) {
      // One that several images share stands behind the first.
      if (std::exchange(is_mask_[mask], 0) != 0) put(mask, found);
    }
  }

  void put(std::size_t image, std::vector<CPDFFoundImage>& found) {
    CPDFFoundImage record = std::move(scene_.images()[image].record);
    Use& use = uses_[image];
    record.pages = use.pages();
    record.page = record.pages.empty() ? 0 : record.pages.front();
    record.placements = std::move(use.placements);
    found.push_back(std::move(record));
  }

  CPDFObjectTable& table_;
  pdfbmp::SearchBudget& budget_;
  pdfbmp::Scene scene_;
  std::vector<Mark> marks_;  ///< A node's.
  std::vector<Use> uses_;    ///< An image's.
  std::map<std::size_t, std::vector<std::size_t>> masks_of_;
  std::map<std::size_t, int> is_mask_;  ///< The first image's object; 0 once it is put out.
  int page_ = 0;
  int steps_ = 0;
  std::size_t order_ = 0;
  std::size_t placements_ = 0;
};

}  // namespace

namespace pdfbmp {

std::vector<CPDFFoundImage> walk_images(CPDFObjectTable& table,
                                        const std::vector<QPDFObjectHandle>& pages, int first,
                                        int last, SearchBudget& budget) {
  Finder finder(table, budget);
  for (int page = first; page <= last && !budget.is_in_grace(); ++page) {
    try {
      finder.add_page(pages[static_cast<std::size_t>(page) - 1], page);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      table.add_warning("page " + std::to_string(page) + ": " + single_line(error.what()));
    }
  }
  return finder.finish();
}

}  // namespace pdfbmp
