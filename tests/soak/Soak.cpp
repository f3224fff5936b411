#include "Soak.h"

#include "support/ProcessUse.h"

#include <QDeadlineTimer>

namespace {

constexpr double shortSeconds = 22.0;
constexpr int secondsPerMinute = 60;
/// Every kind of operation has come by then, and with it what libraries make once.
constexpr int warmUpCycles = 2;
constexpr int fewestCycles = 2;
/// For one that hangs, after the time of the test.
constexpr int lastCycleSeconds = 180;

double testSeconds()
{
    const double minutes = qEnvironmentVariable("ORVO_SOAK_MINUTES").toDouble();
    return minutes > 0.0 ? minutes * secondsPerMinute : shortSeconds;
}

qint64 milliseconds(double seconds)
{
    return static_cast<qint64>(seconds * 1000);
}

} // namespace

// Temporary files of libraries are looked for too.
Soak::Soak() : figures(work.path())
{
    qputenv("TMPDIR", QFile::encodeName(work.path()));
}

QString Soak::run(const std::function<void(int)>& cycle)
{
    const QDeadlineTimer end(milliseconds(testSeconds()));
    const int fewest = warmUpCycles + fewestCycles;
    while (figures.problem().isEmpty() && (!end.hasExpired() || figures.cycles() < fewest)) {
        cycle(figures.cycles());
        figures.endCycle(figures.cycles() < warmUpCycles);
    }
    figures.print();
    return figures.problem();
}

void Soak::prepare()
{
    processuse::returnFreedMemory();
    qputenv("QTEST_FUNCTION_TIMEOUT",
            QByteArray::number(milliseconds(testSeconds() + lastCycleSeconds)));
}
