#include "fakes/MeasuredRehearsal.h"

#ifdef __APPLE__
extern char** environ; // no header of Darwin's names it
#endif

namespace quorvane {

namespace {

long inKibibytes(long maximumResidentSize) {
#ifdef __APPLE__
    return maximumResidentSize / 1024; // Darwin counts bytes
#else
    return maximumResidentSize;
#endif
}

} // namespace

MeasuredRehearsal::MeasuredRehearsal(const QString& place)
    : folder(place) {
    EXPECT_EQ(::testing::UnitTest::GetInstance()->test_to_run_count(), 1)
        << "a test before this one in the same process would count: each needs a shard of its own";
    EXPECT_EQ(rehearse({u"new"_s}).status, 0);
}

MeasuredEnding MeasuredRehearsal::rehearse(const QStringList& arguments) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    const QByteArray output = QFile::encodeName(folder.path() + u"/output"_s);
    const QByteArray error = QFile::encodeName(folder.path() + u"/error"_s);
    constexpr int kFlags = O_WRONLY | O_CREAT | O_TRUNC;
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.constData(), kFlags, 0600);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error.constData(), kFlags, 0600);
    QList<QByteArray> words{REHEARSAL_PROGRAM, "--mac", QFile::encodeName(macFolder())};
    for (const QString& argument : arguments) {
        words.append(argument.toUtf8());
    }
    std::vector<char*> pointers;
    for (QByteArray& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = 0;
    EXPECT_EQ(::posix_spawn(&process, REHEARSAL_PROGRAM, &actions, nullptr, pointers.data(), environ), 0);
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    EXPECT_EQ(::wait4(process, &status, 0, &usage), process);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), content(u"/output"_s),
            content(u"/error"_s), inKibibytes(usage.ru_maxrss)};
}

QString MeasuredRehearsal::macFolder() const {
    return folder.path() + u"/Mac"_s;
}

QByteArray MeasuredRehearsal::content(const QString& name) const {
    QFile file(folder.path() + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace quorvane
