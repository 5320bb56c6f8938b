#include "spares/Form17.h"

#include "controls/ScreenKit.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace spares {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;

namespace {

const QString ScreenName = QStringLiteral("Form17");
const QString ListStatement = QStringLiteral("SELECT * From Tbl_Fornitori order by Fornitore");
const QString PrintOne = QStringLiteral("Stampa Questo Fornitore");
const QString PrintAll = QStringLiteral("Stampa Tutti Fornitori");
const QString SaveAll = QStringLiteral("Salva in Txt Tutti Fornitori");

// The card in two columns of fields within the frame, in twips: the whole screen fits
// the main screen's working area of a small display.
constexpr int LabelWidth = 1800;
constexpr int FieldWidth = 2460;
constexpr int ColumnStep = 4440;
constexpr int FieldTop = 300;
constexpr int RowStep = 405;
constexpr int RowsPerColumn = 6;
constexpr int RowHeight = 315;
constexpr int ButtonHeight = 375;

/// The box of a grid read with no data behind it (Cmd_Edit and the row selection).
void noDataBox()
{
    vb::MsgBox(QStringLiteral("Non è stato selezionato nessun Dato!"), vb::mb::Critical,
               QStringLiteral("DATI MANCANTI!"));
}

} // namespace

Form17::Form17(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("STAMPA DISTINTE"))
{
    buildControls();
}

void Form17::buildControls()
{
    Move(0, 0, 9360, 7800);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    DataGrid1 = kit.grid(this, "DataGrid1", Adodc1, "Adodc1", 120, 120, 9000, 2880);
    Label1 = kit.label(this, "Label1", QStringLiteral("Conteggio Fornitori:"), 120, 3060, 5000);
    Txt_Posizione = kit.hidden("Txt_Posizione");

    Frame1 = kit.frame(this, "Frame1", QStringLiteral("FORNITORI"), 120, 3360, 9000, 2820);
    txtID_FORNITORE = new vb::TextBox(Frame1, QStringLiteral("txtID_FORNITORE"));
    txtID_FORNITORE->setVisible(false);
    int index = 0;
    auto row = [&](const char* labelName, const char* caption, const char* fieldName, vb::Label*& label) {
        const int left = 120 + index / RowsPerColumn * ColumnStep;
        const int top = FieldTop + index % RowsPerColumn * RowStep;
        ++index;
        label = kit.label(Frame1, labelName, QString::fromUtf8(caption), left, top + 30, LabelWidth);
        return kit.field(Frame1, fieldName, left + LabelWidth + 60, top, FieldWidth);
    };
    txtFornitore = row("Label2", "Fornitore:", "txtFornitore", Label2);
    txtNome_Soceta = row("Label3", "Nome_Società:", "txtNome_Soceta", Label3);
    txtIVA_COD = row("Label4", "Part_IVA/Cod_Fisc:", "txtIVA_COD", Label4);
    txtCitta = row("Label5", "Citta/Paese:", "txtCitta", Label5);
    txtVia = row("Label6", "Via:", "txtVia", Label6);
    txtCAP = row("Label7", "CAP:", "txtCAP", Label7);
    txtProv = row("Label8", "Provincia:", "txtProv", Label8);
    txtTel = row("Label9", "Tel:", "txtTel", Label9);
    txtFax = row("Label10", "Fax:", "txtFax", Label10);
    txtEmail = row("Label11", "Email:", "txtEmail", Label11);
    txtUrl = row("Label12", "Url:", "txtUrl", Label12);

    // Two rows of three commands.
    auto button = [&](const char* name, const QString& caption, int column, int top) {
        return kit.button(this, name, caption, 120 + column * 3030, top, 2940);
    };
    Cmd_Add = button("Cmd_Add", QStringLiteral("INSERISCI"), 0, 6300);
    Cmd_Edit = button("Cmd_Edit", vb::caption::Edit, 1, 6300);
    Cmd_Edit->setEnabled(false); // a row selection or INSERISCI enables it
    Cmd_Delete = button("Cmd_Delete", QStringLiteral("ELIMINA"), 2, 6300);
    // The design's captions of the save and the print; the load replaces both at once.
    Cmd_Save = button("Cmd_Save", QStringLiteral("Salva in Txt Questo Cliente"), 0, 6780);
    Cmd_Print = button("Cmd_Print", QStringLiteral("Stampa Questo Cliente"), 1, 6780);
    Command1 = button("Command1", QStringLiteral("RESET"), 2, 6780);

    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Command1->Click = [this] { Command1_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Save->Click = [this] { Cmd_Save_Click(); };
}

std::vector<Form17::CardField> Form17::cardFields() const
{
    return {{txtID_FORNITORE, "ID_FORNITORE"},
            {txtFornitore, "Fornitore"},
            {txtNome_Soceta, "Nome_Soceta"},
            {txtIVA_COD, "Part_IVA/Cod_Fisc"},
            {txtCitta, "Citta/Paese"},
            {txtVia, "Via"},
            {txtCAP, "CAP"},
            {txtProv, "Provincia"},
            {txtTel, "Tel"},
            {txtFax, "Fax"},
            {txtEmail, "Email"},
            {txtUrl, "Url"}};
}

// ---- load and list ------------------------------------------------------------------

void Form17::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] { Show_Suppliers(); });
    trap.step([&] { Cmd_Save->setCaption(SaveAll); });
    trap.step([&] { Cmd_Print->setCaption(PrintAll); });
}

