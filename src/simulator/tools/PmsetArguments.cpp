#include "simulator/tools/PmsetArguments.h"

#include <QHash>

#include <cstdlib>
#include <optional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

enum class ValueKind { Number, OnOff, Text };

struct SettingRule {
    QStringList keys; ///< the settings that the word writes
    ValueKind kind;
};

const QHash<QString, SettingRule>& settingRules() {
    static const QHash<QString, SettingRule> kRules{
        {u"displaysleep"_s, {{u"displaysleep"_s}, ValueKind::Number}},
        {u"dim"_s, {{u"displaysleep"_s}, ValueKind::Number}},
        {u"sleep"_s, {{u"sleep"_s}, ValueKind::Number}},
        {u"disksleep"_s, {{u"disksleep"_s}, ValueKind::Number}},
        {u"spindown"_s, {{u"disksleep"_s}, ValueKind::Number}},
        {u"hibernatemode"_s, {{u"hibernatemode"_s}, ValueKind::Number}},
        {u"hibernatefile"_s, {{u"hibernatefile"_s}, ValueKind::Text}},
        {u"standby"_s, {{u"standby"_s}, ValueKind::OnOff}},
        // The single delay of older systems stands for the two that replaced it.
        {u"standbydelay"_s, {{u"standbydelaylow"_s, u"standbydelayhigh"_s}, ValueKind::Number}},
        {u"standbydelaylow"_s, {{u"standbydelaylow"_s}, ValueKind::Number}},
        {u"standbydelayhigh"_s, {{u"standbydelayhigh"_s}, ValueKind::Number}},
        {u"highstandbythreshold"_s, {{u"highstandbythreshold"_s}, ValueKind::Number}},
        {u"autopoweroff"_s, {{u"autopoweroff"_s}, ValueKind::OnOff}},
        {u"autopoweroffdelay"_s, {{u"autopoweroffdelay"_s}, ValueKind::Number}},
        {u"powernap"_s, {{u"powernap"_s, u"SleepServices"_s}, ValueKind::OnOff}},
        {u"darkwakes"_s, {{u"darkwakes"_s}, ValueKind::OnOff}},
        {u"gpuswitch"_s, {{u"gpuswitch"_s}, ValueKind::Number}},
        {u"womp"_s, {{u"womp"_s}, ValueKind::OnOff}},
        {u"ring"_s, {{u"ring"_s}, ValueKind::OnOff}},
        {u"networkoversleep"_s, {{u"networkoversleep"_s}, ValueKind::OnOff}},
        {u"tcpkeepalive"_s, {{u"tcpkeepalive"_s}, ValueKind::OnOff}},
        {u"ttyskeepawake"_s, {{u"ttyskeepawake"_s}, ValueKind::OnOff}},
        {u"lidwake"_s, {{u"lidwake"_s}, ValueKind::OnOff}},
        {u"acwake"_s, {{u"acwake"_s}, ValueKind::OnOff}},
        {u"proximitywake"_s, {{u"proximitywake"_s}, ValueKind::OnOff}},
        {u"halfdim"_s, {{u"halfdim"_s}, ValueKind::OnOff}},
        {u"lessbright"_s, {{u"lessbright"_s}, ValueKind::OnOff}},
        {u"sms"_s, {{u"sms"_s}, ValueKind::OnOff}},
        {u"ams"_s, {{u"sms"_s}, ValueKind::OnOff}},
        {u"autorestart"_s, {{u"autorestart"_s}, ValueKind::OnOff}},
        {u"autorestartatconnect"_s, {{u"autorestartatconnect"_s}, ValueKind::OnOff}},
        {u"powerbutton"_s, {{u"Sleep On Power Button"_s}, ValueKind::OnOff}},
        {u"lowpowermode"_s, {{u"lowpowermode"_s}, ValueKind::OnOff}},
        {u"powermode"_s, {{u"lowpowermode"_s}, ValueKind::Number}},
    };
    return kRules;
}

