#include "x_server_fixture.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace vantle::testing {
namespace {

struct Connection {
    Connection() : connection(xcb_connect(nullptr, nullptr)) {}
    ~Connection() { xcb_disconnect(connection); }
    xcb_connection_t* connection;
    xcb_window_t root() const { return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root; }
};

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> own(Reply* reply) {
    return {reply, &std::free};
}

// Xvfb's single output and its CRTC.
std::pair<xcb_randr_output_t, xcb_randr_crtc_t> onlyOutput(const Connection& x) {
    auto resources = own(xcb_randr_get_screen_resources_current_reply(
        x.connection, xcb_randr_get_screen_resources_current(x.connection, x.root()), nullptr));
    if (!resources || xcb_randr_get_screen_resources_current_outputs_length(resources.get()) < 1) {
        return {0, 0};
    }
    const xcb_randr_output_t output = xcb_randr_get_screen_resources_current_outputs(resources.get())[0];
    auto info = own(xcb_randr_get_output_info_reply(
        x.connection, xcb_randr_get_output_info(x.connection, output, XCB_CURRENT_TIME), nullptr));
    return {output, info ? info->crtc : 0};
}

}  // namespace

std::unique_ptr<TemporaryDirectory> XServerTest::directory_;
std::unique_ptr<RunningChild> XServerTest::compositor_;

void XServerTest::SetUpTestSuite() {
    directory_ = std::make_unique<TemporaryDirectory>();
    const ChildResult started = runChild("/bin/bash", {VANTLE_X_SERVER_SCRIPT, "start", directory_->path().string()});
    ASSERT_EQ(started.exitStatus, 0) << started.standardError;
    std::string number = readFile(directory_->path() / "display");
    while (!number.empty() && number.back() == '\n') {
        number.pop_back();
    }
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
}

void XServerTest::TearDownTestSuite() {
    stopCompositor();
    if (directory_) {
        runChild("/bin/bash", {VANTLE_X_SERVER_SCRIPT, "stop", directory_->path().string()});
    }
    directory_.reset();
}

std::string XServerTest::display() {
    return std::getenv("DISPLAY");
}

std::string XServerTest::run(const std::string& program, const std::vector<std::string>& arguments) {
    const ChildResult result = runChild(program, arguments);
    EXPECT_EQ(result.exitStatus, 0) << program << ": " << result.standardError;
    return result.standardOutput;
}

void XServerTest::startCompositor() {
    compositor_ = std::make_unique<RunningChild>("/usr/bin/xcompmgr", std::vector<std::string>{});
    // Wait until it owns the compositing selection.
    Connection x;
    const char* name = "_NET_WM_CM_S0";
    auto atom = own(xcb_intern_atom_reply(
        x.connection, xcb_intern_atom(x.connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    for (int attempt = 0; attempt < 200; ++attempt) {
        auto owner = own(xcb_get_selection_owner_reply(x.connection, xcb_get_selection_owner(x.connection, atom->atom),
                                                       nullptr));
        if (owner && owner->owner != XCB_NONE) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    FAIL() << "xcompmgr did not take the compositing selection";
}

void XServerTest::stopCompositor() {
    compositor_.reset();
}

void XServerTest::setOutputEdid(const std::vector<std::uint8_t>& edid) {
    Connection x;
    const auto [output, crtc] = onlyOutput(x);
    const char* name = "EDID";
    auto atom = own(xcb_intern_atom_reply(
        x.connection, xcb_intern_atom(x.connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    xcb_randr_change_output_property(x.connection, output, atom->atom, XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
                                     static_cast<std::uint32_t>(edid.size()), edid.data());
    free(xcb_get_input_focus_reply(x.connection, xcb_get_input_focus(x.connection), nullptr));
}

void XServerTest::removeOutputEdid() {
    Connection x;
    const auto [output, crtc] = onlyOutput(x);
    const char* name = "EDID";
    auto atom = own(xcb_intern_atom_reply(
        x.connection, xcb_intern_atom(x.connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name), nullptr));
    xcb_randr_delete_output_property(x.connection, output, atom->atom);
    free(xcb_get_input_focus_reply(x.connection, xcb_get_input_focus(x.connection), nullptr));
}

void XServerTest::setGammaTop(std::uint16_t top) {
    Connection x;
    const xcb_randr_crtc_t crtc = onlyOutput(x).second;
    auto size = own(xcb_randr_get_crtc_gamma_size_reply(x.connection, xcb_randr_get_crtc_gamma_size(x.connection, crtc),
                                                        nullptr));
    if (!size || size->size < 2) {
        ADD_FAILURE() << "the output has no gamma ramp";
        return;
    }
    std::vector<std::uint16_t> ramp(size->size);
    for (std::size_t index = 0; index < ramp.size(); ++index) {
        ramp[index] = static_cast<std::uint16_t>(index * top / (ramp.size() - 1));
    }
    xcb_randr_set_crtc_gamma(x.connection, crtc, size->size, ramp.data(), ramp.data(), ramp.data());
    free(xcb_get_input_focus_reply(x.connection, xcb_get_input_focus(x.connection), nullptr));
}

std::uint32_t XServerTest::leftDisplayId() {
    Connection x;
    return onlyOutput(x).first;
}

std::uint16_t XServerTest::gammaTop() {
    Connection x;
    auto gamma = own(xcb_randr_get_crtc_gamma_reply(
        x.connection, xcb_randr_get_crtc_gamma(x.connection, onlyOutput(x).second), nullptr));
    if (!gamma || gamma->size == 0) {
        return 0;
    }
    return xcb_randr_get_crtc_gamma_red(gamma.get())[gamma->size - 1];
}

}  // namespace vantle::testing
