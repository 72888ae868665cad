#include "platform/macos/MacProcess.h"

#include "platform/macos/CleanEnvironment.h"
#include "platform/macos/DarwinFacts.h"
#include "platform/macos/DescriptorLimit.h"

#import <Foundation/Foundation.h>

extern "C" int setiopolicy_np(int type, int scope, int policy); // macapi: allow setiopolicy_np -- sys/resource.h

namespace quorvane {

namespace {

#ifdef NDEBUG
constexpr bool kIsDebugBuild = false;
#else
constexpr bool kIsDebugBuild = true;
#endif

constexpr unsigned kOpenFiles = 1024;

} // namespace

QProcessEnvironment prepareProcess() {
    const QProcessEnvironment environment = cleanEnvironment(QProcessEnvironment::systemEnvironment(), kIsDebugBuild);
    takeEnvironment(environment);
    // What these two refuse is missed by nothing that is common: more than forty children at once, a file that goes from the
    // disk between two looks at it.
    raiseDescriptorLimit(kOpenFiles);
    setiopolicy_np(darwin::kPolicyOfDatalessFiles, darwin::kScopeOfThread, darwin::kDatalessFilesStayAway);
    @autoreleasepool {
        [NSUserDefaults.standardUserDefaults removeVolatileDomainForName:NSArgumentDomain];
    }
    return environment;
}

} // namespace quorvane
