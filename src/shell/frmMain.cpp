#include "shell/frmMain.h"

#include "controls/ScreenKit.h"
#include "reports/ReportViewer.h"
#include "reports/TextExport.h"
#include "runtime/AppPath.h"
#include "runtime/Clock.h"
#include "runtime/DateTexts.h"
#include "runtime/MsgBox.h"
#include "runtime/OpenFile.h"
#include "runtime/Regional.h"
#include "runtime/TextFile.h"
#include "runtime/Trap.h"
#include "runtime/VBFunctions.h"
#include "shell/Program.h"
#include "shell/ScreenRegistry.h"
#include "store/DataStore.h"
#include "store/Schema.h"

#include <cmath>

namespace shell {

using vb::Variant;

namespace {

std::function<void()>& workloadTotal()
{
    static std::function<void()> procedure;
    return procedure;
}

constexpr int MenuTop = 120;
constexpr int MenuGap = 165;
constexpr int MenuLabelHeight = 255;
constexpr int MenuWidth = 2775;
constexpr int IndicatorOffset = 40;

/// The menu: label name, caption, the screen it opens ("" for none).
struct MenuEntry
{
    const char* label;
    const char* caption;
    const char* screen;
};
constexpr MenuEntry Menu[] = {
    {"LblManutenzioni", "Esegui Manutenzioni", "Form7"},
    {"lblAss_Manut", "Assegna Manutenzioni", "Form13"},
    {"lblWrite_Manut", "Scrivi Manutenzioni", "Form9"},
    {"lblMacc", "Inserisci Macchine", "Form5"},
    {"lblNum_Macc", "Numera Macchine", "Form10"},
    {"lblReparto", "Reparto Macchine", "Form4"},
    {"lblNoteBooks", "Note Books", "Form3"},
    {"lblRicambi", "Ricambi", "Form15"},
    {"lblDescRicambi", "Descrizione Ricambi", "Form2"},
    {"lblInterventi", "Interventi a Macchine", "Form14"},
    {"lblFornitori", "Fornitori", "Form17"},
    {"lblOperatore", "Operatori", "Form18"},
    {"lblExit", "Exit", ""},
};

/// VB's default property of a control of another screen: Caption for a label, else Text.
void setDefault(vb::Control* c, const QString& value)
{
    if (!c)
        return;
    c->setVbProperty(dynamic_cast<vb::Label*>(c) ? QStringLiteral("Caption") : QStringLiteral("Text"), value);
}

Variant readDefault(vb::Control* c)
{
    return c->vbProperty(dynamic_cast<vb::Label*>(c) ? QStringLiteral("Caption") : QStringLiteral("Text"));
}

} // namespace

void Show_Workload_Total()
{
    if (workloadTotal())
        workloadTotal()();
}

void setWorkloadTotal(std::function<void()> procedure)
{
    workloadTotal() = std::move(procedure);
}

QString sheetCode(const Variant& idModello, const Variant& idMaintTipo, const Variant& macchina, const Variant& modello,
                  const Variant& tipo)
{
    // No "_" between the type and the machine: the sheet codes in use have this form.
    Variant s = vb::Concat(idModello, QStringLiteral("_"));
    s = vb::Concat(s, idMaintTipo);
    s = vb::Concat(s, vb::Left(macchina, 3));
    s = vb::Concat(s, QStringLiteral("_"));
    s = vb::Concat(s, vb::Left(modello, 3));
    s = vb::Concat(s, QStringLiteral("_"));
    s = vb::Concat(s, vb::Left(tipo, 3));
    return s.toString();
}

const QStringList& frmMain::upgradeStatements()
{
    static const QStringList statements{
        QStringLiteral("ALTER TABLE Tbl_Ricerca ADD COLUMN Images VARCHAR(255) NULL;"),
        QStringLiteral("ALTER TABLE Tbl_Ricerca ADD COLUMN Percorso VARCHAR(255) NULL;"),
        QStringLiteral("ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Tipo_Nota VARCHAR(50) NULL;"),
        QStringLiteral("ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Images VARCHAR(255) NULL;"),
        QStringLiteral("ALTER TABLE Tbl_Maintenance_Note ADD COLUMN Percorso VARCHAR(255) NULL;"),
        QStringLiteral("CREATE TABLE Tbl_Certif_Proced_Manut (ID_Assegna_M Integer Null,Scheda CHAR(50) NOT NULL, "
                       "Data_Scheda DATE, Rev Integer Null,Data_Rev DATE);"),
    };
    return statements;
}

frmMain::frmMain(QWidget* owner) : vb::Form(owner, QStringLiteral("frmMain"), QString::fromLatin1(vb::AppTitle))
{
    buildControls();
    // Report previews are owned by this screen and open in its working area.
    reports::setHost({[] { return static_cast<QWidget*>(screens().loaded(QStringLiteral("frmMain"))); },
                      [] {
                          auto* main = dynamic_cast<frmMain*>(screens().loaded(QStringLiteral("frmMain")));
                          if (!main)
                              return QRect();
                          const int left = main->PicMenu->Width();
                          return QRect(left, main->PicMenu->Top(), main->Width() - left, main->Image2->Height());
                      }});
}

void frmMain::buildControls()
{
    setMouseTracking(true);
    const vb::ScreenKit kit(this, {.label = 285});
    Image2 = kit.image(this, "Image2", 0, 0, 15360, 10000);
    Image2->setMouseTracking(true);

    PicMenu = new vb::Shape(this, QStringLiteral("PicMenu"));
    PicMenu->setBackStyle(1);
    PicMenu->Move(0, 0, MenuWidth, 10000);
    PicMenu->setMouseTracking(true);

    std::vector<vb::Label*> labels;
    for (const MenuEntry& m : Menu) {
        auto* l =
            kit.label(PicMenu, m.label, QString::fromUtf8(m.caption), 240, MenuTop, MenuWidth - 360, MenuLabelHeight);
        l->setMouseTracking(true);
        l->MouseMove = [l] { l->setFontUnderline(true); };
        labels.push_back(l);
    }
    LblManutenzioni = labels[0];
    lblAss_Manut = labels[1];
    lblWrite_Manut = labels[2];
    lblMacc = labels[3];
    lblNum_Macc = labels[4];
    lblReparto = labels[5];
    lblNoteBooks = labels[6];
    lblRicambi = labels[7];
    lblDescRicambi = labels[8];
    lblInterventi = labels[9];
    lblFornitori = labels[10];
    lblOperatore = labels[11];
    lblExit = labels[12];
    for (vb::Label* l : labels) {
        if (l == lblAss_Manut)
            l->Click = [this] { lblAss_Manut_Click(); };
        else if (l == lblExit)
            l->Click = [this] { lblExit_Click(); };
        else
            l->Click = [this, l] { Menu_Click(l); };
    }
    Img_Indicatore = kit.image(PicMenu, "Img_Indicatore", 60, MenuTop, 150, 150);
    Img_Indicatore->setBackColor(vb::colour::Red);
    Img_Indicatore->setVisible(false);

    Image6 = kit.image(this, "Image6", MenuWidth + 240, 240, 2400, 1200);
    Image6->Click = [this] { Image6_Click(); };

    const int col = MenuWidth + 600;
    Label2 = kit.label(this, "Label2", QStringLiteral("OBBIETTIVO DELLA MANUTENZIONE"), col, 2400, 7000);
    Label2->setFontBold(true);
    Label4 = kit.label(this, "Label4", QStringLiteral("-Rendere massimo il rendimento globale degli impianti"), col,
                       2800, 7000);
    Label5 = kit.label(this, "Label5", QStringLiteral("-Migliorare la qualità dei prodotti"), col, 3100, 7000);
    Label6 = kit.label(this, "Label6", QStringLiteral("-Diminuire i costi dei prodotti"), col, 3400, 7000);
    Label7 = kit.label(this, "Label7", QStringLiteral("-Aumentare la sicurezza"), col, 3700, 7000);
    Label8 = kit.label(this, "Label8", QStringLiteral("-Migliorare la resa di produzione"), col, 4000, 7000);
    Label3 = kit.label(this, "Label3", QStringLiteral("Developers"), col, 4600, 3000);
    Label9 = kit.label(this, "Label9", QStringLiteral("V3.0.3"), col, 4900, 3000);
    Lbl_Procedure = kit.label(this, "Lbl_Procedure", QStringLiteral("Procedura"), col, 5400, 3000);
    Lbl_Procedure->setMouseTracking(true);
    Lbl_Procedure->MouseMove = [this] { Lbl_Procedure->setFontUnderline(true); };
    Lbl_Procedure->Click = [this] { Lbl_Procedure_Click(); };
    Lbl_Time = kit.label(this, "Lbl_Time", QStringLiteral("Ore:"), col, 1500, 9000);
    Label1 = kit.label(this, "Label1", QStringLiteral("Label1"), col, 9000, 12000);

    PicMenu->MouseMove = [this] { Reset_Menu_Highlight(false); };
    Image2->MouseMove = [this] { Reset_Menu_Highlight(true); };
    MouseMove = [this] { Reset_Menu_Highlight(true); };

    Txt_Apertura = kit.hidden("Txt_Apertura");
    Txt_Form7 = kit.hidden("Txt_Form7", QStringLiteral("0"));
    Txt_Posizione = kit.hidden("Txt_Posizione");
    Txt_PosizioneGrid3 = kit.hidden("Txt_PosizioneGrid3");

    Timer1 = new vb::Timer(this, QStringLiteral("Timer1"), 1000);
    Timer2 = new vb::Timer(this, QStringLiteral("Timer2"), 1000);
    Timer3 = new vb::Timer(this, QStringLiteral("Timer3"), 1000);
    Timer4 = new vb::Timer(this, QStringLiteral("Timer4"), 500);
    Timer1->Tick = [this] { Timer1_Timer(); };
    Timer2->Tick = [this] { Timer2_Timer(); };
    Timer3->Tick = [this] { Timer3_Timer(); };
    Timer4->Tick = [this] { Timer4_Timer(); };
}

std::vector<vb::Label*> frmMain::menuLabels() const
{
    return {LblManutenzioni, lblAss_Manut,   lblWrite_Manut, lblMacc,      lblNum_Macc,  lblReparto, lblNoteBooks,
            lblRicambi,      lblDescRicambi, lblInterventi,  lblFornitori, lblOperatore, lblExit};
}

// ---- load ---------------------------------------------------------------------------

void frmMain::Form_Load()
{
    upgradeSchema();
    fillSheets();

    // From here a failure other than Null and the grids' data errors ends the load with
    // the plain box: the screen stays up without frmAbout, stamp or workload line.
    vb::Trap trap{{vb::err::InvalidUseOfNull, vb::err::GridDataAccess, vb::err::GridData2}, vb::Trap::ShowBox};
    trap.step([&] { fitToDisplay(); });
    trap.step([&] { stackMenu(); });
    // frmAbout's load runs the due alerts now, before this screen is visible.
    trap.step([&] {
        if (vb::Form* about = screens().form(QStringLiteral("frmAbout")))
            about->show();
    });
    trap.step([&] { screens().place(screens().form(QStringLiteral("frmAbout")), false); });
    // Stamped after the alerts, so that the session's opening excludes the time spent on them.
    trap.step([&] { Txt_Apertura->setText(vb::SessionStamp(vb::Clock::now())); });
    trap.step([&] { Show_Workload_Total(); });
}

void frmMain::upgradeSchema()
{
    // No version is kept: every start runs all six, and each one that finds its column or
    // table already there fails alone, swallowed.
    vb::Trap trap = vb::Trap::ignoreAll();
    for (const QString& statement : upgradeStatements()) {
        trap.step([&] {
            store::Recordset rs;
            rs.Open(statement);
        });
    }
    // A store made before the store's indexes gets them here, once (a server store
    // keeps its own).
    trap.step([] {
        if (sqlite3* db = store::DataStore::instance().handle())
            store::createIndexes(db);
    });
}

void frmMain::fillSheets()
{
    vb::Trap trap = vb::Trap::ignoreAll();
    // The copy is guarded by the table being empty, not by its having just been made.
    bool empty = true;
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("Select * FROM Tbl_Certif_Proced_Manut"));
        empty = rs.Eof();
    });
    if (!empty)
        return;

    store::Recordset assign;
    if (!trap.step([&] { assign.Open(QStringLiteral("SELECT * from Tbl_Assegna_M;")); }))
        return;
    Variant id;
    QString scheda;
    while (!assign.Eof()) {
        trap.step([&] { id = assign.Fields(QStringLiteral("ID")).Value(); });
        trap.step([&] {
            scheda = sheetCode(assign.Fields(QStringLiteral("ID_MODELLO")).Value(),
                               assign.Fields(QStringLiteral("ID_MAINT_TIPO")).Value(),
                               assign.Fields(QStringLiteral("Macchina")).Value(),
                               assign.Fields(QStringLiteral("Modello")).Value(),
                               assign.Fields(QStringLiteral("Manutenzione_Tipo")).Value());
        });
        {
            store::Recordset sheet;
            trap.step([&] { sheet.Open(QStringLiteral("Select * FROM Tbl_Certif_Proced_Manut")); });
            trap.step([&] { sheet.AddNew(); });
            trap.step([&] { sheet.Fields(QStringLiteral("ID_Assegna_M")) = id; });
            trap.step([&] { sheet.Fields(QStringLiteral("Scheda")) = scheda; });
            trap.step([&] { sheet.Fields(QStringLiteral("Data_Scheda")) = Variant::fromDate(vb::Clock::today()); });
            trap.step([&] { sheet.Fields(QStringLiteral("Rev")) = 0; });
            trap.step([&] { sheet.Fields(QStringLiteral("Data_Rev")) = Variant::fromDate(vb::Clock::today()); });
            trap.step([&] { sheet.UpdateBatch(); });
        }
        if (!trap.step([&] { assign.MoveNext(); }))
            break;
    }
}

