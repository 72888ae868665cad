#include "profiles/ProfileImporting.h"

#include "core/JsonErrors.h"
#include "core/Turns.h"
#include "platform/FileManager.h"

#include <QCoroTask>

#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<ProfileImportResult> importInTurns(Clock& clock, ProfileManager& store, QList<UnifiedProfile> profiles) {
    ProfileManager::Import merge = store.beginImport(profiles);
    bool isWhole = false;
    std::optional<QString> failure;
    try {
        co_await inTurns(clock, [&merge, &isWhole] {
            isWhole = !merge.step();
            return !isWhole;
        });
    } catch (const ProfileStoreError& error) {
        failure = error.message();
    } catch (const EncodingError& error) {
        failure = error.message();
    } catch (const FileError& error) {
        failure = error.message();
    }
    if (!failure && !isWhole) {
        failure = u"The program is quitting."_s;
    }
    if (failure) {
        throw ProfileImportError(*failure);
    }
    co_return merge.result();
}

} // namespace quorvane
