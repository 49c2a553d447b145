// SPDX-License-Identifier: MIT
#include <host/core/languagesetting.h>
#include <host/core/pluginsession.h>
#include <host/core/vehiclerecords.h>
#include <host/mainwindow.h>
#include <host/pages/checkupsession.h>
#include <interface/dxplugininterface.h>
#include <tests/integration/simulatedhost.h>
#include <tests/support/troubledvehicle.h>

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QDir>
#include <QEventLoop>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>

namespace {

void handleEventsFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/*! The host's window on a simulated vehicle, driven as a user would, and pictures of what it shows. */
class Photographer
{
public:
    Photographer(const QString &vehicle, const PluginLibrary &library, const QDir &folder)
        : Photographer(vehicle, SimulatedHost::stillVehicle(vehicle), library, folder)
    {
    }

    Photographer(const QString &vehicle, const Simulator::VehicleDescription &description,
                 const PluginLibrary &library, const QDir &folder)
        : m_host(description)
        , m_session(&m_host.services())
        , m_folder(folder)
    {
        m_session.add(library, QStringLiteral("en"));
        m_window = std::make_unique<MainWindow>(&m_host.services(), &m_session);
        m_window->showPlugins();
        m_window->resize(1000, 900);
        m_window->show();
        BusSettings settings;
        settings.address.plugin = QStringLiteral("simulated");
        settings.address.interfaceName = vehicle;
        m_window->chooseBus(settings);
        m_window->connectToChosenBus();
        m_tree = m_window->findChild<QTreeWidget *>(QStringLiteral("treeWidget"));
        m_tabs = m_window->findChild<QTabWidget *>(QStringLiteral("tabWidget"));
    }

    ~Photographer()
    {
        m_host.services().bus().disconnectFromBus();
        handleEventsFor(3000);
        m_window.reset();
        handleEventsFor(10);
    }
    Q_DISABLE_COPY(Photographer)

    void read()
    {
        handleEventsFor(500);
        m_window->findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
        handleEventsFor(1000);
    }

    void select(int row, int tab)
    {
        m_tree->setCurrentItem(m_tree->topLevelItem(row));
        m_tabs->setCurrentIndex(tab);
        handleEventsFor(100);
    }

    /*! Keeps earlier visits of the vehicle, when its battery was better. */
    void keepEarlierVisits(const Snapshot &healthy)
    {
        constexpr CanOpen::ObjectKey health{0x6176, 1};
        m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        const QDateTime now = QDateTime::currentDateTime();
        int monthsAgo = 20;
        for (const int hundredths : {10000, 9980, 9930, 9870, 9790}) { // of a percent
            Snapshot earlier = healthy;
            earlier.time = now.addMonths(-monthsAgo).addDays(monthsAgo % 7).addSecs(-monthsAgo * 500);
            SnapshotEntry entry = *earlier.find(2)->find(health);
            entry.value = hundredths;
            entry.raw = QByteArray(1, char(hundredths & 0xFF)) + QByteArray(1, char(hundredths >> 8));
            earlier.find(2)->insert(entry);
            m_window->records().keep(earlier, VisitVerdict::of(m_window->checkup().judge(earlier)));
            monthsAgo -= 4;
        }
        handleEventsFor(1000);
    }

    void checkUp()
    {
        m_window->checkup().setRules(RuleSet::load({QStringLiteral(RULE_FOLDER)}));
        m_window->checkup().setSharePercent(100);
        trigger(QStringLiteral("actionCheckup"));
        while (m_window->checkup().isRunning())
            handleEventsFor(200);
        handleEventsFor(1500);
    }

    void trigger(const QString &action)
    {
        m_window->findChild<QAction *>(action)->trigger();
        handleEventsFor(700);
    }

    MainWindow &window() { return *m_window; }

    void takeWindow(const QString &name) { save(m_window->grab(), name); }

    /*! The messages below the plug-in's window. */
    void takeMessages(const QString &name) { save(m_window->findChild<QDockWidget *>()->grab(), name); }

    /*! The context menu of the selected component. */
    void takeMenu(const QString &name)
    {
        QTimer::singleShot(300, [this, name] {
            if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget())) {
                save(menu->grab(), name);
                menu->close();
            }
        });
        QMetaObject::invokeMethod(m_tree, "customContextMenuRequested", Q_ARG(QPoint, QPoint(10, 10)));
    }

    /*! The dialog that an action of the context menu opens. */
    void takeDialog(const QString &action, const QString &name)
    {
        QTimer::singleShot(300, [this, name] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                save(box->grab(), name);
                box->accept();
            }
        });
        const QList<QAction *> actions = m_window->findChildren<QAction *>();
        for (QAction *candidate : actions) {
            if (candidate->text() == action)
                candidate->trigger();
        }
    }

