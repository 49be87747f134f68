# How every target of the project is compiled, and how a folder becomes one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
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
