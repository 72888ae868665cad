#include "startup/items/CleanReboot.h"

#include "core/Collation.h"
#include "startup/items/LoginItem.h"

namespace quorvane {

namespace {

QList<StartupLaunchItem> addedApplications(const CleanReboot& cleanReboot) {
    return cleanReboot.startup ? cleanReboot.startup->startupLaunchItems() : QList<StartupLaunchItem>();
}

} // namespace

QSet<QString> allPermittedNames(const CleanReboot& cleanReboot) {
    QSet<QString> names = cleanReboot.permittedNames;
    for (const StartupLaunchItem& application : addedApplications(cleanReboot)) {
        names.insert(application.name);
    }
    return names;
}

DividedLoginItems dividedLoginItems(const QList<LoginItem>& items, const CleanReboot& cleanReboot) {
    const QSet<QString> names = allPermittedNames(cleanReboot);
    QSet<QString> paths;
    for (const StartupLaunchItem& application : addedApplications(cleanReboot)) {
        paths.insert(application.path);
    }
    DividedLoginItems divided;
    for (const LoginItem& item : items) {
        const bool stays = isProtectedLoginItem(item) || names.contains(item.name) || paths.contains(item.path);
        (stays ? divided.staying : divided.going).append(item);
    }
    sortLocalized(divided.going, &LoginItem::name);
    return divided;
}

} // namespace quorvane
