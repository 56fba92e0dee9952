# Builds the engine of the page and what its tests ask for. With the distribution's emscripten, whose node modules are not where node looks.
set(ENV{NODE_PATH} /usr/share/nodejs)
foreach(step "--preset;wasm;-DORVANTIS_WASM_PROGRAMS=ON" "--build;--preset;wasm")
  execute_process(COMMAND ${CMAKE_COMMAND} ${step} RESULT_VARIABLE status)
  if(status)
    message(FATAL_ERROR "The engine cannot be built")
  endif()
endforeach()
