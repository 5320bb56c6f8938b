// Several workstations on one plant's server: the real program twice at once, each
// driven through its standard input, and the starts a server refuses.
#include "support/SparesTest.h"
#include "support/TestPaths.h"
#include "support/TestServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

namespace {

/// `velmora --drive -` on a store, started; its answers read one line at a time.
struct Workstation
{
    Workstation(const QString& home, const QString& store)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("VELMORA_STORE", store);
        p.setProcessEnvironment(env);
        p.start(testpaths::velmoraBinary(), {"--home", home, "--drive", "-"});
        EXPECT_TRUE(p.waitForStarted());
    }
    void send(const QStringList& lines) { p.write((lines.join(u'\n') + u'\n').toUtf8()); }
    /// The value of the next answer.
    QJsonValue answer()
    {
        while (!p.canReadLine() && p.waitForReadyRead(60000)) { }
        const QJsonObject o = QJsonDocument::fromJson(p.readLine()).object();
        EXPECT_TRUE(o.value("ok").toBool()) << QJsonDocument(o).toJson().toStdString();
        return o.value("value");
    }
    int finish()
    {
        p.closeWriteChannel();
        EXPECT_TRUE(p.waitForFinished(300000));
        return p.exitCode();
    }
    QProcess p;
};

class Workstations : public InterventionsTest
{
protected:
    void SetUp() override
    {
        if (testserver::uri().isEmpty())
            GTEST_SKIP() << "no PostgreSQL server for the server store";
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
    Workstation a(path(), server), b(path(), server);
    a.send(script);
    b.send(script);
    EXPECT_EQ(a.finish(), 0);
    EXPECT_EQ(b.finish(), 0);
    EXPECT_EQ(stock(1), 800);
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Ricerca WHERE ID_DESCRIZIONE_RICAMBI = 1").toInteger(), 200);
}

TEST_F(Workstations, AMaintenanceExecutedElsewhereShowsAfterTheRefresh)
{
    Workstation office(path(), server);
    office.send({"show Form7", "get Form7.Label1.Caption"});
    office.answer();
    const QJsonValue before = office.answer();
    Workstation foreman(path(), server);
    foreman.send({"exec INSERT INTO Tbl_Maintenance (Macchina, Modello, Numerazione, Manutenzione_Tipo, Prossima) "
                  "VALUES ('PRESSA', 'AX100', '1', 'Mensile', #11/15/2026#)"});
    foreman.answer();
    EXPECT_EQ(foreman.finish(), 0);
    office.send({"get Form7.Label1.Caption", "click Form7.Cmd_Vis_All", "get Form7.Label1.Caption"});
    EXPECT_EQ(office.answer(), before) << "the screen shows what it read";
    office.answer();
    EXPECT_NE(office.answer(), before) << "the refresh reads the other workstation's row";
    EXPECT_EQ(office.finish(), 0);
}

TEST(ServerStart, ADatabaseOfAnotherProgramOrNoServerStopsTheStartWritingNothing)
{
    if (testserver::uri().isEmpty())
        GTEST_SKIP() << "no PostgreSQL server for the server store";
    testserver::ScratchDatabase other;
    other.session().exec("CREATE TABLE fatture (n int)");
    const QString down = "postgresql://nobody@/velmora?host=/nonexistent-socket-dir";
    QString refused = testserver::uri();
    refused.replace(QRegularExpression("^postgresql://[^@]*@"), "postgresql://velmora_pw:sbagliata@");
    for (const auto& [store, message] : std::initializer_list<std::pair<QString, QString>>{
             {other.uri(), "contiene già le tabelle di un altro programma"},
             {down, "Impossibile connettersi al server del database"},
             {refused, "nome utente o password errati"},
             {"mysql://x/y", "Indirizzo del server del database non valido"}}) {
        QTemporaryDir home;
        QProcess p;
        p.start(testpaths::velmoraBinary(), {"--home", home.path(), "--store", store, "--drive", "-"});
        p.closeWriteChannel();
        ASSERT_TRUE(p.waitForFinished(60000));
        EXPECT_EQ(p.exitCode(), 1) << store.toStdString();
        EXPECT_TRUE(QString::fromUtf8(p.readAllStandardError()).contains(message)) << store.toStdString();
        EXPECT_FALSE(QFile::exists(home.filePath("Velmora.sqlite")));
    }
    EXPECT_EQ(other.session()
                  .exec("SELECT count(*) FROM pg_class WHERE relkind = 'r' AND relnamespace = "
                        "current_schema()::regnamespace")
                  .rows[0][0]
                  .toInteger(),
              1);
}
