#pragma once
/// @file frmMain.h
/// The main screen: the menu strip, the clock line, the workload line, the start-up in
/// its load, the four timers and the session register written at close.

#include "controls/Controls.h"
#include "controls/Form.h"

#include <QString>

#include <functional>
#include <vector>

namespace shell {

/// The weekly workload line (frmMain.Label1). The program's start installs the workload
/// procedure (definition::installWorkloadLine); until then the load's last step does nothing.
void Show_Workload_Total();
void setWorkloadTotal(std::function<void()> procedure);

/// The sheet code of an assignment: ID_MODELLO "_" ID_MAINT_TIPO, then the first three
/// letters of machine, model and type, the last two after "_" ("12_3PRE_AX1_Men").
QString sheetCode(const vb::Variant& idModello, const vb::Variant& idMaintTipo, const vb::Variant& macchina,
                  const vb::Variant& modello, const vb::Variant& tipo);

class frmMain : public vb::Form
{
public:
    explicit frmMain(QWidget* owner = nullptr);

    void Form_Load() override;
    void Form_Unload() override; ///< the close: the session row, then the end

    /// The six statements of the start-up upgrade, in their order.
    static const QStringList& upgradeStatements();

    // Menu strip and its thirteen labels, in menu order.
    vb::Shape* PicMenu;
    vb::Label* LblManutenzioni;
    vb::Label* lblAss_Manut;
    vb::Label* lblWrite_Manut;
    vb::Label* lblMacc;
    vb::Label* lblNum_Macc;
    vb::Label* lblReparto;
    vb::Label* lblNoteBooks;
    vb::Label* lblRicambi;
    vb::Label* lblDescRicambi;
    vb::Label* lblInterventi;
    vb::Label* lblFornitori;
    vb::Label* lblOperatore;
    vb::Label* lblExit;
    vb::Image* Img_Indicatore;

    // Background, logo and fixed texts.
    vb::Image* Image2;
    vb::Image* Image6;
    vb::Label* Label1; ///< the workload line
    vb::Label* Label2;
    vb::Label* Label3;
    vb::Label* Label4;
    vb::Label* Label5;
    vb::Label* Label6;
    vb::Label* Label7;
    vb::Label* Label8;
    vb::Label* Label9; ///< version
    vb::Label* Lbl_Time;
    vb::Label* Lbl_Procedure;

    // Hidden state.
    vb::TextBox* Txt_Apertura;
    vb::TextBox* Txt_Form7;
    vb::TextBox* Txt_Posizione;
    vb::TextBox* Txt_PosizioneGrid3;

    vb::Timer* Timer1;
    vb::Timer* Timer2;
    vb::Timer* Timer3;
    vb::Timer* Timer4;

    /// The menu labels in menu order.
    std::vector<vb::Label*> menuLabels() const;

    // Event procedures.
    void Menu_Click(vb::Label* label);
    void lblAss_Manut_Click();
    void lblExit_Click();
    void Image6_Click();
    void Lbl_Procedure_Click();
    void Timer1_Timer();
    void Timer2_Timer();
    void Timer3_Timer();
    void Timer4_Timer();

    /// Clears the highlight of the thirteen labels; on the background also Lbl_Procedure's.
    void Reset_Menu_Highlight(bool background);
    /// Hides DataReport1 and DataReport7 when they are visible.
    void Hide_Open_Reports();

private:
    void buildControls();
    void upgradeSchema();
    void fillSheets();
    void fitToDisplay();
    void stackMenu();
    /// The last steps of a menu click: the title and the marker beside the label.
    void markActive(vb::Label* label);
};

} // namespace shell
