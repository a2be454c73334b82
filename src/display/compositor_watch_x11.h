#pragma once

#include <QAbstractNativeEventFilter>
#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace vantle {

// Tells when a compositing manager starts or stops on the X screen: the X server reports every
// change of the owner of the _NET_WM_CM_S0 selection (XFixes), on the toolkit's own connection,
// so a shade can change how it dims before a translucent window shows as opaque black. Main
// thread only; the toolkit's event loop must run.
class CompositorWatch final : private QAbstractNativeEventFilter {
public:
    // changed runs with the new state whenever a compositor comes or goes.
    CompositorWatch(xcb_connection_t* connection, std::function<void(bool running)> changed);
    ~CompositorWatch() override;
    CompositorWatch(const CompositorWatch&) = delete;
    CompositorWatch& operator=(const CompositorWatch&) = delete;

    // Whether a compositing manager owns the selection now; asks the server.
    bool running() const;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

    xcb_connection_t* connection_;
    std::function<void(bool)> changed_;
    std::uint32_t selection_ = 0;
    // The number of XFixes' first event on this connection; 0 without the extension.
    std::uint8_t firstEvent_ = 0;
};

}  // namespace vantle
