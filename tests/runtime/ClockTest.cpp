#include "runtime/Clock.h"

#include "runtime/MsgBox.h"

#include <gtest/gtest.h>

using namespace vb;

TEST(Clock, FrozenClockMovesOnlyWhenTold)
{
    Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
    EXPECT_EQ(Clock::today(), QDate(2026, 11, 15));
    Clock::advance(3 * 86400);
    EXPECT_EQ(Clock::now(), QDateTime(QDate(2026, 11, 18), QTime(8, 0)));
    Clock::unfreeze();
}

TEST(MsgBox, ScriptedAnswersAndDefaults)
{
    MsgBoxService::setScripted(true);
    MsgBoxService::clear();
    MsgBoxService::queueAnswers({answer::Yes});
    EXPECT_EQ(MsgBox("Prima?", mb::YesNo + mb::Question, "T"), answer::Yes);
    // A question with nothing queued is answered No, and recorded as not scripted.
    EXPECT_EQ(MsgBox("Seconda?", 36, "T"), answer::No);
    EXPECT_EQ(MsgBox("Info", 64), answer::OK);
    const auto shown = MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_TRUE(shown[0].scripted);
    EXPECT_FALSE(shown[1].scripted);
    EXPECT_EQ(shown[2].title, "VELMORA");
}
