#pragma once
/// @file Form15.h
/// The spare part categories ("INSERISCI RICAMBI"): one row of Tbl_Ricambi names a kind
/// of part and its unit of measure. The screen adds, renames and deletes categories and
/// carries a rename to the copies of the name in Tbl_Descrizione_Ricambi and Tbl_Ricerca.
///
/// Cmd_Edit's caption is the state: "MODIFICA" browsing, "SALVA" inserting.

#include "controls/Controls.h"
#include "controls/DataControls.h"
#include "controls/Form.h"

namespace spares {

class Form15 : public vb::Form
{
public:
    explicit Form15(QWidget* owner = nullptr);

    void Form_Load() override;

    vb::ListBox* List1; ///< the category names
    vb::Label* Label2;  ///< the number of lines of List1
    vb::Label* Label1;  ///< caption of TextRICAMBI
    vb::Label* Label3;  ///< caption of DataCombo1
    vb::TextBox* TextRICAMBI;
    vb::DataCombo* DataCombo1; ///< units already in use; a new one is typed in
    vb::Adodc* Adodc1;
    vb::TextBox* Text1; ///< hidden: key of the category shown
    vb::CommandButton* Cmd_Add;
    vb::CommandButton* Cmd_Edit;
    vb::CommandButton* Cmd_Delete;
    vb::CommandButton* Command1;
    vb::Frame* Frame1; ///< "Per Ricambio"
    vb::TextBox* Txt_Search;
    vb::Frame* Frame2; ///< "Per Unità di Misura"
    vb::TextBox* Txt_Search_UN_MIS;

    void Refresh_Category_List();

    void List1_Click();
    void Cmd_Add_Click();
    void Cmd_Edit_Click();
    void Cmd_Delete_Click();
    void Command1_Click();
    void Txt_Search_KeyPress();
    void Txt_Search_KeyUp();
    void Txt_Search_UN_MIS_KeyPress();
    void Txt_Search_UN_MIS_KeyUp();

private:
    void buildControls();
    /// Runs a search statement into List1; the boxes differ by field.
    void search(const QString& statement, const QString& text, bool byUnit);
};

} // namespace spares
