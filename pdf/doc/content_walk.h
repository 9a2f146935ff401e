// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "pdf/doc/scene.h"

namespace pdfbmp {

/// Interprets a content stream as far as it bears on where images are painted, and adds the edges
/// to its node.
void walk_content(Scene& scene, SceneNode& node, std::string& content,
                  const SceneResources& resources);

}  // namespace pdfbmp
