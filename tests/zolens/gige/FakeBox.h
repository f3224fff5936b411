#pragma once

#include "support/PeerProcess.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QTemporaryDir>

#include <optional>

/// A network box in a process of its own, at an address of this machine, for the life of the
/// object. Only for tests in a private network.
class FakeBox final
{
public:
    struct Options
    {
        QString address = QStringLiteral("10.0.0.2");
        QString serialNumber = QStringLiteral("ORVO1");
        /// The description of its features, in place of its own.
        QByteArray description;
        int lostPacketsPerThousand = 0;
    };

    FakeBox();
    explicit FakeBox(Options boxOptions);

    /// True once it answers. One that was killed starts as it was before, with its settings lost.
    bool start();
    /// Without a farewell, as by a power cut.
    void kill() { process.end(); }
    /// Stops it from running, with its sockets open.
    void freeze() { process.freeze(); }
    void thaw() { process.thaw(); }

    QString address() const { return options.address; }

    /// What stands in four bytes of its memory, asked as by a second client; nothing when it does
    /// not answer.
    std::optional<quint32> registerValue(quint32 registerAddress) const;
    std::optional<float> registerNumber(quint32 registerAddress) const;

    /// The description that every box has by itself.
    static QByteArray ownDescription();
    /// The same with the features of camera-features.xml beside the tests.
    static QByteArray fullDescription();
    /// The description with a sensor of so many pixels at most, so that pictures are small.
    static QByteArray withSensor(QByteArray description, int width, int height);
    /// The description without the other pixel formats.
    static QByteArray withFormats(QByteArray description, const QByteArrayList& names);

private:
    QStringList arguments() const;
    QByteArray ask(const QByteArray& question, int patience) const;

    const Options options;
    QTemporaryDir folder;
    PeerProcess process;
};
