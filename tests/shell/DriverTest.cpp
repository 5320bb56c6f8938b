// The automation driver: the real program driven through standard input, and the
// driver's value forms checked in-process.
#include "DriveProcess.h"
#include "ShellFixture.h"
#include "controls/CommonDialog.h"
#include "runtime/Trap.h"
#include "support/InProcessDrive.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <cstdio>

using shell::screens;

// A whole session: data put in place before the start, the start with its alert answered,
// a menu click, a caption read, the close and its register row.
TEST_F(ShellFixture, DriverRunsTheProgramEndToEnd)
{
    const auto r =
        drive(path(),
              {
                  QStringLiteral("# comments and blank lines get no answer"),
                  QString(),
                  QStringLiteral("clock 2026-11-15T08:00:00"),
                  QStringLiteral("exec INSERT INTO Tbl_Maintenance (Macchina, Modello, Numerazione, Manutenzione_Tipo, "
                                 "Prossima) VALUES ('PRESSA', 'AX100', '1', 'Mensile', #11/20/2026#)"),
                  QStringLiteral("answer no"),
                  QStringLiteral("start"),
                  QStringLiteral("boxes"),
                  QStringLiteral("get frmMain.Caption"),
                  QStringLiteral("click frmMain.lblRicambi"),
                  QStringLiteral("get frmMain.Caption"),
                  QStringLiteral("get frmMain.Img_Indicatore.Top"),
                  QStringLiteral("get frmMain.PicMenu.BackColor"),
                  QStringLiteral("get frmMain.Txt_Apertura.Text"),
                  QStringLiteral("loaded frmAbout"),
                  QStringLiteral("get Nowhere.Label1.Caption"),
                  QStringLiteral("tick frmMain.Timer1"),
                  QStringLiteral("get frmMain.Lbl_Time.Caption"),
                  QStringLiteral("clock +1h"),
                  QStringLiteral("close"),
                  QStringLiteral("loaded frmMain"),
                  QStringLiteral("sql SELECT Date_Open, Tempo FROM Tbl_Register"),
                  QStringLiteral("quit"),
                  QStringLiteral("get frmMain.Caption"), // after quit: never read
              });
    ASSERT_EQ(r.size(), 20u); // every command but the one after quit
    EXPECT_TRUE(value(r[0]).isNull());
    // The row is due in five days: no alert, so the queued "no" is still waiting.
    EXPECT_EQ(value(r[4]).toArray().size(), 0);
    EXPECT_EQ(value(r[5]).toString(), QStringLiteral("VELMORA"));
    EXPECT_EQ(value(r[7]).toString(), QStringLiteral("VELMORA <Ricambi>"));
    EXPECT_GT(value(r[8]).toInt(), 120);
    EXPECT_EQ(value(r[9]).toArray(), (QJsonArray{255, 255, 255}));
    EXPECT_EQ(value(r[10]).toString(), QStringLiteral("15/11/2026  8.0.0"));
    EXPECT_FALSE(value(r[11]).toBool()); // the menu click unloaded it
    EXPECT_FALSE(r[12].value(QStringLiteral("ok")).toBool());
    EXPECT_EQ(r[12][QStringLiteral("error")][QStringLiteral("number")].toInt(), 424);
    EXPECT_EQ(value(r[14]).toString(), QStringLiteral("Settimana N°47  15/11/2026 Ore: 08.00.00"));
    EXPECT_FALSE(value(r[17]).toBool());
    const QJsonArray reg = value(r[18]).toArray();
    ASSERT_EQ(reg.size(), 1);
    EXPECT_EQ(reg[0][QStringLiteral("Date_Open")].toString(), QStringLiteral("2026-11-15T08:00:00"));
    EXPECT_EQ(reg[0][QStringLiteral("Tempo")].toString(), QStringLiteral("1.0.0"));
}

