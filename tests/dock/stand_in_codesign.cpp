// A stand-in for "codesign" that makes an ad-hoc signature the way the tests can see it:
//   codesign --force --sign - <bundle>
// writes <bundle>/Contents/_CodeSignature/CodeResources naming the bundle's identifier.
// Behaviours (in the folder the tool is started from):
//   fail-codesign=n             the next n calls fail
//   error-text=invalid-utf8     failures write error output that is not UTF-8
#include <iostream>
#include <string>
#include <vector>

#include "services/property_list.h"
#include "services/property_list_codec.h"
#include "stand_in_state.h"

using vantle::standin::StateFolder;

namespace {

int fail(const StateFolder& state, const std::string& message) {
    std::cerr << (state.behaviour("error-text") == "invalid-utf8" ? std::string(vantle::standin::kInvalidUtf8)
                                                                  : message);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    const StateFolder state{std::filesystem::path(argv[0]).parent_path()};
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const StateFolder::Lock lock(state);
    state.log(vantle::standin::callLine("codesign", arguments));
    if (arguments.size() != 4 || arguments[0] != "--force" || arguments[1] != "--sign" || arguments[2] != "-") {
        return fail(state, "Usage: codesign -s identity [-fv*] path ...\n");
    }
    if (state.take("fail-codesign")) {
        return fail(state, arguments[3] + ": bundle format unrecognized, invalid, or unsuitable\n");
    }
    const std::filesystem::path bundle = arguments[3];
    const std::optional<std::string> info = vantle::standin::readBytes(bundle / "Contents" / "Info.plist");
    const std::optional<vantle::PlistValue> keys = info ? vantle::parsePropertyList(*info) : std::nullopt;
    if (!keys || keys->asDictionary() == nullptr || !keys->asDictionary()->contains("CFBundleIdentifier")) {
        return fail(state, arguments[3] + ": No such file or directory\n");
    }
    const std::string* identifier = keys->asDictionary()->at("CFBundleIdentifier").asString();
    std::filesystem::create_directories(bundle / "Contents" / "_CodeSignature");
    vantle::standin::replaceBytes(bundle / "Contents" / "_CodeSignature" / "CodeResources",
                                  "adhoc " + (identifier != nullptr ? *identifier : std::string()) + "\n");
    return 0;
}
