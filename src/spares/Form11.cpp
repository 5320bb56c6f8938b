#include "spares/Form11.h"

#include "controls/ScreenKit.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "spares/InterventionCharts.h"

namespace spares {

using vb::Trap;
using vb::Variant;

namespace {

const QString ShowAll = QStringLiteral("Visualizza Tutto");

// Machines by cause, the load's order: by machine, then by the count of each cause.
const QString CausesStatement = QStringLiteral(
    "SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv, "
    "Count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
    "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
    "Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
    "Val(Tbl_Ricerca.Numerazione), Count(Tbl_Causa_Intervento.Causa_Interv) DESC;");

constexpr int GridTop = 1200;
constexpr int GridHeight = 4800;
constexpr int RowHeight = 315;

/// A row value as the grid shows it, by field or caption.
QString cell(vb::DataGrid* grid, const char* column)
{
    return grid->Columns(QString::fromUtf8(column)).Text();
}

} // namespace

Form11::Form11(QWidget* owner) : vb::Form(owner, QStringLiteral("Form11"), QStringLiteral("TIPOLOGIA INTERVENTI"))
{
    buildControls();
}

void Form11::buildControls()
{
    Move(0, 0, 14400, 9000);
    const vb::ScreenKit kit(this, {.field = RowHeight});

    // The filters of the top level.
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("Causa Intervento"), 120, 120, 3300, 780);
    DataCombo7 = kit.dataCombo(Frame1, "DataCombo7", Adodc9, "Adodc9", 120, 320, 3060);
    DataCombo7->bind(Adodc9, QStringLiteral("Causa_Interv"));
    DataCombo7->setText(ShowAll); // the design's text: every cause
    Txt_Search_Mod_Macc = kit.framedField(this, "Frame2", QStringLiteral("Modello Macchina"), "Txt_Search_Mod_Macc",
                                          3540, 120, 2700, 780, 320, &Frame2);
    Txt_Search_Destinazione = kit.framedField(this, "Frame3", QStringLiteral("Destinazione"), "Txt_Search_Destinazione",
                                              6360, 120, 2700, 780, 320, &Frame3);
    Cmd_Interventi_Macch =
        kit.button(this, "Cmd_Interventi_Macch", QStringLiteral("Macchine con più Interventi"), 9180, 240, 2760, 540);
    Cmd_Grafico = kit.button(this, "Cmd_Grafico", QStringLiteral("GRAFICO"), 12060, 240, 2160, 540);
    Txt_Case_Search = kit.hidden("Txt_Case_Search", QStringLiteral("0"));
    Txt_ID_NUM = kit.hidden("Txt_ID_NUM");

    // Machine and cause, the parts that went on them, when and where: each grid with its
    // count under it.
    auto level = [&](const char* grid, const char* source, const char* label, int left, int width, vb::Adodc*& adodc,
                     vb::Label*& count) {
        vb::DataGrid* g = kit.grid(this, grid, adodc, source, left, GridTop, width, GridHeight);
        count = kit.label(this, label, QString(), left, GridTop + GridHeight + 60, width);
        return g;
    };
    DataGrid1 = level("DataGrid1", "Adodc1", "Label1", 120, 5900, Adodc1, Label1);
    DataGrid2 = level("DataGrid2", "Adodc2", "Label2", 6140, 5000, Adodc2, Label2);
    DataGrid3 = level("DataGrid3", "Adodc3", "Label3", 11260, 2960, Adodc3, Label3);

    // The path of the selection, read only.
    Frame4 = kit.frame(this, "Frame4", QStringLiteral("DATI"), 120, GridTop + GridHeight + 420, 14100, 1140);
    int index = 0;
    auto data = [&](const char* labelName, const QString& caption, const char* name) {
        const int left = 120 + (index % 3) * 4680;
        const int top = 300 + (index / 3) * 400;
        ++index;
        kit.label(Frame4, labelName, caption, left, top + 30, 1200);
        vb::TextBox* t = kit.field(Frame4, name, left + 1260, top, 3300);
        t->setLocked(true);
        return t;
    };
    Txt_Modello = data("Label4", QStringLiteral("Modello:"), "Txt_Modello");
    txt_Causa = data("Label5", QStringLiteral("Causa:"), "txt_Causa");
    Txt_Ricambio = data("Label6", QStringLiteral("Ricambio:"), "Txt_Ricambio");
    Txt_Descrizione = data("Label7", QStringLiteral("Descrizione:"), "Txt_Descrizione");
    Txt_DATA = data("Label8", QStringLiteral("Data:"), "Txt_DATA");
    Txt_Destinazione = data("Label9", QStringLiteral("Destinazione:"), "Txt_Destinazione");

