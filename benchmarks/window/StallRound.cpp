// One round: the program with 1,000 saved profiles is started, used, and ended. Prints a line for each thing that is done in
// it, with the longest stall of the event loop meanwhile.

#include "FirstPaint.h"
#include "Heartbeat.h"
#include "User.h"
#include "actions/PageTexts.h"
#include "app/QuorvaneApp.h"
#include "app/simulated/MacOfUser.h"
#include "platform/simulated/SimulatedMachine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"
#include "simulator/Mac.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QListView>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kProfiles = 1000;
constexpr int kWrites = 21;
const QString kPicked = u"Live Set"_s;

UnifiedProfile numbered(int number) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Profile %1"_s.arg(number, 4, 10, QChar(u'0'));
    profile.dateCreated = QDateTime::currentDateTimeUtc();
    profile.settings.appNap = true;
    profile.settings.updates = number % 3 == 0;
    profile.settings.cleanReboot = number % 5 == 0;
    profile.startup.disableNetworkAtStartup = number % 4 == 0;
    return profile;
}

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    }
}

/// Of a user who has a master baseline already, so that none is offered.
void prepareMac(const QString& dataFolder) {
    const QString place = macOfUser(dataFolder, QCoreApplication::applicationDirPath() + u"/macsim"_s);
    const macsim::Mac mac(place);
    const SimulatedMachine machine(mac);
    for (int number = 0; number < kProfiles; ++number) {
        const UnifiedProfile profile = numbered(number);
        write(place + profilesDirectory(machine) + u'/' + profile.name + u".json"_s, encodeProfile(profile));
    }
    const QString baselines = place + machine.homeFolder() + u"/.quorvane"_s;
    QDir().mkpath(baselines);
    write(baselines + u"/master-baseline-current.json"_s, "{}");
}

/// What a program that keeps a file safely can't be quicker than: written, on the disk, renamed.
double millisecondsOfWrite(const QString& folder) {
    std::vector<double> times;
    for (int number = 0; number < kWrites; ++number) {
        const auto start = Heartbeat::Clock::now();
        const QByteArray beside = folder.toUtf8() + "/beside";
        std::FILE* const file = std::fopen(beside.constData(), "w");
        std::fputs("{\"bare\": true}\n", file);
        std::fflush(file);
        ::fsync(::fileno(file));
        std::fclose(file);
        std::rename(beside.constData(), (folder.toUtf8() + "/bare").constData());
        times.push_back(std::chrono::duration<double, std::milli>(Heartbeat::Clock::now() - start).count());
    }
    std::nth_element(times.begin(), times.begin() + kWrites / 2, times.end());
    return times[kWrites / 2];
}

void print(const char* what, const Heartbeat::Stall& stall) {
    std::printf("%s\t%.2f\t%.2f\t%s\n", what, stall.milliseconds, stall.worked, stall.during.constData());
    std::fflush(stdout);
}

bool isScanning() {
    return user::isSeen(u"Verifying system settings…"_s);
}

bool areRows(int count) {
    const QListView* const list = user::profileList();
    return list != nullptr && list->model()->rowCount() == count;
}

void listAll(int rows) {
    user::waitUntil(u"all profiles are listed"_s, [rows] { return areRows(rows); });
    user::waitUntil(u"the scan ends"_s, [] { return !isScanning(); });
}

void removeOne(int rows) {
    QListView* const list = user::profileList();
    list->setFocus();
    list->setCurrentIndex(list->model()->index(kProfiles / 2, 0));
    QApplication::postEvent(list, new QKeyEvent(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier));
    user::click(u"Delete"_s);
    user::waitUntil(u"one is gone"_s, [rows] { return areRows(rows - 1); });
    user::click(u"OK"_s);
}

void apply() {
    user::clickProfile(kPicked);
    user::click(u"Apply Profile"_s);
    user::type(u"Password"_s, u"downbeat"_s);
    user::click(u"OK"_s);
    user::waitUntilSeen(u"Restart Required"_s);
    user::click(u"OK"_s);
    user::click(u"Done"_s);
    user::waitUntilSeen(u"Profile: "_s + kPicked);
    user::waitUntil(u"the scan ends"_s, [] { return !isScanning(); });
}

void scan() {
    user::click(verifySystemRow().title);
    user::waitUntilSeen(u"OK"_s);
    user::click(u"OK"_s);
    user::waitUntil(u"the scan ends"_s, [] { return !isScanning(); });
}

/// From the first picture on: the heartbeat has begun.
void use(Heartbeat& heartbeat) {
    const int rows = kProfiles + 6; // the examples, and Default
    listAll(rows);
    print("listing", heartbeat.end());
    const auto measured = [&heartbeat](const char* what, const std::function<void()>& act) {
        heartbeat.begin();
        act();
        print(what, heartbeat.end());
    };
    measured("scrolling", [] { user::scrollAlong(user::profileList()); });
    measured("a change of one", [rows] { removeOne(rows); });
    measured("applying", apply);
    measured("scanning", scan);
    std::raise(SIGTERM);
}

int run(int& argumentCount, char** arguments) {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", (home.path() + u"/data"_s).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + u"/config"_s).toUtf8());
    QuorvaneApp application(argumentCount, arguments);
    const QString dataFolder = home.path() + u"/data/Quorvane"_s;
    prepareMac(dataFolder);
    std::printf("bare write\t%.2f\t0\t\n", millisecondsOfWrite(dataFolder));
    Heartbeat heartbeat;
    const FirstPaint firstPaint([&heartbeat] {
        heartbeat.begin();
        QMetaObject::invokeMethod(
            &heartbeat, [&heartbeat] { use(heartbeat); }, Qt::QueuedConnection);
    });
    return application.run();
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    return quorvane::run(argumentCount, arguments);
}
