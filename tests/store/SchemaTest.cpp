// A new store: the tables the screens rely on by position, the seed of the frequency
// kinds, text columns under the JET collation, the stored queries, and what the start-up
// upgrade still finds to do.
#include "store/Schema.h"

#include "StoreFixture.h"
#include "runtime/VBError.h"

namespace store::testing {
namespace {

class SchemaTest : public StoreFixture
{
protected:
    QStringList rows(const QString& sql, int columns)
    {
        QStringList out;
        auto rs = store->Query(sql);
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            for (int c = 0; c < columns; ++c)
                cells << rs->Fields(c).Value().displayText();
            out << cells.join(u'|');
        }
        return out;
    }
};

TEST_F(SchemaTest, PlanAndGridsFindTheirColumnsByPosition)
{
    auto plan = store->Query(QStringLiteral("Select * from Tbl_Planned"));
    ASSERT_EQ(plan->FieldCount(), 151);
    const auto& cols = plan->Columns();
    EXPECT_EQ(cols[1].name, QStringLiteral("ID_MODELLO"));
    EXPECT_EQ(cols[5].name, QStringLiteral("Numerazione"));
    EXPECT_EQ(cols[6].name, QStringLiteral("1")) << "week columns [1]..[145] at positions 6..150";
    EXPECT_EQ(cols[150].name, QStringLiteral("145"));

    auto register_ = store->Query(QStringLiteral("Select * from Tbl_Maintenance"));
    ASSERT_EQ(register_->FieldCount(), 14);
    EXPECT_EQ(register_->Columns()[2].name, QStringLiteral("Macchina"));
    EXPECT_EQ(register_->Columns()[9].name, QStringLiteral("Ultima"));
    EXPECT_EQ(register_->Columns()[10].name, QStringLiteral("Prossima"));

    auto orders = store->Query(QStringLiteral("SELECT * From Tbl_Historian_Orders"));
    EXPECT_EQ(orders->Columns()[8].name, QStringLiteral("Data_Ricevuto"));
}

TEST_F(SchemaTest, FrequencyKindsAreSeeded)
{
    EXPECT_EQ(rows(QStringLiteral("SELECT Maint_Tipo, Frequenza_Sett, Koeff_Settimanale FROM Tbl_Maint_Tipo ORDER BY "
                                  "ID_MAINT_TIPO"),
                   3),
              (QStringList{QStringLiteral("Settimanale|1|1"), QStringLiteral("Mensile|4|0,25"),
                           QStringLiteral("Bimestrale|8|0,125"), QStringLiteral("Trimestrale|13|0,0769230769230769"),
                           QStringLiteral("Semestrale|26|0,0384615384615385"),
                           QStringLiteral("Annuale|52|0,0192307692307692"),
                           QStringLiteral("Biennale|104|0,00961538461538462")}));
}

TEST_F(SchemaTest, ColumnTypesAndCollation)
{
    sqlite3* db = store->handle();
    EXPECT_EQ(columnType(db, QStringLiteral("tbl_maintenance"), QStringLiteral("PROSSIMA")), ColumnType::Date);
    EXPECT_EQ(columnType(db, QStringLiteral("Tbl_Maintenance_Note"), QStringLiteral("Ultima")), ColumnType::Text)
        << "the note's date is text";
    EXPECT_EQ(columnType(db, QStringLiteral("Tbl_Maintenance"), QStringLiteral("ID")), ColumnType::Counter);
    EXPECT_EQ(columnType(db, QStringLiteral("Tbl_Fornitori"), QStringLiteral("Citta/Paese")), ColumnType::Text);
    EXPECT_EQ(columnType(db, QStringLiteral("Tbl_Fermi_Macchina"), QStringLiteral("Numero_Stop")), ColumnType::Integer);
    EXPECT_EQ(columnType(db, QStringLiteral("Tbl_Ricerca"), QStringLiteral("Images")), ColumnType::Unknown)
        << "added by the start-up upgrade, not by the schema";
    EXPECT_EQ(columnTypeOfDecl(QStringLiteral("CHAR(50)")), ColumnType::Text);
    EXPECT_EQ(columnTypeOfDecl(QStringLiteral("Integer")), ColumnType::Integer);

    // Every text column sorts and compares under the JET collation.
    sqlite3_stmt* st = nullptr;
    sqlite3_prepare_v2(
        db,
        "SELECT m.name || '.' || p.name FROM sqlite_master m, pragma_table_info(m.name) p "
        "WHERE m.type = 'table' AND m.name LIKE 'Tbl%' AND (p.type LIKE '%CHAR%' OR p.type LIKE '%TEXT%') "
        "AND instr(m.sql, '\"' || p.name || '\" ' || p.type || ' COLLATE JET') = 0",
        -1, &st, nullptr);
    QStringList without;
    while (sqlite3_step(st) == SQLITE_ROW)
        without << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    EXPECT_TRUE(without.isEmpty()) << without.join(u' ').toStdString();
}

TEST_F(SchemaTest, TheStopShiftFindsItsRowsThroughTheStoresIndexes)
{
    auto plan = [&](const char* sql) {
        QString out;
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(store->handle(), (QByteArray("EXPLAIN QUERY PLAN ") + sql).constData(), -1, &st, nullptr);
        while (sqlite3_step(st) == SQLITE_ROW)
            out += QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 3))) + u'\n';
        sqlite3_finalize(st);
        return out;
    };
    const QString join = plan("SELECT * FROM Tbl_Fermi_Macchina INNER JOIN Tbl_Maintenance ON "
                              "(Tbl_Fermi_Macchina.ID_NUM = Tbl_Maintenance.ID_NUM) AND "
                              "(Tbl_Fermi_Macchina.ID_MAINT_TIPO = Tbl_Maintenance.ID_MAINT_TIPO)");
    EXPECT_TRUE(join.startsWith(u"SCAN Tbl_Fermi_Macchina") && join.contains(u"INDEX Idx_Maintenance_Tipo_Num"))
        << join.toStdString();
    EXPECT_TRUE(
        plan("UPDATE Tbl_Fermi_Macchina SET GIORNI_STOP = 1 WHERE ID_NUM = 2").contains(u"Idx_Fermi_Macchina_Num"));
}

