// The road of a due maintenance through the automation driver: due at start, the alert
// answered Yes, the register opened with a stopped machine pushed, and the overdue row
// picked; and the main screen's timers on the register. The execution itself is the
// register's own tests'.
#include "shell/Driver.h"
#include "support/DriveScript.h"
#include "support/InProcessDrive.h"
#include "support/RegisterTest.h"

#include <QJsonArray>
#include <QJsonObject>

using Drive = InProcessDrive;

using Form7Drive = RegisterTest;

TEST_F(Form7Drive, DueAtStartOpensTheRegisterOnTheOverdueRow)
{
    const int due = addMaintenance(1, 2, QDate(2026, 10, 16), QDate(2026, 11, 13));
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addStop(3, 2, QStringLiteral("10/11/2026"), 1, 0);

    Drive drive;
    kit::run(drive, {"clock 2026-11-15T08:00:00", "answer yes", "start"});
    bool asked = false;
    for (const QJsonValue& b : drive("boxes").toArray())
        asked = asked || b.toObject().value("title").toString() == "MANUTENZIONE DA ESEGUIRE";
    EXPECT_TRUE(asked);
    ASSERT_TRUE(drive("loaded Form7").toBool());
    EXPECT_EQ(drive("get Form7.Label1.Caption").toString(), "Conteggio Manutenzioni: 2");
    // The stopped machine was pushed by its 5 days at the load.
    EXPECT_EQ(drive("sql SELECT Prossima FROM Tbl_Maintenance WHERE ID_NUM = 3")[0]["Prossima"].toString(),
              "2026-11-22");

    // A day later the overdue row is picked.
    drive("clock +1d");
    const QJsonObject grid = drive("grid Form7.DataGrid1").toObject();
    ASSERT_EQ(grid.value("rows").toArray().size(), 2);
    EXPECT_EQ(grid.value("rows").toArray()[0].toArray()[0].toString(), QString::number(due)) << "cells as shown";
    drive("select Form7.DataGrid1 0");
    EXPECT_EQ(drive("get Form7.Label8.Caption").toString(), "Prossima!!:");
}

TEST_F(Form7Drive, TheMainTimersActOnTheRegisterTheMenuOpened)
{
    const int due = addMaintenance(1, 2, QDate(2026, 10, 16), QDate(2026, 11, 13));
    Drive drive;
    kit::run(drive, {"clock 2026-11-15T08:00:00", "answer no", "start"}); // no details at start, and no register
    EXPECT_FALSE(drive("loaded Form7").toBool());
    drive("click frmMain.LblManutenzioni");
    ASSERT_TRUE(drive("loaded Form7").toBool());

    drive("select Form7.DataGrid1 0");
    EXPECT_EQ(drive("get Form7.txtID.Text").toString(), QString::number(due));
    const QJsonArray red{231, 29, 33};
    const QJsonArray white{255, 255, 255};
    ASSERT_EQ(drive("get Form7.Label8.ForeColor").toArray(), red);
    // Overdue: each tick of the clock line swaps red text for white on red and back.
    drive("tick frmMain.Timer1");
    EXPECT_EQ(drive("get Form7.Label8.ForeColor").toArray(), white);
    EXPECT_EQ(drive("get Form7.Label8.BackColor").toArray(), red);
    drive("tick frmMain.Timer1");
    EXPECT_EQ(drive("get Form7.Label8.ForeColor").toArray(), red);

    // The one-shot unload of the register, once per run.
    drive("tick frmMain.Timer4");
    EXPECT_FALSE(drive("loaded Form7").toBool());
    EXPECT_EQ(drive("get frmMain.Txt_Form7.Text").toString(), "1");
}
