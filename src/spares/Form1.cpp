#include "spares/Form1.h"

#include "controls/PictureFit.h"
#include "controls/ScreenKit.h"
#include "runtime/AppPath.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QMenuBar>

#include <algorithm>

namespace spares {

using vb::Trap;
using vb::Variant;
namespace mb = vb::mb;

namespace {

const QString Form2 = QStringLiteral("Form2");

/// A control of the parts register, which is loaded hidden when it is not yet.
vb::Control* register2(const char* control)
{
    return shell::screens().control(Form2, QString::fromLatin1(control));
}

QString form2Text(const char* control)
{
    vb::Control* c = register2(control);
    return c ? c->vbProperty(QStringLiteral("Text")).toString() : QString();
}

void setForm2(const char* control, const char* property, const Variant& value)
{
    if (vb::Control* c = register2(control))
        c->setVbProperty(QString::fromLatin1(property), value);
}

/// The register's picture fitted into the place of its photo button.
void fitRegisterPicture()
{
    auto* image4 = dynamic_cast<vb::Image*>(register2("Image4"));
    vb::Control* photo = register2("Cmd_Photo");
    if (image4 && photo)
        vb::CONTROLLO_IMMAGINE(*image4, photo->Width(), photo->Height());
}

int number(const vb::TextBox* field)
{
    return int(vb::Val(field->Text()));
}

QString pictures(const QString& part)
{
    return QStringLiteral("Select * from Tbl_Images_Desc_Ricambi WHERE ID_DESCRIZIONE_RICAMBI= ") + vb::KeyText(part);
}

} // namespace

Form1::Form1(QWidget* owner) : vb::Form(owner, QStringLiteral("Form1"), QStringLiteral("IMMAGINE DESCRIZIONE RICAMBIO"))
{
    buildControls();
}

void Form1::buildControls()
{
    MenuBar = new QMenuBar(this);
    MenuBar->setObjectName(QStringLiteral("MenuBar"));
    Return = new vb::Menu(this, MenuBar, QStringLiteral("Return"), QStringLiteral("<<Torna Indietro"));
    Menu_Image = new vb::Menu(this, MenuBar, QStringLiteral("Menu_Image"), QStringLiteral("Immagine"));
    UP_images = new vb::Menu(this, MenuBar, QStringLiteral("UP_images"), QStringLiteral("Carica"), Menu_Image);
    Delete_Images = new vb::Menu(this, MenuBar, QStringLiteral("Delete_Images"), QStringLiteral("Elimina"), Menu_Image);
    Image_Previous = new vb::Menu(this, MenuBar, QStringLiteral("Image_Previous"), QStringLiteral("<<Precedente"));
    Image_Next = new vb::Menu(this, MenuBar, QStringLiteral("Image_Next"), QStringLiteral("Successiva>>"));

    Label1 = new vb::Label(this, QStringLiteral("Label1"));
    Label1->setAlignment(2);
    Image1 = new vb::Image(this, QStringLiteral("Image1"));
    Apri = new vb::CommonDialog(this, QStringLiteral("Apri"));

    const vb::ScreenKit kit(this);
    TextID_DESCR_RIC = kit.hidden("TextID_DESCR_RIC");
    TextID_IMAGES_DC = kit.hidden("TextID_IMAGES_DC");
    Txt_Conta = kit.hidden("Txt_Conta");
    Txt_Posizione_Record = kit.hidden("Txt_Posizione_Record");
    Txt_Percorso = kit.hidden("Txt_Percorso");
    Txt_Images = kit.hidden("Txt_Images");

    Move(0, 0, 9600, 7200);
    Form_Resize();

    Return->Click = [this] { Return_Click(); };
    UP_images->Click = [this] { UP_images_Click(); };
    Delete_Images->Click = [this] { Delete_Images_Click(); };
    Image_Previous->Click = [this] { Image_Previous_Click(); };
    Image_Next->Click = [this] { Image_Next_Click(); };
}

void Form1::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Delete_Images->setEnabled(false); });
    trap.step([&] { Image_Previous->setEnabled(false); });
    trap.step([&] { Image_Next->setEnabled(false); });
    trap.step([&] { centre(); });
    trap.step([&] {
        Label1->setCaption(QStringLiteral("DESCRIZIONE: [") + form2Text("TextRICAMBI") + QStringLiteral("] [") +
                           form2Text("Txt_Descrizione") + QStringLiteral("]"));
    });
    // Form2 writes the keys after this load has run (its first reference loads the
    // gallery), so the load takes them from Form2 itself.
    trap.step([&] {
        if (TextID_DESCR_RIC->Text().isEmpty())
            TextID_DESCR_RIC->setText(form2Text("TextID_DESCR_RIC"));
    });
    trap.step([&] {
        if (TextID_IMAGES_DC->Text().isEmpty())
            TextID_IMAGES_DC->setText(form2Text("Txt_ID_IMAGES_DC"));
        if (TextID_IMAGES_DC->Text().isEmpty())
            TextID_IMAGES_DC->setText(QStringLiteral("0"));
    });
    if (number(TextID_DESCR_RIC) == 0)
        return;

    store::Recordset rs;
    bool none = true;
    trap.step([&] {
        rs.Open(pictures(TextID_DESCR_RIC->Text()));
        none = rs.Eof();
    });
    if (none)
        return;
    trap.step([&] { Txt_Conta->setText(QString::number(rs.RecordCount())); });
    // With one picture the caption stays as designed and no position is kept.
    if (number(Txt_Conta) > 1) {
        trap.step([&] { Image_Next->setEnabled(true); });
        trap.step([&] { Txt_Posizione_Record->setText(QString::number(rs.AbsolutePosition() + 1)); });
        trap.step([&] { setPositionCaption(); });
    }
    trap.step([&] { Txt_Percorso->setText(rs.Fields(QStringLiteral("Percorso")).Value()); });
    showPicture();
    setDeleteEntry();
}

