# What every target of the project is compiled with. Nothing else sets compiler flags.
add_library(quorvane_options INTERFACE)
target_compile_options(quorvane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Woverloaded-virtual -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 takes the unused alternatives of an optimised std::variant for uninitialised data.
    target_compile_options(quorvane_options INTERFACE -Wno-maybe-uninitialized)
endif()
target_compile_definitions(quorvane_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(quorvane_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(quorvane_options INTERFACE Qt6::Core)

if(QUORVANE_SANITIZE)
    target_compile_options(quorvane_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quorvane_options INTERFACE -fsanitize=address,undefined)
endif()

# quorvane_gui_program(NAME): a program that links Qt Gui.
function(quorvane_gui_program name)
    if(QUORVANE_SANITIZE)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/LeakSanitizer.cpp)
    endif()
endfunction()

# quorvane_library(NAME SOURCES … [LINKS …] [PRIVATE_LINKS …])
function(quorvane_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC quorvane_options ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
endfunction()
