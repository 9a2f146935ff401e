# Copyright (c) 2026 the pdfbmp authors. SPDX-License-Identifier: MIT
"""Decodes every image of a PDF to a PyMuPDF Pixmap, composed with its soft mask, in RGB or gray."""
import sys

import fitz

document = fitz.open(sys.argv[1])
for page in range(document.page_count):
    for image in document.get_page_images(page):
        pixmap = fitz.Pixmap(document, image[0])
        if pixmap.colorspace and pixmap.colorspace.name not in ("DeviceRGB", "DeviceGray"):
            pixmap = fitz.Pixmap(fitz.csRGB, pixmap)
        if image[1]:
            pixmap = fitz.Pixmap(pixmap, fitz.Pixmap(document, image[1]))
