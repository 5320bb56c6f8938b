// Recordsets as the screens use them: new rows and their keys, rows edited in place,
// Null, the end of the rows, Filter, dates in and out, conversions on assignment.
#include "StoreFixture.h"
#include "runtime/VBError.h"
#include "store/Backend.h"
#include "store/Schema.h"
#include "support/TestServer.h"

using store::Recordset;
using vb::Variant;
using vb::VBError;

namespace store::testing {
namespace {

class RecordsetTest : public StoreFixture
{
protected:
    void SetUp() override
    {
        StoreFixture::SetUp();
        upgradeAndFill();
    }

    std::unique_ptr<Recordset> open(const QString& sql) { return store->Query(sql); }
};

TEST_F(RecordsetTest, NewRowKeyIsReadableAtOnceAndNeverHandedOutTwice)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Reparto"));
    rs->AddNew();
    const Variant key = rs->Fields(QStringLiteral("ID_Reparto")).Value();
    EXPECT_EQ(key.toLong(), 4) << "the key is shown before the row is saved";
    rs->Fields(QStringLiteral("ID_Reparto")) = key; // assigning it back changes nothing
    rs->Fields(QStringLiteral("Reparto")) = Variant(QStringLiteral("Verniciatura"));
    rs->UpdateBatch();

    auto check = open(QStringLiteral("Select * from Tbl_Reparto where ID_Reparto =4"));
    ASSERT_FALSE(check->Eof());
    EXPECT_EQ(check->Fields(QStringLiteral("reparto")).Value().toString(), QStringLiteral("Verniciatura"));

    // A deleted last row does not give its number back, nor does a new row never saved.
    // What takes the keys is prepared once, not once a row.
    store->Execute(QStringLiteral("Delete * from Tbl_Reparto WHERE ID_Reparto  = 4"));
    int prepared = 0;
    sqlite3_set_authorizer(
        store->handle(),
        [](void* n, int, const char*, const char*, const char*, const char*) { return ++*static_cast<int*>(n), 0; },
        &prepared);
    auto again = open(QStringLiteral("Select * from Tbl_Reparto"));
    again->AddNew();
    EXPECT_EQ(again->Fields(0).Value().toLong(), 5);
    again.reset();
    EXPECT_GT(std::exchange(prepared, 0), 0);
    auto third = open(QStringLiteral("Select * from Tbl_Reparto"));
    third->AddNew();
    EXPECT_EQ(third->Fields(0).Value().toLong(), 6);
    EXPECT_EQ(prepared, 0);
    sqlite3_set_authorizer(store->handle(), nullptr, nullptr);
    third->Fields(1) = Variant(QStringLiteral("Collaudo"));
    third->UpdateBatch();
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Reparto"))->RecordCount(), 4);
}

TEST_F(RecordsetTest, NewRowTakesTheColumnDefaults)
{
    auto rs = open(QStringLiteral("SELECT * From Tbl_Historian_Orders"));
    rs->AddNew();
    rs->Fields(QStringLiteral("Ricambi")) = Variant(QStringLiteral("OLIO"));
    rs->UpdateBatch();
    EXPECT_EQ(rs->Fields(QStringLiteral("Data_Ricevuto")).Value().toString(), QStringLiteral("Non Ricevuto"));

    auto stop = open(QStringLiteral("Select * From Tbl_Fermi_Macchina"));
    stop->AddNew();
    stop->Fields(QStringLiteral("ID_NUM")) = Variant(9);
    stop->UpdateBatch();
    EXPECT_EQ(stop->Fields(QStringLiteral("Numero_Stop")).Value().toLong(), 0);
    EXPECT_EQ(stop->Fields(QStringLiteral("TOT_Giorni_Stop")).Value().toLong(), 0);
}

TEST_F(RecordsetTest, RowsEditedInPlaceAreWrittenBack)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Macchina where ID_MODELLO =2"));
    rs->Fields(QStringLiteral("Stato")) = Variant(QStringLiteral("Attiva"));
    rs->UpdateBatch();
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Macchina where ID_MODELLO =2"))
                  ->Fields(QStringLiteral("Stato"))
                  .Value()
                  .toString(),
              QStringLiteral("Attiva"));

    // A table without a key: the row is found again by what it held.
    auto stops = open(QStringLiteral("Select * From Tbl_Fermi_Macchina where ID_NUM=2"));
    stops->Fields(QStringLiteral("Ferma_Dal")) = Variant::null();
    stops->Fields(QStringLiteral("Giorni_Stop")) = Variant(0);
    stops->Fields(QStringLiteral("TOT_Giorni_Stop")) = Variant(12);
    stops->UpdateBatch();
    auto after = open(QStringLiteral("Select * From Tbl_Fermi_Macchina"));
    ASSERT_EQ(after->RecordCount(), 2);
    after->MoveLast();
    EXPECT_EQ(after->Fields(QStringLiteral("TOT_Giorni_Stop")).Value().toLong(), 12);
    after->MoveFirst();
    EXPECT_EQ(after->Fields(QStringLiteral("TOT_Giorni_Stop")).Value().toLong(), 0) << "the other row is untouched";

    // Moving off an edited row saves it, as the provider does.
    auto planned = open(QStringLiteral("Select * from Tbl_Planned where ID_MODELLO = 1 AND ID_NUM = 1"));
    planned->Fields(20) = Variant(QStringLiteral("Men"));
    planned->MoveNext();
    EXPECT_TRUE(planned->Eof());
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Planned where ID_MODELLO = 1 AND ID_NUM = 1"))
                  ->Fields(QStringLiteral("15"))
                  .Value()
                  .toString(),
              QStringLiteral("Men"));
}

