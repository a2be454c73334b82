// The running application's bundle: its Contents/Resources folder and the information keys of
// its Info.plist, which the build writes from the project's version and release date.
#import <Foundation/Foundation.h>

#include <initializer_list>
#include <string_view>

#include "services/bundle.h"

namespace vantle {
namespace {

// The keys the program reads; a key of another type than text is left out, as if absent.
constexpr std::initializer_list<std::string_view> kInfoKeys = {"CFBundleVersion", "VantleReleaseVersion",
                                                               "VantleReleaseDate"};

std::map<std::string, std::string, std::less<>> readInfo(NSBundle* bundle) {
    std::map<std::string, std::string, std::less<>> info;
    for (std::string_view key : kInfoKeys) {
        NSString* name = [NSString stringWithUTF8String:std::string(key).c_str()];
        id value = [bundle objectForInfoDictionaryKey:name];
        if (value != nil && [value isKindOfClass:[NSString class]]) {
            const char* bytes = static_cast<NSString*>(value).UTF8String;
            if (bytes != nullptr) {
                info.emplace(std::string(key), bytes);
            }
        }
    }
    return info;
}

Bundle readMainBundle() {
    @autoreleasepool {
        NSBundle* bundle = NSBundle.mainBundle;
        NSString* resources = bundle.resourcePath;
        const char* path = resources != nil ? resources.UTF8String : nullptr;
        return Bundle(path != nullptr ? std::filesystem::path(path) : std::filesystem::path(), readInfo(bundle));
    }
}

}  // namespace

const Bundle& mainBundle() {
    static const Bundle bundle = readMainBundle();
    return bundle;
}

}  // namespace vantle
