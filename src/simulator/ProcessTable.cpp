#include "simulator/ProcessTable.h"

#include <algorithm>

namespace macsim {

namespace {

constexpr const char* kProcessesSubject = "processes";
constexpr int kFirstFreePid = 300; // below are the processes of the start-up

QString valueText(const Json& record, const char* key) {
    return QString::fromStdString(record.value(key, std::string()));
}

Process processFromJson(const Json& record) {
    Process process;
    process.pid = wholeNumber<int>(record.at("pid"));
    process.name = QString::fromStdString(record.at("name").get<std::string>());
    process.path = valueText(record, "path");
    process.userId = wholeNumber<int>(record.at("uid"));
    process.label = valueText(record, "label");
    process.keepAlive = record.value("keepAlive", false);
    process.isProtected = record.value("protected", false);
    return process;
}

Json jsonFromProcess(const Process& process) {
    Json record = {{"pid", process.pid}, {"name", process.name.toStdString()}};
    if (!process.path.isEmpty()) {
        record["path"] = process.path.toStdString();
    }
    record["uid"] = process.userId;
    if (!process.label.isEmpty()) {
        record["label"] = process.label.toStdString();
    }
    if (process.keepAlive) {
        record["keepAlive"] = true;
    }
    if (process.isProtected) {
        record["protected"] = true;
    }
    return record;
}

int freePid(const Json& records) {
    int last = kFirstFreePid - 1;
    for (const Json& record : records) {
        last = std::max(last, record.at("pid").get<int>());
    }
    return last + 1;
}

auto findRecord(Json& records, int pid) {
    return std::find_if(records.begin(), records.end(),
                        [pid](const Json& record) { return record.at("pid").get<int>() == pid; });
}

} // namespace

ProcessTable::ProcessTable(const StateStore& state)
    : m_state(state) {}

std::vector<Process> ProcessTable::list() const {
    std::vector<Process> processes;
    const Json records = m_state.read(kProcessesSubject);
    for (const Json& record : records) {
        processes.push_back(processFromJson(record));
    }
    return processes;
}

std::optional<Process> ProcessTable::find(int pid) const {
    Json records = m_state.read(kProcessesSubject);
    const auto record = findRecord(records, pid);
    return record == records.end() ? std::nullopt : std::optional(processFromJson(*record));
}

int ProcessTable::start(const Process& process) const {
    Process started = process;
    m_state.update(kProcessesSubject, [&started](Json& records) {
        started.pid = freePid(records);
        records.push_back(jsonFromProcess(started));
    });
    return started.pid;
}

void ProcessTable::remove(int pid) const {
    m_state.update(kProcessesSubject, [pid](Json& records) {
        const auto record = findRecord(records, pid);
        if (record != records.end()) {
            records.erase(record);
        }
    });
}

int ProcessTable::replace(int pid) const {
    int newPid = 0;
    m_state.update(kProcessesSubject, [pid, &newPid](Json& records) {
        const auto record = findRecord(records, pid);
        if (record == records.end()) {
            return;
        }
        newPid = freePid(records);
        Json renewed = *record;
        renewed["pid"] = newPid;
        records.erase(record);
        records.push_back(renewed);
    });
    return newPid;
}

} // namespace macsim
