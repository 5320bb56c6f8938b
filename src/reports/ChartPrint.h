#pragma once
/// @file ChartPrint.h
/// The print of the whole wall chart, "Rpt_Planned": one line per row of Tbl_Planned and
/// one column per week, 1 to 145. So many weeks cannot stand side by side, so the chart
/// prints in slices of weeks on landscape pages, one slice after the other, each page
/// repeating the machine columns and the week numbers of its slice.

#include "reports/ReportEngine.h"
#include "reports/ReportLayout.h"

namespace reports {

/// The weeks of the chart and how many print side by side on one page.
inline constexpr int ChartWeeks = 145;
inline constexpr int ChartWeeksPerPage = 15;

/// The design of the chart print: landscape, with its report header (title and today's
/// date in Label2) and page footer; the page header and the detail shown are those of
/// the first slice (weeks 1 to 15). LayOutChart makes the others.
ReportLayout ChartLayout();

/// Whether a design is the chart print (laid out by LayOutChart, not by LayOut).
bool IsChartLayout(const ReportLayout& layout);

/// Lays the chart out slice by slice and puts the pages one after the other: the first
/// slice opens with the report header, each slice starts a new page. Rows are fed as the
/// chart's columns: Macchina, Modello, Numerazione and the weeks "1" to "145". The run-time
/// changes made to `base` (the date of Label2) carry over.
Document LayOutChart(const ReportLayout& base, const ReportData& data, TextMeasurer& measurer);

} // namespace reports
