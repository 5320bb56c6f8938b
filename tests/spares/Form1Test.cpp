// The picture gallery of a part (Form1): what it shows on opening, the walk through the
// pictures, adding, replacing and deleting a picture, and what it hands back to the
// parts register. The register is a stand-in with the fields the gallery reads and writes.
#include "spares/Form1.h"

#include "controls/CommonDialog.h"
#include "runtime/Helpers.h"
#include "support/Fields.h"
#include "support/InProcessDrive.h"
#include "support/ScreenTest.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>

using spares::Form1;
namespace answer = vb::answer;

namespace {

class Form1Test : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        vb::FileDialogService::clear();
        standIn(QStringLiteral("Form2"), [](QWidget* owner) -> vb::Form* {
            auto* f = new StandIn(owner, QStringLiteral("Form2"), nullptr);
            for (const char* t : {"TextRICAMBI", "Txt_Descrizione", "TextID_DESCR_RIC", "Txt_ID_IMAGES_DC",
                                  "Txt_Percorso", "Txt_Images"})
                new vb::TextBox(f, QString::fromLatin1(t));
            auto* photo = new vb::CommandButton(f, QStringLiteral("Cmd_Photo"));
            photo->Move(0, 0, 1500, 1200);
            new vb::Image(f, QStringLiteral("Image4"));
            return f;
        });
        // Part 1 (VITE M8, Brugola) has three pictures, part 2 (OLIO, Idraulico) none.
        const int category = plant.category("VITE M8", "pz");
        plant.part(category, "VITE M8", "Brugola");
        plant.part(category, "OLIO", "Idraulico");
        for (const char* name : {"uno.bmp", "due.bmp", "tre.bmp"})
            plant.add("Tbl_Images_Desc_Ricambi",
                      {{"ID_DESCRIZIONE_RICAMBI", 1}, {"Images", name}, {"Percorso", picture(name, 40, 30)}});
    }

    void TearDown() override
    {
        vb::FileDialogService::clear();
        ScreenTest::TearDown();
    }

    /// A picture file in a folder of its own, away from the program's folder.
    QString picture(const QString& name, int width, int height)
    {
        QDir(path()).mkpath(QStringLiteral("foto"));
        const QString file = path() + QStringLiteral("/foto/") + name;
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        EXPECT_TRUE(image.save(file, "BMP"));
        return file;
    }

    QString file(const char* name) const { return path() + QStringLiteral("/foto/") + QString::fromLatin1(name); }

    vb::Control* register2(const char* control)
    {
        return shell::screens().control(QStringLiteral("Form2"), QString::fromLatin1(control));
    }
    QString register2Text(const char* control) { return register2(control)->vbProperty("Text").toString(); }

    /// The register with a part chosen, as a click in its parts list leaves it: the part's
    /// first picture and its key.
    void choosePart(int part)
    {
        const bool screws = part == 1;
        register2("TextRICAMBI")->setVbProperty("Text", screws ? "VITE M8" : "OLIO");
        register2("Txt_Descrizione")->setVbProperty("Text", screws ? "Brugola" : "Idraulico");
        register2("TextID_DESCR_RIC")->setVbProperty("Text", QString::number(part));
        register2("Txt_ID_IMAGES_DC")->setVbProperty("Text", screws ? "1" : "");
    }

    static Form1* gallery() { return screen<Form1>("Form1"); }
    bool open() { return shell::screens().isLoaded(QStringLiteral("Form1")); }

    QStringList pictureRows()
    {
        QStringList out;
        for (const auto& r : rows("SELECT ID_IMAGES_DC, ID_DESCRIZIONE_RICAMBI, Images, Percorso FROM "
                                  "Tbl_Images_Desc_Ricambi ORDER BY ID_IMAGES_DC"))
            out << QStringLiteral("%1 %2 %3 %4")
                       .arg(r[0].toString(), r[1].toString(), r[2].toString(), QFileInfo(r[3].toString()).fileName());
        return out;
    }
};

} // namespace

TEST_F(Form1Test, APartWithoutPicturesOffersOnlyTheLoadAndTheWayBack)
{
    choosePart(2);
    Form1* f = gallery();
    EXPECT_EQ(kit::texts({f, f->Label1, f->TextID_DESCR_RIC, f->TextID_IMAGES_DC, f->Txt_Conta}),
              QStringList({"IMMAGINE DESCRIZIONE RICAMBIO", "DESCRIZIONE: [OLIO] [Idraulico]", "2", "0", ""}));
    EXPECT_EQ(kit::enabledOf({f->Delete_Images, f->Image_Previous, f->Image_Next, f->UP_images, f->Return}),
              QStringList({"UP_images", "Return"}));
    EXPECT_EQ(f->Image1->Picture(), "");
    f->Return->click();
    EXPECT_FALSE(open());
}

