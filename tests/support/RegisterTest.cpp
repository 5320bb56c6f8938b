#include "support/RegisterTest.h"

#include "runtime/Helpers.h"

void RegisterTest::SetUp()
{
    ScreenTest::SetUp();
    upgradeStore(); // the note types come with the start-up's upgrade
    plant.registerPlant();
}

int RegisterTest::addMaintenance(int idNum, int tipo, const QDate& ultima, const QDate& prossima, double frequenza)
{
    const bool lathe = idNum == 3;
    return kit::Plant().registerRow({{"ID_MODELLO", lathe ? 2 : 1},
                                     {"Macchina", lathe ? "TORNIO" : "PRESSA"},
                                     {"Modello", lathe ? "T200" : "AX100"},
                                     {"ID_NUM", idNum},
                                     {"Numerazione", lathe ? "10" : QString::number(idNum)},
                                     {"ID_MAINT_TIPO", tipo},
                                     {"Manutenzione_Tipo", tipo == 2 ? "Mensile" : "Bimestrale"},
                                     {"Frequenza_Sett", frequenza > 0 ? frequenza : (tipo == 2 ? 4.0 : 8.0)},
                                     {"Ultima", vb::Variant::fromDate(ultima)},
                                     {"Prossima", vb::Variant::fromDate(prossima)},
                                     {"Operatore", ""}});
}

void RegisterTest::addStop(int idNum, int tipo, const QString& fermaDal, int numero, int tot)
{
    exec(QStringLiteral("INSERT INTO Tbl_Fermi_Macchina (ID_NUM, ID_MAINT_TIPO, Ferma_Dal, Giorni_Stop, "
                        "TOT_Giorni_Stop, Numero_Stop) VALUES (%1, %2, %3, 0, %4, %5)")
             .arg(idNum)
             .arg(tipo)
             .arg(fermaDal.isEmpty() ? QStringLiteral("Null") : QLatin1Char('\'') + fermaDal + QLatin1Char('\''))
             .arg(tot)
             .arg(numero));
}

QDate RegisterTest::dateOf(const QString& jet)
{
    const vb::Variant v = value(jet);
    return v.isNull() ? QDate() : vb::dateFromSerial(v.toDate().serial);
}
