// How long the program takes until it is seen, and how much memory it holds at rest, against a bare main window; and how
// long its window is ever stalled. On the display that DISPLAY names. Arguments name what is measured: paint, memory, stalls, startup, reading.

#include "Verdicts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int kStarts = 25;
constexpr double kFirstPaintAtMost = 2.0;
constexpr double kMemoryAtMost = 1.6;
constexpr double kLogAtMost = 1.15;
constexpr int kRounds = 5;
constexpr double kFrame = 16; // milliseconds
constexpr double kWritesPerStall = 2;
constexpr auto kPatience = 60s;
constexpr auto kStill = 2s; ///< so long without any work is rest
constexpr auto kLook = 100ms;

[[noreturn]] void fail(const QString& what) {
    throw std::runtime_error(what.toStdString());
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One running program. It is ended when this goes.
class Program {
public:
    explicit Program(const QString& name)
        : m_start(std::chrono::steady_clock::now().time_since_epoch()) {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationDirPath() + u'/' + name, QStringList());
    }

    ~Program() {
        m_process.terminate();
        m_process.waitForFinished();
    }

    /// From the start of the process until its window is seen.
    double millisecondsToFirstPaint() {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(std::chrono::milliseconds(kPatience).count())) {
                fail(m_process.program() + u" shows no window"_s);
            }
        }
        const std::chrono::nanoseconds painted(m_process.readLine().trimmed().toLongLong());
        return std::chrono::duration<double, std::milli>(painted - m_start).count();
    }

    void waitForRest() const {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        auto stillSince = std::chrono::steady_clock::now();
        QByteArray work = workDone();
        while (std::chrono::steady_clock::now() - stillSince < kStill) {
            QThread::msleep(std::chrono::milliseconds(kLook).count());
            const QByteArray now = workDone();
            if (now != work) {
                work = now;
                stillSince = std::chrono::steady_clock::now();
            }
            if (stillSince > end) {
                fail(m_process.program() + u" comes to no rest"_s);
            }
        }
    }

    /// Of /proc/…/smaps_rollup.
    double mebibytes(const QByteArray& field) const {
        for (const QByteArray& line : contentOf(file(u"smaps_rollup"_s)).split('\n')) {
            if (line.startsWith(field + ':')) {
                return line.mid(field.size() + 1).trimmed().split(' ').constFirst().toDouble() / 1024;
            }
        }
        fail(u"no "_s + QString::fromLatin1(field));
    }

private:
    QString file(const QString& name) const { return u"/proc/%1/%2"_s.arg(m_process.processId()).arg(name); }

    /// The processor's time in clock ticks: of its own, and of children that have ended.
    QByteArray workDone() const {
        const QByteArray stat = contentOf(file(u"stat"_s));
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        return fields.mid(11, 4).join(' ');
    }

    std::chrono::nanoseconds m_start;
    QProcess m_process;
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The simulated Mac of a user who has a baseline already, with the example profiles saved.
void prepareMac(const QString& home) {
    const Program first(u"quorvane"_s);
    first.waitForRest();
    const QDir users(home + u"/data/Quorvane/Mac/Users"_s);
    for (const QString& user : users.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QDir().mkpath(users.filePath(user + u"/.quorvane"_s));
        QFile baseline(users.filePath(user + u"/.quorvane/master-baseline-current.json"_s));
        if (!baseline.open(QIODevice::WriteOnly) || baseline.write("{}") != 2) {
            fail(baseline.fileName() + u": "_s + baseline.errorString());
        }
    }
}

void measureFirstPaint(Verdicts& verdicts) {
    std::vector<double> program;
    std::vector<double> bare;
    for (int start = 0; start < kStarts; ++start) {
        bare.push_back(Program(u"bare_window"_s).millisecondsToFirstPaint());
        program.push_back(Program(u"watched_quorvane"_s).millisecondsToFirstPaint());
    }
    verdicts.ratio("first paint", median(program), "bare window", median(bare), kFirstPaintAtMost, "ms");
}

/// All that is mapped into the process counts: what of it others share depends on what else runs.
void measureMemory(Verdicts& verdicts) {
    const Program bare(u"bare_window"_s);
    const Program program(u"quorvane"_s);
    bare.waitForRest();
    program.waitForRest();
    verdicts.ratio("memory at rest", program.mebibytes("Rss"), "bare window", bare.mebibytes("Rss"), kMemoryAtMost,
                   "MiB");
    for (const QByteArray& field : QList<QByteArray>{"Pss", "Private_Dirty", "Private_Clean"}) {
        std::printf("    of it %-22s %7.1f MiB, bare window %.1f MiB\n", field.constData(), program.mebibytes(field),
                    bare.mebibytes(field));
    }
}