TEST_F(RecordsetTest, NullEndOfRowsAndUnknownNames)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Ricerca where ID =4"));
    const Variant data = rs->Fields(QStringLiteral("Data")).Value();
    EXPECT_TRUE(data.isNull());
    EXPECT_EQ(errorOf([&] { (void)data.toString(); }), 94) << "Null used as text is error 94";
    EXPECT_EQ(errorOf([&] { (void)data.toDouble(); }), 94);
    EXPECT_EQ(errorOf([&] { rs->Fields(QStringLiteral("Nessuna")); }), 3265);
    // Names are found with their case ignored, letters only: "Dat{" is not "DAT[".
    auto named = open(QStringLiteral("SELECT ID AS [Città], ID AS [Dat[] FROM Tbl_Ricerca WHERE ID = 4"));
    EXPECT_EQ(named->Fields(QStringLiteral("CITTÀ")).Value().toLong(), 4);
    EXPECT_EQ(named->Fields(QStringLiteral("dAT[")).Value().toLong(), 4);
    EXPECT_EQ(errorOf([&] { named->Fields(QStringLiteral("Dat{")); }), 3265);

    auto empty = open(QStringLiteral("Select * from Tbl_Reparto where ID_Reparto =99"));
    EXPECT_TRUE(empty->Eof());
    EXPECT_TRUE(empty->Bof());
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { (void)empty->Fields(QStringLiteral("Reparto")).Value(); }), 3021);
    EXPECT_EQ(errorOf([&] { empty->MoveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { empty->MoveFirst(); }), 3021);
}

TEST_F(RecordsetTest, MovingAndCounting)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Numerazione"));
    EXPECT_EQ(rs->RecordCount(), 5);
    rs->Move(3);
    EXPECT_EQ(rs->Fields(QStringLiteral("Numerazione")).Value().toString(), QStringLiteral("1"));
    EXPECT_EQ(rs->AbsolutePosition(), 3);
    rs->Move(5);
    EXPECT_TRUE(rs->Eof()) << "a move past the last row stops at the end";
    rs->MoveLast();
    EXPECT_EQ(rs->Fields(1).Value().toString(), QStringLiteral("7"));
    rs->MovePrevious();
    EXPECT_EQ(rs->value(0, 1).toString(), QStringLiteral("10"));
    int n = 0;
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
        ++n;
    EXPECT_EQ(n, 5);

    // A deleted row leaves the next one current.
    rs->MoveFirst();
    rs->Delete();
    rs->MoveNext();
    EXPECT_EQ(rs->Fields(1).Value().toString(), QStringLiteral("2"));
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Numerazione"))->RecordCount(), 4);
}

TEST_F(RecordsetTest, ALongListReadsWritesAndGrowsLikeAShortOne)
{
    // Thousands of rows: values, edits and new rows far down the list as on its first rows.
    raw("WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n WHERE i < 3009) "
        "INSERT INTO Tbl_Reparto (ID_Reparto, Reparto) SELECT i, 'Reparto ' || i FROM n;");
    auto rs = open(QStringLiteral("Select * from Tbl_Reparto ORDER BY ID_Reparto"));
    ASSERT_EQ(rs->RecordCount(), 3003);
    for (const int row : {0, 1026, 2050, 3002})
        EXPECT_EQ(rs->value(row, 0).toLong(), row < 3 ? row + 1 : row + 7);
    rs->Move(2050);
    rs->Fields(1) = Variant(QStringLiteral("Collaudo"));
    rs->AddNew();
    rs->Fields(1) = Variant(QStringLiteral("Verniciatura"));
    rs->UpdateBatch();
    EXPECT_EQ(rs->value(3003, 0).toLong(), 3010);
    EXPECT_EQ(rs->value(2050, 1).toString(), QStringLiteral("Collaudo"));
    auto check = open(QStringLiteral("Select Reparto from Tbl_Reparto WHERE ID_Reparto = 2057 OR ID_Reparto = 3010"));
    ASSERT_EQ(check->RecordCount(), 2);
    EXPECT_EQ(check->value(0, 0).toString() + check->value(1, 0).toString(), QStringLiteral("CollaudoVerniciatura"));
}

