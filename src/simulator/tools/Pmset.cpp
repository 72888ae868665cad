#include "simulator/tools/Pmset.h"

#include "simulator/tools/PmsetArguments.h"
#include "simulator/tools/ToolOptions.h"

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kPowerSubject = "power";
constexpr const char* kLowPowerMode = "lowpowermode";

Json readPower(const ToolContext& context) {
    const Json state = context.mac.state().read(kPowerSubject);
    return state.is_null() ? Json{{"sources", Json::object()}, {"activeSource", "AC Power"}} : state;
}

QString printed(const Json& value) {
    return value.is_string() ? QString::fromStdString(value.get<std::string>()) : QString::number(value.get<int>());
}

QStringList names(const Json& state, const char* key) {
    QStringList list;
    for (const Json& name : state.value(key, Json::array())) {
        list.append(QString::fromStdString(name.get<std::string>()));
    }
    return list;
}

/// Low and high power mode are one setting; its name tells whether the present source offers the high one.
QString printedKey(const Json& state, const QString& key) {
    const QString active = QString::fromStdString(state.at("activeSource").get<std::string>());
    const bool offersHighPower = names(state, "highPowerModeSources").contains(active);
    return key == QLatin1StringView(kLowPowerMode) && offersHighPower ? u"powermode"_s : key;
}

QString settingLine(const Json& state, const QString& key, const Json& value) {
    return u' ' + printedKey(state, key).leftJustified(20) + u' ' + printed(value);
}

void printCustom(ToolContext& context, const Json& state) {
    for (const auto& [source, settings] : state.at("sources").items()) {
        context.print(QString::fromStdString(source) + u":\n"_s);
        for (const auto& [key, value] : settings.items()) {
            context.print(settingLine(state, QString::fromStdString(key), value) + u'\n');
        }
    }
}

QString preventedSuffix(const Json& state, const std::string& key) {
    const bool isSleep = key == "sleep";
    if (!isSleep && key != "displaysleep") {
        return {};
    }
    const QStringList holders = names(state, isSleep ? "sleepPreventedBy" : "displaySleepPreventedBy");
    const QString what = isSleep ? u" (sleep"_s : u" (display sleep"_s;
    return holders.isEmpty() ? QString() : what + u" prevented by "_s + holders.join(u", "_s) + u')';
}

void printSystemSetting(ToolContext& context, const Json& state, const char* key, const QString& name) {
    const Json value = state.value(key, Json());
    if (!value.is_null()) {
        context.print(u' ' + name + u"\t\t"_s + QString::number(value.get<int>()) + u'\n');
    }
}

void printLive(ToolContext& context, const Json& state) {
    context.print(u"System-wide power settings:\n"_s);
    printSystemSetting(context, state, "sleepDisabled", u"SleepDisabled"_s);
    printSystemSetting(context, state, "destroyFVKeyOnStandby", u"DestroyFVKeyOnStandby"_s);
    context.print(u"Currently in use:\n"_s);
    const Json settings = state.at("sources").value(state.at("activeSource").get<std::string>(), Json::object());
    for (const auto& [key, value] : settings.items()) {
        context.print(settingLine(state, QString::fromStdString(key), value) + preventedSuffix(state, key) + u'\n');
    }
}

int refuseArguments(ToolContext& context) {
    context.print(u"Usage: pmset <options>\nSee pmset(1) for details: 'man pmset'\n"_s);
    return 1;
}

/// Getters that a Mac has beyond the two that are simulated.
bool isGetter(const QString& word) {
    static const QStringList kGetters{u"cap"_s,           u"sched"_s,       u"ups"_s,
                                      u"profiles"_s,      u"ac"_s,          u"adapter"_s,
                                      u"batt"_s,          u"ps"_s,          u"pslog"_s,
                                      u"rawlog"_s,        u"rawbatt"_s,     u"therm"_s,
                                      u"thermlog"_s,      u"log"_s,         u"assertions"_s,
                                      u"assertionslog"_s, u"sysload"_s,     u"sysloadlog"_s,
                                      u"uuid"_s,          u"uuidlog"_s,     u"history"_s,
                                      u"stats"_s,         u"systemstate"_s, u"powerstate"_s,
                                      u"activity"_s,      u"getters"_s,     u"historydetailed"_s,
                                      u"everything"_s,    u"hidnull"_s,     u"userclients"_s};
    return kGetters.contains(word);
}

