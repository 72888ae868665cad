#include "simulator/SoftwareUpdateService.h"

#include "simulator/Mac.h"
#include "simulator/PreferenceStore.h"

#include <QVersionNumber>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTahoe = 26;

} // namespace

void softwareUpdateServiceNotices(const Mac& mac, const QString& writtenFile) {
    const PreferenceDomain settings{u"/Library/Preferences/com.apple.SoftwareUpdate"_s};
    const PreferenceStore store(mac, mac.volume(Actor::Root));
    const bool isTahoe = QVersionNumber::fromString(mac.machine().systemVersion).majorVersion() >= kTahoe;
    if (isTahoe && writtenFile == store.filePath(settings)) {
        store.remove(settings, u"AutomaticCheckEnabled"_s);
    }
}

} // namespace macsim
