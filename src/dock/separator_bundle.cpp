#include "dock/separator_bundle.h"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include "dock/dock_tiles.h"
#include "dock/identifiers.h"
#include "localization/localization.h"
#include "services/property_list_codec.h"

namespace vantle {
namespace {

CommandError fileSystemError(const std::error_code& error) {
    return posixError(error.value());
}

Expected<std::string> readWholeFile(const std::filesystem::path& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return posixError(errno != 0 ? errno : EIO);
    }
    std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (file.bad()) {
        return posixError(EIO);
    }
    return bytes;
}

std::optional<CommandError> writeWholeFile(const std::filesystem::path& path, const std::string& bytes) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) {
        return posixError(errno != 0 ? errno : EIO);
    }
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.flush();
    if (!file) {
        return posixError(errno != 0 ? errno : EIO);
    }
    return std::nullopt;
}

std::uint32_t bigEndian32(std::string_view bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        value = (value << 8) | static_cast<unsigned char>(bytes[offset + index]);
    }
    return value;
}

}  // namespace

std::string separatorTheme(const std::optional<std::string>& interfaceStyle) {
    return interfaceStyle == "Dark" ? "Dark" : "Light";
}

std::filesystem::path separatorRoot(const std::filesystem::path& applicationSupport) {
    // Standardised, so that the paths recorded for separators are the ones their tiles' URLs
    // read back as.
    std::filesystem::path root = (applicationSupport / "Vantle Control" / "Separators").lexically_normal();
    return root.has_filename() ? root : root.parent_path();
}

std::string separatorBundleIdentifier(std::string_view uuid) {
    return std::string(kMakerReverseDomain) + ".VantleControl.separator." + std::string(uuid);
}

std::string makeUuid() {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::random_device device;
    std::uniform_int_distribution<unsigned> byteDistribution(0, 255);
    unsigned char bytes[16];
    for (unsigned char& byte : bytes) {
        byte = static_cast<unsigned char>(byteDistribution(device));
    }
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);  // version 4: random
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);  // the RFC 4122 variant
    std::string text;
    for (int index = 0; index < 16; ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) {
            text.push_back('-');
        }
        text.push_back(kHex[bytes[index] >> 4]);
        text.push_back(kHex[bytes[index] & 0x0F]);
    }
    return text;
}

std::optional<std::filesystem::path> separatorTemplate(const Bundle& bundle) {
    // The template has a resource folder of its own, which keeps the application's inner
    // layout apart from the program's other resources.
    return bundle.resource("SeparatorTemplate/SeparatorTemplate", "app");
}

std::optional<std::filesystem::path> separatorArtwork(const Bundle& bundle, std::string_view theme) {
    return bundle.resource("Separator" + std::string(theme), "png");
}

bool isReadablePng(std::string_view bytes) {
    static constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
    // Signature, chunk length, "IHDR", width, height.
    if (bytes.size() < 24 || !bytes.starts_with(kSignature) || bytes.substr(12, 4) != "IHDR") {
        return false;
    }
    return bigEndian32(bytes, 16) != 0 && bigEndian32(bytes, 20) != 0;
}

Expected<std::filesystem::path> createSeparatorBundle(const std::filesystem::path& templatePath,
                                                      const std::filesystem::path& root, const std::string& uuid) {
    const std::filesystem::path folder = root / uuid;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        return fileSystemError(error);
    }
    const std::filesystem::path bundlePath = folder / kSeparatorBundleName;
    std::filesystem::copy(templatePath, bundlePath,
                          std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks,
                          error);
    if (error) {
        return fileSystemError(error);
    }

    const std::filesystem::path infoPath = bundlePath / "Contents" / "Info.plist";
    Expected<std::string> infoBytes = readWholeFile(infoPath);
    if (!infoBytes) {
        return infoBytes.error();
    }
    std::optional<PlistValue> info = parsePropertyList(*infoBytes);
    if (!info || info->asDictionary() == nullptr) {
        // A template whose Info.plist is broken is a broken installation.
        return propertyListReadError(L("s037"));
    }
    PlistValue::Dictionary keys = *info->asDictionary();
    keys.insert_or_assign("CFBundleIdentifier", PlistValue(separatorBundleIdentifier(uuid)));
    if (std::optional<CommandError> written = writeWholeFile(infoPath, serializePropertyListXml(PlistValue(keys)))) {
        return *written;
    }
    return bundlePath;
}

}  // namespace vantle
