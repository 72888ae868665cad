// The simulated Mac's file manager passes the contracts.

#include "platform/simulated/SimulatedFileManager.h"
#include "contract/FileContract.h"
#include "fakes/SimulatedMacFolder.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class SimulatedFileSubject final : public FileSubject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override {
        m_mac.mac.volume(macsim::Actor::User).createLink(path, target);
    }
    void addEmptyFile(const QString& path) override { addEmptyHostFile(m_mac.hostFolder() + path); }
    bool lock(const QString& folder) override {
        m_mac.mac.volume(macsim::Actor::Root).setOwner(folder, macsim::Actor::Root);
        return true;
    }
    QString unreadableFile() override {
        const QString file = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
        addEmptyFile(file);
        m_mac.mac.state().update("permissions", [](macsim::Json& state) { state["fullDiskAccess"] = false; });
        return file;
    }
    quint32 userId() const override { return 501; }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, FileManagerContract,
                         ::testing::Values(&makeSubject<FileSubject, SimulatedFileSubject>));
INSTANTIATE_TEST_SUITE_P(Simulated, TreeRemovalContract,
                         ::testing::Values(&makeSubject<FileSubject, SimulatedFileSubject>));

} // namespace quorvane
