// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

#include "pdf/doc/found_image.h"
#include "pdf/doc/matrix.h"
#include "pdf/doc/object_table.h"
#include "pdf/doc/search_budget.h"

namespace pdfbmp {

// The pages of a document as a graph. A node is a content stream (of a page, form, pattern, glyph,
// appearance or soft-mask group), read once however often it is used; its edges lead to the images
// it paints and the streams it runs, each with the transformation in force there. A page's
// placements are the paths from it to its images. What only stands in the resources has edges too,
// so that it is found; those do not count as painted, and alone may lead in a circle.

struct SceneEdge {
  int target = 0;  ///< Index of an image or node.
  bool to_image = false;
  bool drawn = false;  ///< False for what stands in the resources only.
  CPDFMatrix matrix;   ///< From the target's space to the node's.
};

/// The resources that names in a content stream are looked up in. The identity tells two apart, so
/// that a form that has none of its own is read once for each it is used with.
struct SceneResources {
  QPDFObjectHandle dict;
  std::string identity;

  /// The entry `name` (without slash) of a category ("/XObject"); null object where absent.
  QPDFObjectHandle find(const char* category, std::string_view name) const;
  QPDFObjectHandle category(const char* category) const;
};

struct SceneNode {
  enum class State { unread, being_read, read } state = State::unread;
  std::vector<QPDFObjectHandle> streams;  ///< Read one after the other.
  SceneResources resources;
  bool owns_resources = false;                ///< Lists them; otherwise whoever lent them does.
  std::map<std::size_t, std::string> starts;  ///< Where each stream begins in the content read.
  std::vector<SceneEdge> edges;
  int height = 0;  ///< Painted edges on the longest way down to another node.
};

struct SceneImage {
  CPDFFoundImage record;  ///< Described, without pages and placements.
  QPDFObjGen object;
};

class Scene {
 public:
  Scene(CPDFObjectTable& table, SearchBudget& budget) : table_(table), budget_(budget) {}

  /// The node of a page with its annotations; its space is points from the page's lower left.
  int add_page(QPDFObjectHandle page);

  const std::deque<SceneNode>& nodes() const { return nodes_; }
  std::deque<SceneImage>& images() { return images_; }

  /// The node of a form that is painted, read; -1 where nothing is to be found in it, where it is
  /// being read (it leads to itself) or nested too deep, and for what is no form. `outer` serves
  /// forms without resources.
  int add_form(QPDFObjectHandle form, const SceneResources& outer);

  /// The same for a content stream whose dictionary carries no resources.
  int add_stream(QPDFObjectHandle stream, const SceneResources& resources);

  /// The image of an image XObject, -1 where it is none.
  int add_image(QPDFObjectHandle image);

  /// The image of an inline image at a position of the node's content. The same one for whatever
  /// nodes have its stream: a stream can be read with more than one set of resources.
  int add_inline_image(const SceneNode& node, std::size_t position, CPDFFoundImage record);

  /// Whether the search ends: an image was left out because there are as many as the limits allow,
  /// or the time is over.
  bool is_over() { return is_full_ || budget_.is_in_grace() || budget_.is_over(); }

  /// Adds an edge while there is room for more; the first to a target always finds some.
  void add_edge(SceneNode& node, const SceneEdge& edge);

  CPDFObjectTable& table() { return table_; }
  CPDFWorkClock& clock() { return budget_.clock(); }

 private:
  int form_node(QPDFObjectHandle form, const SceneResources& outer);
  int stream_node(QPDFObjectHandle stream, const SceneResources& resources, bool owns_resources);
  int node_of(const std::string& key, const std::vector<QPDFObjectHandle>& streams,
              const SceneResources& resources, bool owns_resources);
  int read(int index);
  bool has_room();  ///< For one more image.
  std::vector<QPDFObjectHandle> content_streams(QPDFObjectHandle page);
  std::string load_content(SceneNode& node);
  void list_resources(SceneNode& node);
  void list_node(SceneNode& node, int target);
  void list_font(SceneNode& node, QPDFObjectHandle font);
  void add_annotations(SceneNode& node, QPDFObjectHandle page, const SceneResources& resources,
                       const CPDFMatrix& origin);

  CPDFObjectTable& table_;
  SearchBudget& budget_;
  std::size_t edge_count_ = 0;
  int depth_ = 0;
  bool is_full_ = false;
  std::deque<SceneNode> nodes_;  // Deques: references stay good while more is added.
  std::deque<SceneImage> images_;
  std::map<std::string, int> known_nodes_;
  std::map<QPDFObjGen, int> known_images_;
  std::map<std::string, int> known_inline_images_;
  std::vector<int> unread_;  ///< Listed nodes that nothing painted so far.
};

/// Copies ColorSpace resources of these names; null where there are none.
std::shared_ptr<const CPDFDictionary> copy_spaces(const SceneResources& resources,
                                                  const std::vector<std::string>& names);

/// The transformation that an array of six numbers gives; the identity for anything else.
CPDFMatrix matrix_from(QPDFObjectHandle array);

/// "12 0", the object's own numbers; empty for a direct object.
std::string identity_of(const QPDFObjectHandle& object);

}  // namespace pdfbmp
