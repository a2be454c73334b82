// A long run of random use against the real servers: the program must survive it, answer at the
// end, hold no more descriptors and (in the optimised build) no more memory than after its
// warm-up, and, in the sanitizer build, end without a memory error, undefined behaviour or leak.
#include <signal.h>

#include <iostream>
#include <thread>

#include "soak_fixture.h"

namespace vantle::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST_F(SoakTest, RandomUseLeavesTheProgramAnsweringWithoutLeaks) {
    std::cout << "soak: " << soakDuration().count() << " s, seed " << soakSeed()
              << " (replay with VANTLE_SOAK_SEED=" << soakSeed() << ")" << std::endl;
    RecordProperty("seed", std::to_string(soakSeed()));
    startProgram();
    ASSERT_FALSE(HasFatalFailure());

    warmUp();
    ASSERT_FALSE(HasFatalFailure()) << recentActions();
    returnToRestingState();
    ASSERT_TRUE(programStillRuns());
    const std::optional<long> residentAtStart = program().residentKilobytes();
    const std::optional<int> descriptorsAtStart = program().openDescriptors();
    ASSERT_TRUE(residentAtStart && descriptorsAtStart);

    const auto start = Clock::now();
    const auto end = start + soakDuration();
    auto nextReport = start + 30s;
    int actions = 0;
    while (Clock::now() < end) {
        randomAction();
        ++actions;
        if (!programStillRuns()) {
            return;
        }
        // A line every half minute, so that a long run shows how memory and descriptors go.
        if (Clock::now() >= nextReport) {
            nextReport += 30s;
            std::cout << "soak: " << std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count()
                      << " s, " << actions << " actions, resident " << program().residentKilobytes().value_or(-1)
                      << " kB, descriptors " << program().openDescriptors().value_or(-1) << std::endl;
        }
    }
    returnToRestingState();
    ASSERT_TRUE(programStillRuns());
    std::cout << "soak: " << actions << " random actions" << std::endl;

    // Still answering: a fine step up from silence gives a level above 0, muted or not (while
    // muted the step starts from the remembered level, and setting a level ends the mute).
    setSinkLevel("studio", 0.0f);
    key("shift+alt+XF86AudioRaiseVolume");
    EXPECT_TRUE(waitFor([] { return sinkLevel("studio") > 0.005f; }, 15s))
        << "the volume key changed nothing\n" << recentActions();

    // Descriptors and memory are read again until they are back to where they started: the
    // program may still be closing something the last actions opened.
    EXPECT_TRUE(waitFor([&] { return program().openDescriptors().value_or(0) <= *descriptorsAtStart; }, 20s))
        << "open descriptors: " << *descriptorsAtStart << " after the warm-up, "
        << program().openDescriptors().value_or(-1) << " at the end\n" << recentActions();
#if defined(__SANITIZE_ADDRESS__)
    // The address sanitizer keeps freed blocks in quarantine, so resident memory grows by design
    // in this build; its check is that the program's own leak report, at exit, stays empty.
#else
    const long allowed = *residentAtStart + *residentAtStart / 20;
    long residentAtEnd = 0;
    EXPECT_TRUE(waitFor(
        [&] {
            residentAtEnd = program().residentKilobytes().value_or(0);
            return residentAtEnd <= allowed;
        },
        20s))
        << "resident memory: " << *residentAtStart << " kB after the warm-up, " << residentAtEnd << " kB at the end\n"
        << recentActions();
    std::cout << "soak: resident " << *residentAtStart << " kB after the warm-up, " << residentAtEnd
              << " kB at the end; descriptors " << *descriptorsAtStart << std::endl;
#endif

    // The end of the session, as a logout ends it; the sanitizers report at exit.
    const ObservedProgram::Ending& ending = program().terminate(60s);
    const std::string output = program().errorOutput();
    EXPECT_EQ(ending.exitStatus, std::optional<int>(0)) << "signal " << ending.signal.value_or(0) << "\n" << output;
    for (const char* report : {"ERROR: AddressSanitizer", "runtime error:", "LeakSanitizer"}) {
        EXPECT_EQ(output.find(report), std::string::npos) << report << " in the program's output:\n" << output;
    }
    if (HasFailure()) {
        std::cout << recentActions();
    }
}

}  // namespace
}  // namespace vantle::testing
