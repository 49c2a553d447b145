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
        "${CMAKE_COMMAND}" -E env CCACHE_BASEDIR=/ CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros "${OVERVIEW_CCACHE}")
endif()

add_library(overview_flags INTERFACE)
target_compile_options(overview_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
target_compile_definitions(overview_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x050C00)
# The include root, and that of the tests for what they share.
target_include_directories(overview_flags INTERFACE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}")

# Debian's hardening, for what is shipped. The sanitizers look into the same things themselves, and _FORTIFY_SOURCE needs
# an optimising compiler.
include(CheckPIESupported)
if(NOT OVERVIEW_SANITIZE) # it would say -pie behind the tests' own -no-pie
    check_pie_supported(LANGUAGES CXX)
endif()
set(optimised "$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>")
if(OVERVIEW_HARDENING AND NOT OVERVIEW_SANITIZE)
    target_compile_options(overview_flags INTERFACE
        -fstack-protector-strong -Wformat -Werror=format-security
        "$<$<OR:${optimised}>:-U_FORTIFY_SOURCE>" "$<$<OR:${optimised}>:-D_FORTIFY_SOURCE=2>")
    target_link_options(overview_flags INTERFACE -Wl,-z,relro -Wl,-z,now)
endif()

if(OVERVIEW_SANITIZE)
    target_compile_options(overview_flags INTERFACE
        "-fsanitize=${OVERVIEW_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(overview_flags INTERFACE "-fsanitize=${OVERVIEW_SANITIZE}")
endif()

# A test's own code runs once: the compiler need not spend a third of its time on making it fast.
add_library(overview_test_flags INTERFACE)
target_compile_options(overview_test_flags INTERFACE $<$<CONFIG:Release>:-O1>)

# Each test is a program, and this linker takes a sixth of the time. What is shipped is linked by the system's own.
find_program(OVERVIEW_LLD ld.lld)
if(OVERVIEW_LLD)
    target_link_options(overview_test_flags INTERFACE -fuse-ld=lld)
endif()
# What the sanitizers know about each place in the source is full of addresses: a program that may be loaded anywhere is a
# quarter larger for them, and there are several hundred programs.
if(OVERVIEW_SANITIZE)
    target_link_options(overview_test_flags INTERFACE -no-pie)
endif()