TEST_F(RecordsetTest, FilterNarrowsTheRowsIgnoringCase)
{
    auto rs = open(QStringLiteral("SELECT * from Tbl_Reparto ORDER BY Reparto;"));
    rs->setFilter(QStringLiteral("Reparto like 'reparto%'"));
    ASSERT_FALSE(rs->Eof());
    EXPECT_EQ(rs->Fields(QStringLiteral("Reparto")).Value().toString(), QStringLiteral("Reparto A"));
    EXPECT_EQ(rs->RecordCount(), 1);

    rs->setFilter(QStringLiteral("Reparto like 'stampaggio'")); // no wildcard: the whole text
    EXPECT_EQ(rs->Fields(QStringLiteral("ID_Reparto")).Value().toLong(), 2);

    rs->setFilter(QStringLiteral("Reparto like 'Nessuno'"));
    EXPECT_TRUE(rs->Eof()) << "no match leaves the recordset at its end";

    rs->setFilter(QString());
    EXPECT_EQ(rs->RecordCount(), 3);
    EXPECT_EQ(rs->Fields(QStringLiteral("Reparto")).Value().toString(), QStringLiteral("Assemblaggio"));

    auto machines = open(QStringLiteral("SELECT * from Tbl_Macchina ORDER BY Tbl_Macchina.Modello;"));
    machines->setFilter(QStringLiteral("Modello like 'T-50 dell''officina'"));
    ASSERT_FALSE(machines->Eof());
    EXPECT_EQ(machines->Fields(QStringLiteral("ID_MODELLO")).Value().toLong(), 3);
    machines->setFilter(QStringLiteral("ID_REPARTO = 1 AND Stato <> 'Ferma'"));
    EXPECT_EQ(machines->RecordCount(), 1);
}

TEST_F(RecordsetTest, DatesGoInAndComeOutAsDates)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Maintenance where ID =1"));
    const Variant next = rs->Fields(QStringLiteral("Prossima")).Value();
    ASSERT_TRUE(next.isDate());
    EXPECT_EQ(vb::dateFromSerial(next.rawDate().serial), QDate(2026, 11, 22));

    // Text under Italian settings, the session stamp's form included.
    rs->Fields(QStringLiteral("Ultima")) = Variant(QStringLiteral("3/7/2016  9.5.0"));
    rs->Fields(QStringLiteral("Prossima")) = Variant::fromDate(QDate(2016, 7, 31));
    rs->UpdateBatch();
    auto back = open(QStringLiteral("Select * from Tbl_Maintenance where ID =1"));
    const Variant last = back->Fields(QStringLiteral("Ultima")).Value();
    ASSERT_TRUE(last.isDate());
    EXPECT_EQ(vb::fromSerial(last.rawDate().serial), QDateTime(QDate(2016, 7, 3), QTime(9, 5, 0)));
    EXPECT_EQ(vb::dateFromSerial(back->Fields(QStringLiteral("Prossima")).Value().rawDate().serial),
              QDate(2016, 7, 31));
    EXPECT_EQ(errorOf([&] { back->Fields(QStringLiteral("Ultima")) = Variant(QStringLiteral("domani")); }), 13);

    // A date put in a text-date column is written as the short date text.
    auto stop = open(QStringLiteral("Select * From Tbl_Fermi_Macchina where ID_NUM=2"));
    stop->Fields(QStringLiteral("Ferma_Dal")) = Variant::fromDate(QDate(2026, 3, 5));
    stop->UpdateBatch();
    const Variant text = open(QStringLiteral("Select * From Tbl_Fermi_Macchina where ID_NUM=2"))
                             ->Fields(QStringLiteral("Ferma_Dal"))
                             .Value();
    ASSERT_TRUE(text.isString());
    EXPECT_EQ(text.rawString(), QStringLiteral("05/03/2026"));
}

