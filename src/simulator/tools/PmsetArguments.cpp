#include "simulator/tools/PmsetArguments.h"

#include <QHash>

#include <cstdlib>
#include <optional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

enum class Kind { Number, OnOff, Text };

struct SettingRule {
    QStringList keys; ///< the settings that the word writes
    Kind kind;
};

const QHash<QString, SettingRule>& settingRules() {
    static const QHash<QString, SettingRule> kRules{
        {u"displaysleep"_s, {{u"displaysleep"_s}, Kind::Number}},
        {u"dim"_s, {{u"displaysleep"_s}, Kind::Number}},
        {u"sleep"_s, {{u"sleep"_s}, Kind::Number}},
        {u"disksleep"_s, {{u"disksleep"_s}, Kind::Number}},
        {u"spindown"_s, {{u"disksleep"_s}, Kind::Number}},
        {u"hibernatemode"_s, {{u"hibernatemode"_s}, Kind::Number}},
        {u"hibernatefile"_s, {{u"hibernatefile"_s}, Kind::Text}},
        {u"standby"_s, {{u"standby"_s}, Kind::OnOff}},
        // The single delay of older systems stands for the two that replaced it.
        {u"standbydelay"_s, {{u"standbydelaylow"_s, u"standbydelayhigh"_s}, Kind::Number}},
        {u"standbydelaylow"_s, {{u"standbydelaylow"_s}, Kind::Number}},
        {u"standbydelayhigh"_s, {{u"standbydelayhigh"_s}, Kind::Number}},
        {u"highstandbythreshold"_s, {{u"highstandbythreshold"_s}, Kind::Number}},
        {u"autopoweroff"_s, {{u"autopoweroff"_s}, Kind::OnOff}},
        {u"autopoweroffdelay"_s, {{u"autopoweroffdelay"_s}, Kind::Number}},
        {u"powernap"_s, {{u"powernap"_s, u"SleepServices"_s}, Kind::OnOff}},
        {u"darkwakes"_s, {{u"darkwakes"_s}, Kind::OnOff}},
        {u"gpuswitch"_s, {{u"gpuswitch"_s}, Kind::Number}},
        {u"womp"_s, {{u"womp"_s}, Kind::OnOff}},
        {u"ring"_s, {{u"ring"_s}, Kind::OnOff}},
        {u"networkoversleep"_s, {{u"networkoversleep"_s}, Kind::OnOff}},
        {u"tcpkeepalive"_s, {{u"tcpkeepalive"_s}, Kind::OnOff}},
        {u"ttyskeepawake"_s, {{u"ttyskeepawake"_s}, Kind::OnOff}},
        {u"lidwake"_s, {{u"lidwake"_s}, Kind::OnOff}},
        {u"acwake"_s, {{u"acwake"_s}, Kind::OnOff}},
        {u"proximitywake"_s, {{u"proximitywake"_s}, Kind::OnOff}},
        {u"halfdim"_s, {{u"halfdim"_s}, Kind::OnOff}},
        {u"lessbright"_s, {{u"lessbright"_s}, Kind::OnOff}},
        {u"sms"_s, {{u"sms"_s}, Kind::OnOff}},
        {u"ams"_s, {{u"sms"_s}, Kind::OnOff}},
        {u"autorestart"_s, {{u"autorestart"_s}, Kind::OnOff}},
        {u"autorestartatconnect"_s, {{u"autorestartatconnect"_s}, Kind::OnOff}},
        {u"powerbutton"_s, {{u"Sleep On Power Button"_s}, Kind::OnOff}},
        {u"lowpowermode"_s, {{u"lowpowermode"_s}, Kind::OnOff}},
        {u"powermode"_s, {{u"lowpowermode"_s}, Kind::Number}},
    };
    return kRules;
}

/// Words that a Mac's pmset knows and that have no meaning here.
bool isBeyondTheSimulation(const QString& word) {
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
std::optional<int> parseValue(const QString& word, Kind kind) {
    const QByteArray text = word.toUtf8();
    char* end = nullptr;
    const long value = std::strtol(text.constData(), &end, 0);
    if (*end != '\0' || value < 0) {
        return std::nullopt;
    }
    return kind == Kind::OnOff ? int(value != 0) : static_cast<int>(value);
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
        fail(isBeyondTheSimulation(word) ? PowerChanges::Failure::NotSimulated : PowerChanges::Failure::Usage, word);
    }
}

void Reader::readSystemSetting(int& setting) {
    const auto value = m_words.isEmpty() ? std::nullopt : parseValue(m_words.takeFirst(), Kind::OnOff);
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
    if (rule.kind != Kind::Text && !number) {
        fail(PowerChanges::Failure::Usage, word);
        return;
    }
    for (const QString& key : rule.keys) {
        if (rule.kind == Kind::Text) {
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
