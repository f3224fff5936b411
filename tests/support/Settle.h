#pragma once

#include <QAbstractEventDispatcher>
#include <QtTest>

/// Lets the event loop run until it has nothing left to do, however long that takes. A change of an
/// item reaches the window in several rounds of the loop, each of them asked for by the one before;
/// on a slow or stalling machine no fixed time is enough for them all. Fails the test if the loop
/// never rests.
inline void settle()
{
    constexpr int tooMany = 100000;
    int rounds = 0;
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
        QVERIFY2(++rounds < tooMany, "The event loop never rests");
}