TEST_F(Form1Test, OnePictureShowsWithoutAPosition)
{
    exec("Delete * from Tbl_Images_Desc_Ricambi WHERE ID_IMAGES_DC > 1");
    choosePart(1);
    Form1* f = gallery();
    EXPECT_EQ(kit::texts({f, f->Txt_Conta, f->Txt_Posizione_Record}),
              QStringList({"IMMAGINE DESCRIZIONE RICAMBIO", "1", ""}));
    EXPECT_EQ(kit::enabledOf({f->Image_Next, f->Delete_Images}), QStringList{"Delete_Images"});
    EXPECT_EQ(f->Image1->Picture(), file("uno.bmp"));
    // A small picture keeps its own size and is centred in the width.
    EXPECT_EQ(f->Image1->ToolTipText(), "100%");
    EXPECT_EQ(f->Image1->Width(), vb::pixelsToTwips(40));
    EXPECT_EQ(f->Image1->Left(), (f->Width() - f->Image1->Width() - 150) / 2);
}

TEST_F(Form1Test, WalkThroughThePicturesClosesTheEnds)
{
    choosePart(1);
    Form1* f = gallery();
    // Each step: the caption, the picture's key and position, and the arrows still open.
    const auto at = [&](const QString& n, const QStringList& open) {
        EXPECT_EQ(kit::texts({f, f->TextID_IMAGES_DC, f->Txt_Posizione_Record}),
                  QStringList({"IMMAGINE [VITE M8] [Brugola] " + n + " di 3", n, n}));
        EXPECT_EQ(kit::enabledOf({f->Image_Previous, f->Image_Next}), open);
    };
    at("1", {"Image_Next"});
    f->Image_Next->click();
    at("2", {"Image_Previous", "Image_Next"});
    EXPECT_EQ(f->Txt_Images->Text(), "due.bmp");
    EXPECT_EQ(f->Image1->Picture(), file("due.bmp"));
    f->Image_Next->click();
    at("3", {"Image_Previous"});
    f->Image_Next->click(); // closed: nothing happens
    at("3", {"Image_Previous"});
    f->Image_Previous->click();
    at("2", {"Image_Previous", "Image_Next"});
    f->Image_Previous->click();
    at("1", {"Image_Next"});

    // A picture moved on disk: its row stays, the picture shown before stays, no box.
    QFile::remove(file("due.bmp"));
    f->Image_Next->click();
    EXPECT_EQ(f->Txt_Percorso->Text(), file("due.bmp"));
    EXPECT_EQ(f->Image1->Picture(), file("uno.bmp"));
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Form1Test, LoadedPictureIsAddedAndHandedToTheRegister)
{
    const QString nuova = picture("nuova.bmp", 1200, 300);
    choosePart(1);
    Form1* f = gallery();
    vb::FileDialogService::queueAnswers({nuova});
    answer({answer::Yes, answer::Yes});
    f->UP_images->click();

    // The dialog starts on the picture shown.
    const auto asked = vb::FileDialogService::takeShown();
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(QStringList({asked[0].title, asked[0].filter, asked[0].defaultExt, asked[0].fileName}),
              QStringList({"Selezionare il file da aprire",
                           "JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC FILES)|*.Gif",
                           "Jpg", file("uno.bmp")}));
    EXPECT_EQ(std::pair(asked[0].filterIndex, asked[0].flags), std::pair(1, int(vb::cdl::FileMustExist)));

    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_BOX(shown[0], "SALVA IMMAGINE'nuova.bmp'", "Vuoi salvare l'Immagine 'nuova.bmp' ?",
               vb::mb::YesNo + vb::mb::Question);
    EXPECT_BOX(shown[1], "VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?'nuova.bmp'",
               "SI per Aggiungere l'Immagine, NO per sostituire quella esistente'nuova.bmp' ?",
               vb::mb::YesNo + vb::mb::Question);

    EXPECT_EQ(pictureRows().mid(3), QStringList{"4 1 nuova.bmp nuova.bmp"});
    EXPECT_EQ(value("SELECT Percorso FROM Tbl_Images_Desc_Ricambi WHERE ID_IMAGES_DC = 4").toString(), nuova)
        << "the file stays where it was";
    EXPECT_FALSE(open()) << "every change ends the visit";
    EXPECT_EQ(QStringList({register2Text("Txt_Percorso"), register2Text("Txt_Images")}),
              QStringList({nuova, "nuova.bmp"}));
    auto* image4 = dynamic_cast<vb::Image*>(register2("Image4"));
    EXPECT_EQ(image4->Picture(), nuova);
    // Fitted into the photo button's place, by its width.
    EXPECT_EQ(std::pair(image4->Width(), image4->Height()), std::pair(1500, 375));
    EXPECT_TRUE(QFileInfo::exists(nuova));
}

