// Conversions of the Variant under Italian regional settings.
#include "runtime/Variant.h"

#include "Helpers.h"
#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "runtime/VBFunctions.h"

#include <gtest/gtest.h>

using namespace vb;

namespace {
JetDate dateOf(const char* text)
{
    return Variant(text).toDate();
}

JetDate dateAt(int y, int m, int d, int h = 0, int n = 0, int s = 0)
{
    return JetDate{toSerial(QDateTime(QDate(y, m, d), QTime(h, n, s)))};
}
} // namespace

TEST(Variant, CStrPrintsAsTheItalianRunTime)
{
    const struct
    {
        Variant value;
        const char* text;
    } cases[] = {
        {1.5, "1,5"},
        {0.1 + 0.2, "0,3"}, // 15 significant digits hide the binary noise
        {-2.0, "-2"},
        {1234567.25, "1234567,25"}, // no thousands separator
        {100000000000000.0, "100000000000000"},
        {1e15, "1E+15"},
        {0.0001, "0,0001"},
        {0.00001, "1E-05"},
        {-1.5e-10, "-1,5E-10"},
        {2.0 / 3.0, "0,666666666666667"},
        {true, "Vero"},
        {false, "Falso"},
        {Variant(), ""},
        {Variant::fromInteger(-7), "-7"},
        {Variant::fromDate(QDate(2016, 7, 3)), "03/07/2016"},
        {Variant(dateAt(2016, 7, 3, 9, 5, 0)), "03/07/2016 09.05.00"},
        {Variant(JetDate{0.5}), "12.00.00"}, // a time alone has no date
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value.toString(), QString::fromUtf8(c.text)) << c.text;
}

TEST(Variant, CDblReadsItalianNumberText)
{
    // The dot is the thousands separator here: "1.5" is fifteen, as on an Italian PC.
    const std::pair<Variant, double> cases[] = {{"1.234,50", 1234.5}, {" 1,5 ", 1.5}, {"-3", -3.0}, {"1,5E3", 1500.0},
                                                {"&HFF", 255.0},      {"1.5", 15.0},  {true, -1.0}, {Variant(), 0.0}};
    for (const auto& [value, number] : cases)
        EXPECT_DOUBLE_EQ(value.toDouble(), number) << value.displayText().toStdString();
    for (const char* bad : {"", "abc", "1,5,2", "12a", "1,5E"})
        EXPECT_EQ(errorOf([&] { Variant(bad).toDouble(); }), err::TypeMismatch) << bad;
}

TEST(Variant, NullUsedAsTextOrNumberIsError94)
{
    const Variant n = Variant::null();
    EXPECT_EQ(errorOf([&] { n.toString(); }), err::InvalidUseOfNull);
    EXPECT_EQ(errorOf([&] { n.toDouble(); }), err::InvalidUseOfNull);
    EXPECT_EQ(errorOf([&] { n.toInteger(); }), err::InvalidUseOfNull);
    EXPECT_EQ(errorOf([&] { n.toDate(); }), err::InvalidUseOfNull);
    EXPECT_EQ(errorOf([&] { CStr(n); }), err::InvalidUseOfNull);
    EXPECT_EQ(n.displayText(), QString()); // a bound control shows nothing
}

TEST(Variant, CIntRoundsHalvesToEvenAndOverflowsAbove32767)
{
    EXPECT_EQ(Variant(2.5).toInteger(), 2);
    EXPECT_EQ(Variant(3.5).toInteger(), 4);
    EXPECT_EQ(Variant(-2.5).toInteger(), -2);
    EXPECT_EQ(Variant("1,5").toInteger(), 2);
    EXPECT_EQ(Variant("32767").toInteger(), 32767);
    EXPECT_EQ(Variant(-32768).toInteger(), -32768);
    // Keys pass through a 16-bit integer: 32768 overflows.
    EXPECT_EQ(errorOf([] { Variant("32768").toInteger(); }), err::Overflow);
    EXPECT_EQ(errorOf([] { Variant(32767.5).toInteger(); }), err::Overflow);
    EXPECT_EQ(errorOf([] { Variant("x").toInteger(); }), err::TypeMismatch);
    EXPECT_EQ(CInt(Variant(7.0)).type(), Variant::Type::Integer);
    EXPECT_EQ(Variant(2147483647.4).toLong(), 2147483647);
    EXPECT_EQ(errorOf([] { Variant(2147483648.0).toLong(); }), err::Overflow);
}

