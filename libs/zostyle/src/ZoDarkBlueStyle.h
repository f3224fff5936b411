#pragma once

#include <QProxyStyle>
#include <QString>

namespace zostyle {

/// The dark blue look over Fusion. Surfaces, lines and states are in the style sheet; the palette
/// serves what no rule reaches. Both come to the application when the style is set on it and go
/// when another style takes its place.
class ZoDarkBlueStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    explicit ZoDarkBlueStyle(const QString& styleSheetPath);
    ~ZoDarkBlueStyle() override;

    using QProxyStyle::polish;
    void polish(QPalette& palette) override;
    void polish(QApplication* application) override;
    void polish(QWidget* widget) override;
    using QProxyStyle::unpolish;
    void unpolish(QWidget* widget) override;
    QPalette standardPalette() const override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString sheet;
    /// The application's sheet before this style, which it gets back.
    QString replacedSheet;
    bool broughtSheet = false;
};

} // namespace zostyle
