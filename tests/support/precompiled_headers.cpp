// The source that the test programs' shared precompiled header is made from; CMake adds the
// header itself (cmake/test_compile.cmake).
namespace vantle::testing {
inline constexpr int kPrecompiledHeadersAnchor = 0;
}  // namespace vantle::testing
