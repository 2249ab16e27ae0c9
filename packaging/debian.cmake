# cpack -G DEB
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vexel)
set(CPACK_PACKAGE_VENDOR "The Vexel authors")
set(CPACK_PACKAGE_CONTACT "The Vexel authors <maintainers@vexel.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME vexel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION video)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"player and maker for vector movies
Plays two-dimensional vector movies: shapes, morphs, gradients, pictures,
nested timelines and text fields, drawn in integers by a scanline rasterizer,
so that a frame is the same on every machine.

The command vexel tells what is in a movie, writes pictures and films of it,
and makes movies of texts, drawings, photographs and fonts. The plug-in
vexel.so brings movies to other clients.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvexel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "zlib1g-dev, libjpeg-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "vexel (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"player for vector movies (development files)
Headers of the interfaces between the plug-in vexel.so and a client, and the
player without a window as a static library with its headers.

There are files for pkg-config (zem and vexel) and a package for CMake with
the targets vexel::zem and vexel::core.")

# Each package says whose it is and what has changed.
file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
add_custom_command(
  OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
  COMMAND sh -c "gzip -9n < \"$0\" > \"$1\"" ${CMAKE_CURRENT_SOURCE_DIR}/changelog
          ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
  DEPENDS changelog
  VERBATIM)
add_custom_target(changelog ALL DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
foreach(pair runtime:vexel development:libvexel-dev)
  string(REPLACE ":" ";" pair ${pair})
  list(GET pair 0 component)
  list(GET pair 1 name)
  install(FILES copyright ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component})
endforeach()

include(CPack)
