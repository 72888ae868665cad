#include "platform/simulated/SimulatedUserDefaults.h"

#include "simulator/PreferenceStore.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const macsim::PreferenceDomain& ownDomain() {
    static const macsim::PreferenceDomain domain{u"com.quorvane.app"_s};
    return domain;
}

macsim::PreferenceStore store(const macsim::Mac& mac) { return {mac, mac.volume(macsim::Actor::User)}; }

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

void SimulatedUserDefaults::setString(const QString& key, const QString& value) {
    store(m_mac).write(ownDomain(), key, value);
}

void SimulatedUserDefaults::setStringArray(const QString& key, const QStringList& value) {
    const macsim::PropertyList::Array array(value.begin(), value.end());
    store(m_mac).write(ownDomain(), key, array);
}

} // namespace quorvane
