# QCoro, the system's where there is one. Homebrew has none: then its makers' sources, of one commit that has been tried
# (v0.11.0), are built along.
find_package(QCoro6 QUIET COMPONENTS Core)

# A function, so that what is set for the sources of others goes no further.
function(quorvane_build_qcoro)
    include(FetchContent)
    set(USE_QT_VERSION 6)
    set(BUILD_SHARED_LIBS OFF)
    # Their warnings are theirs, and so is how many of their files make a unit.
    set(CMAKE_UNITY_BUILD OFF)
    foreach(part BUILD_EXAMPLES BUILD_TESTING WITH_QTDBUS WITH_QTNETWORK WITH_QTWEBSOCKETS WITH_QTQUICK WITH_QML WITH_QTTEST)
        set(QCORO_${part} OFF CACHE BOOL "Of QCoro only what Quorvane uses")
    endforeach()
    FetchContent_Declare(qcoro
        GIT_REPOSITORY https://github.com/qcoro/qcoro.git
        GIT_TAG 3a6efdbe6a2a4b7fef9093b564a14ad1e046e9a4
        SYSTEM)
    FetchContent_MakeAvailable(qcoro)
    target_compile_options(QCoro6Core PRIVATE -Wno-error)
endfunction()

if(NOT QCoro6_FOUND)
    quorvane_build_qcoro()
endif()
