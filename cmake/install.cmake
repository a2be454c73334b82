# Where `cmake --install` puts the program and its resources.
include(GNUInstallDirs)
install(TARGETS vantle-control RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${VANTLE_RESOURCE_DIR}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vantle-control)
