#pragma once
/// @file Form8.h
/// The register's search: three fields that narrow Form7's list while the user types,
/// writing straight into Form7's grid and count line.

#include "controls/Controls.h"
#include "controls/Form.h"

namespace execution {

class Form8 : public vb::Form
{
public:
    explicit Form8(QWidget* owner = nullptr);

    void Form_Load() override;

    vb::Frame* Frame1; ///< "Cerca per Nome Macchina"
    vb::TextBox* Text1;
    vb::Frame* Frame2; ///< "Cerca per Tipo di Manutenzione"
    vb::TextBox* Text2;
    vb::Frame* Frame3; ///< "Cerca per Numerazione"
    vb::TextBox* Text3;

    void Text1_KeyUp();
    void Text2_KeyUp();
    void Text3_KeyUp();

private:
    void buildControls();
    /// Runs a search command with the field's text and shows its rows in Form7's list.
    void searchBy(const QString& command, const QString& text);
};

/// Lays a SELECT * of Tbl_Maintenance out in Form7's grid like the normal list.
void Set_Grid_Columns();

} // namespace execution
