// SHAPE results with their related child rows; tables made by SELECT INTO, in this store
// and in the report store; the named parameter commands; date expressions read back.
#include "StoreFixture.h"
#include "runtime/VBError.h"
#include "store/Schema.h"

using vb::Variant;
using vb::VBError;

namespace store::testing {
namespace {

class ShapeAndTablesTest : public StoreFixture
{
protected:
    void SetUp() override
    {
        StoreFixture::SetUp();
        upgradeAndFill();
    }

    QStringList column(Recordset& rs, const QString& name)
    {
        QStringList values;
        if (rs.RecordCount() == 0)
            return values;
        for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext())
            values << rs.Fields(name).Value().displayText();
        return values;
    }
};

TEST_F(ShapeAndTablesTest, HistoryRelatesOnTheMonthAloneAsTheReportAlwaysHas)
{
    raw("INSERT INTO Tbl_Ricerca (Data, ID_MODELLO, Macchina, Modello, ID_NUM, Numerazione, Descrizione, Ricambi) "
        "VALUES (40980, 1, 'PRESSA', 'AX100', 3, 'A3', 'Filtro', 'FILTRI'), " // 12/03/2012
        "(41345, 1, 'PRESSA', 'AX100', 3, 'A3', 'Cinghia', 'CINGHIE')");      // 12/03/2013
    store->Execute(
        QStringLiteral("SELECT Tbl_Ricerca.Data, Tbl_Ricerca.ID_MODELLO, Tbl_Ricerca.Macchina, Tbl_Ricerca.Modello, "
                       "Tbl_Ricerca.ID_NUM, Tbl_Ricerca.Numerazione, '' AS Manutenzione_Tipo, Tbl_Ricerca.Descrizione, "
                       "Tbl_Ricerca.Ricambi, Tbl_Ricerca.Destinazione INTO Tbl_History_Macchina From Tbl_Ricerca "
                       "WHERE (((Tbl_Ricerca.ID_NUM)=3));"));
    auto rs = store->Query(QStringLiteral(
        "SHAPE {SELECT Year([Tbl_History_Macchina]![Data]) AS Anno, Month([Tbl_History_Macchina]![Data]) AS Mese, "
        "Tbl_History_Macchina.ID_NUM, Count(Tbl_History_Macchina.Data) AS ConteggioDiData From Tbl_History_Macchina "
        "GROUP BY Year([Tbl_History_Macchina]![Data]), Month([Tbl_History_Macchina]![Data]), "
        "Tbl_History_Macchina.ID_NUM "
        "ORDER BY Year([Tbl_History_Macchina]![Data]) DESC , Month([Tbl_History_Macchina]![Data]) DESC;} "
        "APPEND ({SELECT Month([Tbl_History_Macchina].[Data]) AS Mese, Year([Tbl_History_Macchina].[Data]) AS Anno, "
        "Tbl_History_Macchina.Data, IIf([Ricambi] Is Null Or [Ricambi]='','- - - ',[Ricambi]) AS Rica "
        "From Tbl_History_Macchina ORDER BY Tbl_History_Macchina.Data DESC;} RELATE Mese to Mese) as Dati"));
    ASSERT_EQ(column(*rs, QStringLiteral("Anno")), (QStringList{QStringLiteral("2013"), QStringLiteral("2012")}));
    // Under each March heading both years' March events, as the printed history shows them.
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
        Recordset* child = rs->Child(QStringLiteral("Dati"));
        EXPECT_EQ(column(*child, QStringLiteral("Rica")),
                  (QStringList{QStringLiteral("CINGHIE"), QStringLiteral("FILTRI")}));
        child->MoveFirst();
        EXPECT_TRUE(child->Fields(QStringLiteral("Data")).Value().isDate()) << "the copied date stays a date";
    }
    EXPECT_EQ(errorOf([&] { rs->Child(QStringLiteral("Altro")); }), 3265);
}

