#pragma once

namespace macsim {

struct ToolContext;

/// codesign --verify PATH…: silent where the seal of a bundle or a file holds, and status 1 with a line for each that
/// doesn't.
///
/// Subject "codeSigning": {"broken": ["/Applications/Chat.app"], "unsigned": ["/Applications/Notes.app"]}. A seal that
/// isn't told of holds, whatever has been changed since: which changes break one is not established.
int runCodesign(ToolContext& context);

} // namespace macsim
