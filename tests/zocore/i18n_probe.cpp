// Tells which locale ZoI18n chooses and what a text becomes by the catalogues of a directory.
// Arguments: prefix, directory. Output: locale, whether a catalogue was found, the text.

#include <zocore/ZoI18n.h>

#include <QCoreApplication>
#include <QTextStream>
#include <QTranslator>

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Probe"));
    QCoreApplication::setOrganizationName(QStringLiteral("Probe"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;

    const ZoI18n i18n;
    QTranslator translator;
    const bool found = i18n.translate(&translator, arguments.at(1), arguments.at(2));
    QTextStream(stdout) << i18n.locale().name() << '\n'
                        << (found ? "found" : "none") << '\n'
                        << QCoreApplication::translate("Greeting", "Hello") << '\n';
    return 0;
}
