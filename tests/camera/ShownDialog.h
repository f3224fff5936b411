#pragma once

#include "app/Application.h"
#include "camera/SelectDeviceDialog.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

#include <memory>

/// A choice of a source on the screen, and its widgets. A base of its tests.
class ShownDialog
{
protected:
    ShownDialog() { setApplicationNames(); }

    /// As in a program that starts for the first time.
    void makeFirstDialog()
    {
        QSettings().clear();
        makeDialog({});
    }
    void makeDialog(const QList<QPair<int, int>>& opened)
    {
        dialog = std::make_unique<SelectDeviceDialog>(opened, nullptr);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    }
    static bool isEnabled(const QListWidgetItem* item)
    {
        return item->flags().testFlag(Qt::ItemIsEnabled);
    }
    QTabWidget* tabs() const { return dialog->findChild<QTabWidget*>(QStringLiteral("tabWidget")); }
    QListWidget* usbList() const
    {
        return dialog->findChild<QListWidget*>(QStringLiteral("listWidget"));
    }
    QListWidget* boxList() const
    {
        return dialog->findChild<QListWidget*>(QStringLiteral("listWidgetTarnlink"));
    }
    QPushButton* button(const char* name) const
    {
        return dialog->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    QLineEdit* edit(const char* name) const
    {
        return dialog->findChild<QLineEdit*>(QString::fromLatin1(name));
    }
    QTimer* scanTimer() const { return dialog->findChild<QTimer*>(QStringLiteral("scanTimer")); }

    std::unique_ptr<SelectDeviceDialog> dialog;
};
