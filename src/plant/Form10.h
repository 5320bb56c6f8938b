#pragma once
/// @file Form10.h
/// The machine numbering ("NUMERAZIONE MACCHINE"): each physical unit of a model gets its
/// number, a row of Tbl_Numerazione. Three linked lists lead to a unit: kind (List1),
/// model (List2), number (List3). Opened from the menu it lists every kind; opened by the
/// register (Form7) it lists only the kind of the model Form7.ID_MOD holds.
///
/// Cmd_Edit's caption is the state: "MODIFICA" (Cmd_Add enabled) and "SALVA" (inserting,
/// Cmd_Add disabled).

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace plant {

class Form10 : public vb::Form
{
public:
    explicit Form10(QWidget* owner = nullptr);

    /// Centres the screen and takes the model handed over by Form7 (loading Form7 hidden
    /// when it is not loaded, as reading its field does).
    void Form_Load() override;

    vb::Frame* Frame1;  ///< "MACCHINE PRESENTI              "
    vb::ListBox* List1; ///< machine kinds
    vb::Label* Label2;  ///< the number of kinds listed
    vb::Frame* Frame2;  ///< "MODELLO MACCHINA"
    vb::ListBox* List2; ///< models of the kind chosen
    vb::Frame* Frame3;  ///< "NUMERAZIONE MACCHINE"
    vb::ListBox* List3; ///< unit numbers of the model chosen
    vb::Frame* Frame4;  ///< "Modello"
    vb::TextBox* Txt_Modello;
    vb::Frame* Frame5; ///< "Numerazione"
    vb::TextBox* Txt_Num;
    vb::TextBox* Text1;      ///< hidden: key of the model chosen
    vb::TextBox* Txt_ID_NUM; ///< hidden: key of the unit chosen
    vb::TextBox* ID_MODELLO; ///< hidden: the model handed over by Form7

    vb::CommandButton* Cmd_Add;      ///< "INSERISCI"
    vb::CommandButton* Cmd_Edit;     ///< "MODIFICA" / "SALVA"
    vb::CommandButton* Cmd_Delete;   ///< "ELIMINA"
    vb::CommandButton* Cmd_Aggiorna; ///< "AGGIORNA"

    /// Only the kind of the model handed over.
    void Fill_Model_Only();
    /// Every kind; the other lists and fields emptied.
    void Fill_All_Kinds();

    void List1_Click();
    void List2_Click();
    void List3_Click();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();

private:
    void buildControls();
    /// Adds the kinds of a statement to List1, counts them and returns to "MODIFICA".
    void listKinds(const QString& statement);
    /// Whether the model of Text1 has a number containing Txt_Num.
    bool numberTaken();
};

} // namespace plant
