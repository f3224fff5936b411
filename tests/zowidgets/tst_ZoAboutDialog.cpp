#include <zowidgets/ZoAboutDialog.h>

#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QTest>
#include <QTimer>

class tst_ZoAboutDialog : public QObject
{
    Q_OBJECT

private slots:
    void tellsEverything();
    void emptyTextsLeaveNoRow();
    void textsAreShownAsTheyAre();
    void textsCanBeSelected();
    void isModalAndClosesByItsButton();
    void closesByKeys_data();
    void closesByKeys();
    void closeHasTheFocus();
    void givesTheIconAtItsSize();
};

namespace {

QLabel* label(const QDialog& dialog, const char* name)
{
    return dialog.findChild<QLabel*>(QString::fromLatin1(name));
}

QPushButton* closeButton(const QDialog& dialog)
{
    return dialog.findChild<QPushButton*>();
}

void fill(ZoAboutDialog& dialog, const QString& note = QString())
{
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::red);
    dialog.setInformation(QStringLiteral("Orvo"), QStringLiteral("1.0.6.825"),
                          QStringLiteral("May 3 2024 10:20:30"), QIcon(pixmap),
                          QStringLiteral("Copyright"), note);
}

} // namespace

void tst_ZoAboutDialog::tellsEverything()
{
    ZoAboutDialog dialog;
    fill(dialog, QStringLiteral("A note"));
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("About Orvo"));
    QCOMPARE(label(dialog, "aboutName")->text(), QStringLiteral("Orvo"));
    QCOMPARE(label(dialog, "aboutVersion")->text(), QStringLiteral("Version 1.0.6.825"));
    QCOMPARE(label(dialog, "aboutBuild")->text(), QStringLiteral("Built May 3 2024 10:20:30"));
    QCOMPARE(label(dialog, "aboutCopyright")->text(), QStringLiteral("Copyright"));
    QCOMPARE(label(dialog, "aboutNote")->text(), QStringLiteral("A note"));
    for (const char* name :
         {"aboutName", "aboutVersion", "aboutBuild", "aboutCopyright", "aboutNote"})
        QVERIFY(label(dialog, name)->isVisible());
}

void tst_ZoAboutDialog::emptyTextsLeaveNoRow()
{
    ZoAboutDialog dialog;
    fill(dialog, QStringLiteral("A note"));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const int height = dialog.height();
    fill(dialog);
    QVERIFY(!label(dialog, "aboutNote")->isVisible());
    QTRY_VERIFY(dialog.height() < height);

    dialog.setInformation(QStringLiteral("Orvo"), QString(), QString(), QIcon(), QString(),
                          QString());
    for (const char* name : {"aboutVersion", "aboutBuild", "aboutCopyright", "aboutNote"})
        QVERIFY(!label(dialog, name)->isVisible());
    QVERIFY(label(dialog, "aboutName")->isVisible());
}

void tst_ZoAboutDialog::textsAreShownAsTheyAre()
{
    ZoAboutDialog dialog;
    dialog.setInformation(QStringLiteral("<b>A</b> & B"), QString(), QString(), QIcon(), QString(),
                          QString());
    QCOMPARE(label(dialog, "aboutName")->textFormat(), Qt::PlainText);
    QCOMPARE(label(dialog, "aboutName")->text(), QStringLiteral("<b>A</b> & B"));
}

void tst_ZoAboutDialog::textsCanBeSelected()
{
    ZoAboutDialog dialog;
    fill(dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QLabel* version = label(dialog, "aboutVersion");
    QTest::mouseDClick(version, Qt::LeftButton, {}, QPoint(4, version->height() / 2));
    QCOMPARE(version->selectedText(), QStringLiteral("Version"));
}

void tst_ZoAboutDialog::isModalAndClosesByItsButton()
{
    ZoAboutDialog dialog;
    fill(dialog);
    bool modal = false;
    QTimer::singleShot(0, &dialog, [&] {
        modal = dialog.isModal() && dialog.isVisible();
        QTest::mouseClick(closeButton(dialog), Qt::LeftButton);
    });
    dialog.exec();
    QVERIFY(modal);
    QVERIFY(!dialog.isVisible());
}

void tst_ZoAboutDialog::closesByKeys_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Escape") << Qt::Key_Escape;
    QTest::newRow("Return") << Qt::Key_Return;
}

void tst_ZoAboutDialog::closesByKeys()
{
    QFETCH(Qt::Key, key);
    ZoAboutDialog dialog;
    fill(dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, key);
    QVERIFY(!dialog.isVisible());
}

void tst_ZoAboutDialog::closeHasTheFocus()
{
    ZoAboutDialog dialog;
    fill(dialog);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QVERIFY(closeButton(dialog)->hasFocus());
    QVERIFY(closeButton(dialog)->isDefault());
}

void tst_ZoAboutDialog::givesTheIconAtItsSize()
{
    ZoAboutDialog dialog;
    fill(dialog);
    dialog.show();
    const QImage image = dialog.grab().toImage();
    int red = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            red += image.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
    QCOMPARE(red, 64 * 64);
}

QTEST_MAIN(tst_ZoAboutDialog)
#include "tst_ZoAboutDialog.moc"
