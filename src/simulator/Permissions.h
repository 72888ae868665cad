#pragma once

#include "simulator/StateStore.h"

#include <optional>
#include <string>

namespace macsim {

/// What the privacy settings grant the program that drives this Mac, and whether the system protects itself.
///
/// Subject "permissions":
///
///     {"fullDiskAccess": true, "appManagement": true, "systemIntegrityProtection": true, "downloads": true,
///      "automation": {"System Events": true, …}, "automationQuestion": "allow"}
///
/// Of the first four what isn't there is true, but for "appManagement": nobody is asked for it beforehand, and a fresh Mac
/// refuses. They bind root as well. Places.h says what each keeps.
///
/// "automation" is what was decided of other applications: true, false, or "unanswered" where the user is asked and says nothing.
/// What isn't there is undecided, as on a Mac where the program hasn't run yet: the user is asked, and gives the answer
/// "automationQuestion", "allow", "deny" or "unanswered", which is also that of a Mac without one. Their "allow" and "deny" are
/// kept in "automation".
bool hasFullDiskAccess(const StateStore& state);
/// Whether it may change what other applications hold. "appManagement" says so where it is there; otherwise Full Disk
/// Access brings it along, where that is there and true, so that a Mac that tells of neither refuses. (That a refusal
/// of the one stands against the other is a choice, for Macs that need Full Disk Access for something else.)
bool mayChangeApplications(const StateStore& state);
bool mayReadDownloads(const StateStore& state);
bool isSystemIntegrityProtected(const StateStore& state);

/// What the user says to the question whether the program may control another application.
enum class AutomationAnswer { Allow, Deny, Unanswered };

/// "allow", "deny", "unanswered".
std::string automationAnswerName(AutomationAnswer answer);

/// Whether scripts may send an application events; none where nobody has decided it yet.
std::optional<bool> automationDecision(const StateStore& state, const QString& application);
/// Asks the user, and keeps what they decide.
AutomationAnswer askForAutomation(const StateStore& state, const QString& application);

} // namespace macsim
