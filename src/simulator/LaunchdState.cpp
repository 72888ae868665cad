#include "simulator/LaunchdState.h"

#include "simulator/MacPaths.h"
#include "simulator/Permissions.h"

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kLaunchdSubject = "launchd";

/// The entry of a nested object, null where a step is missing.
Json entry(const Json& state, std::initializer_list<std::string> keys) {
    const Json* found = &state;
    for (const std::string& key : keys) {
        if (!found->is_object() || !found->contains(key)) {
            return {};
        }
        found = &found->at(key);
    }
    return *found;
}

LaunchdJob jobFromJson(const std::string& label, const Json& record) {
    LaunchdJob job;
    job.label = QString::fromStdString(label);
    const Json path = entry(record, {"path"});
    const Json pid = entry(record, {"pid"});
    const Json lastExitStatus = entry(record, {"lastExitStatus"});
    job.path = path.is_string() ? QString::fromStdString(path.get<std::string>()) : QString();
    job.pid = pid.is_number() ? pid.get<int>() : 0;
    job.lastExitStatus = lastExitStatus.is_number() ? std::optional(lastExitStatus.get<int>()) : std::nullopt;
    return job;
}

Process processOf(const LaunchdDomain& domain, const LaunchPlist& plist) {
    Process process;
    process.name = lastPathComponent(plist.program);
    process.path = plist.program;
    process.userId = domain.userId;
    process.label = plist.label;
    process.keepAlive = plist.keepAlive;
    return process;
}

/// Whether a process is the one of a job. A session and its user have different jobs and the same user id.
bool isProcessOf(const Process& process, const LaunchdDomain& domain, const LaunchdJob& job) {
    const bool samePid = job.pid == 0 || job.pid == process.pid;
    return process.label == job.label && process.userId == domain.userId && samePid;
}

/// The record of the job that a process belongs to, or null.
Json* jobOfProcess(Json& state, const Process& process) {
    const LaunchdDomain domains[] = {{LaunchdDomain::Kind::System, 0},
                                     {LaunchdDomain::Kind::Gui, process.userId},
                                     {LaunchdDomain::Kind::User, process.userId}};
    const std::string label = process.label.toStdString();
    for (const LaunchdDomain& domain : domains) {
        const std::string key = domain.key().toStdString();
        const Json record = entry(state, {"jobs", key, label});
        if (!record.is_null() && isProcessOf(process, domain, jobFromJson(label, record))) {
            return &state["jobs"][key][label];
        }
    }
    return nullptr;
}

} // namespace

QString LaunchdDomain::key() const {
    switch (kind) {
    case Kind::System:
        return u"system"_s;
    case Kind::User:
        return u"user/"_s + QString::number(userId);
    case Kind::Gui:
        return u"gui/"_s + QString::number(userId);
    }
    return {};
}

QString LaunchdDomain::words() const {
    switch (kind) {
    case Kind::System:
        return u"system"_s;
    case Kind::User:
        return u"uid: "_s + QString::number(userId);
    case Kind::Gui:
        return u"user gui: "_s + QString::number(userId);
    }
    return {};
}

QString LaunchdDomain::overridesKey() const {
    return kind == Kind::System ? u"system"_s : u"user/"_s + QString::number(userId);
}

LaunchdState::LaunchdState(const Mac& mac)
    : m_mac(mac)
    , m_processes(mac.state()) {}

bool LaunchdState::exists(const LaunchdDomain& domain) const {
    if (domain.kind == LaunchdDomain::Kind::Gui) {
        const Json session = entry(m_mac.state().read(kLaunchdSubject), {"guiSession"});
        return domain.userId == m_mac.machine().userId && (session.is_null() || session.get<bool>());
    }
    return domain.userId == 0 || domain.userId == m_mac.machine().userId;
}

std::optional<LaunchdJob> LaunchdState::job(const LaunchdDomain& domain, const QString& label) const {
    const std::string key = label.toStdString();
    const Json record = entry(m_mac.state().read(kLaunchdSubject), {"jobs", domain.key().toStdString(), key});
    return record.is_null() ? std::nullopt : std::optional(jobFromJson(key, record));
}

std::vector<LaunchdJob> LaunchdState::jobs(const LaunchdDomain& domain) const {
    std::vector<LaunchdJob> jobs;
    const Json records = entry(m_mac.state().read(kLaunchdSubject), {"jobs", domain.key().toStdString()});
    for (const auto& [label, record] : records.items()) {
        jobs.push_back(jobFromJson(label, record));
    }
    return jobs;
}

