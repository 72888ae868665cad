// A round with 5,000 items that run at login, on the page that edits them.

#include "Heartbeat.h"
#include "Round.h"
#include "User.h"
#include "actions/PageTexts.h"
#include "actions/StartupTexts.h"

#include <QDir>
#include <QListView>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kItems = 5000;
const QString kSwitched = u"Example Helper2500"_s;
const QString kService = u"Dropbox"_s;
const QString kSuggestion = u"Serato DJ Pro"_s;

void prepare(const RoundMac& mac) {
    const QString agents = mac.placeOf(mac.homeFolder() + u"/Library/LaunchAgents"_s);
    QDir().mkpath(agents);
    for (int number = 0; number < kItems; ++number) {
        const QString label = u"com.example.helper%1"_s.arg(number, 4, 10, QChar(u'0'));
        writeFile(agents + u'/' + label + u".plist"_s,
                  "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Label</key><string>" + label.toUtf8() +
                      "</string></dict></plist>");
    }
}

QListView* items() {
    return user::listNamed(kStartupItemsTitle);
}

void waitUntilRows(const QString& what, const std::function<bool(int count)>& isSo) {
    user::waitUntil(what, [&isSo] { return items() != nullptr && isSo(items()->model()->rowCount()); });
}

/// Of several of that name the last one.
QModelIndex rowOf(const QString& name) {
    const QAbstractItemModel& model = *items()->model();
    return model.match(model.index(0, 0), Qt::DisplayRole, name, -1, Qt::MatchExactly).last();
}

void openPage() {
    user::click(startupOptimizationRow().title);
    waitUntilRows(u"all items are listed"_s, [](int count) { return count > kItems; });
    user::waitUntil(u"nobody looks any more"_s, [] { return user::isUsable(kRefresh); });
}

void typeOneKey() {
    user::type(kSearchStartupItems, u"7"_s);
    waitUntilRows(u"some items are listed"_s, [](int count) { return count < kItems / 2; });
}

void takeItBack() {
    user::press(kSearchStartupItems, Qt::Key_Backspace);
    waitUntilRows(u"all items are listed again"_s, [](int count) { return count > kItems; });
}

/// What is switched goes to its other state, what is added goes. The row is looked for beforehand, which takes its time.
void measureClick(Heartbeat& heartbeat, const char* what, const QString& name) {
    const QPersistentModelIndex row = rowOf(name);
    const QVariant before = row.data(Qt::CheckStateRole);
    measure(heartbeat, what, [&row, &before] {
        user::clickRow(items(), row);
        user::waitUntil(u"the row has changed"_s,
                        [&row, &before] { return !row.isValid() || row.data(Qt::CheckStateRole) != before; });
    });
}

void clearSelection() {
    const QPersistentModelIndex network = rowOf(networkRow().title);
    user::click(kClearSelection);
    user::click(u"Clear"_s);
    user::waitUntil(u"all is as it was"_s, [&network] { return network.data(Qt::CheckStateRole) == Qt::Unchecked; });
}

void refresh() {
    user::click(kRefresh);
    user::waitUntil(u"it is looked for anew"_s, [] { return !user::isUsable(kRefresh); });
    user::waitUntil(u"all is found"_s, [] { return user::isUsable(kRefresh); });
}

void use(Heartbeat& heartbeat) {
    user::waitUntil(u"the scan ends"_s, [] { return !user::isSeen(u"Verifying system settings…"_s); });
    heartbeat.end();
    measure(heartbeat, "opening the page", openPage);
    measure(heartbeat, "one key in its search", typeOneKey);
    measure(heartbeat, "and back", takeItBack);
    measureClick(heartbeat, "one switch", kSwitched);
    measureClick(heartbeat, "a service", kService);
    measureClick(heartbeat, "the network", networkRow().title);
    measureClick(heartbeat, "an application is added", kSuggestion);
    measure(heartbeat, "all is cleared", clearSelection);
    measure(heartbeat, "all is looked for anew", refresh);
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    return quorvane::runRound(argumentCount, arguments, {quorvane::prepare, quorvane::use});
}