void Form1::resizeEvent(QResizeEvent* e)
{
    vb::Form::resizeEvent(e);
    Form_Resize();
}

void Form1::Form_Resize()
{
    if (!Image1)
        return;
    Trap trap = Trap::ignoreAll();
    trap.step([&] { MenuBar->setGeometry(0, 0, width(), MenuBar->sizeHint().height()); });
    trap.step([&] {
        Label1->Move(120, vb::pixelsToTwips(MenuBar->sizeHint().height(), this) + 60, std::max(Width() - 240, 0), 285);
    });
    trap.step([&] { Image1->setTop(Label1->Top() + Label1->Height() + 120); });
    fitPicture();
}

void Form1::fitPicture()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { vb::CONTROLLO_IMMAGINE(*Image1, Width(), Height() - (Label1->Top() + Label1->Height()) - 1300); });
    trap.step([&] { Image1->setLeft((Width() - Image1->Width() - 150) / 2); });
}

void Form1::showPicture()
{
    // A file that has gone leaves the picture shown before, in silence.
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Image1->setPicture(Txt_Percorso->Text()); });
    fitPicture();
}

void Form1::setDeleteEntry()
{
    Delete_Images->setEnabled(!Txt_Percorso->Text().isEmpty() && !TextID_IMAGES_DC->Text().isEmpty());
}

void Form1::setPositionCaption()
{
    setCaption(QStringLiteral("IMMAGINE [") + form2Text("TextRICAMBI") + QStringLiteral("] [") +
               form2Text("Txt_Descrizione") + QStringLiteral("] ") + Txt_Posizione_Record->Text() +
               QStringLiteral(" di ") + Txt_Conta->Text());
}

void Form1::showRowAtPosition()
{
    Trap trap = Trap::ignoreAll();
    store::Recordset rs;
    trap.step([&] { rs.Open(pictures(TextID_DESCR_RIC->Text())); });
    trap.step([&] { rs.Move(number(Txt_Posizione_Record) - 1); });
    // Outside the rows the first one is shown.
    trap.step([&] {
        if (rs.Bof() || rs.Eof())
            rs.MoveFirst();
    });
    trap.step([&] { Txt_Percorso->setText(rs.Fields(QStringLiteral("Percorso")).Value()); });
    trap.step([&] { Txt_Images->setText(rs.Fields(QStringLiteral("Images")).Value()); });
    trap.step([&] { TextID_IMAGES_DC->setText(rs.Fields(QStringLiteral("ID_IMAGES_DC")).Value()); });
    trap.step([&] { setPositionCaption(); });
    showPicture();
    setDeleteEntry();
}

void Form1::Image_Previous_Click()
{
    Trap trap = Trap::ignoreAll();
    const int position = number(Txt_Posizione_Record);
    const int count = number(Txt_Conta);
    if (position > 1) {
        trap.step([&] { Txt_Posizione_Record->setText(QString::number(position - 1)); });
        Image_Previous->setEnabled(true);
    }
    if (count == 1) {
        Image_Previous->setEnabled(false);
        Image_Next->setEnabled(false);
    } else if (count > 1) {
        Image_Next->setEnabled(true);
    }
    if (number(Txt_Posizione_Record) == 1)
        Image_Previous->setEnabled(false);
    if (number(TextID_DESCR_RIC) == 0)
        return;
    showRowAtPosition();
}

void Form1::Image_Next_Click()
{
    Trap trap = Trap::ignoreAll();
    const int position = number(Txt_Posizione_Record);
    if (position < number(Txt_Conta))
        trap.step([&] { Txt_Posizione_Record->setText(QString::number(position + 1)); });
    Image_Previous->setEnabled(true);
    // The ends are closed by the entries: the gallery does not wrap round.
    Image_Next->setEnabled(Txt_Posizione_Record->Text() != Txt_Conta->Text());
    if (number(TextID_DESCR_RIC) == 0)
        return;
    showRowAtPosition();
}

