#include "spares/EntryFields.h"

#include "runtime/MsgBox.h"
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

bool confirmCategoryChange(const QString& line, const QString& typed)
{
    const QString prompt =
        line != typed
            ? QStringLiteral("Il Ricambio [") + line + QStringLiteral("] Sta per essere modificato con [") + typed +
                  QStringLiteral("] Vuoi Procedere??")
            : QStringLiteral("Stai per modificare i dati del Ricambio [") + line + QStringLiteral("] Vuoi Procedere??");
    return vb::MsgBox(prompt, vb::mb::YesNo + vb::mb::Question,
                      QStringLiteral("Modifica Ricambio **") + line + QStringLiteral("**")) != vb::answer::No;
}

} // namespace spares
