// Property lists as the system reads them pass the contract.

#include "contract/PropertyListsContract.h"
#include "platform/macos/MacPropertyLists.h"

#include <QFile>
#include <QTemporaryDir>

namespace quorvane {

namespace {

class MacListsSubject final : public ListsSubject {
public:
    const PropertyLists& lists() const override { return m_lists; }
    QString folder() const override { return m_folder.path(); }
    void write(const QString& path, const QByteArray& bytes) override { writeLarge(path, bytes, bytes.size()); }
    void link(const QString& path, const QString& target) override { ASSERT_TRUE(QFile::link(target, path)); }
    void writeLarge(const QString& path, const QByteArray& bytes, qint64 size) override {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        ASSERT_TRUE(file.resize(size));
    }

private:
    QTemporaryDir m_folder;
    MacPropertyLists m_lists;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, PropertyListsContract, ::testing::Values(&makeSubject<ListsSubject, MacListsSubject>));

} // namespace quorvane
