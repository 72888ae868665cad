#include "simulator/StartupServices.h"

#include "simulator/BackgroundTasks.h"
#include "simulator/LoginItems.h"
#include "simulator/MacPaths.h"
#include "simulator/Places.h"

#include <QUrl>

#include <algorithm>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Kind = StartupService::Kind;

LaunchdDomain sessionOf(const Mac& mac) {
    return {LaunchdDomain::Kind::Gui, mac.machine().userId};
}

bool isOn(const BackgroundTask& task) {
    return task.isEnabled && task.isAllowed;
}

// ---- Where the file of a record is

/// Dumps name a home folder by its user's number at times.
QString withUserName(const QString& path, const Mac& mac) {
    const QString numbered = u"/Users/"_s + QString::number(mac.machine().userId) + u'/';
    return path.startsWith(numbered) ? mac.homeFolder(Actor::User) + u'/' + path.mid(numbered.size()) : path;
}

/// A URL, or a path of recent systems, which isn't encoded.
QString absolutePathOf(const BackgroundTask& task) {
    return withoutFinalSlashes(task.url.startsWith(u"file:"_s) ? QUrl(task.url).toLocalFile() : task.url);
}

/// What a record of an application's bundle names lies in it. A name may be encoded or not.
QString pathInBundle(const Mac& mac, const QString& bundle, const QString& name) {
    const QString plain = withoutFinalSlashes(bundle + u'/' + name);
    return mac.volume(Actor::Root).exists(plain) ? plain : QUrl::fromPercentEncoding(plain.toUtf8());
}

class BackgroundTaskPaths {
public:
    BackgroundTaskPaths(const Mac& mac, const std::vector<BackgroundTask>& tasks)
        : m_mac(mac)
        , m_tasks(tasks) {}

    /// Empty where the record doesn't say.
    QString pathOf(const BackgroundTask& task) const {
        if (task.url.isEmpty()) {
            return {};
        }
        const bool isAbsolute = task.url.startsWith(u"file:"_s) || task.url.startsWith(u'/');
        const QString path = isAbsolute ? absolutePathOf(task) : pathInBundle(m_mac, bundleOf(task), task.url);
        return withUserName(path, m_mac);
    }

private:
    QString bundleOf(const BackgroundTask& task) const {
        const auto parent = std::find_if(m_tasks.begin(), m_tasks.end(), [&task](const BackgroundTask& other) {
            return other.identifier == task.parent && other.kind() == u"app"_s;
        });
        return parent == m_tasks.end() ? QString() : absolutePathOf(*parent);
    }

    const Mac& m_mac;
    const std::vector<BackgroundTask>& m_tasks;
};

/// Of a list in a launch folder.
bool isRecordOf(const BackgroundTask& task, const QString& taskPath, const LaunchPlist& plist) {
    const bool isIts = taskPath.isEmpty() ? withoutTypeNumber(task.identifier) == plist.label : taskPath == plist.path;
    return task.isLegacy() && isIts;
}

// ---- What there is

/// Gathers the services of one Mac.
class StartupSurvey {
public:
    explicit StartupSurvey(const Mac& mac)
        : m_mac(mac)
        , m_disk(mac.volume(Actor::Root))
        , m_launchd(mac)
        , m_processes(ProcessTable(mac.state()).list())
        , m_tasks(backgroundTasks(mac.state()))
        , m_paths(mac, m_tasks) {}

    std::vector<StartupService> all() {
        addLaunchPlists(u"/Library/LaunchDaemons"_s, {LaunchdDomain::Kind::System, 0});
        addLaunchPlists(u"/Library/LaunchAgents"_s, sessionOf(m_mac));
        addLaunchPlists(m_mac.homeFolder(Actor::User) + u"/Library/LaunchAgents"_s, sessionOf(m_mac));
        addBundled();
        addLoginItems();
        addApplications();
        addLeftJobs();
        return std::move(m_services);
    }

private:
    void addLaunchPlists(const QString& folder, const LaunchdDomain& domain) {
        const QStringList names = m_disk.isFolder(folder) ? m_disk.list(folder) : QStringList();
        for (const QString& name : names) {
            const auto plist =
                name.endsWith(u".plist"_s) ? readLaunchPlist(m_disk, folder + u'/' + name) : std::nullopt;
            if (plist) {
                addJob(Kind::LaunchPlist, domain, *plist, !isOffByRecord(*plist));
            }
        }
    }

    bool isOffByRecord(const LaunchPlist& plist) const {
        return std::any_of(m_tasks.begin(), m_tasks.end(), [&](const BackgroundTask& task) {
            return isRecordOf(task, m_paths.pathOf(task), plist) && !isOn(task);
        });
    }

    void addBundled() {
        for (const BackgroundTask& task : m_tasks) {
            const bool isJob =
                task.kind() == u"daemon"_s || task.kind() == u"agent"_s || task.kind() == u"login item"_s;
            if (isJob && !task.isLegacy() && concernsUser(task)) {
                const LaunchdDomain system{LaunchdDomain::Kind::System, 0};
                const LaunchPlist job = bundledJob(task);
                const bool isThere = job.path.isEmpty() || m_disk.exists(job.path);
                addJob(Kind::Bundled, task.kind() == u"daemon"_s ? system : sessionOf(m_mac), job,
                       isOn(task) && isThere);
            }
        }
    }

