#include "platform/simulated/SimulatedUserDefaults.h"

#include "simulator/PreferenceStore.h"

#include <functional>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const macsim::PreferenceDomain& ownDomain() {
    static const macsim::PreferenceDomain domain{u"com.quorvane.app"_s};
    return domain;
}

macsim::PreferenceStore store(const macsim::Mac& mac) {
    return {mac, mac.volume(macsim::Actor::User)};
}

/// A write that fails goes unreported, as the port says; so does one whose store can't be locked.
/// @param write  one of the store's
void changeOwn(const macsim::Mac& mac, const std::function<void(macsim::PreferenceStore& own)>& write) {
    try {
        macsim::PreferenceStore own = store(mac);
        write(own);
    } catch (const std::runtime_error&) {
        return;
    }
}

void writeOwn(const macsim::Mac& mac, const QString& key, const macsim::PropertyList& value) {
    changeOwn(mac, [&](macsim::PreferenceStore& own) { own.write(ownDomain(), key, value); });
}

} // namespace

std::optional<QString> SimulatedUserDefaults::string(const QString& key) const {
    const std::optional<macsim::PropertyList> value = store(m_mac).read(ownDomain(), key);
    const QString* text = value ? value->as<QString>() : nullptr;
    return text ? std::optional(*text) : std::nullopt;
}

QStringList SimulatedUserDefaults::stringArray(const QString& key) const {
    const std::optional<macsim::PropertyList> value = store(m_mac).read(ownDomain(), key);
    const auto* array = value ? value->as<macsim::PropertyList::Array>() : nullptr;
    QStringList texts;
    for (const macsim::PropertyList& element : array ? *array : macsim::PropertyList::Array()) {
        const QString* text = element.as<QString>();
        if (!text) {
            return {};
        }
        texts.append(*text);
    }
    return texts;
}

bool SimulatedUserDefaults::boolean(const QString& key) const {
    const std::optional<macsim::PropertyList> value = store(m_mac).read(ownDomain(), key);
    const bool* isOn = value ? value->as<bool>() : nullptr;
    return isOn != nullptr && *isOn;
}

void SimulatedUserDefaults::setString(const QString& key, const QString& value) {
    writeOwn(m_mac, key, value);
}

void SimulatedUserDefaults::setStringArray(const QString& key, const QStringList& value) {
    const macsim::PropertyList::Array array(value.begin(), value.end());
    writeOwn(m_mac, key, array);
}

void SimulatedUserDefaults::setBoolean(const QString& key, bool value) {
    writeOwn(m_mac, key, value);
}

void SimulatedUserDefaults::remove(const QString& key) {
    changeOwn(m_mac, [&](macsim::PreferenceStore& own) { own.remove(ownDomain(), key); });
}

} // namespace quorvane