TEST(Variant, CDateReadsItalianDateText)
{
    // The session stamp, CStr's round trip, the alerts' "dd,mm,yyyy"; a day and month
    // that do not fit are read the other way round, as VB does.
    const std::pair<const char*, JetDate> cases[] = {
        {"3/7/2016  9.5.0", dateAt(2016, 7, 3, 9, 5, 0)},
        {"03/07/2016", dateAt(2016, 7, 3)},
        {"03/07/2016 09.05.00", dateAt(2016, 7, 3, 9, 5, 0)},
        {"15,11,2026", dateAt(2026, 11, 15)},
        {"3-7-16", dateAt(2016, 7, 3)},
        {"2016/07/03", dateAt(2016, 7, 3)},
        {"domenica 3 luglio 2016", dateAt(2016, 7, 3)},
        {"03-lug-16", dateAt(2016, 7, 3)},
        {"07/13/2016", dateAt(2016, 7, 13)},
        {"9.05 PM", JetDate{(21 * 60 + 5) / 1440.0}},
    };
    for (const auto& [text, date] : cases)
        EXPECT_EQ(dateOf(text), date) << text;
    // A time of day only: 24 hours or more is no time (the workload's duration relies on it).
    EXPECT_DOUBLE_EQ(dateOf("20:00:00").serial, 20.0 / 24.0);
    for (const char* bad : {"50:00:00", "24.00.00", "31/02/2016", "1,5", "abc", "", "3/7/2016 x"})
        EXPECT_EQ(errorOf([&] { dateOf(bad); }), err::TypeMismatch) << bad;

    Clock::freeze(QDateTime(QDate(2026, 11, 15), QTime(8, 0)));
    EXPECT_EQ(dateOf("3/7"), dateAt(2026, 7, 3)); // day and month: this year
    Clock::unfreeze();
}

TEST(Variant, SerialDatesCountFromDayZeroWithTheTimeAwayFromZero)
{
    EXPECT_EQ(toSerial(QDate(1899, 12, 30)), 0.0);
    EXPECT_EQ(toSerial(QDate(2016, 7, 3)), 42554.0);
    // Before day zero the fraction still counts forward in the day: -1.25 is 29/12 06:00.
    EXPECT_EQ(toSerial(QDateTime(QDate(1899, 12, 29), QTime(6, 0))), -1.25);
    EXPECT_EQ(fromSerial(-1.25), QDateTime(QDate(1899, 12, 29), QTime(6, 0)));
    EXPECT_EQ(fromSerial(42554.75), QDateTime(QDate(2016, 7, 3), QTime(18, 0)));
    // A time a hair below midnight rounds to the next day's start, whole seconds only.
    EXPECT_EQ(fromSerial(42554.9999999), QDateTime(QDate(2016, 7, 4), QTime(0, 0)));
    EXPECT_EQ(dateFromSerial(-0.5), QDate(1899, 12, 30));
    EXPECT_EQ(errorOf([] { Variant(3e6).toDate(); }), err::Overflow);
}

TEST(Variant, EveryIntegerTypeIsALong)
{
    const qint64 big = 40000;
    EXPECT_EQ(Variant(big).type(), Variant::Type::Long);
    EXPECT_EQ(Variant(static_cast<short>(3)), Variant(3));
    EXPECT_EQ(Variant(7u).toString(), "7");
}
