# Every target of the project compiles with these; a warning stops the build.
add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align
                    -Woverloaded-virtual -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
