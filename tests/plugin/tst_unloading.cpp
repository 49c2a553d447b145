// SPDX-License-Identifier: MIT
#include <tests/support/fakehost.h>

#include <interface/dxplugininterface.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <QtTest>

namespace {

/*! Finds the plug-in's reader, which has no owner, by the timer that it makes, and lets that one end at once. */
class ReaderFinder : public QObject
{
public:
    ReaderFinder() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::ChildAdded
            && qstrcmp(object->metaObject()->className(), "DataReader") == 0) {
            reader = object;
            QTimer::singleShot(0, object, [this] {
                host.hub.heartbeat(1);
                reader->findChild<QTimer *>()->setInterval(0);
            });
        }
        return QObject::eventFilter(object, event);
    }

    FakeHost host;
    QPointer<QObject> reader;
};

bool isMapped(const QByteArray &library)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

} // namespace

/*! A host that unloads the plug-in for good and goes on: nothing of the library may be left in what Qt keeps.
 *
 *  The test has passed when the program has ended cleanly too.
 */
class tst_Unloading : public QObject
{
    Q_OBJECT

private slots:
    void useAndUnload();
    void lifeGoesOn();

public slots:
    void open(const QUrl &) {} // in place of the system's viewer
};

void tst_Unloading::useAndUnload()
{
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    QDesktopServices::setUrlHandler(QString(), this, "open");
    QPluginLoader loader(QStringLiteral(OVERVIEW_PLUGIN));
    loader.setLoadHints({});
    auto *plugin = qobject_cast<DXPlugInInterface *>(loader.instance());
    QVERIFY2(plugin != nullptr, qPrintable(loader.errorString()));
#ifdef Q_OS_LINUX
    QVERIFY(isMapped("pl_overview"));
#endif

    ReaderFinder finder;
    finder.host.sdoClient.setValue(1, 0x6000, 0, 1u);
    finder.host.sdoClient.setValue(1, 0x6000, 1, 6u);
    finder.host.sdoClient.setDefaultValue(1u);
    plugin->setHostInterface(&finder.host);
    plugin->setLanguage(QStringLiteral("en"));
    std::unique_ptr<QWidget> window(plugin->getWidget());
    window->show();
    QVERIFY(plugin->setConnected(true));
    for (const char *button : {"btnRead", "btnSavePdf"})
        window->findChild<QAbstractButton *>(QLatin1String(button))->click();
    QCOMPARE(window->findChild<QTreeWidget *>()->topLevelItemCount(), 1);
    QVERIFY(QFile::exists(home.filePath(QStringLiteral("dx_report.pdf"))));
    window->grab();
    plugin->setConnected(false);

    window.reset();
    delete finder.reader;
    delete loader.instance();
    QVERIFY2(loader.unload(), qPrintable(loader.errorString()));
#ifdef Q_OS_LINUX
    QVERIFY(!isMapped("pl_overview"));
#endif
    QDesktopServices::unsetUrlHandler(QString());
}

void tst_Unloading::lifeGoesOn()
{
    // Goes through the caches of fonts and pictures that the plug-in used.
    QLabel label(QString::fromLatin1("Draxel"));
    for (const char *family : {"Arial", "Verdana", "none of these"}) {
        label.setFont(QFont(QString::fromLatin1(family), 20));
        label.show();
        QVERIFY(!label.grab().isNull());
    }
    QCoreApplication::processEvents();
}

QTEST_MAIN(tst_Unloading)
#include "tst_unloading.moc"
