// The supplier register: the list and its card, insert and edit with the name carried to
// the order lines, delete without cascade, the reset, the failure boxes, the prints and
// SCHEDA_Fornitori.txt with every supplier's card and billing block.
#include "spares/Form17.h"

#include "reports/ReportViewer.h"
#include "runtime/OpenFile.h"
#include "runtime/TextFile.h"
#include "support/Fields.h"
#include "support/GoldenFile.h"
#include "support/ScreenTest.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>

using spares::Form17;
namespace answer = vb::answer;
using namespace vb::mb;

namespace {

class Form17Test : public ScreenTest
{
protected:
    /// A supplier with its card filled; "" leaves a column Null. Its key.
    int addSupplier(const QString& name, const QString& company, const QString& city = "Brescia",
                    const QString& vat = "01234567890")
    {
        auto orNull = [](const QString& v) { return v.isEmpty() ? vb::Variant::null() : vb::Variant(v); };
        return plant.supplier(name, {{"Nome_Soceta", company},
                                     {"Part_IVA/Cod_Fisc", orNull(vat)},
                                     {"Citta/Paese", orNull(city)},
                                     {"Provincia", "BS"},
                                     {"Tel", "030 123456"},
                                     {"Url", "www.example.it"}});
    }

    /// A line of the open order and an evaded one, both naming the supplier.
    static void addOrderLines(const QString& supplierKey, const QString& name)
    {
        for (const char* table : {"Tbl_Order", "Tbl_Historian_Orders"})
            exec(QStringLiteral("INSERT INTO %1 (Ricambi, ID_FORNITORE, Fornitore) VALUES ('CUSCINETTI', %2, '%3')")
                     .arg(QString::fromLatin1(table), supplierKey, name));
    }

    static Form17* form17() { return screen<Form17>("Form17"); }
    static Form17* reopened() { return ScreenTest::reopened<Form17>("Form17"); }
    static void selectSupplier(Form17* f, int id) { selectKey(f->DataGrid1, id); }
    static QStringList printed() { return ScreenTest::printed("DataReport13"); }

    /// SCHEDA_Fornitori.txt's lines, up to the last line's end.
    QStringList cards() const
    {
        QStringList lines = linesOf("SCHEDA_Fornitori.txt");
        lines.removeLast();
        return lines;
    }
};

} // namespace

TEST_F(Form17Test, ListCardSelectionAndReset)
{
    const int zeta = addSupplier("ZETA", "Zeta Srl");
    const int alfa = addSupplier("alfa", "Alfa Spa", "", "");
    Form17* f = form17();
    EXPECT_EQ(f->DataGrid1->cellValue(0, 0).toLong(), alfa) << "by name, case ignored";
    EXPECT_EQ(f->Label1->Caption(), "Conteggio Fornitori: 2");
    ASSERT_EQ(f->DataGrid1->ColumnCount(), 12);
    const char* captions[] = {"ID", "FORNITORE", "SOCIETA'", "TEL"};
    for (int i = 0; i < 12; ++i) {
        const vb::GridColumn& c = f->DataGrid1->Columns(i);
        EXPECT_EQ(c.Caption(), i < 4 ? QString(captions[i]) : c.DataField());
        EXPECT_EQ(c.Width(), i == 1 || i == 2 ? 3500 : i == 3 ? 1600 : 0) << i;
        EXPECT_EQ(c.Locked(), i < 3) << i;
    }
    // The captions go by position: "TEL" stands over position 3 of the table, the VAT number.
    EXPECT_EQ(f->DataGrid1->cellText(1, 3), "01234567890");
    EXPECT_EQ(kit::texts({f->Cmd_Save, f->Cmd_Print}),
              QStringList({"Salva in Txt Tutti Fornitori", "Stampa Tutti Fornitori"}));
    EXPECT_FALSE(f->Cmd_Edit->isEnabled());

    selectSupplier(f, zeta);
    EXPECT_EQ(f->txtCitta->Text(), "Brescia");
    // Empty columns leave their fields as the clearing left them: no card data carried over.
    selectSupplier(f, alfa);
    EXPECT_EQ(kit::texts({f->txtID_FORNITORE, f->txtFornitore, f->txtUrl, f->txtCitta, f->Txt_Posizione}),
              QStringList({QString::number(alfa), "alfa", "www.example.it", "", "0"}));
    EXPECT_TRUE(f->Cmd_Edit->isEnabled());
    // Only the print follows the selection; the save keeps saying all suppliers.
    EXPECT_EQ(kit::texts({f->Cmd_Print, f->Cmd_Save}),
              QStringList({"Stampa Questo Fornitore", "Salva in Txt Tutti Fornitori"}));

    f->Command1->click();
    Form17* again = reopened();
    EXPECT_NE(again, f);
    EXPECT_EQ(kit::texts({again->Cmd_Print, again->txtFornitore}), QStringList({"Stampa Tutti Fornitori", ""}));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form17Test, InsertNeedsNameAndCompanyThenReturnsToTheKeptRow)
{
    const int rossi = addSupplier("ROSSI", "Rossi Srl");
    Form17* f = form17();
    selectSupplier(f, rossi);
    f->Cmd_Add->click();
    EXPECT_EQ(kit::texts({f->txtID_FORNITORE, f->Cmd_Edit}), QStringList({"", "SALVA"}));
    EXPECT_EQ(kit::enabledOf({f->Cmd_Add, f->Cmd_Delete}), QStringList());

    f->Cmd_Edit->click();
    f->txtFornitore->typeText("VERDI");
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "MANCANZA DATI", "Devi Inserire il Nome Fornitore", Exclamation);
    EXPECT_BOX(shown[1], "MANCANZA DATI", "Devi Inserire il Nome Società", Exclamation);

    f->txtNome_Soceta->typeText("Verdi & Figli");
    f->Cmd_Edit->click();
    EXPECT_EQ(column("SELECT Nome_Soceta FROM Tbl_Fornitori WHERE Fornitore = 'VERDI'"), QStringList{"Verdi & Figli"});
    // Reopened in browse mode on the row kept before the insert: row 0, ROSSI.
    Form17* again = reopened();
    EXPECT_EQ(kit::texts({again->Label1, again->Cmd_Edit, again->txtFornitore}),
              QStringList({"Conteggio Fornitori: 2", "MODIFICA", "ROSSI"}));
    EXPECT_TRUE(again->Cmd_Add->isEnabled());
}

