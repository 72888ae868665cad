#include "snapshots/RestoreCommands.h"

#include "core/AdminScript.h"
#include "core/Quoting.h"
#include "snapshots/OwnSettings.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/ValueTests.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool isInteger(const QString& value) {
    static const QRegularExpression form(u"\\A[+-]?[0-9]+\\z"_s);
    bool fits = false;
    value.toLongLong(&fits);
    return fits && form.match(value).hasMatch();
}

/// The type's option and the value, where only the text is known.
QStringList argumentsByText(const QString& value, bool isPerHost) {
    const QString lowered = value.toLower();
    if (lowered == u"true" || lowered == u"yes" || lowered == u"1") {
        return {u"-bool"_s, u"YES"_s};
    }
    if (lowered == u"false" || lowered == u"no" || lowered == u"0") {
        return {u"-bool"_s, u"NO"_s};
    }
    if (!isPerHost && isInteger(value)) {
        return {u"-int"_s, value};
    }
    return {u"-string"_s, value};
}

/// The option keeps a fraction in single precision.
bool doesOptionKeep(const TypedValue& fraction) {
    static const QRegularExpression form(u"\\A-?[0-9]+(\\.[0-9]+)?\\z"_s);
    const double number = fraction.text().toDouble();
    return form.match(fraction.text()).hasMatch() && static_cast<double>(static_cast<float>(number)) == number;
}

/// What root writes for a user's file to say is a word and no more: a switch of the system's is nothing else.
bool isForRoot(const TypedValue& value) {
    constexpr qsizetype kLongestText = 256;
    switch (value.type()) {
    case TypedValue::Type::Boolean:
    case TypedValue::Type::Integer:
    case TypedValue::Type::Real:
        return true;
    case TypedValue::Type::String:
        return value.text().size() <= kLongestText;
    default:
        return false;
    }
}

/// " standby 1 disksleep 10 sleep 1": of the three settings those that were captured; empty when none was.
QString sleepSettings(const std::optional<QString>& standby, const std::optional<QString>& disksleep,
                      const std::optional<QString>& sleep) {
    QString settings;
    const auto add = [&settings](QStringView name, const std::optional<QString>& value) {
        if (value) {
            settings += u' ' + name.toString() + u' ' + shellWord(*value);
        }
    };
    add(u"standby", standby);
    add(u"disksleep", disksleep);
    add(u"sleep", sleep);
    return settings;
}

/// "mdutil -i off '/Volumes/Samples'"
QString indexingCommand(const IndexedVolume& volume) {
    const QString path = shellQuoted(volume.path);
    if (volume.indexing == Indexing::SearchOff) {
        return u"mdutil -d "_s + path;
    }
    return (volume.indexing == Indexing::On ? u"mdutil -i on "_s : u"mdutil -i off "_s) + path;
}

/// As `pmset` takes it; empty for a source that it can't be told of.
QString optionOf(const QString& source) {
    static const QMap<QString, QString> options{
        {u"Battery Power"_s, u"-b"_s}, {u"AC Power"_s, u"-c"_s}, {u"UPS Power"_s, u"-u"_s}};
    return options.value(source);
}

/// In the order of the sources' names.
template <typename Settings>
QStringList commandsBySource(const QMap<QString, PowerSettings>& sources, Settings settingsOf) {
    QStringList commands;
    for (auto source = sources.begin(); source != sources.end(); ++source) {
        const QString settings = settingsOf(*source);
        const QString option = optionOf(source.key());
        if (!settings.isEmpty() && !option.isEmpty()) {
            commands.append(u"pmset "_s + option + settings);
        }
    }
    return commands;
}

template <typename Settings>
bool isTheSameOnAll(const QMap<QString, PowerSettings>& sources, Settings settingsOf) {
    return std::all_of(sources.begin(), sources.end(), [&](const PowerSettings& settings) {
        return settingsOf(settings) == settingsOf(sources.first());
    });
}

QString sleepOf(const PowerSettings& settings) {
    return sleepSettings(settings.standby, settings.disksleep, settings.sleep);
}

QString motionSensorOf(const PowerSettings& settings) {
    return settings.sms ? u" sms "_s + shellWord(*settings.sms) : QString();
}

/// As a line of root's: what the user's file holds is a word of the shell.
QString systemPreferenceCommandBack(const MacPreference& preference, const std::optional<QString>& value,
                                    std::optional<TypedValue> typed) {
    if (typed && !isForRoot(*typed)) {
        typed.reset();
    }
    if (!value || (value->isEmpty() && !typed)) {
        return systemPreferenceCommand(preference, std::nullopt);
    }
    QStringList command = writeDefaultValueCommand(preference, value, {}, typed);
    command.last() = shellWord(command.last());
    return withoutStatus(command.join(u' '));
}

/// By the type as well where it was captured: nobody knows yet which one the value has now, and the program writes switches.
bool isSystemPreferenceBack(const Reading<QString>& now, const CapturedValue& captured,
                            const std::optional<TypedValue>& typed) {
    const bool isOtherType = typed && isForRoot(*typed) && typed->type() != TypedValue::Type::Boolean;
    return now.isAnswered && !isOtherType && meansTheSame(now.value, captured.value);
}

} // namespace

QStringList writeDefaultValueCommand(const MacPreference& preference, const std::optional<QString>& value,
                                     const QString& notificationCenter, const std::optional<TypedValue>& typed) {
    if (!value || (value->isEmpty() && !typed)) {
        return defaultsCommand(u"delete"_s, preference, notificationCenter);
    }
    return defaultsCommand(u"write"_s, preference, notificationCenter) +
           (typed ? typedArguments(*typed) : argumentsByText(*value, preference.isNotificationCenters()));
}

