// A round with 1,000 saved profiles.

#include "Heartbeat.h"
#include "Round.h"
#include "User.h"
#include "actions/PageTexts.h"
#include "profiles/ProfileJson.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>

#include <algorithm>
#include <cstdio>
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

void prepare(const RoundMac& mac) {
    for (int number = 0; number < kProfiles; ++number) {
        const UnifiedProfile profile = numbered(number);
        writeFile(mac.profilesFolder() + u'/' + profile.name + u".json"_s, encodeProfile(profile));
    }
    std::printf("bare write\t%.2f\t0\t\n", millisecondsOfWrite(mac.placeOf(mac.homeFolder())));
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

void use(Heartbeat& heartbeat) {
    const int rows = kProfiles + 6; // the examples, and Default
    listAll(rows);
    printStall(heartbeat, "listing");
    measure(heartbeat, "scrolling", [] { user::scrollAlong(user::profileList()); });
    measure(heartbeat, "a change of one", [rows] { removeOne(rows); });
    measure(heartbeat, "applying", apply);
    measure(heartbeat, "scanning", scan);
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    return quorvane::runRound(argumentCount, arguments, {quorvane::prepare, quorvane::use});
}
