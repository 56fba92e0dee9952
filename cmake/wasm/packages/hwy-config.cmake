add_library(hwy::hwy INTERFACE IMPORTED)
target_include_directories(hwy::hwy SYSTEM INTERFACE ${ORVANTIS_WASM_HEADERS})
