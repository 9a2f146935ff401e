# What programs may include, installed below include/pdfbmp and documented. Every other header is the
# project's own.
set(PDFBMP_IMAGE_HEADERS
  kx/alloc.h kx/api.h kx/bmp.h kx/rgba.h
  pdf/cs/color_space.h pdf/cs/device_cmyk.h pdf/cs/device_cmyk_ext.h pdf/cs/device_gray.h
  pdf/cs/device_rgb.h
  pdf/image/image.h
  pdf/obj/access.h pdf/obj/fixed.h pdf/obj/jpx_stream.h pdf/obj/object.h pdf/obj/resources.h
  pdf/obj/stream.h pdf/obj/xref.h)
set(PDFBMP_DOCUMENT_HEADERS
  pdf/doc/bitmap_reader.h pdf/doc/cmyk_table.h pdf/doc/document.h pdf/doc/file_sink.h
  pdf/doc/found_image.h pdf/doc/pam_writer.h pdf/doc/picture.h pdf/doc/png_writer.h pdf/doc/raster.h
  pdf/filter/filter.h pdf/filter/jbig2_helper.h pdf/filter/source.h)
