# orvantis_add_library(<target> EXPORT_NAME <name> [SOURCES <file>...])
#
# A shared library of the package: versioned, exporting only what carries ORVANTIS_API, installed under orvantis::<name>.
function(orvantis_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME" "SOURCES")
  set(kind SHARED)
  if(EMSCRIPTEN)
    set(kind STATIC) # a page loads one module
  endif()
  add_library(${target} ${kind} ${arg_SOURCES})
  add_library(orvantis::${arg_EXPORT_NAME} ALIAS ${target})
  set_target_properties(
    ${target}
    PROPERTIES EXPORT_NAME ${arg_EXPORT_NAME}
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}
               INSTALL_RPATH "$ORIGIN" # the libraries stand side by side, wherever the prefix was moved to
               LINKER_LANGUAGE CXX
               LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:orvantis_warnings>)
  if(kind STREQUAL "SHARED")
    target_link_options(${target} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  endif()
  if(kind STREQUAL "SHARED" AND NOT ORVANTIS_SANITIZE AND NOT ORVANTIS_FUZZ)
    # A layer that reaches for a symbol it does not link to fails here and not at the user's.
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  set_property(GLOBAL APPEND PROPERTY ORVANTIS_LIBRARIES ${target})
endfunction()

# orvantis_add_layer(<target> LINKS <target>... SOURCES <file>...)
#
# One layer inside the zone detector library: objects that see the public headers, src/ and what LINKS brings.
function(orvantis_add_layer target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;SOURCES")
  add_library(${target} OBJECT ${arg_SOURCES})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE orvantis_warnings)
endfunction()
