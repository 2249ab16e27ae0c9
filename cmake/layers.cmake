# One static library a source folder: vexel_layer(raster geometry) makes
# vexel_raster of src/raster/*.cpp, which may know geometry and nothing else.
# The core folders do without exceptions and run-time type information.
function(vexel_layer name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  add_library(vexel_${name} STATIC ${sources})
  target_include_directories(vexel_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_options(vexel_${name} PRIVATE -fno-exceptions -fno-rtti)
  foreach(below ${ARGN})
    target_link_libraries(vexel_${name} PUBLIC vexel_${below})
  endforeach()
endfunction()
