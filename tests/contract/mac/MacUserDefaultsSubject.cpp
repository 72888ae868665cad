// The system's own preferences pass the contract, in a domain that nobody else has.

#include "contract/UserDefaultsContract.h"
#include "platform/macos/MacUserDefaults.h"

#include <QCoreApplication>
#include <QProcess>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What the system knows of a domain outlives it in this process, so that each subject has another one.
QString freshDomain() {
    static int count = 0;
    return u"com.quorvane.app.test.%1.%2"_s.arg(QCoreApplication::applicationPid()).arg(++count);
}

class MacDefaultsSubject final : public DefaultsSubject {
public:
    ~MacDefaultsSubject() override {
        m_defaults.synchronize();
        QProcess::execute(u"/usr/bin/defaults"_s, {u"delete"_s, m_domain}); // fails where nothing was set
    }
    UserDefaults& defaults() override { return m_defaults; }
    std::unique_ptr<UserDefaults> another() const override { return std::make_unique<MacUserDefaults>(m_domain); }
    void write(const QString& key, const QByteArray& xml) override {
        EXPECT_EQ(QProcess::execute(u"/usr/bin/defaults"_s, {u"write"_s, m_domain, key, QString::fromUtf8(xml)}), 0);
    }

private:
    const QString m_domain = freshDomain();
    MacUserDefaults m_defaults{m_domain};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, UserDefaultsContract,
                         ::testing::Values(&makeSubject<DefaultsSubject, MacDefaultsSubject>));

} // namespace quorvane