void frmMain::fitToDisplay()
{
    const int w = vb::Screen::Width();
    const int h = vb::Screen::Height();
    Move(0, 0, w, h);
    // Background and logo as fixed shares of the display (cosmetic).
    Image2->Move(0, 0, w, h * 90 / 100);
    Image6->Move(w * 75 / 100, h * 3 / 100, w * 20 / 100, h * 12 / 100);
    Label1->setTop(h * 89 / 100);
    PicMenu->setBackColor(vb::colour::White);
    PicMenu->setHeight(Image2->Top() + Image2->Height() - PicMenu->Top());
}

void frmMain::stackMenu()
{
    const auto labels = menuLabels();
    labels.front()->setTop(MenuTop);
    for (size_t i = 1; i < labels.size(); ++i)
        labels[i]->setTop(labels[i - 1]->Top() + labels[i - 1]->Height() + MenuGap);
}

// ---- menu ---------------------------------------------------------------------------

void frmMain::Menu_Click(vb::Label* label)
{
    QString screen;
    for (const MenuEntry& m : Menu) {
        if (label->objectName() == QLatin1String(m.label))
            screen = QString::fromLatin1(m.screen);
    }
    screens().unloadAllScreens();
    screens().show(screen);
    if (label == lblInterventi || label == lblFornitori)
        Hide_Open_Reports();
    markActive(label);
}

