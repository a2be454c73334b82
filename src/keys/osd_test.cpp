#include "keys/osd.h"

#include <gtest/gtest.h>

#include "display/testing/fake_displays.h"
#include "services/testing/manual_scheduler.h"
#include "services/testing/memory_defaults_store.h"

namespace vantle {
namespace {

using namespace std::chrono_literals;

struct ShownPanel {
    ScreenFrame frame;
    OsdContent content;
    bool visible = true;
};

class RecordingPanelFactory final : public OsdPanelFactory {
public:
    std::unique_ptr<OsdPanel> show(const ScreenFrame& frame, const OsdContent& content) override {
        shown.push_back(std::make_shared<ShownPanel>(ShownPanel{frame, content}));
        return std::make_unique<Panel>(shown.back());
    }
    std::vector<std::shared_ptr<ShownPanel>> shown;

private:
    struct Panel final : OsdPanel {
        explicit Panel(std::shared_ptr<ShownPanel> state) : state_(std::move(state)) {}
        void orderOut() override { state_->visible = false; }
        std::shared_ptr<ShownPanel> state_;
    };
};

class OsdTest : public ::testing::Test {
protected:
    testing::FakeScreenSystem screens;
    testing::FakeShadeFactory shades;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    testing::FakeNativeBrightness native;
    Brightness brightness{native.functions(), screens, shades, defaults, {}};
    RecordingPanelFactory factory;
    testing::ManualScheduler scheduler;
    OSD osd{screens, brightness, factory, scheduler};
};

TEST_F(OsdTest, OnePanelPerListedScreenDismissedAfterOnePointFourSeconds) {
    screens.add(1, "A", {0, 0, 1920, 1080});
    screens.add(2, "B", {1920, 0, 1280, 1024});
    osd.show(0.5f, false);
    ASSERT_EQ(osd.panels().size(), 2u);
    EXPECT_EQ(factory.shown[1]->frame.x, 1920 + 640 - 105);
    scheduler.advance(1399ms);
    EXPECT_EQ(osd.panels().size(), 2u);
    scheduler.advance(1ms);
    EXPECT_TRUE(osd.panels().empty());
    EXPECT_FALSE(factory.shown[0]->visible);
}

TEST_F(OsdTest, BrightnessVariantShowsEachDisplaysOwnLevelAndSkipsUnreadableOnes) {
    screens.add(1, "A");
    screens.add(2, "B");
    screens.add(3, "C");
    native.levels = {{1, 0.25f}, {2, 1.0f}};
    osd.show(std::nullopt, false);
    ASSERT_EQ(osd.panels().size(), 2u);
    EXPECT_EQ(factory.shown[0]->content.text.substr(factory.shown[0]->content.text.size() - 4), "25 %");
    EXPECT_EQ(factory.shown[1]->content.lit[15], true);
}

TEST_F(OsdTest, ScreensTheBrightnessBackendDoesNotListGetNoPanel) {
    screens.add(1, "A");
    screens.add(2, "Off");
    screens.inactive.insert(2);
    screens.list.push_back(SystemScreen{std::nullopt, "No number", {}, std::nullopt});
    osd.show(0.3f, false);
    EXPECT_EQ(osd.panels().size(), 1u);
}

TEST_F(OsdTest, NoScreenMeansNoPanelAndNoFailure) {
    osd.show(0.3f, false);
    EXPECT_TRUE(osd.panels().empty());
    EXPECT_EQ(scheduler.waiting(), 1u);
    scheduler.advance(2s);
    EXPECT_TRUE(osd.panels().empty());
}

TEST_F(OsdTest, RepeatedPressesKeepTheOverlayUntilAfterTheLastAndShowTheLastLevel) {
    screens.add(1, "A");
    osd.show(0.2f, false);
    scheduler.advance(500ms);
    osd.show(0.3f, false);
    scheduler.advance(500ms);
    osd.show(0.4f, false);
    scheduler.advance(1300ms);
    ASSERT_EQ(osd.panels().size(), 1u);
    EXPECT_EQ(factory.shown.back()->content.text.substr(factory.shown.back()->content.text.size() - 4), "40 %");
    // Each press rebuilt the panel from scratch; the earlier ones are gone.
    EXPECT_EQ(factory.shown.size(), 3u);
    EXPECT_FALSE(factory.shown[0]->visible);
    EXPECT_FALSE(factory.shown[1]->visible);
    scheduler.advance(100ms);
    EXPECT_TRUE(osd.panels().empty());
}

TEST(OsdLifetimeTest, DismissalAfterTheOsdIsGoneDoesNothing) {
    testing::FakeScreenSystem screens;
    testing::FakeShadeFactory shades;
    testing::MemoryDefaultsStore store;
    UserDefaults defaults{store};
    Brightness brightness{{}, screens, shades, defaults, {}};
    RecordingPanelFactory factory;
    testing::ManualScheduler scheduler;
    screens.add(1, "A");
    {
        OSD osd{screens, brightness, factory, scheduler};
        osd.show(0.5f, false);
    }
    scheduler.advance(2s);
    EXPECT_FALSE(factory.shown[0]->visible);
}

}  // namespace
}  // namespace vantle