TEST_F(Form17Test, EveryEditRewritesTheOrderLinesWithTheNameQuotesDoubled)
{
    const int rossi = addSupplier("ROSSI", "Rossi Srl");
    const int other = addSupplier("BIANCHI", "Bianchi Snc");
    const QString key = QString::number(rossi);
    addOrderLines(key, "rossi a mano");
    addOrderLines(QString::number(other), "BIANCHI");
    addOrderLines("Null", "ROSSI"); // typed on the line, no supplier key
    Form17* f = form17();

    // The name unchanged: the lines get the card's name all the same.
    selectSupplier(f, rossi);
    f->txtTel->setText("030 999");
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Fornitore **ROSSI**",
               "Stai per modificare i dati del Fornitore [ROSSI] Vuoi Procedere??", YesNo + Question);
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Order WHERE ID_FORNITORE = " + key), QStringList{"ROSSI"});

    // A rename with a quote, declined first, then done.
    f = reopened();
    selectSupplier(f, rossi);
    f->txtFornitore->setText("ALL'ANGELO");
    f->Cmd_Edit->click();
    EXPECT_BOX(oneBox(), "Modifica Fornitore **ROSSI**",
               "Il Fornitore [ROSSI] Sta per essere modificato con [ALL'ANGELO] Vuoi Procedere??", YesNo + Question);
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Fornitori WHERE ID_FORNITORE = " + key), QStringList{"ROSSI"});
    answer({answer::Yes});
    f->Cmd_Edit->click();
    EXPECT_EQ(column("SELECT Tel FROM Tbl_Fornitori WHERE ID_FORNITORE = " + key), QStringList{"030 999"});
    for (const char* table : {"Tbl_Fornitori", "Tbl_Order", "Tbl_Historian_Orders"})
        EXPECT_EQ(column(QStringLiteral("SELECT Fornitore FROM %1 WHERE ID_FORNITORE = ").arg(table) + key),
                  QStringList{"ALL'ANGELO"})
            << table;
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Order WHERE ID_FORNITORE Is Null"), QStringList{"ROSSI"});
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Order WHERE ID_FORNITORE = " + QString::number(other)),
              QStringList{"BIANCHI"});
    // The reopened screen goes back to the row number it kept, not to the supplier: the
    // new name sorts first, so row 1 now holds the neighbour.
    EXPECT_EQ(reopened()->txtFornitore->Text(), "BIANCHI");
}

TEST_F(Form17Test, DeleteAsksFirstAndLeavesTheOrderLinesAlone)
{
    const int rossi = addSupplier("ROSSI", "Rossi Srl");
    addOrderLines(QString::number(rossi), "ROSSI");
    Form17* f = form17();
    selectSupplier(f, rossi);
    f->Cmd_Delete->click(); // answered No
    EXPECT_BOX(oneBox(), "Eliminazione Fornitore **ROSSI**", "Vuoi Veramente eliminare il Fornitore selezionato?",
               YesNo + Question);
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Fornitori").size(), 1);

    answer({answer::Yes});
    f->Cmd_Delete->click();
    EXPECT_TRUE(column("SELECT Fornitore FROM Tbl_Fornitori").isEmpty());
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Order"), QStringList{"ROSSI"});
    EXPECT_EQ(reopened()->Label1->Caption(), "Conteggio Fornitori: 0");
}

