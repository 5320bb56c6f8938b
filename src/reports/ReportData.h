#pragma once
/// @file ReportData.h
/// What a document is fed: rows of values by column name, each parent row optionally
/// carrying its child rows (the member "Dati" of a SHAPE result). The engine reads
/// only this, so it can be fed without a store.

#include "runtime/Variant.h"

#include <QStringList>

#include <vector>

namespace store {
class Recordset;
}

namespace reports {

class ReportData
{
public:
    using Values = std::vector<vb::Variant>;
    struct Row
    {
        Values values;
        std::vector<Values> children;
    };

    QStringList columns;      ///< of the parent (or flat) rows
    QStringList childColumns; ///< of the child rows; empty for a flat result
    std::vector<Row> rows;

    /// Position of a column (case-insensitive, as Jet names are); -1 when missing.
    int column(const QString& name) const { return find(columns, name); }
    int childColumn(const QString& name) const { return find(childColumns, name); }

    /// Rows of a recordset from its current position to its end; for a SHAPE result
    /// (`shaped`) the child rows of each parent come from the member `member`.
    static ReportData fromRecordset(store::Recordset& rs, bool shaped, const QString& member = QStringLiteral("Dati"));

private:
    static int find(const QStringList& list, const QString& name)
    {
        for (int i = 0; i < list.size(); ++i)
            if (list[i].compare(name, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    }
};

} // namespace reports
