// Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
#include "pdf/cs/color_space.h"

void CPDFCSBase::get_default_color(PDF_COLOR& color) {
  for (int i = 0; i < 4; ++i) color.val[i] = 0;
}

int CPDFCSBase::support_op() { return 0; }
