// Reading a store recordset into report data: kept apart so that the engine and its
// tests link without the store.
#include "reports/ReportData.h"
#include "reports/ReportViewer.h"
#include "store/DataStore.h"

namespace reports {

namespace {
QStringList columnNames(store::Recordset& rs)
{
    QStringList names;
    for (const store::Column& c : rs.Columns())
        names << c.name;
    return names;
}

ReportData::Values currentValues(store::Recordset& rs, int count)
{
    ReportData::Values v;
    v.reserve(count);
    for (int i = 0; i < count; ++i)
        v.push_back(rs.Fields(i).Value());
    return v;
}
} // namespace

ReportData ReportData::fromRecordset(store::Recordset& rs, bool shaped, const QString& member)
{
    ReportData data;
    if (!rs.isOpen())
        return data;
    data.columns = columnNames(rs);
    const int n = static_cast<int>(data.columns.size());
    for (; !rs.Eof(); rs.MoveNext()) {
        Row row;
        row.values = currentValues(rs, n);
        if (store::Recordset* child = shaped ? rs.Child(member) : nullptr) {
            if (data.childColumns.isEmpty())
                data.childColumns = columnNames(*child);
            const int cn = static_cast<int>(data.childColumns.size());
            for (; !child->Eof(); child->MoveNext())
                row.children.push_back(currentValues(*child, cn));
        }
        data.rows.push_back(std::move(row));
    }
    return data;
}

void ShowReport(const QString& name, const QString& statement, const ShowOptions& options)
{
    // The earlier instance goes first, even when the statement then fails.
    UnloadReport(name);
    store::Recordset rs;
    rs.Open(statement);
    const bool shaped = statement.trimmed().startsWith(QLatin1String("SHAPE"), Qt::CaseInsensitive);
    ShowReport(name, ReportData::fromRecordset(rs, shaped), options);
}

} // namespace reports
