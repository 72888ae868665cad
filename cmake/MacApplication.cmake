# quorvane_mac_application(NAME): makes a program the application, a bundle with its information, its icon and the licenses of what it
# is built with. Signing it is packaging/macos's.
function(quorvane_mac_application name)
    set(packaging ${PROJECT_SOURCE_DIR}/packaging/macos)
    set(icon ${CMAKE_CURRENT_BINARY_DIR}/Quorvane.icns)
    set(iconset ${CMAKE_CURRENT_BINARY_DIR}/Quorvane.iconset)
    add_custom_command(OUTPUT ${icon}
        COMMAND quorvane-icon ${iconset}
        COMMAND ${packaging}/make-icns ${iconset} ${icon}
        DEPENDS quorvane-icon ${packaging}/make-icns
        VERBATIM)
    file(GLOB licenses CONFIGURE_DEPENDS ${packaging}/licenses/*.txt)
    set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
    set_source_files_properties(${licenses} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/Licenses)
    target_sources(${name} PRIVATE ${icon} ${licenses})
    set_target_properties(${name} PROPERTIES
        OUTPUT_NAME Quorvane
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST ${packaging}/Info.plist.in)
endfunction()

# The analyser reads each file as the compiler does, headers that are generated included.
if(APPLE)
    add_custom_target(mac-analyze
        COMMAND ${PROJECT_SOURCE_DIR}/.ci/mac-analyze ${PROJECT_BINARY_DIR}
        DEPENDS quorvane_macos
        VERBATIM)
endif()
