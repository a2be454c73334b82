# The application bundle's Info.plist, written from its template as the macOS build writes it,
# must be a property list that libplist reads, and hold every key the program and its update
# framework read, with the values it was given:
#   cmake -DPLISTUTIL=<path> -DWORK=<folder> -P info_plist_test.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../../packaging/macos/info_plist.cmake)

set(VANTLE_BUILD_NUMBER "261122.1")
set(VANTLE_RELEASE_VERSION "1.0")
set(VANTLE_RELEASE_DATE "22/11/2026")
set(VANTLE_UPDATE_FEED "https://vantle.example/appcast.xml?channel=a&b")
set(VANTLE_UPDATE_PUBLIC_KEY "c3RhbmQtaW4ga2V5")
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
vantle_write_info_plist(${WORK}/Info.plist)

# Through the binary form and back: plistutil fails on anything that is not a property list.
execute_process(COMMAND ${PLISTUTIL} -i ${WORK}/Info.plist -f bin -o ${WORK}/Info.bin RESULT_VARIABLE result
                ERROR_VARIABLE said)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "plistutil could not read the Info.plist (${result}): ${said}")
endif()
execute_process(COMMAND ${PLISTUTIL} -i ${WORK}/Info.bin -f xml -o ${WORK}/Info.xml RESULT_VARIABLE result
                ERROR_VARIABLE said)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "plistutil could not read its own binary form back (${result}): ${said}")
endif()
file(READ ${WORK}/Info.xml parsed)
string(REGEX REPLACE "[\t\n]" "" parsed "${parsed}")

function(expect key value)
  string(FIND "${parsed}" "<key>${key}</key>${value}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the Info.plist lacks ${key} = ${value}:\n${parsed}")
  endif()
endfunction()
expect(CFBundleIdentifier "<string>org.orlend.VantleControl</string>")
expect(CFBundleExecutable "<string>vantle-control</string>")
expect(CFBundlePackageType "<string>APPL</string>")
expect(CFBundleIconFile "<string>VantleControl</string>")
expect(CFBundleVersion "<string>261122.1</string>")
expect(CFBundleShortVersionString "<string>1.0</string>")
expect(VantleReleaseVersion "<string>1.0</string>")
expect(VantleReleaseDate "<string>22/11/2026</string>")
expect(LSUIElement "<true/>")
expect(LSMinimumSystemVersion "<string>13.0</string>")
expect(SUFeedURL "<string>https://vantle.example/appcast.xml?channel=a&amp;b</string>")
expect(SUPublicEDKey "<string>c3RhbmQtaW4ga2V5</string>")
foreach(language en fr nl de it es pt ru)
  string(FIND "${parsed}" "<string>${language}</string>" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "CFBundleLocalizations lacks ${language}")
  endif()
endforeach()
message(STATUS "Info.plist parsed with every key")
