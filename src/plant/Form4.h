#pragma once
/// @file Form4.h
/// The departments ("REPARTO MACCHINE"): one row of Tbl_Reparto per department. The
/// screen adds, renames and deletes departments, carries a rename to the copy of the name
/// that every model keeps (Tbl_Macchina.REPARTO), and shows, for the department chosen,
/// its machines with their number of units and every numbered unit.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing and renaming, "SALVA" inserting.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace plant {

class Form4 : public vb::Form
{
public:
    explicit Form4(QWidget* owner = nullptr);

    void Form_Load() override;

    // ---- the departments ----------------------------------------------------------------
    vb::Label* Label1;  ///< "REPARTI PRESENTI"
    vb::ListBox* List1; ///< the department names
    vb::Label* Label2;  ///< the number of departments listed
    vb::Frame* Frame1;  ///< "Cerca Reparto"
    vb::TextBox* Txt_Search;
    vb::Label* Label3; ///< "REPARTO"
    vb::TextBox* TextREPARTO;
    vb::TextBox* Text1; ///< hidden: key of the department chosen

    // ---- what the department holds --------------------------------------------------------
    vb::Label* Label4;         ///< "MACCHINE"
    vb::TextBox* Txt_Num_Macc; ///< models of the department
    vb::Label* Label5;         ///< "MODELLI"
    vb::TextBox* Txt_Num_Mod;  ///< numbered units of the department
    vb::Frame* Frame2;         ///< "MACCHINE", then "Conteggio Macchine: {n}"
    vb::DataGrid* DataGrid1;   ///< machine, model and units, on Adodc1
    vb::Adodc* Adodc1;
    vb::Frame* Frame3;       ///< "MODELLI", then "Conteggio Modelli: {n}"
    vb::DataGrid* DataGrid2; ///< model and unit number, on Adodc2
    vb::Adodc* Adodc2;

    // ---- commands -----------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;    ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;   ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete; ///< "ELIMINA"
    vb::CommandButton* Command1;   ///< "VISUALIZZA TUTTO"

    void Refresh_Reparti();
    /// The department's machines by kind and model (first 30 characters) with their units.
    void Fill_Grid_Macchine();
    /// Every numbered unit of the department, by model and number.
    void Fill_Grid_Modelli();

    void List1_Click();
    void DataGrid1_RowColChange();
    void Txt_Search_KeyUp();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Command1_Click();

private:
    void buildControls();
    /// Binds Adodc2 to a list of units and sets its captions and count.
    void showUnits(const QString& statement);
};

} // namespace plant
