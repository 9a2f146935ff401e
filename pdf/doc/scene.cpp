// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/scene.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <utility>

#include "kx/alloc.h"
#include "pdf/doc/content_walk.h"
#include "pdf/doc/describe.h"
#include "pdf/doc/object_values.h"
#include "pdf/doc/open_qpdf.h"
#include "pdf/doc/page_list.h"

namespace {

constexpr int max_height = 500;  ///< Of a graph whose parts were read at different times.
constexpr int max_content = 64 * 1024 * 1024;  ///< Of one stream.
constexpr std::size_t max_edges = 1'000'000;
constexpr int slow_step = 1000;             ///< What may take long, in steps of the budget.
constexpr std::int64_t stream_bytes = 128;  ///< That naming a stream of a page costs as content.

double number_of(QPDFObjectHandle value, double otherwise) {
  return value.isNumber() ? value.getNumericValue() : otherwise;
}

/// A rectangle with its corners in order; false for what is none.
bool read_box(QPDFObjectHandle array, std::array<double, 4>& box) {
  if (!array.isArray() || array.getArrayNItems() < 4) return false;
  for (int i = 0; i < 4; ++i)
    box[static_cast<std::size_t>(i)] = number_of(array.getArrayItem(i), 0);
  if (box[0] > box[2]) std::swap(box[0], box[2]);
  if (box[1] > box[3]) std::swap(box[1], box[3]);
  return true;
}

/// From default user space to points from the lower left corner of the crop box.
CPDFMatrix page_origin(QPDFObjectHandle page) {
  std::array<double, 4> box = {};
  if (!read_box(pdfbmp::page_attribute(page, "/CropBox"), box)) {
    read_box(pdfbmp::page_attribute(page, "/MediaBox"), box);
  }
  const double unit = std::max(number_of(page.getKey("/UserUnit"), 1.0), 1e-6);
  return {unit, 0, 0, unit, -box[0] * unit, -box[1] * unit};
}

/// From an appearance's form space to the page (ISO 32000-1, 12.5.5): its transformed box is
/// brought onto the annotation's rectangle.
CPDFMatrix appearance_matrix(QPDFObjectHandle form, QPDFObjectHandle rect) {
  const CPDFMatrix own = pdfbmp::matrix_from(form.getDict().getKey("/Matrix"));
  std::array<double, 4> box = {}, to = {};
  if (!read_box(form.getDict().getKey("/BBox"), box) || !read_box(rect, to)) return own;
  double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
  for (int corner = 0; corner < 4; ++corner) {
    const auto [x, y] = own.apply(box[corner & 1 ? 2 : 0], box[corner & 2 ? 3 : 1]);
    x0 = corner == 0 ? x : std::min(x0, x);
    y0 = corner == 0 ? y : std::min(y0, y);
    x1 = corner == 0 ? x : std::max(x1, x);
    y1 = corner == 0 ? y : std::max(y1, y);
  }
  const double sx = x1 > x0 ? (to[2] - to[0]) / (x1 - x0) : 1;
  const double sy = y1 > y0 ? (to[3] - to[1]) / (y1 - y0) : 1;
  return own.then({sx, 0, 0, sy, to[0] - x0 * sx, to[1] - y0 * sy});
}

}  // namespace

