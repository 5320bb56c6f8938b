#pragma once
/// @file Form9.h
/// The general procedures ("PROCEDURE MANUTENZIONI"): for each machine model, every step
/// its maintenance may hold, without a frequency. Tbl_Proc_General_Macc names the model
/// (the upper grid), Tbl_Proc_General holds its steps (the lower grid); the assigned
/// maintenance later picks steps from here for each frequency.
///
/// Cmd_Edit and Cmd_Edit2 read "MODIFICA" or "SALVA": the caption is the state of the
/// model and of the step. One step can be copied (COPIA) and pasted (INCOLLA) onto the
/// model selected next in the upper grid. The register's preselected model (Form7.ID_MOD)
/// narrows both lists; "Visualizza Tutto" lets it go.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace definition {

class Form9 : public vb::Form
{
public:
    explicit Form9(QWidget* owner = nullptr);

    /// Centre, the list of machine kinds, then Fill_Models and Fill_Steps.
    void Form_Load() override;

    // ---- the models ---------------------------------------------------------------------
    vb::DataGrid* DataGrid2; ///< the models, on Adodc5
    vb::Adodc* Adodc5;
    vb::Label* Label2; ///< models and the weekly workload
    vb::Label* Label3;
    vb::DataCombo* DataCombo2; ///< machine kind, rows from Adodc2
    vb::Adodc* Adodc2;
    vb::Label* Label4;
    vb::DataCombo* DataCombo3; ///< model of the kind, rows from Adodc3
    vb::Adodc* Adodc3;
    vb::TextBox* Txt_ID;         ///< hidden: key of the Tbl_Proc_General_Macc row
    vb::TextBox* ID_MOD;         ///< hidden: the model's key now
    vb::TextBox* ID_MOD_OLD;     ///< hidden: the model's key when the row was selected
    vb::TextBox* Txt_Posizione;  ///< hidden: the row of DataGrid2, kept across a reopening
    vb::TextBox* Txt_ID_MODELLO; ///< hidden: the register's preselected model
    vb::CommandButton* Cmd_Add;
    vb::CommandButton* Cmd_Edit; ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;
    vb::Frame* Frame1; ///< "Per Macchina"
    vb::TextBox* Txt_Search_Macc;
    vb::Frame* Frame2; ///< "Per Modello"
    vb::TextBox* Txt_Search_Modello;

    // ---- the steps ----------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< the steps, on Adodc1
    vb::Adodc* Adodc1;
    vb::Label* Label1; ///< "N° Procedure {n}"
    vb::Label* Label5;
    vb::TextBox* Txt_Num_Procedura;
    vb::Label* Label6;
    vb::TextBox* Txt_Titolo;
    vb::Label* Label7;
    vb::TextBox* Txt_Procedura;
    vb::TextBox* Txt_ID_PROCEDURA;   ///< hidden: key of the step shown
    vb::TextBox* Txt_Copy_Titolo;    ///< hidden: the copied step's title
    vb::TextBox* Txt_Copy_Procedura; ///< hidden: the copied step's text
    vb::CommandButton* Cmd_Add2;
    vb::CommandButton* Cmd_Edit2; ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete2;
    vb::CommandButton* Cmd_Copy;     ///< "COPIA"
    vb::CommandButton* Cmd_Paste;    ///< "INCOLLA"
    vb::CommandButton* Cmd_Print;    ///< DataReport6, the model's general procedures
    vb::CommandButton* Cmd_Aggiorna; ///< "Aggiorna dati"
    vb::CommandButton* Cmd_Vis_All;  ///< "Visualizza Tutto"

    void Fill_Models();
    void Fill_Steps();
    void Format_Models();
    void Format_Steps();

    void DataGrid2_Click();
    void DataGrid2_RowColChange();
    void DataGrid1_Click();
    void DataGrid1_RowColChange();
    void DataCombo2_Change();
    void DataCombo3_Change();
    void Txt_Search_Macc_KeyUp();
    void Txt_Search_Modello_KeyUp();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Add2_Click();
    void Cmd_Edit2_Click();
    void Cmd_Delete2_Click();
    void Cmd_Copy_Click();
    void Cmd_Paste_Click();
    void Cmd_Print_Click();
    void Cmd_Aggiorna_Click();
    void Cmd_Vis_All_Click();

private:
    void buildControls();
    void connectEvents();
    /// Both lists narrowed by kind or by model as the user types: each statement up to
    /// the text typed, which goes in with its quotes doubled.
    void search(const QString& steps, const QString& models, const QString& text);
    /// Unloads the screen and shows it again; with backToRow the new screen's model list
    /// goes to the row this one kept, when that row exists.
    Form9* reopen(bool backToRow);
};

} // namespace definition
