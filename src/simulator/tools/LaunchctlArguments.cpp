#include "simulator/tools/LaunchctlArguments.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

std::optional<int> parseUserId(const QString& text) {
    bool isNumber = false;
    const int userId = text.toInt(&isNumber);
    return isNumber && userId >= 0 ? std::optional(userId) : std::nullopt;
}

} // namespace

std::optional<LaunchdTarget> parseLaunchdTarget(const QString& target) {
    const QStringList parts = target.split(u'/');
    if (parts[0] == u"system"_s) {
        return LaunchdTarget{{LaunchdDomain::Kind::System, 0}, target.section(u'/', 1)};
    }
    const bool isGui = parts[0] == u"gui"_s;
    const std::optional<int> userId = parseUserId(parts.value(1));
    if ((!isGui && parts[0] != u"user"_s) || !userId) {
        return std::nullopt;
    }
    return LaunchdTarget{{isGui ? LaunchdDomain::Kind::Gui : LaunchdDomain::Kind::User, *userId},
                         target.section(u'/', 2)};
}

LegacyArguments parseLegacyArguments(const QStringList& words) {
    LegacyArguments arguments;
    QStringList rest = words;
    while (!rest.isEmpty() && rest.first().startsWith(u'-') && rest.first().size() > 1) {
        const QString word = rest.takeFirst();
        if (word == u"-w"_s) {
            arguments.changesOverride = true;
        } else if (word.startsWith(u"-F"_s) || word.startsWith(u"-S"_s) || word.startsWith(u"-D"_s)) {
            arguments.notSimulated = word;
        } else {
            return arguments;
        }
    }
    arguments.paths = rest;
    arguments.isUsable = !rest.isEmpty();
    return arguments;
}

QString launchdErrorText(LaunchdError error) {
    switch (error) {
    case LaunchdError::None:
        return {};
    case LaunchdError::NotPermitted:
        return u"Operation not permitted"_s;
    case LaunchdError::NoSuchProcess:
        return u"No such process"_s;
    case LaunchdError::InputOutput:
        return u"Input/output error"_s;
    case LaunchdError::NoDomain:
        return u"Could not find specified domain"_s;
    case LaunchdError::NoService:
        return u"Could not find specified service"_s;
    case LaunchdError::Disabled:
        return u"Service is disabled"_s;
    case LaunchdError::UnsupportedDomain:
        return u"Domain does not support specified action"_s;
    case LaunchdError::IntegrityProtected:
        return u"Operation not permitted while System Integrity Protection is engaged"_s;
    }
    return {};
}

} // namespace macsim