void frmMain::lblAss_Manut_Click()
{
    screens().unloadAllScreens();
    screens().unload(QStringLiteral("Form13"));
    // The menu entry means nothing is preselected: clear what Form7 hands to Form13.
    // Reading Form7 here loads it hidden, as VB did.
    setDefault(screens().control(QStringLiteral("Form7"), QStringLiteral("ID_MOD")), QString());
    setDefault(screens().control(QStringLiteral("Form7"), QStringLiteral("ID_MAINT")), QString());
    setDefault(screens().control(QStringLiteral("Form7"), QStringLiteral("DataCombo4")), QString());
    vb::Form* form13 = screens().form(QStringLiteral("Form13"));
    if (form13)
        form13->show();
    setDefault(screens().control(QStringLiteral("Form13"), QStringLiteral("Txt_ID_MODELLO")), QString());
    setDefault(screens().control(QStringLiteral("Form13"), QStringLiteral("Txt_ID_MAINT_TIPO")), QString());
    screens().place(screens().loaded(QStringLiteral("Form13")));
    markActive(lblAss_Manut);
}

void frmMain::markActive(vb::Label* label)
{
    setCaption(QString::fromLatin1(vb::AppTitle) + QStringLiteral(" <") + label->Caption() + QStringLiteral(">"));
    Img_Indicatore->setVisible(true);
    Img_Indicatore->setTop(label->Top() + IndicatorOffset);
}

