// The access screen Form20: its code and the transfer procedure text it writes.
#include "runtime/AppPath.h"
#include "runtime/OpenFile.h"
#include "shell/Form20.h"
#include "support/GoldenFile.h"
#include "support/ScreenTest.h"

#include <QFile>

using shell::Form20;
using shell::screens;

namespace {

class AccessTest : public ScreenTest
{
protected:
    static Form20* form20()
    {
        auto* f = screen<Form20>("Form20");
        f->show();
        return f;
    }
};

} // namespace

TEST_F(AccessTest, AWrongCodeIsRefusedAndTheFieldGetsTheFocus)
{
    Form20* f = form20();
    EXPECT_EQ(f->Caption(), "VELMORA");
    EXPECT_FALSE(f->Cmd_Procedura->isVisibleTo(f));
    // The comparison is case-sensitive and over the whole text.
    for (const QString& wrong : QStringList{"gravolt", "GRAVOLT ", QString()}) {
        f->Txt_Pass->setText(wrong);
        f->Cmd_Pass->click();
        EXPECT_BOX(oneBox(), "ACCESSO NEGATO!!", "PASSWORD NON RICONOSCIUTA!!", vb::mb::Critical);
        EXPECT_TRUE(f->Txt_Pass->vb::Control::hasFocus());
        EXPECT_EQ(f->Txt_Pass->BackColor(), vb::colour::Orange);
        EXPECT_FALSE(f->Cmd_Procedura->isVisibleTo(f));
        EXPECT_TRUE(f->Cmd_Pass->isVisibleTo(f));
    }
    f->Txt_Pass->focusOut();
    EXPECT_EQ(f->Txt_Pass->BackColor(), vb::colour::White);
}

TEST_F(AccessTest, TheCodeShowsTheProcedureButton)
{
    Form20* f = form20();
    f->Txt_Pass->setText("GRAVOLT");
    f->Cmd_Pass->click();
    EXPECT_TRUE(boxes().empty());
    EXPECT_FALSE(f->Cmd_Pass->isVisibleTo(f));
    EXPECT_FALSE(f->Txt_Pass->isVisibleTo(f));
    EXPECT_TRUE(f->Image2->isVisibleTo(f));
    EXPECT_TRUE(f->Cmd_Procedura->isVisibleTo(f));

    f->Image6->click();
    EXPECT_FALSE(screens().isLoaded("Form20"));
}

// Velmora.txt is written (overwritten each time), the box says where, and the name handed
// to the desktop has two dots: nothing opens. That one dot of difference is kept on purpose.
TEST_F(AccessTest, ProcedureWritesVelmoraTxtAndHandsOverTheTwoDotName)
{
    Form20* f = form20();
    const QString written = path() + "/Velmora.txt";
    {
        QFile old(written);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write(QByteArray(5000, 'x'));
    }
    f->Cmd_Procedura_Click();
    f->Cmd_Procedura_Click();

    golden::expectMatches("transfer_procedure.txt", linesOf("Velmora.txt").join(u'\n'));

    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "PROCEDURA TRASFERIMENTO DATI",
               "Il File 'Velmora..txt' che verrà aperto automaticamente dopo il Click, è stato salvato in:  " + path(),
               vb::mb::Information);

    const auto opened = vb::OpenFileService::takeOpened();
    ASSERT_EQ(opened.size(), 2u);
    EXPECT_EQ(opened[0], path() + "/Velmora..txt");
    EXPECT_FALSE(QFile::exists(opened[0]));
}

TEST_F(AccessTest, AFileThatCannotBeWrittenShowsTheDescriptionOnly)
{
    Form20* f = form20();
    vb::setAppPath(path() + "/missing/folder");
    f->Cmd_Procedura_Click();
    const auto box = oneBox();
    EXPECT_EQ(box.buttons, 0);
    EXPECT_FALSE(box.prompt.isEmpty());
    EXPECT_TRUE(vb::OpenFileService::takeOpened().empty());
    vb::setAppPath(path());
}
