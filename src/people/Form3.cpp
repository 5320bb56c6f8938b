#include "people/Form3.h"

#include "controls/PictureFit.h"
#include "controls/ScreenKit.h"
#include "reports/ReportLayout.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QEvent>
#include <QPlainTextEdit>

#include <algorithm>

namespace people {

using vb::Trap;
using vb::Variant;
namespace err = vb::err;
namespace mb = vb::mb;

namespace {

const QString ScreenName = QStringLiteral("Form3");
const QString Inserting = QStringLiteral("INSERISCI NOTA");
const QString Editing = QStringLiteral("MODIFICA NOTA");
const QString MissingTitle = QStringLiteral("MANCANO LE INFORMAZIONI BASE");

// Errors this screen tells apart.
constexpr int NoRowsInGrid = 6061; // a selection in an empty grid
constexpr int PathNotFound = 76;
constexpr int FileNotFound = 53;

// The list of all notes selects and groups the same twelve columns, in the table's order.
const QString AllNotesHead = QStringLiteral(
    "SELECT Tbl_Maintenance_Note.ID, Tbl_Maintenance_Note.ID_MAINTENANCE, Tbl_Maintenance_Note.ID_MODELLO, "
    "Tbl_Maintenance_Note.ID_NUM, Tbl_Maintenance_Note.ID_OPERATORE, Tbl_Maintenance_Note.Ultima, "
    "Tbl_Maintenance_Note.Avvisa, Tbl_Maintenance_Note.NOTE, Tbl_Maintenance_Note.Tipo_Nota, "
    "Tbl_Maintenance_Note.Tipo_Nota2,Tbl_Maintenance_Note.Images, Tbl_Maintenance_Note.Percorso From "
    "Tbl_Maintenance_Note GROUP BY");
const QString AllNotesGrouping =
    QStringLiteral(" Tbl_Maintenance_Note.ID, Tbl_Maintenance_Note.ID_MAINTENANCE, Tbl_Maintenance_Note.ID_MODELLO, "
                   "Tbl_Maintenance_Note.ID_NUM, Tbl_Maintenance_Note.ID_OPERATORE, Tbl_Maintenance_Note.Ultima, "
                   "Tbl_Maintenance_Note.Avvisa, Tbl_Maintenance_Note.NOTE, Tbl_Maintenance_Note.Tipo_Nota, "
                   "Tbl_Maintenance_Note.Tipo_Nota2,Tbl_Maintenance_Note.Images, Tbl_Maintenance_Note.Percorso");

// The screen in twips: it fits the main screen's working area of an 800 by 600 display
// (9225 by 8895).
constexpr int Margin = 60;
constexpr int ListsTop = 60;
constexpr int ListsHeight = 3300;
constexpr int MachinesWidth = 3900;
constexpr int NotesLeft = Margin + MachinesWidth + 60;
constexpr int NotesWidth = 5140;
constexpr int SelectedTop = ListsTop + ListsHeight + 60;
constexpr int SelectedHeight = 2400;
constexpr int FullWidth = NotesLeft + NotesWidth - Margin;
constexpr int InputTop = SelectedTop + SelectedHeight + 90;
constexpr int RowStep = 360;
constexpr int RowHeight = 315;
constexpr int LabelWidth = 1140;
constexpr int ComboLeft = Margin + LabelWidth;
constexpr int ComboWidth = 2400;
constexpr int NoteLabelLeft = ComboLeft + ComboWidth + 90;
constexpr int NoteLeft = NoteLabelLeft + 600;
constexpr int NoteWidth = 2700;
constexpr int PictureLeft = NoteLeft + NoteWidth + 90;
constexpr int PictureWidth = FullWidth + Margin - PictureLeft;
constexpr int PictureHeight = 780;
constexpr int ButtonTop = InputTop + 5 * RowStep + 60;
constexpr int ButtonHeight = 375;
constexpr int EnlargedHeight = ListsHeight + 60 + SelectedHeight;
constexpr int SymbolWidth = (PictureWidth - 120) / 4;

constexpr int inputTop(int row)
{
    return InputTop + row * RowStep;
}
constexpr int symbolLeft(int index)
{
    return 60 + index * SymbolWidth;
}

/// A key from a hidden field, an empty one counting as 0.
QString keyOrZero(const QString& text)
{
    return text.isEmpty() ? QStringLiteral("0") : vb::KeyText(text);
}

/// A key from a grid's cell or a field: Null is error 94.
QString keyOf(const Variant& value)
{
    return vb::KeyText(value.toString());
}

/// A number from a hidden field where empty or unreadable text counts as 0.
int readable(const QString& text)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    return ok ? n : 0;
}

void bindList(vb::Adodc* source, vb::DataCombo* combo, const QString& statement, const QString& field)
{
    source->setRecordSource(statement);
    source->Refresh();
    combo->bind(source, field);
}

/// A field of a data control's current row (no rows: no current record).
Variant sourceField(const vb::Adodc* source, const QString& field)
{
    if (!source->Recordset())
        throw vb::VBError(err::NoCurrentRecord);
    return source->Recordset()->Fields(field).Value();
}

/// A cell of the grid's current row; an empty grid has none to give.
Variant gridCell(vb::DataGrid* grid, const QString& column)
{
    if (grid->Row() < 0)
        throw vb::VBError(NoRowsInGrid, QStringLiteral("Nessuna riga nella griglia"));
    return grid->Columns(column).Value();
}

/// A control of the maintenance register, which comes into being when it is read.
vb::Control* register7(const char* control)
{
    return shell::screens().control(QStringLiteral("Form7"), QString::fromLatin1(control));
}

/// The place of the caret as VB counts it: a line end is two characters, as in Text.
int caretOf(const vb::TextBox* box)
{
    const int caret = box->SelStart();
    if (!box->multiLine())
        return caret;
    QString plain = box->Text();
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return caret + int(plain.left(caret).count(QLatin1Char('\n')));
}

/// A mouse release inside the note's text.
class MouseUpFilter : public QObject
{
public:
    MouseUpFilter(QObject* parent, std::function<void()> handler) : QObject(parent), m_handler(std::move(handler)) { }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonRelease)
            m_handler();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> m_handler;
};

} // namespace

Form3::Form3(QWidget* owner) : vb::Form(owner, ScreenName, QStringLiteral("NOTE"))
{
    buildControls();
    connectEvents();
}