int show(ToolContext& context, const QString& what) {
    const Json state = readPower(context);
    if (what.isEmpty() || what == u"live"_s) {
        printLive(context, state);
    } else if (what == u"custom"_s || what == u"disk"_s) {
        printCustom(context, state);
    } else {
        return isGetter(what) ? notSimulated(context, u"-g "_s + what) : refuseArguments(context);
    }
    return 0;
}

/// A setting that the source hasn't got is one that the machine doesn't support: it is dropped without a
/// word.
void apply(const PowerChanges::Setting& setting, Json& sources) {
    for (const QString& source : setting.sources) {
        const auto settings = sources.find(source.toStdString());
        if (settings == sources.end() || !settings->contains(setting.key.toStdString())) {
            continue;
        }
        Json& value = (*settings)[setting.key.toStdString()];
        if (const int* number = std::get_if<int>(&setting.value)) {
            value = *number;
        } else {
            value = std::get<QString>(setting.value).toStdString();
        }
    }
}

/// Whether a line means a source that this machine has. On one that has none of them nothing is written, and so nothing
/// is looked at either.
bool meansASource(const PowerChanges& changes, const Json& sources) {
    for (const PowerChanges::Setting& setting : changes.settings) {
        const auto isThere = [&sources](const QString& source) { return sources.contains(source.toStdString()); };
        if (std::any_of(setting.sources.begin(), setting.sources.end(), isThere)) {
            return true;
        }
    }
    return false;
}

void write(const ToolContext& context, const PowerChanges& changes) {
    context.mac.state().update(kPowerSubject, [&changes](Json& state) {
        for (const PowerChanges::Setting& setting : changes.settings) {
            apply(setting, state["sources"]);
        }
        if (changes.sleepDisabled >= 0) {
            state["sleepDisabled"] = changes.sleepDisabled;
        }
        if (changes.destroyFVKeyOnStandby >= 0) {
            state["destroyFVKeyOnStandby"] = changes.destroyFVKeyOnStandby;
        }
    });
}

/// Warns of timers that contradict each other, for each source, whatever the line has changed.
void warnOfInconsistentTimers(ToolContext& context) {
    const Json state = readPower(context);
    for (const auto& [source, settings] : state.at("sources").items()) {
        const int sleep = settings.value("sleep", 0);
        const int displaySleep = settings.value("displaysleep", 1);
        const bool displayIsLate = sleep > 1 && (displaySleep == 0 || displaySleep > sleep);
        const bool diskNeverSleeps = sleep != 0 && settings.value("disksleep", 1) == 0;
        if (!displayIsLate && !diskNeverSleeps) {
            continue;
        }
        context.complain(u"Warning: Idle sleep timings for \""_s + QString::fromStdString(source) +
                         u"\" may not behave as expected.\n"_s);
        if (displayIsLate) {
            context.complain(u"- Display sleep should have a lower timeout than system sleep.\n"_s);
        }
        if (diskNeverSleeps) {
            context.complain(u"- Disk sleep should be non-zero whenever system sleep is non-zero.\n"_s);
        }
    }
}

/// A refused setting ends with status 1; a refused switch of the whole system says the same and ends with 0.
int refuseUser(ToolContext& context, const PowerChanges& changes) {
    context.print(u'\'' + context.arguments.first() + u"' must be run as root...\n"_s);
    return changes.settings.empty() ? 0 : 1;
}

int change(ToolContext& context, const PowerChanges& changes) {
    if (changes.failure == PowerChanges::Failure::NotSimulated) {
        return notSimulated(context, changes.failedAt);
    }
    if (changes.failure == PowerChanges::Failure::Usage) {
        return refuseArguments(context);
    }
    if (changes.warnsOfKeepAlive) {
        context.print(u"Warning: This option disables TCP Keep Alive mechanism when sytem is sleeping. This "
                      u"will result "
                      u"in some critical features like 'Find My Mac' not to function properly.\n"_s);
    }
    if (changes.settings.empty() && !changes.changesSystem()) {
        return 0;
    }
    if (!context.isRoot()) {
        return refuseUser(context, changes);
    }
    write(context, changes);
    if (meansASource(changes, readPower(context).at("sources"))) {
        warnOfInconsistentTimers(context);
    }
    return 0;
}

} // namespace

int runPmset(ToolContext& context) {
    const QStringList words = context.arguments.mid(1);
    if (words.isEmpty()) {
        return refuseArguments(context);
    }
    if (words.first().toLower() == u"-g"_s) {
        return words.size() > 2 ? notSimulated(context, words.mid(2).join(u' '))
                                : show(context, words.value(1).toLower());
    }
    return change(context, parsePowerChanges(words));
}

} // namespace macsim
