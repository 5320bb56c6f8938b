#include "execution/Form8.h"

#include "controls/ScreenKit.h"
#include "execution/Form7.h"
#include "runtime/AppPath.h"
#include "runtime/Trap.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

namespace execution {

using vb::Trap;

namespace {

Form7* register7()
{
    return dynamic_cast<Form7*>(shell::ScreenRegistry::instance().form(QStringLiteral("Form7")));
}

void countLine(Form7& f)
{
    // No colon here, unlike the register's own count line.
    f.Label1->setCaption(QStringLiteral("Conteggio Manutenzioni ") + QString::number(f.Adodc3->RecordCount()));
}

} // namespace

Form8::Form8(QWidget* owner) : vb::Form(owner, QStringLiteral("Form8"), QStringLiteral("CERCA MANUTENZIONE"))
{
    buildControls();
}

void Form8::buildControls()
{
    Move(0, 0, 4200, 3300);
    const vb::ScreenKit kit(this);
    // The fields stop short of the frames' right edges.
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("Cerca per Nome Macchina"), 120, 120, 3900, 780);
    Text1 = kit.field(Frame1, "Text1", 120, 300, 3600);
    Frame2 = kit.frame(this, "Frame2", QStringLiteral("Cerca per Tipo di Manutenzione"), 120, 1080, 3900, 780);
    Text2 = kit.field(Frame2, "Text2", 120, 300, 3600);
    Frame3 = kit.frame(this, "Frame3", QStringLiteral("Cerca per Numerazione"), 120, 2040, 3900, 780);
    Text3 = kit.field(Frame3, "Text3", 120, 300, 3600);

    // Each field is emptied when left; focus colours come with the text boxes.
    for (vb::TextBox* t : {Text1, Text2, Text3})
        t->LostFocus.connect([t] { t->setText(QString()); });
    Text1->KeyUp = [this] { Text1_KeyUp(); };
    Text2->KeyUp = [this] { Text2_KeyUp(); };
    Text3->KeyPress = [](int& key) {
        if (!(key >= '0' && key <= '9') && key != 8)
            key = 0;
    };
    Text3->KeyUp = [this] { Text3_KeyUp(); };
}

void Form8::Form_Load()
{
    centre();
}

void Form8::searchBy(const QString& command, const QString& text)
{
    Trap trap = Trap::ignoreAll();
    Form7* f = register7();
    if (!f)
        return;
    trap.step([&] { f->Adodc3->setRecordset(store::DataStore::instance().Command(command, text)); });
    trap.step([&] { Set_Grid_Columns(); });
    trap.step([&] { countLine(*f); });
}

void Form8::Text1_KeyUp()
{
    searchBy(QStringLiteral("Tbl_Maintenance_Search"), Text1->Text());
}

void Form8::Text2_KeyUp()
{
    searchBy(QStringLiteral("Tbl_Maintenance_Tipo_Search"), Text2->Text());
}

void Form8::Text3_KeyUp()
{
    Trap trap = Trap::ignoreAll();
    // An empty number leaves the list as it was; a number must match whole.
    if (Text3->Text().isEmpty())
        return;
    Form7* f = register7();
    if (!f)
        return;
    QString number = Text3->Text();
    number.replace(QStringLiteral("'"), QStringLiteral("''"));
    trap.step([&] {
        f->Adodc3->setRecordSource(QStringLiteral("SELECT * FROM Tbl_Maintenance WHERE Numerazione= '") + number +
                                   QStringLiteral("' ORDER BY Macchina, Modello, VAL(Numerazione);"));
        f->Adodc3->Refresh();
    });
    trap.step([&] { Set_Grid_Columns(); });
    trap.step([&] { countLine(*f); });
}

void Set_Grid_Columns()
{
    Form7* f = register7();
    if (!f)
        return;
    static const int widths[] = {0, 0, 2000, 2800, 0, 600, 0, 1500, 0, 1200, 1200, 0, 0, 0};
    // The visible ones and the key carry the list's captions, by the field they show.
    static const struct
    {
        int column;
        const char* caption;
    } captions[] = {{0, "ID"},     {2, "MACCHINA"}, {3, "MODELLO"}, {5, "NUM"}, {7, "MANUTENZIONE TIPO"},
                    {9, "ULTIMA"}, {10, "PROSSIMA"}};
    Trap trap = Trap::ignoreAll();
    for (int i = 0; i < 14; ++i) {
        trap.step([&] {
            vb::GridColumn& c = f->DataGrid1->Columns(i);
            c.setWidth(widths[i]);
            c.setLocked(i > 0);
        });
    }
    for (const auto& c : captions)
        trap.step([&] { f->DataGrid1->Columns(c.column).setCaption(QString::fromLatin1(c.caption)); });
}

VELMORA_SCREEN(Form8);

} // namespace execution
