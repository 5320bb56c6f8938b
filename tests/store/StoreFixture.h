#pragma once
// A new store in a temporary folder, upgraded as the start-up upgrades it, with a few
// sample rows in every table, and the clock frozen on 22/11/2026 10:30.

#include "runtime/Clock.h"
#include "runtime/VBError.h"
#include "store/DataStore.h"
#include "support/ErrorOf.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace store::testing {

inline const char* const kUpgrade[] = {
    "ALTER TABLE Tbl_Ricerca ADD COLUMN Images VARCHAR(255) NULL;",
    "ALTER TABLE Tbl_Ricerca ADD COLUMN Percorso VARCHAR(255) NULL;",
    "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Tipo_Nota VARCHAR(50) NULL;",
    "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Images VARCHAR(255) NULL;",
    "ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Percorso VARCHAR(255) NULL;",
    "CREATE TABLE Tbl_Certif_Proced_Manut (ID_Assegna_M Integer Null,Scheda CHAR(50) NOT NULL, Data_Scheda DATE, "
    "Rev Integer Null,Data_Rev DATE);",
};

/// The sample rows (tests/data/sample_store.sql), written straight in SQLite's words.
inline QByteArray sampleRows()
{
    QFile file(testpaths::data(QStringLiteral("sample_store.sql")));
    if (!file.open(QIODevice::ReadOnly))
        ADD_FAILURE() << "sample_store.sql is missing";
    return file.readAll();
}

class StoreFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        vb::Clock::freeze(QDateTime(QDate(2026, 11, 22), QTime(10, 30)));
        ASSERT_TRUE(dir.isValid());
        store = std::make_unique<DataStore>(dir.filePath(QStringLiteral("Velmora.sqlite")));
    }
    void TearDown() override
    {
        store.reset();
        vb::Clock::unfreeze();
    }

    /// The store as the start-up leaves it, with the sample rows.
    void upgradeAndFill()
    {
        for (const char* sql : kUpgrade)
            raw(sql);
        raw(sampleRows().constData());
    }

    void raw(const char* sql)
    {
        char* message = nullptr;
        const int rc = sqlite3_exec(store->handle(), sql, nullptr, nullptr, &message);
        ASSERT_EQ(rc, SQLITE_OK) << (message ? message : "");
    }

    QTemporaryDir dir;
    std::unique_ptr<DataStore> store;
};

} // namespace store::testing
