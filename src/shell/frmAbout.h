#pragma once
/// @file frmAbout.h
/// The About screen ("Developers"): it fades in during start-up, and its load is where
/// the due alerts of the start run. Opened again later from frmMain's logo it says
/// nothing. Image2 leads to the access screen Form20; Image6 fades it out.

#include "controls/Controls.h"
#include "controls/Form.h"
#include "runtime/Variant.h"

#include <QString>

namespace shell {

/// The day count of the alerts: whole calendar days from today to Prossima, both sides
/// taken as "dd,mm,yyyy" texts and read back as dates. Negative when Prossima has passed.
/// A Prossima that is Null gives no date: error 13.
int dueDayCount(const QString& todayText, const vb::Variant& prossima);

/// Today under "dd,mm,yyyy" (15,11,2026), from the program's clock.
QString alertToday();

class frmAbout : public vb::Form
{
public:
    explicit frmAbout(QWidget* owner = nullptr);

    /// The load: the opacity goes to 1 of 255, then, only while frmMain is not yet
    /// visible, the due alerts. No trap of its own: an error goes to frmMain's load.
    void Form_Load() override;

    /// The alerts of what falls due (tomorrow or earlier), one box per row, then Form7.
    void Due_Alerts();

    /// The current opacity byte (0..255).
    int Opacity() const { return m_opacity; }

    vb::Label* Label1; ///< version
    vb::Label* Label2; ///< the program
    vb::Label* Label3; ///< the maker's contact
    vb::Label* Label4; ///< the year
    vb::Image* Image1;
    vb::Image* Image2; ///< to Form20
    vb::Image* Image3;
    vb::Image* Image4;
    vb::Image* Image5;
    vb::Image* Image6; ///< fades the screen out
    vb::Timer* timeInc;
    vb::Timer* timeDec;

    // Event procedures.
    void timeInc_Timer();
    void timeDec_Timer();
    void Image2_Click();
    void Image6_Click();
    /// The hover effect: the pointer over Image1, Image4 or Image5 lights the pairs,
    /// over the background puts them back.
    void Hover(bool lit);

protected:
    std::optional<vb::Variant> getProp(const QString& n) const override;

private:
    void buildControls();
    /// Gives the screen the opacity byte (the layered window's alpha).
    void applyOpacity();
    /// One box for a due row, by its day count.
    void alertRow(const QString& today, const vb::Variant& macchina, const vb::Variant& tipo,
                  const vb::Variant& modello, const vb::Variant& minuti, const vb::Variant& prossima,
                  const vb::Variant& numerazione);

    quint8 m_opacity = 255;
};

} // namespace shell
