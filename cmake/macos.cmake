# The macOS build: each subsystem's macOS backends as a library of its own beside the subsystem's
# logic, the program as an application bundle with its Info.plist, languages, icon and the
# Sparkle framework, and the Apple frameworks each library links. Included from the top-level
# CMakeLists.txt after every subsystem; nothing here runs on another platform, so the Linux
# build is exactly what it was.
if(NOT VANTLE_PLATFORM STREQUAL "mac")
  return()
endif()

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

set(VANTLE_MINIMUM_MACOS "13.0" CACHE STRING "The oldest macOS the program runs on (SMAppService needs 13)")
set(VANTLE_BUNDLE_IDENTIFIER "org.orlend.VantleControl" CACHE STRING "The application bundle's identifier")
set(VANTLE_UPDATE_FEED "https://vantle.example/appcast.xml" CACHE STRING "Address of Sparkle's update feed (https)")
set(VANTLE_UPDATE_PUBLIC_KEY "" CACHE STRING "Sparkle's EdDSA public key (base64) that signs the updates")
# Sparkle.framework from its release archive; find_library looks here before the system's folders.
set(VANTLE_SPARKLE_DIR "" CACHE PATH "The folder that holds Sparkle.framework")

foreach(framework AppKit ApplicationServices CoreAudio CoreFoundation CoreGraphics Foundation ServiceManagement)
  string(TOUPPER ${framework} name)
  find_library(VANTLE_${name}_FRAMEWORK ${framework} REQUIRED)
endforeach()
find_library(VANTLE_SPARKLE_FRAMEWORK Sparkle HINTS ${VANTLE_SPARKLE_DIR} REQUIRED
             DOC "Sparkle.framework (Sparkle 2), copied into the bundle")

