# Install components: runtime (the shared library), development, tool, jbig2 (the helper program).
include(CMakePackageConfigHelpers)
include(${CMAKE_CURRENT_LIST_DIR}/public_headers.cmake)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/pdfbmp)

function(pdfbmp_install_library component target description requires libs)
  install(TARGETS ${target} EXPORT pdfbmp-${component}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(EXPORT pdfbmp-${component} NAMESPACE pdfbmp:: FILE pdfbmp-${component}-targets.cmake
    DESTINATION ${package_folder} COMPONENT development)

  string(TOUPPER PDFBMP_${component}_HEADERS headers)
  foreach(header ${${headers}})
    cmake_path(GET header PARENT_PATH folder)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pdfbmp/${folder}
      COMPONENT development)
  endforeach()

  set(pc_description ${description})
  set(pc_requires ${requires})
  set(pc_libs ${libs})
  file(RELATIVE_PATH pc_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(cmake/pdfbmp.pc.in pdfbmp-${component}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/pdfbmp-${component}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

pdfbmp_install_library(image pdfbmp_image "Image dictionaries and samples to bitmaps" "" "")
if(PDFBMP_BUILD_DOCUMENT)
  set(description "The images of PDF files to bitmaps")
  if(BUILD_SHARED_LIBS)
    pdfbmp_install_library(document pdfbmp_shared ${description} "" "")
  else()
    pdfbmp_install_library(document pdfbmp_document ${description}
      "pdfbmp-image libqpdf libisal libjpeg libopenjp2 lcms2" -pthread)
    install(TARGETS pdfbmp_dependencies EXPORT pdfbmp-document)
    install(FILES cmake/find_dependencies.cmake DESTINATION ${package_folder} COMPONENT development)
  endif()
  install(TARGETS pdfbmp COMPONENT tool)

  # Debian's zsh looks for what packages bring in a folder of its own.
  set(zsh_folder site-functions)
  if(CMAKE_INSTALL_PREFIX STREQUAL /usr AND EXISTS /etc/debian_version)
    set(zsh_folder vendor-completions)
  endif()
  set(generated ${PROJECT_BINARY_DIR}/tools/pdfbmp)
  install(FILES ${generated}/pdfbmp.man RENAME pdfbmp.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES ${generated}/pdfbmp.bash RENAME pdfbmp
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
  install(FILES ${generated}/pdfbmp.zsh RENAME _pdfbmp
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder} COMPONENT tool)
endif()

configure_package_config_file(cmake/pdfbmp-config.cmake.in pdfbmp-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(pdfbmp-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/pdfbmp-config.cmake ${PROJECT_BINARY_DIR}/pdfbmp-config-version.cmake
  DESTINATION ${package_folder} COMPONENT development)

# Debian packages, one a component. The helper program is apart: jbig2dec is under the AGPL.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_CONTACT "the pdfbmp authors")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "PDF images to bitmaps: the command-line tool")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "PDF images to bitmaps: the shared library")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "PDF images to bitmaps: headers and libraries to link")
set(CPACK_COMPONENT_JBIG2_DESCRIPTION "PDF images to bitmaps: the program that decodes JBIG2 (AGPL)")
set(runtime_package
  libpdfbmp-document${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME pdfbmp)
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS pdfbmp-jbig2)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS pdfbmp-jbig2)
set(CPACK_DEBIAN_JBIG2_PACKAGE_NAME pdfbmp-jbig2)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libpdfbmp-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
if(TARGET pdfbmp_shared)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
elseif(PDFBMP_BUILD_DOCUMENT)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libqpdf-dev, libisal-dev, libjpeg62-turbo-dev, libopenjp2-7-dev, liblcms2-dev")
endif()
set(CPACK_COMPONENTS_ALL development)
foreach(target_and_component pdfbmp=tool pdfbmp_shared=runtime pdfbmp-jbig2=jbig2)
  string(REPLACE "=" ";" pair ${target_and_component})
  list(GET pair 0 target)
  list(GET pair 1 component)
  if(TARGET ${target})
    list(APPEND CPACK_COMPONENTS_ALL ${component})
  endif()
endforeach()
foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER CPACK_DEBIAN_${component}_PACKAGE_NAME package)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${${package}} RENAME copyright
    COMPONENT ${component})
endforeach()
include(CPack)

# Builds what is installed, and not the tests.
add_custom_target(installed_targets DEPENDS pdfbmp_image)
foreach(target pdfbmp_document pdfbmp_shared pdfbmp pdfbmp_manual pdfbmp-jbig2)
  if(TARGET ${target})
    add_dependencies(installed_targets ${target})
  endif()
endforeach()
