// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "tools/pdfbmp/image_facts.h"

const char* kind_name(CPDFImageKind kind) {
  switch (kind) {
    case CPDFImageKind::image:
      return "image";
    case CPDFImageKind::stencil:
      return "stencil";
    case CPDFImageKind::mask:
      return "mask";
    case CPDFImageKind::smask:
      return "smask";
    case CPDFImageKind::inline_image:
      return "inline";
  }
  return "image";
}

void add_facts(JsonObject& json, const CPDFFoundImage& found) {
  json.add("page", found.page)
      .add_array("pages", found.pages)
      .add("object", found.object)
      .add("generation", found.generation)
      .add("kind", kind_name(found.kind))
      .add("image_mask", found.image_mask);
  if (found.kind == CPDFImageKind::mask || found.kind == CPDFImageKind::smask) {
    json.add("mask_of", found.mask_of);
  } else {
    json.add_null("mask_of");
  }
  json.add("width", found.width).add("height", found.height).add("bpc", found.bpc);
  json.add_or_null("colorspace", found.colorspace);
  if (!found.base.empty()) json.add("base", found.base);
  json.add("components", found.components)
      .add_array("filters", found.filters)
      .add("interpolate", found.interpolate)
      .add("bytes", found.bytes);

  std::vector<JsonObject> placements;
  for (const CPDFPlacement& placement : found.placements) {
    placements.emplace_back()
        .add("page", placement.page)
        .add_array("matrix", placement.matrix)
        .add_array("bbox", placement.bbox)
        .add_array("ppi", placement.ppi);
  }
  json.add_array("placements", placements);
}

std::string summary_line(const std::string& pdf, std::size_t images, std::size_t failed,
                         const std::string* error) {
  JsonObject json;
  json.add("pdf", pdf).add("images", images).add("failed", failed);
  if (error == nullptr) {
    json.add_null("error");
  } else {
    json.add("error", *error);
  }
  return json.text() + "\n";
}

std::string place_of(const CPDFFoundImage& found, int number) {
  const std::string page = "page " + std::to_string(found.page) + ", ";
  if (found.kind == CPDFImageKind::inline_image) {
    return page + "inline image " + std::to_string(number);
  }
  return page + "object " + std::to_string(found.object);
}
