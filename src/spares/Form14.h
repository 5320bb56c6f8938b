#pragma once
/// @file Form14.h
/// The interventions on machines ("DESTINAZIONE RICAMBI"): each row of Tbl_Ricerca is one
/// use of a spare part on a numbered unit, with the quantity taken from the store, where
/// on the machine it went, why, when, and a picture by reference. Saving one is the
/// store's withdrawal counter: Update_Stock rewrites Giacenza and Scorta of the part.
///
/// DataGrid1 lists the machines that have interventions (narrowed by the four search
/// fields), DataGrid2 the interventions of the machine chosen, the entry area on the right
/// the intervention chosen or being entered. Cmd_Edit's caption is the state: "MODIFICA"
/// editing the chosen row, "SALVA" inserting. Every save and delete ends in a fresh load
/// of the screen, and every load (also the hidden one of frmMain's Timer2) recomputes
/// Prossima of the whole maintenance register.
///
/// The same screen prints a machine's interventions, the parts per model, the history of
/// a machine (interventions and last executions by month), and the consumption of all
/// parts or of one; the panel Frame10 shows the yearly consumption of the part chosen.

#include "controls/CommonDialog.h"
#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/DateControls.h"
#include "controls/Form.h"

namespace spares {

class Form14 : public vb::Form
{
public:
    explicit Form14(QWidget* owner = nullptr);

    /// Centre, the four lists, the register's next dates recomputed row by row, today in
    /// DTPicker1, Refresh_Machine_List.
    void Form_Load() override;

    // ---- the machines -------------------------------------------------------------------
    vb::DataGrid* DataGrid1; ///< machines with interventions, by unit number
    vb::Adodc* Adodc6;
    vb::Label* Label6;          ///< "Conteggio Macchine: {n}"
    vb::TextBox* Txt_Posizione; ///< hidden: DataGrid1's row, kept across a reload after a save

    // ---- the interventions of the machine ---------------------------------------------
    vb::DataGrid* DataGrid2;
    vb::Adodc* Adodc3;
    vb::Label* Label1; ///< "Trovati Componenti Macchina N° {n}"

    // ---- the entry area ---------------------------------------------------------------
    vb::DTPicker* DTPicker1;   ///< the date; hidden until a row or INSERISCI shows it
    vb::DataCombo* DataCombo3; ///< machine (kind)
    vb::Adodc* Adodc1;
    vb::DataCombo* DataCombo2; ///< model
    vb::Adodc* Adodc2;
    vb::DataCombo* DataCombo4; ///< unit number
    vb::Adodc* Adodc5;
    vb::DataCombo* DataCombo1; ///< part category
    vb::Adodc* Adodc4;
    vb::DataCombo* DataCombo5; ///< part description, a word search into List1
    vb::Adodc* Adodc7;
    vb::ListBox* List1;        ///< the descriptions the typed words match
    vb::DataCombo* DataCombo6; ///< destination on the machine, free text
    vb::Adodc* Adodc8;
    vb::DataCombo* DataCombo7; ///< cause, free text: a new one is created on save
    vb::Adodc* Adodc9;
    vb::Frame* Frame1; ///< "Giacenza"
    vb::TextBox* Txt_Giac;
    vb::Frame* Frame2;       ///< "Scorta Min"
    vb::TextBox* Txt_Scorta; ///< painted by the stock level, flashed by frmMain's Timer2
    vb::Frame* Frame3;       ///< "Prelievo"
    vb::TextBox* Txt_prelievo;
    vb::CommandButton* Cmd_Photo; ///< "INSERISCI IMMAGINE"
    vb::Image* Image4;            ///< the intervention's picture, small, in Cmd_Photo's place
    vb::Frame* Frame11;           ///< the large picture, over the screen
    vb::Image* Image1;
    vb::CommonDialog* Apri;