struct Stall {
    double milliseconds = 0;
    QByteArray rest; ///< how long the processor worked, and on what
};

/// By what was done meanwhile, in the order in which it was done.
using Stalls = std::vector<std::pair<QByteArray, Stall>>;

QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QProcess round;
    round.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    round.start(QCoreApplication::applicationDirPath() + u'/' + program, arguments);
    if (!round.waitForFinished(-1) || round.exitStatus() != QProcess::NormalExit || round.exitCode() != 0) {
        fail(u"a round came to no end"_s);
    }
    return round.readAllStandardOutput().trimmed();
}

Stalls stallsOfRound(const QString& program, const QStringList& arguments) {
    Stalls stalls;
    for (const QByteArray& line : outputOf(program, arguments).split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        const QByteArray rest = fields.value(2) + " ms of the processor; " + fields.value(3);
        stalls.emplace_back(fields.value(0), Stall{fields.value(1).toDouble(), rest});
    }
    return stalls;
}

/// What the program does takes as long in each round; what else the machine does meanwhile doesn't. So the best round counts.
Stalls bestStalls(const QString& program, const QStringList& arguments) {
    Stalls best = stallsOfRound(program, arguments);
    for (int round = 1; round < kRounds; ++round) {
        const Stalls stalls = stallsOfRound(program, arguments);
        for (std::size_t place = 0; place < best.size(); ++place) {
            if (stalls.at(place).second.milliseconds < best[place].second.milliseconds) {
                best[place] = stalls[place];
            }
        }
    }
    return best;
}

void report(Verdicts& verdicts, const Stalls& stalls, double atMost) {
    for (const auto& [what, stall] : stalls) {
        verdicts.limit(what.constData(), stall.milliseconds, atMost, "ms");
        std::printf("    %s\n", stall.rest.constData());
    }
}

void measureStalls(Verdicts& verdicts) {
    Stalls best = bestStalls(u"stall_round"_s, {});
    const double write = best.front().second.milliseconds;
    best.erase(best.begin());
    std::printf("\nLongest stall of the event loop with 1,000 saved profiles, where a bare write takes %.1f ms:\n",
                write);
    report(verdicts, best, std::max(kFrame, kWritesPerStall * write));
}

void measureStartup(Verdicts& verdicts) {
    std::puts("\nLongest stall of the event loop with 5,000 startup items:");
    report(verdicts, bestStalls(u"startup_round"_s, {}), kFrame);
}

void measureReading(Verdicts& verdicts) {
    std::puts("\nLongest stall of the event loop while the log and the manual are read:");
    report(verdicts, bestStalls(u"reading_round"_s, {u"stalls"_s}), kFrame);
    std::puts("\nMemory from 20,000 to 200,000 lines of the log:");
    const double bare = outputOf(u"reading_round"_s, {u"bare"_s}).toDouble();
    verdicts.ratio("with the page of the log", outputOf(u"reading_round"_s, {u"memory"_s}).toDouble(), "bare list",
                   bare, kLogAtMost, "MiB");
}

int measure(const QStringList& names) {
    const auto isWanted = [&names](const QString& name) { return names.isEmpty() || names.contains(name); };
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", (home.path() + u"/data"_s).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + u"/config"_s).toUtf8());
    qputenv("XDG_RUNTIME_DIR", home.path().toUtf8());
    Verdicts verdicts;
    try {
        prepareMac(home.path());
        std::puts("\nThe window against a bare one:");
        if (isWanted(u"paint"_s)) {
            measureFirstPaint(verdicts);
        }
        if (isWanted(u"memory"_s)) {
            measureMemory(verdicts);
        }
        if (isWanted(u"stalls"_s)) {
            measureStalls(verdicts);
        }
        if (isWanted(u"startup"_s)) {
            measureStartup(verdicts);
        }
        if (isWanted(u"reading"_s)) {
            measureReading(verdicts);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return verdicts.allHold() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    const QCoreApplication application(argumentCount, arguments);
    return quorvane::measure(QCoreApplication::arguments().mid(1));
}
