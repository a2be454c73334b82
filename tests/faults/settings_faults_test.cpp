// A settings file that cannot be used: the program starts all the same, says so on standard
// error, keeps the file aside untouched under another name and works with fresh settings.
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

#include "fault_fixture.h"
#include "services/file_contents.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr const char* kSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>linked</key>
	<false/>
	<key>mutedLevels</key>
	<dict>
		<key>desk</key>
		<array>
			<real>0.25</real>
		</array>
	</dict>
</dict>
</plist>
)";

constexpr const char* kSettingsWithoutMutedLevels = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>linked</key><false/></dict></plist>
)";

class SettingsFaultTest : public FaultTest {
protected:
    // The files and folders kept aside next to the settings file.
    std::vector<fs::path> keptAside() const {
        std::vector<fs::path> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(settingsFile().parent_path())) {
            if (entry.path().filename().string().rfind("defaults.plist-broken-", 0) == 0) {
                found.push_back(entry.path());
            }
        }
        return found;
    }

    // The program started on the broken file works: it takes the keys, mutes, and remembers the
    // muted level in a new settings file; the broken one was reported and kept as it was.
    void expectUsableWithBrokenFileKept(ProgramProcess& program,
                                        const std::function<void(const fs::path&)>& keptAsItWas) {
        ASSERT_TRUE(waitFor([] { return muteKeyTaken(); }, 15s)) << program.standardError();
        key("XF86AudioMute");
        EXPECT_TRUE(waitFor([] { return studioNear(0.0f); }, 5s)) << sinkLevel("studio");
        const std::optional<std::vector<double>> remembered = rememberedLevels(settingsFile(), "studio");
        ASSERT_TRUE(remembered.has_value()) << readFileContents(settingsFile()).value_or("(no file)");
        EXPECT_NEAR(remembered->front(), 0.5, 0.002);
        EXPECT_NE(program.standardError().find("vantle-control: the settings file"), std::string::npos)
            << program.standardError();
        const std::vector<fs::path> aside = keptAside();
        ASSERT_EQ(aside.size(), 1u);
        keptAsItWas(aside.front());
        EXPECT_TRUE(program.running());
    }

    void expectSameBytes(const std::string& bytes) {
        std::unique_ptr<ProgramProcess> program = start();
        expectUsableWithBrokenFileKept(*program, [&bytes](const fs::path& aside) {
            EXPECT_EQ(readFileContents(aside), bytes);
        });
    }
};

TEST_F(SettingsFaultTest, GarbageSettingsAreKeptAsideAndTheProgramWorks) {
    const std::string garbage = "\x7f" "ELF not a property list at all \x01\x02\x03";
    writeFile(settingsFile(), garbage);
    expectSameBytes(garbage);
}

TEST_F(SettingsFaultTest, TruncatedSettingsAreKeptAsideAndTheProgramWorks) {
    const std::string truncated = std::string(kSettings).substr(0, std::string(kSettings).size() / 2);
    writeFile(settingsFile(), truncated);
    expectSameBytes(truncated);
}

TEST_F(SettingsFaultTest, EmptySettingsFileIsKeptAsideAndTheProgramWorks) {
    writeFile(settingsFile(), "");
    expectSameBytes("");
}

TEST_F(SettingsFaultTest, SettingsPathThatIsAFolderIsKeptAsideWithWhatItHolds) {
    writeFile(settingsFile() / "note.txt", "keep me");
    std::unique_ptr<ProgramProcess> program = start();
    expectUsableWithBrokenFileKept(*program, [](const fs::path& aside) {
        EXPECT_TRUE(fs::is_directory(aside));
        EXPECT_EQ(readFileContents(aside / "note.txt"), "keep me");
    });
}

TEST_F(SettingsFaultTest, UnreadableSettingsAreKeptAsideAndTheProgramWorks) {
    writeFile(settingsFile(), kSettings);
    fs::permissions(settingsFile(), fs::perms::none);
    std::unique_ptr<ProgramProcess> program;
    if (::geteuid() == 0) {
        // Root reads any file; without these two capabilities the file's mode holds for it too.
        program = std::make_unique<ProgramProcess>(
            "/usr/bin/setpriv",
            std::vector<std::string>{"--bounding-set=-dac_override,-dac_read_search", "--", VANTLE_PROGRAM,
                                     "--suppress-keyboard-invitation"});
    } else {
        program = start();
    }
    expectUsableWithBrokenFileKept(*program, [](const fs::path& aside) {
        EXPECT_EQ(fs::status(aside).permissions(), fs::perms::none);
        fs::permissions(aside, fs::perms::owner_read);
        EXPECT_EQ(readFileContents(aside), kSettings);
    });
}

TEST_F(SettingsFaultTest, SettingsBrokenWhileRunningAreKeptAsideAtTheNextWrite) {
    writeFile(settingsFile(), kSettingsWithoutMutedLevels);
    std::unique_ptr<ProgramProcess> program = start();
    ASSERT_TRUE(waitFor([] { return muteKeyTaken(); }, 15s)) << program->standardError();
    // The program rewrites its settings at every refresh; a save of its own that was under way
    // may replace what we write, so the damage is done again until the program has seen it.
    const std::string garbage = "<plist><dict><key>linked</key>";
    for (int attempt = 0; attempt < 3 && keptAside().empty(); ++attempt) {
        writeFile(settingsFile(), garbage);
        waitFor([this] { return !keptAside().empty(); }, 5s);
    }
    expectUsableWithBrokenFileKept(*program, [&garbage](const fs::path& aside) {
        EXPECT_EQ(readFileContents(aside), garbage);
    });
}

}  // namespace
}  // namespace vantle::testing