    // Hidden working state.
    vb::TextBox* txtID;      ///< the intervention chosen, or the key just generated
    vb::TextBox* Txt_ID;     ///< DataGrid1's "ID": the machine's model key
    vb::TextBox* ID_MODELLO; ///< the entry area's model key
    vb::TextBox* Txt_ID_NUM; ///< the entry area's unit key; also the machine of the prints
    vb::TextBox* Txt_ID_Ricambi;
    vb::TextBox* Txt_ID_DESCRIZIONE_RIC; ///< empty: the description is no known part
    vb::TextBox* Txt_ID_CAUSA;
    vb::TextBox* Txt_prelievo_OLD; ///< quantity of the row last chosen in DataGrid2
    /// The stored stock Txt_Giac was filled from: on a shared server, a withdrawal made
    /// meanwhile at another workstation moves the stock written too.
    vb::Variant m_stockRead;
    vb::TextBox* TXT_ID_IMG; ///< the row whose picture is shown
    vb::TextBox* Txt_Images;
    vb::TextBox* Txt_Percorso;

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;       ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;      ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;    ///< "ELIMINA"
    vb::CommandButton* Cmd_Order;     ///< "PROMEMORIA ORDINI": Form19 prefilled
    vb::CommandButton* Cmd_Vis_All;   ///< "VISUALIZZA TUTTO"
    vb::CommandButton* Cmd_Info;      ///< "Info"
    vb::CommandButton* Cmd_Statistic; ///< "Statistiche": Form11
    vb::CommandButton* Cmd_History_GO;
    vb::CommandButton* Cmd_Print_List;
    vb::CommandButton* Cmd_Print_All;
    vb::CommandButton* Cmd_Print_Consumi;

    // ---- searches ---------------------------------------------------------------------
    vb::Frame* Frame4; ///< "CERCA PER..."
    vb::TextBox* Txt_Search_Mod_Macc;
    vb::TextBox* Txt_Search_Ric;
    vb::TextBox* Txt_Search_Desc;
    vb::TextBox* Txt_Search_Destin;

    // ---- the consumption panel ----------------------------------------------------------
    vb::Frame* Frame10; ///< "Consumi relativi a [{Descrizione}]"
    vb::DataGrid* DataGrid3;
    vb::Adodc* Adodc10;
    vb::CommandButton* Cmd_Print_This; ///< "STAMPA CONSUMI"
    vb::CommandButton* Cmd_Close;      ///< "CHIUDI"

    // ---- procedures -------------------------------------------------------------------
    void Clear_Fields();
    void Update_Stock();
    void Refresh_Machine_List();
    void Set_Machine_Grid_Columns();
    void Set_Search_Grid_Columns();
    void Insert_Intervention_Image();
    void Resolve_Cause();
    void Reload_Screen();
    void Build_Tbl_Search();
    void Drop_Tbl_Search();
    void Show_Part_Consumption();

    void DataGrid1_RowColChange();
    void DataGrid2_RowColChange();
    void DataCombo3_Change();
    void DataCombo2_Change();
    void DataCombo4_Change();
    void DataCombo1_Change();
    void DataCombo5_Change();
    void DataCombo5_Click();
    void DataCombo7_Change();
    void List1_Click();
    void Txt_Giac_Change();
    void Txt_Images_Change();

    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Cmd_Order_Click();
    void Cmd_Vis_All_Click();
    void Cmd_History_GO_Click();
    void Cmd_Print_List_Click();
    void Cmd_Print_All_Click();
    void Cmd_Print_Consumi_Click();
    void Cmd_Print_This_Click();
    void Cmd_Close_Click();

    /// A key released in one of the four search fields.
    void Search_KeyUp(vb::TextBox* field);

private:
    void buildControls();
    void connectEvents();
    /// The exact lookup of the typed description: key, stock and minimum, and with
    /// destinations the ones already used for the part.
    void lookUpDescription(const QString& text, bool destinations);
    /// "Descrizione", "Destinazione", "Ricambi" or "Normal", the last search field with
    /// text winning (DataGrid2's source follows it).
    QString searchMode() const;
    /// The open screen again in its place (a save, a delete, a picture).
    void reopen();
};

} // namespace spares
