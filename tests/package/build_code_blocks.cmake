# Builds every C++ program of the documents as it stands there against the installed package.
cmake_minimum_required(VERSION 3.22)
file(REMOVE_RECURSE ${BINARY_DIR})
file(MAKE_DIRECTORY ${BINARY_DIR})
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
set(number 0)
foreach(page ${PAGES})
  file(READ ${page} rest)
  string(FIND "${rest}" "```cpp\n" begin)
  while(NOT begin EQUAL -1)
    math(EXPR begin "${begin} + 7")
    string(SUBSTRING "${rest}" ${begin} -1 rest)
    string(FIND "${rest}" "```" end)
    string(SUBSTRING "${rest}" 0 ${end} block)
    get_filename_component(name ${page} NAME_WE)
    math(EXPR number "${number} + 1")
    set(program ${BINARY_DIR}/${name}_${number})
    file(WRITE ${program}.cpp "${block}")
    execute_process(
      COMMAND ${CXX} -std=c++17 -Wall -Wextra -Wpedantic -Werror ${FLAGS} ${program}.cpp -o ${program} -I${PREFIX}/${INCLUDEDIR}
              -I${EIGEN_DIR} -L${PREFIX}/${LIBDIR} -Wl,-rpath,${PREFIX}/${LIBDIR} -lorvantis_zone_monitor
              -lorvantis_point_classifier -lorvantis_zone_detector -lorvantis_core -lorvantis_settings_manager
              -lorvantis_logging_manager
      RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
      message(FATAL_ERROR "a program of ${page} does not build: ${program}.cpp")
    endif()
    string(SUBSTRING "${rest}" ${end} -1 rest)
    string(FIND "${rest}" "```cpp\n" begin)
  endwhile()
endforeach()
if(number LESS 3)
  message(FATAL_ERROR "only ${number} programs were found")
endif()
