# kel_add_library(NAME [DEPS lib...] [EXTERNAL lib...])
# Builds a static library from the .cpp files of the calling folder (not its
# subfolders). Headers are included from the repository root, e.g.
# #include "db/connection.h". Every library is recorded in the global property
# KEL_LIBRARIES so that test executables can link the whole program.
function(kel_add_library name)
  cmake_parse_arguments(ARG "" "" "DEPS;EXTERNAL" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    # A subsystem whose code has not been written yet still links.
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} INTERFACE ${ARG_DEPS} ${ARG_EXTERNAL})
  else()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_DEPS} ${ARG_EXTERNAL})
  endif()
  set_property(GLOBAL APPEND PROPERTY KEL_LIBRARIES ${name})
endfunction()
