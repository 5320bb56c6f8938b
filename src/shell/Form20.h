#pragma once
/// @file Form20.h
/// The access screen behind the About screen: a code opens the way to the instructions
/// for moving data over from an older database (Velmora.txt).

#include "controls/Controls.h"
#include "controls/Form.h"

#include <QStringList>

namespace shell {

class Form20 : public vb::Form
{
public:
    explicit Form20(QWidget* owner = nullptr);

    void Form_Load() override;

    /// The access code; compared case-sensitively with the whole text.
    static constexpr const char* AccessCode = "GRAVOLT";
    /// The lines of Velmora.txt below its date line and the empty line after it.
    static QStringList TransferProcedureLines();

    vb::TextBox* Txt_Pass;
    vb::CommandButton* Cmd_Pass;
    vb::CommandButton* Cmd_Procedura;
    vb::Image* Image1;
    vb::Image* Image2; ///< shown with Cmd_Procedura once the code is right
    vb::Image* Image6; ///< closes the screen

    void Cmd_Pass_Click();
    void Cmd_Procedura_Click();
    void Image6_Click();

private:
    void buildControls();
};

} // namespace shell
