# CLI11, fmt and nlohmann-json as header-only libraries for every platform. A cross-build must not see /usr/include,
# so it gets a folder of links to just these.
set(HEADER_ONLY_FOLDER ${CMAKE_BINARY_DIR}/header_only)
file(MAKE_DIRECTORY ${HEADER_ONLY_FOLDER})
foreach(library CLI fmt nlohmann)
    if(NOT EXISTS /usr/include/${library})
        message(FATAL_ERROR "/usr/include/${library} is missing: ./dev installs it")
    endif()
    file(CREATE_LINK /usr/include/${library} ${HEADER_ONLY_FOLDER}/${library} SYMBOLIC)
endforeach()

add_library(header_only_libraries INTERFACE)
target_include_directories(header_only_libraries SYSTEM INTERFACE ${HEADER_ONLY_FOLDER})
target_compile_definitions(header_only_libraries INTERFACE FMT_HEADER_ONLY)
