#include "platform/fake/scripteddialogs.h"

#include <gtest/gtest.h>

namespace kestra {
namespace {

TEST(ScriptedDialogs, QuestionsTakeScriptedAnswersThenTheFallback)
{
    ScriptedDialogs d;
    d.answers = {Answer::No, Answer::Cancel};
    std::vector<std::string> printed;
    d.onMessage = [&](const ScriptedDialogs::Shown& m) { printed.push_back(m.text); };

    // A box with one button answers Ok and leaves the script alone.
    EXPECT_EQ(d.message("Done"), Answer::Ok);
    EXPECT_EQ(d.message("Save?", "Exit", Buttons::YesNoCancel, Icon::Question), Answer::No);
    EXPECT_EQ(d.message("Go on?", {}, Buttons::OkCancel), Answer::Cancel);
    EXPECT_TRUE(d.answers.empty());

    // Script used up: each box gives its affirmative answer.
    EXPECT_EQ(d.message("a", {}, Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(d.message("b", {}, Buttons::RetryCancel), Answer::Retry);
    EXPECT_EQ(d.message("c", {}, Buttons::AbortRetryIgnore), Answer::Retry);

    // A fallback applies where the box offers it.
    d.setFallback(Answer::No);
    EXPECT_EQ(d.message("d", {}, Buttons::YesNo), Answer::No);
    EXPECT_EQ(d.message("e", {}, Buttons::OkCancel), Answer::Ok);
    EXPECT_EQ(d.message("f"), Answer::Ok);

    ASSERT_EQ(d.shown.size(), 9u);
    EXPECT_EQ(d.shown[0].title, kApplicationTitle);
    EXPECT_EQ(d.shown[1].title, "Exit");
    EXPECT_EQ(d.shown[1].icon, Icon::Question);
    EXPECT_EQ(d.shown[1].answer, Answer::No);
    EXPECT_EQ(printed.size(), 9u);
    EXPECT_EQ(printed[2], "Go on?");
}

} // namespace
} // namespace kestra
