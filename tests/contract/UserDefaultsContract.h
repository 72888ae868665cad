#pragma once

#include "contract/Subject.h"
#include "platform/UserDefaults.h"

#include <QString>

namespace quorvane {

/// Preferences in which nothing is set.
class DefaultsSubject {
public:
    virtual ~DefaultsSubject() = default;
    virtual UserDefaults& defaults() = 0;
    /// The same preferences, opened once more.
    virtual std::unique_ptr<UserDefaults> another() const = 0;
    /// Writes a value as another program may. @param xml  the value's element of a property list: "<integer>1</integer>"
    virtual void write(const QString& key, const QByteArray& xml) = 0;
};

class UserDefaultsContract : public ContractTest<DefaultsSubject> {
protected:
    UserDefaults& defaults = subject->defaults();
};

} // namespace quorvane
