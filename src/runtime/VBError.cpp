#include "runtime/VBError.h"

#include <QHash>

namespace vb {

VBError::VBError(int number, QString description)
    : m_number(number), m_description(std::move(description)),
      m_what(QStringLiteral("%1 %2").arg(number).arg(m_description).toStdString())
{
}

VBError::VBError(int number) : VBError(number, standardDescription(number))
{
}

const char* VBError::what() const noexcept
{
    return m_what.c_str();
}

QString VBError::standardDescription(int number)
{
    // The Italian run time's texts for the numbers the program meets.
    static const QHash<int, QString> texts = {
        {3, QStringLiteral("Return senza GoSub")},
        {5, QStringLiteral("Chiamata di routine o argomento non validi")},
        {6, QStringLiteral("Overflow")},
        {7, QStringLiteral("Memoria esaurita")},
        {9, QStringLiteral("Indice non incluso nell'intervallo")},
        {11, QStringLiteral("Divisione per zero")},
        {13, QStringLiteral("Tipo non corrispondente")},
        {52, QStringLiteral("Nome o numero di file non valido")},
        {53, QStringLiteral("Impossibile trovare il file")},
        {55, QStringLiteral("File già aperto")},
        {62, QStringLiteral("Input oltre la fine del file")},
        {75, QStringLiteral("Errore di accesso al percorso/file")},
        {76, QStringLiteral("Impossibile trovare il percorso")},
        {91, QStringLiteral("Variabile oggetto o variabile del blocco With non impostata")},
        {94, QStringLiteral("Utilizzo non valido di Null")},
        {380, QStringLiteral("Valore della proprietà non valido")},
        {3010, QStringLiteral("La tabella esiste già.")},
        {3021, QStringLiteral("BOF o EOF è True oppure il record corrente è stato eliminato. "
                              "Per l'operazione richiesta è necessario un record corrente.")},
        {3265, QStringLiteral("Impossibile trovare l'oggetto nell'insieme corrispondente al nome o al numero "
                              "ordinale richiesto.")},
        {3704, QStringLiteral("Operazione non consentita se l'oggetto è chiuso.")},
        {6160, QStringLiteral("Errore di accesso ai dati")},
        {7005, QStringLiteral("Set di righe non disponibile")},
    };
    return texts.value(number);
}

} // namespace vb