void Form3::buildControls()
{
    Move(0, 0, FullWidth + 2 * Margin + 5, ButtonTop + ButtonHeight + 480);
    const vb::ScreenKit kit(this, {.button = ButtonHeight, .field = RowHeight});

    // The machines with notes and all notes side by side; what is selected below them.
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("NOTE MACCHINE"), Margin, ListsTop, MachinesWidth, ListsHeight);
    DataGrid2 = kit.grid(Frame3, "DataGrid2", Adodc2, "Adodc2", 60, 240, MachinesWidth - 120, ListsHeight - 300);
    Frame2 = kit.frame(this, "Frame2", QStringLiteral("TUTTE LE NOTE"), NotesLeft, ListsTop, NotesWidth, ListsHeight);
    DataGrid3 = kit.grid(Frame2, "DataGrid3", Adodc3, "Adodc3", 60, 240, NotesWidth - 120, ListsHeight - 300);
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("NOTE"), Margin, SelectedTop, FullWidth, SelectedHeight);
    DataGrid1 = kit.grid(Frame1, "DataGrid1", Adodc1, "Adodc1", 60, 240, FullWidth - 120, SelectedHeight - 300);

    // The input area: the machine and the classifications on the left, the text beside.
    Label1 = kit.label(this, "Label1", QStringLiteral("Macchina:"), Margin, inputTop(0) + 30, LabelWidth);
    DataCombo3 = kit.dataCombo(this, "DataCombo3", Adodc4, "Adodc4", ComboLeft, inputTop(0), ComboWidth);
    Label2 = kit.label(this, "Label2", QStringLiteral("Modello:"), Margin, inputTop(1) + 30, LabelWidth);
    DataCombo2 = kit.dataCombo(this, "DataCombo2", Adodc5, "Adodc5", ComboLeft, inputTop(1), ComboWidth);
    DataCombo2->setEnabled(false);
    Label9 = kit.label(this, "Label9", QStringLiteral("N°:"), Margin, inputTop(2) + 30, LabelWidth);
    DataCombo1 = kit.dataCombo(this, "DataCombo1", Adodc6, "Adodc6", ComboLeft, inputTop(2), ComboWidth);
    DataCombo1->setEnabled(false);
    Label3 = kit.label(this, "Label3", QStringLiteral("Tipo Nota:"), Margin, inputTop(3) + 30, LabelWidth);
    DataCombo5 = kit.dataCombo(this, "DataCombo5", Adodc7, "Adodc7", ComboLeft, inputTop(3), ComboWidth);
    Label4 = kit.label(this, "Label4", QStringLiteral("Tipo Nota2:"), Margin, inputTop(4) + 30, LabelWidth);
    DataCombo4 = kit.dataCombo(this, "DataCombo4", Adodc8, "Adodc8", ComboLeft, inputTop(4), ComboWidth);

    Label5 = kit.label(this, "Label5", QStringLiteral("Nota:"), NoteLabelLeft, inputTop(0) + 30, 600);
    Txt_Nota = kit.textArea(this, "Txt_Nota", NoteLeft, inputTop(0), NoteWidth, 4 * RowStep - 45);
    Label6 = kit.label(this, "Label6", QStringLiteral("Cerca:"), NoteLabelLeft, inputTop(4) + 30, 600);
    Txt_Search = kit.field(this, "Txt_Search", NoteLeft, inputTop(4), NoteWidth);

    // The picture: the photo button, or the thumbnail in its place.
    Cmd_Photo = kit.button(this, "Cmd_Photo", QStringLiteral("INSERISCI IMMAGINE"), PictureLeft, InputTop, PictureWidth,
                           PictureHeight);
    Cmd_Photo->setEnabled(false); // until a note is chosen
    Image4 = kit.image(this, "Image4", PictureLeft, InputTop, PictureWidth, PictureHeight);
    Image4->setVisible(false);
    DTPicker2 = new vb::DTPicker(this, QStringLiteral("DTPicker2"));
    DTPicker2->Move(PictureLeft, InputTop + PictureHeight + 90, PictureWidth, RowHeight);
    CommonDialog1 = new vb::CommonDialog(this, QStringLiteral("CommonDialog1"));

    // The symbols, under the date while the text has the focus.
    Frame5 = kit.frame(this, "Frame5", QStringLiteral("Inserisci Simboli"), PictureLeft,
                       InputTop + PictureHeight + RowStep + 90, PictureWidth, 600);
    Frame5->setVisible(false);
    Cmd_Radice = kit.button(Frame5, "Cmd_Radice", QStringLiteral("\\/¯¯"), symbolLeft(0), 225, SymbolWidth, 315);
    Cmd_Un_Mezzo = kit.button(Frame5, "Cmd_Un_Mezzo", QStringLiteral("½"), symbolLeft(1), 225, SymbolWidth, 315);
    Cmd_Un_Quarto = kit.button(Frame5, "Cmd_Un_Quarto", QStringLiteral("¼"), symbolLeft(2), 225, SymbolWidth, 315);
    Cmd_Diametro = kit.button(Frame5, "Cmd_Diametro", QStringLiteral("Ø"), symbolLeft(3), 225, SymbolWidth, 315);

    Cmd_Add_Note = kit.button(this, "Cmd_Add_Note", Inserting, Margin, ButtonTop, 2100);
    Cmd_Apri_Txt = kit.button(this, "Cmd_Apri_Txt", QStringLiteral("Apri File .Txt"), Margin + 2160, ButtonTop, 1800);
    Cmd_Print = kit.button(this, "Cmd_Print", QStringLiteral("STAMPA NOTE"), Margin + 4020, ButtonTop, 2100);
    Cmd_Print_Macchin = kit.button(this, "Cmd_Print_Macchin", QStringLiteral("STAMPA GRUPPO MACCHINE"), Margin + 6180,
                                   ButtonTop, FullWidth - 6180);

    // The enlarged picture stands over the lists while the mouse is on the thumbnail.
    Frame4 = kit.frame(this, "Frame4", QString(), NotesLeft, ListsTop, NotesWidth, EnlargedHeight);
    Frame4->setVisible(false);
    Image2 = kit.image(Frame4, "Image2", 60, 240, NotesWidth - 120, EnlargedHeight - 300);

    // Hidden working state. The design gives the two switches their first values: no
    // filter, and a note of a machine.
    Txt_Specifica_Note = kit.hidden("Txt_Specifica_Note", QStringLiteral("0"));
    Txt_Grid = kit.hidden("Txt_Grid", QStringLiteral("0"));
    ID_MOD = kit.hidden("ID_MOD");
    ID_NUM = kit.hidden("ID_NUM");
    ID_OPERATORE = kit.hidden("ID_OPERATORE");
    Txt_ID = kit.hidden("Txt_ID");
    Txt_Images = kit.hidden("Txt_Images");
    Txt_Percorso = kit.hidden("Txt_Percorso");
    Txt_ID_MODELLO = kit.hidden("Txt_ID_MODELLO");
    Txt_ID_NUM = kit.hidden("Txt_ID_NUM");
    Txt_DATA = kit.hidden("Txt_DATA");
    txt_Lunghezza = kit.hidden("txt_Lunghezza");
    Txt_Len = kit.hidden("Txt_Len");
    Txt_Posizione = kit.hidden("Txt_Posizione");
}

