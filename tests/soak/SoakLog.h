#pragma once

#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <map>
#include <string>
#include <vector>

/// What a soak test observes: how long each operation takes, and what the process and its folders
/// hold between cycles. The first thing that is wrong is kept; nothing is done after it.
class SoakLog final
{
public:
    /// What the test writes into, empty at the start; all that lies there when a cycle ends counts
    /// as left behind.
    explicit SoakLog(const QString& workFolder);

    /// Does it unless something was wrong before. It is wrong when it takes longer than `limit`
    /// milliseconds or gives false.
    bool run(const std::string& operation, int limit, const std::function<bool()>& action);
    void problem(const QString& text);

    /// To be called with everything closed. Until the end of the warm-up it tells what is usual,
    /// afterwards growth is wrong.
    void endCycle(bool warmUp);

    /// Empty while nothing was wrong.
    const QString& problem() const { return firstProblem; }
    int cycles() const { return int(uses.size()); }
    /// A line for each cycle, or for some of very many, and one for each operation.
    void print() const;

private:
    /// Of the process; nothing of it may grow.
    struct Use
    {
        double seconds = 0.0; ///< Since the start.
        double megabytes = 0.0;
        int threads = 0;
        int descriptors = 0;
        int files = 0;
    };

    struct Times
    {
        int count = 0;
        qint64 total = 0;
        qint64 longest = 0;
        int limit = 0;
    };

    Use measure() const;
    Use settled(bool warmUp) const;
    bool isUsual(const Use& use) const;
    QString growth(const Use& use) const;

    QString folder;
    QElapsedTimer clock;
    QString firstProblem;
    Use usual;
    std::vector<Use> uses;
    std::map<std::string, Times> times;
};
