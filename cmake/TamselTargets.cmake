# The shapes of target this project knows: a room (static library), a program, a test, a benchmark.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui DBus Qml Quick)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # Paths below the tree are hashed relative to it, so that a clone at another path hits the cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE_PROGRAM})
endif()

add_library(tamsel_options INTERFACE)
target_compile_options(tamsel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
    -Werror)
target_compile_definitions(tamsel_options INTERFACE QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
if(TAMSEL_SANITIZE)
    target_compile_options(tamsel_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all)
    target_link_options(tamsel_options INTERFACE -fsanitize=address,undefined)
endif()
if(TAMSEL_PCH AND CCACHE_PROGRAM)
    target_compile_options(tamsel_options INTERFACE -fpch-preprocess)
endif()

# One compiled copy of each precompiled header; rooms of the same kind share it.
if(TAMSEL_PCH)
    file(WRITE ${CMAKE_BINARY_DIR}/pch/pch.cpp "")
    add_library(tamsel_pch_std STATIC ${CMAKE_BINARY_DIR}/pch/pch.cpp)
    target_link_libraries(tamsel_pch_std PRIVATE tamsel_options)
    target_precompile_headers(tamsel_pch_std PRIVATE <algorithm> <array> <chrono> <cstdint>
        <functional> <map> <memory> <optional> <span> <string> <string_view> <unordered_map>
        <utility> <vector>)
    add_library(tamsel_pch_qt STATIC ${CMAKE_BINARY_DIR}/pch/pch.cpp)
    target_link_libraries(tamsel_pch_qt PRIVATE tamsel_options Qt6::Core)
    target_precompile_headers(tamsel_pch_qt PRIVATE <algorithm> <chrono> <functional> <memory>
        <optional> <string> <vector> <QtCore>)
endif()

# Sets `roots` to what a folder's includes are named from: the root of its side of the house (src or
# companion) and common.
macro(tamsel_include_roots)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    string(REGEX REPLACE "/.*" "" side ${folder})
    set(roots ${PROJECT_SOURCE_DIR}/common)
    if(NOT side STREQUAL "common")
        list(PREPEND roots ${PROJECT_SOURCE_DIR}/${side})
    endif()
endmacro()

# tamsel_program(NAME SOURCES ... LINK targets...)
function(tamsel_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    tamsel_include_roots()
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${roots})
    target_link_libraries(${name} PRIVATE tamsel_options ${ARG_LINK})
endfunction()

# tamsel_room(NAME [QT] [SOURCES ...] [PUBLIC targets...] [PRIVATE targets...])
# A folder's static library.
function(tamsel_room name)
    cmake_parse_arguments(ARG "QT" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    tamsel_include_roots()
    if(NOT ARG_SOURCES)
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${roots})
        target_link_libraries(${name} INTERFACE ${ARG_PUBLIC})
        return()
    endif()
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${roots})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE tamsel_options ${ARG_PRIVATE})
    if(ARG_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_link_libraries(${name} PUBLIC Qt6::Core)
    endif()
    if(TAMSEL_PCH)
        if(ARG_QT)
            target_precompile_headers(${name} REUSE_FROM tamsel_pch_qt)
        else()
            target_precompile_headers(${name} REUSE_FROM tamsel_pch_std)
        endif()
    endif()
endfunction()

# tamsel_test(NAME [QT] SOURCES ... LINK targets...)
# One GoogleTest program of a room; each of its cases is a CTest test.
function(tamsel_test name)
    cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
    find_package(GTest REQUIRED)
    include(GoogleTest)
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE
        TAMSEL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data" TAMSEL_TEST_PROGRAMS="${CMAKE_BINARY_DIR}/tests")
    target_link_libraries(${name} PRIVATE tamsel_options GTest::gmock ${ARG_LINK})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    if(ARG_QT)
        # A Qt test brings its own main(), which makes the QCoreApplication.
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    else()
        target_link_libraries(${name} PRIVATE GTest::gmock_main)
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# tamsel_bench(NAME SOURCES ... LINK targets...)
# All of them are built by the target `benchmarks`, which leaves the rest of the tree alone.
function(tamsel_bench name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    find_package(benchmark REQUIRED)
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tamsel_options benchmark::benchmark_main ${ARG_LINK})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
    add_dependencies(benchmarks ${name})
endfunction()
