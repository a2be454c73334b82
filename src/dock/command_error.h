#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace vantle {

// An error of the Dock commands: where it comes from, a number within that origin, and the text
// the settings window shows for it. Errors of the operating system (a tool that cannot be
// started, a file that cannot be read) keep the system's own number and text.
struct CommandError {
    std::string domain;
    std::int64_t code = 0;
    std::string description;

    bool operator==(const CommandError&) const = default;
};

// The Dock coordinator's own failures, always code 1.
inline constexpr std::string_view kDockCoordinatorDomain = "VantleControl.Dock";
// A system tool that ended with a status other than 0; the code is that status.
inline constexpr std::string_view kToolDomain = "VantleControl";
// The synchronous reading of the Dock's tile list, code 1.
inline constexpr std::string_view kDockListDomain = "Dock";
// An operating-system call failed; the code is the errno value.
inline constexpr std::string_view kPosixDomain = "NSPOSIXErrorDomain";
// Bytes that are not a property list, or a property list of the wrong shape.
inline constexpr std::string_view kPropertyListDomain = "NSCocoaErrorDomain";
inline constexpr std::int64_t kPropertyListCorruptCode = 3840;

// The error of a failed operating-system call, with the system's text for errorNumber.
CommandError posixError(int errorNumber);

// Either a value or the error that prevented it. The value is only there when there is no
// error, so callers test before they take it.
template <typename T>
class Expected {
public:
    Expected(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Expected(CommandError error) : state_(std::in_place_index<1>, std::move(error)) {}

    bool hasValue() const { return state_.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    T& value() { return std::get<0>(state_); }
    const T& value() const { return std::get<0>(state_); }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    const CommandError& error() const { return std::get<1>(state_); }

private:
    std::variant<T, CommandError> state_;
};

}  // namespace vantle
