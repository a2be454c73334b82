#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>
#include <optional>

struct xcb_connection_t;

namespace vantle {

// Tells when the X server reports that its outputs changed: one connected or disconnected, or an
// output's EDID replaced (another monitor on the same connector). The toolkit follows the
// screens' geometry, but a monitor swapped for another of the same size changes no geometry, and
// only these notices tell of it. The events are those the toolkit already selects on its own
// connection, seen before the toolkit handles them; nothing is selected or taken away. Main
// thread only; the toolkit's event loop must run.
class OutputWatch final : private QAbstractNativeEventFilter {
public:
    // changed runs on the main thread for each notice, before the toolkit sees it.
    OutputWatch(xcb_connection_t* connection, std::function<void()> changed);
    ~OutputWatch() override;
    OutputWatch(const OutputWatch&) = delete;
    OutputWatch& operator=(const OutputWatch&) = delete;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool isEdid(std::uint32_t atom);

    xcb_connection_t* connection_;
    std::function<void()> changed_;
    // RandR's first event number on this connection; 0 without the extension.
    std::uint8_t firstEvent_ = 0;
    // Asked for at the start and read at the first property notice, so that the start does not
    // wait for it.
    std::optional<std::uint32_t> edidCookie_;
    std::uint32_t edidAtom_ = 0;
};

}  // namespace vantle
