#include "app/instance_name_x11.h"

namespace vantle {

std::string instanceName(unsigned int userId, std::optional<std::string> display) {
    std::string session = display.value_or(":0");
    // "host:display.screen": the screen is cut off, the host and display number stay.
    const std::size_t colon = session.rfind(':');
    if (colon != std::string::npos) {
        const std::size_t dot = session.find('.', colon);
        if (dot != std::string::npos) {
            session.erase(dot);
        }
    }
    // The name lives in the abstract socket namespace, where every byte counts: anything outside
    // a plain set becomes '_' so that the name stays readable in tools such as ss.
    for (char& character : session) {
        const bool plain = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
                           (character >= '0' && character <= '9') || character == ':' || character == '.' ||
                           character == '-';
        if (!plain) {
            character = '_';
        }
    }
    return "vantle-control." + std::to_string(userId) + "." + session;
}

}  // namespace vantle
