# Flags that every target of this project is built with, and the private warning set.

set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
if(NOT DEFINED CMAKE_CXX_STANDARD)
  set(CMAKE_CXX_STANDARD 20)
endif()
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(NOT EMSCRIPTEN)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
endif()
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
  endif()
endif()

# A fused multiply-add rounds once where the source rounds twice, so a point near an edge would get another verdict on
# another machine. One input has one answer.
add_compile_options(-ffp-contract=off)

if(ORVANTIS_SANITIZE)
  add_compile_options(-fsanitize=${ORVANTIS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ORVANTIS_SANITIZE})
endif()
if(ORVANTIS_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
  if(ORVANTIS_FUZZ_SANITIZE)
    add_compile_options(-fsanitize=${ORVANTIS_FUZZ_SANITIZE} -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORVANTIS_FUZZ_SANITIZE})
  endif()
endif()
if(ORVANTIS_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# Private to this project's own targets: a user of the libraries never inherits them.
add_library(orvantis_warnings INTERFACE)
target_compile_options(orvantis_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                                   $<$<BOOL:${ORVANTIS_WARNINGS_AS_ERRORS}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 sees an overlap in any "text" + string that it inlines; there is none.
  target_compile_options(orvantis_warnings INTERFACE -Wno-restrict)
endif()
