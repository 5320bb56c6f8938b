#include "spares/EntryFields.h"

#include "runtime/VBFunctions.h"

namespace spares {

void digitsOnly(int& keyAscii)
{
    if (keyAscii != 8 && !vb::IsNumeric(vb::Variant(QString(QChar(keyAscii)))))
        keyAscii = 0;
}

void addRows(vb::Trap& trap, vb::ListBox* list, store::Recordset& rs, const QString& column)
{
    while (!trap.ended() && !rs.Eof()) {
        trap.step([&] { list->AddItem(rs.Fields(column).Value().toString()); });
        if (!trap.step([&] { rs.MoveNext(); }))
            break;
    }
}

} // namespace spares
