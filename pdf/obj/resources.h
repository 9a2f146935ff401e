// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#pragma once

class CPDFCSBase;

/// What an inline image needs of the resources of its content stream.
struct CPDFResources {
  struct NamedCS {
    const char* name;
    CPDFCSBase* cs;
  };

  NamedCS* cs_table;  ///< Sorted by name (ascending `strcmp`); the spaces belong to the resources.
  int cs_count;
};
