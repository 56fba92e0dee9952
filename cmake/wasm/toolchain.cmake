# Toolchain file of the preset `wasm`: the libraries and the toolkit as WebAssembly, with the emscripten of Debian.
set(ORVANTIS_EMSCRIPTEN /usr/share/emscripten CACHE PATH "Where emscripten is installed")
include(${ORVANTIS_EMSCRIPTEN}/cmake/Modules/Platform/Emscripten.cmake)

# Libraries of the host that are headers alone, and nothing else of the host: /usr/include itself is never searched.
set(ORVANTIS_WASM_HEADERS ${CMAKE_BINARY_DIR}/headers)
if(NOT EXISTS ${ORVANTIS_WASM_HEADERS}/Eigen)
  file(MAKE_DIRECTORY ${ORVANTIS_WASM_HEADERS})
  foreach(name boost hwy spdlog fmt eigen3/Eigen)
    get_filename_component(last ${name} NAME)
    file(CREATE_LINK /usr/include/${name} ${ORVANTIS_WASM_HEADERS}/${last} SYMBOLIC)
  endforeach()
endif()
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_INCLUDE_DIR ${ORVANTIS_WASM_HEADERS})
set(Eigen3_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)
set(hwy_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)
set(spdlog_DIR ${CMAKE_CURRENT_LIST_DIR}/packages)

# Exceptions of the machine itself: by way of JavaScript the module is four times as large. The linker sees the whole
# program, so that it leaves out what nobody calls, virtual functions too: nothing is exported to libraries.
set(whole_program "-flto -fwhole-program-vtables -fvirtual-function-elimination")
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -msimd128 -mbulk-memory ${whole_program} -DORVANTIS_API=")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fwasm-exceptions ${whole_program}")
# How much is optimised is said by target, in web/engine.
set(CMAKE_CXX_FLAGS_RELEASE "-DNDEBUG" CACHE STRING "")
