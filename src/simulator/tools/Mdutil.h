#pragma once

namespace macsim {

struct ToolContext;

/// mdutil: -s, -i on|off and -d, of one volume after the other or of all of them (-a).
///
/// Subject "spotlight":
///
///     {"volumes": {"/": "enabled", "/System/Volumes/Data": "enabled", "/Volumes/Audio": "disabled"},
///      "lag": 0, "lagShows": "old", "refusesSwitch": ["/System/Volumes/Data"], "rootSwitchesData": false,
///      "serverDisabled": false}
///
/// Only "volumes" is required; -a takes its order. A volume's state is one of "enabled", "disabled",
/// "searchDisabled", "noIndex", "readOnly", "transitioning", "unknown". -i off makes it "disabled", whatever it was, and
/// -d alone makes it "searchDisabled". A change is asynchronous: for the next `lag` times that the state of the volume is
/// asked for, the old state is shown, or "transitioning" where `lagShows` says so; the tool keeps count of that under
/// "pending". Volumes in `refusesSwitch` can't be switched. `rootSwitchesData`: the system volume takes the data volume
/// along, unless that refuses.
int runMdutil(ToolContext& context);

} // namespace macsim