void Form17::Show_Suppliers()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        Adodc1->setRecordSource(ListStatement);
        Adodc1->Refresh();
    });
    trap.step([&] { DataGrid1->setDataSource(Adodc1); });
    // Widths and captions go by position in the table's order: the name, the company and,
    // under "TEL", position 3, which is Part_IVA/Cod_Fisc. The rest of the card shows only
    // in the fields.
    static const char* const captions[] = {"ID", "FORNITORE", "SOCIETA'", "TEL"};
    for (int i = 0; i < 12; ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid1->Columns(i);
            c.setWidth(i == 1 || i == 2 ? 3500 : i == 3 ? 1600 : 0);
            c.setLocked(i < 3);
            if (i < 4)
                c.setCaption(QString::fromLatin1(captions[i]));
        });
    }
    trap.step(
        [&] { Label1->setCaption(QStringLiteral("Conteggio Fornitori: ") + QString::number(Adodc1->RecordCount())); });
}

void Form17::Clear_Supplier_Fields()
{
    for (const CardField& f : cardFields())
        f.field->setText(QString());
}

QString Form17::gridCell(const QString& column) const
{
    if (DataGrid1->Row() < 0)
        throw vb::VBError(err::GridDataAccess);
    return DataGrid1->Columns(column).Text();
}

// ---- the selection of a row ---------------------------------------------------------

void Form17::DataGrid1_RowColChange()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.on(err::GridDataAccess, noDataBox);
    trap.step([&] { Clear_Supplier_Fields(); });
    // From here the print is of this supplier, until Command1 reloads the screen.
    trap.step([&] { Cmd_Print->setCaption(PrintOne); });
    std::int16_t id = 0;
    trap.step([&] { id = DataGrid1->Columns(QStringLiteral("ID")).Value().toInteger(); });
    store::Recordset rs;
    trap.step(
        [&] { rs.Open(QStringLiteral("SELECT * FROM Tbl_Fornitori WHERE ID_FORNITORE = ") + QString::number(id)); });
    bool found = false;
    trap.step([&] { found = !rs.Eof(); });
    if (found) {
        // An empty column leaves its field as the clearing left it.
        for (const CardField& f : cardFields())
            trap.step([&] { f.field->setText(rs.Fields(QString::fromLatin1(f.column)).Value()); });
        trap.step([&] { Cmd_Edit->setEnabled(true); });
    }
    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid1->Row())); });
}

// ---- insert, save, delete -------------------------------------------------------------

void Form17::Cmd_Add_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Clear_Supplier_Fields(); });
    trap.step([&] {
        Cmd_Edit->setCaption(vb::caption::Save);
        Cmd_Edit->setEnabled(true);
        Cmd_Delete->setEnabled(false);
        Cmd_Add->setEnabled(false);
    });
}

