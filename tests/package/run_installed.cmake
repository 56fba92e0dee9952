# Runs the installed command from its prefix, without any variable that could help it to find its libraries.
cmake_minimum_required(VERSION 3.22)
foreach(arguments --version "validate;${DOCUMENT}" "show;${DOCUMENT}")
  execute_process(COMMAND env -i ${PREFIX}/${BINDIR}/zone-detector ${arguments} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
