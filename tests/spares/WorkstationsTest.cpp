// Several workstations on one plant's server: the real program twice at once, each
// driven through its standard input, and the starts a server refuses.
#include "support/LiveDrive.h"
#include "support/SparesTest.h"
#include "support/TestServer.h"

namespace {

class Workstations : public InterventionsTest
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_SERVER();
        qputenv("VELMORA_TEST_STORE", "server");
        InterventionsTest::SetUp();
        qunsetenv("VELMORA_TEST_STORE");
        server = store::DataStore::server();
        store::DataStore::reset(); // the workstations alone on the plant
    }
    QString server;
};

} // namespace

TEST_F(Workstations, TwoWithdrawingThePartAHundredTimesEachLoseNone)
{
    exec("UPDATE Tbl_Descrizione_Ricambi SET Giacenza = 1000 WHERE ID_DESCRIZIONE_RICAMBI = 1");
    store::DataStore::reset();
    QStringList script{"show Form14"};
    for (int i = 0; i < 100; ++i)
        script << "click Form14.Cmd_Add"
               << "choose Form14.DataCombo3 PRESSA"
               << "choose Form14.DataCombo2 AX100"
               << "choose Form14.DataCombo4 1"
               << "choose Form14.DataCombo1 CUSCINETTI"
               << "type Form14.DataCombo5 Radiale 6204"
               << "type Form14.DataCombo6 Mandrino"
               << "type Form14.DataCombo7 Usura"
               << "type Form14.Txt_prelievo 1"
               << "click Form14.Cmd_Edit";
    LiveDrive a(path(), server), b(path(), server);
    a.send(script);
    b.send(script);
    EXPECT_EQ(a.finish(), 0);
    EXPECT_EQ(b.finish(), 0);
    EXPECT_EQ(stock(1), 800);
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 1").toInteger(), 200);
}

TEST_F(Workstations, AMaintenanceExecutedElsewhereShowsAfterTheRefresh)
{
    LiveDrive office(path(), server);
    office.send({"show Form7", "get Form7.Label1.Caption"});
    office.value();
    const QJsonValue before = office.value();
    LiveDrive foreman(path(), server);
    foreman.send("exec INSERT INTO Tbl_Maintenance (Macchina, Modello, Numerazione, Manutenzione_Tipo, Prossima) "
                 "VALUES ('PRESSA', 'AX100', '1', 'Mensile', #11/15/2026#)");
    foreman.value();
    EXPECT_EQ(foreman.finish(), 0);
    office.send({"get Form7.Label1.Caption", "click Form7.Cmd_Vis_All", "get Form7.Label1.Caption"});
    EXPECT_EQ(office.value(), before) << "the screen shows what it read";
    office.value();
    EXPECT_NE(office.value(), before) << "the refresh reads the other workstation's row";
    EXPECT_EQ(office.finish(), 0);
}

TEST(ServerStart, ADatabaseOfAnotherProgramOrNoServerStopsTheStartWritingNothing)
{
    SKIP_WITHOUT_SERVER();
    testserver::ScratchDatabase other;
    other.session().exec("CREATE TABLE fatture (n int)");
    const QString down = "postgresql://nobody@/velmora?host=/nonexistent-socket-dir";
    std::vector<std::pair<QString, QString>> starts{{other.uri(), "contiene già le tabelle di un altro programma"},
                                                    {down, "Impossibile connettersi al server del database"},
                                                    {"mysql://x/y", "Indirizzo del server del database non valido"}};
    if (const QString refused = testserver::withWrongPassword(); !refused.isEmpty())
        starts.emplace_back(refused, "nome utente o password errati");
    for (const auto& [store, message] : starts) {
        QTemporaryDir home;
        const auto [exitCode, error] = runVelmora({"--home", home.path(), "--store", store, "--drive", "-"});
        EXPECT_EQ(exitCode, 1) << store.toStdString();
        EXPECT_TRUE(error.contains(message)) << store.toStdString();
        EXPECT_FALSE(QFile::exists(home.filePath("Velmora.sqlite")));
    }
    EXPECT_EQ(other.session()
                  .exec("SELECT count(*) FROM pg_class WHERE relkind = 'r' AND relnamespace = "
                        "current_schema()::regnamespace")
                  .rows[0][0]
                  .toInteger(),
              1);
}