private:
    void save(const QPixmap &picture, const QString &name)
    {
        if (!picture.save(m_folder.filePath(name + QStringLiteral(".png"))))
            qFatal("%s cannot be written", qUtf8Printable(name));
    }

    SimulatedHost m_host;
    PluginSession m_session;
    QDir m_folder;
    std::unique_ptr<MainWindow> m_window;
    QTreeWidget *m_tree = nullptr;
    QTabWidget *m_tabs = nullptr;
};

constexpr int parametersTab = 0;
constexpr int valuesTab = 1;

} // namespace

namespace {

/*! No picture comes into the archive of whoever makes it. */
class OwnArchive
{
public:
    OwnArchive()
    {
        qputenv("DRAXEL_ARCHIVE", m_folder.filePath(QStringLiteral("a.dxarchive")).toLocal8Bit());
    }

private:
    QTemporaryDir m_folder;
};

std::optional<PluginLibrary> newPlugin()
{
    QString error;
    std::optional<PluginLibrary> library = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN), &error);
    if (!library)
        qFatal("%s", qUtf8Printable(error));
    return library;
}

/*! A vehicle in trouble, which was in order in the visits before. */
void takeCheckup(const QDir &folder)
{
    const OwnArchive archive;
    Simulator::VehicleDescription vehicle = SimulatedHost::stillVehicle(QStringLiteral("full-bus"));
    TroubledVehicle::heal(&vehicle);
    Snapshot healthy;
    std::optional<PluginLibrary> library = newPlugin();
    {
        Photographer before(QStringLiteral("full-bus"), vehicle, *library, folder);
        handleEventsFor(500);
        before.checkUp();
        healthy = before.window().checkup().record().snapshot;
    }
    delete dynamic_cast<QObject *>(library->plugin);
    library = newPlugin();
    const OwnArchive pictures;
    TroubledVehicle::spoil(&vehicle, std::chrono::milliseconds(60)); // or a picture takes seven minutes
    Photographer now(QStringLiteral("full-bus"), vehicle, *library, folder);
    now.window().findChild<QDockWidget *>()->hide();
    now.window().resize(1100, 640);
    handleEventsFor(500);
    now.keepEarlierVisits(healthy);
    now.checkUp();
    now.takeWindow(QStringLiteral("checkup-troubled"));
    now.trigger(QStringLiteral("actionPageArchive"));
    now.takeWindow(QStringLiteral("archive"));
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Draxel Project"));
    QApplication::setApplicationName(QStringLiteral("draxel-screenshots"));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    QApplication::setApplicationDisplayName(QStringLiteral("Draxel"));
    if (argc != 2)
        qFatal("usage: make_screenshots FOLDER");
    const QDir folder(QString::fromLocal8Bit(argv[1]));

    LanguageSetting languages(QStringLiteral(LANGUAGE_FOLDER)); // English has its plural forms there
    languages.apply(QStringLiteral("en"));
    const OwnArchive archive;

    std::optional<PluginLibrary> library = newPlugin();
    {
        Photographer pedelec(QStringLiteral("pedelec"), *library, folder);
        pedelec.read();
        pedelec.select(1, valuesTab);
        pedelec.takeWindow(QStringLiteral("window-pedelec-battery-values"));
        pedelec.select(1, parametersTab);
        pedelec.takeWindow(QStringLiteral("window-pedelec-battery-parameters"));
        pedelec.takeMenu(QStringLiteral("context-menu"));
        pedelec.takeDialog(QStringLiteral("Device Type"), QStringLiteral("dialog-device-type"));
        pedelec.select(5, valuesTab);
        pedelec.takeDialog(QStringLiteral("Security Status"), QStringLiteral("dialog-security-status"));
        pedelec.select(3, valuesTab);
        pedelec.takeWindow(QStringLiteral("window-pedelec-motor"));
    }
    // The first window took the plug-in's with it; a new instance has a new one.
    delete dynamic_cast<QObject *>(library->plugin);
    library = newPlugin();
    {
        Photographer fullBus(QStringLiteral("full-bus"), *library, folder);
        fullBus.read();
        fullBus.select(0, valuesTab);
        fullBus.takeWindow(QStringLiteral("window-full-bus-controller"));
        fullBus.takeMessages(QStringLiteral("messages"));
    }
    delete dynamic_cast<QObject *>(library->plugin);
    takeCheckup(folder);
    return 0;
}
