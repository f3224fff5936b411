#pragma once

#include "SoakLog.h"

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

/// A soak test of one source: cycles of use for half a minute, or for ORVO_SOAK_MINUTES minutes
/// where that variable is set.
class Soak final
{
public:
    Soak();

    /// For everything that the test writes; must be empty when a cycle ends.
    QString folder() const { return work.path(); }
    SoakLog& log() { return figures; }

    /// Calls the cycle with its number, from 0 on, time and again; it leaves everything closed.
    /// Prints the figures. Empty when nothing was wrong.
    QString run(const std::function<void(int)>& cycle);

    /// The main function of a test program with that test class.
    template <typename Test, typename Application = QCoreApplication>
    static int main(int argc, char** argv)
    {
        prepare();
        Application application(argc, argv);
        Test test;
        return QTest::qExec(&test, argc, argv);
    }

private:
    /// Before QtTest looks at how long a test function may take.
    static void prepare();

    const QTemporaryDir work;
    SoakLog figures;
};