    bool concernsUser(const BackgroundTask& task) const {
        return task.userId == m_mac.machine().userId || task.userId == kMachineWideTasks;
    }

    /// A login item's bundle runs as a job of its identifier.
    LaunchPlist bundledJob(const BackgroundTask& task) const {
        const QString path = m_paths.pathOf(task);
        LaunchPlist job = readLaunchPlist(m_disk, path).value_or(LaunchPlist{});
        job.label = withoutTypeNumber(task.identifier);
        job.path = path;
        job.program = job.program.isEmpty() ? task.executablePath : job.program;
        if (task.kind() == u"login item"_s) {
            job.program = job.program.isEmpty() ? programIn(path) : job.program;
            job.startsAtLoad = true;
        }
        return job;
    }

    static QString programIn(const QString& bundle) {
        const QString name = lastPathComponent(bundle);
        return bundle.isEmpty() ? QString() : bundle + u"/Contents/MacOS/"_s + name.left(name.lastIndexOf(u".app"_s));
    }

    void addJob(Kind kind, const LaunchdDomain& domain, const LaunchPlist& job, bool isWanted) {
        const bool isLoaded = m_launchd.job(domain, job.label).has_value();
        m_services.push_back({kind, domain, job, isLoaded, isWanted && !m_launchd.isDisabled(domain, job)});
    }

    void addLoginItems() {
        LoginItems items(m_mac);
        for (const LoginItem& item : items.all()) {
            addOpened(Kind::LoginItem, item.path ? withoutFinalSlashes(*item.path) : QString(), true);
        }
    }

    void addApplications() {
        for (const BackgroundTask& task : m_tasks) {
            const QString path = m_paths.pathOf(task);
            const bool isUsers = task.kind() == u"app"_s && task.userId == m_mac.machine().userId;
            const bool isListed = std::any_of(m_services.begin(), m_services.end(), [&](const StartupService& service) {
                return service.kind == Kind::LoginItem && service.job.path == path;
            });
            if (isUsers && !isListed) {
                addOpened(Kind::Application, path, isOn(task));
            }
        }
    }

    void addOpened(Kind kind, const QString& path, bool isWanted) {
        const bool isThere = !path.isEmpty() && m_disk.exists(path);
        const bool runs = std::any_of(m_processes.begin(), m_processes.end(), [&](const Process& process) {
            return !path.isEmpty() && process.label.isEmpty() && isAtOrBelow(process.path, path);
        });
        LaunchPlist opened;
        opened.path = path;
        opened.program = path.endsWith(u".app"_s) ? programIn(path) : path;
        m_services.push_back({kind, sessionOf(m_mac), opened, runs, isWanted && isThere});
    }

    void addLeftJobs() {
        const int userId = m_mac.machine().userId;
        const LaunchdDomain domains[] = {
            {LaunchdDomain::Kind::System, 0}, sessionOf(m_mac), {LaunchdDomain::Kind::User, userId}};
        for (const LaunchdDomain& domain : domains) {
            const std::vector<LaunchdJob> jobs = m_launchd.jobs(domain);
            for (const LaunchdJob& job : jobs) {
                if (!job.path.startsWith(u"/System/"_s) && !isKnown(domain, job.label)) {
                    LaunchPlist left;
                    left.label = job.label;
                    left.path = job.path;
                    m_services.push_back({Kind::Job, domain, left, true, false});
                }
            }
        }
    }

    bool isKnown(const LaunchdDomain& domain, const QString& label) const {
        return std::any_of(m_services.begin(), m_services.end(), [&](const StartupService& service) {
            return service.domain == domain && service.job.label == label;
        });
    }

    const Mac& m_mac;
    const Volume m_disk;
    const LaunchdState m_launchd;
    const std::vector<Process> m_processes;
    const std::vector<BackgroundTask> m_tasks;
    const BackgroundTaskPaths m_paths;
    std::vector<StartupService> m_services;
};

} // namespace

std::vector<StartupService> startupServices(const Mac& mac) {
    return StartupSurvey(mac).all();
}

bool isDisallowed(const Mac& mac, const LaunchPlist& plist) {
    const std::vector<BackgroundTask> tasks = backgroundTasks(mac.state());
    const BackgroundTaskPaths paths(mac, tasks);
    return std::any_of(tasks.begin(), tasks.end(), [&](const BackgroundTask& task) {
        return !task.isAllowed && isRecordOf(task, paths.pathOf(task), plist);
    });
}

void loadBundledServices(const Mac& mac) {
    const LaunchdState launchd(mac);
    const std::vector<StartupService> services = startupServices(mac);
    for (const StartupService& service : services) {
        if (service.kind == Kind::Bundled && service.startsAtNextLogin) {
            launchd.load(service.domain, service.job);
        }
    }
}

} // namespace macsim
