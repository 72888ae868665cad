#include "snapshots/HomeBaselines.h"

#include "core/DeviceName.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

MacIdentity identityOf(const Machine& machine) {
    const QString id = machine.hardwareId();
    return {deviceNameOf(machine.computerName()), id.isEmpty() ? std::nullopt : std::optional(id)};
}

QString baselineFolderAtHome(const Machine& machine) {
    return machine.homeFolder() + u"/.quorvane"_s;
}

QString currentBaselineFile(const QString& folder) {
    return folder + u"/master-baseline-current.json"_s;
}

std::optional<MasterSystemBaseline> baselineAt(const QString& path, const FileManager& files) {
    try {
        return decodeMasterBaseline(files.read(path));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const MasterSystemBaselineError&) {
        return std::nullopt;
    }
}

std::optional<MasterSystemBaseline> ownBaselineAtHome(const FileManager& files, const Machine& machine) {
    std::optional<MasterSystemBaseline> baseline =
        baselineAt(currentBaselineFile(baselineFolderAtHome(machine)), files);
    if (baseline && originOf(*baseline, identityOf(machine)) == BaselineOrigin::AnotherMac) {
        baseline.reset();
    }
    return baseline;
}

} // namespace quorvane
