// A stand-in for the macOS "defaults" tool, over the property-list files of its state folder
// (the folder the tool is started from). It knows the calls the Dock code makes:
//   defaults export <domain> -                         prints the domain
//   defaults write <domain> <key> <value>              sets key to value
//   defaults write <domain> <key> -array-add <value>   appends value to the array under key
// A value that is a property list is stored as such, any other text as a string. Behaviours:
//   fail-write=n       the next n writes fail
//   fail-export=n      the next n exports fail
//   error-text=invalid-utf8   failures write error output that is not UTF-8
//   hide-at=,2,3,      the readings with these numbers (counted in "readings") leave out
//                      the value of the last -array-add, as a Dock that has not picked it up
#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "services/property_list.h"
#include "services/property_list_codec.h"
#include "stand_in_state.h"

using vantle::PlistValue;
using vantle::standin::StateFolder;

namespace {

int fail(const StateFolder& state, const std::string& message) {
    std::cerr << (state.behaviour("error-text") == "invalid-utf8" ? std::string(vantle::standin::kInvalidUtf8)
                                                                  : message);
    return 1;
}

std::optional<PlistValue::Dictionary> domainOf(const StateFolder& state, const std::string& domain) {
    const std::optional<std::string> bytes = vantle::standin::readBytes(state.preferences(domain));
    if (!bytes) {
        return PlistValue::Dictionary{};
    }
    const std::optional<PlistValue> value = vantle::parsePropertyList(*bytes);
    if (!value || value->asDictionary() == nullptr) {
        return std::nullopt;
    }
    return *value->asDictionary();
}

int exportDomain(const StateFolder& state, const std::string& domain) {
    if (state.take("fail-export")) {
        return fail(state, "Could not export domain " + domain + "\n");
    }
    const int reading = state.number("readings") + 1;
    state.setNumber("readings", reading);
    const std::optional<std::string> bytes = vantle::standin::readBytes(state.preferences(domain));
    if (!bytes) {
        std::cout << vantle::serializePropertyListXml(PlistValue::Dictionary{});
        return 0;
    }
    const std::optional<std::string> lastAdded = vantle::standin::readBytes(state.file("last-added.plist"));
    const std::string hidden = state.behaviour("hide-at").value_or("");
    std::optional<PlistValue::Dictionary> keys = domainOf(state, domain);
    if (lastAdded && keys && hidden.find("," + std::to_string(reading) + ",") != std::string::npos) {
        const std::optional<PlistValue> added = vantle::parsePropertyList(*lastAdded);
        auto apps = keys->find("persistent-apps");
        if (added && apps != keys->end() && apps->second.asArray() != nullptr) {
            PlistValue::Array shown = *apps->second.asArray();
            std::erase(shown, *added);
            apps->second = PlistValue(std::move(shown));
            std::cout << vantle::serializePropertyListXml(PlistValue(*keys));
            return 0;
        }
    }
    std::cout << *bytes;
    return 0;
}

int write(const StateFolder& state, const std::vector<std::string>& arguments) {
    const std::string& domain = arguments[1];
    const std::string& key = arguments[2];
    const bool appending = arguments.size() == 5 && arguments[3] == "-array-add";
    if (state.take("fail-write")) {
        return fail(state, "Could not write domain " + domain + "; exiting\n");
    }
    std::optional<PlistValue::Dictionary> keys = domainOf(state, domain);
    if (!keys) {
        return fail(state, "Could not parse the domain " + domain + "\n");
    }
    const std::optional<PlistValue> parsed = vantle::parsePropertyList(arguments.back());
    const PlistValue value = parsed ? *parsed : PlistValue(arguments.back());
    if (appending) {
        PlistValue::Array array;
        if (auto existing = keys->find(key); existing != keys->end()) {
            if (existing->second.asArray() == nullptr) {
                return fail(state, "Value for key " + key + " is not an array\n");
            }
            array = *existing->second.asArray();
        }
        array.push_back(value);
        keys->insert_or_assign(key, PlistValue(std::move(array)));
        vantle::standin::replaceBytes(state.file("last-added.plist"), vantle::serializePropertyListXml(value));
    } else {
        keys->insert_or_assign(key, value);
    }
    if (!vantle::standin::replaceBytes(state.preferences(domain), vantle::serializePropertyListXml(PlistValue(*keys)))) {
        return fail(state, "Could not write domain " + domain + "\n");
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const StateFolder state{std::filesystem::path(argv[0]).parent_path()};
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const StateFolder::Lock lock(state);
    state.log(vantle::standin::callLine("defaults", arguments) + " [dock " + state.dockState() + "]");
    if (arguments.size() == 3 && arguments[0] == "export" && arguments[2] == "-") {
        return exportDomain(state, arguments[1]);
    }
    if ((arguments.size() == 4 || (arguments.size() == 5 && arguments[3] == "-array-add")) && arguments[0] == "write") {
        return write(state, arguments);
    }
    std::cerr << "Command line interface to a user's defaults.\n";
    return 255;
}
