// The languages the system picks for the running application: its bundle's localizations
// (one .lproj folder per language) in the order of the user's language list, with the
// application's own "AppleLanguages" setting, which a change of language saves, in front.
#import <Foundation/Foundation.h>

#include "localization/preferred_languages.h"

namespace vantle {
namespace {

std::vector<std::string> strings(NSArray<NSString*>* list) {
    std::vector<std::string> result;
    for (NSString* item in list) {
        const char* bytes = item.UTF8String;
        if (bytes != nullptr) {
            result.emplace_back(bytes);
        }
    }
    return result;
}

}  // namespace

std::vector<std::string> preferredLanguages() {
    @autoreleasepool {
        std::vector<std::string> languages = strings(NSBundle.mainBundle.preferredLocalizations);
        // A program started outside its bundle has no localizations of its own; the user's
        // list is the nearest answer then.
        if (languages.empty()) {
            languages = strings(NSLocale.preferredLanguages);
        }
        return languages;
    }
}

}  // namespace vantle
