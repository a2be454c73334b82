# The application bundle's icon file, made as the macOS build makes it, must hold our artwork at
# every size the build gives it:
#   cmake -DICONS=<folder> -DWORK=<folder> -DPNG2ICNS=<path> -DICNS2PNG=<path> -P application_icon_test.cmake
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} -DICONS=${ICONS} -DOUTPUT=${WORK}/VantleControl.icns -DPNG2ICNS=${PNG2ICNS}
                        -P ${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/application_icon.cmake
                RESULT_VARIABLE result ERROR_VARIABLE said)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the icon file was not made: ${said}")
endif()
execute_process(COMMAND ${ICNS2PNG} -l ${WORK}/VantleControl.icns RESULT_VARIABLE result OUTPUT_VARIABLE listing
                ERROR_VARIABLE listing)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "icns2png could not read the icon file: ${listing}")
endif()
foreach(size 16 32 48 128 256)
  if(NOT listing MATCHES " ${size}x${size} 32-bit icon")
    message(FATAL_ERROR "the icon file has no ${size} pixel image:\n${listing}")
  endif()
endforeach()
message(STATUS "icon file with every size")
