// The automation driver: the real program driven through standard input, and the
// driver's value forms checked in-process.
#include "DriveProcess.h"
#include "controls/CommonDialog.h"
#include "runtime/OpenFile.h"
#include "runtime/Trap.h"
#include "support/InProcessDrive.h"
#include "support/ScreenTest.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

using shell::screens;
using DriverTest = ScreenTest;

// A whole session: data put in place before the start, the start with its alert answered,
// a menu click, a caption read, the close and its register row.
TEST_F(DriverTest, DriverRunsTheProgramEndToEnd)
{
    // The script: tests/data/driver_session.txt.
    const auto r = driveFile(path(), "driver_session.txt");
    ASSERT_EQ(r.size(), 20u); // every command but the comment, the blank line and the one after quit
    EXPECT_TRUE(::value(r[0]).isNull());
    // The row is due in five days: no alert, so the queued "no" is still waiting.
    EXPECT_EQ(::value(r[4]).toArray().size(), 0);
    EXPECT_EQ(::value(r[5]).toString(), "VELMORA");
    EXPECT_EQ(::value(r[7]).toString(), "VELMORA <Ricambi>");
    EXPECT_GT(::value(r[8]).toInt(), 120);
    EXPECT_EQ(::value(r[9]).toArray(), (QJsonArray{255, 255, 255}));
    EXPECT_EQ(::value(r[10]).toString(), "15/11/2026  8.0.0");
    EXPECT_FALSE(::value(r[11]).toBool()); // the menu click unloaded it
    EXPECT_FALSE(r[12].value("ok").toBool());
    EXPECT_EQ(r[12]["error"]["number"].toInt(), 424);
    EXPECT_EQ(::value(r[14]).toString(), "Settimana N°47  15/11/2026 Ore: 08.00.00");
    EXPECT_FALSE(::value(r[17]).toBool());
    const QJsonArray reg = ::value(r[18]).toArray();
    ASSERT_EQ(reg.size(), 1);
    EXPECT_EQ(reg[0]["Date_Open"].toString(), "2026-11-15T08:00:00");
    EXPECT_EQ(reg[0]["Tempo"].toString(), "1.0.0");
}

// A question at start answered from the script; the boxes are recorded with their answer.
TEST_F(DriverTest, DriverAnswersBoxesFromTheScript)
{
    const auto r = driveFile(path(), "driver_start_question.txt");
    ASSERT_EQ(r.size(), 8u);
    const QJsonArray shown = ::value(r[4]).toArray();
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(shown[0]["title"].toString(), "MANUTENZIONE DA ESEGUIRE");
    EXPECT_EQ(shown[0]["buttons"].toInt(), 20);
    EXPECT_EQ(shown[0]["answer"].toString(), "no");
    EXPECT_TRUE(shown[0]["scripted"].toBool());
    EXPECT_FALSE(::value(r[6]).toBool());
    EXPECT_EQ(::value(r[7]).toArray().size(), 0); // lblExit writes no session row
}

// A command that opens a modal screen is answered once the screen waits; the next commands
// work the modal screen, and the handler that opened it goes on when it closes.
TEST_F(DriverTest, DriverWorksModalScreens)
{
    standIn("Form2", [](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, "Form2", nullptr);
        auto* open = new vb::CommandButton(f, "Cmd_Open", "Apri");
        auto* back = new vb::Label(f, "Label1");
        open->Click = [back] {
            screens().showModal("Form1");
            back->setCaption("back from " + screens().control("Form3", "Txt_Note")->vbProperty("Text").toString());
        };
        return f;
    });
    standIn("Form1", QStringList{"T:Txt_Images"});
    standIn("Form3", QStringList{"T:Txt_Note"});
    FILE* out = std::tmpfile();
    {
        shell::Driver d(testpaths::data("driver_modal.txt"));
        d.setOutput(out);
        EXPECT_EQ(d.run(), 0);
    }
    std::rewind(out);
    QStringList lines;
    char buf[4096];
    while (std::fgets(buf, sizeof buf, out))
        lines << QString::fromUtf8(buf).trimmed();
    std::fclose(out);
    const QString null = R"({"ok":true,"value":null})";
    EXPECT_EQ(lines, (QStringList{null, null, null, R"({"ok":true,"value":true})", null, null,
                                  R"({"ok":true,"value":"back from Form1"})", null}));
}