# Every Objective-C++ file is compiled with automatic reference counting, as the check here
# parses it; the C++ files of the backends need nothing more.
function(vantle_mac_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
endfunction()

set(src ${PROJECT_SOURCE_DIR}/src)

# The settings in the user's preferences, the bundle as the resources, the workspace.
vantle_mac_library(vantle_services_mac
  SOURCES ${src}/services/preferences_store_mac.cpp ${src}/services/standard_defaults_mac.cpp
          ${src}/services/bundle_mac.mm ${src}/services/workspace_mac.mm
  LINK vantle_services ${VANTLE_COREFOUNDATION_FRAMEWORK} ${VANTLE_FOUNDATION_FRAMEWORK} ${VANTLE_APPKIT_FRAMEWORK})
vantle_mac_library(vantle_localization_mac
  SOURCES ${src}/localization/preferred_languages_mac.mm
  LINK vantle_localization vantle_services_mac ${VANTLE_FOUNDATION_FRAMEWORK})
set_property(GLOBAL APPEND PROPERTY VANTLE_PROCESS_LIBRARIES vantle_services_mac vantle_localization_mac)

vantle_mac_library(vantle_audio_mac
  SOURCES ${src}/audio/audio_hal_mac.cpp
  LINK vantle_audio ${VANTLE_COREAUDIO_FRAMEWORK} ${VANTLE_COREFOUNDATION_FRAMEWORK})
vantle_mac_library(vantle_display_mac
  SOURCES ${src}/display/screens_mac.mm ${src}/display/display_services_mac.cpp ${src}/display/shade_panel_mac.mm
  LINK vantle_display ${VANTLE_APPKIT_FRAMEWORK} ${VANTLE_COREGRAPHICS_FRAMEWORK} ${CMAKE_DL_LIBS})
vantle_mac_library(vantle_keys_mac
  SOURCES ${src}/keys/key_tap_mac.mm ${src}/keys/keyboard_trust_mac.mm
  LINK vantle_keys ${VANTLE_APPLICATIONSERVICES_FRAMEWORK} ${VANTLE_APPKIT_FRAMEWORK}
       ${VANTLE_COREGRAPHICS_FRAMEWORK})
vantle_mac_library(vantle_dock_mac
  SOURCES ${src}/dock/process_runner_mac.cpp ${src}/dock/dock_platform_mac.mm ${src}/dock/file_icons_mac.mm
  LINK vantle_dock vantle_dock_posix ${VANTLE_APPKIT_FRAMEWORK} ${VANTLE_FOUNDATION_FRAMEWORK})
vantle_mac_library(vantle_ui_mac
  SOURCES ${src}/ui/appearance_mac.mm ${src}/ui/status_item_mac.mm
  LINK vantle_ui vantle_display ${VANTLE_APPKIT_FRAMEWORK})
vantle_mac_library(vantle_login_mac
  SOURCES ${src}/services/login/login_service_mac.mm
  LINK vantle_login ${VANTLE_SERVICEMANAGEMENT_FRAMEWORK} ${VANTLE_FOUNDATION_FRAMEWORK})
vantle_mac_library(vantle_updates_mac
  SOURCES ${src}/services/updates/updater_mac.mm
  LINK vantle_updates ${VANTLE_SPARKLE_FRAMEWORK} ${VANTLE_FOUNDATION_FRAMEWORK})

# The platform: every macOS backend is named in platform_mac.mm.
vantle_mac_library(vantle_app_mac
  SOURCES ${src}/app/platform_mac.mm ${src}/app/display_backends_mac.cpp ${src}/app/single_instance_mac.mm
          ${src}/app/program_processes_mac.mm ${src}/app/session_end_mac.mm ${src}/app/run_loop_wait_mac.mm
          ${src}/app/toolkit_parts_qt.cpp
  LINK vantle_app_qt vantle_services_mac vantle_audio_mac vantle_display_mac vantle_keys_mac vantle_dock_mac
       vantle_ui_mac vantle_login_mac vantle_updates_mac vantle_keys_qt Qt6::Widgets ${VANTLE_APPKIT_FRAMEWORK})
target_link_libraries(vantle-control PRIVATE vantle_app_mac)

# The application bundle: Contents/MacOS/vantle-control, Contents/Info.plist written from the
# template with this build's version, Contents/Resources with the resources (one .lproj folder per
# language, which is how the system knows the languages the program has) and the icon, and
# Contents/Frameworks/Sparkle.framework, which the executable finds through its run path.
include(${PROJECT_SOURCE_DIR}/packaging/macos/info_plist.cmake)
set(VANTLE_BUNDLE_EXECUTABLE vantle-control)
set(VANTLE_RELEASE_VERSION ${PROJECT_VERSION})
vantle_write_info_plist(${CMAKE_BINARY_DIR}/generated/Info.plist)
set_target_properties(vantle-control PROPERTIES
  MACOSX_BUNDLE ON
  OUTPUT_NAME vantle-control
  MACOSX_BUNDLE_INFO_PLIST ${CMAKE_BINARY_DIR}/generated/Info.plist
  BUILD_RPATH "@executable_path/../Frameworks"
  INSTALL_RPATH "@executable_path/../Frameworks")

find_program(VANTLE_PNG2ICNS png2icns REQUIRED DOC "libicns' tool that makes the bundle's icon file")
set(icon ${CMAKE_BINARY_DIR}/generated/VantleControl.icns)
add_custom_command(OUTPUT ${icon}
  COMMAND ${CMAKE_COMMAND} -DICONS=${PROJECT_SOURCE_DIR}/resources/icons/hicolor -DOUTPUT=${icon}
          -DPNG2ICNS=${VANTLE_PNG2ICNS} -P ${PROJECT_SOURCE_DIR}/packaging/macos/application_icon.cmake
  DEPENDS ${PROJECT_SOURCE_DIR}/packaging/macos/application_icon.cmake
  COMMENT "Making the application icon")
add_custom_target(vantle_application_icon DEPENDS ${icon})
add_dependencies(vantle-control vantle_application_icon vantle_resources)

# The resources are those the Linux build copies beside its executable (resources/CMakeLists.txt).
set(bundle_contents $<TARGET_BUNDLE_CONTENT_DIR:vantle-control>)
add_custom_command(TARGET vantle-control POST_BUILD
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${VANTLE_RESOURCE_DIR} ${bundle_contents}/Resources
  COMMAND ${CMAKE_COMMAND} -E copy ${icon} ${bundle_contents}/Resources/VantleControl.icns
  # ditto keeps the framework's symbolic links (Versions/Current), which a plain copy would break.
  COMMAND ditto ${VANTLE_SPARKLE_FRAMEWORK} ${bundle_contents}/Frameworks/Sparkle.framework
  COMMENT "Filling the application bundle")
