// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/doc/content_walk.h"

#include <map>
#include <utility>
#include <vector>

#include "pdf/doc/content_reader.h"
#include "pdf/doc/describe.h"
#include "pdf/doc/glyphs.h"
#include "pdf/doc/inline_data.h"
#include "pdf/doc/object_values.h"
#include "pdf/obj/access.h"

namespace {

constexpr std::size_t max_saved_states = 512;
constexpr std::size_t max_fonts = 256;

/// What q saves and Q restores.
struct State {
  CPDFMatrix ctm;
  std::shared_ptr<const pdfbmp::GlyphFont> font;
  double size = 0;
  double char_space = 0, word_space = 0, scale = 1, leading = 0, rise = 0;
};

class Walk {
 public:
  Walk(pdfbmp::Scene& scene, pdfbmp::SceneNode& node, const pdfbmp::SceneResources& resources)
      : scene_(scene), node_(node), resources_(resources) {}

  void run(std::string& content) {
    CPDFContentReader reader(content);
    while (!scene_.is_over() && reader.next()) {
      const auto row = operators().find(reader.operation());
      if (row != operators().end()) (this->*row->second)(reader);
    }
  }

 private:
  using Handler = void (Walk::*)(CPDFContentReader&);
  static const std::map<std::string, Handler>& operators();

  void draw(int target, bool to_image, const CPDFMatrix& matrix) {
    if (target >= 0) scene_.add_edge(node_, {target, to_image, true, matrix});
  }

  static CPDFMatrix operand_matrix(const CPDFContentReader& in) {
    return {in.number(5), in.number(4), in.number(3), in.number(2), in.number(1), in.number(0)};
  }

  /// A form's node, placed by its own matrix in the space that `outer` leads from.
  void draw_form(QPDFObjectHandle form, const CPDFMatrix& outer) {
    const int target = scene_.add_form(form, resources_);
    if (target < 0) return;
    draw(target, false, pdfbmp::matrix_from(form.getDict().getKey("/Matrix")).then(outer));
  }

  // Graphics state.

  void save(CPDFContentReader&) {
    if (saved_.size() < max_saved_states) {
      saved_.push_back(state_);
    } else {
      ++unsaved_;
    }
  }

  void restore(CPDFContentReader&) {
    if (unsaved_ > 0) {
      --unsaved_;
    } else if (!saved_.empty()) {
      state_ = saved_.back();
      saved_.pop_back();
    }
  }

  void concatenate(CPDFContentReader& in) { state_.ctm = operand_matrix(in).then(state_.ctm); }

  void set_state(CPDFContentReader& in) {
    QPDFObjectHandle entry = resources_.find("/ExtGState", in.name());
    if (!entry.isDictionary()) return;
    QPDFObjectHandle mask = entry.getKey("/SMask");
    if (mask.isDictionary()) draw_form(mask.getKey("/G"), state_.ctm);
    QPDFObjectHandle font = entry.getKey("/Font");
    if (font.isArray() && font.getArrayNItems() == 2) {
      set_font(font.getArrayItem(0), "gs " + std::string(in.name()));
      QPDFObjectHandle size = font.getArrayItem(1);
      if (size.isNumber()) state_.size = size.getNumericValue();
    }
  }

  // A pattern stands in the space that the content stream began with, whatever the matrix now.
  // One cell of it is a placement.
  void set_pattern(CPDFContentReader& in) {
    QPDFObjectHandle pattern = resources_.find("/Pattern", in.name());
    if (pattern.isStream()) draw_form(pattern, {});
  }

  // Images.

  void paint_object(CPDFContentReader& in) {
    QPDFObjectHandle object = resources_.find("/XObject", in.name());
    const int image = scene_.add_image(object);
    if (image >= 0) {
      draw(image, true, state_.ctm);
    } else {
      draw_form(object, state_.ctm);
    }
  }

  void paint_inline_image(CPDFContentReader& in) {
    auto image = std::make_shared<CPDFInlineImage>();
    image->dict = std::make_unique<CPDFDictionary>();
    const std::size_t position = in.position();
    if (!in.read_inline_dictionary(*image->dict)) return;
    image->color_spaces = named_spaces(*image->dict);
    CPDFObjectTable& table = scene_.table();
    const pdfbmp::InlineData data = pdfbmp::find_inline_data(
        in.content(), in.position(), *image->dict, image->color_spaces.get(), &table,
        table.limits(), &scene_.clock());
    image->data = in.content().substr(data.begin, data.length);
    in.seek(data.next);

    CPDFFoundImage record;
    record.kind = CPDFImageKind::inline_image;
    pdfbmp::describe_image(*image->dict, &table, image->color_spaces.get(), record);
    record.bytes = static_cast<std::int64_t>(image->data.size());
    record.inline_image = std::move(image);
    draw(scene_.add_inline_image(node_, position, std::move(record)), true, state_.ctm);
  }

  /// Of the ColorSpace resources, what an inline image may need; null where it needs none. Images
  /// that need the same share it.
  std::shared_ptr<const CPDFDictionary> named_spaces(const CPDFDictionary& dict) {
    const CPDFObj* entry = pdfbmp::image_entry(dict, "CS", CPDFDictionary::sm_tag_cs);
    if (entry == nullptr) return nullptr;
    // An array can have a device space as its base, for which there may be a default.
    const std::string name = entry->name() != nullptr ? entry->name() : "";
    const auto [at, is_new] = spaces_.try_emplace(name);
    if (is_new) {
      at->second =
          pdfbmp::copy_spaces(resources_, {"DefaultGray", "DefaultRGB", "DefaultCMYK", name});
    }
    return at->second;
  }