TEST_F(ShapeAndTablesTest, RelationsOnTwoColumnsAndNestedShapes)
{
    auto sheets = store->Query(
        QStringLiteral("SHAPE {SELECT Modello, Manutenzione_Tipo AS Maint_Tipo FROM Tbl_Assegna_M ORDER BY ID} APPEND "
                       "({SELECT Modello, Manutenzione_Tipo, Numerazione FROM Tbl_Maintenance} "
                       "RELATE Modello TO Modello, Maint_Tipo TO Manutenzione_Tipo) AS Dati"));
    ASSERT_EQ(sheets->RecordCount(), 2);
    EXPECT_EQ(column(*sheets->Child(QStringLiteral("Dati")), QStringLiteral("Numerazione")),
              QStringList{QStringLiteral("10")});
    sheets->MoveNext();
    EXPECT_EQ(column(*sheets->Child(QStringLiteral("dati")), QStringLiteral("Numerazione")),
              QStringList{QStringLiteral("2")});

    auto plant = store->Query(QStringLiteral(
        "SHAPE {SELECT Reparto FROM Tbl_Reparto ORDER BY Reparto} APPEND ((SHAPE {SELECT ID_MODELLO, REPARTO, Modello "
        "FROM Tbl_Macchina ORDER BY Modello} APPEND ({SELECT ID_MODELLO, Numerazione FROM Tbl_Numerazione ORDER BY "
        "Val(Numerazione)} RELATE ID_MODELLO TO ID_MODELLO) AS Numeri) RELATE Reparto TO REPARTO) AS Dati"));
    plant->setFilter(QStringLiteral("Reparto = 'reparto a'"));
    Recordset* models = plant->Child(QStringLiteral("Dati"));
    ASSERT_EQ(column(*models, QStringLiteral("Modello")),
              (QStringList{QStringLiteral("AX100"), QStringLiteral("BX200")}));
    models->MoveFirst();
    EXPECT_EQ(column(*models->Child(QStringLiteral("Numeri")), QStringLiteral("Numerazione")),
              (QStringList{QStringLiteral("A3"), QStringLiteral("2"), QStringLiteral("10")}))
        << "ordered by Val: A3 counts as 0, 2 before 10";

    EXPECT_EQ(errorOf([&] { store->Query(QStringLiteral("SHAPE {SELECT * FROM Tbl_Reparto} APPEND ({SELECT 1}")); }),
              vb::err::SyntaxError);
}

TEST_F(ShapeAndTablesTest, SelectIntoMakesTablesOnceWithTheColumnTypes)
{
    const QString copy = QStringLiteral("SELECT Tbl_Planned.* INTO Tbl_Planned_2 FROM Tbl_Planned;");
    store->Execute(copy);
    EXPECT_EQ(errorOf([&] { store->Execute(copy); }), vb::err::TableExists) << "the target must not exist";
    store->Execute(QStringLiteral("Drop Table Tbl_Planned_2"));
    store->Execute(copy);
    auto rs = store->Query(QStringLiteral("Select * from Tbl_Planned_2 where ID_MODELLO =1 AND ID_NUM=1"));
    ASSERT_EQ(rs->FieldCount(), 151);
    EXPECT_EQ(rs->Fields(14).Value().toString(), QStringLiteral("Men")) << "week 9 at position 14";
    EXPECT_EQ(rs->Fields(QStringLiteral("15")).Value().toString(), QStringLiteral("Men/Bim"));
    EXPECT_EQ(columnType(store->handle(), QStringLiteral("Tbl_Planned_2"), QStringLiteral("100")), ColumnType::Text);

    store->Execute(QStringLiteral("SELECT Tbl_Ricerca.Data, Tbl_Ricerca.Quantita, '' AS Manutenzione_Tipo INTO "
                                  "Tbl_History_Macchina From Tbl_Ricerca"));
    EXPECT_EQ(columnType(store->handle(), QStringLiteral("Tbl_History_Macchina"), QStringLiteral("Data")),
              ColumnType::Date);
    store->Execute(QStringLiteral("INSERT INTO Tbl_History_Macchina (Data, Manutenzione_Tipo) SELECT "
                                  "Tbl_Maintenance.Ultima, Tbl_Maintenance.Manutenzione_Tipo From Tbl_Maintenance "
                                  "WHERE Tbl_Maintenance.ID_NUM = 1"));
    auto history =
        store->Query(QStringLiteral("SELECT * FROM Tbl_History_Macchina WHERE Manutenzione_Tipo = 'Mensile'"));
    ASSERT_EQ(history->RecordCount(), 1);
    EXPECT_TRUE(history->Fields(QStringLiteral("Data")).Value().isDate());
}