/// Words that a Mac's pmset knows and that have no meaning here.
bool isUnsimulatedWord(const QString& word) {
    static const QStringList kWords{
        u"schedule"_s,         u"repeat"_s,     u"relative"_s,        u"sleepnow"_s,
        u"displaysleepnow"_s,  u"noidle"_s,     u"touch"_s,           u"boot"_s,
        u"unboot"_s,           u"force"_s,      u"restoredefaults"_s, u"lock"_s,
        u"haltlevel"_s,        u"haltafter"_s,  u"haltremain"_s,      u"rdap"_s,
        u"debugflags"_s,       u"btinterval"_s, u"mt2book"_s,         u"hibernatefreeratio"_s,
        u"hibernatefreetime"_s};
    return kWords.contains(word);
}

std::optional<QStringList> sourcesOfFlag(const QString& word) {
    const QString battery = u"Battery Power"_s;
    const QString adapter = u"AC Power"_s;
    const QString ups = u"UPS Power"_s;
    static const QHash<QString, QStringList> kFlags{
        {u"-a"_s, {battery, adapter, ups}}, {u"-b"_s, {battery}}, {u"-c"_s, {adapter}}, {u"-u"_s, {ups}}};
    const auto flag = kFlags.constFind(word);
    return flag == kFlags.constEnd() ? std::nullopt : std::optional(*flag);
}

/// A number as strtol reads it with base 0 ("0x10", "010"); nothing may follow it and it isn't negative.
std::optional<int> parseValue(const QString& word, ValueKind kind) {
    const QByteArray text = word.toUtf8();
    char* end = nullptr;
    const long value = std::strtol(text.constData(), &end, 0);
    if (*end != '\0' || value < 0) {
        return std::nullopt;
    }
    return kind == ValueKind::OnOff ? int(value != 0) : static_cast<int>(value);
}

class Reader {
public:
    explicit Reader(const QStringList& words)
        : m_words(words) {}

    PowerChanges read() {
        while (!m_words.isEmpty() && m_changes.failure == PowerChanges::Failure::None) {
            readNext();
        }
        return m_changes;
    }

private:
    void readNext();
    void readSystemSetting(int& setting);
    void readSetting(const QString& word, const SettingRule& rule);
    void fail(PowerChanges::Failure failure, const QString& at) {
        m_changes.failure = failure;
        m_changes.failedAt = at;
    }

    QStringList m_words;
    QStringList m_sources = *sourcesOfFlag(u"-a"_s);
    PowerChanges m_changes;
};

void Reader::readNext() {
    const QString word = m_words.takeFirst().toLower();
    if (const auto sources = sourcesOfFlag(word)) {
        m_sources = *sources;
    } else if (word == u"disablesleep"_s) {
        readSystemSetting(m_changes.sleepDisabled);
    } else if (word == u"destroyfvkeyonstandby"_s) {
        readSystemSetting(m_changes.destroyFVKeyOnStandby);
    } else if (settingRules().contains(word)) {
        readSetting(word, settingRules().value(word));
    } else {
        fail(isUnsimulatedWord(word) ? PowerChanges::Failure::NotSimulated : PowerChanges::Failure::Usage, word);
    }
}

void Reader::readSystemSetting(int& setting) {
    const auto value = m_words.isEmpty() ? std::nullopt : parseValue(m_words.takeFirst(), ValueKind::OnOff);
    if (!value) {
        fail(PowerChanges::Failure::Usage, {});
        return;
    }
    setting = *value;
}

void Reader::readSetting(const QString& word, const SettingRule& rule) {
    if (m_words.isEmpty()) {
        fail(PowerChanges::Failure::Usage, word);
        return;
    }
    const QString typed = m_words.takeFirst();
    const std::optional<int> number = parseValue(typed, rule.kind);
    if (rule.kind != ValueKind::Text && !number) {
        fail(PowerChanges::Failure::Usage, word);
        return;
    }
    for (const QString& key : rule.keys) {
        if (rule.kind == ValueKind::Text) {
            m_changes.settings.push_back({m_sources, key, typed});
        } else {
            m_changes.settings.push_back({m_sources, key, *number});
        }
    }
    m_changes.warnsOfKeepAlive = m_changes.warnsOfKeepAlive || (word == u"tcpkeepalive"_s && number == 0);
}

} // namespace

PowerChanges parsePowerChanges(const QStringList& words) {
    return Reader(words).read();
}

} // namespace macsim
