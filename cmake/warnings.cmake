# Every target of the project compiles with these warnings. They stop the build only where
# VANTLE_WARNINGS_AS_ERRORS is on, as our own test command sets it: a user's or a packager's build,
# with another compiler version or other optimisation flags, must never fail on a new warning.
option(VANTLE_WARNINGS_AS_ERRORS "Turn compiler warnings into errors (the project's test command does)" OFF)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
                    -Woverloaded-virtual -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
if(VANTLE_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()
