# Installs the libraries, their headers, a CMake package and a pkg-config file for each library.
include(CMakePackageConfigHelpers)

get_property(libraries GLOBAL PROPERTY ORVANTIS_LIBRARIES)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/orvantis_zone_detector)

install(
  TARGETS ${libraries}
  EXPORT orvantis_zone_detector-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT orvantis_zone_detector-targets NAMESPACE orvantis:: DESTINATION ${package_dir})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/orvantis_zone_detector-config.cmake.in
                              orvantis_zone_detector-config.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(orvantis_zone_detector-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/orvantis_zone_detector-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/orvantis_zone_detector-config-version.cmake DESTINATION ${package_dir})
# For editors; docs/document.md says how.
install(FILES ${PROJECT_SOURCE_DIR}/share/zone-detector.schema.json
        DESTINATION ${CMAKE_INSTALL_DATADIR}/orvantis_zone_detector)

# orvantis_add_pkg_config(<library> "<description>" "<required modules>")
function(orvantis_add_pkg_config library description requires)
  set(PC_NAME ${library})
  set(PC_DESCRIPTION ${description})
  set(PC_REQUIRES ${requires})
  # Relative, so that the installed package can be moved.
  file(RELATIVE_PATH PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# Boost's headers stand on the default include path and bring no pkg-config file.
orvantis_add_pkg_config(orvantis_logging_manager "Named loggers at four levels" "")
orvantis_add_pkg_config(orvantis_settings_manager "JSON settings tree with a current path" orvantis_logging_manager)
orvantis_add_pkg_config(orvantis_core "Tracked objects" "")
orvantis_add_pkg_config(orvantis_zone_detector "Zones, evaluation fields and counter lines on the plan of a LiDAR"
                        "orvantis_settings_manager orvantis_core eigen3")
if(TARGET orvantis_point_classifier)
  orvantis_add_pkg_config(orvantis_point_classifier "All zones of every point of a frame" orvantis_zone_detector)
endif()
if(TARGET orvantis_zone_monitor)
  orvantis_add_pkg_config(orvantis_zone_monitor "Zone states, outputs and line crossings from frames and tracks"
                          orvantis_point_classifier)
endif()