TEST_F(Form1Test, ReplaceRewritesThePictureShownOrAddsWhenThereIsNone)
{
    const QString nuova = picture("nuova.bmp", 20, 20);
    choosePart(1);
    Form1* f = gallery();
    f->Image_Next->click();
    vb::FileDialogService::queueAnswers({nuova});
    answer({answer::Yes, answer::No});
    f->UP_images->click();
    EXPECT_EQ(pictureRows(), QStringList({"1 1 uno.bmp uno.bmp", "2 1 nuova.bmp nuova.bmp", "3 1 tre.bmp tre.bmp"}));
    EXPECT_TRUE(QFileInfo::exists(file("due.bmp"))) << "the file replaced stays on disk";

    // The part without pictures: a replace with nothing to replace adds.
    choosePart(2);
    f = gallery();
    vb::FileDialogService::queueAnswers({nuova});
    answer({answer::Yes, answer::No});
    f->UP_images->click();
    EXPECT_EQ(pictureRows().mid(3), QStringList{"4 2 nuova.bmp nuova.bmp"});

    // No to saving: nothing written, the visit ends.
    f = gallery();
    vb::FileDialogService::queueAnswers({file("uno.bmp")});
    answer({answer::No});
    f->UP_images->click();
    EXPECT_EQ(boxes().size(), 5u);
    EXPECT_EQ(pictureRows().size(), 4);
    EXPECT_FALSE(open());
}

TEST_F(Form1Test, CancelledDialogGoesOnWithTheStartingFile)
{
    choosePart(1);
    Form1* f = gallery();
    // No answer queued: the dialog is cancelled, and the save goes on with the path it
    // started on and no file name.
    answer({answer::Yes, answer::Yes});
    f->UP_images->click();
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].prompt, "Vuoi salvare l'Immagine '' ?");
    EXPECT_EQ(lines("SELECT Images, Percorso FROM Tbl_Images_Desc_Ricambi WHERE ID_IMAGES_DC = 4"),
              QStringList{"|" + file("uno.bmp")});
    EXPECT_EQ(register2Text("Txt_Images"), "");
}

// Through the driver: a path with blanks in quotes, then a cancel, each visit ended by a
// No to the save; the dialogs come back with where they started and what they got.
TEST_F(Form1Test, DriverAnswersTheDialogsAndListsThem)
{
    const QString nuova = picture("nuova foto.bmp", 20, 20);
    choosePart(1);
    InProcessDrive drive;
    drive(QStringLiteral("file \"%1\" cancel").arg(nuova));
    drive("answer no no");
    for (int visit = 0; visit < 2; ++visit) {
        drive("show Form1");
        drive("click Form1.UP_images");
    }
    const auto shown = boxes();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].prompt, "Vuoi salvare l'Immagine 'nuova foto.bmp' ?");
    EXPECT_EQ(shown[1].prompt, "Vuoi salvare l'Immagine '' ?");

    const QJsonArray dialogs = drive("dialogs").toArray();
    ASSERT_EQ(dialogs.size(), 2);
    for (const auto& d : dialogs)
        EXPECT_EQ(d[QStringLiteral("initial")].toString(), file("uno.bmp"));
    EXPECT_EQ(dialogs[0][QStringLiteral("answer")].toString(), nuova);
    EXPECT_TRUE(dialogs[1][QStringLiteral("answer")].isNull());
    EXPECT_TRUE(drive("dialogs").toArray().isEmpty());
}

TEST_F(Form1Test, DeleteTakesTheReferenceAndLeavesTheFile)
{
    choosePart(1);
    register2("Txt_Images")->setVbProperty("Text", "uno.bmp");
    Form1* f = gallery();
    answer({answer::No});
    f->Delete_Images->click();
    EXPECT_BOX(oneBox(), "ELIMINA QUESTA IMMAGINE", "Vuoi veramente Eliminare l'Immagine selezionata?",
               vb::mb::YesNo + vb::mb::Exclamation);
    EXPECT_FALSE(open()) << "either answer ends the visit";
    EXPECT_EQ(pictureRows().size(), 3);

    f = gallery();
    f->Image_Next->click();
    answer({answer::Yes});
    f->Delete_Images->click();
    EXPECT_EQ(pictureRows(), QStringList({"1 1 uno.bmp uno.bmp", "3 1 tre.bmp tre.bmp"}));
    EXPECT_TRUE(QFileInfo::exists(file("due.bmp")));
    EXPECT_EQ(register2Text("Txt_Images"), "");
    EXPECT_TRUE(dynamic_cast<vb::Image*>(register2("Image4"))->isHidden());
    EXPECT_FALSE(open());
}