void frmMain::lblExit_Click()
{
    // Ends at once: nothing unloads and no session row is written (unlike the close).
    endProgram();
}

void frmMain::Image6_Click()
{
    // No unload first; the alerts do not run, as this screen is visible by now.
    if (vb::Form* about = screens().form(QStringLiteral("frmAbout")))
        about->show();
    screens().place(screens().form(QStringLiteral("frmAbout")), false);
    Img_Indicatore->setVisible(false);
}

void frmMain::Reset_Menu_Highlight(bool background)
{
    vb::Trap trap = vb::Trap::ignoreAll();
    for (vb::Label* l : menuLabels())
        trap.step([&] { l->setFontUnderline(false); });
    if (background)
        trap.step([&] { Lbl_Procedure->setFontUnderline(false); });
}

void frmMain::Hide_Open_Reports()
{
    for (const QString& name : {QStringLiteral("DataReport1"), QStringLiteral("DataReport7")}) {
        if (reports::IsReportVisible(name))
            reports::HideReport(name);
    }
}

// ---- the user guide -----------------------------------------------------------------

void frmMain::Lbl_Procedure_Click()
{
    const QString line = vb::DegreeRule();
    reports::TextExport guide;
    guide.fileName = QStringLiteral("PROCEDURA.txt");
    guide.lines = QStringList{
        QStringLiteral("PROCEDURA PER UN CORRETTO USO DI VELMORA:"),
        QStringLiteral("\t-INSERIMENTO DATI:"),
        QStringLiteral("\tPremi il Pulsante 'INSERISCI', Aggiungi i dati e Premi 'SALVA'"),
        QStringLiteral("\t-MODIFICA DATI:"),
        QStringLiteral("\t\tSeleziona un dato da Modificare, Modifica i valori e Premi 'MODIFICA'"),
        QStringLiteral("\t-ELIMINAZIONE DATI:"),
        QStringLiteral("\tSeleziona il dato da Eliminare e premi il Pulsante 'ELIMINA'"),
        QString(),
        QStringLiteral("IMPORTANTE PER IL PRIMO UTILIZZO DEL SOFTWARE"),
        QStringLiteral("INSERIRE I DATI SEGUENDO L'ORDINE SOTTOSTANTE:"),
        QString(),
        QStringLiteral("GRUPPO MACCHINE"),
        QStringLiteral("01- REPARTO MACCHINE"),
        QStringLiteral("02- MACCHINE (non si possono inserire MACCHINE in assenza di REPARTO MACCHINE)"),
        QStringLiteral(
            "03- NUMERAZIONE MACCHINE (non si possono inserire NUMERAZIONE MACCHINE in assenza di MACCHINE)"),
        QString(),
        QStringLiteral("GRUPPO RICAMBI"),
        QStringLiteral("01- RICAMBI"),
        QStringLiteral("02- DESCRIZIONE RICAMBI (non si possono inserire DESCRIZIONE RICAMBI in assenza di RICAMBI)"),
        QStringLiteral("03- INTERVENTI MACCHINE (non si possono inserire INTERVENTI MACCHINE in assenza di "
                       "DESCRIZIONE RICAMBI)"),
        QString(),
        QStringLiteral("GRUPPO MANUTENZIONI"),
        QStringLiteral("01- OPERATORI"),
        QStringLiteral(
            "02- SCRIVI MANUTENZIONI (nb: Qui devi elencare una lista con tutte le manutenzioni che devono essere "
            "fatte per ogni macchina, senza indicare il tipo di manutenzione 'Mensile, Bimestrale, Annuale etc "
            "etc...', queste verranno segnalate in seguito)"),
        // The bracket of this line was never closed; the text is kept as the users know it.
        QStringLiteral(
            "03- ASSEGNA MANUTENZIONI (nb: Qui dovrai indicare la frequenza della manutenzione, 'Mensile, "
            "Bimestrale, Annuale etc etc...' e inserendo con un doppio Click dalla Lista creata al punto 02 tutti "
            "i lavori riguardanti quel tipo di Manutenzione"),
        QStringLiteral("04- ESEGUI MANUTENZIONI (non si possono eseguire delle Manutenzioni in assenza di ASSEGNA "
                       "MANUTENZIONI)"),
        QString(),
        QStringLiteral(
            "VELMORA Per Programmare, Archiviare le manutenzioni e gli interventi eseguiti sui vostri macchinari; "
            "All'apertura del Software sarete avvisati qualora ci fossero manutenzioni in scadenza o scadute ma non "
            "ancora eseguite, sarà possibile gestire il vostro magazzino ricambi; Dopo l'inserimento di tutti i "
            "dati sarete in grado di sapere quante persone servono per eseguire tutte le vostre manutenzioni, sarà "
            "possibile avere una lista dei ricambi suddivisa per tipologia, presenti nel vostro guppo macchine;"),
        QString(),
    };
    guide.ending = {
        line,
        QStringLiteral("Per Ulteriori Anomalie o Suggerimenti scrivete una Email a ") + vb::SupportAddress(),
        line,
        QStringLiteral("Verifica Aggiornamenti Software ") + vb::SupportSite() +
            QStringLiteral("/il_Tromvero_Download.asp"),
        line,
        QString(),
    };
    try {
        reports::WriteTextExport(guide);
    } catch (const vb::VBError& e) {
        vb::MsgBox(e.description());
    }
}