    DataCombo7->Change = [this] { DataCombo7_Change(); };
    Txt_Search_Destinazione->KeyUp = [this] { Txt_Search_Destinazione_KeyUp(); };
    Txt_Search_Mod_Macc->KeyUp = [this] { Txt_Search_Mod_Macc_KeyUp(); };
    Cmd_Interventi_Macch->Click = [this] { Cmd_Interventi_Macch_Click(); };
    Cmd_Grafico->Click = [this] { Cmd_Grafico_Click(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    DataGrid3->RowColChange = [this] { DataGrid3_RowColChange(); };
}

// ---- load and the top level ------------------------------------------------------------

void Form11::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] {
        Adodc9->setRecordSource(QStringLiteral(
            "SELECT Tbl_Causa_Intervento.ID_CAUSA, Tbl_Causa_Intervento.Causa_Interv From Tbl_Causa_Intervento GROUP "
            "BY Tbl_Causa_Intervento.ID_CAUSA, Tbl_Causa_Intervento.Causa_Interv Having "
            "(((Tbl_Causa_Intervento.Causa_Interv) <> '')) ORDER BY Tbl_Causa_Intervento.Causa_Interv;"));
        Adodc9->Refresh();
    });
    trap.step([&] { showTopLevel(CausesStatement); });
    trap.step([&] { Set_Causes_Grid(); });
}

void Form11::showTopLevel(const QString& statement)
{
    Adodc1->setRecordSource(statement);
    Adodc1->Refresh();
    DataGrid1->setDataSource(Adodc1);
}

void Form11::Set_Causes_Grid()
{
    Trap trap = Trap::ignoreAll();
    vb::setColumns(trap, DataGrid1,
                   {{QStringLiteral("Macchina"), 1500, true},
                    {QStringLiteral("Modello"), 1300, true},
                    {QStringLiteral("N°M"), 500, true},
                    {QStringLiteral("Causa"), 1500, true},
                    {QStringLiteral("N°C"), 500, true}});
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("Conteggio Cause: ") + QString::number(Adodc1->RecordCount())); });
}

void Form11::Show_Parts_Of_Cause()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataGrid2->setDataSource(Adodc2); });
    trap.step([&] { Adodc2->Refresh(); });
    vb::setColumns(trap, DataGrid2,
                   {{QStringLiteral("Macchina"), 0, true},
                    {QStringLiteral("Modello"), 0, true},
                    {QStringLiteral("Causa"), 0, true},
                    {QStringLiteral("Ricambio"), 1700, true},
                    {QStringLiteral("Descrizione"), 2400, true},
                    {QStringLiteral("N°"), 500, true}});
    trap.step(
        [&] { Label2->setCaption(QStringLiteral("Conteggio Interventi: ") + QString::number(Adodc2->RecordCount())); });
}

void Form11::Show_Parts_Of_Machine()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { DataGrid2->setDataSource(Adodc2); });
    trap.step([&] { Adodc2->Refresh(); });
    vb::setColumns(trap, DataGrid2,
                   {{QStringLiteral("Macchina"), 0, true},
                    {QStringLiteral("Modello"), 1300, true},
                    {QStringLiteral("Ricambio"), 1500, true},
                    {QStringLiteral("Descrizione"), 1900, true},
                    {QStringLiteral("Conteggio"), 700, true},
                    {QStringLiteral("Numerazione"), 0, true}});
    trap.step(
        [&] { Label2->setCaption(QStringLiteral("Conteggio Interventi: ") + QString::number(Adodc2->RecordCount())); });
}

void Form11::Clear_Level1()
{
    Txt_Modello->setText(QString());
    txt_Causa->setText(QString());
    Clear_Level2();
}

void Form11::Clear_Level2()
{
    Txt_Ricambio->setText(QString());
    Txt_Descrizione->setText(QString());
    Clear_Level3();
}

void Form11::Clear_Level3()
{
    Txt_DATA->setText(QString());
    Txt_Destinazione->setText(QString());
}

