// SCHEDA_Fornitori.txt: every supplier's card and billing block, written from the screen
// whatever row is selected, and the same save driven from outside through the menu.
#include "Form17Fixture.h"
#include "support/InProcessDrive.h"

#include "runtime/TextFile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

class SupplierCards : public Form17Fixture
{
protected:
    QStringList fileLines() const
    {
        QFile f(QDir(path()).filePath("SCHEDA_Fornitori.txt"));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly | QIODevice::Text));
        QStringList lines = QString::fromUtf8(f.readAll()).split(u'\n');
        lines.removeLast(); // after the last line's end
        return lines;
    }
};

} // namespace

TEST_F(SupplierCards, SaveWritesEveryCardByNameEvenAfterARowSelection)
{
    const int zeta = addSupplier("ZETA", "Zeta Srl");
    const int bianchi = addSupplier("BIANCHI", "Bianchi Snc", "Milano", "");
    spares::Form17* f = form17();
    selectSupplier(f, zeta);
    f->Cmd_Save->click();

    // Empty columns leave the label alone; the billing block repeats the card.
    const QStringList bianchiCard{"", "ID:" + QString::number(bianchi), "Fornitore:BIANCHI",
                                  "NOME SOCIETA':Bianchi Snc", "P.IVA / COD.F:", "CITTA':Milano", "VIA:", "C.A.P:",
                                  "PROVINCIA:BS", "TELEFONO:030 123456", "FAX:", "EMAIL:",
                                  "INDIRIZZO INTERNET:www.example.it", "=================", "DATI FATTURAZIONE",
                                  "=================", "NOME:BIANCHI", "SOCIETA':Bianchi Snc", "P.IVA / COD.F:",
                                  "CITTA':Milano", "VIA:", "C.A.P:", "PROVINCIA:BS", "",
                                  "-------------------------------------", ""};
    const QStringList signature{vb::DegreeRule(), "VELMORA", vb::DegreeRule()};
    const QStringList lines = fileLines();
    ASSERT_EQ(lines.size(), 2 + 2 * bianchiCard.size() + 3);
    EXPECT_EQ(lines.mid(0, 2), (QStringList{"DATA 15/11/2026", ""}));
    EXPECT_EQ(lines.mid(2, bianchiCard.size()), bianchiCard);
    EXPECT_EQ(lines[2 + bianchiCard.size() + 2], "Fornitore:ZETA");
    EXPECT_EQ(lines[2 + bianchiCard.size() + 16], "NOME:ZETA") << "the selection changes nothing";
    // The signature follows the last card's closing empty line at once.
    EXPECT_EQ(lines.mid(lines.size() - 4), QStringList{""} + signature);
    EXPECT_EQ(spares::Supplier_Card_Lines(), lines.mid(2, 2 * bianchiCard.size()));

    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title, "SCHEDA Fornitori -15/11/2026-");
    EXPECT_EQ(shown[0].prompt, "Il File 'SCHEDA_Fornitori.txt' che verrà aperto automaticamente dopo il Click, "
                               "è stato salvato in:  " + path());
    EXPECT_EQ(vb::OpenFileService::takeOpened(), std::vector<QString>{QDir(path()).filePath("SCHEDA_Fornitori.txt")});

    // No suppliers: the date, its empty line and the signature only.
    exec("Delete * from Tbl_Fornitori");
    f->Cmd_Save->click();
    EXPECT_EQ(fileLines(), (QStringList{"DATA 15/11/2026", ""} + signature));
}

TEST_F(SupplierCards, MenuOpensTheRegisterAndTheDriverSavesTheCards)
{
    addSupplier("ROSSI", "Rossi Srl");
    InProcessDrive drive;
    drive("clock 2026-11-15T08:00:00");
    drive("start");
    drive("boxes");
    drive("click frmMain.lblFornitori");
    ASSERT_TRUE(drive("loaded Form17").toBool());
    EXPECT_EQ(drive("get frmMain.Caption").toString(), "VELMORA <Fornitori>");
    drive("select Form17.DataGrid1 0");
    drive("click Form17.Cmd_Save");
    const QJsonArray shown = drive("boxes").toArray();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0].toObject().value("title").toString(), "SCHEDA Fornitori -15/11/2026-");
    const QJsonArray opened = drive("opened").toArray();
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened[0].toString().endsWith("SCHEDA_Fornitori.txt"));
    EXPECT_TRUE(fileLines().contains("NOME:ROSSI"));
}
