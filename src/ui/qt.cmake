# The interface's Qt widgets and the windows around them, the same on every platform.
add_library(vantle_ui_qt STATIC
  ${CMAKE_CURRENT_LIST_DIR}/help_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/license_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/brand_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/png_image_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/status_item_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/button_status_icon_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/popover_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/scrolled_content_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_colour_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/row_renderer_qt.cpp
)
set_target_properties(vantle_ui_qt PROPERTIES AUTOMOC ON)
target_link_libraries(vantle_ui_qt PUBLIC vantle_ui vantle_services Qt6::Widgets)
# Every file here starts with the toolkit's widget headers, which take most of its compile time.
target_precompile_headers(vantle_ui_qt PRIVATE <QApplication> <QWidget>)

# The desktop's light or dark appearance on Linux: the freedesktop settings portal on the session
# bus, and the GTK and KDE settings files.
if(VANTLE_PLATFORM STREQUAL "linux")
  find_package(Qt6 REQUIRED COMPONENTS DBus)
  add_library(vantle_ui_linux STATIC
    ${CMAKE_CURRENT_LIST_DIR}/appearance_linux.cpp
    ${CMAKE_CURRENT_LIST_DIR}/desktop_scheme_linux.cpp
  )
  set_target_properties(vantle_ui_linux PROPERTIES AUTOMOC ON)
  target_link_libraries(vantle_ui_linux PUBLIC vantle_ui_qt PRIVATE Qt6::DBus)

  vantle_add_test(ui_linux_test
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/desktop_scheme_linux_test.cpp
    LIBS vantle_ui_linux)
endif()
