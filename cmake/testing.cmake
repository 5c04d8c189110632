# kelvane_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, run from the folder where the products lie, so that
# a test finds the module by its plain file name. Each run leaves its cases in reports/NAME.xml.
# kelvane_script_test(NAME FILE): the same for a pytest file, which finds the build by its environment.
set(KELVANE_REPORTS ${CMAKE_BINARY_DIR}/reports)
file(MAKE_DIRECTORY ${KELVANE_REPORTS})

# Built from source everywhere: the same one way for the sanitizers and for Windows, for which there is no package.
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK ON)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)

# The system's interpreter, because the system's packages of pytest and numpy belong to it.
find_program(SYSTEM_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)

set(KELVANE_TEST_ENVIRONMENT
    "KELVANE_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    "KELVANE_SOURCE=${PROJECT_SOURCE_DIR}")
if(WIN32)
    list(APPEND KELVANE_TEST_ENVIRONMENT "WINEPREFIX=${CMAKE_BINARY_DIR}/wine" "WINEDEBUG=-all")
endif()
if(KELVANE_SANITIZE)
    # An impossible allocation answers null, as it does without the sanitizer: the tests ask what comes of it.
    list(APPEND KELVANE_TEST_ENVIRONMENT "ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=1")
endif()

# Tests rather compile fast than run fast, and their heaviest headers are parsed once, under the name of this target. At
# this level of optimisation GCC 12 believes that sums of strings are written past their end.
if(KELVANE_COMPILES_FAST)
    add_library(test_options INTERFACE)
    target_compile_options(test_options INTERFACE
        $<IF:$<BOOL:${KELVANE_SANITIZE}>,-O0,-O1> -Wno-array-bounds -Wno-stringop-overflow)
    add_executable(test_headers ${CMAKE_CURRENT_LIST_DIR}/test_headers.cpp)
    target_precompile_headers(test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    target_link_libraries(test_headers PRIVATE gmock project_options test_options)
endif()

function(kelvane_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} gmock_main project_options)
    if(KELVANE_COMPILES_FAST)
        target_link_libraries(${name} PRIVATE test_options)
        target_precompile_headers(${name} REUSE_FROM test_headers)
    endif()
    add_dependencies(${name} kelvane)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1 --gtest_output=xml:../reports/${name}.xml
        WORKING_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${KELVANE_TEST_ENVIRONMENT}" TIMEOUT 600)
endfunction()

function(kelvane_script_test name file)
    add_test(NAME ${name}
        COMMAND ${SYSTEM_PYTHON} -m pytest -q -p no:cacheprovider --junitxml=${KELVANE_REPORTS}/${name}.xml
            ${CMAKE_CURRENT_SOURCE_DIR}/${file}
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${KELVANE_TEST_ENVIRONMENT};PYTHONDONTWRITEBYTECODE=1"
        TIMEOUT 600)
endfunction()
