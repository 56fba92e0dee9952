add_library(spdlog::spdlog INTERFACE IMPORTED)
target_include_directories(spdlog::spdlog SYSTEM INTERFACE ${ORVANTIS_WASM_HEADERS})
# Headers alone, fmt's too, and without threads.
target_compile_definitions(spdlog::spdlog INTERFACE SPDLOG_HEADER_ONLY SPDLOG_FMT_EXTERNAL FMT_HEADER_ONLY
                                                    SPDLOG_NO_THREAD_ID SPDLOG_NO_TLS)
