#include "spares/EntryFields.h"

#include "runtime/VBFunctions.h"

namespace spares {

void digitsOnly(int& keyAscii)
{
    if (keyAscii != 8 && !vb::IsNumeric(vb::Variant(QString(QChar(keyAscii)))))
        keyAscii = 0;
}

int addRows(vb::Trap& trap, vb::ListBox* list, store::Recordset& rs, const QString& column)
{
    int rows = 0;
    while (!trap.ended() && !rs.Eof()) {
        ++rows;
        trap.step([&] { list->AddItem(rs.Fields(column).Value().toString()); });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
    return rows;
}

} // namespace spares
