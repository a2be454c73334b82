// Sparkle 2, the update framework the application bundle carries, as far as our files start it,
// check with it and hear the outcome of its checks. Each declaration is written from Sparkle's
// public API reference; stands for <Sparkle/Sparkle.h>.
#pragma once

#import <Sparkle/SPUStandardUpdaterController.h>
#import <Sparkle/SPUUpdater.h>
#import <Sparkle/SPUUpdaterDelegate.h>
#import <Sparkle/SUAppcastItem.h>
#import <Sparkle/SUErrors.h>
