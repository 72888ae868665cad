#pragma once

#include "contract/Subject.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"

#include <QDate>
#include <QTime>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Of the subjects that have one.
inline const QString kContainer = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;

/// An iCloud Drive to which nobody has signed in.
class CloudAccountSubject {
public:
    virtual ~CloudAccountSubject() = default;
    virtual CloudDrive& drive() = 0;
};

/// One with a container as soon as it is said, and what is behind it.
class CloudSubject : public CloudAccountSubject {
public:
    virtual FileManager& files() = 0;
    virtual void setUp(bool hasAccount, bool hasContainer) = 0;
    virtual void failWrites(const QString& error) = 0;
    /// A file in the container that isn't downloaded. @param looks  none when it never comes
    virtual void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                            const std::optional<QDateTime>& modified) = 0;
};

/// What holds without a container, which is all that a program without an entitlement sees.
class CloudDriveWithoutContainerContract : public ContractTest<CloudAccountSubject> {
protected:
    CloudDrive& drive = subject->drive();
};

/// What holds for who is signed in and has one.
class CloudDriveContract : public ContractTest<CloudSubject> {
protected:
    /// As it is for a user who is signed in.
    void signIn() {
        subject->setUp(true, true);
        ASSERT_EQ(drive.containerFolder().result(), kContainer);
    }
    QStringList sortedNames() const {
        QStringList names = drive.list(kContainer);
        names.sort();
        return names;
    }

    CloudDrive& drive = subject->drive();
    FileManager& files = subject->files();
    const QString path = kContainer + u"/profiles.json"_s;
    const QDateTime evening{QDate(2026, 3, 14), QTime(20, 30), Qt::UTC};
};

} // namespace quorvane