void Form11::DataCombo7_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Level1(); });
    trap.step([&] { Txt_Search_Mod_Macc->setText(QString()); });
    trap.step([&] { Txt_Search_Destinazione->setText(QString()); });
    trap.step([&] { Txt_Case_Search->setText(QStringLiteral("0")); });
    const QString text = vb::DoubledQuotes(DataCombo7->Text());
    const bool all = text == ShowAll;
    trap.step([&] {
        showTopLevel(all ? QStringLiteral(
                               "SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
                               "Tbl_Causa_Intervento.Causa_Interv, Count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA "
                               "FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON Tbl_Ricerca.ID_CAUSA = "
                               "Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                               "Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv ORDER BY "
                               "Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Val(Tbl_Ricerca.Numerazione);")
                         : QStringLiteral(
                               "SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
                               "Tbl_Causa_Intervento.Causa_Interv, Count(Tbl_Ricerca.ID_CAUSA) AS ConteggioDiID_CAUSA "
                               "FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON Tbl_Ricerca.ID_CAUSA = "
                               "Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                               "Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv HAVING "
                               "(((Tbl_Causa_Intervento.Causa_Interv)='") +
                               text +
                               QStringLiteral("')) ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                                              "Val(Tbl_Ricerca.Numerazione), Count(Tbl_Ricerca.ID_CAUSA) DESC;"));
    });
    trap.step([&] { Set_Causes_Grid(); });
    // The parts follow at once, of the cause or of all.
    if (all)
        trap.step([&] { txt_Causa->setText(DataCombo7->Text()); });
    trap.step([&] {
        const QString parts = QStringLiteral(
            "SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Ricambi, "
            "Tbl_Ricerca.Descrizione, Count(Tbl_Ricerca.Ricambi) AS ConteggioDiRicambi FROM Tbl_Ricerca INNER JOIN "
            "Tbl_Causa_Intervento ON Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY "
            "Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Ricambi, "
            "Tbl_Ricerca.Descrizione ORDER BY Count(Tbl_Ricerca.Ricambi) DESC;");
        const QString order = QStringLiteral("ORDER BY Count(Tbl_Ricerca.Ricambi) DESC;");
        Adodc2->setRecordSource(
            all ? parts
                : QString(parts).replace(order, QStringLiteral("HAVING (((Tbl_Causa_Intervento.Causa_Interv)='") +
                                                    text + QStringLiteral("')) ") + order));
    });
    trap.step([&] { Show_Parts_Of_Cause(); });
}

void Form11::newTopLevel(vb::TextBox* emptied, const char* mode, const std::function<QString()>& statement)
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Level1(); });
    trap.step([&] { DataCombo7->setText(QString()); });
    trap.step([&] { emptied->setText(QString()); });
    trap.step([&] { Txt_Case_Search->setText(QString::fromLatin1(mode)); });
    // Read only now: emptying the cause may have emptied the typed filter too.
    trap.step([&] { showTopLevel(statement()); });
}

void Form11::Txt_Search_Destinazione_KeyUp()
{
    // Emptying the cause runs its change, which empties this field as well: the first
    // key after a cause was chosen is lost, as it always was.
    newTopLevel(Txt_Search_Mod_Macc, "1", [this] {
        return QStringLiteral("SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
                              "Tbl_Causa_Intervento.Causa_Interv, Count(Tbl_Causa_Intervento.Causa_Interv) AS "
                              "ConteggioDiCausa_Interv FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                              "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, "
                              "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv, "
                              "Tbl_Ricerca.Destinazione HAVING (((Tbl_Ricerca.Destinazione) Like '%") +
               vb::DoubledQuotes(Txt_Search_Destinazione->Text()) +
               QStringLiteral("%')) ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Val(Tbl_Ricerca.Numerazione);");
    });
    Set_Causes_Grid();
}

void Form11::Txt_Search_Mod_Macc_KeyUp()
{
    newTopLevel(Txt_Search_Destinazione, "0", [this] {
        return QStringLiteral("SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, "
                              "Tbl_Causa_Intervento.Causa_Interv, Count(Tbl_Causa_Intervento.Causa_Interv) AS "
                              "ConteggioDiCausa_Interv FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                              "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, "
                              "Tbl_Ricerca.Modello, Tbl_Ricerca.Numerazione, Tbl_Causa_Intervento.Causa_Interv HAVING "
                              "(((Tbl_Ricerca.Modello) Like '") +
               vb::DoubledQuotes(Txt_Search_Mod_Macc->Text()) +
               QStringLiteral("%')) ORDER BY Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Val(Tbl_Ricerca.Numerazione);");
    });
    Set_Causes_Grid();
}

