#include "startup/items/CleanReboot.h"

#include "core/Collation.h"
#include "startup/items/LoginItemTargets.h"

namespace quorvane {

QSet<QString> allPermittedNames(const CleanReboot& cleanReboot) {
    QSet<QString> names = cleanReboot.permittedNames;
    const StartupConfiguration startup = cleanReboot.startup.value_or(StartupConfiguration());
    for (const StartupLaunchItem& application : startup.startupLaunchItems()) {
        names.insert(application.name);
    }
    return names;
}

DividedLoginItems dividedLoginItems(const QList<LoginItem>& items, const CleanReboot& cleanReboot) {
    const QSet<QString> names = allPermittedNames(cleanReboot);
    const LoginItemTargets targets = loginItemTargets(cleanReboot.startup.value_or(StartupConfiguration()), {});
    DividedLoginItems divided;
    for (const LoginItem& item : items) {
        const bool stays = isProtectedLoginItem(item) || names.contains(item.name) || targets.keeps(item);
        (stays ? divided.staying : divided.going).append(item);
    }
    sortLocalized(divided.going, &LoginItem::name);
    return divided;
}

} // namespace quorvane
