# kel_add_library(NAME [DEPS lib...] [EXTERNAL lib...])
# Builds a static library from the .cpp files of the calling folder (not its
# subfolders). Headers are included from the repository root, e.g.
# #include "db/connection.h". Every library is recorded in the global property
# KEL_LIBRARIES, and what it depends on in KEL_DEPS_<name>, so that the
# executable and the tests can link the whole program through its top
# libraries (kel_top_libraries). scripts/check-deps.sh checks that DEPS name
# exactly the libraries a folder's files include.
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
  set_property(GLOBAL PROPERTY KEL_DEPS_${name} ${ARG_DEPS})
endfunction()

# kel_top_libraries(VAR [EXCLUDE lib...]): the libraries no other library
# depends on. Linking them links the whole program once: their DEPS carry
# the rest.
function(kel_top_libraries var)
  cmake_parse_arguments(ARG "" "" "EXCLUDE" ${ARGN})
  get_property(all GLOBAL PROPERTY KEL_LIBRARIES)
  set(used "")
  foreach(lib ${all})
    if(NOT lib IN_LIST ARG_EXCLUDE)
      get_property(deps GLOBAL PROPERTY KEL_DEPS_${lib})
      list(APPEND used ${deps})
    endif()
  endforeach()
  set(top "")
  foreach(lib ${all})
    if(NOT lib IN_LIST used AND NOT lib IN_LIST ARG_EXCLUDE)
      list(APPEND top ${lib})
    endif()
  endforeach()
  set(${var} ${top} PARENT_SCOPE)
endfunction()
