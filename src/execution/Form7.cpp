#include "execution/Form7.h"

#include "controls/ScreenKit.h"
#include "execution/WeeklyPlan.h"
#include "runtime/VBFunctions.h"
#include "shell/ScreenRegistry.h"

namespace execution {

namespace {

// The right-hand column of entry fields, in twips.
constexpr int FieldLabelLeft = 10080;
constexpr int FieldLeft = 11880;
constexpr int FieldWidth = 3000;
constexpr int RowHeight = 315;

} // namespace

Form7::Form7(QWidget* owner) : vb::Form(owner, QStringLiteral("Form7"), QStringLiteral("ESEGUI MANUTENZIONI"))
{
    buildControls();
    connectEvents();
}

void Form7::buildControls()
{
    Move(0, 0, 15360, 9000);
    const vb::ScreenKit kit(this, {.field = RowHeight});

    // The list and its day filter.
    Label2 =
        kit.label(this, "Label2", QStringLiteral("Visualizza Manutenzioni in scadenza tra n° giorni:"), 120, 120, 4200);
    Txt_Search = kit.field(this, "Txt_Search", 4380, 90, 735);
    DataGrid1 = kit.grid(this, "DataGrid1", Adodc3, "Adodc3", 120, 480, 9720, 5160);
    Label1 = kit.label(this, "Label1", QStringLiteral("Conteggio Manutenzioni:"), 120, 5700, 5000);
    Lbl_ProgressBar = kit.label(this, "Lbl_ProgressBar", QString(), 120, 5700, 5000);
    Lbl_ProgressBar->setVisible(false);
    Shape1 = new vb::Shape(this, QStringLiteral("Shape1"));
    Shape1->Move(120, 5970, 0, 120);
    Shape1->setBackStyle(1);
    Shape1->setBackColor(16744576);
    Shape1->setFillColor(16744576);
    Shape1->setVisible(false);
    ProgressBar1 = new vb::ProgressBar(this, QStringLiteral("ProgressBar1"));
    ProgressBar1->Move(120, 6120, 9975, 120);
    ProgressBar1->setVisible(false);

    // The entry fields of the selected row.
    int top = 120;
    auto fieldRow = [&](const char* labelName, const QString& caption) {
        vb::Label* l = kit.label(this, labelName, caption, FieldLabelLeft, top + 30, 1740);
        top += 390;
        return l;
    };
    Label16 = kit.label(this, "Label16", QString(), FieldLabelLeft, top, 4800);
    Label16->setFontBold(true);
    top += 390;
    auto comboRow = [&](const char* labelName, const QString& caption, const char* name, vb::Label*& l) {
        l = fieldRow(labelName, caption);
        return kit.dataCombo(this, name, FieldLeft, top - 390, FieldWidth);
    };
    DataCombo3 = comboRow("Label3", QStringLiteral("Macchina:"), "DataCombo3", Label3);
    DataCombo2 = comboRow("Label4", QStringLiteral("Modello:"), "DataCombo2", Label4);
    DataCombo1 = comboRow("Label5", QStringLiteral("Numerazione:"), "DataCombo1", Label5);
    DataCombo4 = comboRow("Label6", QStringLiteral("Manutenzione Tipo:"), "DataCombo4", Label6);
    Label10 = fieldRow("Label10", QStringLiteral("Frequenza Sett.:"));
    txtFrequenza = kit.field(this, "txtFrequenza", FieldLeft, top - 390, 735);
    txtFrequenza->setLocked(true);
    DataCombo5 = comboRow("Label9", QStringLiteral("Operatore:"), "DataCombo5", Label9);
    Label7 = fieldRow("Label7", QStringLiteral("Ultima:"));
    Command1 = kit.button(this, "Command1", QStringLiteral("<"), FieldLeft, top - 420, 375);
    MaskEdBox1 = new vb::MaskEdBox(this, QStringLiteral("MaskEdBox1"), QStringLiteral("##/##/####"));
    MaskEdBox1->Move(FieldLeft + 420, top - 390, 1200, RowHeight);
    DTPicker1 = kit.datePicker(this, "DTPicker1", FieldLeft + 1665, top - 390, 1335);
    Command2 = kit.button(this, "Command2", QStringLiteral(">"), FieldLeft + 3045, top - 420, 375);
    Label8 = fieldRow("Label8", QStringLiteral("Prossima:"));
    Label8->setForeColor(vb::colour::Black);
    MaskEdBox2 = new vb::MaskEdBox(this, QStringLiteral("MaskEdBox2"), QStringLiteral("##/##/####"));
    MaskEdBox2->Move(FieldLeft + 420, top - 390, 1200, RowHeight);
    DTPicker2 = kit.datePicker(this, "DTPicker2", FieldLeft + 1665, top - 390, 1335);

    txtID = kit.hidden("txtID");
    ID_MOD = kit.hidden("ID_MOD");
    ID_NUM = kit.hidden("ID_NUM");
    ID_MAINT = kit.hidden("ID_MAINT");
    ID_OPERATORE = kit.hidden("ID_OPERATORE");
    Txt_Tot_Minuti = kit.hidden("Txt_Tot_Minuti");
    Txt_Qualifica = kit.hidden("Txt_Qualifica");
    Txt_Man_Tip = kit.hidden("Txt_Man_Tip");
    Txt_Week = kit.hidden("Txt_Week");
    Txt_Db = kit.hidden("Txt_Db");
    TXT = kit.hidden("TXT");

    Adodc1 = new vb::Adodc(this, QStringLiteral("Adodc1"));
    Adodc2 = new vb::Adodc(this, QStringLiteral("Adodc2"));
    Adodc4 = new vb::Adodc(this, QStringLiteral("Adodc4"));
    Adodc5 = new vb::Adodc(this, QStringLiteral("Adodc5"));
    Adodc6 = new vb::Adodc(this, QStringLiteral("Adodc6"));
    Adodc7 = new vb::Adodc(this, QStringLiteral("Adodc7"));
    Adodc8 = new vb::Adodc(this, QStringLiteral("Adodc8"));

    // Commands.
    top += 120;
    Cmd_Add = kit.button(this, "Cmd_Add", QStringLiteral("Inserisci"), FieldLabelLeft, top, 1500);
    Cmd_Edit = kit.button(this, "Cmd_Edit", QStringLiteral("Modifica"), FieldLabelLeft + 1560, top, 1500);
    Cmd_Delete = kit.button(this, "Cmd_Delete", QStringLiteral("Elimina"), FieldLabelLeft + 3120, top, 1500);
    top += 435;
    Cmd_Eseguita = kit.button(this, "Cmd_Eseguita", QStringLiteral("Man Eseguita"), FieldLabelLeft, top, 2280);
    Cmd_Add_Note =
        kit.button(this, "Cmd_Add_Note", QStringLiteral("Inserire Nota Macchina"), FieldLabelLeft + 2340, top, 2280);
    Cmd_Add_Note->setEnabled(false);
    top += 435;
    Cmd_Stop = kit.button(this, "Cmd_Stop", QStringLiteral("Ferma Dal"), FieldLabelLeft, top, 1500);
    DTPicker3 = kit.datePicker(this, "DTPicker3", FieldLabelLeft + 1560, top + 30, 1335);
    DTPicker3->setVisible(false);
    top += 435;
    Cmd_Vis_All = kit.button(this, "Cmd_Vis_All", QStringLiteral("Aggiorna"), FieldLabelLeft, top, 1500);
    Cmd_Search = kit.button(this, "Cmd_Search", QStringLiteral("Cerca"), FieldLabelLeft + 1560, top, 1500);
    Cmd_Info = kit.button(this, "Cmd_Info", QStringLiteral("Info"), FieldLabelLeft + 3120, top, 1500);
    top += 435;
    Cmd_Vis_Procedura =
        kit.button(this, "Cmd_Vis_Procedura", QStringLiteral("Visualizza Procedura"), FieldLabelLeft, top, 2280);
    Command3 =
        kit.button(this, "Command3", QStringLiteral("Visualizza Macchine Ferme"), FieldLabelLeft + 2340, top, 2280);
    top += 435;
    Cmd_Senza_Manutenzione = kit.button(this, "Cmd_Senza_Manutenzione", QStringLiteral("Macchine Senza Manutenzione"),
                                        FieldLabelLeft, top, 2280);
    Cmd_Print_Week =
        kit.button(this, "Cmd_Print_Week", QStringLiteral("Stampa Settimana"), FieldLabelLeft + 2340, top, 1140);
    Print_Plan = kit.button(this, "Print_Plan", QStringLiteral("Plan Maintenance"), FieldLabelLeft + 3510, top, 1140);

    // The notes of the selected machine, over the list.
    Frame1 = kit.frame(this, "Frame1", QStringLiteral("LEGGI NOTE MACCHINA"), 120, 6360, 9720, 2400);
    Frame1->setVisible(false);
    DataGrid2 = kit.boundGrid(Frame1, "DataGrid2", Adodc7, 120, 240, 9480, 2040);
    DataGrid2->setVisible(false);

    // The stop panel.
    Frame2 =
        kit.frame(this, "Frame2", QStringLiteral("Fermi Macchina per Posticipo Manutenzioni"), 4800, 6360, 5040, 2400);
    Frame2->setVisible(false);
    DTPicker6 = kit.datePicker(Frame2, "DTPicker6", 120, 300, 1335);
    Cmd_Confirm = kit.button(Frame2, "Cmd_Confirm", QStringLiteral("CONFERMA"), 1560, 270, 1500);
    Cmd_Avviamento = kit.button(Frame2, "Cmd_Avviamento", QStringLiteral("RIAVVIATA IL..."), 120, 780, 1500);
    DTPicker4 = kit.datePicker(Frame2, "DTPicker4", 1680, 810, 1335);
    DTPicker4->setVisible(false);
    Label11 = kit.label(Frame2, "Label11", QStringLiteral("Giorni Fermo:"), 120, 1350, 1335);
    Txt_Day_Stop = kit.field(Frame2, "Txt_Day_Stop", 1560, 1320, 735);
    Txt_Day_Stop->setLocked(true);
    Label12 = kit.label(Frame2, "Label12", QStringLiteral("Numero Stop:"), 120, 1770, 1335);
    Txt_Numero_Stop = kit.field(Frame2, "Txt_Numero_Stop", 1560, 1740, 735);
    Txt_Numero_Stop->setLocked(true);
    Cmd_Chiudi = kit.button(Frame2, "Cmd_Chiudi", QStringLiteral("X"), 4560, 180, 375);
    DTPicker5 = new vb::DTPicker(this, QStringLiteral("DTPicker5"));
    DTPicker5->setVisible(false);

    // The lower list: stopped machines, or the maintenance missing.
    Frame3 = kit.frame(this, "Frame3", QString(), 120, 480, 9720, 5160);
    Frame3->setVisible(false);
    DataGrid3 = kit.boundGrid(Frame3, "DataGrid3", Adodc8, 120, 480, 9480, 4560);
    Lbl_CHIUDI = kit.label(Frame3, "Lbl_CHIUDI", QStringLiteral("<< CHIUDI"), 120, 210, 1200);
    Lbl_CHIUDI->setMouseTracking(true);
}

void Form7::connectEvents()
{
    DataGrid1->RowColChange = [this] { DataGrid1_RowColChange(); };
    Txt_Search->KeyPress = [this](int& k) { Txt_Search_KeyPress(k); };
    Txt_Search->Change = [this] { Refresh_Grid_Maintenance(); };
    DataCombo3->Change = [this] { DataCombo3_Change(); };
    DataCombo2->Change = [this] { DataCombo2_Change(); };
    DataCombo1->Change = [this] { DataCombo1_Change(); };
    DataCombo4->Change = [this] { DataCombo4_Change(); };
    DataCombo5->Change = [this] { DataCombo5_Change(); };
    ID_MAINT->Change = [this] { ID_MAINT_Change(); };
    ID_NUM->Change = [this] { ID_NUM_Change(); };
    DTPicker1->Change = [this] { DTPicker1_Change(); };
    Command1->Click = [this] { Command1_Click(); };
    Command2->Click = [this] { Command2_Click(); };
    Cmd_Add->Click = [this] { Cmd_Add_Click(); };
    Cmd_Edit->Click = [this] { Cmd_Edit_Click(); };
    Cmd_Delete->Click = [this] { Cmd_Delete_Click(); };
    Cmd_Vis_All->Click = [this] { Cmd_Vis_All_Click(); };
    Cmd_Info->Click = [this] { Cmd_Info_Click(); };
    Cmd_Print_Week->Click = [] { Print_Week(); };
    Print_Plan->Click = [] { execution::Print_Plan(); };
    // The search screen keeps its own place (centred by its load), beside the register.
    Cmd_Search->Click = [] {
        if (vb::Form* search = shell::ScreenRegistry::instance().form(QStringLiteral("Form8")))
            search->show();
    };
    Cmd_Vis_Procedura->Click = [this] { Cmd_Vis_Procedura_Click(); };
    DataGrid2->Click = [this] { DataGrid2_Click(); };
    MouseMove = [this] { Form_MouseMove(); };

    Cmd_Eseguita->Click = [this] { Cmd_Eseguita_Click(); };
    Cmd_Add_Note->Click = [this] { Cmd_Add_Note_Click(); };

    Cmd_Stop->Click = [this] { Cmd_Stop_Click(); };
    Cmd_Avviamento->Click = [this] { Cmd_Avviamento_Click(); };
    Cmd_Confirm->Click = [this] { Cmd_Confirm_Click(); };
    Cmd_Chiudi->Click = [this] { Cmd_Chiudi_Click(); };
    Command3->Click = [this] { Command3_Click(); };
    Cmd_Senza_Manutenzione->Click = [this] { Cmd_Senza_Manutenzione_Click(); };
    DataGrid3->RowColChange = [this] { DataGrid3_RowColChange(); };
    Lbl_CHIUDI->Click = [this] { Lbl_CHIUDI_Click(); };
    Lbl_CHIUDI->MouseMove = [this] { Lbl_CHIUDI->setFontUnderline(true); };
    DTPicker3->Change = [this] { DTPicker3_Change(); };
    DTPicker6->Change = [this] { DTPicker6_Change(); };
}

void Form7::Reload()
{
    shell::screens().unload(QStringLiteral("Form7"));
    shell::screens().show(QStringLiteral("Form7"));
}

VELMORA_SCREEN(Form7);

} // namespace execution
