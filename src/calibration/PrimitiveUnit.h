#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QObject>
#include <QString>

/// The fixed table of length units. Everyone stores and passes the keys; their order, which starts
/// with a digit each, is the order of the lists. The pseudo-unit pixel stands outside the lists.
/// Full names are translated once, at the first look-up. GUI thread only.
class PrimitiveUnit final
{
    Q_GADGET
    Q_DECLARE_TR_FUNCTIONS(PrimitiveUnit)

public:
    static QString pixelKey();
    static QString pixelSymbol();

    /// Empty for an unknown key. Invokable, since the slots of a class that is no QObject can be
    /// called through the meta-object only beside an invokable operation.
    Q_INVOKABLE static QString fullName(const QString& key);
    static QString symbol(const QString& key);

    /// Metres per unit; 1.0 for the pixel and for an unknown key.
    static double factor(const QString& key);

public Q_SLOTS:
    /// By key: full names, metres per unit.
    static QMap<QString, QString> fullNameList();
    static QMap<QString, double> factorList();
};