TEST_F(ShapeAndTablesTest, ThePlanGoesIntoTheReportStore)
{
    const QString reportPath = dir.filePath(QStringLiteral("RPT_Velmora.sqlite"));
    DataStore report(reportPath, DataStore::Kind::Report);
    EXPECT_NE(errorOf([&] { report.Execute(QStringLiteral("Drop TABLE Tbl_Planned")); }), 0)
        << "a new report store has no plan yet";
    const QString copy = QStringLiteral("SELECT * INTO Tbl_Planned IN \"%1\"FROM Tbl_Planned").arg(reportPath);
    store->Execute(copy);
    auto rs = report.Query(QStringLiteral("SELECT * FROM Tbl_Planned ORDER BY ID_NUM"));
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(rs->FieldCount(), 151);
    EXPECT_EQ(errorOf([&] { store->Execute(copy); }), vb::err::TableExists);
    report.Execute(QStringLiteral("Drop TABLE Tbl_Planned"));
    store->Execute(copy);
    EXPECT_EQ(report.Query(QStringLiteral("SELECT * FROM Tbl_Planned"))->RecordCount(), 2);
    EXPECT_EQ(store->Query(QStringLiteral("SELECT * FROM Tbl_Planned"))->RecordCount(), 2) << "the main plan stays";
}

TEST_F(ShapeAndTablesTest, ParameterCommandsSearchAsYouType)
{
    auto rs = store->Command(QStringLiteral("Tbl_Macchina"), Variant(QStringLiteral("ress")));
    EXPECT_EQ(column(*rs, QStringLiteral("Modello")), (QStringList{QStringLiteral("AX100"), QStringLiteral("BX200")}));
    rs = store->Command(QStringLiteral("Tbl_Macchina_Search_Modello"), Variant(QStringLiteral("dell'off")));
    EXPECT_EQ(rs->RecordCount(), 1) << "the parameter is a value, apostrophe and all";
    rs = store->Command(QStringLiteral("Tbl_Maintenance_Tipo_Search"), Variant(QString()));
    EXPECT_EQ(rs->RecordCount(), 3) << "an empty text lists everything";
    rs = store->Command(QStringLiteral("tbl_maintenance_search"), Variant(QStringLiteral("tornio")));
    EXPECT_EQ(rs->RecordCount(), 1);
    EXPECT_EQ(errorOf([&] { store->Command(QStringLiteral("Nessuno"), Variant(1)); }), 3265);
}

TEST_F(ShapeAndTablesTest, DateExpressionsReadBackAsDates)
{
    auto rs = store->Query(QStringLiteral("SELECT Prossima + 7 AS Dopo, Date() AS Oggi, Prossima - Ultima AS Giorni "
                                          "FROM Tbl_Maintenance WHERE ID = 1"));
    const Variant later = rs->Fields(QStringLiteral("Dopo")).Value();
    ASSERT_TRUE(later.isDate());
    EXPECT_EQ(vb::dateFromSerial(later.rawDate().serial), QDate(2026, 11, 29));
    const Variant today = rs->Fields(QStringLiteral("Oggi")).Value();
    ASSERT_TRUE(today.isDate());
    EXPECT_EQ(vb::dateFromSerial(today.rawDate().serial), QDate(2026, 11, 22)) << "Date() follows the program's clock";
    EXPECT_DOUBLE_EQ(rs->Fields(QStringLiteral("Giorni")).Value().toDouble(), 28.0);

    auto due = store->Query(QStringLiteral("SELECT Tbl_Maintenance.Macchina From Tbl_Maintenance "
                                           "Where Prossima <=(Date()+1) order by prossima ;"));
    EXPECT_EQ(due->RecordCount(), 2);
}

} // namespace
} // namespace store::testing
