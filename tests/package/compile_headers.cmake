# Compiles each installed header alone, as a user with strict warnings would include it.
cmake_minimum_required(VERSION 3.22)
file(GLOB_RECURSE headers RELATIVE ${INCLUDE_DIR} ${INCLUDE_DIR}/*.h)
list(LENGTH headers count)
if(count LESS 15)
  message(FATAL_ERROR "only ${count} headers are installed")
endif()
foreach(header IN LISTS headers)
  execute_process(
    COMMAND ${CXX} -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I${INCLUDE_DIR} -isystem
            ${EIGEN_DIR} -x c++ -include ${INCLUDE_DIR}/${header} /dev/null RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(SEND_ERROR "${header} does not compile alone")
  endif()
endforeach()
