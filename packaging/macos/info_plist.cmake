# Writes the application bundle's Info.plist from Info.plist.in beside this file. Used by the
# macOS build (cmake/macos.cmake) and, in script mode, by the test that parses the result here:
#   cmake -DOUTPUT=<file> [-DVANTLE_BUILD_NUMBER=... ...] -P info_plist.cmake
# The values come from the caller's variables of the same names; each has a default so that the
# test needs to pass none.
set(VANTLE_INFO_PLIST_TEMPLATE ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in)

function(vantle_write_info_plist output)
  foreach(pair
      "VANTLE_BUNDLE_EXECUTABLE=vantle-control"
      "VANTLE_BUNDLE_IDENTIFIER=org.orlend.VantleControl"
      "VANTLE_BUILD_NUMBER=unknown"
      "VANTLE_RELEASE_VERSION=1.0"
      "VANTLE_RELEASE_DATE="
      "VANTLE_MINIMUM_MACOS=13.0"
      "VANTLE_UPDATE_FEED=https://vantle.example/appcast.xml"
      "VANTLE_UPDATE_PUBLIC_KEY=")
    string(FIND "${pair}" "=" split)
    string(SUBSTRING "${pair}" 0 ${split} name)
    math(EXPR start "${split} + 1")
    string(SUBSTRING "${pair}" ${start} -1 fallback)
    if(NOT DEFINED ${name})
      set(${name} "${fallback}")
    endif()
    # The values land in XML text: the characters that would end it are written as entities.
    string(REPLACE "&" "&amp;" value "${${name}}")
    string(REPLACE "<" "&lt;" value "${value}")
    string(REPLACE ">" "&gt;" value "${value}")
    set(${name} "${value}")
  endforeach()
  configure_file(${VANTLE_INFO_PLIST_TEMPLATE} ${output} @ONLY)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  if(NOT OUTPUT)
    message(FATAL_ERROR "usage: cmake -DOUTPUT=<file> -P info_plist.cmake")
  endif()
  vantle_write_info_plist(${OUTPUT})
endif()
