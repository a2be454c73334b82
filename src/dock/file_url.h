#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantle {

// The absolute file URL of a local path, as the Dock stores it in a tile: "file://", the path
// with every byte outside the characters allowed in a URL path percent-encoded (upper-case
// hex), and a trailing slash for a folder. "/A b/Séparateur.app" as a folder gives
// "file:///A%20b/S%C3%A9parateur.app/".
std::string fileUrlString(std::string_view absolutePath, bool isDirectory);

// The path a URL string points to, or empty when the text is not a URL. The text is read as a
// URL, never as a path: it is not a URL when it is empty, holds a character that a URL cannot
// hold (a space, a non-ASCII character, a lone "%"), or has a second "#". The path is
// percent-decoded (text that does not decode to UTF-8 gives an empty path) and loses its
// trailing slash; for a "file" URL it is also standardised: empty and "." segments go, and in
// an absolute path each ".." removes the segment before it.
std::optional<std::string> urlPath(std::string_view urlString);

}  // namespace vantle
