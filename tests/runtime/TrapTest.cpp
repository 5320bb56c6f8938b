// The handlers' error trap: resume per statement, the plain box, the date guide action.
#include "runtime/Trap.h"

#include "runtime/MsgBox.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <stdexcept>

using namespace vb;

class TrapTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        MsgBoxService::setScripted(true);
        MsgBoxService::clear();
    }
};

TEST_F(TrapTest, ResumedNumbersGoOnWithTheNextStatement)
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    QStringList done;
    EXPECT_FALSE(trap.step([&] {
        throw VBError(err::InvalidUseOfNull);
        done << "never";
    }));
    EXPECT_TRUE(trap.step([&] { done << "second"; }));
    trap.step([&] { throw VBError(err::InvalidPropertyValue); });
    trap.step([&] { done << "third"; });
    EXPECT_EQ(done, QStringList({"second", "third"}));
    EXPECT_FALSE(trap.ended());
    EXPECT_EQ(trap.lastError(), err::InvalidPropertyValue);
    EXPECT_TRUE(MsgBoxService::takeShown().empty());
}

TEST_F(TrapTest, AnyOtherNumberShowsThePlainBoxAndEndsTheHandler)
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    bool later = false;
    trap.step([] { throw VBError(err::TypeMismatch); });
    trap.step([&] { later = true; });
    EXPECT_TRUE(trap.ended());
    EXPECT_FALSE(later);
    const auto shown = MsgBoxService::takeShown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].prompt, "13 Tipo non corrispondente");
    EXPECT_EQ(shown[0].buttons, 0);
    EXPECT_EQ(shown[0].title, "VELMORA"); // no title of its own: the program's
}

TEST_F(TrapTest, SilentTrapGoesOnAfterAnyError)
{
    Trap trap{{err::InvalidUseOfNull}, Trap::Resume};
    int ran = 0;
    trap.step([] { throw VBError(3021); });
    trap.step([&] { ++ran; });
    Trap all = Trap::ignoreAll();
    all.step([] { throw VBError(3010); });
    all.step([&] { ++ran; });
    EXPECT_EQ(ran, 2);
    EXPECT_TRUE(MsgBoxService::takeShown().empty());
}

TEST_F(TrapTest, ActionNumberRunsItsActionAndEndsTheHandler)
{
    int guides = 0;
    bool later = false;
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::InvalidPropertyValue, [&] { ++guides; });
    trap.step([] { throw VBError(err::InvalidPropertyValue); });
    trap.step([&] { later = true; });
    EXPECT_EQ(guides, 1);
    EXPECT_FALSE(later);
    EXPECT_TRUE(trap.ended());
    EXPECT_TRUE(MsgBoxService::takeShown().empty());
}

TEST_F(TrapTest, ExitEndsTheHandlerAndForeignExceptionsAreNotTrapped)
{
    Trap trap = Trap::ignoreAll();
    bool later = false;
    trap.step([&] { trap.exit(); });
    trap.step([&] { later = true; });
    EXPECT_FALSE(later);
    // Only the run time's errors are trapped; a fault of the program goes on up.
    Trap other = Trap::ignoreAll();
    EXPECT_THROW(other.step([] { throw std::logic_error("bug"); }), std::logic_error);
}
