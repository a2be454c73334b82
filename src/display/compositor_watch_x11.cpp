#include "display/compositor_watch_x11.h"

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <QCoreApplication>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vantle {
namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> own(Reply* reply) {
    return std::unique_ptr<Reply, decltype(&std::free)>(reply, &std::free);
}

}  // namespace

CompositorWatch::CompositorWatch(xcb_connection_t* connection, std::function<void(bool)> changed)
    : connection_(connection), changed_(std::move(changed)) {
    const char* name = "_NET_WM_CM_S0";
    const xcb_intern_atom_cookie_t atomCookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection_, &xcb_xfixes_id);
    // The version must be asked before the extension's requests are used on a connection; the
    // toolkit asked already, and asking again changes nothing.
    const xcb_xfixes_query_version_cookie_t versionCookie =
        xcb_xfixes_query_version(connection_, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    if (auto atom = own(xcb_intern_atom_reply(connection_, atomCookie, nullptr))) {
        selection_ = atom->atom;
    }
    auto version = own(xcb_xfixes_query_version_reply(connection_, versionCookie, nullptr));
    if (extension == nullptr || !extension->present || !version || selection_ == XCB_ATOM_NONE) {
        return;
    }
    firstEvent_ = extension->first_event;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_xfixes_select_selection_input(connection_, root, selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(connection_);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

CompositorWatch::~CompositorWatch() {
    if (firstEvent_ != 0 && QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->removeNativeEventFilter(this);
    }
}

bool CompositorWatch::running() const {
    if (selection_ == XCB_ATOM_NONE) {
        return false;
    }
    auto owner = own(xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
    return owner && owner->owner != XCB_NONE;
}

bool CompositorWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (firstEvent_ == 0 || eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != firstEvent_ + XCB_XFIXES_SELECTION_NOTIFY) {
        return false;
    }
    const auto* notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (notify->selection == selection_ && changed_) {
        changed_(notify->owner != XCB_NONE);
    }
    // The toolkit watches selections of its own (the clipboard); the event stays theirs too.
    return false;
}

}  // namespace vantle
