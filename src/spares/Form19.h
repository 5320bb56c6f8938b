#pragma once
/// @file Form19.h
/// The orders ("ORDINI RICAMBI"): what is ordered from suppliers and what arrives back
/// into the store. There is one open order, all the rows of Tbl_Order; evading it copies
/// every line into Tbl_Historian_Orders under today's date and empties Tbl_Order, so an
/// evaded order is known by its date alone. Each evaded line waits with Data_Ricevuto
/// 'Non Ricevuto' (the column's default) until its arrival is confirmed: the date goes
/// into the same column as d/m/yyyy and the quantity onto Giacenza of the part, the one
/// place here where stock moves.
///
/// The grid shows one of three views, as Txt_Info_Print says: "0" the open order, "1"
/// all lines of the date chosen in List2, "2" only its lines still waiting. Txt_Vis_List
/// says which dates List2 offers ("0" all, "1" those still waiting) and which view a
/// click on a date opens. The interventions screen's order reminder opens this screen
/// with the part prefilled; the menu has no entry for it.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace spares {

class Form19 : public vb::Form
{
public:
    explicit Form19(QWidget* owner = nullptr);

    /// Centre, the category list, every evasion date, the supplier list, the open order.
    void Form_Load() override;

    // ---- the line being ordered ---------------------------------------------------------
    vb::DataCombo* DataCombo1; ///< category
    vb::Adodc* Adodc1;
    vb::DataCombo* DataCombo2; ///< description of the category
    vb::Adodc* Adodc3;
    vb::ListBox* List1; ///< the category's descriptions, while the line is typed
    vb::TextBox* Txt_Codice;
    vb::TextBox* Txt_Quant;    ///< whole numbers only
    vb::DataCombo* DataCombo3; ///< supplier; a name typed that matches none is kept as text
    vb::Adodc* Adodc4;

    // ---- commands ---------------------------------------------------------------------
    vb::CommandButton* Cmd_Add;        ///< "INSERISCI"
    vb::CommandButton* Cmd_Delete;     ///< "ELIMINA"
    vb::CheckBox* Check1;              ///< "EVADI ORDINE": the safety catch of Cmd_Evadi
    vb::CommandButton* Cmd_Evadi;      ///< "PROCEDI"
    vb::CheckBox* Check2;              ///< "MERCE ARRIVATA": shown for a line still waiting
    vb::CommandButton* Cmd_Confirm;    ///< "CONFERMA"
    vb::CommandButton* Cmd_Vis_Ordine; ///< "ORDINE IN CORSO"
    vb::CommandButton* Cmd_Print;      ///< "STAMPA": DataReport1 of the view shown

    // ---- the evasion dates ----------------------------------------------------------------
    vb::Frame* Frame3;                        ///< "Visualizza Storico Ordini per..."
    vb::CommandButton* Cmd_Storico_Ordini;    ///< "STORICO ORDINI"
    vb::CommandButton* Cmd_Merce_da_Ricevere; ///< "SOLO MERCE DA RICEVERE"
    vb::Frame* Frame2;                        ///< "N° Storico Ordini {n}" / "N°Ordini in Attesa {n}"
    vb::ListBox* List2;

    // ---- the lines ----------------------------------------------------------------------
    vb::Frame* Frame1; ///< "Conteggio Ricambi in Ordine: {n}"
    vb::DataGrid* DataGrid2;
    vb::Adodc* Adodc2;

    // Hidden state.
    vb::TextBox* Txt_Info_Print; ///< the view: "0" open order, "1" a date, "2" its waiting lines
    vb::TextBox* Txt_Vis_List;   ///< the dates: "0" all, "1" still waiting
    vb::TextBox* Txt_ID_Ricambi;
    vb::TextBox* Txt_ID_DESCRIZIONE_RIC;
    vb::TextBox* Txt_ID_Fornitore;
    vb::TextBox* Txt_ID_Historian_Orders; ///< the evaded line chosen in the grid
    vb::TextBox* Txt_ID_DR;               ///< its part
    vb::TextBox* Txt_Qta;                 ///< its quantity

    // ---- procedures -------------------------------------------------------------------
    void Show_Current_Order();
    void Show_History_Of_Date();
    void Show_Undelivered_Of_Date();
    void Clear_Order_Inputs();
    void Fill_History_Dates();
    void Fill_Waiting_Dates();

    void DataCombo1_Change();
    void DataCombo2_Change();
    void DataCombo3_Change();
    void List1_Click();
    void List2_Click();
    void DataGrid2_RowColChange();

    void Cmd_Add_Click();
    void Cmd_Delete_Click();
    void Cmd_Evadi_Click();
    void Cmd_Confirm_Click();
    void Cmd_Vis_Ordine_Click();
    void Cmd_Storico_Ordini_Click();
    void Cmd_Merce_da_Ricevere_Click();
    void Cmd_Print_Click();

private:
    void buildControls();
    void connectEvents();
    /// One of the three views ("0", "1", "2"): the grid on the statement, its layout, the
    /// count, and the evasion's catch, shown with the open order only.
    void showLines(const QString& statement, const QString& view);
    /// List2 on a statement of dates, and its frame's caption with the count.
    void fillDates(const QString& statement, const QString& caption);
    /// The dates List2 offers from now on: "0" all, "1" those still waiting.
    void offerDates(const QString& which);
};

} // namespace spares
