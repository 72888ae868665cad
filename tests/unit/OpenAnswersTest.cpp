#include "platform/macos/OpenAnswers.h"

#include "fakes/EventLoop.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace quorvane {

namespace {

using Answers = OpenAnswers<int>;

constexpr int kClosed = -1;

void answerFromAnotherThread(const Answers::Question& question, int value) {
    std::thread([&question, value] { question.answer(value); }).join();
}

} // namespace

TEST(OpenAnswers, anAnswerOfAnotherThreadArrivesThroughTheEventLoop) {
    Answers answers(kClosed);
    Answers::Question question = answers.ask();
    std::thread::id finishedOn;
    const QFuture<void> followed =
        question.future.then([&finishedOn](int) { finishedOn = std::this_thread::get_id(); });
    answerFromAnotherThread(question, 7);
    EXPECT_FALSE(question.future.isFinished());
    processEventsUntil([&] { return followed.isFinished(); });
    EXPECT_EQ(question.future.result(), 7);
    EXPECT_EQ(finishedOn, std::this_thread::get_id());
}

TEST(OpenAnswers, eachQuestionHasItsOwnAnswer) {
    Answers answers(kClosed);
    const Answers::Question first = answers.ask();
    const Answers::Question second = answers.ask();
    answerFromAnotherThread(second, 2);
    answerFromAnotherThread(first, 1);
    processEventsUntil([&] { return first.future.isFinished() && second.future.isFinished(); });
    EXPECT_EQ(first.future.result(), 1);
    EXPECT_EQ(second.future.result(), 2);
}

TEST(OpenAnswers, whoWaitsGoesOnWhenItIsClosed) {
    Answers answers(kClosed);
    const Answers::Question waiting = answers.ask();
    const Answers::Question underWay = answers.ask();
    answerFromAnotherThread(underWay, 3);
    answers.close();
    ASSERT_TRUE(waiting.future.isFinished());
    EXPECT_EQ(waiting.future.result(), kClosed);
    EXPECT_FALSE(waiting.future.isCanceled());
    answerFromAnotherThread(waiting, 4);
    QCoreApplication::processEvents();
    EXPECT_EQ(underWay.future.result(), kClosed) << "what came too late is dropped";
    EXPECT_EQ(waiting.future.result(), kClosed);
}

TEST(OpenAnswers, aQuestionAfterTheEndIsAnsweredAtOnce) {
    Answers answers(kClosed);
    EXPECT_FALSE(answers.isClosed());
    answers.close();
    EXPECT_TRUE(answers.isClosed());
    const Answers::Question question = answers.ask();
    EXPECT_EQ(question.future.result(), kClosed);
    answerFromAnotherThread(question, 5);
    QCoreApplication::processEvents();
    EXPECT_EQ(question.future.resultCount(), 1);
}

TEST(OpenAnswers, aSecondAnswerIsDropped) {
    Answers answers(kClosed);
    const Answers::Question question = answers.ask();
    answerFromAnotherThread(question, 1);
    answerFromAnotherThread(question, 2);
    processEventsUntil([&] { return question.future.isFinished(); });
    QCoreApplication::processEvents();
    EXPECT_EQ(question.future.resultCount(), 1);
    EXPECT_EQ(question.future.result(), 1);
}

TEST(OpenAnswers, anAnswerMayComeAfterItIsGone) {
    std::optional<Answers> answers(std::in_place, kClosed);
    const Answers::Question question = answers->ask();
    answerFromAnotherThread(question, 6);
    answers.reset();
    EXPECT_EQ(question.future.result(), kClosed);
    answerFromAnotherThread(question, 7);
    QCoreApplication::processEvents();
    EXPECT_EQ(question.future.resultCount(), 1);
}

} // namespace quorvane
