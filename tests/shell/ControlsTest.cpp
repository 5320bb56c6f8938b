// The VB control classes: what the screens and the automation driver count on.
#include "controls/Controls.h"

#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "controls/Form.h"
#include "runtime/AppPath.h"
#include "runtime/VBError.h"
#include "store/DataStore.h"
#include "support/ErrorOf.h"
#include "support/ScreenTest.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace vb;

namespace {

struct Counter
{
    int n = 0;
    std::function<void()> operator()()
    {
        return [this] { ++n; };
    }
};

class ControlsTest : public ::testing::Test
{
protected:
    Form form{nullptr, "FormTest"};
};

TEST_F(ControlsTest, FocusPaintsOrangeSelectsTheTextAndLeavingPaintsWhite)
{
    auto* a = new TextBox(&form, "Txt_A");
    auto* b = new DataCombo(&form, "DataCombo1");
    a->setText("abc");
    EXPECT_EQ(a->BackColor(), colour::WindowBackground); // the design colour until focused

    Counter got, lost;
    a->GotFocus = got();
    a->LostFocus = lost();
    a->focusIn();
    EXPECT_EQ(a->vbProperty("BackColor").toLong(), RGB(255, 153, 0));
    EXPECT_EQ(a->SelStart(), 0);
    EXPECT_EQ(a->SelLength(), 3); // seltxt: the whole text
    EXPECT_EQ(got.n, 1);
    EXPECT_EQ(Control::focused(), a);

    // Focus moving elsewhere is a LostFocus here first; the data combo is painted too.
    b->focusIn();
    EXPECT_EQ(lost.n, 1);
    EXPECT_EQ(a->BackColor(), RGB(255, 255, 255)); // white, not the design colour
    EXPECT_EQ(b->BackColor(), colour::Orange);
    b->focusOut();
    EXPECT_EQ(b->BackColor(), colour::White);

    // A button click takes the focus: the field left behind runs LostFocus before Click.
    auto* cmd = new CommandButton(&form, "Cmd_Edit", "Modifica");
    QStringList order;
    a->LostFocus = [&] { order << "LostFocus"; };
    cmd->Click = [&] { order << "Click"; };
    a->focusIn();
    cmd->click();
    EXPECT_EQ(order, (QStringList{"LostFocus", "Click"}));

    // A disabled button ignores the click, as it would the mouse; a disabled field refuses
    // the focus with VB's error 5.
    cmd->setEnabled(false);
    cmd->click();
    EXPECT_EQ(order.size(), 2);
    a->setEnabled(false);
    EXPECT_EQ(errorOf([&] { a->focusIn(); }), 5);
}

TEST_F(ControlsTest, ProgramChangesFireChangeAsInVB)
{
    auto* txt = new TextBox(&form, "Txt_Search");
    Counter change;
    txt->Change = change();
    txt->setText("12");
    txt->setText("12"); // the same text is no change
    txt->setVbProperty("text", Variant(7));
    EXPECT_EQ(change.n, 2);
    EXPECT_EQ(txt->Text(), "7");
    // A Null leaves the box as it was and raises 94: the traps that copy rows rely on it.
    EXPECT_EQ(errorOf([&] { txt->setText(Variant::null()); }), err::InvalidUseOfNull);
    EXPECT_EQ(txt->Text(), "7");

    // DataCombo: every change of the text is a Change, picks from the list included.
    auto* dc = new DataCombo(&form, "DataCombo3");
    Counter dcChange, dcClick;
    dc->Change = dcChange();
    dc->Click = dcClick();
    dc->AddItem("PRESSA");
    dc->AddItem("TORNIO");
    EXPECT_EQ(dcChange.n, 0); // filling the list leaves the text alone
    dc->setText("PRE");
    dc->choose("TORNIO");
    dc->setText(QString());
    EXPECT_EQ(dcChange.n, 3);
    EXPECT_EQ(dcClick.n, 1);

    // A plain combo: a pick from the list is a Click only; typed or set text is a Change.
    auto* combo = new ComboBox(&form, "Combo1");
    Counter cChange, cClick;
    combo->Change = cChange();
    combo->Click = cClick();
    combo->AddItem("Interno");
    combo->AddItem("Esterno");
    combo->setListIndex(1);
    EXPECT_EQ(combo->Text(), "Esterno");
    EXPECT_EQ(cClick.n, 1);
    EXPECT_EQ(cChange.n, 0);
    combo->setText("Altro");
    EXPECT_EQ(cChange.n, 1);
    EXPECT_EQ(combo->ListIndex(), -1);
    EXPECT_EQ(errorOf([&] { combo->setListIndex(2); }), err::InvalidPropertyValue);
    // Typed text stays as typed, and the list, made when first wanted, holds the items.
    combo->setText(QString());
    QKeyEvent key(QEvent::KeyPress, Qt::Key_E, Qt::NoModifier, QStringLiteral("E"));
    QApplication::sendEvent(combo->lineEdit(), &key);
    EXPECT_EQ(combo->Text(), "E");
    EXPECT_EQ(combo->view()->model()->rowCount(), 2);

    // Check boxes and option buttons fire Click when the program sets their value.
    auto* chk = new CheckBox(&form, "Check1");
    Counter chkClick;
    chk->Click = chkClick();
    chk->setValue(1);
    chk->setValue(1);
    chk->click(); // the user unticks it
    EXPECT_EQ(chkClick.n, 2);
    EXPECT_EQ(chk->Value(), 0);

    // Date picker: a new value is a Change; what it cannot hold raises 380 and changes nothing.
    auto* dt = new DTPicker(&form, "DTPicker2");
    Counter dtChange;
    dt->Change = dtChange();
    dt->setValue(Variant::fromDate(QDate(2026, 11, 29)));
    dt->setValue(Variant("29/11/2026"));
    EXPECT_EQ(dtChange.n, 1);
    EXPECT_EQ(dt->Text(), "29/11/2026");
    EXPECT_EQ(errorOf([&] { dt->setValue(Variant::null()); }), err::InvalidPropertyValue);
    EXPECT_EQ(errorOf([&] { dt->setValue(Variant::fromDate(QDate(1500, 1, 1))); }), err::InvalidPropertyValue);
    EXPECT_EQ(dt->date(), QDate(2026, 11, 29));

    // A hidden picker fires Change on every new value and shows the last one once shown.
    dt->setVisible(false);
    dt->setValue(Variant("01/12/2026"));
    dt->setValue(Variant("02/12/2026"));
    dt->setVisible(true);
    EXPECT_EQ(dtChange.n, 3);
    EXPECT_EQ(dt->QDateEdit::date(), QDate(2026, 12, 2));
}

TEST_F(ControlsTest, KeyPressFiltersTypingAndCanCancelOrReplaceAKey)
{
    // The digits-only filter of the search fields: anything else is discarded by KeyAscii = 0.
    auto* txt = new TextBox(&form, "Txt_Search");
    txt->setText("old");
    Counter change, keyUp;
    txt->Change = change();
    txt->KeyUp = keyUp();
    txt->KeyPress = [](int& k) {
        if (!(k >= '0' && k <= '9') && k != 8)
            k = 0;
    };
    txt->typeText("1a2");
    EXPECT_EQ(txt->Text(), "12"); // focus selected "old", typing replaced it
    EXPECT_EQ(change.n, 2);       // one Change per accepted key
    EXPECT_EQ(keyUp.n, 3);        // every key is released
    txt->keyPress(8);
    EXPECT_EQ(txt->Text(), "1");

    // Keys from the keyboard pass through the same filter.
    for (const char c : {'x', '5'}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QLatin1Char(c)));
        QApplication::sendEvent(txt->editor(), &press);
    }
    EXPECT_EQ(txt->Text(), "15");

    // A handler may replace the key.
    auto* upper = new TextBox(&form, "Txt_Upper");
    upper->KeyPress = [](int& k) { k = QChar(k).toUpper().unicode(); };
    upper->typeText("ab");
    EXPECT_EQ(upper->Text(), "AB");

    // Locked: the key events run, the text stays. MaxLength stops typing, not the program.
    auto* locked = new TextBox(&form, "Txt_Locked");
    locked->setLocked(true);
    int presses = 0;
    locked->KeyPress = [&](int&) { ++presses; };
    locked->typeText("xy");
    EXPECT_EQ(presses, 2);
    EXPECT_EQ(locked->Text(), QString());
    auto* shortBox = new TextBox(&form, "Txt_Short");
    shortBox->setMaxLength(2);
    shortBox->typeText("abc");
    EXPECT_EQ(shortBox->Text(), "ab");

    // A masked date field fills its places and keeps the literals.
    auto* mask = new MaskEdBox(&form, "MaskEdBox1", "##/##/####");
    EXPECT_EQ(mask->Text(), "__/__/____");
    mask->typeText("03072016");
    EXPECT_EQ(mask->Text(), "03/07/2016");
    mask->setText("__/__/____");
    EXPECT_EQ(mask->Text(), "__/__/____");
    EXPECT_EQ(errorOf([&] { mask->setText("3/7/2016"); }), err::InvalidPropertyValue);
}