std::vector<std::pair<QString, bool>> LaunchdState::overrides(const LaunchdDomain& domain) const {
    std::vector<std::pair<QString, bool>> overrides;
    const Json records = entry(m_mac.state().read(kLaunchdSubject), {"disabled", domain.overridesKey().toStdString()});
    for (const auto& [label, disabled] : records.items()) {
        overrides.emplace_back(QString::fromStdString(label), disabled.get<bool>());
    }
    return overrides;
}

bool LaunchdState::keepsAppleOverrides() const {
    const Json fate = entry(m_mac.state().read(kLaunchdSubject), {"appleOverrides"});
    if (fate.is_null() || fate == "ignored") {
        return false;
    }
    if (fate != "kept") {
        throw std::invalid_argument("launchd: \"appleOverrides\" is \"ignored\" or \"kept\", and not " + fate.dump());
    }
    return true;
}

bool LaunchdState::isDisabled(const LaunchdDomain& domain, const LaunchPlist& plist) const {
    const Json override = entry(m_mac.state().read(kLaunchdSubject),
                                {"disabled", domain.overridesKey().toStdString(), plist.label.toStdString()});
    return override.is_null() ? plist.disabled : override.get<bool>();
}

void LaunchdState::setDisabled(const LaunchdDomain& domain, const QString& label, bool disabled) const {
    m_mac.state().update(kLaunchdSubject, [&](Json& state) {
        state["disabled"][domain.overridesKey().toStdString()][label.toStdString()] = disabled;
    });
}

bool LaunchdState::load(const LaunchdDomain& domain, const LaunchPlist& plist) const {
    bool loaded = false;
    m_mac.state().update(kLaunchdSubject, [&](Json& state) {
        Json& jobs = state["jobs"][domain.key().toStdString()];
        const std::string label = plist.label.toStdString();
        loaded = !jobs.contains(label);
        if (!loaded) {
            return;
        }
        Json record = {{"path", plist.path.toStdString()}, {"pid", nullptr}, {"lastExitStatus", nullptr}};
        if (plist.startsAtLoad && !plist.program.isEmpty()) {
            record["pid"] = m_processes.start(processOf(domain, plist));
        }
        jobs[label] = record;
    });
    return loaded;
}

bool LaunchdState::unload(const LaunchdDomain& domain, const QString& label) const {
    bool unloaded = false;
    m_mac.state().update(kLaunchdSubject, [&](Json& state) {
        const std::string key = label.toStdString();
        const Json record = entry(state, {"jobs", domain.key().toStdString(), key});
        if (record.is_null()) {
            return;
        }
        removeProcesses(domain, jobFromJson(key, record));
        state["jobs"][domain.key().toStdString()].erase(key);
        unloaded = true;
    });
    return unloaded;
}

void LaunchdState::removeProcesses(const LaunchdDomain& domain, const LaunchdJob& job) const {
    const std::vector<Process> processes = m_processes.list();
    for (const Process& process : processes) {
        if (isProcessOf(process, domain, job)) {
            m_processes.remove(process.pid);
        }
    }
}

void LaunchdState::endProcess(const Process& process, int signal) const {
    m_mac.state().update(kLaunchdSubject, [&](Json& state) {
        Json* job = jobOfProcess(state, process);
        const bool startsAgain = job && process.keepAlive;
        int pid = 0;
        if (startsAgain) {
            pid = m_processes.replace(process.pid);
        } else {
            m_processes.remove(process.pid);
        }
        if (job) {
            (*job)["pid"] = pid > 0 ? Json(pid) : Json();
            (*job)["lastExitStatus"] = -signal;
        }
    });
}

bool LaunchdState::isProtectedPath(const QString& plistPath) const {
    return plistPath.startsWith(u"/System/"_s) && isSystemIntegrityProtected(m_mac.state());
}

bool LaunchdState::isProtectedLabel(const LaunchdDomain& domain, const QString& label) const {
    if (const auto loaded = job(domain, label); loaded && !loaded->path.isEmpty()) {
        return isProtectedPath(loaded->path);
    }
    const Volume volume = m_mac.volume(Actor::Root);
    for (const QString& folder : {u"LaunchAgents"_s, u"LaunchDaemons"_s}) {
        const QString path = u"/System/Library/"_s + folder + u'/' + label + u".plist"_s;
        if (!label.contains(u'/') && volume.exists(path)) {
            return isProtectedPath(path);
        }
    }
    return false;
}

} // namespace macsim
