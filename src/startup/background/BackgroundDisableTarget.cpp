#include "startup/background/BackgroundDisableTarget.h"

#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "startup/launchd/LaunchFolders.h"

#include <QDir>
#include <QStringList>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLoginItems = u"/LoginItems"_s;
const QString kLaunchAgents = u"/LaunchAgents"_s;

/// The file name without its extension.
QString baseName(const QUrl& url) {
    return nameInPath(url.path());
}

std::optional<QUrl> fileUrl(const BackgroundTaskItem& record) {
    const std::optional<QString> path = recordedPath(record);
    return path ? std::optional(QUrl::fromLocalFile(*path)) : std::nullopt;
}

std::optional<QUrl> parentApplication(const BackgroundTaskItem& record, const BackgroundTaskList& list) {
    if (const BackgroundTaskItem* parent = list.parentOf(record)) {
        if (std::optional<QUrl> url = fileUrl(*parent)) {
            return url;
        }
    }
    return isApplicationRecord(record) ? fileUrl(record) : std::nullopt;
}

QString lettersAndDigits(const QString& text) {
    QString kept;
    for (const QChar c : text.toCaseFolded()) {
        if (c.isLetterOrNumber()) {
            kept.append(c);
        }
    }
    return kept;
}

/// True when a helper's file name stands for the label: it is the label, or its last components in words
/// ("Dropbox Helper.app" for com.getdropbox.dropbox.helper). Nothing less: another helper of the application may stay.
bool standsForLabel(const QString& baseName, const QString& label) {
    const QString wanted = lettersAndDigits(baseName);
    const QStringList components = label.split(u'.');
    QString tail;
    for (auto component = components.rbegin(); component != components.rend() && tail.size() < wanted.size();
         ++component) {
        tail.prepend(lettersAndDigits(*component));
    }
    return !wanted.isEmpty() && tail == wanted;
}

/// The file in an application's library that a record tells itself, often by a path inside its application; empty when it
/// tells none.
QString helperNamedBy(const BackgroundTaskItem& record) {
    const QString path = QDir::cleanPath(QUrl::fromPercentEncoding(record.url.value_or(QString()).toUtf8()));
    return path.contains(u"Contents/Library/"_s) ? lastPathComponent(path) : QString();
}

bool standsForRecord(const QUrl& resource, const BackgroundTaskItem& record, const QString& label) {
    const QString named = helperNamedBy(record);
    return named.isEmpty() ? standsForLabel(baseName(resource), label) : named == resource.fileName();
}

/// Builds the list of targets; remembers which resources have found theirs.
class TargetBuilder {
public:
    /// @param records  those that go: a file that another record names is not theirs
    TargetBuilder(const QList<BackgroundTaskItem>& records, const BackgroundTaskList& list, const FileManager& files)
        : m_list(list)
        , m_files(files) {
        QSet<QString> going;
        for (const BackgroundTaskItem& record : records) {
            going.insert(backgroundItemLabel(record).value_or(QString()));
        }
        for (const BackgroundTaskItem& other : list.items()) {
            if (!going.contains(backgroundItemLabel(other).value_or(QString())) && !helperNamedBy(other).isEmpty()) {
                reserve(other);
            }
        }
    }

    void addRecord(const BackgroundTaskItem& record) {
        const std::optional<QUrl> application = parentApplication(record, m_list);
        const std::optional<QString> label = backgroundItemLabel(record);
        if (!application || !label) {
            return;
        }
        std::optional<QUrl> resource;
        for (const QUrl& candidate : resourcesOf(*application)) {
            if (isFree(*application, candidate) && standsForRecord(candidate, record, *label)) {
                resource = candidate;
                break;
            }
        }
        add({*label, *application, record, resource});
    }

    void addLaunchAgents(const QSet<QString>& labels) {
        for (const QUrl& application : std::as_const(m_applications)) {
            for (const QUrl& resource : resourcesOf(application)) {
                if (resource.fileName().endsWith(u".plist"_s) && labels.contains(baseName(resource)) &&
                    isFree(application, resource)) {
                    add({baseName(resource), application, std::nullopt, resource});
                }
            }
        }
    }

    QList<BackgroundDisableTarget> targets() const { return m_targets; }

private:
    const QList<QUrl>& resourcesOf(const QUrl& application) {
        if (!m_resources.contains(application)) {
            m_applications.append(application);
            m_resources.insert(application, bundledStartupResources(application, m_files));
        }
        return m_resources[application];
    }