TEST_F(ControlsTest, ColoursGeometryAndPropertiesReadBackAsWritten)
{
    auto* lbl = new Label(&form, "Label8", "Prossima:");
    lbl->setVbProperty("ForeColor", Variant(RGB(231, 29, 33)));
    lbl->setVbProperty("BACKCOLOR", Variant(colour::WindowBackground));
    lbl->setVbProperty("BackStyle", Variant(0));
    EXPECT_EQ(lbl->vbProperty("ForeColor").toLong(), 0x211DE7);
    EXPECT_EQ(lbl->vbProperty("BackColor").toLong(), -2147483643);
    const Rgb red = colourToRgb(lbl->ForeColor());
    EXPECT_EQ((std::array{red.r, red.g, red.b}), (std::array{231, 29, 33}));
    EXPECT_EQ(errorOf([&] { lbl->vbProperty("Text"); }), 438);

    // Twips read back as written though a pixel is 15 of them.
    form.Move(3000, 2200, 9975, 4001);
    EXPECT_EQ(form.vbProperty("Top").toLong(), 2200);
    EXPECT_EQ(form.Height(), 4001);
    EXPECT_EQ(form.geometry().height(), 267);
    lbl->setLeft(130);
    EXPECT_EQ(lbl->Left(), 130);
    lbl->move(20, 20); // moved by a layout: the pixels speak
    EXPECT_EQ(lbl->Left(), 300);

    // Controls are found by name wherever they sit on the screen.
    auto* frame = new Frame(&form, "Frame10", "Minuti");
    auto* minutes = new TextBox(frame, "Txt_Min");
    EXPECT_EQ(form.control("Txt_Min"), minutes);
    EXPECT_EQ(form.control("Nothing"), nullptr);
    EXPECT_EQ(form.controlAs<Frame>("Frame10"), frame);
    // A screen this one owns keeps its controls to itself.
    auto* owned = new Form(&form, "Form13");
    new Label(owned, "Label2");
    EXPECT_EQ(form.control("Label2"), nullptr);
    EXPECT_EQ(form.control("Form13"), nullptr);
    EXPECT_NE(owned->control("Label2"), nullptr);

    // A progress bar holds fractions and refuses what is outside its range.
    auto* bar = new ProgressBar(&form, "ProgressBar1");
    bar->setValue(bar->Value() + 1.7);
    EXPECT_DOUBLE_EQ(bar->Value(), 1.7);
    EXPECT_EQ(errorOf([&] { bar->setValue(100.5); }), err::InvalidPropertyValue);
}