TEST_F(Form17Test, GridWithoutRowsAndKeysBeyondSixteenBitsShowTheirBoxes)
{
    Form17* f = form17();
    f->txtFornitore->setText("ROSSI");
    f->txtNome_Soceta->setText("Rossi Srl");
    f->Cmd_Edit_Click(); // an edit with no row behind the grid
    EXPECT_BOX(oneBox(), "DATI MANCANTI!", "Non è stato selezionato nessun Dato!", Critical);

    exec("INSERT INTO Tbl_Fornitori (ID_FORNITORE, Fornitore, Nome_Soceta) VALUES (40000, 'GRANDE', 'Grande Spa')");
    exec("INSERT INTO Tbl_Order (Ricambi, ID_FORNITORE, Fornitore) VALUES ('X', 40000, 'GRANDE')");
    shell::screens().unload("Form17");
    f = form17();
    f->DataGrid1->select(0);
    f->txtID_FORNITORE->setText("40000");
    f->txtFornitore->setText("GRANDISSIMO");
    f->txtNome_Soceta->setText("Grande Spa");
    f->Cmd_Edit->setEnabled(true);
    answer({answer::Yes});
    f->Cmd_Edit->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 3u);
    EXPECT_EQ(shown[0].prompt, "6 Overflow") << "the row selection cannot pass the key";
    EXPECT_EQ(shown[2].prompt, "6 Overflow") << "nor the save";
    EXPECT_EQ(column("SELECT Fornitore FROM Tbl_Order"), QStringList{"GRANDE"});
}

TEST_F(Form17Test, PrintsAllSuppliersInTheWorkAreaOrTheSelectedOneCentred)
{
    addSupplier("ZETA", "Zeta Srl");
    const int alfa = addSupplier("ALFA", "Alfa Spa");
    start(); // the main screen hosts the previews
    boxes();
    Form17* f = form17();
    f->Cmd_Print->click();
    QStringList t = printed();
    EXPECT_TRUE(t.contains("15/11/2026 08.00.00")) << "Label2: the present date and time";
    EXPECT_EQ(t.mid(t.indexOf("FORNITORE: "), 2), (QStringList{"FORNITORE: ", "ALFA"})) << "TextBox17 on Fornitore";
    EXPECT_LT(t.indexOf("Alfa Spa"), t.indexOf("Zeta Srl"));
    EXPECT_EQ(reports::ReportWindow("DataReport13")->geometry().left(), vb::twipsToPixels(2200)) << "work area";

    selectSupplier(f, alfa);
    f->Cmd_Print->click();
    t = printed();
    EXPECT_TRUE(t.contains("Alfa Spa"));
    EXPECT_FALSE(t.contains("Zeta Srl"));
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect g = reports::ReportWindow("DataReport13")->geometry();
    EXPECT_EQ(g.width(), screen.width() * 9 / 10);
    EXPECT_EQ(g.center().x(), screen.center().x());

    // INSERISCI clears the card but leaves the print on "this supplier": nothing to print.
    reports::UnloadReport("DataReport13");
    f->Cmd_Add->click();
    f->Cmd_Print->click();
    EXPECT_BOX(oneBox(), "MANCANZA DATI!!", "Non hai Selezionato nessun Fornitore!", Exclamation);
    EXPECT_FALSE(reports::IsReportLoaded("DataReport13"));
}

TEST_F(Form17Test, CardsSaveWritesEveryCardByNameEvenAfterARowSelection)
{
    const int zeta = addSupplier("ZETA", "Zeta Srl");
    addSupplier("BIANCHI", "Bianchi Snc", "Milano", "");
    spares::Form17* f = form17();
    selectSupplier(f, zeta);
    f->Cmd_Save->click();

    // Empty columns leave the label alone; the billing block repeats the card; the row
    // selected changes nothing; the signature follows the last card's empty line at once.
    golden::expectMatches("texts/SCHEDA_Fornitori.txt", cards().join(u'\n') + u'\n');
    const QStringList lines = cards();
    EXPECT_EQ(spares::Supplier_Card_Lines(), lines.mid(2, lines.size() - 5));

    EXPECT_BOX(oneBox(), "SCHEDA Fornitori -15/11/2026-",
               "Il File 'SCHEDA_Fornitori.txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  " +
                   path(),
               vb::mb::Information);
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{QDir(path()).filePath("SCHEDA_Fornitori.txt")});

    // No suppliers: the date, its empty line and the signature only.
    exec("Delete * from Tbl_Fornitori");
    f->Cmd_Save->click();
    EXPECT_EQ(cards(), (QStringList{"DATA 15/11/2026", "", vb::DegreeRule(), "VELMORA", vb::DegreeRule()}));
}
