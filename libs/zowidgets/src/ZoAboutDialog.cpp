#include "zowidgets/ZoAboutDialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int IconSize = 64;
constexpr int DialogMargin = 12;
constexpr int GroupSpacing = 4;
constexpr int BlockSpacing = 12;
constexpr int TextWidth = 280;
constexpr int NameEnlargement = 7; ///< Points over the font of the dialog.

/// The label ends hidden when it has nothing to say, and its row closes.
void showText(QLabel* label, const QString& text)
{
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

QLabel* makeText(const QString& objectName)
{
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(TextWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->hide();
    return label;
}

/// As many pixels as the screen has for it, where the icon has them.
QPixmap sharpPixmap(const QIcon& icon, qreal pixelRatio)
{
    QPixmap pixmap = icon.pixmap(qRound(IconSize * pixelRatio));
    pixmap.setDevicePixelRatio(qMax(1.0, qreal(pixmap.width()) / IconSize));
    return pixmap;
}

void enlarge(QLabel* label)
{
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() + NameEnlargement);
    font.setBold(true);
    label->setFont(font);
}

} // namespace

ZoAboutDialog::ZoAboutDialog(QWidget* parent)
    : QDialog(parent),
      iconLabel(new QLabel),
      nameLabel(makeText(QStringLiteral("aboutName"))),
      versionLabel(makeText(QStringLiteral("aboutVersion"))),
      buildLabel(makeText(QStringLiteral("aboutBuild"))),
      copyrightLabel(makeText(QStringLiteral("aboutCopyright"))),
      noteLabel(makeText(QStringLiteral("aboutNote")))
{
    setModal(true);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    enlarge(nameLabel);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(GroupSpacing);
    for (QLabel* label : {nameLabel, versionLabel, buildLabel, copyrightLabel, noteLabel})
        texts->addWidget(label);
    texts->addStretch();

    auto* information = new QHBoxLayout;
    information->setSpacing(BlockSpacing);
    information->addWidget(iconLabel, 0, Qt::AlignTop);
    information->addLayout(texts, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    buttons->button(QDialogButtonBox::Close)->setFocus();
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(DialogMargin, DialogMargin, DialogMargin, DialogMargin);
    layout->setSpacing(BlockSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(information);
    layout->addWidget(buttons);
}

void ZoAboutDialog::setInformation(const QString& name, const QString& version,
                                   const QString& build, const QIcon& icon,
                                   const QString& copyright, const QString& note)
{
    setWindowTitle(tr("About %1").arg(name));
    iconLabel->setPixmap(sharpPixmap(icon, devicePixelRatioF()));
    iconLabel->setVisible(!icon.isNull());
    showText(nameLabel, name);
    showText(versionLabel, version.isEmpty() ? QString() : tr("Version %1").arg(version));
    showText(buildLabel, build.isEmpty() ? QString() : tr("Built %1").arg(build));
    showText(copyrightLabel, copyright);
    showText(noteLabel, note);
}
