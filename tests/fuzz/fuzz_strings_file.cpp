// Feeds arbitrary bytes to the string-table reader, both to the strings-file parser on its own
// and through the whole table load of a language folder (which also takes XML and binary
// property lists). Beyond not crashing, a table that is read must hold only valid UTF-8, and
// writing it out again in strings-file syntax must read back as the same table.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "fuzz_check.h"
#include "localization/localization.h"
#include "localization/strings_file.h"
#include "localization/utf.h"

namespace {

using vantle::fuzz::require;

std::filesystem::path& resourceDirectory() {
    static std::filesystem::path directory;
    return directory;
}

void removeResourceDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(resourceDirectory(), ignored);
}

// A quoted strings-file literal for any UTF-8 text. A NUL byte may not stand in the file
// itself, so it goes in as an octal escape; three digits keep a following digit out of it.
std::string literalOf(std::string_view text) {
    std::string literal = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            literal.push_back('\\');
            literal.push_back(c);
        } else if (c == '\0') {
            literal += "\\000";
        } else {
            literal.push_back(c);
        }
    }
    literal.push_back('"');
    return literal;
}

std::string written(const vantle::StringTable& table, bool braced) {
    std::string text = braced ? "{\n" : "";
    for (const auto& [key, value] : table) {
        text += "/* entry */ " + literalOf(key) + " = " + literalOf(value) + ";\n";
    }
    if (braced) {
        text += "}\n";
    }
    return text;
}

// The table loader hands XML and binary property lists to the property-list reader and
// everything else to the strings-file parser.
bool looksLikeSerializedPropertyList(std::string_view bytes) {
    if (bytes.starts_with("bplist")) {
        return true;
    }
    const std::size_t start = bytes.find_first_not_of(" \t\r\n");
    return start != std::string_view::npos && bytes.substr(start).starts_with("<");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    // The table is written to a file for every input; a memory file system keeps that cheap.
    std::error_code ignored;
    const std::filesystem::path base =
        std::filesystem::is_directory("/dev/shm", ignored) ? "/dev/shm" : std::filesystem::temp_directory_path();
    std::string pattern = (base / "vantle-fuzz-strings-XXXXXX").string();
    require(::mkdtemp(pattern.data()) != nullptr, "a temporary folder can be made");
    resourceDirectory() = pattern;
    std::filesystem::create_directory(resourceDirectory() / "xx.lproj");
    std::atexit(removeResourceDirectory);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    const std::optional<vantle::StringTable> parsed = vantle::parseStringsFile(bytes);
    if (parsed) {
        for (const auto& [key, value] : *parsed) {
            require(vantle::isValidUtf8(key) && vantle::isValidUtf8(value), "a table holds only UTF-8 text");
        }
        const bool braced = size % 2 == 0;
        const std::optional<vantle::StringTable> again = vantle::parseStringsFile(written(*parsed, braced));
        require(again.has_value(), "a table written out reads back");
        require(*again == *parsed, "a table written out reads back unchanged");
    }

    {
        std::ofstream file(resourceDirectory() / "xx.lproj" / "Localizable.strings", std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    const vantle::Bundle bundle(resourceDirectory(), {});
    const vantle::StringTable loaded = vantle::Localization::table("xx", bundle);
    if (!looksLikeSerializedPropertyList(bytes)) {
        require(loaded == parsed.value_or(vantle::StringTable{}), "the table load agrees with the parser");
    }
    for (const auto& [key, value] : loaded) {
        // A lookup of every key finds its own text first.
        require(vantle::Localization::text(key, loaded, {}) == value, "a loaded key looks up its own text");
    }
    return 0;
}