// ---- timers -------------------------------------------------------------------------

void frmMain::Timer1_Timer()
{
    const QDateTime now = vb::Clock::now();
    const double today = vb::toSerial(now.date());
    const double time = vb::toSerial(QDateTime(QDate(1899, 12, 30), now.time()));
    Lbl_Time->setCaption(QStringLiteral("Settimana N°") + QString::number(vb::WeekOfYear(now.date())) +
                         QStringLiteral("  ") + vb::regional::dateText(today) + QStringLiteral(" Ore: ") +
                         vb::regional::dateText(time));

    vb::Control* picker = screens().control(QStringLiteral("Form7"), QStringLiteral("DTPicker2"));
    if (!picker)
        return;
    const Variant next = picker->vbProperty(QStringLiteral("Value"));
    if (next.isNull() || next.isEmpty() || next.toDate().serial >= today)
        return;
    // Overdue: Form7's "Prossima:" flashes between red text and white on red.
    vb::Control* label = screens().control(QStringLiteral("Form7"), QStringLiteral("Label8"));
    if (!label)
        return;
    if (label->ForeColor() == vb::colour::Red) {
        label->setForeColor(vb::colour::White);
        label->setBackColor(vb::colour::Red);
        label->setVbProperty(QStringLiteral("BackStyle"), 1);
    } else if (label->ForeColor() == vb::colour::White) {
        label->setForeColor(vb::colour::Red);
        label->setVbProperty(QStringLiteral("BackStyle"), 0);
    }
}

