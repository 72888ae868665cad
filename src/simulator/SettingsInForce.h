#pragma once

namespace macsim {

class Mac;

/// What a Mac does by itself, told by the settings that macOS itself reads and by no tool: what a program that switches
/// them has to answer for. A setting that isn't there is macOS's own choice, and so is one that can't be read as yes or no.
/// What an organization has decided wins (ManagedPreferences.h).
///
/// The updates are the system's: the preferences of the same names in a user's home are read by nobody.
struct SettingsInForce {
    bool downloadsUpdates = true;         ///< "AutomaticDownload" of /Library/Preferences/com.apple.SoftwareUpdate
    bool installsSystemUpdates = true;    ///< its "AutomaticallyInstallMacOSUpdates"
    bool updatesStoreApplications = true; ///< "AutoUpdate" of /Library/Preferences/com.apple.commerce
    bool playsInterfaceSounds = true;     ///< the user's global "com.apple.sound.uiaudio.enabled"
    bool hasSiri = false;                 ///< the user's "Assistant Enabled" of com.apple.assistant.support
};

SettingsInForce settingsInForce(const Mac& mac);

} // namespace macsim
