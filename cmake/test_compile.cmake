# How the tests' own sources are compiled. Most of a test file's compile time goes to parsing
# GoogleTest and to optimising the code its assertions expand to, and neither is what a test run
# checks: the code under test keeps the build type's optimisations, and the tests' own sources
# are compiled with the ones that keep debugging exact, from one precompiled GoogleTest header.
# CMAKE_DISABLE_PRECOMPILE_HEADERS=ON builds without the precompiled header.

# The precompiled header is made once, here, and used by every test program. GCC takes it only
# where the position-independence setting is the one it was made with; the toolkit asks for
# -fPIC, so every test source is compiled with it.
add_library(vantle_test_precompiled_headers OBJECT ${PROJECT_SOURCE_DIR}/tests/support/precompiled_headers.cpp)
target_link_libraries(vantle_test_precompiled_headers PRIVATE GTest::gtest)
target_precompile_headers(vantle_test_precompiled_headers PRIVATE <gtest/gtest.h>)

function(vantle_test_compile_options target)
  target_compile_options(${target} PRIVATE -fPIC $<$<NOT:$<CONFIG:Debug>>:-Og>)
endfunction()
vantle_test_compile_options(vantle_test_precompiled_headers)

# Compiles a test program's own sources as described above.
function(vantle_compile_as_test target)
  vantle_test_compile_options(${target})
  target_precompile_headers(${target} REUSE_FROM vantle_test_precompiled_headers)
endfunction()