void Form11::Cmd_Interventi_Macch_Click()
{
    newTopLevel(Txt_Search_Mod_Macc, "2", [] { return RankingStatement(); });
    Trap trap = Trap::ignoreAll();
    vb::setColumns(trap, DataGrid1,
                   {{QStringLiteral("Interventi"), 900, true},
                    {QStringLiteral("Macchina"), 1700, true},
                    {QStringLiteral("Modello"), 1500, true},
                    {QStringLiteral("N°M"), 600, true},
                    {QStringLiteral("ID_NUM"), 0, true}});
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("Conteggio Interventi: ") + QString::number(Adodc1->RecordCount())); });
}

// ---- drilling down ---------------------------------------------------------------------

void Form11::DataGrid1_RowColChange()
{
    // The row's values go in as they are: an apostrophe fails the step and the grid
    // below stays as it was.
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Level1(); });
    const QString mode = Txt_Case_Search->Text();
    if (mode == QLatin1String("2")) {
        trap.step([&] { Txt_Modello->setText(cell(DataGrid1, "Modello")); });
        trap.step([&] { Txt_ID_NUM->setText(cell(DataGrid1, "ID_NUM")); });
        trap.step([&] {
            Adodc2->setRecordSource(
                QStringLiteral("SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Ricambi, "
                               "Tbl_Ricerca.Descrizione, Count(Tbl_Ricerca.Ricambi) AS ConteggioDiRicambi, "
                               "Tbl_Ricerca.Numerazione FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                               "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY "
                               "Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Ricerca.Ricambi, "
                               "Tbl_Ricerca.Descrizione, Tbl_Ricerca.Numerazione, Tbl_Ricerca.ID_NUM Having "
                               "(((Tbl_Ricerca.ID_NUM) = ") +
                vb::KeyText(Txt_ID_NUM->Text()) + QStringLiteral("))ORDER BY Count(Tbl_Ricerca.Ricambi) DESC;"));
        });
        trap.step([&] { Show_Parts_Of_Machine(); });
        return;
    }
    trap.step([&] { Txt_Modello->setText(cell(DataGrid1, "Modello")); });
    trap.step([&] { txt_Causa->setText(cell(DataGrid1, "Causa")); });
    trap.step([&] {
        const QString model = Txt_Modello->Text();
        const QString cause = txt_Causa->Text();
        if (mode == QLatin1String("1"))
            Adodc2->setRecordSource(
                QStringLiteral("SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, "
                               "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Count(Tbl_Ricerca.Ricambi) AS "
                               "ConteggioDiRicambi FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                               "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, "
                               "Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Ricambi, "
                               "Tbl_Ricerca.Descrizione, Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Destinazione "
                               "HAVING (((Tbl_Ricerca.Modello)='") +
                model + QStringLiteral("') AND ((Tbl_Causa_Intervento.Causa_Interv)='") + cause +
                QStringLiteral("') AND ((Tbl_Ricerca.Destinazione)like '%") +
                vb::DoubledQuotes(Txt_Search_Destinazione->Text()) +
                QStringLiteral("%'))ORDER BY Count(Tbl_Ricerca.Ricambi) DESC;"));
        else
            Adodc2->setRecordSource(
                QStringLiteral("SELECT Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, "
                               "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Count(Tbl_Ricerca.Ricambi) AS "
                               "ConteggioDiRicambi FROM Tbl_Ricerca INNER JOIN Tbl_Causa_Intervento ON "
                               "Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY Tbl_Ricerca.Macchina, "
                               "Tbl_Ricerca.Modello, Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Ricambi, "
                               "Tbl_Ricerca.Descrizione, Tbl_Causa_Intervento.Causa_Interv HAVING "
                               "(((Tbl_Ricerca.Modello)='") +
                model + QStringLiteral("') AND ((Tbl_Causa_Intervento.Causa_Interv)='") + cause +
                QStringLiteral("'))ORDER BY Count(Tbl_Ricerca.Ricambi) DESC;"));
    });
    trap.step([&] { Show_Parts_Of_Cause(); });
}