void Form3::connectEvents()
{
    DataCombo3->Change = [this] { DataCombo3_Change(); };
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo1->Change = [this] { DataCombo1_Change(); };
    DataCombo5->Change = [this] { DataCombo5_Change(); };
    DataCombo4->Change = [this] { DataCombo4_Change(); };
    Txt_Search->Change = [this] { Txt_Search_Change(); };
    Txt_Search->KeyUp = [this] { Fill_All_Notes(); };
    Txt_Search->GotFocus = [this] { Frame5->setVisible(false); };

    Cmd_Add_Note->Click = [this] { Cmd_Add_Note_Click(); };
    DataGrid1->GotFocus = [this] { DataGrid1_GotFocus(); };
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    DataGrid2->RowColChange = [this] { DataGrid2_RowColChange(); };
    DataGrid3->RowColChange = [this] { DataGrid3_RowColChange(); };

    Txt_Nota->Change = [this] { Txt_Nota_Change(); };
    Txt_Nota->Click = [this] { Txt_Nota_MouseUp(); };
    Txt_Nota->GotFocus = [this] { Frame5->setVisible(true); };
    auto* mouseUp = new MouseUpFilter(this, [this] { Txt_Nota_MouseUp(); });
    Txt_Nota->editor()->installEventFilter(mouseUp);
    if (auto* area = dynamic_cast<QPlainTextEdit*>(Txt_Nota->editor()))
        area->viewport()->installEventFilter(mouseUp);
    Cmd_Radice->Click = [this] { insertSymbol(QStringLiteral("\\/¯¯")); };
    Cmd_Un_Mezzo->Click = [this] { insertSymbol(QStringLiteral("½")); };
    Cmd_Un_Quarto->Click = [this] { insertSymbol(QStringLiteral("¼")); };
    Cmd_Diametro->Click = [this] { insertSymbol(QStringLiteral("Ø")); };
    // The symbols give way when the mouse goes to the photo button or the lists to pick.
    for (vb::Control* c :
         std::initializer_list<vb::Control*>{Cmd_Photo, DataCombo1, DataCombo2, DataCombo3, DataCombo4, DataCombo5})
        c->MouseMove = [this] { Frame5->setVisible(false); };

    Txt_ID->Change = [this] { Txt_ID_Change(); };
    Txt_Images->Change = [this] { Picture_Change(); };
    Txt_Percorso->Change = [this] { Picture_Change(); };
    Image4->MouseMove = [this] { Frame4->setVisible(true); };
    MouseMove = [this] { Frame4->setVisible(false); };
    Cmd_Photo->Click = [this] {
        Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
        trap.step([&] { Choose_Note_Image(); });
    };
    Image4->Click = [this] { Choose_Note_Image(); };
    Image2->Click = [this] { Choose_Note_Image(); };

    Cmd_Apri_Txt->Click = [this] { Cmd_Apri_Txt_Click(); };
    Cmd_Print->Click = [this] { Cmd_Print_Click(); };
    Cmd_Print_Macchin->Click = [this] { Cmd_Print_Macchin_Click(); };
}

// ---- load and the three lists ---------------------------------------------------------

void Form3::Form_Load()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { centre(); });
    trap.step([&] {
        bindList(
            Adodc4, DataCombo3,
            QStringLiteral("SELECT Tbl_Macchina.Macchina From Tbl_Macchina GROUP BY Tbl_Macchina.Macchina ORDER BY "
                           "Tbl_Macchina.Macchina;"),
            QStringLiteral("Macchina"));
    });
    trap.step([&] {
        bindList(Adodc7, DataCombo5,
                 QStringLiteral("SELECT Tbl_Maintenance_Note.Tipo_Nota From Tbl_Maintenance_Note GROUP BY "
                                "Tbl_Maintenance_Note.Tipo_Nota ORDER BY Tbl_Maintenance_Note.Tipo_Nota;"),
                 QStringLiteral("Tipo_Nota"));
    });
    trap.step([&] {
        bindList(Adodc8, DataCombo4,
                 QStringLiteral("SELECT Tbl_Maintenance_Note.Tipo_Nota2 From Tbl_Maintenance_Note GROUP BY "
                                "Tbl_Maintenance_Note.Tipo_Nota2 ORDER BY Tbl_Maintenance_Note.Tipo_Nota2;"),
                 QStringLiteral("Tipo_Nota2"));
    });
    trap.step([&] { DTPicker2->setValue(Variant::fromDate(vb::Clock::today())); });
    trap.step([&] { Show_Notes_Of_Machine(); });
    trap.step([&] { Fill_Machines_With_Notes(); });
    trap.step([&] { Fill_All_Notes(); });
}

void Form3::Show_Notes_Of_Machine()
{
    Trap trap = Trap::ignoreAll();
    int model = readable(Txt_ID_MODELLO->Text());
    int number = readable(Txt_ID_NUM->Text());
    // The register's date and keys; reading them brings the register into being, hidden.
    Variant date;
    trap.step([&] {
        if (vb::Control* c = register7("DTPicker2"))
            date = c->vbProperty(QStringLiteral("Value"));
    });
    trap.step([&] {
        const vb::Form* f7 = shell::screens().loaded(QStringLiteral("Form7"));
        if (f7 && f7->isVisible())
            DTPicker2->setValue(date);
    });
    trap.step([&] {
        if (vb::Control* c = model == 0 ? register7("ID_MOD") : nullptr)
            model = readable(c->vbProperty(QStringLiteral("Text")).toString());
    });
    trap.step([&] {
        if (vb::Control* c = number == 0 ? register7("ID_NUM") : nullptr)
            number = readable(c->vbProperty(QStringLiteral("Text")).toString());
    });
    const QString statement = model == 0 ? QStringLiteral("SELECT * FROM Tbl_Maintenance_Note Order by Ultima desc")
                                         : QStringLiteral("SELECT * FROM Tbl_Maintenance_Note WHERE ID_MODELLO=") +
                                               QString::number(model) + QStringLiteral(" AND ID_NUM=") +
                                               QString::number(number) + QStringLiteral(" AND Ultima='") +
                                               DTPicker2->Value().toString() + QStringLiteral("' Order by Ultima desc");
    showNotes(trap, statement);
}

void Form3::showNotes(Trap& trap, const QString& statement)
{
    trap.step([&] {
        Adodc1->setRecordSource(statement);
        Adodc1->Refresh();
    });
    trap.step([&] { Layout_Note_Grid(); });
}

void Form3::Layout_Note_Grid()
{
    Trap trap = Trap::ignoreAll();
    // The date and the text; the other ten columns are there at no width. The store's
    // table has its columns in the order the upgrades added them, so they go by name.
    for (int i = 0; i < DataGrid1->ColumnCount(); ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid1->Columns(i);
            const QString field = c.DataField();
            c.setCaption(field);
            c.setWidth(field.compare(QLatin1String("Ultima"), Qt::CaseInsensitive) == 0 ? 1150
                       : field.compare(QLatin1String("NOTE"), Qt::CaseInsensitive) == 0 ? 8800
                                                                                        : 0);
        });
    }
    trap.step([&] {
        Frame1->setCaption(QStringLiteral("N° ") + QString::number(Adodc1->RecordCount()) + QStringLiteral(" Note ") +
                           DTPicker2->Value().toString());
    });
}

