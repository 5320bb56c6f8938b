#include "runtime/Clock.h"

#include <optional>

namespace vb {

namespace {
std::optional<QDateTime>& frozenAt()
{
    static std::optional<QDateTime> at;
    return at;
}
} // namespace

QDateTime Clock::now()
{
    if (frozenAt())
        return *frozenAt();
    // The program works in whole seconds of local time, as VB's Now did.
    QDateTime t = QDateTime::currentDateTime();
    t.setTime(QTime(t.time().hour(), t.time().minute(), t.time().second()));
    return t;
}

QDate Clock::today()
{
    return now().date();
}

void Clock::freeze(const QDateTime& at)
{
    frozenAt() = at;
}

void Clock::advance(qint64 seconds)
{
    if (!frozenAt())
        frozenAt() = now();
    frozenAt() = frozenAt()->addSecs(seconds);
}

void Clock::unfreeze()
{
    frozenAt().reset();
}

bool Clock::frozen()
{
    return frozenAt().has_value();
}

} // namespace vb
