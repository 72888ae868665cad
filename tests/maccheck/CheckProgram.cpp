#include "maccheck/CheckProgram.h"

#include "maccheck/CheckArguments.h"
#include "maccheck/CheckLine.h"
#include "maccheck/People.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cstdio>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFailed = 1;
constexpr int kWrongArguments = 2;
constexpr const char* kTold = "told";

/// Writes each line to the terminal and to the report, as soon as it is known.
class LineWriter {
public:
    /// False when the report can't be written.
    bool open(const QString& report) {
        m_report.setFileName(report);
        return report.isEmpty() || m_report.open(QIODevice::WriteOnly | QIODevice::Truncate);
    }
    void write(const QString& line) {
        const QByteArray bytes = line.toUtf8() + '\n';
        std::fputs(bytes.constData(), stdout);
        std::fflush(stdout);
        if (m_report.isOpen()) {
            m_report.write(bytes);
            m_report.flush();
        }
    }

private:
    QFile m_report;
};

QString toldBy(const ::testing::TestResult& result) {
    for (int index = 0; index < result.test_property_count(); ++index) {
        if (const ::testing::TestProperty& property = result.GetTestProperty(index);
            QByteArrayView(property.key()) == kTold) {
            return QString::fromUtf8(property.value());
        }
    }
    return {};
}

CheckResult::Outcome outcomeOf(const ::testing::TestResult& result) {
    if (result.Failed()) {
        return CheckResult::Outcome::Fail;
    }
    return result.Skipped() ? CheckResult::Outcome::Skip : CheckResult::Outcome::Pass;
}

CheckResult resultOf(const ::testing::TestInfo& test) {
    const ::testing::TestResult& result = *test.result();
    CheckResult check{QString::fromUtf8(test.test_suite_name()) + u'.' + QString::fromUtf8(test.name()),
                      outcomeOf(result),
                      {},
                      toldBy(result)};
    for (int index = 0; index < result.total_part_count(); ++index) {
        check.reasons.append(QString::fromUtf8(result.GetTestPartResult(index).message()));
    }
    return check;
}

class CheckLines final : public ::testing::EmptyTestEventListener {
public:
    explicit CheckLines(LineWriter& writer)
        : m_writer(writer) {}

    void OnTestEnd(const ::testing::TestInfo& test) override { m_writer.write(checkLine(resultOf(test))); }
    void OnTestProgramEnd(const ::testing::UnitTest& program) override {
        m_writer.write(
            checkSummary(program.successful_test_count(), program.failed_test_count(), program.skipped_test_count()));
    }

private:
    LineWriter& m_writer;
};

/// The lines take the place of what GoogleTest prints.
void printLinesTo(LineWriter& writer) {
    ::testing::TestEventListeners& listeners = ::testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    listeners.Append(new CheckLines(writer));
}

int refuse(const QString& why) {
    std::fputs((why + u'\n').toUtf8().constData(), stderr);
    return kWrongArguments;
}

} // namespace

int runChecks(const QStringList& arguments) {
    const CheckArguments parsed = parsedCheckArguments(arguments);
    if (!parsed.error.isEmpty()) {
        return refuse(parsed.error + u"\n\n"_s + checkHelp());
    }
    if (parsed.wantsHelp) {
        std::fputs(checkHelp().toUtf8().constData(), stdout);
        return 0;
    }
    LineWriter writer;
    if (!writer.open(parsed.report)) {
        return refuse(u"The report can't be written: "_s + parsed.report);
    }
    setPeopleAsked(parsed.asksPeople);
    ::testing::InitGoogleTest();
    GTEST_FLAG_SET(filter, parsed.filter.toStdString());
    printLinesTo(writer);
    const int status = RUN_ALL_TESTS();
    if (::testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        return refuse(u"No check has this name: "_s + parsed.filter);
    }
    return status == 0 ? 0 : kFailed;
}

void tell(const QString& text) {
    ::testing::Test::RecordProperty(kTold, text.toStdString());
}

} // namespace quorvane
