#include "display/output_watch_x11.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vantle {

OutputWatch::OutputWatch(xcb_connection_t* connection, std::function<void()> changed)
    : connection_(connection), changed_(std::move(changed)) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection_, &xcb_randr_id);
    if (extension == nullptr || !extension->present) {
        return;
    }
    const char* name = "EDID";
    edidCookie_ = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name).sequence;
    firstEvent_ = extension->first_event;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

OutputWatch::~OutputWatch() {
    if (edidCookie_) {
        // An answer never read would stay in the connection's queue for good.
        std::free(xcb_intern_atom_reply(connection_, xcb_intern_atom_cookie_t{*edidCookie_}, nullptr));
    }
    if (firstEvent_ != 0 && QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->removeNativeEventFilter(this);
    }
}

bool OutputWatch::isEdid(std::uint32_t atom) {
    if (edidCookie_) {
        std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(connection_, xcb_intern_atom_cookie_t{*edidCookie_}, nullptr), &std::free);
        edidCookie_.reset();
        edidAtom_ = reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
    }
    return edidAtom_ != XCB_ATOM_NONE && atom == edidAtom_;
}

bool OutputWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (firstEvent_ == 0 || eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != firstEvent_ + XCB_RANDR_NOTIFY) {
        return false;
    }
    const auto* notify = reinterpret_cast<const xcb_randr_notify_event_t*>(event);
    // Other properties (a driver's backlight property, say) change often and say nothing about
    // which monitor is attached.
    if (notify->subCode == XCB_RANDR_NOTIFY_OUTPUT_CHANGE ||
        (notify->subCode == XCB_RANDR_NOTIFY_OUTPUT_PROPERTY && isEdid(notify->u.op.atom))) {
        changed_();
    }
    // The toolkit follows its screens with the same events.
    return false;
}

}  // namespace vantle
