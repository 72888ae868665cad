// The displays in memory pass the contract.

#include "fakes/MemoryDisplays.h"
#include "contract/DisplaysContract.h"

namespace quorvane {

namespace {

class MemoryDisplaysSubject final : public TwoDisplaysSubject {
public:
    MemoryDisplaysSubject() {
        m_displays.connected = {{{7, u"Color LCD"_s, {0, 0, 1280, 800}, 2}, blue(), std::nullopt},
                                {{std::nullopt, u"Booth"_s, {1280, -20, 1920.5, 1080}, 1}, std::nullopt, std::nullopt}};
    }
    Displays& displays() override { return m_displays; }
    QString folder() const override { return u"/Users/alex/Pictures"_s; }
    void addFile(const QString& path, const QByteArray& bytes) override { m_files.addFile(path, bytes); }
    void unplugBuiltIn() override { m_displays.connected.removeFirst(); }
    void refuse(const QString& error) override { m_displays.connected.first().settingError = error; }
    void showAnotherSpace() override { m_displays.tell(DesktopChange::Space); }
    void wake() override { m_displays.tell(DesktopChange::Other); }
    bool drawsTheFileOfNow() override {
        const MemoryDisplays::Connected& builtIn = m_displays.connected.first();
        return m_displays.drawnOn(builtIn) == m_files.read(*builtIn.picture);
    }

private:
    MemoryFileManager m_files;
    MemoryDisplays m_displays{m_files};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Memory, DisplaysContract,
                         ::testing::Values(&makeSubject<DisplaysSubject, MemoryDisplaysSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, TwoDisplaysContract,
                         ::testing::Values(&makeSubject<TwoDisplaysSubject, MemoryDisplaysSubject>));

} // namespace quorvane
