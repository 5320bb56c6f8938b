// The session stamp and the duration text.
#include "runtime/DateTexts.h"

#include "Helpers.h"
#include "runtime/VBError.h"
#include "runtime/Variant.h"

#include <gtest/gtest.h>

using namespace vb;

TEST(SessionStamp, PlainNumbersTwoBlanksAndReadableAsADate)
{
    const QDateTime at(QDate(2016, 7, 3), QTime(9, 5, 0));
    EXPECT_EQ(SessionStamp(at), "3/7/2016  9.5.0");
    EXPECT_EQ(SessionStamp(QDateTime(QDate(2026, 12, 25), QTime(23, 59, 59))), "25/12/2026  23.59.59");
    EXPECT_EQ(Variant(SessionStamp(at)).toDate().serial, toSerial(at));
}

TEST(DurationText, HoursAreNotLimitedToADay)
{
    EXPECT_EQ(DurationText(0), "00:00:00");
    EXPECT_EQ(DurationText(1200), "20:00:00");
    EXPECT_EQ(DurationText(2160), "36:00:00");
    EXPECT_EQ(DurationText(90.5), "01:30:30");
    EXPECT_EQ(DurationText(6000), "100:00:00");
    // 59.5 seconds: Mod rounds the seconds to 60 (halves to even) while the minutes are
    // truncated, so the duration reads as nothing. Kept as the old program computed it.
    EXPECT_EQ(DurationText(59.5 / 60), "00:00:00");
    // The one command that used 16-bit integers overflows above 546 minutes.
    EXPECT_EQ(DurationText16(546), "09:06:00");
    EXPECT_THROW(DurationText16(547), VBError);
}