void frmMain::Timer2_Timer()
{
    vb::Control* giac = screens().control(QStringLiteral("Form14"), QStringLiteral("Txt_Giac"));
    vb::Control* scorta = screens().control(QStringLiteral("Form14"), QStringLiteral("Txt_Scorta"));
    if (!giac || !scorta)
        return;
    const double g = vb::CDbl(readDefault(giac)).toDouble();
    const double s = vb::CDbl(readDefault(scorta)).toDouble();
    if (g == 0 && s == 0)
        return;
    const double d = std::nearbyint(g - s); // to the nearest whole number, halves to even
    const int back = scorta->BackColor();
    auto paint = [scorta](int b, int f) {
        scorta->setBackColor(b);
        scorta->setForeColor(f);
    };
    if (d > 1) {
        if (back == vb::colour::Orange || back == vb::colour::Red)
            paint(vb::colour::White, vb::colour::Black);
    } else if (d == 1) {
        // The last piece above the minimum: orange. A red field stays red for this tick.
        if (back == vb::colour::Orange)
            paint(vb::colour::White, vb::colour::Black);
        else if (back == vb::colour::White)
            paint(vb::colour::Orange, vb::colour::White);
    } else {
        if (back == vb::colour::Red)
            paint(vb::colour::White, vb::colour::Black);
        else if (back == vb::colour::White)
            paint(vb::colour::Red, vb::colour::White);
    }
}

