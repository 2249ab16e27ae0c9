# For those who write a client (vexel::zem: the interfaces, headers alone) or who
# build the player in (vexel::core: one static library, and its headers).
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)

add_library(vexel_zem INTERFACE)
set_target_properties(vexel_zem PROPERTIES EXPORT_NAME zem)
target_include_directories(vexel_zem INTERFACE $<INSTALL_INTERFACE:include/vexel>)

# The layers of the core, which go round in a ring, as the one library they are.
set(layers geometry raster movie stage text player)
add_library(vexel_core STATIC)
foreach(layer ${layers})
  target_sources(vexel_core PRIVATE $<TARGET_OBJECTS:vexel_${layer}>)
endforeach()
set_target_properties(vexel_core PROPERTIES OUTPUT_NAME vexel EXPORT_NAME core LINKER_LANGUAGE CXX)
target_include_directories(vexel_core INTERFACE $<INSTALL_INTERFACE:include/vexel>)
target_compile_features(vexel_core INTERFACE cxx_std_20)
target_link_libraries(vexel_core PUBLIC ZLIB::ZLIB JPEG::JPEG)

install(TARGETS vexel_zem vexel_core EXPORT vexel ARCHIVE DESTINATION lib)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/zem DESTINATION include/vexel)
foreach(layer ${layers})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${layer} DESTINATION include/vexel
          FILES_MATCHING PATTERN *.h)
endforeach()

# find_package(vexel)
set(package lib/cmake/vexel)
install(EXPORT vexel NAMESPACE vexel:: FILE vexelTargets.cmake DESTINATION ${package})
configure_package_config_file(vexelConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/vexelConfig.cmake
                              INSTALL_DESTINATION ${package})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vexelConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vexelConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/vexelConfigVersion.cmake DESTINATION ${package})

# pkg-config zem, pkg-config vexel
foreach(name zem vexel)
  configure_file(${name}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_DATADIR}/pkgconfig)
endforeach()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/hello-client
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libvexel-dev/examples)