void Form3::Fill_Machines_With_Notes()
{
    Trap trap = Trap::ignoreAll();
    // The inner joins keep the general notes out of this list.
    trap.step([&] {
        Adodc2->setRecordSource(QStringLiteral(
            "SELECT Tbl_Macchina.Modello, Tbl_Numerazione.Numerazione, Count(Tbl_Maintenance_Note.Ultima) AS "
            "ConteggioDiUltima, Tbl_Macchina.ID_MODELLO, Tbl_Numerazione.ID_NUM FROM (Tbl_Numerazione INNER JOIN "
            "Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = Tbl_Macchina.ID_MODELLO) INNER JOIN Tbl_Maintenance_Note ON "
            "(Tbl_Maintenance_Note.ID_NUM = Tbl_Numerazione.ID_NUM) AND (Tbl_Numerazione.ID_MODELLO = "
            "Tbl_Maintenance_Note.ID_MODELLO)GROUP BY Tbl_Macchina.Modello, Tbl_Numerazione.Numerazione, "
            "Tbl_Macchina.ID_MODELLO, Tbl_Numerazione.ID_NUM ORDER BY Tbl_Macchina.Modello, "
            "Tbl_Numerazione.Numerazione, Count(Tbl_Maintenance_Note.Ultima);"));
        Adodc2->Refresh();
    });
    static const char* const captions[] = {"Modello", "N°", "Note"};
    static const int widths[] = {2900, 500, 500, 0, 0};
    for (int i = 0; i < 5; ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid2->Columns(i);
            c.setWidth(widths[i]);
            if (i < 3)
                c.setCaption(QString::fromUtf8(captions[i]));
        });
    }
    trap.step([&] { Frame3->setCaption(QStringLiteral("NOTE MACCHINE: ") + QString::number(Adodc2->RecordCount())); });
}

void Form3::Fill_All_Notes()
{
    Trap trap = Trap::ignoreAll();
    // The filter's text goes into the statement as typed.
    const QString filter = Txt_Specifica_Note->Text();
    QString tail;
    if (filter == QLatin1String("0"))
        tail = QStringLiteral(" ORDER BY Tbl_Maintenance_Note.Ultima DESC;");
    else if (filter == QLatin1String("1"))
        tail = QStringLiteral(" Having (((Tbl_Maintenance_Note.Tipo_Nota) = '") + DataCombo5->Text() +
               QStringLiteral("'))ORDER BY Tbl_Maintenance_Note.Ultima DESC;");
    else if (filter == QLatin1String("2"))
        tail = QStringLiteral(" Having (((Tbl_Maintenance_Note.Tipo_Nota2) = '") + DataCombo4->Text() +
               QStringLiteral("'))ORDER BY Tbl_Maintenance_Note.Ultima DESC;");
    else if (filter == QLatin1String("3"))
        tail = QStringLiteral(" Having (((Tbl_Maintenance_Note.NOTE) Like '%") + Txt_Search->Text() +
               QStringLiteral("%' ))ORDER BY Tbl_Maintenance_Note.Ultima DESC;");
    trap.step([&] {
        Adodc3->setRecordSource(AllNotesHead + AllNotesGrouping + tail);
        Adodc3->Refresh();
    });
    for (int i = 0; i < DataGrid3->ColumnCount(); ++i) {
        trap.step([&] {
            vb::GridColumn& c = DataGrid3->Columns(i);
            const QString field = c.DataField();
            if (field.compare(QLatin1String("Ultima"), Qt::CaseInsensitive) == 0) {
                c.setWidth(1150);
            } else if (field.compare(QLatin1String("NOTE"), Qt::CaseInsensitive) == 0) {
                c.setWidth(3000);
            } else if (field.compare(QLatin1String("Tipo_Nota"), Qt::CaseInsensitive) == 0) {
                c.setWidth(1000);
                c.setCaption(QStringLiteral("Nota Tipo"));
            } else {
                c.setWidth(0);
            }
        });
    }
    trap.step([&] { Frame2->setCaption(QStringLiteral("TUTTE LE NOTE: ") + QString::number(Adodc3->RecordCount())); });
}

// ---- the filters ------------------------------------------------------------------------

// Each of the three replaces whatever filter the others had set.
void Form3::DataCombo5_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step(
        [&] { Txt_Specifica_Note->setText(DataCombo5->Text().isEmpty() ? QStringLiteral("0") : QStringLiteral("1")); });
    trap.step([&] { Fill_All_Notes(); });
}

void Form3::DataCombo4_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step(
        [&] { Txt_Specifica_Note->setText(DataCombo4->Text().isEmpty() ? QStringLiteral("0") : QStringLiteral("2")); });
    trap.step([&] { Fill_All_Notes(); });
}

void Form3::Txt_Search_Change()
{
    Trap trap = Trap::ignoreAll();
    trap.step(
        [&] { Txt_Specifica_Note->setText(Txt_Search->Text().isEmpty() ? QStringLiteral("0") : QStringLiteral("3")); });
    trap.step([&] { Fill_All_Notes(); });
}

// ---- the machine of a note ----------------------------------------------------------------

void Form3::DataCombo3_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { DataCombo2->setText(QString()); });
    trap.step([&] {
        DataCombo1->setEnabled(false);
        DataCombo2->setEnabled(false);
    });
    const QString machine = DataCombo3->Text();
    if (machine.size() < 3)
        return;
    trap.step([&] {
        bindList(Adodc5, DataCombo2,
                 QStringLiteral("SELECT Tbl_Macchina.Macchina, Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello From "
                                "Tbl_Macchina GROUP BY Tbl_Macchina.Macchina, Tbl_Macchina.ID_MODELLO, "
                                "Tbl_Macchina.Modello HAVING (Tbl_Macchina.Macchina)='") +
                     vb::DoubledQuotes(machine) + QStringLiteral("' ORDER BY Tbl_Macchina.Modello;"),
                 QStringLiteral("Modello"));
    });
    trap.step([&] { ID_MOD->setText(sourceField(Adodc5, QStringLiteral("ID_MODELLO"))); });
    trap.step([&] { DataCombo2->setEnabled(true); });
}

void Form3::DataCombo2_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([&] { DataCombo1->setText(QString()); });
    trap.step([&] { ID_NUM->setText(QString()); });
    trap.step([&] { ID_OPERATORE->setText(QString()); });
    const QString model = DataCombo2->Text();
    trap.step([&] { DataCombo1->setEnabled(!model.isEmpty()); });
    if (model.size() < 3 || trap.ended())
        return;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello From Tbl_Macchina GROUP BY "
                               "Tbl_Macchina.ID_MODELLO, Tbl_Macchina.Modello HAVING (Tbl_Macchina.Modello)='") +
                vb::DoubledQuotes(model) + QLatin1Char('\''));
        ID_MOD->setText(rs.Fields(QStringLiteral("ID_MODELLO")).Value());
    });
    trap.step([&] {
        bindList(Adodc6, DataCombo1,
                 QStringLiteral("SELECT Tbl_Macchina.Modello, Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione, "
                                "Tbl_Macchina.ID_MODELLO FROM Tbl_Numerazione INNER JOIN Tbl_Macchina ON "
                                "Tbl_Numerazione.ID_MODELLO = Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Macchina.Modello, "
                                "Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione, Tbl_Macchina.ID_MODELLO "
                                "Having(Tbl_Macchina.ID_MODELLO) = ") +
                     vb::KeyText(ID_MOD->Text()),
                 QStringLiteral("Numerazione"));
    });
}

