#pragma once

namespace macsim {

struct ToolContext;

/// pmset: -g [live|custom|disk], and writing of settings with -a, -b, -c, -u.
///
/// Subject "power":
///
///     {"sources": {"Battery Power": {"lidwake": 1, "standby": 1, …}, "AC Power": {…}},
///      "activeSource": "AC Power",
///      "sleepDisabled": null, "destroyFVKeyOnStandby": null,
///      "sleepPreventedBy": ["coreaudiod"], "displaySleepPreventedBy": [],
///      "highPowerModeSources": ["AC Power"]}
///
/// A source that the machine has not ("Battery Power" and "UPS Power" on a desktop) is left out: it has no section, and a
/// line that writes to it alone does nothing without a word, with status 0. A source's settings
/// have the names and the order in which they are printed; a value is a number, or text (hibernatefile). A
/// setting that isn't there is one that the machine doesn't support: it is never printed and writing it has
/// no effect. Of the keys above only "sources" and "activeSource" are required. `sleepDisabled` and
/// `destroyFVKeyOnStandby` are 0 or 1 once somebody has set them. Where the active source is one of
/// `highPowerModeSources`, the setting "lowpowermode" is called "powermode".
int runPmset(ToolContext& context);

} // namespace macsim
