#include "app/simulated/MacOfUser.h"

#include "platform/simulated/SimulatedFileManager.h"
#include "platform/simulated/SimulatedMachine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"
#include "simulator/Mac.h"
#include "simulator/MacDescription.h"
#include "simulator/tools/Registry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::runtime_error problem(const QString& text) {
    return std::runtime_error(text.toStdString());
}

bool standsThere(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

macsim::Mac openedMac(const QString& folder) {
    try {
        return macsim::Mac(folder);
    } catch (const macsim::Json::exception&) {
        throw problem(u"machine.json is damaged"_s);
    }
}

/// Throws std::exception.
void requireUsable(const QString& macFolder) {
    const macsim::Mac mac = openedMac(macFolder);
    const QStringList subjects =
        QDir(macFolder + macsim::kStateFolder.toString()).entryList({u"*.json"_s}, QDir::Files);
    for (const QString& file : subjects) {
        try {
            mac.state().read(file.chopped(5).toLatin1().constData());
        } catch (const std::exception&) {
            throw problem(file + u" is damaged"_s);
        }
    }
    if (!mac.volume(macsim::Actor::User).isFolder(mac.homeFolder(macsim::Actor::User))) {
        throw problem(u"its user has no home folder"_s);
    }
}

void removeLeftover(const QString& folder) {
    if (standsThere(folder) && !QDir(folder).removeRecursively()) {
        throw problem(
            u"“%1” was left by a start that came to no end, and can’t be removed. Remove it, and start again."_s.arg(
                folder));
    }
}

void saveExampleProfiles(const macsim::Mac& mac) {
    SimulatedFileManager files(mac.volume(macsim::Actor::User));
    ProfileManager store(files, profilesDirectory(SimulatedMachine(mac)));
    for (const QFileInfo& example : QDir(u":/profiles"_s).entryInfoList()) {
        QFile file(example.filePath());
        if (!file.open(QIODevice::ReadOnly)) {
            throw problem(example.filePath() + u": "_s + file.errorString());
        }
        store.saveProfile(decodeProfile(file.readAll()));
    }
}

/// Throws std::exception.
void make(const QString& folder, const QString& macsimProgram) {
    macsim::createMac(folder, macsim::macDescriptionFromFile(u":/macs/dj-laptop.json"_s),
                      macsim::simulatorTools().keys(), macsimProgram);
    saveExampleProfiles(macsim::Mac(folder));
}

void makeBesideAndPut(const QString& place, const QString& macsimProgram) {
    const QString beside = place + u".new"_s;
    removeLeftover(beside);
    try {
        make(beside, macsimProgram);
        if (!QDir().rename(beside, place)) {
            throw problem(u"“%1” can’t be renamed to it"_s.arg(beside));
        }
    } catch (const std::exception& error) {
        QDir(beside).removeRecursively();
        throw problem(
            u"The simulated Mac “%1” can’t be made: %2. See that its folder can be written and the disk has room, "
            "and start again."_s.arg(place, QString::fromUtf8(error.what())));
    }
}

} // namespace

QString macOfUser(const QString& dataFolder, const QString& macsimProgram) {
    const QString place = QDir(dataFolder).absoluteFilePath(u"Mac"_s);
    if (!standsThere(place)) {
        makeBesideAndPut(place, macsimProgram);
        return place;
    }
    try {
        requireUsable(place);
    } catch (const std::exception& error) {
        throw problem(
            u"The simulated Mac “%1” can’t be used: %2. It is left as it is. Move it away or remove it, and start "
            "again: a new one is made then."_s.arg(place, QString::fromUtf8(error.what())));
    }
    return place;
}

} // namespace quorvane
