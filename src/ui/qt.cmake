# The interface's Qt widgets, the windows around them and the desktop's appearance.
find_package(Qt6 REQUIRED COMPONENTS DBus)
target_sources(vantle_ui PRIVATE ${CMAKE_CURRENT_LIST_DIR}/help_navigation.cpp)

add_library(vantle_ui_qt STATIC
  ${CMAKE_CURRENT_LIST_DIR}/appearance_linux.cpp
  ${CMAKE_CURRENT_LIST_DIR}/help_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/license_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/brand_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/status_item_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_window_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/popover_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/scrolled_content_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_colour_qt.cpp
  ${CMAKE_CURRENT_LIST_DIR}/row_renderer_qt.cpp
)
set_target_properties(vantle_ui_qt PROPERTIES AUTOMOC ON)
target_link_libraries(vantle_ui_qt PUBLIC vantle_ui vantle_services Qt6::Widgets Qt6::DBus)
# Every file here starts with the toolkit's widget headers, which take most of its compile time.
target_precompile_headers(vantle_ui_qt PRIVATE <QApplication> <QWidget>)

vantle_add_test(ui_help_test
  SOURCES ${CMAKE_CURRENT_LIST_DIR}/help_navigation_test.cpp
  LIBS vantle_ui)
