# Configures, builds and runs the consumer against the installed package.
cmake_minimum_required(VERSION 3.22)
file(REMOVE_RECURSE ${BINARY_DIR})
execute_process(
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${BINARY_DIR} -G Ninja -DCMAKE_PREFIX_PATH=${PREFIX} ${OPTIONS} -DCMAKE_CXX_COMPILER=${CXX}
          "-DCMAKE_CXX_FLAGS=${FLAGS} -Wall -Wextra -Wpedantic -Werror" "-DCMAKE_EXE_LINKER_FLAGS=${FLAGS} ${LINKER_FLAGS}"
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BINARY_DIR} --target ${PROGRAMS} COMMAND_ERROR_IS_FATAL ANY)
foreach(program ${PROGRAMS})
  execute_process(COMMAND env -i ${BINARY_DIR}/${program} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
