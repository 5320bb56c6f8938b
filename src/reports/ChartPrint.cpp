#include "reports/ChartPrint.h"

#include "reports/LayoutBuilder.h"

#include <algorithm>

namespace reports {

using namespace design;
using S = Section;

namespace {

// Offsets on the landscape page: the machine columns, then the weeks of the slice.
constexpr int MachineLeft = 0;
constexpr int ModelLeft = 2200;
constexpr int NumberLeft = 3900;
constexpr int FirstWeekLeft = 4460;
constexpr int WeekWidth = 780;
constexpr int DateLeft = 13600;
constexpr int PageTextWidth = 2836;

/// The design with the weeks from `firstWeek` in its page header and detail. Every slice
/// is built whole, report header included, so its controls are named alike.
ReportLayout sliceLayout(int firstWeek)
{
    const int lastWeek = std::min(firstWeek + ChartWeeksPerPage - 1, ChartWeeks);
    Line heading{L(QStringLiteral("MACCHINA"), MachineLeft), L(QStringLiteral("MODELLO"), ModelLeft),
                 L(QStringLiteral("N°"), NumberLeft)};
    Line detail{F("Macchina", MachineLeft).grow(), F("Modello", ModelLeft).grow(), F("Numerazione", NumberLeft)};
    for (int week = firstWeek; week <= lastWeek; ++week) {
        const int left = FirstWeekLeft + (week - firstWeek) * WeekWidth;
        heading.push_back(L(QString::number(week), left).centre().w(WeekWidth));
        detail.push_back(F(QByteArray::number(week).constData(), left).centre().grow().w(WeekWidth));
    }
    Builder builder("Rpt_Planned", QStringLiteral("PLAN MAINTENANCE"));
    builder.landscape();
    const int full = builder.build().reportWidth;
    return builder.pageFooter(true, true, full - PageTextWidth)
        .band(S::ReportHeader,
              {{L(QStringLiteral("PLANNED MANUTENZIONI"), 2835).centre(), L({}, DateLeft).as("Label2")}})
        .band(S::PageHeader, BandSpec{heading}.rules())
        .band(S::Detail, BandSpec{detail}.rules())
        .build();
}

} // namespace

ReportLayout ChartLayout()
{
    return sliceLayout(1);
}

bool IsChartLayout(const ReportLayout& layout)
{
    return layout.name.compare(QLatin1String("Rpt_Planned"), Qt::CaseInsensitive) == 0;
}

Document LayOutChart(const ReportLayout& base, const ReportData& data, TextMeasurer& measurer)
{
    Document doc;
    doc.pageWidth = base.pageWidth;
    doc.pageHeight = base.pageHeight;
    // An empty chart prints its first slice only: the heading and no lines.
    const int lastFirst = data.rows.empty() ? 1 : ChartWeeks;
    for (int first = 1; first <= lastFirst; first += ChartWeeksPerPage) {
        ReportLayout slice = base;
        const ReportLayout made = sliceLayout(first);
        slice.band(S::PageHeader) = made.band(S::PageHeader);
        slice.band(S::Detail) = made.band(S::Detail);
        if (first > 1)
            slice.band(S::ReportHeader).visible = false;
        Document part = LayOut(slice, data, measurer);
        for (Page& page : part.pages)
            doc.pages.push_back(std::move(page));
    }
    return doc;
}

} // namespace reports