  // Text, of which only the glyphs of Type 3 fonts can hold images.

  void begin_text(CPDFContentReader&) { text_ = line_ = {}; }
  void set_char_space(CPDFContentReader& in) { state_.char_space = in.number(0); }
  void set_word_space(CPDFContentReader& in) { state_.word_space = in.number(0); }
  void set_scale(CPDFContentReader& in) { state_.scale = in.number(0) / 100; }
  void set_leading(CPDFContentReader& in) { state_.leading = in.number(0); }
  void set_rise(CPDFContentReader& in) { state_.rise = in.number(0); }
  void set_text_matrix(CPDFContentReader& in) { text_ = line_ = operand_matrix(in); }
  void move(CPDFContentReader& in) { move_by(in.number(1), in.number(0)); }
  void next_line(CPDFContentReader&) { move_by(0, -state_.leading); }

  void move_and_set_leading(CPDFContentReader& in) {
    state_.leading = -in.number(0);
    move(in);
  }

  void move_by(double x, double y) { text_ = line_ = CPDFMatrix{1, 0, 0, 1, x, y}.then(line_); }

  void select_font(CPDFContentReader& in) {
    state_.size = in.number(0);
    if (in.operands().size() < 2) return;
    const std::string& name = in.operands()[in.operands().size() - 2].text;
    set_font(resources_.find("/Font", name), "font " + name);
  }

  /// `place` tells a font that is no object of its own from others.
  void set_font(QPDFObjectHandle font, const std::string& place) {
    state_.font = nullptr;
    if (!font.isDictionary()) return;
    const std::string identity = pdfbmp::identity_of(font);
    if (fonts_.size() >= max_fonts) fonts_.clear();
    auto& made = fonts_[identity.empty() ? place : identity];
    if (made == nullptr) made = std::make_shared<pdfbmp::GlyphFont>(font, resources_);
    state_.font = made;
  }

  void show(CPDFContentReader& in) {
    for (const CPDFOperand& operand : in.operands()) {
      if (operand.kind == CPDFOperand::Kind::number) {
        advance(-operand.number / 1000 * state_.size);
      } else if (operand.kind == CPDFOperand::Kind::string) {
        for (const char code : operand.text) show_glyph(static_cast<unsigned char>(code));
      }
    }
  }

  void show_on_next_line(CPDFContentReader& in) {
    next_line(in);
    show_last(in);
  }

  void show_spaced(CPDFContentReader& in) {
    state_.word_space = in.number(2);
    state_.char_space = in.number(1);
    show_on_next_line(in);
  }

  void show_last(CPDFContentReader& in) {
    if (in.operands().empty()) return;
    for (const char code : in.operands().back().text) {
      show_glyph(static_cast<unsigned char>(code));
    }
  }

  void show_glyph(unsigned char code) {
    if (state_.font == nullptr || scene_.is_over()) return;
    const int target = state_.font->glyph(scene_, code);
    if (target >= 0) {
      const CPDFMatrix sized = {state_.size * state_.scale, 0, 0, state_.size, 0, state_.rise};
      draw(target, false, state_.font->matrix().then(sized).then(text_).then(state_.ctm));
    }
    advance(state_.font->width(code) * state_.size + state_.char_space +
            (code == ' ' ? state_.word_space : 0));
  }

  void advance(double by) { text_ = CPDFMatrix{1, 0, 0, 1, by * state_.scale, 0}.then(text_); }

  pdfbmp::Scene& scene_;
  pdfbmp::SceneNode& node_;
  const pdfbmp::SceneResources& resources_;
  State state_;
  std::vector<State> saved_;
  std::size_t unsaved_ = 0;  ///< States that q could not save any more.
  CPDFMatrix text_, line_;
  std::map<std::string, std::shared_ptr<const pdfbmp::GlyphFont>> fonts_;  ///< Used of late.
  std::map<std::string, std::shared_ptr<const CPDFDictionary>> spaces_;    ///< Of inline images.
};

const std::map<std::string, Walk::Handler>& Walk::operators() {
  static const std::map<std::string, Handler> table = {
      {"q", &Walk::save},
      {"Q", &Walk::restore},
      {"cm", &Walk::concatenate},
      {"gs", &Walk::set_state},
      {"scn", &Walk::set_pattern},
      {"SCN", &Walk::set_pattern},
      {"Do", &Walk::paint_object},
      {"BI", &Walk::paint_inline_image},
      {"BT", &Walk::begin_text},
      {"Tc", &Walk::set_char_space},
      {"Tw", &Walk::set_word_space},
      {"Tz", &Walk::set_scale},
      {"TL", &Walk::set_leading},
      {"Ts", &Walk::set_rise},
      {"Tf", &Walk::select_font},
      {"Tm", &Walk::set_text_matrix},
      {"Td", &Walk::move},
      {"TD", &Walk::move_and_set_leading},
      {"T*", &Walk::next_line},
      {"Tj", &Walk::show_last},
      {"TJ", &Walk::show},
      {"'", &Walk::show_on_next_line},
      {"\"", &Walk::show_spaced},
  };
  return table;
}

}  // namespace

namespace pdfbmp {

void walk_content(Scene& scene, SceneNode& node, std::string& content,
                  const SceneResources& resources) {
  Walk(scene, node, resources).run(content);
}

}  // namespace pdfbmp
