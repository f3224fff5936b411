#pragma once

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

/// Answers a modal dialog of the type as soon as one shows, through its real widgets. Made before
/// the call that runs the dialog.
template <class Dialog>
class DialogAnswer
{
public:
    explicit DialogAnswer(std::function<void(Dialog*)> action)
    {
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, &timer, [this, action = std::move(action)] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            timer.stop();
            answered = true;
            action(dialog);
        });
        timer.start();
    }

    bool wasAsked() const { return answered; }

private:
    QTimer timer;
    bool answered = false;
};

inline void clickButton(QMessageBox* box, QMessageBox::StandardButton which)
{
    QTest::mouseClick(box->button(which), Qt::LeftButton);
}

/// Types `path` as the file name and accepts.
inline void chooseFile(QFileDialog* dialog, const QString& path)
{
    auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->clear();
    QTest::keyClicks(edit, path);
    QTest::keyClick(edit, Qt::Key_Return);
}
