#pragma once
// The register's screen tests: the upgraded store with the register's small plant (see
// kit::Plant::registerPlant), register rows and stop records put in place, and Form7
// loaded and driven.

#include "execution/Form7.h"
#include "support/ScreenTest.h"

#include <QDate>

class RegisterTest : public ScreenTest
{
protected:
    void SetUp() override;

    /// The frozen today of every test.
    static QDate today() { return QDate(2026, 11, 15); }

    /// A register row of unit idNum (1 and 2: PRESSA AX100, 3: TORNIO T200 N° 10) and a
    /// type (2 Mensile, 3 Bimestrale, their frequency unless given); its key.
    static int addMaintenance(int idNum, int tipo, const QDate& ultima, const QDate& prossima, double frequenza = 0);
    /// A stop record as the screen writes it; an empty fermaDal leaves Ferma_Dal Null.
    static void addStop(int idNum, int tipo, const QString& fermaDal, int numero, int tot);
    /// The first value of a statement as a date; invalid for Null or no row.
    static QDate dateOf(const QString& jet);

    static execution::Form7* form7() { return screen<execution::Form7>("Form7"); }
    static execution::Form7* reload() { return ScreenTest::reload<execution::Form7>("Form7"); }
    using ScreenTest::selectRow;
    /// Selects the register row with this key, as a click does.
    static void selectRow(execution::Form7* f, int id) { selectKey(f->DataGrid1, id); }
};
