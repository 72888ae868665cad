#pragma once

#include <QString>
#include <QStringList>

#include <variant>
#include <vector>

namespace macsim {

/// What a line of pmset asks to change. All of the line is understood before anything is written.
struct PowerChanges {
    struct Setting {
        QStringList sources; ///< "Battery Power", "AC Power", "UPS Power"
        QString key;         ///< as it is printed: "displaysleep"
        std::variant<int, QString> value;
    };
    enum class Failure { None, Usage, NotSimulated };

    std::vector<Setting> settings;
    int sleepDisabled = -1;         ///< 0 or 1; -1 not asked for
    int destroyFVKeyOnStandby = -1; ///< 0 or 1; -1 not asked for
    bool warnsOfKeepAlive = false;  ///< TCP keep-alive is turned off
    Failure failure = Failure::None;
    QString failedAt; ///< the word that isn't simulated

    bool changesSystem() const { return sleepDisabled >= 0 || destroyFVKeyOnStandby >= 0; }
};

/// Reads the words behind the tool's name: "-a sleep 1 -b disksleep 10".
PowerChanges parsePowerChanges(const QStringList& words);

} // namespace macsim
