// The program started through the automation driver on a store imported from the old
// plant file: the start-up upgrade happens and the due alerts of the plant's reference
// day appear, as they did when the old program opened that file.
#include "definition/Workload.h"
#include "importer/Importer.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"
#include "support/InProcessDrive.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

namespace {

// Due rows of the alert query on the given day, by the days between the day and the date
// due (negative when past).
std::vector<int> dueOffsets(const QString& storePath, const QDate& today)
{
    std::vector<int> offsets;
    sqlite3* db = nullptr;
    sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* stmt = nullptr;
    const double tomorrow = QDate(1899, 12, 30).daysTo(today) + 1;
    sqlite3_prepare_v2(db, "SELECT CAST(Prossima AS INTEGER) FROM Tbl_Maintenance WHERE Prossima <= ?1", -1, &stmt,
                       nullptr);
    sqlite3_bind_double(stmt, 1, tomorrow);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        offsets.push_back(int(sqlite3_column_int64(stmt, 0) - (tomorrow - 1)));
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return offsets;
}

TEST(ImportedStartTest, UpgradeAndDueAlertsOnThePlantsData)
{
    const QString mdb = testpaths::shared(QStringLiteral("fixtures/legacy/Velmora.mdb"));
    if (!QFile::exists(mdb))
        GTEST_SKIP() << "the old plant file is not beside the clone";
    QTemporaryDir home;
    const importer::ImportResult imported = importer::importMdb({mdb, home.path(), false});
    ASSERT_TRUE(imported.ok) << imported.message.toStdString();

    // The plant's reference day, as its summary gives it.
    const std::vector<int> due = dueOffsets(imported.storePath, QDate(2026, 11, 22));
    ASSERT_FALSE(due.empty());
    // One or two days late pass in silence; everything else gets its own box.
    const auto detailBoxes = std::count_if(due.begin(), due.end(), [](int d) { return d != -1 && d != -2; });

    vb::setAppPath(home.path());
    store::DataStore::reset();
    definition::installWorkloadLine(); // the start as the program makes it
    {
        InProcessDrive drive;
        drive("clock 2026-11-22T08:00:00");
        drive("answer yes");
        drive("start");
        const QJsonArray boxes = drive("boxes").toArray();
        ASSERT_GE(boxes.size(), 1);
        EXPECT_EQ(boxes.at(0)["title"].toString(), "MANUTENZIONE DA ESEGUIRE");
        EXPECT_EQ(boxes.at(0)["buttons"].toInt(), 20);
        EXPECT_EQ(boxes.size(), 1 + detailBoxes);

        // The upgrade gave the old file the columns and the sheet table of later versions.
        EXPECT_EQ(drive("sql SELECT Images, Percorso FROM Tbl_Ricerca").toArray().size(), 60);
        drive("sql SELECT Tipo_Nota FROM Tbl_Maintenance_Note");
        EXPECT_GT(drive("sql SELECT COUNT(*) AS N FROM Tbl_Certif_Proced_Manut")[0]["N"].toInt(), 0);
        shell::screens().discardAll();
    }
    store::DataStore::reset();
    vb::Clock::unfreeze();
    vb::MsgBoxService::clear();
}

} // namespace
