#pragma once
/// @file DriverReports.h
/// The driver's report commands: showreport, report, pdf.

#include <QString>

namespace shell {

/// Shows report @p name on a Jet statement (flat or SHAPE) as a screen's print does.
void driverShowReport(const QString& name, const QString& statement);
/// The laid-out pages of a shown report as JSON: {"visible", "pages": [[{x, y, text}]]}.
QString driverReportPages(const QString& name);
/// Writes a shown report's pages to a PDF file.
void driverReportPdf(const QString& name, const QString& path);

} // namespace shell