namespace pdfbmp {

CPDFMatrix matrix_from(QPDFObjectHandle array) {
  CPDFMatrix matrix;
  if (!array.isArray() || array.getArrayNItems() != 6) return matrix;
  double values[6] = {};
  for (int i = 0; i < 6; ++i) values[i] = number_of(array.getArrayItem(i), 0);
  return {values[0], values[1], values[2], values[3], values[4], values[5]};
}

std::string identity_of(const QPDFObjectHandle& object) {
  return object.isIndirect() ? object.getObjGen().unparse(' ') : std::string();
}

QPDFObjectHandle SceneResources::category(const char* name) const {
  QPDFObjectHandle resources = dict;
  return resources.isDictionary() ? resources.getKey(name) : QPDFObjectHandle::newNull();
}

QPDFObjectHandle SceneResources::find(const char* name, std::string_view key) const {
  QPDFObjectHandle entries = category(name);
  if (!entries.isDictionary() || key.empty()) return QPDFObjectHandle::newNull();
  return entries.getKey("/" + std::string(key));
}

std::shared_ptr<const CPDFDictionary> copy_spaces(const SceneResources& resources,
                                                  const std::vector<std::string>& names) {
  std::shared_ptr<CPDFDictionary> spaces;
  for (const std::string& name : names) {
    const QPDFObjectHandle space = resources.find("/ColorSpace", name);
    if (space.isDirectNull()) continue;
    if (spaces == nullptr) spaces = std::make_shared<CPDFDictionary>();
    if (CPDFObj* slot = spaces->set(name.c_str())) convert_entry(space, *slot);
  }
  return spaces;
}

void Scene::add_edge(SceneNode& node, const SceneEdge& edge) {
  if (!edge.to_image && edge.drawn) {
    const int height = nodes_[static_cast<std::size_t>(edge.target)].height + 1;
    if (height > max_height) return;
    node.height = std::max(node.height, height);
  }
  if (edge_count_ >= max_edges) {
    // As many steps as there are edges to be looked at.
    if (budget_.is_over(static_cast<std::int64_t>(node.edges.size() >> 8))) return;
    const bool known = std::any_of(node.edges.begin(), node.edges.end(), [&](const SceneEdge& e) {
      return e.target == edge.target && e.to_image == edge.to_image && e.drawn >= edge.drawn;
    });
    if (known) return;
  }
  node.edges.push_back(edge);
  ++edge_count_;
}

void Scene::list_node(SceneNode& node, int target) {
  if (target < 0) return;
  add_edge(node, {target, false, false, {}});
  if (nodes_[static_cast<std::size_t>(target)].state == SceneNode::State::unread) {
    unread_.push_back(target);
  }
}

int Scene::add_image(QPDFObjectHandle image) {
  if (!image.isStream()) return -1;
  QPDFObjectHandle subtype = image.getDict().getKey("/Subtype");
  const bool is_image =
      subtype.isNameAndEquals("/Image") || (!subtype.isName() && image.getDict().hasKey("/Width"));
  if (!is_image) return -1;
  const auto [at, is_new] = known_images_.try_emplace(image.getObjGen(), -1);
  if (!is_new || !has_room() || budget_.is_over(slow_step)) return at->second;
  const PDF_REF ref = ref_of(image);
  CPDFObjHolder value;
  convert_object(image, value);
  if (value.stream() == nullptr) return -1;
  SceneImage entry;
  entry.object = image.getObjGen();
  entry.record.object = ref.num;
  entry.record.generation = ref.gen;
  describe_image(value.stream()->dict, &table_, nullptr, entry.record);
  entry.record.bytes = table_.encoded_bytes(ref);
  images_.push_back(std::move(entry));
  return at->second = static_cast<int>(images_.size()) - 1;
}

bool Scene::has_room() {
  if (!budget_.has_room_for_image(images_.size())) is_full_ = true;
  return !is_over();
}

int Scene::add_inline_image(const SceneNode& node, std::size_t position, CPDFFoundImage record) {
  const auto start = std::prev(node.starts.upper_bound(position));
  const std::string key = start->second + " at " + std::to_string(position - start->first);
  const auto [at, is_new] = known_inline_images_.try_emplace(key, -1);
  if (!is_new || !has_room()) return at->second;
  images_.emplace_back().record = std::move(record);
  return at->second = static_cast<int>(images_.size()) - 1;
}

std::string Scene::load_content(SceneNode& node) {
  std::string content;
  for (QPDFObjectHandle stream : node.streams) {
    if (!stream.isStream()) continue;
    const std::int64_t left = budget_.content_left();
    if (left == 0 || budget_.is_over(slow_step)) break;
    CPDFObjHolder value;
    convert_object(stream, value);
    const std::unique_ptr<CPDFStream> decoded(table_.make_stream(value.stream()));
    if (decoded == nullptr) continue;
    int length = 0;
    const int limit = static_cast<int>(std::min<std::int64_t>(max_content, left));
    unsigned char* bytes = decoded->buffer_load(limit, length);
    const std::unique_ptr<unsigned char, void (*)(unsigned char*)> owned(
        bytes, [](unsigned char* p) { KXFree(p); });
    if (bytes == nullptr) continue;
    node.starts[content.size()] = identity_of(stream);
    content.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    content += '\n';  // Streams are joined where a token may end.
    budget_.take_content(length);
    // The loading stops within a chunk of the limit.
    unsigned char more = 0;
    if (decoded->read_block(&more, 1) < 1) continue;
    budget_.content_is_cut();
    if (limit < max_content) budget_.take_content(left);
  }
  return content;
}

void Scene::list_font(SceneNode& node, QPDFObjectHandle font) {
  if (!font.isDictionary() || !font.getKey("/CharProcs").isDictionary()) return;
  SceneResources own = node.resources;
  if (font.getKey("/Resources").isDictionary()) {
    own = {font.getKey("/Resources"), "font " + identity_of(font)};
  }
  for (const auto& glyph : font.getKey("/CharProcs").ditems()) {
    if (is_over()) return;
    list_node(node, stream_node(glyph.second, own, false));
  }
}

void Scene::list_resources(SceneNode& node) {
  const auto for_each = [&](const char* category, auto action) {
    QPDFObjectHandle entries = node.resources.category(category);
    if (!entries.isDictionary()) return;
    for (const auto& entry : entries.ditems()) {
      if (is_over()) return;
      action(entry.second);
    }
  };
  for_each("/XObject", [&](QPDFObjectHandle object) {
    const int image = add_image(object);
    if (image >= 0) {
      add_edge(node, {image, true, false, {}});
    } else {
      list_node(node, form_node(object, node.resources));
    }
  });
  for_each("/Pattern",
           [&](QPDFObjectHandle pattern) { list_node(node, form_node(pattern, node.resources)); });
  for_each("/ExtGState", [&](QPDFObjectHandle state) {
    if (!state.isDictionary() || !state.getKey("/SMask").isDictionary()) return;
    list_node(node, form_node(state.getKey("/SMask").getKey("/G"), node.resources));
  });
  for_each("/Font", [&](QPDFObjectHandle font) { list_font(node, font); });
}

int Scene::node_of(const std::string& key, const std::vector<QPDFObjectHandle>& streams,
                   const SceneResources& resources, bool owns_resources) {
  const auto known = known_nodes_.find(key);
  if (known != known_nodes_.end()) return known->second;
  if (!budget_.take_node()) return -1;
  const int index = static_cast<int>(nodes_.size());
  known_nodes_[key] = index;
  SceneNode& node = nodes_.emplace_back();
  node.streams = streams;
  node.resources = resources;
  node.owns_resources = owns_resources;
  return index;
}

int Scene::read(int index) {
  if (index < 0) return -1;
  SceneNode& node = nodes_[static_cast<std::size_t>(index)];
  const bool is_unread = node.state == SceneNode::State::unread;
  if (is_unread && budget_.is_within_nesting(depth_, max_height)) {
    node.state = SceneNode::State::being_read;
    ++depth_;
    try {
      std::string content = load_content(node);
      walk_content(*this, node, content, node.resources);
      if (node.owns_resources) list_resources(node);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {  // What was read until then stays.
      table_.add_warning(single_line(error.what()));
    }
    --depth_;
    node.state = SceneNode::State::read;
  }
  return node.state == SceneNode::State::read && !node.edges.empty() ? index : -1;
}

int Scene::stream_node(QPDFObjectHandle stream, const SceneResources& resources,
                       bool owns_resources) {
  if (!stream.isStream()) return -1;
  return node_of(identity_of(stream) + " in " + resources.identity, {stream}, resources,
                 owns_resources);
}

int Scene::form_node(QPDFObjectHandle form, const SceneResources& outer) {
  if (!form.isStream()) return -1;
  QPDFObjectHandle own = form.getDict().getKey("/Resources");
  if (!own.isDictionary()) return stream_node(form, outer, false);
  std::string identity = identity_of(own);
  if (identity.empty()) identity = "form " + identity_of(form);
  return stream_node(form, {own, identity}, true);
}

int Scene::add_stream(QPDFObjectHandle stream, const SceneResources& resources) {
  return read(stream_node(stream, resources, false));
}

int Scene::add_form(QPDFObjectHandle form, const SceneResources& outer) {
  return read(form_node(form, outer));
}

std::vector<QPDFObjectHandle> Scene::content_streams(QPDFObjectHandle page) {
  QPDFObjectHandle contents = page.getKey("/Contents");
  if (!contents.isArray()) return {contents};
  std::vector<QPDFObjectHandle> streams;
  for (const QPDFObjectHandle& stream : contents.aitems()) {
    if (budget_.content_left() == 0) break;
    budget_.take_content(stream_bytes);
    streams.push_back(stream);
  }
  return streams;
}

int Scene::add_page(QPDFObjectHandle page) {
  const CPDFMatrix origin = page_origin(page);
  SceneResources resources = {page_attribute(page, "/Resources"), {}};
  resources.identity = identity_of(resources.dict);
  if (resources.identity.empty()) resources.identity = "page " + identity_of(page);

  const std::vector<QPDFObjectHandle> streams = content_streams(page);
  std::string key = "page of";
  for (const QPDFObjectHandle& stream : streams) key += " " + identity_of(stream);
  const int content = read(node_of(key + " in " + resources.identity, streams, resources, true));

  if (budget_.is_over()) budget_.give_grace();

  const int index = static_cast<int>(nodes_.size());
  SceneNode& node = nodes_.emplace_back();
  node.state = SceneNode::State::read;
  if (content >= 0) add_edge(node, {content, false, true, origin});
  add_annotations(node, page, resources, origin);
  while (!unread_.empty() && !is_over()) {
    const int listed = unread_.back();
    unread_.pop_back();
    read(listed);
  }
  if (budget_.is_over()) budget_.give_grace();
  return index;
}

void Scene::add_annotations(SceneNode& node, QPDFObjectHandle page, const SceneResources& resources,
                            const CPDFMatrix& origin) {
  QPDFObjectHandle annotations = page.getKey("/Annots");
  if (!annotations.isArray()) return;
  for (QPDFObjectHandle annotation : annotations.aitems()) {
    if (is_over()) return;
    if (!annotation.isDictionary()) continue;
    QPDFObjectHandle appearances = annotation.getKey("/AP");
    if (!appearances.isDictionary()) continue;
    QPDFObjectHandle normal = appearances.getKey("/N");
    const QPDFObjectHandle rect = annotation.getKey("/Rect");
    const auto add = [&](QPDFObjectHandle form, bool drawn) {
      const int target = add_form(form, resources);
      if (target < 0) return;
      add_edge(node, {target, false, drawn, appearance_matrix(form, rect).then(origin)});
    };
    if (normal.isStream()) {
      add(normal, true);
    } else if (normal.isDictionary()) {
      QPDFObjectHandle state = annotation.getKey("/AS");
      for (const auto& entry : normal.ditems()) {
        if (is_over()) return;
        add(entry.second, state.isNameAndEquals(entry.first));
      }
    }
  }
}

}  // namespace pdfbmp