// A question at start answered from the script; the boxes are recorded with their answer.
TEST_F(ShellFixture, DriverAnswersBoxesFromTheScript)
{
    const auto r =
        drive(path(),
              {
                  QStringLiteral("clock 2026-11-15T08:00:00"),
                  QStringLiteral("exec INSERT INTO Tbl_Maintenance (Macchina, Modello, Numerazione, Manutenzione_Tipo, "
                                 "Prossima) VALUES ('PRESSA', 'AX100', '1', 'Mensile', #11/15/2026#)"),
                  QStringLiteral("answer no"),
                  QStringLiteral("start"),
                  QStringLiteral("boxes"),
                  QStringLiteral("exit"),
                  QStringLiteral("loaded frmMain"),
                  QStringLiteral("sql SELECT * FROM Tbl_Register"),
              });
    ASSERT_EQ(r.size(), 8u);
    const QJsonArray boxes = value(r[4]).toArray();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0][QStringLiteral("title")].toString(), QStringLiteral("MANUTENZIONE DA ESEGUIRE"));
    EXPECT_EQ(boxes[0][QStringLiteral("buttons")].toInt(), 20);
    EXPECT_EQ(boxes[0][QStringLiteral("answer")].toString(), QStringLiteral("no"));
    EXPECT_TRUE(boxes[0][QStringLiteral("scripted")].toBool());
    EXPECT_FALSE(value(r[6]).toBool());
    EXPECT_EQ(value(r[7]).toArray().size(), 0); // lblExit writes no session row
}

// Values: dates in ISO form, colours as [r, g, b] or the system colour's integer, bad
// commands as VB errors.
TEST_F(ShellFixture, DriverValueForms)
{
    shell::Driver d;
    auto run = [&](const QString& cmd) { return QJsonDocument::fromJson(d.execute(cmd).toUtf8()).object(); };
    EXPECT_TRUE(run(QStringLiteral("exec INSERT INTO Tbl_Register (Date_Open, Date_Close) VALUES (#11/29/2026#, "
                                   "#11/29/2026 09:05:00#)"))[QStringLiteral("ok")]
                    .toBool());
    const QJsonObject row =
        run(QStringLiteral("sql SELECT Date_Open, Date_Close, Tempo FROM Tbl_Register"))[QStringLiteral("value")]
            .toArray()[0]
            .toObject();
    EXPECT_EQ(row[QStringLiteral("Date_Open")].toString(), QStringLiteral("2026-11-29"));
    EXPECT_EQ(row[QStringLiteral("Date_Close")].toString(), QStringLiteral("2026-11-29T09:05:00"));
    EXPECT_TRUE(row[QStringLiteral("Tempo")].isNull());

    start();
    EXPECT_TRUE(run(QStringLiteral("set frmMain.Label2.ForeColor -2147483643"))[QStringLiteral("ok")].toBool());
    EXPECT_EQ(run(QStringLiteral("get frmMain.Label2.ForeColor"))[QStringLiteral("value")].toInteger(), -2147483643);
    run(QStringLiteral("set frmMain.Label2.ForeColor [231,29,33]"));
    EXPECT_EQ(run(QStringLiteral("get frmMain.Label2.ForeColor"))[QStringLiteral("value")].toArray(),
              (QJsonArray{231, 29, 33}));
    run(QStringLiteral("set frmMain.Txt_Posizione.Text \"  12 \""));
    EXPECT_EQ(run(QStringLiteral("get frmMain.Txt_Posizione.Text"))[QStringLiteral("value")].toString(),
              QStringLiteral("  12 "));

    const QJsonObject unknown = run(QStringLiteral("frobnicate"));
    EXPECT_FALSE(unknown[QStringLiteral("ok")].toBool());
    EXPECT_EQ(unknown[QStringLiteral("error")][QStringLiteral("number")].toInt(), 5);
    EXPECT_EQ(
        run(QStringLiteral("get frmMain.NoSuch.Caption"))[QStringLiteral("error")][QStringLiteral("number")].toInt(),
        730);
    EXPECT_EQ(
        run(QStringLiteral("get frmMain.Label2.NoSuchProperty"))[QStringLiteral("error")][QStringLiteral("number")]
            .toInt(),
        438);
    EXPECT_EQ(run(QStringLiteral("get Form12.Visible"))[QStringLiteral("value")].toBool(), false);
    EXPECT_TRUE(run(QStringLiteral("show Form12"))[QStringLiteral("ok")].toBool()); // inert: nothing happens
}