void frmMain::Timer3_Timer()
{
    vb::Trap trap = vb::Trap::ignoreAll();
    bool control = false;
    trap.step([&] {
        vb::Control* c = screens().control(QStringLiteral("Form13"), QStringLiteral("Txt_Control_Min"));
        control = c && vb::CDbl(readDefault(c)).toDouble() == 1;
    });
    if (!control)
        return;
    vb::Control* min = screens().control(QStringLiteral("Form13"), QStringLiteral("Txt_Min"));
    vb::Control* num = screens().control(QStringLiteral("Form13"), QStringLiteral("Txt_Num"));
    vb::Control* frame = screens().control(QStringLiteral("Form13"), QStringLiteral("Frame10"));
    if (!min || !num || !frame)
        return;
    // Minutes missing: Txt_Min is 0, or empty while Txt_Num is not. A Txt_Min that is no
    // number fails the test, and the trap goes on into the flash all the same.
    bool missing = true;
    trap.step([&] {
        const QString m = readDefault(min).toString();
        missing = vb::CDbl(m).toDouble() == 0 || (m.isEmpty() && !readDefault(num).toString().isEmpty());
    });
    if (!missing)
        return;
    trap.step([&] {
        if (frame->ForeColor() == vb::colour::Red)
            frame->setForeColor(vb::colour::WindowBackground);
        else if (frame->ForeColor() == vb::colour::WindowBackground)
            frame->setForeColor(vb::colour::Red);
    });
}

void frmMain::Timer4_Timer()
{
    // Once per run: the hidden Form7 that the first ticks brought into being goes.
    if (vb::Val(Txt_Form7->Text()) != 0)
        return;
    screens().unload(QStringLiteral("Form7"));
    Txt_Form7->setText(QStringLiteral("1"));
}

// ---- close --------------------------------------------------------------------------

void frmMain::Form_Unload()
{
    vb::Trap trap = vb::Trap::ignoreAll();
    {
        store::Recordset rs;
        trap.step([&] { rs.Open(QStringLiteral("Select * from Tbl_Register")); });
        trap.step([&] { rs.AddNew(); });
        store::WriteFields(trap, rs,
                           {{"Date_Close", vb::SessionStamp(vb::Clock::now())}, {"Date_Open", Txt_Apertura->Text()}});
        trap.step([&] { rs.UpdateBatch(); });
    }
    // Every row, at every close: the inputs do not change, so the old rows keep their
    // value. Hours of the difference are taken as a time of day, so a session of a day or
    // more shows only the remainder.
    trap.step([&] {
        store::Recordset rs;
        rs.Open(QStringLiteral("UPDATE Tbl_Register SET Tbl_Register.Tempo =  "
                               "Hour([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) "
                               "& '.' & Minute([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]) "
                               "& '.' & Second([Tbl_Register]![Date_Close]-[Tbl_Register]![Date_Open]);"));
    });
    endProgram();
}

VELMORA_SCREEN(frmMain);

} // namespace shell