void Form17::Cmd_Edit_Click()
{
    Trap trap{{err::InvalidUseOfNull}, Trap::ShowBox};
    trap.on(err::GridDataAccess, noDataBox);

    if (txtFornitore->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Devi Inserire il Nome Fornitore"), vb::mb::Exclamation,
                   QStringLiteral("MANCANZA DATI"));
        return;
    }
    if (txtNome_Soceta->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Devi Inserire il Nome Società"), vb::mb::Exclamation,
                   QStringLiteral("MANCANZA DATI"));
        return;
    }

    // The eleven columns besides the key, each from its field.
    auto writeCard = [&](store::Recordset& rs) {
        const auto fields = cardFields();
        for (auto f = fields.begin() + 1; f != fields.end(); ++f)
            trap.step([&] { rs.Fields(QString::fromLatin1(f->column)) = f->field->Text(); });
    };

    if (Cmd_Edit->Caption() == vb::caption::Save) {
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Fornitori")); });
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { txtID_FORNITORE->setText(rs.Fields(QStringLiteral("ID_FORNITORE")).Value()); });
            writeCard(rs);
            trap.step([&] { rs.UpdateBatch(); });
        }
        if (trap.ended())
            return;
        Cmd_Edit->setCaption(vb::caption::Edit);
        Cmd_Delete->setEnabled(true);
        Cmd_Add->setEnabled(true);
        trap.step([&] { reopen(true); });
        return;
    }

    // An edit of the selected supplier: the name in the list is the one before the edit.
    QString old;
    trap.step([&] { old = gridCell(QStringLiteral("FORNITORE")); });
    if (trap.ended())
        return;
    const QString name = txtFornitore->Text();
    const QString prompt =
        old != name
            ? QStringLiteral("Il Fornitore [") + old + QStringLiteral("] Sta per essere modificato con [") + name +
                  QStringLiteral("] Vuoi Procedere??")
            : QStringLiteral("Stai per modificare i dati del Fornitore [") + old + QStringLiteral("] Vuoi Procedere??");
    if (vb::MsgBox(prompt, vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("Modifica Fornitore **") + old + QStringLiteral("**")) != vb::answer::Yes)
        return;

    QString id;
    trap.step([&] { id = vb::KeyText(txtID_FORNITORE->Text()); });
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Fornitori where ID_FORNITORE =") + id); });
        writeCard(rs);
        trap.step([&] { rs.UpdateBatch(); });
    }
    // The order lines keep a copy of the name: every edit rewrites it, changed or not.
    // Lines with no supplier key keep the text typed on them.
    const QString quotedName = vb::DoubledQuotes(name);
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Historian_Orders SET Tbl_Historian_Orders.Fornitore = '") + quotedName +
                   QStringLiteral("' WHERE ((Tbl_Historian_Orders.ID_FORNITORE = ") + id + QStringLiteral("))"));
    });
    trap.step([&] {
        store::Run(QStringLiteral("UPDATE Tbl_Order SET Tbl_Order.Fornitore = '") + quotedName +
                   QStringLiteral("' WHERE ((Tbl_Order.ID_FORNITORE = ") + id + QStringLiteral("))"));
    });
    trap.step([&] { reopen(true); });
}

void Form17::Cmd_Delete_Click()
{
    Trap trap = Trap::ignoreAll();
    if (txtID_FORNITORE->Text().isEmpty()) {
        vb::MsgBox(QStringLiteral("Non è stato selezionato nessun dato!"), vb::mb::Exclamation,
                   QStringLiteral("NESSUN Fornitore SELEZIONATO"));
        return;
    }
    if (vb::MsgBox(QStringLiteral("Vuoi Veramente eliminare il Fornitore selezionato?"),
                   vb::mb::YesNo + vb::mb::Question,
                   QStringLiteral("Eliminazione Fornitore **") + txtFornitore->Text() + QStringLiteral("**")) !=
        vb::answer::Yes)
        return;
    // No cascade: order lines keep the key and the name of a supplier that is gone.
    trap.step([&] {
        store::Run(QStringLiteral("Delete * from Tbl_Fornitori WHERE ID_FORNITORE  = ") +
                   vb::KeyText(txtID_FORNITORE->Text()));
    });
    trap.step([&] { reopen(false); });
}

void Form17::Command1_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { reopen(false); });
}

void Form17::reopen(bool backToRow)
{
    // A fresh screen has no row selected, so the print goes back to all suppliers.
    shell::ReopenScreen(ScreenName, backToRow);
}

// ---- print and text file ------------------------------------------------------------

