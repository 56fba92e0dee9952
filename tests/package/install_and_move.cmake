# Installs into one prefix and moves it to another: nothing that is installed may know where it was.
cmake_minimum_required(VERSION 3.22)
file(REMOVE_RECURSE ${PREFIX} ${PREFIX}-before)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${PREFIX}-before OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${PREFIX}-before ${PREFIX})