void Form3::DataCombo1_Change()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("SELECT Tbl_Macchina.ID_MODELLO, Tbl_Numerazione.ID_NUM, Tbl_Numerazione.Numerazione "
                               "FROM Tbl_Numerazione INNER JOIN Tbl_Macchina ON Tbl_Numerazione.ID_MODELLO = "
                               "Tbl_Macchina.ID_MODELLO GROUP BY Tbl_Macchina.ID_MODELLO, Tbl_Numerazione.ID_NUM, "
                               "Tbl_Numerazione.Numerazione HAVING (((Tbl_Macchina.ID_MODELLO)=") +
                vb::KeyText(ID_MOD->Text()) + QStringLiteral(") AND ((Tbl_Numerazione.Numerazione)='") +
                DataCombo1->Text() + QStringLiteral("'));"));
    });
    // A number of no unit of the model leaves the key as it was.
    trap.step([&] {
        if (rs.isOpen() && !rs.Eof())
            ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value());
    });
}

// ---- inputs cleared -------------------------------------------------------------------

void Form3::Clear_Note_Inputs()
{
    Trap trap = Trap::ignoreAll();
    // Emptying the search and the classifications resets the filter of all notes.
    for (vb::DataCombo* c : {DataCombo1, DataCombo2, DataCombo3, DataCombo4, DataCombo5})
        trap.step([&] { c->setText(QString()); });
    for (vb::TextBox* t : {ID_NUM, ID_MOD, ID_OPERATORE, Txt_Nota, Txt_Search})
        trap.step([&] { t->setText(QString()); });
    trap.step([&] {
        DataCombo1->setEnabled(false);
        DataCombo2->setEnabled(false);
    });
}

void Form3::Clear_Image_Fields()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Percorso->setText(QString()); });
    trap.step([&] { Txt_Images->setText(QString()); });
    trap.step([&] { Txt_ID->setText(QString()); });
    trap.step([&] { Frame4->setVisible(false); });
}

// ---- the save -------------------------------------------------------------------------

void Form3::Cmd_Add_Note_Click()
{
    Trap trap{{err::TypeMismatch, err::InvalidUseOfNull}, Trap::ShowBox};
    auto missing = [](const QString& text) { vb::MsgBox(text, mb::Exclamation, MissingTitle); };
    if (Txt_Nota->Text().isEmpty()) {
        Txt_Nota->setEnabled(true);
        missing(QStringLiteral("Inserisci la l'Annotazione ..."));
        return;
    }
    if (DataCombo5->Text().isEmpty()) {
        missing(QStringLiteral("Selezionare o inserisci il Tipo Nota..."));
        return;
    }
    if (DataCombo4->Text().isEmpty()) {
        missing(QStringLiteral("Selezionare o inserisci il Tipo Nota2..."));
        return;
    }
    const bool machine = !DataCombo3->Text().isEmpty();
    if (machine && DataCombo2->Text().isEmpty()) {
        missing(QStringLiteral("Selezionare IL Modello..."));
        return;
    }
    if (machine && DataCombo1->Text().isEmpty()) {
        missing(QStringLiteral("Selezionare il Numero della Macchina..."));
        return;
    }

    // All three machine fields empty: a general note, tied to no machine.
    const bool general = !machine && DataCombo2->Text().isEmpty() && DataCombo1->Text().isEmpty();
    QString model = QStringLiteral("0"), number = QStringLiteral("0"), operatorKey = QStringLiteral("0");
    if (!general) {
        trap.step([&] { model = keyOrZero(ID_MOD->Text()); });
        trap.step([&] { number = keyOrZero(ID_NUM->Text()); });
    }
    trap.step([&] { operatorKey = keyOrZero(ID_OPERATORE->Text()); });
    if (trap.ended())
        return;

    auto writeNote = [&](store::Recordset& rs) {
        store::WriteFields(trap, rs,
                           {{"ID_MODELLO", model},
                            {"ID_NUM", number},
                            {"ID_Operatore", operatorKey},
                            {"NOTE", Txt_Nota->Text()},
                            {"Tipo_Nota", DataCombo5->Text()},
                            {"Tipo_Nota2", DataCombo4->Text()}});
    };

    if (Cmd_Add_Note->Caption() == Editing) {
        // The note takes the date of the picker, which may move it to another day.
        QString id;
        trap.step([&] { id = keyOf(gridCell(DataGrid1, QStringLiteral("ID"))); });
        if (trap.ended())
            return;
        {
            store::Recordset rs;
            trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note where ID = ") + id); });
            bool found = false;
            trap.step([&] { found = !rs.Eof(); });
            if (found) {
                trap.step([&] { rs.Fields(QStringLiteral("Ultima")) = DTPicker2->Value(); });
                writeNote(rs);
                trap.step([&] { rs.UpdateBatch(); });
                trap.step([&] { rs.UpdateBatch(); }); // saved twice, as ever: the second finds nothing to do
            }
            trap.step([&] { rs.Close(); });
        }
        trap.step([&] { Adodc1->Refresh(); });
        trap.step([&] { Layout_Note_Grid(); });
        trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid2->Row() + 1)); });
        trap.step([&] { Fill_All_Notes(); });
        trap.step([&] { Fill_Machines_With_Notes(); });
        return;
    }

    if (Cmd_Add_Note->Caption() != Inserting)
        return;
    // A new note is always of today, whatever the picker says.
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note")); });
        trap.step([&] { rs.AddNew(); });
        trap.step([&] { rs.Fields(QStringLiteral("Ultima")) = Variant::fromDate(vb::Clock::today()); });
        writeNote(rs);
        trap.step([&] { rs.UpdateBatch(); });
    }
    if (trap.ended())
        return;
    trap.step([&] { Clear_Note_Inputs(); });
    trap.step([&] { Txt_ID_MODELLO->setText(ID_MOD->Text()); });
    trap.step([&] { Txt_DATA->setText(DTPicker2->Value().toString()); });
    trap.step([&] { Txt_ID_NUM->setText(number); });
    trap.step([&] { Txt_Posizione->setText(QString::number(DataGrid2->Row() + 1)); });
    trap.step([&] { Fill_All_Notes(); });
    trap.step([&] { Fill_Machines_With_Notes(); });
    returnToPosition(Adodc2);
}

void Form3::returnToPosition(vb::Adodc* source)
{
    // A position the rebuilt list no longer has leaves it on its first row, silently.
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        const int position = readable(Txt_Posizione->Text());
        struct Returning
        {
            bool& flag;
            explicit Returning(bool& f) : flag(f) { flag = true; }
            ~Returning() { flag = false; }
        } returning(m_returning);
        source->moveTo(position - 1);
    });
}

// ---- the selections -------------------------------------------------------------------

void Form3::DataGrid1_GotFocus()
{
    Clear_Image_Fields();
    Clear_Note_Inputs();
}