void Form17::Cmd_Print_Click()
{
    Trap trap{{err::TypeMismatch}, Trap::ShowBox};
    const QString caption = Cmd_Print->Caption();
    QString parent;
    reports::ShowOptions options;
    if (caption == PrintOne) {
        if (txtID_FORNITORE->Text().isEmpty()) {
            vb::MsgBox(QStringLiteral("Non hai Selezionato nessun Fornitore!"), vb::mb::Exclamation,
                       QStringLiteral("MANCANZA DATI!!"));
            return;
        }
        QString id;
        trap.step([&] { id = vb::KeyText(txtID_FORNITORE->Text()); });
        parent = QStringLiteral("SHAPE {SELECT Tbl_Fornitori.ID_FORNITORE, Tbl_Fornitori.Fornitore From Tbl_Fornitori "
                                "Where Tbl_Fornitori.ID_FORNITORE = ") +
                 id + QStringLiteral(" ORDER BY Tbl_Fornitori.Fornitore;} ");
        options.placement = reports::Placement::ScreenCentred;
    } else if (caption == PrintAll) {
        parent = QStringLiteral("SHAPE {SELECT Tbl_Fornitori.ID_FORNITORE, Tbl_Fornitori.Fornitore From Tbl_Fornitori "
                                "ORDER BY Tbl_Fornitori.Fornitore;} ");
        options.placement = reports::Placement::WorkArea;
    } else {
        return;
    }
    if (trap.ended())
        return;
    const QString statement =
        parent +
        QStringLiteral(
            "APPEND ({SELECT Tbl_Fornitori.ID_FORNITORE, Tbl_Fornitori.Fornitore, Tbl_Fornitori.Nome_Soceta, "
            "Tbl_Fornitori.[Part_IVA/Cod_Fisc], Tbl_Fornitori.[Citta/Paese], Tbl_Fornitori.CAP, "
            "Tbl_Fornitori.Provincia, Tbl_Fornitori.Via, Tbl_Fornitori.Tel, Tbl_Fornitori.Fax, "
            "Tbl_Fornitori.Email, Tbl_Fornitori.Url ") +
        QStringLiteral("From Tbl_Fornitori ORDER BY Tbl_Fornitori.Fornitore;} ") +
        QStringLiteral("RELATE ID_FORNITORE to ID_FORNITORE) as Dati");
    // Label2 of the report header takes the present date and time with every show.
    options.setup = [](reports::ReportLayout& layout) {
        layout.setDataField(reports::Section::GroupHeader, QStringLiteral("TextBox17"), QStringLiteral("Fornitore"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport13"), statement, options); });
}

void Form17::Cmd_Save_Click()
{
    Trap trap{{err::TypeMismatch}, Trap::ShowBox};
    // The only caption the save ever has after the load; SaveOneCaption is never set.
    if (Cmd_Save->Caption() != SaveAll)
        return;
    QStringList lines;
    trap.step([&] { lines = Supplier_Card_Lines(); });
    // Each card ends with an empty line, so the signature follows at once.
    trap.step([&] {
        reports::WriteTextExport({QStringLiteral("SCHEDA_Fornitori.txt"),
                                  lines,
                                  reports::SignatureEnding(),
                                  reports::DatedTitle(QStringLiteral("SCHEDA Fornitori")),
                                  {}});
    });
}

QStringList Supplier_Card_Lines()
{
    QStringList lines;
    store::Recordset rs;
    rs.Open(ListStatement);
    // The label at once followed by the value; an empty column leaves the label alone.
    auto line = [&](const char* label, const char* column) {
        lines << vb::Concat(QString::fromUtf8(label), rs.Fields(QString::fromLatin1(column)).Value()).toString();
    };
    for (; !rs.Eof(); rs.MoveNext()) {
        lines << QString();
        line("ID:", "ID_FORNITORE");
        line("Fornitore:", "Fornitore");
        line("NOME SOCIETA':", "Nome_Soceta");
        line("P.IVA / COD.F:", "Part_IVA/Cod_Fisc");
        line("CITTA':", "Citta/Paese");
        line("VIA:", "Via");
        line("C.A.P:", "CAP");
        line("PROVINCIA:", "Provincia");
        line("TELEFONO:", "Tel");
        line("FAX:", "Fax");
        line("EMAIL:", "Email");
        line("INDIRIZZO INTERNET:", "Url");
        // A supplier has no billing address of its own: the block repeats the card.
        lines << QStringLiteral("=================") << QStringLiteral("DATI FATTURAZIONE")
              << QStringLiteral("=================");
        line("NOME:", "Fornitore");
        line("SOCIETA':", "Nome_Soceta");
        line("P.IVA / COD.F:", "Part_IVA/Cod_Fisc");
        line("CITTA':", "Citta/Paese");
        line("VIA:", "Via");
        line("C.A.P:", "CAP");
        line("PROVINCIA:", "Provincia");
        lines << QString() << QStringLiteral("-------------------------------------") << QString();
    }
    return lines;
}

VELMORA_SCREEN(Form17);

} // namespace spares
