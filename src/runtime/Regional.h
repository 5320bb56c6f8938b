#pragma once
/// @file Regional.h
/// The Italian regional settings the program was written for, and the text rules that
/// follow from them: how numbers and dates are printed by CStr and read back by CDbl
/// and CDate. The program never inspects the settings; they are fixed here.

#include <QString>
#include <QStringView>

#include <optional>

namespace vb::regional {

constexpr QChar DecimalSeparator = u',';
constexpr QChar ThousandsSeparator = u'.';
constexpr QChar DateSeparator = u'/';
/// The Italian time separator: "9.05.00", also what ":" becomes in a Format pattern.
constexpr QChar TimeSeparator = u'.';

/// Italian names: month 1..12, weekday 1..7 with 1 = Sunday (VB's numbering).
QString monthName(int month, bool abbreviated = false);
QString dayName(int vbWeekday, bool abbreviated = false);

/// A double as CStr prints it: up to 15 significant digits, decimal comma, no
/// thousands separator, "1E+15" / "1E-05" outside the plain range.
QString numberText(double value);

/// Text read as a number under Italian settings, as CDbl reads it: blanks around,
/// a sign (or brackets), thousands dots (ignored), one decimal comma, an exponent,
/// &H / &O numbers. "1.5" is fifteen. nullopt when the text is not a number.
std::optional<double> parseNumber(QStringView text);

/// Text read as a date and/or time, as CDate reads it: "3/7/2016", "03-07-2016",
/// "15,11,2026", "3 luglio 2016", "2016/07/03", "3/7" (this year), times "9.5.0",
/// "09:05:00", "9.05 PM". A day and month that do not fit are tried the other way round,
/// as VB does. The result is a serial date; nullopt when the text is not a date.
std::optional<double> parseDateTime(QStringView text);

/// A serial date as CStr prints it: "dd/mm/yyyy", " hh.nn.ss" added when there is a
/// time; the time alone when the day is 30/12/1899 (serial 0 to 1).
QString dateText(double serial);

/// The decimal digits of |value| rounded half away from zero to `decimals` places,
/// from its 15-significant-digit form (so 1.005 rounds to 1.01, as VB's Format does).
struct RoundedDigits
{
    QString integer;  ///< no leading zeros; empty when the integer part is 0
    QString fraction; ///< exactly `decimals` digits
    bool isZero() const;
};
RoundedDigits roundDigits(double value, int decimals);

} // namespace vb::regional
