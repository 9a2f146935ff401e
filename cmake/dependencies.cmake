# The libraries that the document library stands on; none of them is GPL or AGPL.
find_package(PkgConfig REQUIRED)
pkg_check_modules(QPDF REQUIRED IMPORTED_TARGET libqpdf)
pkg_check_modules(ISAL REQUIRED IMPORTED_TARGET libisal)
pkg_check_modules(JPEG REQUIRED IMPORTED_TARGET libjpeg)
pkg_check_modules(OPENJP2 REQUIRED IMPORTED_TARGET libopenjp2)
pkg_check_modules(LCMS2 REQUIRED IMPORTED_TARGET lcms2)
find_package(Threads REQUIRED)

add_library(pdfbmp_dependencies INTERFACE)
target_link_libraries(pdfbmp_dependencies INTERFACE
  PkgConfig::QPDF PkgConfig::ISAL PkgConfig::JPEG PkgConfig::OPENJP2 PkgConfig::LCMS2
  Threads::Threads)
# qpdf asks how far its users have come from its old smart pointer: all the way.
target_compile_definitions(pdfbmp_dependencies INTERFACE POINTERHOLDER_TRANSITION=4)
