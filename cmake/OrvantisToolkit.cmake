# orvantis_add_toolkit(<folder> LINKS <target>... SOURCES <file>...)
#
# One layer of the toolkit that the command, and every other face, is made of: the static library orvantis_<folder>. It is
# not installed, and position-independent so that a module can be made of it too.
function(orvantis_add_toolkit folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS;SOURCES")
  add_library(orvantis_${folder} STATIC ${arg_SOURCES})
  target_include_directories(orvantis_${folder} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(orvantis_${folder} PUBLIC ${arg_LINKS} PRIVATE orvantis_warnings)
  set_property(GLOBAL APPEND PROPERTY ORVANTIS_TOOLKIT orvantis_${folder})
endfunction()
