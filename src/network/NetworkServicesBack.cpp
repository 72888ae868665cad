#include "network/NetworkServicesBack.h"

#include "core/AdminBatch.h"
#include "core/AdminScript.h"
#include "network/NetworkServices.h"
#include "network/SwitchedOffServices.h"
#include "platform/FileManager.h"
#include "platform/Host.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

NetworkServicesBack::NetworkServicesBack(FlowEnvironment& environment, AdminBatch& batch)
    : Flow(environment)
    , m_batch(batch) {}

QCoro::Task<bool> NetworkServicesBack::queue(QSet<QString> captured, QSet<QString> kept) {
    QStringList switchedOff = SwitchedOffServices(host().files, host().machine).read();
    switchedOff.removeIf([&](const QString& name) { return captured.contains(name) || kept.contains(name); });
    if (switchedOff.isEmpty()) {
        co_return true;
    }
    const CommandResult listed = co_await listing();
    if (listed.status != 0) {
        co_return false;
    }
    const QStringList there = parsedNetworkServices(listed.standardOutput);
    const QStringList on = networkServicesOn(listed.standardOutput);
    for (const QString& name : switchedOff) {
        if (there.contains(name) && !on.contains(name)) {
            m_batch.open().queue(withoutStatus(networkServiceCommand(name, NetworkSwitch::On)));
            m_queued.append(name);
        }
    }
    co_return true;
}

QCoro::Task<bool> NetworkServicesBack::settle() {
    const QStringList queued = std::exchange(m_queued, {});
    if (SwitchedOffServices(host().files, host().machine).read().isEmpty()) {
        co_return true;
    }
    const CommandResult listed = co_await listing();
    if (listed.status != 0) {
        co_return queued.isEmpty();
    }
    const QStringList there = parsedNetworkServices(listed.standardOutput);
    const QStringList on = networkServicesOn(listed.standardOutput);
    qsizetype count = 0;
    bool isOneLeft = false;
    for (const QString& name : queued) {
        count += on.contains(name) ? 1 : 0;
        isOneLeft = isOneLeft || (there.contains(name) && !on.contains(name));
    }
    if (count > 0) {
        log(u"  [RESTORED] %1 network service(s) switched on again."_s.arg(count));
    }
    for (const QString& name : queued) {
        if (!on.contains(name)) {
            log(u"  [INFO] Not restored: network service "_s + name);
        }
    }
    forget(on); // one that isn't listed may be of another location: it stays noted
    co_return !isOneLeft;
}

void NetworkServicesBack::forgetAll() {
    forget(SwitchedOffServices(host().files, host().machine).read());
}

QCoro::Task<CommandResult> NetworkServicesBack::listing() {
    const QStringList list{u"/usr/sbin/networksetup"_s, u"-listallnetworkservices"_s};
    co_return co_await runCommand(list, OutputCapture::Capture);
}

void NetworkServicesBack::forget(const QStringList& services) {
    try {
        SwitchedOffServices(host().files, host().machine).strike(services);
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not note which network services are switched off: "_s + error.message());
    }
}

} // namespace quorvane
