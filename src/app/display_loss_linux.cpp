#include "app/display_loss_linux.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QThread>
#include <atomic>
#include <cstdio>
#include <cstdlib>


namespace vantle {
namespace {

SessionEndHandler* watchedHandler = nullptr;
xcb_connection_t* watchedConnection = nullptr;
QtMessageHandler toolkitHandler = nullptr;
std::atomic<bool> ending{false};

// Does nothing while the connection is sound; once it is broken, ends the process for good.
void endIfDisplayGone() {
    // Only the main thread may give the levels back; the toolkit's own end comes on it too.
    if (watchedHandler == nullptr || QThread::currentThread() != qGuiApp->thread() ||
        xcb_connection_has_error(watchedConnection) == 0 || ending.exchange(true)) {
        return;
    }
    const DisplayLossOutcome outcome = watchedHandler->displayWentAway();
    const char* tail = "the program ends.";
    switch (outcome) {
    case DisplayLossOutcome::nothingMuted:
        break;
    case DisplayLossOutcome::levelsGivenBack:
        tail = "the muted levels were given back and the program ends.";
        break;
    case DisplayLossOutcome::levelsKept:
        tail = "some muted levels could not be given back; they stay remembered for the next start, "
               "and the program ends.";
        break;
    }
    std::fprintf(stderr, "vantle-control: the X display went away; %s\n", tail);
    std::fflush(nullptr);
    // Whatever ran next, the toolkit's exit included, would work with a dead connection and
    // tear down objects that other threads still use.
    std::_Exit(1);
}

// The toolkit reports the broken connection as a warning just before it exits; its own text is
// replaced by ours.
void watchMessages(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    endIfDisplayGone();
    if (toolkitHandler != nullptr) {
        toolkitHandler(type, context, message);
    } else {
        std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
    }
}

}  // namespace

DisplayLossWatch::DisplayLossWatch(SessionEndHandler& handler) {
    auto* x11 = qGuiApp != nullptr ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (x11 == nullptr || watchedHandler != nullptr) {
        return;
    }
    watchedHandler = &handler;
    watchedConnection = x11->connection();
    toolkitHandler = qInstallMessageHandler(watchMessages);
    // Any other way out through exit() (Xlib's own handler of a broken connection, say) still
    // comes here first.
    static const bool registered = std::atexit(endIfDisplayGone) == 0;
    (void)registered;
}

DisplayLossWatch::~DisplayLossWatch() {
    if (watchedHandler == nullptr) {
        return;
    }
    qInstallMessageHandler(toolkitHandler);
    watchedHandler = nullptr;
    watchedConnection = nullptr;
}

}  // namespace vantle
