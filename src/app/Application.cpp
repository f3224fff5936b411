#include "app/Application.h"

#include "app/Keys.h"
#include "app/MainWindow.h"
#include "camera/DeviceFilter.h"

#include <zocore/ZoI18n.h>
#include <zolens/CWFactory.h>
#include <zolens/CWUVCFilter.h>
#include <zostyle/ZoStyleFactory.h>

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QSettings>
#include <QTranslator>

#include <array>

CWUVCFilter uvcFilter;

namespace {

const QLatin1String styleSheetPath(":/res/style/style.qss");
constexpr int fontPointSize = 9;

/// The catalogues of the program and of the libraries below it, installed while this lives.
class Translations final
{
public:
    Translations()
    {
        const QString directory = QStringLiteral("translations");
        i18n.translate(&translators[0], QStringLiteral("zowidgets_"), directory);
        i18n.translate(&translators[1], QStringLiteral("qtbase_"), directory);
        i18n.translateQt(&translators[2], directory);
        i18n.translateApp(&translators[3], QStringLiteral(":/i18n"));
    }

private:
    ZoI18n i18n;
    std::array<QTranslator, 4> translators;
};

void showMainWindow(MainWindow& window, const QSettings& settings)
{
    if (settings.value(Keys::maximizeWhenLanuch(), Keys::maximizeWhenLanuchDefault).toBool())
        window.showMaximized();
    else
        window.show();
}

} // namespace

int runOrvo(int& argc, char** argv)
{
    setApplicationAttributes();
    const QApplication application(argc, argv);
    setApplicationNames();
    const QSettings settings;
    const QString theme = settings.value(Keys::theme(), Keys::themeDefault()).toString();
    installStyle(theme);
    installIconTheme();
    installFont();
    const Translations translations;
    installDeviceFilter();
    MainWindow window;
    showMainWindow(window, settings);
    return QApplication::exec();
}

void setApplicationAttributes()
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
}

void setApplicationNames()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvo"));
}

void installStyle(const QString& theme)
{
    if (theme.compare(Keys::themeDefault(), Qt::CaseInsensitive) != 0)
        return;
    QApplication::setStyle(ZoStyleFactory::newStyle(ZoStyleFactory::DarkBlueStyle, styleSheetPath));
}

void installIconTheme()
{
    QIcon::setThemeName(QStringLiteral("light-blue"));
    QIcon::setFallbackSearchPaths(QIcon::fallbackSearchPaths()
                                  << QStringLiteral(":res/icons/custom-icons"));
}

void installFont()
{
    QFont font;
    font.setPointSize(fontPointSize);
    QApplication::setFont(font);
}

void installDeviceFilter()
{
    uvcFilter.clear();
    for (const CWUVCFilterItem& row : deviceFilterRows())
        uvcFilter.addItem(row);
    CWFactory::setUVCFilter(&uvcFilter);
}