void Form3::DataGrid1_RowColChange()
{
    Trap trap{{err::TypeMismatch, err::InvalidUseOfNull, err::InvalidPropertyValue, err::GridDataAccess},
              Trap::ShowBox};
    trap.on(NoRowsInGrid, [&trap] {
        vb::MsgBox(QString::number(trap.lastError()) + QLatin1Char(' ') + trap.lastDescription(), 0,
                   QStringLiteral("NON CI SONO NOTE"));
    });
    trap.step([&] { Frame5->setVisible(false); });
    trap.step([&] { Cmd_Add_Note->setCaption(Editing); });
    trap.step([&] { Clear_Image_Fields(); });
    trap.step([&] { Clear_Note_Inputs(); });

    QString id;
    trap.step([&] { id = keyOf(gridCell(DataGrid1, QStringLiteral("ID"))); });
    if (trap.ended())
        return;
    const bool ofMachine = Txt_Grid->Text() == QLatin1String("0");
    store::Recordset rs;
    if (ofMachine) {
        trap.step([&] {
            rs.Open(QStringLiteral(
                        "SELECT Tbl_Maintenance_Note.ID, Tbl_Macchina.Macchina, Tbl_Macchina.Modello, "
                        "Tbl_Numerazione.Numerazione, Tbl_Maintenance_Note.Ultima, Tbl_Maintenance_Note.NOTE, "
                        "Tbl_Maintenance_Note.Tipo_Nota, Tbl_Maintenance_Note.Tipo_Nota2,Tbl_Maintenance_Note.Images, "
                        "Tbl_Maintenance_Note.Percorso, Tbl_Maintenance_Note.ID_MODELLO, Tbl_Maintenance_Note.ID_NUM "
                        "FROM Tbl_Numerazione INNER JOIN (Tbl_Macchina INNER JOIN Tbl_Maintenance_Note ON "
                        "Tbl_Macchina.ID_MODELLO = Tbl_Maintenance_Note.ID_MODELLO) ON (Tbl_Numerazione.ID_NUM = "
                        "Tbl_Maintenance_Note.ID_NUM) AND (Tbl_Numerazione.ID_MODELLO = "
                        "Tbl_Maintenance_Note.ID_MODELLO)Where(Tbl_Maintenance_Note.ID) = ") +
                    id);
        });
    } else if (Txt_Grid->Text() == QLatin1String("1")) {
        trap.step([&] {
            rs.Open(QStringLiteral("SELECT Tbl_Maintenance_Note.ID, Tbl_Maintenance_Note.Ultima, "
                                   "Tbl_Maintenance_Note.NOTE, Tbl_Maintenance_Note.Tipo_Nota, "
                                   "Tbl_Maintenance_Note.Tipo_Nota2,Tbl_Maintenance_Note.Images, "
                                   "Tbl_Maintenance_Note.Percorso, Tbl_Maintenance_Note.ID_MODELLO, "
                                   "Tbl_Maintenance_Note.ID_NUM From Tbl_Maintenance_Note Where "
                                   "Tbl_Maintenance_Note.ID = ") +
                    id);
        });
    }
    if (!rs.isOpen() || rs.Eof())
        return;
    // A general note shown as one of a machine finds no machine: its fields stay empty.
    auto fill = [&](vb::Control* c, const char* column) {
        trap.step([&] { c->setVbProperty(QStringLiteral("Text"), rs.Fields(QString::fromLatin1(column)).Value()); });
    };
    if (ofMachine) {
        // In this order, so that each list is there for the next.
        fill(DataCombo3, "Macchina");
        fill(DataCombo2, "Modello");
        fill(DataCombo1, "Numerazione");
    }
    fill(DataCombo5, "Tipo_Nota");
    fill(DataCombo4, "Tipo_Nota2");
    fill(Txt_Nota, "NOTE");
    trap.step([&] { Txt_ID->setText(id); });
    trap.step([&] { Txt_Images->setText(gridCell(DataGrid1, QStringLiteral("Images"))); });
    trap.step([&] { Txt_Percorso->setText(gridCell(DataGrid1, QStringLiteral("Percorso"))); });
}

void Form3::startListSelection(Trap& trap)
{
    trap.step([&] { Frame5->setVisible(false); });
    trap.step([&] {
        Cmd_Add_Note->setEnabled(true);
        Cmd_Add_Note->setCaption(Inserting);
    });
    trap.step([&] { Clear_Image_Fields(); });
    trap.step([&] { Clear_Note_Inputs(); });
}

void Form3::DataGrid2_RowColChange()
{
    if (m_returning)
        return;
    Trap trap = Trap::ignoreAll();
    // The row clicked, read before the clearing rebuilds the lists.
    QString model, number;
    trap.step([&] { model = keyOf(gridCell(DataGrid2, QStringLiteral("ID_MODELLO"))); });
    trap.step([&] { number = keyOf(gridCell(DataGrid2, QStringLiteral("ID_NUM"))); });
    const int row = DataGrid2->Row();
    startListSelection(trap);
    showNotes(trap, QStringLiteral("SELECT * FROM Tbl_Maintenance_Note WHERE ID_MODELLO=") + model +
                        QStringLiteral(" AND ID_NUM=") + number + QStringLiteral(" Order by Ultima desc"));
    trap.step([&] { Txt_Posizione->setText(QString::number(row + 1)); });
    trap.step([&] { Fill_All_Notes(); });
    trap.step([&] { Fill_Machines_With_Notes(); });
    returnToPosition(Adodc2);
    // Every note of this list is one of the machine: its first tells the kind.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note WHERE ID=") +
                keyOf(Adodc1->value(0, Adodc1->columnIndex(QStringLiteral("ID")))));
        const Variant modelKey = rs.Fields(QStringLiteral("ID_MODELLO")).Value();
        ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value());
        Txt_Grid->setText(modelKey.toLong() == 0 || readable(ID_NUM->Text()) == 0 ? QStringLiteral("1")
                                                                                  : QStringLiteral("0"));
    });
}

void Form3::DataGrid3_RowColChange()
{
    if (m_returning)
        return;
    Trap trap = Trap::ignoreAll();
    // The note clicked, read before the clearing empties the filter and rebuilds the list.
    QString id;
    Variant images, path;
    trap.step([&] { id = keyOf(gridCell(DataGrid3, QStringLiteral("ID"))); });
    trap.step([&] { images = gridCell(DataGrid3, QStringLiteral("Images")); });
    trap.step([&] { path = gridCell(DataGrid3, QStringLiteral("Percorso")); });
    const int row = DataGrid3->Row();
    startListSelection(trap);
    showNotes(trap, QStringLiteral("SELECT * FROM Tbl_Maintenance_Note WHERE ID=") + id +
                        QStringLiteral(" Order by Ultima desc"));
    trap.step([&] { Txt_Posizione->setText(QString::number(row + 1)); });
    trap.step([&] { Fill_All_Notes(); });
    trap.step([&] { Fill_Machines_With_Notes(); });
    // Back to the note clicked: where the list was filtered, the rebuilt list holds it
    // elsewhere.
    trap.step([&] {
        const int idColumn = Adodc3->columnIndex(QStringLiteral("ID"));
        for (int r = 0; r < Adodc3->RecordCount(); ++r)
            if (keyOf(Adodc3->value(r, idColumn)) == id)
                Txt_Posizione->setText(QString::number(r + 1));
    });
    returnToPosition(Adodc3);
    trap.step([&] { Clear_Image_Fields(); });
    trap.step([&] { Clear_Note_Inputs(); });
    trap.step([&] { Txt_ID->setText(id); });
    trap.step([&] { Txt_Percorso->setText(path); });
    trap.step([&] { Txt_Images->setText(images); });
    trap.step([&] { Set_Note_Kind(); });
}

