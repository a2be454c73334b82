# Makes the application bundle's icon file from the PNG icons the Linux build installs, with
# png2icns (icnsutils on Debian, libicns on Homebrew), so that both platforms show the same art
# and nothing is drawn twice:
#   cmake -DICONS=<resources/icons/hicolor> -DOUTPUT=<file.icns> [-DPNG2ICNS=<path>] -P application_icon.cmake
# The sizes are those an icon file holds that we have artwork for.
if(NOT ICONS OR NOT OUTPUT)
  message(FATAL_ERROR "usage: cmake -DICONS=<folder> -DOUTPUT=<file.icns> -P application_icon.cmake")
endif()
if(NOT PNG2ICNS)
  find_program(PNG2ICNS png2icns REQUIRED)
endif()
set(pngs)
foreach(size 16 32 48 128 256)
  set(png ${ICONS}/${size}x${size}/apps/vantle-control.png)
  if(NOT EXISTS ${png})
    message(FATAL_ERROR "no ${size} pixel icon at ${png}")
  endif()
  list(APPEND pngs ${png})
endforeach()
get_filename_component(folder ${OUTPUT} DIRECTORY)
file(MAKE_DIRECTORY ${folder})
execute_process(COMMAND ${PNG2ICNS} ${OUTPUT} ${pngs} RESULT_VARIABLE result OUTPUT_VARIABLE said ERROR_VARIABLE said)
if(NOT result EQUAL 0 OR NOT EXISTS ${OUTPUT})
  message(FATAL_ERROR "png2icns failed (${result}): ${said}")
endif()
