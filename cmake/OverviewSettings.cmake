# SPDX-License-Identifier: MIT
# Settings that hold for every target: language, flags, places of the output.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)

# The programs find plug-ins, back ends, translations and vehicles by paths relative to themselves.
set(OVERVIEW_BIN_DIR "${PROJECT_BINARY_DIR}/bin")

find_program(OVERVIEW_CCACHE ccache)
if(OVERVIEW_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Build folders beside each other share their results.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env CCACHE_BASEDIR=/ CCACHE_NOHASHDIR=1 "${OVERVIEW_CCACHE}")
endif()

add_library(overview_flags INTERFACE)
target_compile_options(overview_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
target_compile_definitions(overview_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x050C00)
# The include root, and that of the tests for what they share.
target_include_directories(overview_flags INTERFACE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}")

if(OVERVIEW_SANITIZE)
    target_compile_options(overview_flags INTERFACE
        "-fsanitize=${OVERVIEW_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(overview_flags INTERFACE "-fsanitize=${OVERVIEW_SANITIZE}")
endif()
