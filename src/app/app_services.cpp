// TEMPORARY until the login and update controllers land.
#include "app/app.h"

namespace vantle {
void App::configureInitialLogin() {}
void App::changeLogin(bool) {}
void App::openLoginSettings() {}
RefreshFacts::Login App::loginFacts() { return {}; }
void App::startUpdates() {}
void App::checkUpdates() {}
void App::changeAutomaticUpdates(bool) {}
RefreshFacts::Updates App::updateFacts() { return {}; }
}  // namespace vantle