// A command that opens a modal screen is answered once the screen waits; the next commands
// work the modal screen, and the handler that opened it goes on when it closes.
TEST_F(ShellFixture, DriverWorksModalScreens)
{
    standIn(QStringLiteral("Form2"), [](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, QStringLiteral("Form2"), nullptr);
        auto* open = new vb::CommandButton(f, QStringLiteral("Cmd_Open"), QStringLiteral("Apri"));
        auto* back = new vb::Label(f, QStringLiteral("Label1"));
        open->Click = [back] {
            screens().showModal(QStringLiteral("Form1"));
            back->setCaption(QStringLiteral("back from ") +
                             screens()
                                 .control(QStringLiteral("Form3"), QStringLiteral("Txt_Note"))
                                 ->vbProperty(QStringLiteral("Text"))
                                 .toString());
        };
        return f;
    });
    standIn(QStringLiteral("Form1"), QStringList{QStringLiteral("T:Txt_Images")});
    standIn(QStringLiteral("Form3"), QStringList{QStringLiteral("T:Txt_Note")});
    QTemporaryFile script;
    ASSERT_TRUE(script.open());
    script.write("show Form2\n"
                 "show Form3\n"
                 "click Form2.Cmd_Open\n"
                 "loaded Form1\n"
                 "set Form3.Txt_Note.Text Form1\n"
                 "unload Form1\n"
                 "get Form2.Label1.Caption\n"
                 "quit\n");
    script.close();
    FILE* out = std::tmpfile();
    {
        shell::Driver d(script.fileName());
        d.setOutput(out);
        EXPECT_EQ(d.run(), 0);
    }
    std::rewind(out);
    QStringList lines;
    char buf[4096];
    while (std::fgets(buf, sizeof buf, out))
        lines << QString::fromUtf8(buf).trimmed();
    std::fclose(out);
    EXPECT_EQ(lines, (QStringList{
                         QStringLiteral("{\"ok\":true,\"value\":null}"), QStringLiteral("{\"ok\":true,\"value\":null}"),
                         QStringLiteral("{\"ok\":true,\"value\":null}"), QStringLiteral("{\"ok\":true,\"value\":true}"),
                         QStringLiteral("{\"ok\":true,\"value\":null}"), QStringLiteral("{\"ok\":true,\"value\":null}"),
                         QStringLiteral("{\"ok\":true,\"value\":\"back from Form1\"}"),
                         QStringLiteral("{\"ok\":true,\"value\":null}")}));
}

// An error that no trap caught in a handler reaches the top of the program: the run time's
// box "{number} {description}", and the run ends, keeping what the handler had already
// written to the store. An event fired inside a handler (a Text set fires Change) hands
// its error to that handler, whose trap may take it.
TEST_F(ShellFixture, UntrappedErrorShowsTheBoxAndEndsTheRun)
{
    standIn(QStringLiteral("Form2"), [this](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, QStringLiteral("Form2"), nullptr);
        auto* text = new vb::TextBox(f, QStringLiteral("Text1"));
        text->Change = [] { throw vb::VBError(vb::err::TypeMismatch); };
        (new vb::CommandButton(f, QStringLiteral("Cmd_Trapped")))->Click = [text] {
            vb::Trap trap = vb::Trap::ignoreAll();
            trap.step([&] { text->setText(QStringLiteral("x")); });
        };
        (new vb::CommandButton(f, QStringLiteral("Cmd_Save")))->Click = [this, text] {
            exec(QStringLiteral("INSERT INTO Tbl_Register (Date_Open) VALUES (#11/15/2026#)"));
            text->setText(QStringLiteral("y"));
        };
        return f;
    });
    InProcessDrive drive;
    drive(QStringLiteral("show Form2"));
    drive(QStringLiteral("click Form2.Cmd_Trapped"));
    EXPECT_TRUE(drive(QStringLiteral("boxes")).toArray().isEmpty());
    EXPECT_TRUE(drive(QStringLiteral("loaded Form2")).toBool());

    drive(QStringLiteral("click Form2.Cmd_Save"));
    const QJsonArray boxes = drive(QStringLiteral("boxes")).toArray();
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0][QStringLiteral("prompt")].toString(), QStringLiteral("13 Tipo non corrispondente"));
    EXPECT_EQ(boxes[0][QStringLiteral("buttons")].toInt(), vb::mb::Critical);
    EXPECT_EQ(boxes[0][QStringLiteral("title")].toString(), QStringLiteral("VELMORA"));
    EXPECT_FALSE(drive(QStringLiteral("loaded Form2")).toBool());
    const QJsonArray written = drive(QStringLiteral("sql SELECT Count(*) AS n FROM Tbl_Register")).toArray();
    EXPECT_EQ(written[0][QStringLiteral("n")].toInt(), 1);
    drive(QStringLiteral("start"));
    EXPECT_TRUE(drive(QStringLiteral("loaded frmMain")).toBool());
}

