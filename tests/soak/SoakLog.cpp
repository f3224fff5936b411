#include "SoakLog.h"

#include "support/ProcessUse.h"

#include <QtTest>

#include <algorithm>
#include <cstdio>

#include <malloc.h>

namespace {

/// Of resident memory, over the highest of the warm-up; two pictures of a usual camera.
constexpr double memoryMargin = 16.0;
/// For threads that end by themselves, as those of recordings and of dead devices.
constexpr int settlingTime = 10000;
constexpr int settlingStep = 200;
constexpr std::size_t mostRows = 60;
constexpr double bytesPerMegabyte = 1e6;

int filesIn(const QString& folder)
{
    int count = 0;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System,
                       QDirIterator::Subdirectories);
    for (; files.hasNext(); files.next())
        ++count;
    return count;
}

} // namespace

SoakLog::SoakLog(const QString& workFolder) : folder(workFolder)
{
    clock.start();
}

bool SoakLog::run(const std::string& operation, int limit, const std::function<bool()>& action)
{
    if (!firstProblem.isEmpty())
        return false;
    QElapsedTimer timer;
    timer.start();
    const bool success = action();
    const qint64 elapsed = timer.elapsed();
    Times& all = times[operation];
    all = {all.count + 1, all.total + elapsed, std::max(all.longest, elapsed), limit};
    const QString name = QString::fromStdString(operation);
    if (elapsed > limit)
        problem(QStringLiteral("%1 took %2 ms, more than %3").arg(name).arg(elapsed).arg(limit));
    else if (!success)
        problem(QStringLiteral("%1 failed after %2 ms").arg(name).arg(elapsed));
    return firstProblem.isEmpty();
}

void SoakLog::problem(const QString& text)
{
    if (firstProblem.isEmpty())
        firstProblem = QStringLiteral("cycle %1: %2").arg(cycles() + 1).arg(text);
}

void SoakLog::endCycle(bool warmUp)
{
    const Use use = settled(warmUp);
    if (warmUp) {
        usual.megabytes = std::max(usual.megabytes, use.megabytes);
        usual.threads = std::max(usual.threads, use.threads);
        usual.descriptors = std::max(usual.descriptors, use.descriptors);
    } else if (!isUsual(use)) {
        problem(growth(use));
    }
    uses.push_back(use);
}

SoakLog::Use SoakLog::measure() const
{
    malloc_trim(0);
    return {double(clock.elapsed()) / 1000, double(processuse::residentBytes()) / bytesPerMegabyte,
            processuse::threads(), processuse::descriptors(), filesIn(folder)};
}

/// During the warm-up, what does not change any more.
SoakLog::Use SoakLog::settled(bool warmUp) const
{
    QElapsedTimer timer;
    timer.start();
    Use before;
    Use now = measure();
    const auto isSettled = [&] {
        return warmUp ? now.threads == before.threads && now.descriptors == before.descriptors
                      : isUsual(now);
    };
    while (!isSettled() && timer.elapsed() < settlingTime) {
        QTest::qWait(settlingStep);
        before = now;
        now = measure();
    }
    return now;
}

bool SoakLog::isUsual(const Use& use) const
{
    return use.megabytes <= usual.megabytes + memoryMargin && use.threads <= usual.threads &&
           use.descriptors <= usual.descriptors && use.files <= usual.files;
}

QString SoakLog::growth(const Use& use) const
{
    return QStringLiteral("%1 MB, %2 threads, %3 descriptors and %4 files, where %5, %6, %7 and "
                          "%8 are usual")
        .arg(use.megabytes)
        .arg(use.threads)
        .arg(use.descriptors)
        .arg(use.files)
        .arg(usual.megabytes)
        .arg(usual.threads)
        .arg(usual.descriptors)
        .arg(usual.files);
}

void SoakLog::print() const
{
    std::printf("\n%8s %8s %8s %8s %12s %6s\n", "cycle", "seconds", "MB", "threads", "descriptors",
                "files");
    const std::size_t step = uses.size() / mostRows + 1;
    for (std::size_t i = 0; i < uses.size(); ++i) {
        const Use& use = uses[i];
        if (i % step == 0 || i + 1 == uses.size())
            std::printf("%8zu %8.1f %8.1f %8d %12d %6d\n", i + 1, use.seconds, use.megabytes,
                        use.threads, use.descriptors, use.files);
    }
    std::printf("\n%-32s %8s %8s %8s %8s\n", "operation", "count", "mean ms", "longest", "limit");
    for (const auto& [name, all] : times)
        std::printf("%-32s %8d %8.1f %8lld %8d\n", name.c_str(), all.count,
                    double(all.total) / all.count, static_cast<long long>(all.longest), all.limit);
    std::fflush(stdout);
}
