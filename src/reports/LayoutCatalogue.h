#pragma once
/// @file LayoutCatalogue.h
/// The 21 printed documents of the program, DataReport1 to DataReport21.

#include "reports/ReportLayout.h"

#include <QStringList>

#include <optional>

namespace reports {

/// A fresh copy of the named design ("DataReport7", case-insensitive; also the chart's
/// "Rpt_Planned"); nullopt when the program has no such document.
std::optional<ReportLayout> MakeLayout(const QString& name);
/// "DataReport1" to "DataReport21".
QStringList LayoutNames();

namespace layouts {
// Orders, operators, spare parts lists and job sheets.
ReportLayout DataReport1();
ReportLayout DataReport2();
ReportLayout DataReport3();
ReportLayout DataReport4();
ReportLayout DataReport5();
ReportLayout DataReport6();
ReportLayout DataReport7();
// Machines, parts replaced, notes, plan, suppliers and history.
ReportLayout DataReport8();
ReportLayout DataReport9();
ReportLayout DataReport10();
ReportLayout DataReport11();
ReportLayout DataReport12();
ReportLayout DataReport13();
ReportLayout DataReport14();
// Consumption, presence and the note prints.
ReportLayout DataReport15();
ReportLayout DataReport16();
ReportLayout DataReport17();
ReportLayout DataReport18();
ReportLayout DataReport19();
ReportLayout DataReport20();
ReportLayout DataReport21();
} // namespace layouts

} // namespace reports
