#include "readings/PowerSettings.h"

#include <algorithm>
#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Setting = std::optional<QString> PowerSettings::*;

constexpr std::array<Setting, 3> kSleepSettings{&PowerSettings::standby, &PowerSettings::disksleep,
                                                &PowerSettings::sleep};
constexpr std::array<Setting, 4> kSettings{&PowerSettings::standby, &PowerSettings::disksleep, &PowerSettings::sleep,
                                           &PowerSettings::sms};

/// None for what no tweak changes.
std::optional<QString>* settingNamed(const QString& name, PowerSettings& settings) {
    constexpr std::array<QStringView, 4> names{u"standby", u"disksleep", u"sleep", u"sms"};
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? nullptr : &(settings.*kSettings[static_cast<size_t>(found - names.begin())]);
}

void takeSetting(const QString& line, PowerSettings& settings) {
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    std::optional<QString>* setting = words.size() > 1 ? settingNamed(words.first(), settings) : nullptr;
    if (setting && !*setting) {
        *setting = words.last();
    }
}

bool listsSleepSetting(const PowerSource& source) {
    return std::any_of(kSleepSettings.begin(), kSleepSettings.end(),
                       [&source](Setting setting) { return (source.settings.*setting).has_value(); });
}

bool mayTheMacSleep(const PowerSource& source) {
    return std::any_of(kSleepSettings.begin(), kSleepSettings.end(),
                       [&source](Setting setting) { return (source.settings.*setting).value_or(u"0"_s) != u"0"_s; });
}

} // namespace

std::optional<QList<PowerSource>> parsedPowerSources(const QString& customSettings) {
    QList<PowerSource> sources;
    bool isAnyListed = false;
    for (const QString& line : customSettings.split(u'\n', Qt::SkipEmptyParts)) {
        const QString text = line.trimmed();
        if (text.endsWith(u':')) {
            sources.append(PowerSource{text.chopped(1), {}});
            continue;
        }
        if (sources.isEmpty()) {
            sources.append(PowerSource());
        }
        isAnyListed = isAnyListed || text.contains(u' ');
        takeSetting(text, sources.last().settings);
    }
    return isAnyListed ? std::optional(sources) : std::nullopt;
}

PowerSettings firstListed(const QList<PowerSource>& sources) {
    PowerSettings first;
    for (const PowerSource& source : sources) {
        for (const Setting setting : kSettings) {
            if (!(first.*setting)) {
                first.*setting = source.settings.*setting;
            }
        }
    }
    return first;
}

bool isKeptAwake(const QList<PowerSource>& sources) {
    return std::any_of(sources.begin(), sources.end(), listsSleepSetting) && sourcesThatSleep(sources).isEmpty();
}

QStringList sourcesThatSleep(const QList<PowerSource>& sources) {
    QStringList names;
    for (const PowerSource& source : sources) {
        if (mayTheMacSleep(source)) {
            names.append(source.name);
        }
    }
    const auto isMains = [](const QString& name) { return name == u"AC Power"; };
    std::stable_partition(names.begin(), names.end(), isMains);
    return names;
}

} // namespace quorvane
