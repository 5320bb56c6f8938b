#pragma once
// A demo plant made in a temporary program folder with the clock frozen on the demo
// day, and what the tests read of it through SQLite's own eyes.

#include "definition/Workload.h"
#include "demo/DemoPlant.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "shell/Driver.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

class DemoFixture : public ::testing::Test
{
protected:
    static QDate demoDay() { return QDate(2026, 11, 16); } // a Monday

    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        useFolder(m_dir.path());
        shell::Driver::setUpServices();
        definition::installWorkloadLine(); // as the program's start does
        vb::Clock::freeze(QDateTime(demoDay(), QTime(7, 30)));
        vb::MsgBoxService::clear();
    }

    void TearDown() override
    {
        shell::screens().discardAll();
        store::DataStore::reset();
        vb::Clock::unfreeze();
        vb::MsgBoxService::clear();
    }

    static void useFolder(const QString& dir)
    {
        store::DataStore::reset();
        vb::setAppPath(dir);
    }

    static sqlite3* db() { return store::DataStore::instance().handle(); }

    /// The rows of a statement in SQLite's words, each as "v1|v2|...".
    static QStringList rows(const char* sql)
    {
        QStringList out;
        sqlite3_stmt* st = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(db(), sql, -1, &st, nullptr), SQLITE_OK) << sqlite3_errmsg(db());
        while (st && sqlite3_step(st) == SQLITE_ROW) {
            QStringList cells;
            for (int i = 0; i < sqlite3_column_count(st); ++i) {
                const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
                cells << (t ? QString::fromUtf8(t) : QStringLiteral("<null>"));
            }
            out << cells.join(QLatin1Char('|'));
        }
        sqlite3_finalize(st);
        return out;
    }

    static int number(const char* sql)
    {
        const QStringList r = rows(sql);
        return r.isEmpty() ? -1 : r.front().toInt();
    }

    /// Every row of every table, in key order: two equal dumps are two equal stores.
    static QStringList dump()
    {
        QStringList out;
        for (const QString& table : rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
            const QByteArray sql = "SELECT * FROM \"" + table.toUtf8() + "\" ORDER BY rowid";
            out << QStringLiteral("== ") + table;
            out << rows(sql.constData());
        }
        return out;
    }

    QTemporaryDir m_dir;
};
