# SPDX-License-Identifier: MIT
# One function per kind of target, so that a folder's CMakeLists.txt reads like its table of contents.
include(CMakeParseArguments)

# Reading the headers is most of the time that a source takes to compile, so several are compiled as one. The fuzz targets
# build without it, so that no source lives on what others include.
set(OVERVIEW_UNITY_BATCH 32 CACHE STRING "How many sources are compiled as one")
mark_as_advanced(OVERVIEW_UNITY_BATCH)

# overview_unite_sources(<target>)
function(overview_unite_sources name)
    if(NOT OVERVIEW_UNITY_BUILD)
        return()
    endif()
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${OVERVIEW_UNITY_BATCH})
    # What moc makes of the headers is one source more that reads them all; CMake alone would compile it by itself.
    set(mocs "${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp")
    set(united "${CMAKE_CURRENT_BINARY_DIR}/${name}_mocs.cpp")
    file(GENERATE OUTPUT "${united}" CONTENT "#include \"${mocs}\"\n")
    set_source_files_properties("${mocs}" PROPERTIES HEADER_FILE_ONLY ON)
    set_source_files_properties("${united}" PROPERTIES SKIP_AUTOGEN ON)
    target_sources(${name} PRIVATE "${united}")
endfunction()

# overview_add_library(<name> SOURCES <file>... [PUBLIC_DEPENDS <target>...] [PRIVATE_DEPENDS <target>...])
# A static library, or an interface library when it has headers only.
function(overview_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC_DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    set(sources ${ARG_SOURCES})
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    if(sources)
        add_library(${name} STATIC ${ARG_SOURCES})
        target_link_libraries(${name}
            PUBLIC ${ARG_PUBLIC_DEPENDS}
            PRIVATE overview_flags ${ARG_PRIVATE_DEPENDS})
        target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
        overview_unite_sources(${name})
        if(TARGET precompiled_sources)
            target_precompile_headers(${name} REUSE_FROM precompiled_sources)
        endif()
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE ${ARG_PUBLIC_DEPENDS})
        target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}/src")
    endif()
endfunction()

# overview_add_program(<name> SOURCES <file>... [DEPENDS <target>...])
# An application in the output's bin folder.
function(overview_add_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE overview_flags ${ARG_DEPENDS})
    overview_unite_sources(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${OVERVIEW_BIN_DIR}")
endfunction()

# overview_add_module(<name> SUBDIR <folder> SOURCES <file>... [DEPENDS <target>...])
# A library that is loaded at run time from a folder below bin.
function(overview_add_module name)
    cmake_parse_arguments(ARG "" "SUBDIR" "SOURCES;DEPENDS" ${ARGN})
    add_library(${name} MODULE ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE overview_flags ${ARG_DEPENDS})
    overview_unite_sources(${name})
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY "${OVERVIEW_BIN_DIR}/${ARG_SUBDIR}")
endfunction()

# overview_add_test(<name> SOURCES <file>... [DEPENDS <target>...] [WINDOW] [REAL_TIME])
# A QtTest program that ctest runs without a display and with settings of its own. WINDOW is for tests that show the
# plug-in's window: its reader has no owner on purpose, and so do some objects of the platform's libraries. The test has
# a clock of its own, which leaps over waiting (tests/support/leapingclock_linux.cpp); REAL_TIME is for tests that wait
# for what is not in their main thread: another process, a server.
function(overview_add_test name)
    cmake_parse_arguments(ARG "WINDOW;REAL_TIME" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(TARGET precompiled_tests)
        target_precompile_headers(${name} REUSE_FROM precompiled_tests)
        # Next to nothing, and it goes faster without.
        set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp"
            PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
    if(TARGET leapingclock AND NOT ARG_REAL_TIME)
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:leapingclock>)
    endif()
    if(TARGET endedthreads)
        target_sources(${name} PRIVATE $<TARGET_OBJECTS:endedthreads>)
    endif()
    target_link_libraries(${name} PRIVATE overview_flags overview_test_flags ${ARG_DEPENDS} Qt5::Test)
    add_test(NAME ${name} COMMAND ${name})
    # Only a test that hangs takes so long, also with sanitizers on a machine that is busy with something else.
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 900
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${CMAKE_CURRENT_BINARY_DIR}/${name}.config;XDG_DATA_HOME=${CMAKE_CURRENT_BINARY_DIR}/${name}.data;QTEST_FUNCTION_TIMEOUT=800000")
    if(ARG_WINDOW)
        set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT
            "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp:print_suppressions=0")
    endif()
endfunction()
