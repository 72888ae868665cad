#include "startup/launchd/DisabledServices.h"

#include <QStringTokenizer>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

OverrideState stateOfWord(QStringView word) {
    if (word == u"disabled" || word == u"true") {
        return OverrideState::Disabled;
    }
    return word == u"enabled" || word == u"false" ? OverrideState::Enabled : OverrideState::Unknown;
}

} // namespace

size_t qHash(const LaunchdService& service, size_t seed) {
    return qHashMulti(seed, static_cast<int>(service.domain), service.label);
}

std::optional<DisabledServices> DisabledServices::parse(const QString& output) {
    DisabledServices services;
    bool isInBlock = false;
    for (const QStringView untrimmed : QStringTokenizer{output, u'\n'}) {
        const QStringView line = untrimmed.trimmed();
        if (!isInBlock) {
            isInBlock = line == u"disabled services = {";
            continue;
        }
        if (line == u"}") {
            return services; // what follows tells of something else
        }
        const qsizetype end = line.lastIndexOf(u"\" => ");
        if (end > 0 && line.startsWith(u'"')) {
            services.m_states.insert(line.sliced(1, end - 1).toString(), stateOfWord(line.sliced(end + 5)));
        }
    }
    return std::nullopt;
}

OverrideState LaunchdOverrides::stateOf(const LaunchdService& service) const {
    const std::optional<DisabledServices>& services = service.domain == LaunchdDomain::User ? user : system;
    return services ? services->stateOf(service.label) : OverrideState::Unknown;
}

} // namespace quorvane
