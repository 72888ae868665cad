#pragma once

#include <functional>

namespace quorvane {

/// What an atomic write is about to do. Before the flush half of the bytes are on the disk.
enum class AtomicWriteStep { Write, Flush, Rename, End };

using AtomicWriteWatcher = std::function<void(AtomicWriteStep)>;

} // namespace quorvane
