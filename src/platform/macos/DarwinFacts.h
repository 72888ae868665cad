#pragma once

// Darwin's own constants and entry points, each with its source, written down because no header that every system has names
// them. Their values are part of the system's binary interface and can't change.

namespace quorvane::darwin {

/// `IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES`, `IOPOL_SCOPE_THREAD`, `IOPOL_MATERIALIZE_DATALESS_FILES_OFF` of sys/resource.h,
/// for setiopolicy_np(3).
inline constexpr int kPolicyOfDatalessFiles = 3;
inline constexpr int kScopeOfThread = 1;
inline constexpr int kDatalessFilesStayAway = 1;

} // namespace quorvane::darwin
