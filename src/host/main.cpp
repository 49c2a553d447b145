// SPDX-License-Identifier: MIT
#include "commandline.h"
#include "consolelog.h"
#include "displaycheck.h"
#include "displayscale.h"
#include "mainwindow.h"
#include "messagelog.h"

#include <host/core/hostservices.h>
#include <host/core/hostsettings.h>
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/core/settingsstore.h>

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QLoggingCategory>

#include <cstdio>
#include <memory>

namespace {

struct DraxelHostTr
{
    Q_DECLARE_TR_FUNCTIONS(DraxelHost)
};

constexpr int wrongUsage = 1;

int complain(const QString &sentence)
{
    std::fprintf(stderr, "draxel: %s\n", qUtf8Printable(sentence));
    return wrongUsage;
}

int print(const QString &text)
{
    std::fputs(qUtf8Printable(text), stdout);
    return std::fflush(stdout) == 0 ? 0 : wrongUsage;
}

void setNames()
{
    QCoreApplication::setOrganizationName(QLatin1String(HostSettings::organization));
    QCoreApplication::setApplicationName(QLatin1String(HostSettings::application));
    QCoreApplication::setApplicationVersion(QStringLiteral(DRAXEL_VERSION));
}

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (CommandLine::asksForText(arguments))
        return std::make_unique<QCoreApplication>(argc, argv);

    const DisplayCheck check;
    return DisplayScale::makeApplication(argc, argv);
}

QIcon windowIcon()
{
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128})
        icon.addFile(QStringLiteral(":/draxel/icon/%1.png").arg(size), QSize(size, size));
    return icon;
}

/*! What was wanted on the command line, else what was chosen in the window, else that of the system. */
QString chooseLanguage(const QString &wanted, const LanguageSetting &languages)
{
    QStringList candidates = QLocale::system().uiLanguages();
    const QString saved = SettingsStore::instance().value(HostSettings::language).toString();
    for (const QString &language : {saved, wanted}) {
        if (!language.isEmpty())
            candidates.prepend(language);
    }
    return languages.bestOf(candidates);
}

int runWindow(const HostOptions &options, LanguageSetting *languages)
{
    const QString language = chooseLanguage(options.language, *languages);
    languages->apply(language);

    HostServices services;
    PluginSession session(&services);
    const QString folder = options.pluginFolder.isEmpty()
                               ? QCoreApplication::applicationDirPath() + QStringLiteral("/plugins")
                               : options.pluginFolder;
    const QStringList errors = session.loadFolder(folder, language);

    MainWindow window(&services, &session);
    window.setLanguages(languages, SettingsStore::instance().value(HostSettings::language).toString());
    window.showPlugins();
    if (!options.bus.address.plugin.isEmpty())
        window.chooseBus(options.bus);
    window.show();
    for (const QString &error : errors)
        window.messages().add(MessageLog::Severity::Error, error);
    if (!errors.isEmpty())
        window.showError(errors.join(QLatin1Char('\n')));
    if (!options.fileName.isEmpty()) {
        QMetaObject::invokeMethod(
            &window, [&window, &options] { window.openFile(options.fileName); }, Qt::QueuedConnection);
    }
    if (options.isConnecting)
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

    CommandLine line;
    QString error;
    const std::optional<HostOptions> options = line.parse(QCoreApplication::arguments(), &error);
    if (line.asksForHelp())
        return print(line.help());
    if (line.asksForVersion())
        return print(QStringLiteral("draxel %1\n").arg(QCoreApplication::applicationVersion()));
    if (!options)
        return complain(error);
    LanguageSetting languages;
    if (!options->language.isEmpty() && languages.find(options->language).isEmpty()) {
        return complain(DraxelHostTr::tr("There is no language \"%1\". There are: %2.")
                            .arg(options->language, languages.available().join(QLatin1String(", "))));
    }
    installConsoleLog(options->isVerbose);

    QGuiApplication::setApplicationDisplayName(QLatin1String(HostSettings::displayName));
    QApplication::setWindowIcon(windowIcon());
    return runWindow(*options, &languages);
}