void Form3::Set_Note_Kind()
{
    Trap trap = Trap::ignoreAll();
    store::Recordset rs;
    trap.step([&] {
        rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note WHERE ID=") +
                keyOf(gridCell(DataGrid3, QStringLiteral("ID"))));
    });
    trap.step([&] { ID_NUM->setText(rs.Fields(QStringLiteral("ID_NUM")).Value()); });
    trap.step([&] {
        const Variant model = rs.Fields(QStringLiteral("ID_MODELLO")).Value();
        const Variant unit = rs.Fields(QStringLiteral("ID_NUM")).Value();
        Txt_Grid->setText(model.toLong() == 0 || unit.toLong() == 0 ? QStringLiteral("1") : QStringLiteral("0"));
    });
}

// ---- symbols ----------------------------------------------------------------------------

void Form3::Txt_Nota_Change()
{
    txt_Lunghezza->setText(Txt_Nota->Text());
    Txt_Len->setText(QString::number(caretOf(Txt_Nota)));
}

void Form3::Txt_Nota_MouseUp()
{
    Txt_Nota_Change();
}

void Form3::insertSymbol(const QString& symbol)
{
    // The caret kept by the last change or click: moving it with the arrows alone does
    // not move where the symbol goes.
    const QString text = txt_Lunghezza->Text();
    const int at = std::clamp(readable(Txt_Len->Text()), 0, int(text.size()));
    Trap trap = Trap::ignoreAll();
    trap.step([&] { Txt_Nota->setText(text.left(at) + symbol + text.mid(at)); });
}

// ---- the picture ------------------------------------------------------------------------

void Form3::Txt_ID_Change()
{
    Cmd_Photo->setEnabled(!Txt_ID->Text().isEmpty());
}

void Form3::Picture_Change()
{
    Trap trap = Trap::ignoreAll();
    // A file or a folder that is gone: the message names both, and the picture is not fitted.
    auto cannotLoad = [this] {
        vb::MsgBox(QStringLiteral("Impossibile caricare l'immagine [") + Txt_Images->Text() +
                       QStringLiteral("] ... Controlla che il seguente percorso dell'Immagine [") +
                       Txt_Percorso->Text() + QStringLiteral("]  sia valido!"),
                   0, QStringLiteral("PERCORSO IMMAGINE NONVALIDO"));
    };
    trap.on(PathNotFound, cannotLoad);
    trap.on(FileNotFound, cannotLoad);
    if (Txt_Images->Text().isEmpty()) {
        trap.step([&] { Image4->setVisible(false); });
        trap.step([&] { Frame4->setVisible(false); });
        trap.step([&] { Cmd_Photo->setVisible(true); });
        return;
    }
    trap.step([&] { Image4->setVisible(true); });
    trap.step([&] { Cmd_Photo->setVisible(false); });
    trap.step([&] { Image4->setPicture(Txt_Percorso->Text()); });
    trap.step([&] { Image2->setPicture(Txt_Percorso->Text()); });
    if (trap.ended())
        return;
    trap.step([&] { Fit_Images(); });
}

void Form3::Fit_Images()
{
    Trap trap = Trap::ignoreAll();
    trap.step([&] {
        vb::CONTROLLO_IMMAGINE(*Image4, Cmd_Photo->Left(), Cmd_Photo->Top(), Cmd_Photo->Width(), Cmd_Photo->Height());
    });
    trap.step([&] { vb::CONTROLLO_IMMAGINE(*Image2, 60, 240, Frame4->Width() - 120, Frame4->Height() - 300); });
}

void Form3::Choose_Note_Image()
{
    Trap trap = Trap::ignoreAll();
    trap.on(vb::cdl::Cancel, nullptr); // a cancel ends it, silently
    CommonDialog1->DialogTitle = QStringLiteral("Selezionare il file da aprire");
    CommonDialog1->Filter =
        QStringLiteral("JPG (Formato File JPEG)|*.Jpg|BMP (Bitmap Windows OS/2)|*.Bmp|GIF (GRAFIC FILES)|*.Gif");
    CommonDialog1->FilterIndex = 1;
    CommonDialog1->DefaultExt = QStringLiteral("Jpg");
    CommonDialog1->InitDir = vb::AppPath() + QLatin1Char('/');
    CommonDialog1->FileName = Txt_Percorso->Text();
    CommonDialog1->Flags = vb::cdl::FileMustExist;
    CommonDialog1->CancelError = true;
    trap.step([&] { CommonDialog1->ShowOpen(); });
    if (trap.ended())
        return;

    const QString file = CommonDialog1->FileTitle;
    auto showChosen = [&] {
        trap.step([&] { Image4->setPicture(Txt_Percorso->Text()); });
        trap.step([&] { Image2->setPicture(Txt_Percorso->Text()); });
        trap.step([&] { Fit_Images(); });
    };
    trap.step([&] { Txt_Percorso->setText(CommonDialog1->FileName); });
    showChosen();

    if (vb::MsgBox(QStringLiteral("Vuoi salvare l'Immagine '") + file + QStringLiteral("' ?"), mb::YesNo + mb::Question,
                   QStringLiteral("SALVA IMMAGINE'") + file + QLatin1Char('\'')) != vb::answer::Yes)
        return;
    QString id = QStringLiteral("0");
    trap.step([&] { id = keyOrZero(Txt_ID->Text()); });
    // A note has one picture: either answer puts this one in its row.
    const int answer = vb::MsgBox(QStringLiteral("SI per Aggiungere l'Immagine, NO per sostituire quella esistente'") +
                                      file + QStringLiteral("' ?"),
                                  mb::YesNo + mb::Question,
                                  QStringLiteral("VUOI INSERIRE O SOSTITUIRE L'IMMAGINE?'") + file + QLatin1Char('\''));
    store::Recordset rs;
    trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Maintenance_Note WHERE ID=") + id); });
    store::WriteFields(trap, rs, {{"Images", file}, {"Percorso", Txt_Percorso->Text()}});
    if (answer == vb::answer::No)
        trap.step([&] { Txt_ID->setText(rs.Fields(QStringLiteral("ID")).Value()); });
    showChosen();
    trap.step([&] { rs.UpdateBatch(); });
}

// ---- the text file and the prints ------------------------------------------------------

void Form3::Cmd_Apri_Txt_Click()
{
    Trap trap{{err::InvalidUseOfNull, err::InvalidPropertyValue}, Trap::ShowBox};
    trap.step([] { reports::OpenNotesFile(); });
}

void Form3::unloadNotePrints()
{
    for (const char* name : {"DataReport10", "DataReport18", "DataReport19", "DataReport20", "DataReport21"})
        reports::UnloadReport(QString::fromLatin1(name));
}

