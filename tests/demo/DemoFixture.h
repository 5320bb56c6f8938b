#pragma once
// A demo plant in a temporary program folder on the frozen demo day, read through SQLite.

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

    /// The rows of a statement in SQLite's words, each as "v1|v2|...".
    static QStringList rows(const QString& sql)
    {
        QStringList out;
        sqlite3* db = store::DataStore::instance().handle();
        sqlite3_stmt* st = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(db, sql.toUtf8(), -1, &st, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
        while (st && sqlite3_step(st) == SQLITE_ROW) {
            QStringList cells;
            for (int i = 0; i < sqlite3_column_count(st); ++i) {
                const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
                cells << (t ? QString::fromUtf8(t) : "<null>");
            }
            out << cells.join(QLatin1Char('|'));
        }
        sqlite3_finalize(st);
        return out;
    }

    static int number(const QString& sql) { return rows(sql).value(0, "-1").toInt(); }

    /// Every row of every table, in key order: two equal dumps are two equal stores.
    static QStringList dump()
    {
        QStringList out;
        for (const QString& table : rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
            out << "== " + table << rows("SELECT * FROM \"" + table + "\" ORDER BY rowid");
        }
        return out;
    }

    /// The dump of a store made by make in a fresh folder of its own.
    template <class Make> static QStringList madeAfresh(Make make)
    {
        QTemporaryDir dir;
        useFolder(dir.path());
        make();
        return dump();
    }

    QTemporaryDir m_dir;
};