TEST_F(SchemaTest, StoredQueriesWorkOnceTheUpgradeHasRun)
{
    EXPECT_ANY_THROW(store->Query(QStringLiteral("SELECT * FROM Qry_Report10")));
    upgradeAndFill();
    // Latest year first, then month, by the characters of the date text.
    EXPECT_EQ(
        rows(QStringLiteral("SELECT Ultima, Tipo_Nota, Macchina, Numerazione, ConteggioDiTipo_Nota FROM Qry_Report10"),
             5),
        (QStringList{QStringLiteral("22/11/2026|Guasto|PRESSA|10|1"),
                     QStringLiteral("03/03/2025|Manutenzione|PRESSA|2|1"),
                     QStringLiteral("15/03/2024|Guasto|TORNIO|7|1")}));
    for (const char* name : {"Qry_Report18", "Qry_Report19", "Qry_Report20", "Qry_Report21"})
        EXPECT_EQ(store->Query(QStringLiteral("SELECT * FROM ") + QLatin1String(name))->RecordCount(), 3) << name;
    auto joined =
        store->Query(QStringLiteral("SELECT Tbl_Maintenance_Note.NOTE, Qry_Report21.Tipo_Nota2, "
                                    "Qry_Report21.ConteggioDiTipo_Nota FROM Qry_Report21 "
                                    "INNER JOIN Tbl_Maintenance_Note ON Qry_Report21.ID = Tbl_Maintenance_Note.ID;"));
    EXPECT_EQ(joined->RecordCount(), 3);
    EXPECT_EQ(parameterCommandNames().size(), 5);
}

} // namespace
} // namespace store::testing
