#pragma once

#include "platform/UserDefaults.h"

#include <memory>

namespace quorvane {

/// The program's preferences in the system's own store, in the domain of its bundle's identifier; a program without a bundle has
/// the domain of its name.
class MacUserDefaults final : public UserDefaults {
public:
    MacUserDefaults();
    /// Another domain, for checks. The system gives none with the name of the program's own.
    explicit MacUserDefaults(const QString& domain);
    ~MacUserDefaults() override;

    std::optional<QString> string(const QString& key) const override;
    QStringList stringArray(const QString& key) const override;
    bool boolean(const QString& key) const override;
    void setString(const QString& key, const QString& value) override;
    void setStringArray(const QString& key, const QStringList& value) override;
    void setBoolean(const QString& key, bool value) override;
    void remove(const QString& key) override;
    void synchronize() override;

private:
    struct Store;
    std::unique_ptr<Store> m_store;
};

} // namespace quorvane
