// Bundles as the system reads them pass the contract: an application of its own, and bundles in a temporary folder.

#include "contract/BundlesContract.h"
#include "platform/macos/MacBundles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace quorvane {

namespace {

class MacBundlesSubject final : public BundlesSubject {
public:
    const Bundles& bundles() const override { return m_bundles; }
    QString installedIdentifier() const override { return u"com.apple.calculator"_s; }
    QString installedPath() const override { return u"/System/Applications/Calculator.app"_s; }
    QString folder() const override { return m_folder.path(); }
    void put(const QString& path, const QByteArray& bytes) override {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

private:
    QTemporaryDir m_folder;
    MacBundles m_bundles;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, BundlesContract, ::testing::Values(&makeSubject<BundlesSubject, MacBundlesSubject>));

} // namespace quorvane
