add_library(Eigen3::Eigen INTERFACE IMPORTED)
target_include_directories(Eigen3::Eigen SYSTEM INTERFACE ${ORVANTIS_WASM_HEADERS})
