#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QString>

/// The texts of enumerated camera values; "Unknown" for any other value.
class Texts final
{
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(Texts)

public:
    static QString colorModeText(int mode);
    static QString videoFormatText(int format);
    static QString powerFrequencyText(int frequency);
};
