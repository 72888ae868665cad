#pragma once

namespace quorvane {

class FileManager;

/// What the privacy settings say of the program. Unknown: what they keep from others isn't there, or can't be reached.
enum class FullDiskAccess { Unknown, Missing, Given };

/// As it is now; quick. Nobody is asked for anything.
FullDiskAccess readFullDiskAccess(const FileManager& files);

} // namespace quorvane
