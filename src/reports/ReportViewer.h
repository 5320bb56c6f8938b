#pragma once
/// @file ReportViewer.h
/// Showing a document: the one function every print command calls, the preview window
/// (pages, zoom, print, save as PDF), and what the automation driver reads of it.
///
/// A show follows four steps: the earlier instance of the document is closed; the
/// statement runs and its rows become the document's data (child rows from "Dati");
/// the run-time texts and bindings are set (Label2 of the report header gets the present
/// date and time; the week labels of DataReport12 their weeks; the caller's own changes
/// after those); the preview opens modeless, owned by the main screen and placed in its
/// working area.

#include "reports/ReportData.h"
#include "reports/ReportEngine.h"
#include "reports/ReportLayout.h"

#include <QRect>

#include <functional>
#include <optional>

class QWidget;

namespace reports {

enum class Placement {
    WorkArea,      ///< in the main screen's working area (the usual place)
    ScreenCentred, ///< nine tenths of the screen, centred (the week plan, one supplier)
};

struct ShowOptions
{
    /// The caller's run-time changes: Label1 texts, captions, bindings.
    std::function<void(ReportLayout&)> setup;
    Placement placement = Placement::WorkArea;
};

/// What the main screen tells the reports: the owner of their windows and its working
/// area in twips (x: where the menu ends, y: the top of the menu, width and height of
/// the area). The window then goes to left 2200, top y, width + 300, height - 200.
struct Host
{
    std::function<QWidget*()> owner;
    std::function<QRect()> workArea;
};
void setHost(Host host);

/// Shows report `name` on a Jet statement, flat or SHAPE. The statement's errors reach
/// the caller as VBError, after the earlier instance has been closed. An unknown report
/// raises error 9.
void ShowReport(const QString& name, const QString& statement, const ShowOptions& options = {});
/// The same with the rows already read.
void ShowReport(const QString& name, ReportData data, const ShowOptions& options = {});

/// Closes (unloads) a shown report; nothing when it is not shown.
void UnloadReport(const QString& name);
/// Hides a shown report's window and keeps it loaded.
void HideReport(const QString& name);
bool IsReportLoaded(const QString& name);
bool IsReportVisible(const QString& name);

struct LaidOutReport
{
    bool visible = false;
    std::vector<std::vector<PlacedText>> pages;
};
/// The pages of a loaded report as printed text in twips; nullopt when not loaded.
std::optional<LaidOutReport> LaidOutPages(const QString& name);
/// Writes a loaded report's pages as a PDF. Not loaded: error 9; a file that cannot be
/// written: error 75.
void WritePdf(const QString& name, const QString& path);

/// The laid-out document of a loaded report (tests, benchmarks); nullptr when not loaded.
const Document* ReportDocument(const QString& name);
/// The preview window of a loaded report; nullptr when not loaded.
QWidget* ReportWindow(const QString& name);

} // namespace reports