TEST_F(RecordsetTest, NumbersAreCheckedOnTheWayIn)
{
    auto rs = open(QStringLiteral("Select * From Tbl_Fermi_Macchina where ID_NUM=1"));
    EXPECT_EQ(errorOf([&] { rs->Fields(QStringLiteral("Numero_Stop")) = Variant(40000); }), 6)
        << "an Integer column holds 16 bits";
    EXPECT_EQ(errorOf([&] { rs->Fields(QStringLiteral("Giorni_Stop")) = Variant(QStringLiteral("sette")); }), 13);
    rs->Fields(QStringLiteral("Giorni_Stop")) = Variant(QStringLiteral("12"));
    rs->UpdateBatch();

    auto parts = open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi where ID_DESCRIZIONE_RICAMBI =1"));
    parts->Fields(QStringLiteral("Costo")) = Variant(QStringLiteral("1.234,50")); // Italian thousands and decimals
    parts->Fields(QStringLiteral("Codice")) = Variant(2.5);                       // a number into text: CStr
    parts->UpdateBatch();
    auto back = open(QStringLiteral("Select * from Tbl_Descrizione_Ricambi where ID_DESCRIZIONE_RICAMBI =1"));
    EXPECT_DOUBLE_EQ(back->Fields(QStringLiteral("Costo")).Value().toDouble(), 1234.5);
    EXPECT_EQ(back->Fields(QStringLiteral("Codice")).Value().toString(), QStringLiteral("2,5"));
}

TEST_F(RecordsetTest, ApostrophesAndCaseInText)
{
    auto rs = open(QStringLiteral("Select * from Tbl_Macchina"));
    rs->AddNew();
    rs->Fields(QStringLiteral("Macchina")) = Variant(QStringLiteral("FRESA"));
    rs->Fields(QStringLiteral("Modello")) = Variant(QStringLiteral("l'albero"));
    rs->UpdateBatch();
    auto found = open(QStringLiteral("Select * from Tbl_Macchina WHERE Modello = 'l''albero'"));
    ASSERT_EQ(found->RecordCount(), 1);
    EXPECT_EQ(found->Fields(QStringLiteral("Modello")).Value().toString(), QStringLiteral("l'albero"));

    // Text equality ignores case and respects accents.
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Macchina WHERE Macchina = 'pressa'"))->RecordCount(), 2);
    EXPECT_EQ(open(QStringLiteral("Select * from Tbl_Macchina WHERE Macchina = 'préssa'"))->RecordCount(), 0);
}

TEST_F(RecordsetTest, FailuresAreTheProvidersErrors)
{
    try {
        open(QStringLiteral("Select * from Tbl_Nessuna"));
        FAIL();
    } catch (const VBError& e) {
        EXPECT_TRUE(e.description().startsWith(
            QStringLiteral("Impossibile trovare la tabella o la query di input 'Tbl_Nessuna'.")))
            << e.description().toStdString();
    }
    try {
        open(QStringLiteral("Select Nessuna from Tbl_Reparto"));
        FAIL();
    } catch (const VBError& e) {
        EXPECT_EQ(e.description(), QStringLiteral("Parametri insufficienti. Previsto 1."));
    }
    // The upgrade statements work once; a second run fails each, as on a current file.
    for (const char* sql : kUpgrade)
        EXPECT_NE(errorOf([&] { store->Execute(QString::fromUtf8(sql)); }), 0) << sql;
}

TEST_F(RecordsetTest, NoReadOfTheStoreStaysOpenAfterAStatement)
{
    // A read left open would keep the next list from other workstations' writes and the
    // journal from being folded back into the store: none is, however the statement ends.
    const std::pair<const char*, int> statements[] = {
        {"Select * from Tbl_Reparto", 0},
        {"Select * from Tbl_Reparto where ID_Reparto = -1", 0},
        {"Select Nessuna from Tbl_Reparto", -2147217904},
        {"Select Val(Null) from Tbl_Reparto", 94},
        {"Select * Tbl_Reparto", -2147217900},
        {"Delete * from Tbl_Order", 0},
    };
    for (const auto& [sql, error] : statements) {
        EXPECT_EQ(errorOf([&] { store->Query(QString::fromLatin1(sql)); }), error) << sql;
        EXPECT_EQ(sqlite3_txn_state(store->handle(), "main"), SQLITE_TXN_NONE) << sql;
    }
}

TEST_F(RecordsetTest, ActionStatementsLeaveAClosedRecordset)
{
    Recordset rs;
    rs.Open(QStringLiteral("Delete * from Tbl_Order"), *store);
    EXPECT_FALSE(rs.isOpen());
    EXPECT_EQ(errorOf([&] { (void)rs.Eof(); }), 3704);
    EXPECT_EQ(store->Query(QStringLiteral("Select * from Tbl_Order"))->RecordCount(), 0);
}

