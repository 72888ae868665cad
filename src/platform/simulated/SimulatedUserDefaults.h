#pragma once

#include "platform/UserDefaults.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The program's preferences on a simulated Mac: the user's domain "com.quorvane.app".
class SimulatedUserDefaults final : public UserDefaults {
public:
    explicit SimulatedUserDefaults(const macsim::Mac& mac)
        : m_mac(mac) {}

    std::optional<QString> string(const QString& key) const override;
    QStringList stringArray(const QString& key) const override;
    bool boolean(const QString& key) const override;
    void setString(const QString& key, const QString& value) override;
    void setStringArray(const QString& key, const QStringList& value) override;
    void setBoolean(const QString& key, bool value) override;
    void remove(const QString& key) override;
    void synchronize() override {} ///< each write is in the store at once

private:
    const macsim::Mac& m_mac;
};

} // namespace quorvane
