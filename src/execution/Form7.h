#pragma once
/// @file Form7.h
/// The maintenance register: the list of scheduled maintenance of every machine number,
/// the entry fields of the selected row, its execution, its notes, and the stops that
/// push the schedule back. Other screens read and write its controls by name (frmMain's
/// timers, the alerts, the procedures, the numbering, the notes), so the controls are
/// public members with the program's names.
///
/// One class over several sources, by concern: Form7.cpp builds the screen,
/// Form7_Register.cpp holds the list, the selection, the pick lists and the
/// insert/edit/delete commands, Form7_Execution.cpp the execution and the notes,
/// Form7_Stops.cpp the stops and the shift of the schedule on load, Form7_Missing.cpp
/// the units that lack a maintenance of an assigned type and the lower list's selection.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "controls/Form.h"
#include "runtime/Trap.h"
#include "runtime/Variant.h"

#include <QString>

namespace execution {

class Form7 : public vb::Form
{
public:
    explicit Form7(QWidget* owner = nullptr);

    /// The load, in its seven steps: centre, the stop button, the pick lists, the stop
    /// shift, today in the Ultima fields, the list, and frmMain.Timer4 switched on.
    /// An overflow of the stop shift ends the load and reaches the caller.
    void Form_Load() override;

    // ---- the list -------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< the register, on Adodc3
    vb::Adodc* Adodc3;
    vb::Label* Label1;       ///< "Conteggio Manutenzioni: {n}"
    vb::Label* Label2;       ///< the day filter's label
    vb::TextBox* Txt_Search; ///< due within n days (digits only)

    // ---- the entry fields -----------------------------------------------------------
    vb::DataCombo* DataCombo3; ///< machine, on Adodc1
    vb::DataCombo* DataCombo2; ///< model, on Adodc2
    vb::DataCombo* DataCombo1; ///< number, on Adodc4
    vb::DataCombo* DataCombo4; ///< maintenance type, on Adodc5
    vb::DataCombo* DataCombo5; ///< operator, on Adodc6
    vb::Adodc* Adodc1;
    vb::Adodc* Adodc2;
    vb::Adodc* Adodc4;
    vb::Adodc* Adodc5;
    vb::Adodc* Adodc6;
    vb::MaskEdBox* MaskEdBox1;   ///< Ultima as text
    vb::DTPicker* DTPicker1;     ///< Ultima
    vb::MaskEdBox* MaskEdBox2;   ///< Prossima as text
    vb::DTPicker* DTPicker2;     ///< Prossima: "the date of the selected maintenance"
    vb::CommandButton* Command1; ///< Ultima one day back
    vb::CommandButton* Command2; ///< Ultima one day forward
    vb::Label* Label3;           ///< "Macchina:"
    vb::Label* Label4;           ///< "Modello:"
    vb::Label* Label5;           ///< "Numerazione:"
    vb::Label* Label6;           ///< "Manutenzione Tipo:"
    vb::Label* Label7;           ///< "Ultima:"
    vb::Label* Label8;           ///< "Prossima:" — red and bold when overdue; frmMain flashes it
    vb::Label* Label9;           ///< "Operatore:"
    vb::Label* Label10;          ///< "Frequenza Sett.:"
    vb::Label* Label16;          ///< "[{Macchina}]-[{Modello}]-[N°{Numerazione}]"

    // Hidden working state.
    vb::TextBox* txtID;
    vb::TextBox* ID_MOD;
    vb::TextBox* ID_NUM;
    vb::TextBox* ID_MAINT;
    vb::TextBox* ID_OPERATORE;
    vb::TextBox* txtFrequenza;
    vb::TextBox* Txt_Tot_Minuti;
    vb::TextBox* Txt_Qualifica;
    vb::TextBox* Txt_Man_Tip; ///< the type name of the selected row before any edit
    vb::TextBox* Txt_Week;
    vb::TextBox* Txt_Db;
    vb::TextBox* TXT;

    // ---- commands -------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;     ///< "Inserisci"
    vb::CommandButton* Cmd_Edit;    ///< "Modifica" / "SALVA": the state of the screen
    vb::CommandButton* Cmd_Delete;  ///< "Elimina"
    vb::CommandButton* Cmd_Vis_All; ///< "Aggiorna"
    vb::CommandButton* Cmd_Info;
    vb::CommandButton* Cmd_Eseguita; ///< "Man Eseguita"
    vb::CommandButton* Cmd_Add_Note; ///< "Inserire Nota Macchina"
    vb::CommandButton* Cmd_Vis_Procedura;
    vb::CommandButton* Cmd_Search;
    vb::CommandButton* Cmd_Senza_Manutenzione;
    vb::CommandButton* Cmd_Print_Week;
    vb::CommandButton* Print_Plan;