// A row lock inside a transaction already open leaves it to its owner (a server only
// warns of a BEGIN inside one): undone, it undoes what came before the lock too.
TEST_F(RecordsetTest, ARowLockInsideATransactionLeavesItToItsOwner)
{
    const auto keptAfterTheRollback = [](DataStore& s) {
        s.connection().begin();
        s.Execute(QStringLiteral("INSERT INTO Tbl_Reparto (Reparto) VALUES ('PRIMA')"));
        RowLock{s};
        s.connection().rollback();
        return s.Query(QStringLiteral("Select * from Tbl_Reparto where Reparto = 'PRIMA'"))->RecordCount();
    };
    EXPECT_EQ(keptAfterTheRollback(*store), 0);
    SKIP_WITHOUT_SERVER();
    testserver::ScratchDatabase db;
    DataStore server(db.uri());
    EXPECT_EQ(keptAfterTheRollback(server), 0);
}

TEST_F(RecordsetTest, ALoopOfOneRowEditsWritesEachRowsOwnColumns)
{
    // One statement text per row, one column or another written back in turn: each row
    // gets its own values, whatever the loop wrote to the rows before it.
    raw("CREATE TABLE Loop (ID INTEGER PRIMARY KEY, A VARCHAR(20), B DOUBLE)");
    raw("INSERT INTO Loop (A, B) VALUES ('a1', 1), ('a2', 2), ('a3', 3), ('a4', 4)");
    for (int id = 1; id <= 4; ++id) {
        auto rs = open(QStringLiteral("Select * From Loop WHERE ID = ") + QString::number(id));
        if (id % 2)
            rs->Fields(QStringLiteral("B")) = Variant(id * 10);
        if (id > 2)
            rs->Fields(QStringLiteral("A")) = Variant(QStringLiteral("x%1").arg(id));
        rs->UpdateBatch();
        store->Execute(QStringLiteral("UPDATE Loop SET B = B + 1 WHERE ID = ") + QString::number(id));
    }
    QStringList rows;
    for (auto rs = open(QStringLiteral("Select A, B From Loop")); !rs->Eof(); rs->MoveNext())
        rows << rs->Fields(0).Value().toString() + QLatin1Char('=') + rs->Fields(1).Value().displayText();
    EXPECT_EQ(rows, (QStringList{"a1=11", "a2=3", "x3=31", "x4=5"}));
}

TEST_F(RecordsetTest, AWalkOverKeysLeavesWhatARowByRowWalkWouldLeave)
{
    // Each row its own statement: a row that fails is passed to the caller's trap and
    // the others are written, whether the store ran the walk as one statement or not.
    raw("CREATE TABLE Walk (ID INTEGER PRIMARY KEY, T VARCHAR(20), D DATE, N DOUBLE)");
    raw("INSERT INTO Walk (T, N) VALUES ('01/02/2026', 1), ('nessuna', 7), ('03/04/2026', 8)");
    const QString keys = QStringLiteral("SELECT Walk.ID FROM Walk WHERE Walk.N > Walk.ID;");
    auto walk = [&](const QString& perRow) {
        vb::Trap trap = vb::Trap::ignoreAll();
        store->RunForEachRow(keys, perRow, trap);
        return trap.lastError();
    };
    auto column = [&](const char* name) {
        QStringList out;
        auto rs = store->Query(QStringLiteral("SELECT %1 FROM Walk ORDER BY ID").arg(QString::fromLatin1(name)));
        for (; !rs->Eof(); rs->MoveNext())
            out << rs->Fields(0).Value().displayText();
        return out;
    };
    EXPECT_EQ(walk(QStringLiteral("UPDATE Walk SET Walk.N = [Walk.N]*10 WHERE ((Walk.ID = {key}))")), 0);
    EXPECT_EQ(column("N"), (QStringList{"1", "70", "80"})) << "only the rows of the select";
    EXPECT_EQ(walk(QStringLiteral("UPDATE Walk SET Walk.D = CDate([Walk.T]) WHERE ((Walk.ID = {key}))")),
              vb::err::TypeMismatch);
    EXPECT_EQ(column("D"), (QStringList{"", "", "03/04/2026"}));
    EXPECT_EQ(walk(QStringLiteral("DELETE * FROM Walk WHERE Walk.ID = {key}")), 0);
    EXPECT_EQ(column("T"), QStringList{"01/02/2026"});
}

} // namespace
} // namespace store::testing
