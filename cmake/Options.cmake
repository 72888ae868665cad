# What has been compiled before is taken from ccache where it is installed.
find_program(QUORVANE_CCACHE ccache)
if(QUORVANE_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${QUORVANE_CCACHE})
endif()

# What every target of the project is compiled with. Nothing else sets compiler flags.
add_library(quorvane_options INTERFACE)
target_compile_options(quorvane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Woverloaded-virtual)
if(QUORVANE_WARNINGS_ARE_ERRORS)
    target_compile_options(quorvane_options INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 takes the unused alternatives of an optimised std::variant for uninitialised data.
    target_compile_options(quorvane_options INTERFACE -Wno-maybe-uninitialized)
    if(CMAKE_UNITY_BUILD)
        # Every source of a unit is an include to it, and it minds the anonymous namespaces of includes.
        target_compile_options(quorvane_options INTERFACE -Wno-subobject-linkage)
    endif()
endif()
target_compile_definitions(quorvane_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    # What a later Qt deprecates is all that 6.4 has.
    target_compile_definitions(quorvane_options INTERFACE QT_WARN_DEPRECATED_UP_TO=0x060400)
endif()
target_include_directories(quorvane_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(quorvane_options INTERFACE Qt6::Core)

# Quicker than the system's own, where there is one.
if(NOT APPLE)
    include(CheckLinkerFlag)
    check_linker_flag(CXX -fuse-ld=lld QUORVANE_HAS_LLD)
    if(QUORVANE_HAS_LLD)
        target_link_options(quorvane_options INTERFACE -fuse-ld=lld)
        # What nobody calls, and what the compiler has made twice, is no part of what is shipped.
        target_link_options(quorvane_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-Wl,--gc-sections,--icf=safe>)
    endif()
endif()

if(QUORVANE_SANITIZE)
    # -g1: enough for the lines of a report.
    target_compile_options(quorvane_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(quorvane_options INTERFACE -fsanitize=address,undefined)
endif()

# quorvane_gui_program(NAME): a program that links Qt Gui.
function(quorvane_gui_program name)
    # Apple's compiler has no leak sanitizer that could be told anything.
    if(QUORVANE_SANITIZE AND NOT APPLE)
        target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/LeakSanitizer.cpp)
    endif()
endfunction()

# quorvane_library(NAME SOURCES … [LINKS …] [PRIVATE_LINKS …])
function(quorvane_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC quorvane_options ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
endfunction()
