#include "reports/LayoutCatalogue.h"

#include "reports/ChartPrint.h"

namespace reports {

namespace {
using Factory = ReportLayout (*)();
constexpr Factory Factories[] = {
    layouts::DataReport1,  layouts::DataReport2,  layouts::DataReport3,  layouts::DataReport4,  layouts::DataReport5,
    layouts::DataReport6,  layouts::DataReport7,  layouts::DataReport8,  layouts::DataReport9,  layouts::DataReport10,
    layouts::DataReport11, layouts::DataReport12, layouts::DataReport13, layouts::DataReport14, layouts::DataReport15,
    layouts::DataReport16, layouts::DataReport17, layouts::DataReport18, layouts::DataReport19, layouts::DataReport20,
    layouts::DataReport21,
};
constexpr int LayoutCount = sizeof(Factories) / sizeof(Factories[0]);
} // namespace

std::optional<ReportLayout> MakeLayout(const QString& name)
{
    if (name.compare(QLatin1String("Rpt_Planned"), Qt::CaseInsensitive) == 0)
        return ChartLayout();
    const QString prefix = QStringLiteral("DataReport");
    if (!name.startsWith(prefix, Qt::CaseInsensitive))
        return std::nullopt;
    bool ok = false;
    const int n = name.mid(prefix.size()).toInt(&ok);
    if (!ok || n < 1 || n > LayoutCount || name.mid(prefix.size()) != QString::number(n))
        return std::nullopt;
    return Factories[n - 1]();
}

QStringList LayoutNames()
{
    QStringList names;
    for (int i = 1; i <= LayoutCount; ++i)
        names << QStringLiteral("DataReport%1").arg(i);
    return names;
}

} // namespace reports
