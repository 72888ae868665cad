// This Mac's displays pass the contract, with pictures in a temporary folder. What they show stays as it is.

#include "contract/DisplaysContract.h"
#include "platform/macos/MacDisplays.h"

#include <QFile>
#include <QTemporaryDir>

namespace quorvane {

namespace {

class MacDisplaysSubject final : public DisplaysSubject {
public:
    Displays& displays() override { return m_displays; }
    QString folder() const override { return m_folder.path(); }
    void addFile(const QString& path, const QByteArray& bytes) override {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

private:
    QTemporaryDir m_folder;
    MacDisplays m_displays;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, DisplaysContract, ::testing::Values(&makeSubject<DisplaysSubject, MacDisplaysSubject>));

} // namespace quorvane
