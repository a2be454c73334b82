#include "app/quit_flow.h"

namespace vantle {

QuitAnswer applicationShouldTerminate(bool relaunchingForLanguage, bool installingUpdate, VolumeControl& volume,
                                      QuitAlerts& alerts) {
    if (relaunchingForLanguage) {
        return QuitAnswer::terminateNow;
    }
    if (installingUpdate) {
        if (volume.muted()) {
            volume.unmute();
        }
        return volume.muted() ? QuitAnswer::cancel : QuitAnswer::terminateNow;
    }
    if (!alerts.confirmQuit()) {
        return QuitAnswer::cancel;
    }
    if (volume.muted()) {
        volume.unmute();
    }
    if (volume.muted() && alerts.stayAfterFailedRestore()) {
        return QuitAnswer::cancel;
    }
    return QuitAnswer::terminateNow;
}

}  // namespace vantle
