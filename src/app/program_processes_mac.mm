#include "app/program_processes_mac.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <mutex>

#include "app/run_loop_wait_mac.h"

namespace vantle {
namespace {

constexpr std::chrono::milliseconds kOpenWait{10000};

// What the workspace answered, from the queue it answers on.
struct OpenOutcome {
    std::mutex mutex;
    bool answered = false;
    std::optional<std::string> error;
};

std::string utf8(NSString* text) {
    const char* bytes = text != nil ? text.UTF8String : nullptr;
    return bytes != nullptr ? std::string(bytes) : std::string();
}

}  // namespace

int MacProgramProcesses::currentProcessId() const {
    return static_cast<int>(::getpid());
}

bool MacProgramProcesses::running(int processId) const {
    return ::kill(processId, 0) == 0;
}

std::optional<std::string> MacProgramProcesses::startCopy(const std::vector<std::string>& arguments) {
    @autoreleasepool {
        NSMutableArray<NSString*>* list = [NSMutableArray arrayWithCapacity:arguments.size()];
        for (const std::string& argument : arguments) {
            NSString* item = [NSString stringWithUTF8String:argument.c_str()];
            if (item == nil) {
                return std::string("an argument is not UTF-8 text");
            }
            [list addObject:item];
        }
        NSWorkspaceOpenConfiguration* configuration = [NSWorkspaceOpenConfiguration configuration];
        // The running copy is still there while the new one starts: without this the workspace
        // would only bring the running one forward.
        configuration.createsNewApplicationInstance = YES;
        configuration.arguments = list;
        NSURL* bundle = [NSURL fileURLWithPath:NSBundle.mainBundle.bundlePath isDirectory:YES];

        auto outcome = std::make_shared<OpenOutcome>();
        [NSWorkspace.sharedWorkspace openApplicationAtURL:bundle
                                            configuration:configuration
                                        completionHandler:^(NSRunningApplication*, NSError* error) {
                                          std::lock_guard<std::mutex> lock(outcome->mutex);
                                          if (error != nil) {
                                              outcome->error = utf8(error.localizedDescription);
                                          }
                                          outcome->answered = true;
                                        }];
        const bool answered = runLoopUntil(
            [outcome] {
                std::lock_guard<std::mutex> lock(outcome->mutex);
                return outcome->answered;
            },
            kOpenWait);
        if (!answered) {
            return std::string("the system did not start the application in time");
        }
        std::lock_guard<std::mutex> lock(outcome->mutex);
        return outcome->error;
    }
}

}  // namespace vantle
