#pragma once
/// @file Form5.h
/// The machine models ("INSERISCI MACCHINE"): one row of Tbl_Macchina per model, with its
/// kind, department, maker, state and year. The grid lists every model by kind; three
/// searches narrow it while the user types (kind, model) or picks (state). A rename is
/// carried to every table that keeps a copy of the names (Tbl_Maintenance,
/// Tbl_Proc_General_Macc, Tbl_Assegna_M, Tbl_Planned, Tbl_Ricerca); a delete takes the
/// model's procedures, assignments, register rows and chart rows with it, and leaves its
/// units, steps, notes and interventions where they are.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing and editing, "SALVA" inserting.
/// Cmd_Add leads to "SALVA"; a click in the grid, a save or a reopening back to "MODIFICA".

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace plant {

class Form5 : public vb::Form
{
public:
    explicit Form5(QWidget* owner = nullptr);

    /// Centre, the lists of departments, makers and states, then Fill_Grid_Macchine_All.
    void Form_Load() override;

    // ---- the list ---------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< the models, on Adodc2 (or a search's rows)
    vb::Adodc* Adodc2;
    vb::Label* Label1;          ///< "Conteggio Macchine: {n}" / "Macchine Trovate n° {n}"
    vb::TextBox* Txt_Posizione; ///< hidden: the grid row selected, kept across a reopening

    // ---- the model --------------------------------------------------------------------
    vb::TextBox* txtID_MODELLO; ///< hidden: the key of the model shown
    vb::TextBox* TxtID_REPARTO; ///< hidden: the key of the department named in DataCombo3
    vb::Label* Label2;
    vb::TextBox* txtMacchina;
    vb::Label* Label3;
    vb::TextBox* Txt_Modello;
    vb::Label* Label4;
    vb::DataCombo* DataCombo3; ///< the department, from Adodc4
    vb::Adodc* Adodc4;
    vb::Label* Label5;
    vb::DataCombo* DataCombo2; ///< the maker: the makers typed before, or a new one
    vb::Adodc* Adodc1;
    vb::Label* Label6;
    vb::DataCombo* DataCombo4; ///< the state: the states typed before, or a new one
    vb::Adodc* Adodc3;
    vb::Label* Label7;
    vb::TextBox* txtAnno;

    // ---- searches ---------------------------------------------------------------------
    vb::Frame* Frame1; ///< by kind
    vb::TextBox* Text1;
    vb::Frame* Frame2; ///< by model
    vb::TextBox* Text2;
    vb::Frame* Frame3; ///< by state
    vb::DataCombo* DataCombo1;

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;       ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;      ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;    ///< "ELIMINA"
    vb::CommandButton* Cmd_Print;     ///< DataReport8, the models by department
    vb::CommandButton* Cmd_Vis_Manut; ///< DataReport6, the general procedures of the model
    vb::CommandButton* Cmd_Vis_All;   ///< reopens the screen on the whole list
    vb::CommandButton* Cmd_Info;      ///< Info.txt, the advice on the date format

    void Fill_Grid_Macchine_All();
    /// Empties the model's fields and keys (not the searches, not the kept row).
    void Clear_Fields();

    void DataGrid1_Click();
    void DataGrid1_RowColChange();
    void DataCombo3_Change();
    void Text1_KeyUp();
    void Text2_KeyUp();
    void DataCombo1_Click();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Vis_All_Click();
    void Cmd_Print_Click();
    void Cmd_Vis_Manut_Click();
    void Cmd_Info_Click();

private:
    void buildControls();
    void connectEvents();
    /// The grid's widths and captions, for the whole list and for a search's rows alike.
    void Set_Grid_Columns();
    /// Runs a search command of the store with the field's text and lists its rows.
    void search(const QString& command, const QString& text);
    /// Unloads the screen and shows it again, placed with or without the 300 twips; with
    /// backToRow the new screen goes to the row this one kept, when that row exists.
    Form5* reopen(bool plus300, bool backToRow);
};

} // namespace plant