void Form11::DataGrid2_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Level2(); });
    trap.step([&] { Txt_Descrizione->setText(cell(DataGrid2, "Descrizione")); });
    trap.step([&] { Txt_Ricambio->setText(cell(DataGrid2, "Ricambio")); });
    const QString mode = Txt_Case_Search->Text();
    // By model and cause the dates keep the statement they had: the grid shows what it
    // showed before.
    bool changed = false;
    if (mode == QLatin1String("1")) {
        changed = trap.step([&] {
            Adodc3->setRecordSource(
                QStringLiteral("SELECT Tbl_Ricerca.Data, Tbl_Ricerca.Destinazione FROM Tbl_Ricerca INNER JOIN "
                               "Tbl_Causa_Intervento ON Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY "
                               "Tbl_Ricerca.Data, Tbl_Ricerca.Destinazione, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                               "Tbl_Causa_Intervento.Causa_Interv, Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, "
                               "Tbl_Causa_Intervento.Causa_Interv HAVING (((Tbl_Ricerca.Modello)='") +
                Txt_Modello->Text() + QStringLiteral("') AND ((Tbl_Ricerca.Ricambi)='") + Txt_Ricambio->Text() +
                QStringLiteral("') AND ((Tbl_Ricerca.Descrizione)='") + Txt_Descrizione->Text() +
                QStringLiteral("') AND ((Tbl_Causa_Intervento.Causa_Interv)='") + txt_Causa->Text() +
                QStringLiteral("'));"));
        });
    } else if (mode == QLatin1String("2")) {
        changed = trap.step([&] {
            Adodc3->setRecordSource(
                QStringLiteral("SELECT Tbl_Ricerca.Data, Tbl_Ricerca.Destinazione FROM Tbl_Ricerca INNER JOIN "
                               "Tbl_Causa_Intervento ON Tbl_Ricerca.ID_CAUSA = Tbl_Causa_Intervento.ID_CAUSA GROUP BY "
                               "Tbl_Ricerca.Data, Tbl_Ricerca.Destinazione, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                               "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Descrizione, Tbl_Ricerca.Numerazione HAVING "
                               "(((Tbl_Ricerca.Modello)='") +
                Txt_Modello->Text() + QStringLiteral("') AND ((Tbl_Ricerca.Ricambi)='") + Txt_Ricambio->Text() +
                QStringLiteral("') AND ((Tbl_Ricerca.Descrizione)='") + Txt_Descrizione->Text() +
                QStringLiteral("') AND ((Tbl_Ricerca.Numerazione)='") + cell(DataGrid2, "Numerazione") +
                QStringLiteral("'));"));
        });
    }
    if (changed)
        trap.step([&] { Adodc3->Refresh(); });
    trap.step([&] { DataGrid3->setDataSource(Adodc3); });
    vb::setColumns(trap, DataGrid3,
                   {{QStringLiteral("Data"), 1200, true}, {QStringLiteral("Destinazione"), 1700, true}});
    trap.step([&] {
        Label3->setCaption(QStringLiteral("Conteggio Destinazioni: ") + QString::number(Adodc3->RecordCount()));
    });
}

void Form11::DataGrid3_RowColChange()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Level3(); });
    trap.step([&] { Txt_DATA->setText(cell(DataGrid3, "Data")); });
    trap.step([&] { Txt_Destinazione->setText(cell(DataGrid3, "Destinazione")); });
}

// ---- beyond the old screen: the charts -------------------------------------------------------

void Form11::Cmd_Grafico_Click()
{
    Trap trap = Trap::ignoreAll();
    const bool ranked = Txt_Case_Search->Text() == QLatin1String("2");
    std::vector<ChartFigures> figures(3);
    trap.step([&] {
        if (ranked) {
            vb::Adodc causes(nullptr, QStringLiteral("Causes"));
            causes.setRecordSource(CausesStatement);
            causes.Refresh();
            figures[0] = CausesChart(causes, {}, {}, {});
        } else {
            // The machine chosen in the grid, or every machine of the list.
            const bool chosen = DataGrid1->Row() >= 0 && !Txt_Modello->Text().isEmpty();
            figures[0] = chosen ? CausesChart(*Adodc1, cell(DataGrid1, "Macchina"), cell(DataGrid1, "Modello"),
                                              cell(DataGrid1, "N°M"))
                                : CausesChart(*Adodc1, {}, {}, {});
        }
    });
    trap.step([&] {
        if (ranked) {
            figures[1] = RankingChart(*Adodc1);
        } else {
            vb::Adodc ranking(nullptr, QStringLiteral("Ranking"));
            ranking.setRecordSource(RankingStatement());
            ranking.Refresh();
            figures[1] = RankingChart(ranking);
        }
    });
    trap.step([&] { figures[2] = MonthsChart(); });
    if (m_charts)
        m_charts->close();
    m_charts = new InterventionCharts(this, std::move(figures), ranked ? 1 : 0);
    m_charts->show();
}

VELMORA_SCREEN(Form11);

} // namespace spares
