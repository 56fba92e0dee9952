# Builds and runs the consumer with the flags that pkg-config gives for the installed package.
cmake_minimum_required(VERSION 3.22)
find_program(PKG_CONFIG NAMES pkg-config pkgconf REQUIRED)
set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
execute_process(
  COMMAND ${PKG_CONFIG} --cflags --libs orvantis_zone_detector
  OUTPUT_VARIABLE package_flags
  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(package_flags UNIX_COMMAND "${package_flags}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND ${CXX} -std=c++17 ${FLAGS} ${SOURCE} -o ${PROGRAM} ${package_flags} -Wl,-rpath,${PREFIX}/${LIBDIR}
                COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} COMMAND_ERROR_IS_FATAL ANY)
