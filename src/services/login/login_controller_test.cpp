#include "services/login/login_controller.h"

#include <gtest/gtest.h>

#include "localization/localization.h"
#include "services/login/testing/fake_login_service.h"
#include "services/settings_keys.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

using testing::FakeLoginService;

class LoginControllerTest : public ::testing::Test {
protected:
    LoginController controller(bool installed) {
        return LoginController(service, defaults, installed, [this] { ++refreshes; });
    }

    bool setupDone() const { return defaults.boolean(settings::kLoginSetupDone); }

    FakeLoginService service;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    int refreshes = 0;
};

TEST_F(LoginControllerTest, AFirstLaunchFromABuildTreeOrDownloadRegistersNothingAndLeavesTheFlagUnset) {
    LoginController login = controller(false);
    login.configureInitialLogin();
    EXPECT_TRUE(service.calls.empty());
    EXPECT_FALSE(setupDone());
    EXPECT_FALSE(store.values.contains(std::string(settings::kLoginSetupDone)));
}

TEST_F(LoginControllerTest, TheFirstLaunchAfterInstallingRegistersOnceAndSetsTheFlag) {
    controller(false).configureInitialLogin();
    LoginController installed = controller(true);
    installed.configureInitialLogin();
    EXPECT_EQ(service.calls, std::vector<const char*>{"register"});
    EXPECT_EQ(service.current, LoginItemStatus::enabled);
    EXPECT_TRUE(setupDone());
    EXPECT_FALSE(installed.loginError());
}

TEST_F(LoginControllerTest, ASecondLaunchWithTheFlagSetNeverRegistersEvenWhenNotRegistered) {
    defaults.set(settings::kLoginSetupDone, true);
    service.current = LoginItemStatus::notRegistered;
    controller(true).configureInitialLogin();
    EXPECT_TRUE(service.calls.empty());
}

TEST_F(LoginControllerTest, TheFirstLaunchRegistersOnlyWhenNotRegisteredOrNotFound) {
    const std::pair<LoginItemStatus, bool> cases[] = {{LoginItemStatus::notRegistered, true},
                                                      {LoginItemStatus::enabled, false},
                                                      {LoginItemStatus::requiresApproval, false},
                                                      {LoginItemStatus::notFound, true}};
    for (const auto& [status, registers] : cases) {
        store.values.clear();
        service.calls.clear();
        service.current = status;
        controller(true).configureInitialLogin();
        EXPECT_EQ(service.calls.size(), registers ? 1u : 0u) << static_cast<int>(status);
        EXPECT_TRUE(setupDone());
    }
}

TEST_F(LoginControllerTest, AFailedFirstRegistrationShowsItsReasonAndIsNotTriedAgain) {
    service.registerFailure = LoginFailure{"Read-only file system"};
    LoginController login = controller(true);
    login.configureInitialLogin();
    EXPECT_EQ(login.loginError(), L("s015", "Read-only file system"));
    EXPECT_TRUE(setupDone());
    controller(true).configureInitialLogin();
    EXPECT_EQ(service.calls.size(), 1u);
}

TEST_F(LoginControllerTest, TurningTheCheckBoxOnRegistersAndRefreshes) {
    LoginController login = controller(true);
    login.changeLogin(true);
    EXPECT_EQ(service.calls, std::vector<const char*>{"register"});
    EXPECT_EQ(refreshes, 1);
    EXPECT_TRUE(login.presentation().toggleOn);
}

TEST_F(LoginControllerTest, TurningTheCheckBoxOffUnregisters) {
    service.current = LoginItemStatus::enabled;
    LoginController login = controller(true);
    login.changeLogin(false);
    EXPECT_EQ(service.calls, std::vector<const char*>{"unregister"});
    EXPECT_FALSE(login.presentation().toggleOn);
}

TEST_F(LoginControllerTest, AFailedUnregisterShowsTheReasonAndTheCheckBoxShowsTheRealState) {
    service.current = LoginItemStatus::enabled;
    service.unregisterFailure = LoginFailure{"Permission denied"};
    LoginController login = controller(true);
    login.changeLogin(false);
    EXPECT_EQ(login.loginError(), L("s016", "Permission denied"));
    EXPECT_EQ(refreshes, 1);
    const LoginPresentation shown = login.presentation();
    EXPECT_TRUE(shown.toggleOn);
    EXPECT_EQ(shown.status, L("s016", "Permission denied"));
    EXPECT_TRUE(shown.settingsButtonShown);
}

TEST_F(LoginControllerTest, EveryChangeClearsTheLastError) {
    service.registerFailure = LoginFailure{"No space left on device"};
    LoginController login = controller(true);
    login.changeLogin(true);
    ASSERT_TRUE(login.loginError());
    service.registerFailure.reset();
    login.changeLogin(true);
    EXPECT_FALSE(login.loginError());
}

TEST_F(LoginControllerTest, ChangesOutsideAnInstalledPlaceOnlyRefresh) {
    LoginController login = controller(false);
    login.changeLogin(true);
    EXPECT_TRUE(service.calls.empty());
    EXPECT_EQ(refreshes, 1);
    EXPECT_FALSE(login.presentation().toggleOn);
}

TEST_F(LoginControllerTest, OpenLoginSettingsAsksTheService) {
    controller(true).openLoginSettings();
    EXPECT_EQ(service.calls, std::vector<const char*>{"openSettings"});
}

TEST(LoginPresentationTest, WaitingForApprovalShowsOnWithTheApprovalTextAndTheSettingsButton) {
    const LoginPresentation shown = presentLogin(LoginItemStatus::requiresApproval, true, std::nullopt);
    EXPECT_EQ(shown, (LoginPresentation{true, true, L("s078"), true}));
}

TEST(LoginPresentationTest, EnabledShowsOnWithoutTextOrButton) {
    EXPECT_EQ(presentLogin(LoginItemStatus::enabled, true, std::nullopt), (LoginPresentation{true, true, "", false}));
}

TEST(LoginPresentationTest, NotRegisteredAndNotFoundShowOff) {
    EXPECT_EQ(presentLogin(LoginItemStatus::notRegistered, true, std::nullopt),
              (LoginPresentation{false, true, "", false}));
    EXPECT_EQ(presentLogin(LoginItemStatus::notFound, true, std::nullopt), (LoginPresentation{false, true, "", false}));
}

TEST(LoginPresentationTest, NotInstalledDisablesTheCheckBoxAndAsksToInstall) {
    EXPECT_EQ(presentLogin(LoginItemStatus::notRegistered, false, std::nullopt),
              (LoginPresentation{false, false, L("s077"), false}));
    // Approval pending outside an installed place: the request to install comes first.
    EXPECT_EQ(presentLogin(LoginItemStatus::requiresApproval, false, std::nullopt),
              (LoginPresentation{true, false, L("s077"), true}));
}

TEST(LoginPresentationTest, TheLastErrorComesBeforeEveryOtherText) {
    EXPECT_EQ(presentLogin(LoginItemStatus::requiresApproval, false, std::string("oops")).status, "oops");
    EXPECT_TRUE(presentLogin(LoginItemStatus::enabled, true, std::string("oops")).settingsButtonShown);
}

}  // namespace
}  // namespace vantle
