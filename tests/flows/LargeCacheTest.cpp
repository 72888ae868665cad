// Ten times as many caches are cleared in the same memory.

#include "fakes/MeasuredRehearsal.h"

#include <array>
#include <cstdio>
#include <sys/stat.h>

#include <cstdlib>

namespace quorvane {

namespace {

/// In memory, where the system has a place for that: making and removing so many files is no work for a disk.
QString temporaryPlace() {
    const QString inMemory = u"/dev/shm"_s;
    return (QDir(inMemory).exists() ? inMemory : QDir::tempPath()) + u"/large-cache-XXXXXX"_s;
}

class LargeCache : public MeasuredRehearsal {
protected:
    LargeCache()
        : MeasuredRehearsal(temporaryPlace()) {
        // The address sanitizer keeps what was freed for a while, and for each block how it came to be. Here the memory that
        // the program holds is meant.
        const QByteArray options = qgetenv("ASAN_OPTIONS");
        qputenv("ASAN_OPTIONS", (options.isEmpty() ? options : options + ':') +
                                    "quarantine_size_mb=0:thread_local_quarantine_size_kb=0:malloc_context_size=0");
    }

    QString caches() const { return macFolder() + u"/Users/alex/Library/Caches"_s; }

    /// Half of the entries lie directly in the folder, the other half in folders of 250. Made without the heap: the sanitizer
    /// would keep what was freed, and the peak of the process that is measured counts this one.
    void makeEntries(int count) const {
        const QByteArray folder = caches().toUtf8();
        std::array<char, 512> path{};
        for (int number = 0; number < count / 2; ++number) {
            std::snprintf(path.data(), path.size(), "%s/com.maker.cache-%d", folder.constData(), number);
            makeFile(path.data());
        }
        for (int number = 0; number < count / 2; ++number) {
            std::snprintf(path.data(), path.size(), "%s/Browser %d", folder.constData(), number / 250);
            if (number % 250 == 0) {
                ASSERT_EQ(::mkdir(path.data(), 0755), 0);
            }
            std::snprintf(path.data(), path.size(), "%s/Browser %d/%d", folder.constData(), number / 250, number);
            makeFile(path.data());
        }
    }
    static void makeFile(const char* path) {
        const int file = ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        ASSERT_GE(file, 0) << path;
        ::close(file);
    }

    /// Makes the entries, clears them, and gives the peak of the memory that this took.
    long peakOfClearing(int count) {
        makeEntries(count);
        const MeasuredEnding run = rehearse({u"maintenance"_s, u"--caches"_s});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.error, QByteArray());
        EXPECT_EQ(run.output, "Starting cache cleanup...\n"
                              "Scanning User Caches in /Users/alex/Library/Caches...\n"
                              "Skipping /Library/Caches (does not exist).\n"
                              "Skipping /System/Library/Caches (does not exist).\n"
                              "No unprotected items found in system caches to clean.\n"
                              "\nCleanup Complete!\n"
                              "\nSuccess\n"
                              "  System caches cleared.\n");
        EXPECT_EQ(QDir(caches()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  QStringList(u"Ableton"_s));
        return run.peakMemory;
    }
};

} // namespace

TEST_F(LargeCache, tenTimesAsManyEntriesTakeTheSameMemory) {
    ASSERT_TRUE(QDir().mkpath(caches() + u"/Ableton"_s));
    const long few = peakOfClearing(20'000);
    const long many = peakOfClearing(200'000);
    EXPECT_LT(std::abs(many - few), few / 20) << "for 20,000 " << few << " KiB, for 200,000 " << many << " KiB";
}

} // namespace quorvane
