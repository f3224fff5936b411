#include "app/ExitQuestion.h"

#include "app/Keys.h"
#include "app/MainWindow.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QMessageBox>
#include <QSettings>

bool confirmExit(QWidget* parent)
{
    QSettings settings;
    if (!settings.value(Keys::confirmExit(), Keys::confirmExitDefault).toBool())
        return true;
    const QString name = QCoreApplication::applicationName();
    auto* remember = new QCheckBox(MainWindow::tr("Do not show this dialog again."));
    QMessageBox question(QMessageBox::Question, name,
                         MainWindow::tr("Do you want to exit %1 ?").arg(name),
                         QMessageBox::Ok | QMessageBox::Cancel, parent);
    question.setCheckBox(remember);
    if (question.exec() != QMessageBox::Ok)
        return false;
    settings.setValue(Keys::confirmExit(), !remember->isChecked());
    return true;
}
