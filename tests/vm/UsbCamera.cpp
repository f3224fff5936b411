#include "UsbCamera.h"

#include "Settings.h"

#include <QtTest>

UsbCamera::UsbCamera(int number, int widest)
{
    const QString text = QString::number(number);
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [this] { listen(); });
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("/usr/bin/python3"),
                  {QStringLiteral("-B"), QStringLiteral(ORVO_USB_CAMERA), QStringLiteral("--port"),
                   text, QStringLiteral("--serial"), text, QStringLiteral("--widest"),
                   QString::number(widest)});
    plugged = hears(QStringLiteral("PLUGGED"));
}

UsbCamera::~UsbCamera()
{
    process.closeWriteChannel();
    process.waitForFinished(vm::patience);
}

void UsbCamera::listen()
{
    while (process.canReadLine())
        lines << QString::fromUtf8(process.readLine()).trimmed();
}

bool UsbCamera::command(const QString& text, const QString& answer)
{
    lines.removeAll(answer);
    process.write(text.toUtf8() + '\n');
    return hears(answer);
}

bool UsbCamera::plug()
{
    plugged = command(QStringLiteral("plug"), QStringLiteral("PLUGGED"));
    return plugged;
}

bool UsbCamera::unplug()
{
    const bool done = command(QStringLiteral("unplug"), QStringLiteral("UNPLUGGED"));
    plugged = plugged && !done;
    return done;
}

bool UsbCamera::obey(const QString& text)
{
    return command(text, QStringLiteral("OBEYED ") + text.section(QLatin1Char(' '), 0, 0));
}

QStringList UsbCamera::heard(const QString& beginning) const
{
    QStringList rest;
    for (const QString& line : lines) {
        if (line.startsWith(beginning))
            rest << line.mid(beginning.size());
    }
    return rest;
}

void UsbCamera::forget()
{
    lines.clear();
}

bool UsbCamera::hears(const QString& line) const
{
    return QTest::qWaitFor([this, &line] { return lines.contains(line); }, vm::patience);
}
