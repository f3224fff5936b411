#include "device/LastAnswers.h"

#include <QtTest>

#include <atomic>
#include <thread>

using zolens::LastAnswers;

class tst_LastAnswers final : public QObject
{
    Q_OBJECT

private slots:
    void withoutAnAnswerThereIsNoValue()
    {
        const LastAnswers answers;
        for (const auto id : {CMProperty_Brightness, CMProperty_ExposureTime, CMProperty_BlueGain})
            QVERIFY(!answers.value(id));
        QCOMPARE(answers.whiteBalanceMode(), int(CWWhiteBalance_Manual));
        QCOMPARE(answers.powerFrequency(), 0);
    }

    void theNewestAnswerCounts()
    {
        LastAnswers answers;
        for (const double value : {3.5, -2.0, 0.0}) {
            answers.noteValue(CMProperty_Hue, value);
            QCOMPARE(answers.value(CMProperty_Hue), std::optional(value));
        }
        for (const int mode :
             {CWWhiteBalance_Auto, CWWhiteBalance_OnePush, CWWhiteBalance_Manual}) {
            answers.noteWhiteBalanceMode(mode);
            QCOMPARE(answers.whiteBalanceMode(), mode);
        }
        for (const int frequency : {2, 1, 0}) {
            answers.notePowerFrequency(frequency);
            QCOMPARE(answers.powerFrequency(), frequency);
        }
    }

    void everySettingHasAnAnswerOfItsOwn()
    {
        LastAnswers answers;
        answers.noteWhiteBalanceMode(CWWhiteBalance_Auto);
        answers.notePowerFrequency(2);
        answers.noteValue(CMProperty_RedGain, 150);
        answers.noteValue(CMProperty_BlueGain, 225);
        QCOMPARE(answers.value(CMProperty_RedGain), std::optional(150.0));
        QCOMPARE(answers.value(CMProperty_BlueGain), std::optional(225.0));
        QVERIFY(!answers.value(CMProperty_GreenGain));
        QCOMPARE(answers.whiteBalanceMode(), int(CWWhiteBalance_Auto));
        QCOMPARE(answers.powerFrequency(), 2);
    }

    // What goes wrong between threads is seen by those who watch them, if not by the numbers.
    void whoeverAsksMeanwhileGetsAnAnswerThatWasGiven()
    {
        constexpr int count = 20000;
        LastAnswers answers;
        std::atomic<bool> done{false};
        std::thread device([&] {
            for (int i = 1; i <= count; ++i) {
                answers.noteValue(CMProperty_Hue, i);
                answers.noteWhiteBalanceMode(i);
                answers.notePowerFrequency(i);
            }
            done = true;
        });
        double value = 0;
        int balance = 0;
        int frequency = 0;
        bool ascending = true;
        while (!done) {
            ascending = ascending && answers.value(CMProperty_Hue).value_or(value) >= value &&
                        answers.whiteBalanceMode() >= balance &&
                        answers.powerFrequency() >= frequency;
            value = answers.value(CMProperty_Hue).value_or(value);
            balance = answers.whiteBalanceMode();
            frequency = answers.powerFrequency();
        }
        device.join();
        QVERIFY(ascending);
        QCOMPARE(answers.value(CMProperty_Hue), std::optional<double>(count));
        QCOMPARE(answers.whiteBalanceMode(), count);
        QCOMPARE(answers.powerFrequency(), count);
    }
};

QTEST_APPLESS_MAIN(tst_LastAnswers)
#include "tst_LastAnswers.moc"
