# SPDX-FileCopyrightText: 2026 The Veltra developers
# SPDX-License-Identifier: GPL-3.0-or-later

# How every target of the project is compiled, and how a folder becomes one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(veltra_compile_options INTERFACE)
target_compile_options(veltra_compile_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Werror -ffp-contract=off)
# GCC 12 warns of overlapping copies inside std::string's own operator+ when it optimises (GCC bug 105651).
target_compile_options(veltra_compile_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_include_directories(veltra_compile_options INTERFACE ${CMAKE_SOURCE_DIR})
if(VELTRA_FUZZ)
    # Without the checks of -D_GLIBCXX_ASSERTIONS an index beyond a vector's end but within its memory goes unseen.
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
# What users run is hardened: overruns of buffers and stacks, wrong indices and jumps end the program.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection)
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag(-fcf-protection VELTRA_CONTROL_FLOW_PROTECTION)
    if(VELTRA_CONTROL_FLOW_PROTECTION)
        add_compile_options(-fcf-protection)
    endif()
    # A system whose compiler sets a level of its own must not be told another one.
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    add_link_options(-pie -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
if(VELTRA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

# veltra_layer(NAME LAYER...) makes a static library of every source below NAME/.
function(veltra_layer name)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${name}/*.cpp)
    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC veltra_compile_options ${ARGN})
endfunction()

# A layer of headers only.
function(veltra_interface_layer name)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE veltra_compile_options ${ARGN})
endfunction()