// Every command and every error the driver answers, byte for byte as transcribed: the
// answer lines of tests/data/driver_transcript.txt follow their commands.
TEST_F(ShellFixture, DriverAnswersAsTranscribed)
{
    vb::MsgBox(QStringLiteral("a \"b\" \\ \t\n\r\b\f\x01\x7f é€ 😀"), vb::mb::YesNo | vb::mb::Question,
               QStringLiteral("Tìtolo"));
    vb::MsgBox(QStringLiteral("ok"));
    vb::FileDialogRequest dialog{.title = QStringLiteral("Apri"),
                                 .filter = QStringLiteral("JPG (*.jpg)|*.Jpg"),
                                 .initDir = QStringLiteral("/tmp/a b")};
    vb::FileDialogService::queueAnswers({QStringLiteral("/tmp/a b/c.jpg")});
    vb::FileDialogService::ask(dialog);
    vb::FileDialogService::ask(dialog);
    vb::OpenFile(QStringLiteral("/tmp/a b.pdf"));
    QFile file(testpaths::data(QStringLiteral("driver_transcript.txt")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    shell::Driver d;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!lines[i].startsWith(QLatin1String("> ")))
            continue;
        EXPECT_EQ(d.execute(lines[i].mid(2)), lines.value(i + 1)) << lines[i].toStdString();
    }
    QFile::remove(QStringLiteral("/tmp/velmora-transcript.pdf"));
}

// A screen or control name the program does not have is a mistake in the code asking for
// it: logged as critical, and nullptr. An inert screen's controls and the explicit probe
// log nothing; the driver's look-ups of typed names log nothing either (the transcript).
TEST_F(ShellFixture, MisspeltNamesAreLoggedAsCritical)
{
    standIn(QStringLiteral("Form3"), QStringList{QStringLiteral("T:Txt_Note")});
    static QStringList logged;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& msg) {
            logged << QString::number(type) + u' ' + msg;
        });
    EXPECT_EQ(screens().control(QStringLiteral("Frm3"), QStringLiteral("Txt_Note")), nullptr);
    EXPECT_EQ(screens().control(QStringLiteral("Form3"), QStringLiteral("Txt_Nota")), nullptr);
    EXPECT_EQ(screens().control(QStringLiteral("Form12"), QStringLiteral("Txt_Note")), nullptr);
    EXPECT_EQ(screens().controlIfAny(QStringLiteral("Form3"), QStringLiteral("Txt_Nota")), nullptr);
    EXPECT_NE(screens().controlIfAny(QStringLiteral("Form3"), QStringLiteral("Txt_Note")), nullptr);
    screens().unload(QStringLiteral("Frm3"));
    qInstallMessageHandler(previous);
    const QString critical = QString::number(QtCriticalMsg) + u' ';
    EXPECT_EQ(logged, (QStringList{critical + QStringLiteral("No screen is called Frm3"),
                                   critical + QStringLiteral("Screen Form3 has no control called Txt_Nota"),
                                   critical + QStringLiteral("No screen is called Frm3")}));
}
