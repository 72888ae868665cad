#include "simulator/SettingsInForce.h"

#include "simulator/Mac.h"
#include "simulator/ManagedPreferences.h"
#include "simulator/PreferenceStore.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Yes or no as preferences are read for one: in any type, and in words.
std::optional<bool> truth(const PropertyList& value) {
    if (const auto* flag = value.as<bool>()) {
        return *flag;
    }
    if (const auto* number = value.as<qint64>()) {
        return *number != 0;
    }
    if (const auto* number = value.as<double>()) {
        return *number != 0;
    }
    const auto* text = value.as<QString>();
    const QString word = text ? text->toLower() : QString();
    if (word == u"true"_s || word == u"yes"_s || word == u"1"_s) {
        return true;
    }
    return word == u"false"_s || word == u"no"_s || word == u"0"_s ? std::optional(false) : std::nullopt;
}

class Settings {
public:
    explicit Settings(const Mac& mac)
        : m_mac(mac) {}

    bool ofSystem(const QString& domain, const QString& key, bool otherwise) const {
        return inForce(domain, key, Actor::Root, u"/Library/Preferences/"_s + domain, otherwise);
    }
    bool ofUser(const QString& domain, const QString& key, bool otherwise) const {
        return inForce(domain, key, Actor::User, domain, otherwise);
    }

private:
    bool inForce(const QString& domain, const QString& key, Actor reader, const QString& place, bool otherwise) const {
        const auto decided = managedPreference(m_mac, domain, key);
        const auto value = decided ? decided : PreferenceStore(m_mac, m_mac.volume(reader)).read({place}, key);
        return value ? truth(*value).value_or(otherwise) : otherwise;
    }

    const Mac& m_mac;
};

} // namespace

SettingsInForce settingsInForce(const Mac& mac) {
    const Settings settings(mac);
    const QString updates = u"com.apple.SoftwareUpdate"_s;
    SettingsInForce found;
    found.downloadsUpdates = settings.ofSystem(updates, u"AutomaticDownload"_s, found.downloadsUpdates);
    found.installsSystemUpdates =
        settings.ofSystem(updates, u"AutomaticallyInstallMacOSUpdates"_s, found.installsSystemUpdates);
    found.updatesStoreApplications =
        settings.ofSystem(u"com.apple.commerce"_s, u"AutoUpdate"_s, found.updatesStoreApplications);
    found.playsInterfaceSounds =
        settings.ofUser(kGlobalDomain.toString(), u"com.apple.sound.uiaudio.enabled"_s, found.playsInterfaceSounds);
    found.hasSiri = settings.ofUser(u"com.apple.assistant.support"_s, u"Assistant Enabled"_s, found.hasSiri);
    return found;
}

} // namespace macsim
