#pragma once
/// @file VBFunctions.h
/// VBA's functions as the program and its SQL use them, under Italian settings.

#include "runtime/Variant.h"

namespace vb {

Variant CStr(const Variant& v);
Variant CDbl(const Variant& v);
Variant CInt(const Variant& v);
Variant CLng(const Variant& v);
Variant CDate(const Variant& v);
bool IsNumeric(const Variant& v);
bool IsDate(const Variant& v);
bool IsNull(const Variant& v);
/// VB's Date: today, from the program's clock.
Variant Today();

/// Val: the number at the start of a text; blanks anywhere skipped, "." the decimal
/// point whatever the locale, &H / &O prefixes; 0 when none. Null raises 94.
double Val(const Variant& v);

/// Format(value, pattern) with Italian separators: named formats ("Standard",
/// "General Number", "Fixed", "Short Date", "Long Time", ...), number patterns
/// ("##,##0.00", "#,###.00", "##.0"), date patterns ("dd/mm/yyyy", "ww", "hh:mm:ss").
/// Null gives Null, Empty gives "".
Variant Format(const Variant& v, const QString& pattern = {});

/// The week number of "ww" with Sunday as first day and the week of 1 January as week 1.
int WeekOfYear(const QDate& d);

/// Italian short date "dd/mm/yyyy" of a date.
QString ShortDate(const QDate& d);

Variant Left(const Variant& s, int n);
Variant Right(const Variant& s, int n);
Variant Mid(const Variant& s, int start, int length = -1);
Variant Trim(const Variant& s);
Variant UCase(const Variant& s);
Variant LCase(const Variant& s);
Variant Len(const Variant& s);
Variant Replace(const Variant& s, const QString& find, const QString& with);

/// VB's "&": Null counts as "" unless both are Null; numbers through CStr.
Variant Concat(const Variant& a, const Variant& b);

/// A key held as text on a screen, on its way into a statement: read as a 16-bit
/// Integer (CInt: empty text is error 13, above 32767 overflow 6), written back as digits.
QString KeyText(const QString& text);

/// Text for a statement between apostrophes: each apostrophe doubled.
QString DoubledQuotes(QString text);

} // namespace vb