TEST_F(ControlsTest, ManualTimersFireOnlyWhenTickedAndRunning)
{
    Timer::setManual(true);
    Timer timer(&form, "Timer1", 1000);
    Counter ticks;
    timer.Tick = ticks();
    timer.tick();
    timer.setEnabled(false);
    timer.tick(); // a stopped timer does not run
    EXPECT_EQ(ticks.n, 1);
    Timer::setManual(false);
}

class BoundControlsTest : public ScreenTest
{
protected:
    void SetUp() override
    {
        ScreenTest::SetUp();
        const struct
        {
            const char *machine, *model, *number, *type;
            double weeks;
            QDate last, next;
        } rows[] = {{"TORNIO", "T1", "2", "Mensile", 4.5, {2026, 11, 1}, {2026, 12, 3}},
                    {"PRESSA", "AX100", "10", "Annuale", 52, {2026, 1, 15}, {2027, 1, 14}},
                    {"FRESA", "F9", "1", "Settimanale", 1, {2026, 11, 20}, {2026, 11, 27}}};
        for (const auto& r : rows)
            plant.registerRow({{"Macchina", r.machine},
                               {"Modello", r.model},
                               {"Numerazione", r.number},
                               {"Manutenzione_Tipo", r.type},
                               {"Frequenza_Sett", r.weeks},
                               {"Ultima", Variant::fromDate(r.last)},
                               {"Prossima", Variant::fromDate(r.next)}});
    }

    Form form{nullptr, "Form7"};
};