    void reserve(const BackgroundTaskItem& record) {
        if (const std::optional<QUrl> application = parentApplication(record, m_list)) {
            m_reserved.insert(*application, helperNamedBy(record));
        }
    }

    bool isFree(const QUrl& application, const QUrl& resource) const {
        return !m_taken.contains(resource) && !m_reserved.contains(application, resource.fileName());
    }

    void add(const BackgroundDisableTarget& target) {
        if (target.bundledResourceURL) {
            m_taken.insert(*target.bundledResourceURL);
        }
        m_targets.append(target);
    }

    const BackgroundTaskList& m_list;
    const FileManager& m_files;
    QList<QUrl> m_applications; ///< in the order in which they were met
    QHash<QUrl, QList<QUrl>> m_resources;
    QSet<QUrl> m_taken;
    QMultiHash<QUrl, QString> m_reserved; ///< files by their application that records name which stay
    QList<BackgroundDisableTarget> m_targets;
};

/// True for what really lies in the library of the application: a link could lead anywhere, to audio software even.
bool liesInLibrary(const QString& path, const QString& application, const FileManager& files) {
    try {
        const QString inside = files.resolved(application) + u"/Contents/Library/"_s;
        const QString resolved = files.resolved(path);
        // What is protected as it is written leaves its line in the log later on.
        return resolved.startsWith(inside) && (isExcludedName(path) || !isExcludedName(resolved));
    } catch (const FileError&) {
        return false;
    }
}

} // namespace

QStringList pathsInHelperFolders(const QString& application, const FileManager& files) {
    QStringList paths;
    for (const QString& subfolder : {kLoginItems, kLaunchAgents}) {
        const QString folder = application + u"/Contents/Library"_s + subfolder;
        QStringList names = namesIn(files, folder);
        names.sort();
        for (const QString& name : names) {
            const QString path = folder + u'/' + name;
            if (liesInLibrary(path, application, files)) {
                paths.append(path);
            }
        }
    }
    return paths;
}

QList<QUrl> bundledStartupResources(const QUrl& appURL, const FileManager& files) {
    QList<QUrl> resources;
    for (const QString& path : pathsInHelperFolders(QDir::cleanPath(appURL.toLocalFile()), files)) {
        const bool isLoginItem = parentFolder(path).endsWith(kLoginItems);
        if (path.endsWith(isLoginItem ? u".app"_s : u".plist"_s)) {
            resources.append(QUrl::fromLocalFile(path));
        }
    }
    return resources;
}

QList<QUrl> applicationsOf(const QList<BackgroundTaskItem>& records, const BackgroundTaskList& list) {
    QList<QUrl> applications;
    for (const BackgroundTaskItem& record : records) {
        const std::optional<QUrl> application = parentApplication(record, list);
        if (application && !applications.contains(*application)) {
            applications.append(*application);
        }
    }
    return applications;
}

QList<BackgroundDisableTarget> backgroundDisableTargets(const QList<BackgroundTaskItem>& records,
                                                        const QSet<QString>& labels, const BackgroundTaskList& list,
                                                        const FileManager& files) {
    TargetBuilder builder(records, list, files);
    QSet<QString> launchLabels = labels;
    for (const BackgroundTaskItem& record : records) {
        builder.addRecord(record);
        launchLabels.insert(backgroundItemLabel(record).value_or(QString()));
    }
    builder.addLaunchAgents(launchLabels);
    return builder.targets();
}

bool isProtectedTarget(const BackgroundDisableTarget& target) {
    return isExcludedName(target.label) || isExcludedName(target.parentAppURL.path()) ||
           (target.bundledResourceURL && isExcludedName(target.bundledResourceURL->path())) ||
           (target.item && isProtectedRecord(*target.item));
}

QString quarantineFolder(const QString& homeFolder) {
    return backupFolder(homeFolder) + u"/bundled-login-items"_s;
}

bool isWithinReachOfUser(const BackgroundDisableTarget& target, const FileManager& files) {
    const QString helper = target.bundledResourceURL->toLocalFile();
    const QString application = target.parentAppURL.toLocalFile();
    const QStringList folders = foldersAbove(helper);
    return files.isWritable(helper) || std::any_of(folders.begin(), folders.end(), [&](const QString& folder) {
               return folder.size() >= application.size() && files.isWritable(folder);
           });
}

} // namespace quorvane