QStringList typedArguments(const TypedValue& value) {
    switch (value.type()) {
    case TypedValue::Type::Boolean:
        return {u"-bool"_s, value.text() == u"true" ? u"YES"_s : u"NO"_s};
    case TypedValue::Type::Integer:
        return isInteger(value.text()) ? QStringList{u"-int"_s, value.text()} : QStringList(value.xml());
    case TypedValue::Type::Real:
        return doesOptionKeep(value) ? QStringList{u"-float"_s, value.text()} : QStringList(value.xml());
    case TypedValue::Type::String:
        return {u"-string"_s, value.text()};
    case TypedValue::Type::Date:
        return {u"-date"_s, *value.printed()};
    case TypedValue::Type::Data:
        if (!value.text().isEmpty()) {
            return {u"-data"_s, QString::fromLatin1(QByteArray::fromBase64(value.text().toLatin1()).toHex())};
        }
        break;
    case TypedValue::Type::Array:
    case TypedValue::Type::Dictionary:
        break;
    }
    return {value.xml()};
}

TweakStep restoreStep(const PreferenceGroup& group, const SystemSnapshot& snapshot, const CurrentSettings& current,
                      const QString& notificationCenter) {
    if (current.isManaged(group.tweak)) {
        return {{}, managedLine(tweakOf(group.tweak).name)};
    }
    TweakStep step{{}, u"  [RESTORED] %1 settings."_s.arg(group.captured)};
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        if (preference.tweak != group.tweak || preference.isSystems() || !current.isChangeable(preference)) {
            continue;
        }
        if (const std::optional<CapturedValue> captured = preference.in(snapshot)) {
            step.commands.append(writeDefaultValueCommand(preference, captured->value, notificationCenter,
                                                          preference.typedIn(snapshot)));
        } else if (!isStandard(preference, current.of(preference).reading.value)) {
            step.commands.append(writeDefaultValueCommand(preference, std::nullopt, notificationCenter));
        }
    }
    step.commands += commandsBehindPreferences(group, TweakState::Standard);
    return step;
}

QList<TweakStep> restoreSteps(const SystemSnapshot& snapshot, const CurrentSettings& current,
                              const QString& notificationCenter) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : preferenceGroups()) {
        steps.append(restoreStep(group, snapshot, current, notificationCenter));
    }
    return steps;
}

QStringList restoreSystemCommands(const SystemSnapshot& snapshot, const CurrentSettings& current) {
    QStringList commands = sleepCommandsBack(snapshot) + motionSensorCommandsBack(snapshot);
    commands += indexingCommandsBack(snapshot, current.indexing.value.value_or(QList<IndexedVolume>()));
    if (snapshot.timeMachineEnabled) {
        commands.append(timeMachineCommand(*snapshot.timeMachineEnabled));
    }
    return commands + systemPreferenceCommandsBack(snapshot, current);
}

QStringList sleepCommandsBack(const SystemSnapshot& snapshot) {
    if (snapshot.powerBySource && !isTheSameOnAll(*snapshot.powerBySource, sleepOf)) {
        return commandsBySource(*snapshot.powerBySource, sleepOf);
    }
    const QString settings = sleepSettings(snapshot.pmsetStandby, snapshot.pmsetDisksleep, snapshot.pmsetSleep);
    return settings.isEmpty() ? QStringList() : QStringList{u"pmset -a"_s + settings};
}

QStringList motionSensorCommandsBack(const SystemSnapshot& snapshot) {
    if (snapshot.powerBySource && !isTheSameOnAll(*snapshot.powerBySource, motionSensorOf)) {
        return commandsBySource(*snapshot.powerBySource, motionSensorOf);
    }
    return snapshot.pmsetSms ? QStringList{motionSensorCommand(shellWord(*snapshot.pmsetSms))} : QStringList();
}

QStringList indexingCommandsBack(const SystemSnapshot& snapshot, const QList<IndexedVolume>& now) {
    if (snapshot.spotlightByVolume && !now.isEmpty()) {
        QStringList commands;
        for (const IndexedVolume& volume : volumesToBringBack(*snapshot.spotlightByVolume, now)) {
            commands.append(indexingCommand(volume));
        }
        return commands;
    }
    return snapshot.spotlightIndexingEnabled ? QStringList{spotlightCommand(*snapshot.spotlightIndexingEnabled)}
                                             : QStringList();
}

QStringList systemPreferenceCommandsBack(const std::optional<SystemSnapshot>& snapshot,
                                         const CurrentSettings& current) {
    QStringList commands;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const Reading<QString>& now = current.of(preference).reading;
        if (!preference.isSystems() || !current.isChangeable(preference)) {
            continue;
        }
        const std::optional<CapturedValue> captured = snapshot ? preference.in(*snapshot) : std::nullopt;
        const std::optional<TypedValue> typed = snapshot ? preference.typedIn(*snapshot) : std::nullopt;
        if (captured && !isSystemPreferenceBack(now, *captured, typed)) {
            commands.append(systemPreferenceCommandBack(preference, captured->value, typed));
        } else if (!captured && !isStandard(preference, now.value)) {
            commands.append(systemPreferenceCommand(preference, std::nullopt));
        }
    }
    return commands;
}

} // namespace quorvane