TEST_F(BoundControlsTest, GridShowsTheStatementsRowsAsVBShowedThem)
{
    auto* adodc = new Adodc(&form, "Adodc3");
    auto* grid = new DataGrid(&form, "DataGrid1");
    Counter rowChange;
    grid->RowColChange = rowChange();
    adodc->setRecordSource("SELECT Tbl_Maintenance.ID, Tbl_Maintenance.Macchina, Tbl_Maintenance.Frequenza_Sett, "
                           "Tbl_Maintenance.Prossima From Tbl_Maintenance ORDER BY Tbl_Maintenance.Prossima;");
    grid->setDataSource(adodc);
    adodc->Refresh();

    ASSERT_EQ(grid->ColumnCount(), 4);
    ASSERT_EQ(grid->RecordCount(), 3);
    EXPECT_EQ(grid->Columns(1).Caption(), "Macchina"); // a refresh names them by field
    grid->Columns(0).setWidth(0);
    grid->Columns(1).setCaption("MACCHINA");
    grid->Columns(1).setWidth(2000);
    EXPECT_TRUE(grid->isColumnHidden(0)); // width 0 hides the key column
    EXPECT_EQ(grid->model()->headerData(1, Qt::Horizontal).toString(), "MACCHINA");

    // In the statement's order, dates as dd/mm/yyyy, numbers with the decimal comma.
    EXPECT_EQ(grid->cellText(0, "Macchina"), "FRESA");
    EXPECT_EQ(grid->cellText(1, "Macchina"), "TORNIO");
    EXPECT_EQ(grid->cellText(1, "Prossima"), "03/12/2026");
    EXPECT_EQ(grid->cellText(1, "Frequenza_Sett"), "4,5");
    EXPECT_EQ(grid->model()->data(grid->model()->index(2, 1)).toString(), "PRESSA");

    // The refresh itself is no row change; the first pick is one, even of the first row.
    EXPECT_EQ(rowChange.n, 0);
    EXPECT_EQ(grid->Row(), 0);
    grid->select(0);
    EXPECT_EQ(rowChange.n, 1);
    grid->select(2);
    EXPECT_EQ(rowChange.n, 2);
    EXPECT_EQ(grid->Columns("MACCHINA").Text(), "PRESSA");
    EXPECT_EQ(adodc->Recordset()->Fields("Macchina").Value().toString(), "PRESSA");

    // Moving the data control's row moves the grid's: how a screen returns to a row.
    adodc->moveTo(1);
    EXPECT_EQ(grid->Row(), 1);
    EXPECT_EQ(rowChange.n, 3);
    EXPECT_EQ(grid->vbProperty("Text").toString(), grid->cellText(1, 0));

    // A new statement rebuilds the columns; one the store refuses empties the grid.
    adodc->setRecordSource("SELECT Macchina FROM Tbl_Maintenance WHERE Macchina = 'FRESA'");
    adodc->Refresh();
    EXPECT_EQ(grid->ColumnCount(), 1);
    EXPECT_EQ(grid->RecordCount(), 1);
    adodc->setRecordSource("SELECT Nothing FROM Tbl_Nothing");
    EXPECT_NE(errorOf([&] { adodc->Refresh(); }), 0);
    EXPECT_EQ(grid->RecordCount(), 0);
    EXPECT_EQ(grid->Row(), -1);
}

TEST_F(BoundControlsTest, DataComboListsItsRowSourceAndKeepsItsText)
{
    auto* adodc = new Adodc(&form, "Adodc1");
    auto* combo = new DataCombo(&form, "DataCombo3");
    adodc->setRecordSource("SELECT ID, Macchina FROM Tbl_Maintenance ORDER BY Macchina");
    combo->bind(adodc, "Macchina", "ID");
    combo->setText("TORNIO");
    Counter change;
    combo->Change = change();
    adodc->Refresh();
    EXPECT_EQ(combo->items(), (QStringList{"FRESA", "PRESSA", "TORNIO"}));
    EXPECT_EQ(combo->Text(), "TORNIO"); // rebinding the list leaves the text
    EXPECT_EQ(change.n, 0);
    EXPECT_EQ(combo->BoundText().toLong(), 1);
    combo->choose("PRESSA");
    EXPECT_EQ(change.n, 1);
    EXPECT_EQ(combo->BoundText().toLong(), 2);
    combo->setText("PRES");
    EXPECT_EQ(combo->BoundText().toString(), QString()); // no row has that text
}

} // namespace
