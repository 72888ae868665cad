#pragma once

#include "contract/Subject.h"
#include "platform/Bundles.h"

#include <QString>

namespace quorvane {

using namespace Qt::StringLiterals;

/// A computer with an installed application, and a folder for bundles that aren't.
class BundlesSubject {
public:
    virtual ~BundlesSubject() = default;
    virtual const Bundles& bundles() const = 0;
    virtual QString installedIdentifier() const = 0;
    virtual QString installedPath() const = 0;
    virtual QString folder() const = 0;
    /// Writes a file, with the folders above it.
    virtual void put(const QString& path, const QByteArray& bytes) = 0;
};

class BundlesContract : public ContractTest<BundlesSubject> {
protected:
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }

    const Bundles& bundles = subject->bundles();
};

} // namespace quorvane