void Form3::Cmd_Print_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { unloadNotePrints(); });
    // Every print is by a classification, with its notes as the child rows "Dati"; the
    // filter's text goes in as typed.
    const QString filter = Txt_Specifica_Note->Text();
    QString report, parent, child, relation = QStringLiteral("RELATE Tipo_Nota to Tipo_Nota) as Dati"), title;
    if (filter == QLatin1String("0")) {
        report = QStringLiteral("DataReport10");
        parent = QStringLiteral("SHAPE {SELECT Tbl_Maintenance_Note.Tipo_Nota, Count(Tbl_Maintenance_Note.NOTE) AS "
                                "ConteggioDiNOTE From Tbl_Maintenance_Note GROUP BY Tbl_Maintenance_Note.Tipo_Nota;} ");
        child =
            QStringLiteral("APPEND ({SELECT Qry_Report10.Ultima, Tbl_Maintenance_Note.NOTE, Qry_Report10.Tipo_Nota, "
                           "Qry_Report10.Macchina, Qry_Report10.Modello, Qry_Report10.Numerazione, "
                           "Qry_Report10.Images, Qry_Report10.Percorso, Qry_Report10.ConteggioDiTipo_Nota FROM "
                           "Tbl_Maintenance_Note INNER JOIN Qry_Report10 ON Tbl_Maintenance_Note.ID = "
                           "Qry_Report10.ID;} ");
        title = QStringLiteral("NOTE GENERALI ") + Variant::fromDate(vb::Clock::today()).toString();
    } else if (filter == QLatin1String("1")) {
        const QString text = DataCombo5->Text();
        report = QStringLiteral("DataReport18");
        parent = QStringLiteral("SHAPE {SELECT Tbl_Maintenance_Note.Tipo_Nota, Count(Tbl_Maintenance_Note.NOTE) AS "
                                "ConteggioDiNOTE From Tbl_Maintenance_Note Where (Tbl_Maintenance_Note.Tipo_Nota)='") +
                 text + QStringLiteral("' GROUP BY Tbl_Maintenance_Note.Tipo_Nota;} ");
        child =
            QStringLiteral("APPEND ({SELECT Qry_Report18.Ultima, Tbl_Maintenance_Note.NOTE, Qry_Report18.Tipo_Nota, "
                           "Qry_Report18.Macchina, Qry_Report18.Modello, Qry_Report18.Numerazione, "
                           "Qry_Report18.Images, Qry_Report18.Percorso, Qry_Report18.ConteggioDiTipo_Nota FROM "
                           "Qry_Report18 INNER JOIN Tbl_Maintenance_Note ON Qry_Report18.ID = "
                           "Tbl_Maintenance_Note.ID WHERE (((Qry_Report18.Tipo_Nota)='") +
            text + QStringLiteral("'));} ");
        title = QStringLiteral("NOTE ") + text;
    } else if (filter == QLatin1String("2")) {
        const QString text = DataCombo4->Text();
        report = QStringLiteral("DataReport19");
        parent = QStringLiteral("SHAPE {SELECT Tbl_Maintenance_Note.Tipo_Nota2, Count(Tbl_Maintenance_Note.NOTE) AS "
                                "ConteggioDiNOTE From Tbl_Maintenance_Note Where (Tbl_Maintenance_Note.Tipo_Nota2)='") +
                 text + QStringLiteral("' GROUP BY Tbl_Maintenance_Note.Tipo_Nota2;} ");
        child =
            QStringLiteral("APPEND ({SELECT Qry_Report19.Ultima, Tbl_Maintenance_Note.NOTE, Qry_Report19.Tipo_Nota2, "
                           "Qry_Report19.Macchina, Qry_Report19.Modello, Qry_Report19.Numerazione, "
                           "Qry_Report19.Images, Qry_Report19.Percorso, Qry_Report19.ConteggioDiTipo_Nota FROM "
                           "Qry_Report19 INNER JOIN Tbl_Maintenance_Note ON Qry_Report19.ID = "
                           "Tbl_Maintenance_Note.ID WHERE (((Qry_Report19.Tipo_Nota2)='") +
            text + QStringLiteral("'));} ");
        relation = QStringLiteral("RELATE Tipo_Nota2 to Tipo_Nota2) as Dati");
        title = QStringLiteral("NOTE ") + text;
    } else if (filter == QLatin1String("3")) {
        const QString text = Txt_Search->Text();
        report = QStringLiteral("DataReport20");
        parent = QStringLiteral("SHAPE {SELECT Count(Tbl_Maintenance_Note.NOTE) AS ConteggioDiNOTE, "
                                "Tbl_Maintenance_Note.Tipo_Nota From Tbl_Maintenance_Note Where "
                                "(((Tbl_Maintenance_Note.NOTE)  Like '%") +
                 text + QStringLiteral("%')) GROUP BY Tbl_Maintenance_Note.Tipo_Nota;} ");
        child =
            QStringLiteral("APPEND ({SELECT Qry_Report20.Ultima, Tbl_Maintenance_Note.NOTE, Qry_Report20.Tipo_Nota, "
                           "Qry_Report20.Tipo_Nota2, Qry_Report20.Macchina, Qry_Report20.Modello, "
                           "Qry_Report20.Numerazione, Qry_Report20.Images, Qry_Report20.Percorso, "
                           "Qry_Report20.ConteggioDiTipo_Nota FROM Qry_Report20 INNER JOIN Tbl_Maintenance_Note ON "
                           "Qry_Report20.ID = Tbl_Maintenance_Note.ID WHERE (((Tbl_Maintenance_Note.NOTE) Like '%") +
            text + QStringLiteral("%'));} ");
        title = QStringLiteral("Cerca '") + text + QLatin1Char('\'');
    } else {
        return;
    }
    reports::ShowOptions options;
    options.setup = [title](reports::ReportLayout& layout) {
        layout.setCaption(reports::Section::ReportHeader, QStringLiteral("Label1"), title);
    };
    trap.step([&] { reports::ShowReport(report, parent + child + relation, options); });
}

void Form3::Cmd_Print_Macchin_Click()
{
    Trap trap = Trap::ignoreAll();
    trap.step([] { unloadNotePrints(); });
    trap.step([&] { Txt_Specifica_Note->setText(QStringLiteral("0")); });
    const QString statement =
        QStringLiteral("SHAPE {SELECT Count(Tbl_Maintenance_Note.NOTE) AS ConteggioDiNOTE, "
                       "Tbl_Maintenance_Note.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello FROM Tbl_Macchina "
                       "INNER JOIN Tbl_Maintenance_Note ON Tbl_Macchina.ID_MODELLO = Tbl_Maintenance_Note.ID_MODELLO "
                       "GROUP BY Tbl_Maintenance_Note.ID_MODELLO, Tbl_Macchina.Macchina, Tbl_Macchina.Modello ORDER BY "
                       "Tbl_Macchina.Macchina, Tbl_Macchina.Modello;} ") +
        QStringLiteral("APPEND ({SELECT Tbl_Maintenance_Note.NOTE, Qry_Report21.Tipo_Nota, Qry_Report21.Tipo_Nota2, "
                       "Qry_Report21.Macchina, Qry_Report21.Modello, Qry_Report21.Images, Qry_Report21.Percorso, "
                       "Qry_Report21.ConteggioDiTipo_Nota FROM Qry_Report21 INNER JOIN Tbl_Maintenance_Note ON "
                       "Qry_Report21.ID = Tbl_Maintenance_Note.ID;} ") +
        QStringLiteral("RELATE Modello to Modello) as Dati");
    reports::ShowOptions options;
    options.setup = [](reports::ReportLayout& layout) {
        layout.setCaption(reports::Section::ReportHeader, QStringLiteral("Label1"), QStringLiteral("NOTE MACCHINE"));
    };
    trap.step([&] { reports::ShowReport(QStringLiteral("DataReport21"), statement, options); });
}

VELMORA_SCREEN(Form3);

} // namespace people