// An error that no trap caught in a handler reaches the top of the program: the run time's
// box "{number} {description}", and the run ends, keeping what the handler had already
// written to the store. An event fired inside a handler (a Text set fires Change) hands
// its error to that handler, whose trap may take it.
TEST_F(DriverTest, UntrappedErrorShowsTheBoxAndEndsTheRun)
{
    standIn("Form2", [this](QWidget* owner) -> vb::Form* {
        auto* f = new StandIn(owner, "Form2", nullptr);
        auto* text = new vb::TextBox(f, "Text1");
        text->Change = [] { throw vb::VBError(vb::err::TypeMismatch); };
        (new vb::CommandButton(f, "Cmd_Trapped"))->Click = [text] {
            vb::Trap trap = vb::Trap::ignoreAll();
            trap.step([&] { text->setText("x"); });
        };
        (new vb::CommandButton(f, "Cmd_Save"))->Click = [this, text] {
            exec("INSERT INTO Tbl_Register (Date_Open) VALUES (#11/15/2026#)");
            text->setText("y");
        };
        return f;
    });
    InProcessDrive drive;
    drive("show Form2");
    drive("click Form2.Cmd_Trapped");
    EXPECT_TRUE(boxes().empty());
    EXPECT_TRUE(drive("loaded Form2").toBool());

    drive("click Form2.Cmd_Save");
    EXPECT_BOX(oneBox(), "VELMORA", "13 Tipo non corrispondente", vb::mb::Critical);
    EXPECT_FALSE(drive("loaded Form2").toBool());
    EXPECT_EQ(value("SELECT Count(*) FROM Tbl_Register").toLong(), 1); // written before the error
    drive("start");
    EXPECT_TRUE(drive("loaded frmMain").toBool());
}

// Every command and every error the driver answers, byte for byte as transcribed: the
// answer lines of tests/data/driver_transcript.txt follow their commands.
TEST_F(DriverTest, DriverAnswersAsTranscribed)
{
    vb::MsgBox("a \"b\" \\ \t\n\r\b\f\x01\x7f é€ 😀", vb::mb::YesNo | vb::mb::Question, "Tìtolo");
    vb::MsgBox("ok");
    vb::FileDialogRequest dialog{.title = "Apri", .filter = "JPG (*.jpg)|*.Jpg", .initDir = "/tmp/a b"};
    vb::FileDialogService::queueAnswers({"/tmp/a b/c.jpg"});
    vb::FileDialogService::ask(dialog);
    vb::FileDialogService::ask(dialog);
    vb::OpenFile("/tmp/a b.pdf");
    QFile file(testpaths::data("driver_transcript.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    shell::Driver d;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (!lines[i].startsWith(QLatin1String("> ")))
            continue;
        EXPECT_EQ(d.execute(lines[i].mid(2)), lines.value(i + 1)) << lines[i].toStdString();
    }
    QFile::remove("/tmp/velmora-transcript.pdf");
}

// A screen or control name the program does not have is a mistake in the code asking for
// it: logged as critical, and nullptr. An inert screen's controls and the explicit probe
// log nothing; the driver's look-ups of typed names log nothing either (the transcript).
TEST_F(DriverTest, MisspeltNamesAreLoggedAsCritical)
{
    standIn("Form3", QStringList{"T:Txt_Note"});
    static QStringList logged;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& msg) {
            logged << QString::number(type) + u' ' + msg;
        });
    EXPECT_EQ(screens().control("Frm3", "Txt_Note"), nullptr);
    EXPECT_EQ(screens().control("Form3", "Txt_Nota"), nullptr);
    EXPECT_EQ(screens().control("Form12", "Txt_Note"), nullptr);
    EXPECT_EQ(screens().controlIfAny("Form3", "Txt_Nota"), nullptr);
    EXPECT_NE(screens().controlIfAny("Form3", "Txt_Note"), nullptr);
    screens().unload("Frm3");
    qInstallMessageHandler(previous);
    const QString critical = QString::number(QtCriticalMsg) + u' ';
    EXPECT_EQ(logged, (QStringList{critical + "No screen is called Frm3",
                                   critical + "Screen Form3 has no control called Txt_Nota",
                                   critical + "No screen is called Frm3"}));
}
