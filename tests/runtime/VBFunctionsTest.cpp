// Format, Val, week numbers and the text functions under Italian settings.
#include "runtime/VBFunctions.h"

#include "Helpers.h"
#include "runtime/VBError.h"

#include <gtest/gtest.h>

using namespace vb;

namespace {
QString fmt(const Variant& v, const char* pattern)
{
    return Format(v, QString::fromUtf8(pattern)).toString();
}

Variant at(int y, int m, int d, int h = 0, int n = 0, int s = 0)
{
    return Variant::fromDateTime(QDateTime(QDate(y, m, d), QTime(h, n, s)));
}
} // namespace

TEST(Format, NumberPatternsUseItalianSeparatorsAndRoundHalfAwayFromZero)
{
    const struct
    {
        Variant value;
        const char* pattern;
        const char* text;
    } cases[] = {
        {1234.5, "Standard", "1.234,50"},
        {0.5, "Standard", "0,50"},
        {-1234567.891, "Standard", "-1.234.567,89"},
        {1234.5, "Fixed", "1234,50"},
        {1234.5, "General Number", "1234,5"},
        {0.256, "Percent", "25,60%"},
        {1234.5, "##,##0.00", "1.234,50"},
        {0.0, "##,##0.00", "0,00"},
        {2.5, "0", "3"}, // halves away from zero, unlike CInt
        {-2.5, "0", "-3"},
        {1.005, "0.00", "1,01"}, // decimal, not binary, rounding
        {0.125, "#,##0.00", "0,13"},
        {0.5, "#,###.00", ",50"}, // no integer digit without a 0 placeholder
        {1234.0, "#,###.00", "1.234,00"},
        {45.67, "##.0", "45,7"},
        {0.456, "0%", "46%"},
        {1.0, "#.##", "1,"},
        {5.0, "000", "005"},
        {123456.0, "000-000", "123-456"},
        {1234567.0, "#,##0,", "1.235"}, // a trailing comma divides by a thousand
        {1234.5, "0.00E+00", "1,23E+03"},
        {-5.0, "0;(0)", "(5)"},
        {0.0, "0;(0);\"zero\"", "zero"},
        {-0.001, "0.00", "0,00"},                     // no sign on a value that rounds to nothing
        {Variant("1.234,5"), "Standard", "1.234,50"}, // numeric text is read as a number
        {Variant("abc"), "Standard", "abc"},          // other text stays
        {true, "Yes/No", "Sì"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(fmt(c.value, c.pattern), QString::fromUtf8(c.text)) << c.pattern << " " << c.text;
}

TEST(Format, DatePatternsAndNamedDateFormats)
{
    const Variant d = at(2016, 7, 3, 9, 5, 7);
    const struct
    {
        const char* pattern;
        const char* text;
    } cases[] = {
        {"dd/mm/yyyy", "03/07/2016"},
        {"d/m/yy", "3/7/16"},
        {"dd,mm,yyyy", "03,07,2016"},
        {"Short Date", "03/07/2016"},
        {"Long Date", "domenica 3 luglio 2016"},
        {"ddd dd mmm", "dom 03 lug"},
        {"Long Time", "09.05.07"}, // ":" is the Italian time separator "."
        {"hh:mm:ss", "09.05.07"},  // "m" after an hour is minutes
        {"Short Time", "09.05"},
        {"h AM/PM", "9 AM"},
        {"ww", "28"},
        {"w", "1"}, // Sunday is day 1
        {"q y", "3 185"},
        {"\"Settimana\" ww", "Settimana 28"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(fmt(d, c.pattern), QString::fromUtf8(c.text)) << c.pattern;
    EXPECT_EQ(fmt(Variant("3/7/2016"), "dd/mm/yyyy"), "03/07/2016");
    EXPECT_EQ(fmt(42554.0, "dd/mm/yyyy"), "03/07/2016"); // a number is a serial date
}

TEST(Format, WithoutPatternTextStaysAsItIsAndNullStaysNull)
{
    // The session stamp goes through an argument-free Format and must come back unchanged.
    EXPECT_EQ(fmt(Variant("3/7/2016  9.5.0"), ""), "3/7/2016  9.5.0");
    EXPECT_EQ(fmt(1.5, ""), "1,5");
    EXPECT_TRUE(Format(Variant::null(), "Standard").isNull());
    EXPECT_EQ(Format(Variant(), "Standard").toString(), "");
}

TEST(WeekOfYear, SundayStartsTheWeekAndTheWeekOfFirstJanuaryIsOne)
{
    // 2022 begins on a Saturday: 1 January alone is week 1, Sunday 2 January week 2.
    // 2017 begins on a Sunday. 2000, a leap year beginning on Saturday, reaches week 54.
    const std::pair<QDate, int> cases[] = {
        {{2022, 1, 1}, 1}, {{2022, 1, 2}, 2}, {{2022, 12, 31}, 53}, {{2017, 1, 1}, 1},
        {{2017, 1, 7}, 1}, {{2017, 1, 8}, 2}, {{2000, 12, 31}, 54}, {{2026, 11, 15}, 47},
    };
    for (const auto& [day, week] : cases)
        EXPECT_EQ(WeekOfYear(day), week) << day.toString(Qt::ISODate).toStdString();
}

TEST(Val, ReadsTheNumberAtTheStartWhateverTheLocale)
{
    const struct
    {
        Variant text;
        double value;
    } cases[] = {
        {"10", 10},
        {"2", 2},
        {"A3", 0},
        {"", 0},
        {" 1 2 3", 123},
        {"1.5", 1.5},
        {"1,5", 1},
        {"12abc", 12},
        {"-3.5e2x", -350},
        {"1e", 1},
        {"&HFF", 255},
        {"&HFFFF", -1},
        {"&O17", 15},
        {"\t-\n4", -4},
        {".5", 0.5},
        {Variant(), 0},
        {"1.2.3", 1.2},
        {"&H10000", 65536},
        // A number reaches Val as its Italian text: Val(1,5) reads "1,5" and gives 1.
        {1.5, 1},
    };
    for (const auto& c : cases)
        EXPECT_DOUBLE_EQ(Val(c.text), c.value) << c.text.displayText().toStdString();
    EXPECT_THROW(Val(Variant::null()), VBError);
}

TEST(TextFunctions, NullPassesThroughAndConcatTreatsOneNullAsEmpty)
{
    const Variant n = Variant::null();
    for (const Variant& v : {Left(n, 3), Right(n, 3), Mid(n, 2), Trim(n), UCase(n), Len(n)})
        EXPECT_TRUE(v.isNull());
    EXPECT_EQ(Left("Mensile", 3).toString(), "Men");
    EXPECT_EQ(Left("Me", 3).toString(), "Me");
    EXPECT_EQ(Right("AX100", 2).toString(), "00");
    EXPECT_EQ(Mid("AX100", 2, 2).toString(), "X1");
    EXPECT_EQ(Mid("AX100", 9).toString(), "");
    EXPECT_EQ(Trim("  a b \t").toString(), "a b \t"); // blanks only
    EXPECT_EQ(Len(1.5).toString(), "3");              // "1,5"
    EXPECT_EQ(Replace("l'area", "'", "''").toString(), "l''area");
    EXPECT_EQ(Replace("abc", "", "x").toString(), "abc");

    EXPECT_TRUE(Concat(n, n).isNull());
    EXPECT_EQ(Concat(n, "x").toString(), "x");
    EXPECT_EQ(Concat(12, ".").toString(), "12.");
    EXPECT_EQ(Concat(1.5, Variant()).toString(), "1,5");

    EXPECT_EQ(errorOf([&] { Replace(n, "a", "b"); }), err::InvalidUseOfNull);
    EXPECT_THROW(Left("abc", -1), VBError);
}

TEST(TextFunctions, IsNumericAndIsDateFollowItalianSettings)
{
    EXPECT_TRUE(IsNumeric("1.234,5"));
    EXPECT_TRUE(IsNumeric(Variant()));
    EXPECT_TRUE(IsNumeric(3));
    EXPECT_FALSE(IsNumeric("1,2,3"));
    EXPECT_FALSE(IsNumeric(Variant::null()));
    EXPECT_FALSE(IsNumeric(Variant::fromDate(QDate(2016, 7, 3))));
    EXPECT_TRUE(IsDate("03/07/2016"));
    EXPECT_TRUE(IsDate(Variant::fromDate(QDate(2016, 7, 3))));
    EXPECT_FALSE(IsDate("31/02/2016"));
    EXPECT_FALSE(IsDate(42554));
    EXPECT_EQ(ShortDate(QDate(2016, 7, 3)), "03/07/2016");
}

TEST(StatementPieces, KeysGoThroughAnIntegerAndApostrophesAreDoubled)
{
    EXPECT_EQ(KeyText("12"), "12");
    EXPECT_EQ(KeyText(" 7 "), "7");
    EXPECT_EQ(KeyText("2,5"), "2"); // CInt rounds halves to even
    EXPECT_EQ(errorOf([] { KeyText(""); }), 13);
    EXPECT_EQ(errorOf([] { KeyText("32768"); }), 6);
    EXPECT_EQ(DoubledQuotes("l'unità d'uso"), "l''unità d''uso");
    EXPECT_EQ(DoubledQuotes(""), "");
}
