#include "shell/frmAbout.h"

#include "controls/ScreenKit.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/MsgBox.h"
#include "runtime/VBFunctions.h"
#include "shell/Reopen.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"

#include <QGuiApplication>

namespace shell {

using vb::Variant;

namespace {

const QString AlertDatePattern = QStringLiteral("dd,mm,yyyy");

/// Fade steps of the opacity byte.
constexpr int FadeInStep = 5;
constexpr int FadeInEnd = 250;
constexpr int FadeOutStep = 10;
constexpr int FadeOutEnd = 10;
constexpr int FadePeriod = 30;

/// A value as the alert texts join it: Null and Empty give nothing, numbers and dates
/// their Italian text.
QString str(const Variant& v)
{
    return v.displayText();
}

QString machine(const Variant& macchina, const Variant& modello, const Variant& numerazione)
{
    return str(macchina) + u' ' + str(modello) + QStringLiteral(" N°") + str(numerazione);
}

} // namespace

QString alertToday()
{
    return vb::Format(Variant::fromDateTime(vb::Clock::now()), AlertDatePattern).toString();
}

int dueDayCount(const QString& todayText, const Variant& prossima)
{
    // Both sides go through the comma text, so the time of day plays no part. A Null
    // Prossima formats to nothing, and nothing is no date.
    const QString due = vb::Format(prossima, AlertDatePattern).displayText();
    const double from = vb::CDate(todayText).toDouble();
    const double to = vb::CDate(due).toDouble();
    return static_cast<int>(to - from);
}

frmAbout::frmAbout(QWidget* owner) : vb::Form(owner, QStringLiteral("frmAbout"), QStringLiteral("Developers"))
{
    buildControls();
}

void frmAbout::buildControls()
{
    Move(0, 0, 7200, 4800);
    setMouseTracking(true);
    MouseMove = [this] { Hover(false); };

    const vb::ScreenKit kit(this, {.label = 300});
    Label2 = kit.label(this, "Label2", QString::fromLatin1(vb::AppTitle), 2400, 480, 4500);
    Label2->setFontBold(true);
    Label1 = kit.label(this, "Label1", QStringLiteral("V3.5.5"), 2400, 900, 4500);
    Label3 = kit.label(this, "Label3", vb::SupportAddress(), 2400, 1320, 4500);
    Label4 = kit.label(this, "Label4", QStringLiteral("2016"), 2400, 1740, 4500);

    // Two pairs, one image of each shown at a time: Image1/Image4 (the logo) and
    // Image5/Image3 (the mark beside the version).
    Image1 = kit.image(this, "Image1", 240, 240, 1800, 1200);
    Image4 = kit.image(this, "Image4", 240, 240, 1800, 1200);
    Image4->setVisible(false);
    Image5 = kit.image(this, "Image5", 240, 1680, 1800, 1200);
    Image3 = kit.image(this, "Image3", 240, 1680, 1800, 1200);
    Image3->setVisible(false);
    Image2 = kit.image(this, "Image2", 240, 3240, 1200, 900);
    Image6 = kit.image(this, "Image6", 5640, 3240, 1200, 900);
    Image1->MouseMove = [this] { Hover(true); };
    Image4->MouseMove = [this] { Hover(true); };
    Image5->MouseMove = [this] { Hover(true); };
    Image2->Click = [this] { Image2_Click(); };
    Image6->Click = [this] { Image6_Click(); };

    timeInc = new vb::Timer(this, QStringLiteral("timeInc"), FadePeriod, true);
    timeDec = new vb::Timer(this, QStringLiteral("timeDec"), FadePeriod, false);
    timeInc->Tick = [this] { timeInc_Timer(); };
    timeDec->Tick = [this] { timeDec_Timer(); };
}

void frmAbout::Form_Load()
{
    m_opacity = 1;
    applyOpacity();
    // Opened again from frmMain's logo, with frmMain up, the screen says nothing: the
    // alerts belong to the start alone.
    vb::Form* main = screens().loaded(QStringLiteral("frmMain"));
    if (main && main->isVisible())
        return;
    Due_Alerts();
}

void frmAbout::Due_Alerts()
{
    const QString today = alertToday();
    store::Recordset rs;
    rs.Open(QStringLiteral("SELECT Tbl_Maintenance.Macchina, Tbl_Maintenance.Modello, Tbl_Maintenance.Numerazione, "
                           "Tbl_Maintenance.Manutenzione_Tipo, Tbl_Maintenance.Tempo_Minuti, "
                           "Tbl_Maintenance.Prossima From Tbl_Maintenance Where Prossima <=(Date()+1) order by "
                           "prossima ;"));
    if (rs.Eof())
        return;
    // One question whatever the mix of rows, also when each is only a day or two late.
    if (vb::MsgBox(QStringLiteral("Attenzione!! Oggi sono in programma delle Manutenzioni, Vuoi vedere i dettagli?"),
                   vb::mb::YesNo + vb::mb::Critical, QStringLiteral("MANUTENZIONE DA ESEGUIRE")) != vb::answer::Yes)
        return;
    while (!rs.Eof()) {
        alertRow(today, rs.Fields(QStringLiteral("Macchina")).Value(),
                 rs.Fields(QStringLiteral("Manutenzione_Tipo")).Value(), rs.Fields(QStringLiteral("Modello")).Value(),
                 rs.Fields(QStringLiteral("Tempo_Minuti")).Value(), rs.Fields(QStringLiteral("Prossima")).Value(),
                 rs.Fields(QStringLiteral("Numerazione")).Value());
        rs.MoveNext();
    }

    // Then the register, with the main title naming it; the menu marker stays as it is.
    screens().show(QStringLiteral("Form7"));
    if (vb::Form* main = screens().loaded(QStringLiteral("frmMain"))) {
        const vb::Control* entry = main->control(QStringLiteral("LblManutenzioni"));
        TitleMainScreen(entry ? entry->vbProperty(QStringLiteral("Caption")).toString() : QString());
    }
}

void frmAbout::alertRow(const QString& today, const Variant& macchina, const Variant& tipo, const Variant& modello,
                        const Variant& minuti, const Variant& prossima, const Variant& numerazione)
{
    const int d = dueDayCount(today, prossima);
    const QString unit = machine(macchina, modello, numerazione);
    if (d <= -3) {
        const QString n = QString::number(-d);
        vb::MsgBox(
            QStringLiteral(" Attenzione!! La Manutezione: ") + str(tipo) + QStringLiteral(" Tempo richiesto minuti: ") +
                str(minuti) + QStringLiteral(" era programmata in data ") + str(prossima) +
                QStringLiteral(" sono trascorsi ") + n + QStringLiteral(" giorni ma non è ancora stata eseguita!!"),
            vb::mb::Exclamation,
            QStringLiteral("PERIODO DI MANUTENZIONE SCADUTO DA ") + n + QStringLiteral(" GIORNI PER LA MACCHINA: ") +
                unit);
    } else if (d == 0) {
        vb::MsgBox(QStringLiteral("MACCHINA:[") + unit + QStringLiteral("] Frequenza:[") + str(tipo) +
                       QStringLiteral("] Tempo richiesto minuti:[") + str(minuti) + QStringLiteral("]"),
                   vb::mb::Information, QStringLiteral("MANUTENZIONE ODIERNA:"));
    } else if (d == 1) {
        vb::MsgBox(QStringLiteral(" Attenzione!! Domani è Prevista la Manutezione [") + str(tipo) +
                       QStringLiteral("] alla Macchina [") + unit + QStringLiteral("] Tempo richiesto minuti:[") +
                       str(minuti) + QStringLiteral("] ... O R G A N I Z Z A T I!"),
                   vb::mb::Information, QStringLiteral("MANUTENZIONE PREVISTA DOMANI: MACCHINA: ") + unit);
    }
    // One or two days late: nothing. The three days' grace is the department's rule.
}

void frmAbout::applyOpacity()
{
    // The offscreen and minimal platforms have no window opacity to give.
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
        return;
    setWindowOpacity(m_opacity / 255.0);
}

void frmAbout::timeInc_Timer()
{
    if (m_opacity >= FadeInEnd)
        timeInc->setEnabled(false);
    else
        m_opacity += FadeInStep;
    applyOpacity();
}

void frmAbout::timeDec_Timer()
{
    if (m_opacity <= FadeOutEnd) {
        screens().unload(QStringLiteral("frmAbout"));
        return;
    }
    applyOpacity();
    m_opacity -= FadeOutStep;
}

void frmAbout::Image2_Click()
{
    // The access screen centres itself: shown, not placed.
    if (vb::Form* form20 = screens().form(QStringLiteral("Form20")))
        form20->show();
}

void frmAbout::Image6_Click()
{
    timeInc->setEnabled(false);
    timeDec->setEnabled(true);
}

void frmAbout::Hover(bool lit)
{
    Image1->setVisible(!lit);
    Image4->setVisible(lit);
    Image5->setVisible(!lit);
    Image3->setVisible(lit);
}

std::optional<Variant> frmAbout::getProp(const QString& n) const
{
    if (n == QLatin1String("opacity"))
        return Variant(static_cast<int>(m_opacity));
    return vb::Form::getProp(n);
}

VELMORA_SCREEN(frmAbout);

} // namespace shell
