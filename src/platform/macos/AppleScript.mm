#include "platform/macos/AppleScript.h"

#include "platform/macos/ScriptAnswer.h"

#import <Foundation/Foundation.h>

namespace quorvane {

namespace {

std::optional<QString> textOf(id value) {
    return [value isKindOfClass:NSString.class] ? std::optional(QString::fromNSString(static_cast<NSString*>(value)))
                                                : std::nullopt;
}

std::optional<int> numberOf(id value) {
    return [value isKindOfClass:NSNumber.class] ? std::optional<int>(static_cast<NSNumber*>(value).intValue)
                                                : std::nullopt;
}

} // namespace

ScriptOutcome runAppleScript(const QString& source) {
    @autoreleasepool {
        NSAppleScript* script = [[NSAppleScript alloc] initWithSource:source.toNSString()];
        NSDictionary<NSString*, id>* problem = nil;
        NSAppleEventDescriptor* answer = [script executeAndReturnError:&problem];
        return scriptOutcome({answer != nil, textOf(answer.stringValue), textOf(problem[NSAppleScriptErrorMessage]),
                              numberOf(problem[NSAppleScriptErrorNumber])});
    }
}

} // namespace quorvane
