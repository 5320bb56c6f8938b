// Machine stops on Form7: stop and restart through the panel, the push of Prossima at
// every load with its 16-bit arithmetic, and the list of stopped machines.
#include "runtime/Clock.h"
#include "support/Fields.h"
#include "support/RegisterTest.h"

using execution::Form7;
namespace answer = vb::answer;

class Form7Stops : public RegisterTest
{
protected:
    /// Stops the machine of register row id on the given day, through the panel.
    void stop(int id, const QDate& day)
    {
        Form7* f = form7();
        selectRow(f, id);
        if (f->DTPicker3->isHidden())
            f->Cmd_Stop->click();
        f->DTPicker3->setValue(vb::Variant::fromDate(day));
        answer({answer::Yes});
        f->Cmd_Confirm->click();
    }

    /// Restarts it today.
    void restart(int id)
    {
        Form7* f = form7();
        selectRow(f, id);
        f->Cmd_Avviamento->click();
        answer({answer::Yes});
        f->Cmd_Confirm->click();
    }

    void advance(int days) { vb::Clock::advance(qint64(days) * 86400); }
};

TEST_F(Form7Stops, FirstStopRestartAndSecondStopPushTheSchedule)
{
    const QDate ultima(2026, 10, 20);
    const int id = addMaintenance(3, 2, ultima, ultima.addDays(28));
    form7();

    stop(id, today().addDays(-10));
    EXPECT_BOX(oneBox(), "FERMATA MACCHINA DAL **05/11/2026**",
               "Confermi La Fermata di questa Macchina in data 05/11/2026?", vb::mb::YesNo + vb::mb::Question);
    // The confirm reloaded the screen, and the load pushed the date by the days stopped.
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), ultima.addDays(28 + 10));
    EXPECT_EQ(lines("SELECT Giorni_Stop, Numero_Stop FROM Tbl_Fermi_Macchina"), QStringList{"10|1"});

    Form7* f = form7();
    selectRow(f, id);
    EXPECT_FALSE(f->Frame2->isHidden());
    EXPECT_EQ(kit::texts({f->Txt_Day_Stop, f->Txt_Numero_Stop, f->DTPicker6}), QStringList({"10", "1", "05/11/2026"}));

    // Each day stopped pushes one more day at the next load.
    advance(5);
    reload();
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), ultima.addDays(28 + 15));

    // Restart: the record stays, without a date, and keeps pushing by its total.
    restart(id);
    EXPECT_EQ(oneBox().title, "MACCHINA RIAVVIATE IL **20/11/2026**");
    EXPECT_EQ(lines("SELECT Ferma_Dal, TOT_Giorni_Stop FROM Tbl_Fermi_Macchina"), QStringList{"|15"});
    advance(30);
    reload();
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), ultima.addDays(28 + 15));

    // A second stop of 3 days: while stopped, g + total; after its restart the total
    // counts twice (kept as the schedule always did it).
    stop(id, vb::Clock::today());
    EXPECT_EQ(value("SELECT Numero_Stop FROM Tbl_Fermi_Macchina").toLong(), 2);
    advance(3);
    reload();
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), ultima.addDays(28 + 3 + 15));
    f = form7();
    selectRow(f, id);
    EXPECT_EQ(f->Txt_Day_Stop->Text(), "18") << "days of this stop plus the earlier total";
    restart(id);
    EXPECT_EQ(value("SELECT TOT_Giorni_Stop FROM Tbl_Fermi_Macchina").toLong(), 18);
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), ultima.addDays(28 + 2 * 18));
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Fermi_Macchina").toLong(), 1);
}

TEST_F(Form7Stops, CountsRiseOncePerMaintenanceOfTheMachine)
{
    // Required as it stands: the record is found by the unit alone, once per maintenance
    // of the unit, so two types count one stop twice and add its days twice; the record
    // keeps the type walked last, and only that type's row is pushed on load.
    const int men = addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    const int bim = addMaintenance(1, 3, QDate(2026, 10, 20), QDate(2026, 12, 15));
    form7();
    stop(men, today().addDays(-4));
    EXPECT_EQ(lines("SELECT ID_MAINT_TIPO, Numero_Stop, Ferma_Dal FROM Tbl_Fermi_Macchina"),
              QStringList{"3|2|11/11/2026"});
    // Numero_Stop 2 takes the second rule: g + total (0) + frequency.
    EXPECT_EQ(dateOf(QStringLiteral("SELECT Prossima FROM Tbl_Maintenance WHERE ID = %1").arg(bim)),
              QDate(2026, 10, 20).addDays(4 + 56));
    EXPECT_EQ(dateOf(QStringLiteral("SELECT Prossima FROM Tbl_Maintenance WHERE ID = %1").arg(men)),
              QDate(2026, 11, 17));

    advance(2);
    restart(men);
    EXPECT_EQ(value("SELECT TOT_Giorni_Stop FROM Tbl_Fermi_Macchina").toLong(), 12) << "6 days, added once per type";
}

TEST_F(Form7Stops, NoAnswerWritesNothingButReloads)
{
    const int id = addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    Form7* f = form7();
    selectRow(f, id);
    f->Cmd_Stop->click();
    EXPECT_FALSE(f->Frame2->isHidden());
    EXPECT_EQ(f->DTPicker6->Text(), "15/11/2026");
    answer({answer::No});
    f->Cmd_Confirm->click();
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Fermi_Macchina").toLong(), 0);
    EXPECT_NE(form7(), f);
}

TEST_F(Form7Stops, ShiftOverflowEndsTheProgram)
{
    // All the shift's integers are 16-bit: 5000 weeks × 7 does not fit, and no trap of the
    // load takes it: the run time's box, nothing shifted.
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17), 5000);
    addStop(3, 2, QStringLiteral("10/11/2026"), 1, 0);
    form7();
    EXPECT_EQ(oneBox().prompt, QStringLiteral("6 Overflow"));
    EXPECT_EQ(dateOf("SELECT Prossima FROM Tbl_Maintenance"), QDate(2026, 11, 17));
}

TEST_F(Form7Stops, StoppedListShowsOnlyMachinesStoppedNow)
{
    addMaintenance(1, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addMaintenance(3, 2, QDate(2026, 10, 20), QDate(2026, 11, 17));
    addStop(1, 2, QStringLiteral("10/11/2026"), 1, 0);
    addStop(3, 2, QString(), 1, 4); // restarted
    Form7* f = form7();
    f->Command3->click();
    EXPECT_EQ(f->Frame3->Caption(), "Sono 1 le Macchine Ferme");
    EXPECT_FALSE(f->Frame3->isHidden());
    ASSERT_EQ(f->DataGrid3->RecordCount(), 1);
    EXPECT_EQ(f->DataGrid3->cellText(0, 1), "PRESSA");
    EXPECT_EQ(captions(f->DataGrid3), QStringList({"FERMA DAL", "MACCHINA", "MODELLO", "ID_NUM", "N°"}));
    EXPECT_EQ(widths(f->DataGrid3), QList<int>({1100, 2500, 2900, 0, 600}));
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(f->DataGrid3->Columns(i).Locked());
    f->Lbl_CHIUDI->click();
    EXPECT_TRUE(f->Frame3->isHidden());
}
