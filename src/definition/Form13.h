#pragma once
/// @file Form13.h
/// The assigned maintenance ("PROCEDURA MANUTENZIONI"): which maintenance types each
/// machine model gets (Tbl_Assegna_M), the steps of each assignment with their minutes
/// (Tbl_ProcedureM), picked one by one from the model's general procedures
/// (Tbl_Proc_General), and the numbered, revised sheet of each assignment
/// (Tbl_Certif_Proced_Manut). Every change of steps recomputes the weekly workload.
///
/// Form7 hands a model and type through Form7.ID_MOD and Form7.ID_MAINT, read on load:
/// with both set, the lists show that assignment alone. frmMain's Timer3 reads
/// Txt_Control_Min, Txt_Min and Txt_Num and flashes Frame10 while a step lacks minutes.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing, "SALVA" inserting.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace definition {

class Form13 : public vb::Form
{
public:
    explicit Form13(QWidget* owner = nullptr);

    /// Centre, Tempo_Ore of every assignment, the pick lists, then both grids by the pair
    /// handed from Form7 (or the whole list).
    void Form_Load() override;

    // ---- the assignment ---------------------------------------------------------------
    vb::Label* Label1;
    vb::DataCombo* DataCombo2; ///< machine, from Adodc2
    vb::Adodc* Adodc2;
    vb::Label* Label2;
    vb::DataCombo* DataCombo3; ///< model, from Adodc3
    vb::Adodc* Adodc3;
    vb::Label* Label3;
    vb::DataCombo* DataCombo4; ///< maintenance type, from Adodc4
    vb::Adodc* Adodc4;
    vb::Label* Label4;
    vb::TextBox* Txt_Tot_Min; ///< minutes of one execution of the assignment

    // hidden keys and flags
    vb::TextBox* ID_MOD;
    vb::TextBox* ID_MAINT;
    vb::TextBox* Txt_ID;     ///< key of the selected assignment
    vb::TextBox* ID_MOD_OLD; ///< the keys as they were at the selection
    vb::TextBox* ID_MAINT_OLD;
    vb::TextBox* Txt_ID_MODELLO; ///< the pair handed from Form7
    vb::TextBox* Txt_ID_MAINT_TIPO;
    vb::TextBox* Txt_Grid_Modello; ///< model and type of the selected step
    vb::TextBox* Txt_Grid_Manutenzione;
    vb::TextBox* Txt_ID_PROCEDURA;
    vb::TextBox* Txt_ID_PROCEDURA_General;
    vb::TextBox* Txt_Control_Min; ///< "1" while a step waits for its minutes

    // ---- the lists --------------------------------------------------------------------
    vb::DataGrid* DataGrid2; ///< assignments, on Adodc5
    vb::Adodc* Adodc5;
    vb::Frame* Frame2;       ///< the steps of the assignment
    vb::DataGrid* DataGrid1; ///< on Adodc1
    vb::Adodc* Adodc1;
    vb::Frame* Frame10; ///< the step's minutes
    vb::TextBox* Txt_Min;
    vb::CommandButton* Cmd_Inserisci; ///< "INSERISCI": the picked general step with its minutes
    vb::CommandButton* Cmd_Delete2;   ///< "ELIMINA": the selected step
    vb::Frame* Frame1;                ///< the model's general procedures
    vb::DataGrid* DataGrid3;          ///< on Adodc6
    vb::Adodc* Adodc6;
    vb::Label* Label5;
    vb::TextBox* Txt_Num;
    vb::TextBox* Txt_Titolo;
    vb::TextBox* Txt_Procedura;

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;            ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;           ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;         ///< "ELIMINA"
    vb::CommandButton* Cmd_Aggiorna;       ///< "AGGIORNA"
    vb::CommandButton* Cmd_Vis_All;        ///< "Visualizza Tutto"
    vb::CommandButton* Cmd_Print;          ///< "PRINT PROCEDURA", DataReport7
    vb::CommandButton* Cmd_Print_Rapporto; ///< "PRINT RAPPORTO", DataReport5, the job sheet

    void DataCombo2_Change();
    void DataCombo3_Change();
    void DataCombo4_Change();
    void DataGrid2_Click();
    void DataGrid2_RowColChange();
    void DataGrid1_Click();
    void DataGrid1_RowColChange();
    void DataGrid3_RowColChange();
    void Txt_Min_KeyPress(int& keyAscii);
    void Txt_Min_Change();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Inserisci_Click();
    void Cmd_Delete2_Click();
    void Cmd_Aggiorna_Click();
    void Cmd_Vis_All_Click();
    void Cmd_Print_Click();
    void Cmd_Print_Rapporto_Click();

    /// The sheet code of an assignment: "{m}_{t}" then the first three letters of machine,
    /// model and type joined by "_" (12, 3, Tornio, T200, Mensile: "12_3Tor_T20_Men").
    static QString Scheda(const QString& m, const QString& t, const QString& machine, const QString& model,
                          const QString& type);

private:
    void buildControls();
    void connectEvents();
    void Fill_Assignments(const QString& m, const QString& t);
    void Fill_Steps(const QString& m, const QString& t);
    void Clear_Step_Fields();
    void Clear_Fields();
    /// The key of a picked name: the first row of select + name (quotes doubled) + "'".
    static void keyOfName(const QString& name, const QString& select, const QString& keyColumn, vb::TextBox* key);
    /// Tempo_Minuti of the assignment's register rows, when it has any.
    static void Update_Register_Minutes(const QString& m, const QString& t, const QString& minutes);
    /// Closes every working screen and shows this one anew; the workload line follows
    /// when asked.
    static void reload(bool workloadLine);
    /// DataReport7 and DataReport5: the same statement, their own type box.
    void printSheet(const QString& report, const QString& typeBox);
};

} // namespace definition