    // The progress group of a save.
    vb::Label* Lbl_ProgressBar;
    vb::Shape* Shape1;
    vb::ProgressBar* ProgressBar1;

    // ---- notes of the machine ---------------------------------------------------------
    vb::Frame* Frame1;
    vb::DataGrid* DataGrid2; ///< on Adodc7
    vb::Adodc* Adodc7;

    // ---- stops ----------------------------------------------------------------------
    vb::CommandButton* Cmd_Stop;       ///< "Ferma Dal"
    vb::DTPicker* DTPicker3;           ///< date of the stop
    vb::Frame* Frame2;                 ///< "Fermi Macchina per Posticipo Manutenzioni"
    vb::DTPicker* DTPicker6;           ///< mirror of DTPicker3
    vb::CommandButton* Cmd_Confirm;    ///< "CONFERMA"
    vb::CommandButton* Cmd_Avviamento; ///< "RIAVVIATA IL..."
    vb::DTPicker* DTPicker4;           ///< restart date
    vb::Label* Label11;                ///< "Giorni Fermo:"
    vb::TextBox* Txt_Day_Stop;
    vb::Label* Label12; ///< "Numero Stop:"
    vb::TextBox* Txt_Numero_Stop;
    vb::CommandButton* Cmd_Chiudi;
    vb::DTPicker* DTPicker5; ///< scratch date of the shift

    // The lower list: stopped machines, or missing maintenance.
    vb::CommandButton* Command3; ///< "Visualizza Macchine Ferme"
    vb::Frame* Frame3;
    vb::DataGrid* DataGrid3; ///< on Adodc8
    vb::Adodc* Adodc8;
    vb::Label* Lbl_CHIUDI; ///< "<< CHIUDI"

    // ---- event procedures: the register (Form7_Register.cpp) ------------------------
    void Refresh_Grid_Maintenance();
    void DataGrid1_RowColChange();
    void Clear_Fields();
    void Txt_Search_KeyPress(int& keyAscii);
    void DataCombo3_Change();
    void DataCombo2_Change();
    void DataCombo1_Change();
    void DataCombo4_Change();
    void DataCombo5_Change();
    void ID_MAINT_Change();
    void ID_NUM_Change();
    void DTPicker1_Change();
    void Command1_Click();
    void Command2_Click();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Vis_All_Click();
    void Cmd_Info_Click();
    void Cmd_Vis_Procedura_Click();
    void DataGrid2_Click();
    void Form_MouseMove();

    // ---- execution and notes (Form7_Execution.cpp) ----------------------------------
    void Cmd_Eseguita_Click();
    void Cmd_Add_Note_Click();

    // ---- stops (Form7_Stops.cpp) ------------------------------------------------------
    /// The stop record of the machine number in ID_NUM shown in Frame2; from the list of
    /// stopped machines the panel also comes to the front.
    void Show_Stop_State(bool fromStoppedList);
    /// Pushes Prossima of every stopped machine's matching row by the days stopped.
    void Apply_Stop_Shift();
    void Cmd_Stop_Click();
    void Cmd_Avviamento_Click();
    void Cmd_Confirm_Click();
    void Cmd_Chiudi_Click();
    void Command3_Click();
    void Refresh_Grid_Stopped();
    void Lbl_CHIUDI_Click();
    void DTPicker3_Change();
    void DTPicker6_Change();

    // ---- maintenance missing, and the lower list (Form7_Missing.cpp) -----------------
    /// Rebuilds Tbl_Not_Maintenance, marks every unit and type the register holds, and
    /// lists the rest.
    void Cmd_Senza_Manutenzione_Click();
    void Refresh_Grid_Missing();
    /// A line of the lower list (missing maintenance or stopped machines) prepares a new
    /// register row of that unit and type.
    void DataGrid3_RowColChange();

    /// Unload, show again and place: how the screen refreshes after a save.
    static void Reload();

private:
    // The chart's procedures move the register's progress group.
    friend void Update_Planned_Row(Form7& form);
    friend void Clear_Planned_Tokens(Form7& form);

    void buildControls();
    void connectEvents();
    /// Makes sure the machine number has its row in the plan; the statements run under
    /// the calling command's trap.
    void ensurePlannedRow(vb::Trap& trap);
    /// Raises the progress bar and shows the text with the value, the shape following it.
    void raiseProgress(vb::Trap& trap, double by, const QString& text);
    /// Writes (or overwrites) the note row of the machine for the date in DTPicker2.
    void writeNoteRow(vb::Trap& trap, const vb::Variant& idMaintenance, bool withType);
    /// Hands the note's keys to the notes screen and shows it.
    void openNotes(vb::Trap& trap);
    /// The minutes of the assignment of ID_MOD and ID_MAINT into Txt_Tot_Minuti.
    void lookUpMinutes();
};

} // namespace execution
