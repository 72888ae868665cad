#include "simulator/Places.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<QStringView, 2> kGuardedFolders{u"/private/tmp", u"/Users/Shared"};
constexpr std::array<QStringView, 4> kSharedFolders{kGuardedFolders[0], kGuardedFolders[1], u"/Applications",
                                                    u"/Volumes"};

} // namespace

bool isAtOrBelow(const QString& path, QStringView folder) {
    return path.startsWith(folder) && (path.size() == folder.size() || path[folder.size()] == u'/');
}

bool isSealed(const QString& path) {
    static constexpr std::array<QStringView, 6> kSealed{u"/System", u"/usr", u"/bin",
                                                        u"/sbin",   u"/dev", u"/private/var/db/simulator"};
    if (path == u"/"_s) {
        return true;
    }
    if (isAtOrBelow(path, u"/usr/local")) {
        return false;
    }
    for (const QStringView folder : kSealed) {
        if (isAtOrBelow(path, folder)) {
            return true;
        }
    }
    return false;
}

bool isSharedFolder(const QString& path) {
    return std::find(kSharedFolders.begin(), kSharedFolders.end(), path) != kSharedFolders.end();
}

bool isGuardedFolder(const QString& path) {
    return std::find(kGuardedFolders.begin(), kGuardedFolders.end(), path) != kGuardedFolders.end();
}

bool isPrivate(const QString& path) {
    return path == u"/Library/Preferences/com.apple.TimeMachine.plist"_s ||
           isAtOrBelow(path, u"/Library/Application Support/com.apple.TCC");
}

bool isInDataVault(const QString& path) {
    static const QRegularExpression vault(u"\\.classicdatavault(?:/|$)"_s, QRegularExpression::CaseInsensitiveOption);
    return vault.match(path).hasMatch();
}

bool isInDownloads(const QString& path, const Machine& machine) {
    return isAtOrBelow(path, u"/Users/"_s + machine.userName + u"/Downloads"_s);
}

bool isInApplication(const QString& path) {
    static const QRegularExpression inside(u"^(?:/Users/[^/]+)?/Applications/(?:[^/]+/)*?[^/]+\\.app/"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return inside.match(path).hasMatch();
}

Actor ownerByPlace(const QString& path, const Machine& machine) {
    const bool isUsers =
        isAtOrBelow(path, u"/Users/"_s + machine.userName) || isAtOrBelow(path, userTemporaryFolder(machine)) ||
        std::any_of(kSharedFolders.begin(), kSharedFolders.end(),
                    [&path](QStringView folder) { return path != folder && isAtOrBelow(path, folder); });
    return isUsers ? Actor::User : Actor::Root;
}

QString userTemporaryFolder(const Machine& machine) {
    const QByteArray digest = QCryptographicHash::hash(machine.userName.toUtf8(), QCryptographicHash::Sha1).toHex();
    return u"/private/var/folders/"_s + QString::fromLatin1(digest.left(2)) + u'/' +
           QString::fromLatin1(digest.mid(2, 30));
}

} // namespace macsim
