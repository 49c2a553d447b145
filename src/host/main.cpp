// SPDX-License-Identifier: MIT
#include "consolelog.h"
#include "mainwindow.h"
#include "messagelog.h"

#include <host/core/hostservices.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLocale>
#include <QLoggingCategory>
#include <QSettings>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(DraxelHost)
};

const QString busOption = QStringLiteral("bus");
const QString bitRateOption = QStringLiteral("bitrate");
const QString connectOption = QStringLiteral("connect");
const QString languageOption = QStringLiteral("language");
const QString pluginsOption = QStringLiteral("plugins");
const QString verboseOption = QStringLiteral("verbose");

constexpr int wrongUsage = 1;

int complain(const QString &sentence)
{
    std::fprintf(stderr, "draxel: %s\n", qUtf8Printable(sentence));
    return wrongUsage;
}

void setNames()
{
    QCoreApplication::setOrganizationName(QLatin1String(HostSettings::organization));
    QCoreApplication::setApplicationName(QLatin1String(HostSettings::application));
    QCoreApplication::setApplicationVersion(QStringLiteral(DRAXEL_VERSION));
}

/*! Help must not need a display. */
bool asksForText(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        for (const char *option : {"-h", "--help", "--help-all", "-v", "--version"}) {
            if (std::strcmp(argv[i], option) == 0)
                return true;
        }
    }
    return false;
}

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char *argv[])
{
    if (asksForText(argc, argv))
        return std::make_unique<QCoreApplication>(argc, argv);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    return std::make_unique<QApplication>(argc, argv);
}

void addOptions(QCommandLineParser &parser)
{
    parser.setApplicationDescription(Tr::tr("Looks into the CANopen bus of light electric vehicles."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption({busOption, Tr::tr("Choose this bus, for example socketcan:can0 or simulated:pedelec."),
                      QStringLiteral("PLUGIN:INTERFACE")});
    parser.addOption(
        {bitRateOption, Tr::tr("Set this bit rate (bit/s) when connecting."), QStringLiteral("N")});
    parser.addOption({connectOption, Tr::tr("Connect to the bus at once.")});
    parser.addOption({languageOption, Tr::tr("The language, for example de."), QStringLiteral("LANGUAGE")});
    parser.addOption({pluginsOption, Tr::tr("Load the plug-ins of this folder."), QStringLiteral("DIR")});
    parser.addOption({verboseOption, Tr::tr("Write the debug lines of plug-ins to the terminal.")});
}

/*! A plug-in has no call that opens a file; only its button does. */
QString describeArgument(const QString &argument)
{
    if (argument.endsWith(QLatin1String(".dxxml"), Qt::CaseInsensitive))
        return Tr::tr("Saved files are opened in the window: start without \"%1\" and choose File, Open.")
            .arg(argument);
    return Tr::tr("What is \"%1\" for?").arg(argument);
}

QIcon windowIcon()
{
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128})
        icon.addFile(QStringLiteral(":/draxel/icon/%1.png").arg(size), QSize(size, size));
    return icon;
}

/*! The bus of the command line; the address is empty when none was given. */
std::optional<BusSettings> parseBus(const QCommandLineParser &parser, QString *error)
{
    BusSettings settings;
    if (!parser.isSet(busOption)) {
        if (!parser.isSet(bitRateOption))
            return settings;
        *error = Tr::tr("--bitrate needs --bus.");
        return std::nullopt;
    }
    const std::optional<BusAddress> address = BusAddress::parse(parser.value(busOption), error);
    if (!address)
        return std::nullopt;
    settings.address = *address;
    if (parser.isSet(bitRateOption)) {
        settings.bitRate = parseBitRate(parser.value(bitRateOption), error);
        if (!settings.bitRate)
            return std::nullopt;
    }
    return settings;
}

QString chooseLanguage(const QCommandLineParser &parser, const LanguageSetting &languages)
{
    QStringList wanted = QLocale::system().uiLanguages();
    const QString saved = QSettings().value(HostSettings::language).toString();
    if (!saved.isEmpty())
        wanted.prepend(saved);
    if (parser.isSet(languageOption))
        wanted.prepend(parser.value(languageOption));
    return languages.bestOf(wanted);
}

int runWindow(const QCommandLineParser &parser, const BusSettings &bus)
{
    LanguageSetting languages;
    const QString language = chooseLanguage(parser, languages);
    languages.apply(language);

    HostServices services;
    PluginSession session(&services);
    const QString folder = parser.isSet(pluginsOption)
                               ? parser.value(pluginsOption)
                               : QCoreApplication::applicationDirPath() + QStringLiteral("/plugins");
    const QStringList errors = session.loadFolder(folder, language);

    MainWindow window(&services, &session);
    window.setLanguages(&languages, QSettings().value(HostSettings::language).toString());
    window.showPlugins();
    if (!bus.address.plugin.isEmpty())
        window.chooseBus(bus);
    window.show();
    for (const QString &error : errors)
        window.messages().add(MessageLog::Severity::Error, error);
    if (!errors.isEmpty())
        window.showError(errors.join(QLatin1Char('\n')));
    if (parser.isSet(connectOption))
        QMetaObject::invokeMethod(&window, &MainWindow::connectToChosenBus, Qt::QueuedConnection);

    const int status = QApplication::exec();
    session.shutDown();
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    setNames();
    // What a back end warns of, it also reports as its error; a missing optional library is no news at each
    // connect.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.canbus*.warning=false"));

    QCommandLineParser parser;
    addOptions(parser);
    parser.process(*application); // ends the program after --help, --version and unknown options
    installConsoleLog(parser.isSet(verboseOption));
    if (!parser.positionalArguments().isEmpty())
        return complain(describeArgument(parser.positionalArguments().first()));
    QString error;
    const std::optional<BusSettings> bus = parseBus(parser, &error);
    if (!bus)
        return complain(error);

    QGuiApplication::setApplicationDisplayName(QLatin1String(HostSettings::displayName));
    QApplication::setWindowIcon(windowIcon());
    return runWindow(parser, *bus);
}
