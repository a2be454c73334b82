# Where `cmake --install` puts the program, its resources, and what a desktop needs to offer it:
# a menu entry, icons, a description for software centres and a manual page.
include(GNUInstallDirs)

# The name the desktop knows the program by: the menu entry, the icons and the software-centre
# description all carry it.
set(VANTLE_APP_ID "org.orlend.VantleControl")

# Installing and packaging take what the build made and start no build of their own: a package
# built by the tests must not rebuild the whole tree behind them.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE)

install(TARGETS vantle-control RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The program finds these at <exe>/../share/vantle-control, as in the build tree. Permissions come
# from the sources, because the separator template's launcher must stay executable.
foreach(resource ${VANTLE_RESOURCES})
  if(IS_DIRECTORY ${resource})
    install(DIRECTORY ${resource} DESTINATION ${CMAKE_INSTALL_DATADIR}/vantle-control USE_SOURCE_PERMISSIONS)
  else()
    install(FILES ${resource} DESTINATION ${CMAKE_INSTALL_DATADIR}/vantle-control)
  endif()
endforeach()

# The version and date shown by the manual page and the software-centre description; the release
# date is kept as day/month/year, and both files want it as year-month-day.
string(REGEX REPLACE "^([0-9]+)/([0-9]+)/([0-9]+)$" "\\3-\\2-\\1" VANTLE_RELEASE_ISO_DATE "${VANTLE_RELEASE_DATE}")
if(NOT VANTLE_RELEASE_ISO_DATE MATCHES "^[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]$")
  message(FATAL_ERROR "VANTLE_RELEASE_DATE must be day/month/year with two-digit day and month, not '${VANTLE_RELEASE_DATE}'")
endif()
set(VANTLE_PACKAGING_SOURCE ${PROJECT_SOURCE_DIR}/packaging)
set(VANTLE_PACKAGING_BINARY ${CMAKE_BINARY_DIR}/packaging)

install(FILES ${VANTLE_PACKAGING_SOURCE}/${VANTLE_APP_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

configure_file(${VANTLE_PACKAGING_SOURCE}/${VANTLE_APP_ID}.metainfo.xml.in
               ${VANTLE_PACKAGING_BINARY}/${VANTLE_APP_ID}.metainfo.xml @ONLY)
install(FILES ${VANTLE_PACKAGING_BINARY}/${VANTLE_APP_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# Manual pages are installed compressed, as man expects them on Debian; without a name or time
# in the header (-n), the same page always gives the same file.
configure_file(${VANTLE_PACKAGING_SOURCE}/vantle-control.1.in ${VANTLE_PACKAGING_BINARY}/vantle-control.1 @ONLY)
find_program(VANTLE_GZIP gzip REQUIRED)
execute_process(COMMAND ${VANTLE_GZIP} -9nc ${VANTLE_PACKAGING_BINARY}/vantle-control.1
                OUTPUT_FILE ${VANTLE_PACKAGING_BINARY}/vantle-control.1.gz COMMAND_ERROR_IS_FATAL ANY)
install(FILES ${VANTLE_PACKAGING_BINARY}/vantle-control.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# The application icon at each size drawn, under the program's desktop name, and the largest
# drawing as the scalable icon. The tray keeps its own artwork among the resources.
file(GLOB VANTLE_ICON_SIZES LIST_DIRECTORIES true RELATIVE ${PROJECT_SOURCE_DIR}/resources/icons/hicolor
     CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/icons/hicolor/*)
foreach(size ${VANTLE_ICON_SIZES})
  install(FILES ${PROJECT_SOURCE_DIR}/resources/icons/hicolor/${size}/apps/vantle-control.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}/apps RENAME ${VANTLE_APP_ID}.png)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/resources/artwork-src/icons/vantle-control-256.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps RENAME ${VANTLE_APP_ID}.svg)

# Debian looks for the licence of an installed package here.
install(FILES ${PROJECT_SOURCE_DIR}/resources/LICENSE.txt DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vantle-control RENAME copyright)

include(${CMAKE_CURRENT_LIST_DIR}/packaging.cmake)
