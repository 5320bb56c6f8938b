#pragma once
// The spares' seed rows and the interventions' fixture: the register's plant with two
// categories and three parts, a known cause, interventions put in place, and the driver
// in the test's own process.

#include "support/InProcessDrive.h"
#include "support/RegisterTest.h"

namespace kit {

/// The parts register: categories 1 VITE M8 (pz) with parts 1 Testa esagonale (V8-1, 0,35,
/// 100 in stock, minimum 20, note "zincata") and 2 Brugola (V8-2, 0,50, 50, 10), 2 VITE
/// (pz) with none, 3 OLIO (lt) with part 3 Idraulico (no code, 1.234,50, 4, 2); past
/// interventions of part 1 on PRESSA AX100 and TORNIO T200, of part 2 on the T200.
void partsRegister(Plant& plant);

} // namespace kit

class InterventionsTest : public RegisterTest
{
protected:
    /// Adds to the register's plant categories 1 CUSCINETTI (pz: parts 1 Radiale 6204, 10
    /// in stock, minimum 2, and 2 Assiale 51105, 5, 2) and 2 OLIO (lt: part 3 Idraulico
    /// HLP46, 3, 3), and cause 1 Usura.
    void SetUp() override;

    /// An intervention already stored on a unit of the register's plant (1 and 2: PRESSA
    /// AX100, 3: TORNIO T200 N° 10); its key.
    static int addIntervention(int part, double quantity, const QDate& date = QDate(2026, 10, 1), int cause = 1,
                               int unit = 1, const QString& destination = "Mandrino");
    static double stock(int part);

    /// A property of a control of a screen, as text, through the driver.
    QString get(const QString& screen, const QString& what);
    /// A grid's rows as the driver reads them, cells joined by "|".
    QStringList grid(const QString& control);

    InProcessDrive drive;
};