void Form1::UP_images_Click()
{
    // A cancel of the dialog, like any other error, goes on with the next statement: the
    // file name still in the dialog is asked about and saved.
    Trap trap = Trap::ignoreAll();
    Apri->Filter =
        QStringLiteral("JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC FILES)|*.Gif");
    Apri->FilterIndex = 1;
    Apri->DefaultExt = QStringLiteral("Jpg");
    Apri->DialogTitle = QStringLiteral("Selezionare il file da aprire");
    Apri->Flags = vb::cdl::FileMustExist;
    Apri->FileName = Txt_Percorso->Text();
    Apri->InitDir = vb::AppPath() + QLatin1Char('/');
    Apri->CancelError = true;
    trap.step([&] { Apri->ShowOpen(); });

    trap.step([&] { Txt_Percorso->setText(Apri->FileName); });
    const QString name = Apri->FileTitle;
    showPicture();

    if (vb::MsgBox(QStringLiteral("Vuoi salvare l'Immagine '") + name + QStringLiteral("' ?"), mb::YesNo + mb::Question,
                   QStringLiteral("SALVA IMMAGINE'") + name + QStringLiteral("'")) == vb::answer::No) {
        shell::screens().unload(QStringLiteral("Form1"));
        return;
    }

    const QString key = TextID_IMAGES_DC->Text().isEmpty() ? QStringLiteral("0") : TextID_IMAGES_DC->Text();
    // The part's register shows the chosen picture at once.
    trap.step([&] { setForm2("Txt_Percorso", "Text", Txt_Percorso->Text()); });
    trap.step([&] { setForm2("Txt_Images", "Text", vb::Right(Txt_Percorso->Text(), int(name.size()))); });
    trap.step([&] { setForm2("Image4", "Picture", Txt_Percorso->Text()); });
    trap.step([] { fitRegisterPicture(); });

    const bool add = vb::MsgBox(QStringLiteral("SI per Aggiungere l'Immagine, NO per sostituire quella esistente'") +
                                    name + QStringLiteral("' ?"),
                                mb::YesNo + mb::Question,
                                QStringLiteral("VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?'") + name +
                                    QStringLiteral("'")) == vb::answer::Yes;
    {
        store::Recordset rs;
        trap.step([&] {
            rs.Open(QStringLiteral("Select * from Tbl_Images_Desc_Ricambi WHERE ID_IMAGES_DC=") + vb::KeyText(key));
        });
        if (add) {
            trap.step([&] { rs.AddNew(); });
            trap.step([&] { TextID_IMAGES_DC->setText(rs.Fields(QStringLiteral("ID_IMAGES_DC")).Value()); });
            trap.step([&] { rs.Fields(QStringLiteral("Images")) = name; });
            trap.step([&] { rs.Fields(QStringLiteral("Percorso")) = Txt_Percorso->Text(); });
            trap.step([&] { rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) = TextID_DESCR_RIC->Text(); });
        } else {
            // A replace with nothing to replace adds.
            trap.step([&] {
                if (rs.Eof())
                    rs.AddNew();
            });
            trap.step([&] { TextID_IMAGES_DC->setText(rs.Fields(QStringLiteral("ID_IMAGES_DC")).Value()); });
            trap.step([&] { rs.Fields(QStringLiteral("Images")) = name; });
            trap.step([&] { rs.Fields(QStringLiteral("ID_DESCRIZIONE_RICAMBI")) = TextID_DESCR_RIC->Text(); });
            trap.step([&] { rs.Fields(QStringLiteral("Percorso")) = Txt_Percorso->Text(); });
        }
        trap.step([&] { Image1->setPicture(Txt_Percorso->Text()); });
        trap.step([&] { rs.UpdateBatch(); });
    }
    shell::screens().unload(QStringLiteral("Form1"));
}

void Form1::Delete_Images_Click()
{
    Trap trap = Trap::ignoreAll();
    if (TextID_IMAGES_DC->Text().isEmpty())
        trap.step([&] { TextID_IMAGES_DC->setText(form2Text("Txt_ID_IMAGES_DC")); });
    QString key;
    trap.step([&] { key = vb::KeyText(TextID_IMAGES_DC->Text()); });
    if (vb::Val(key) == 0)
        return;
    if (vb::MsgBox(QStringLiteral("Vuoi veramente Eliminare l'Immagine selezionata?"), mb::YesNo + mb::Exclamation,
                   QStringLiteral("ELIMINA QUESTA IMMAGINE")) == vb::answer::Yes) {
        // Only the reference goes: the file stays where it is.
        trap.step([&] {
            store::Recordset rs;
            rs.Open(QStringLiteral("Delete * from Tbl_Images_Desc_Ricambi WHERE ID_IMAGES_DC= ") + key);
        });
        trap.step([&] { setForm2("Txt_Images", "Text", QString()); });
        trap.step([&] { setForm2("Image4", "Visible", false); });
        trap.step([] { fitRegisterPicture(); });
    }
    shell::screens().unload(QStringLiteral("Form1"));
}

void Form1::Return_Click()
{
    shell::screens().unload(QStringLiteral("Form1"));
}

VELMORA_SCREEN(Form1);

} // namespace spares
