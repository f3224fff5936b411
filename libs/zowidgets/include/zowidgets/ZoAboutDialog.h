#pragma once

#include <QDialog>

class QIcon;
class QLabel;

/// A modal dialog that tells name, version, build and copyright of the program.
class ZoAboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ZoAboutDialog(QWidget* parent = nullptr);

    /// Empty texts leave no row.
    void setInformation(const QString& name, const QString& version, const QString& build,
                        const QIcon& icon, const QString& copyright, const QString& note);

private:
    QLabel* iconLabel = nullptr;
    QLabel* nameLabel = nullptr;
    QLabel* versionLabel = nullptr;
    QLabel* buildLabel = nullptr;
    QLabel* copyrightLabel = nullptr;
    QLabel* noteLabel = nullptr;
};
