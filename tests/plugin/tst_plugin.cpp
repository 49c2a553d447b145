// SPDX-License-Identifier: MIT
#include <tests/support/fakehost.h>
#include <tests/support/logwatcher.h>

#include <interface/dxplugininterface.h>

#include <QAbstractButton>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QWidget>
#include <QtTest>

/*! The built library, through the host's eyes. The functions share the one object that the library makes. */
class tst_Plugin : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void fileName();
    void metaData();
    void instanceIsMadeOnce();
    void castsAnswerForThreeNames();
    void resourcesAreRegistered();
    void formMethodsHaveTheirOrder();
    void hooksReturnTrue();
    void activationIsLogged();
    void callsInTheHostsOrder();
    void languageIsLoadedAndRemoved();
    void windowThatIsGoneAnswersNothing();

private:
    DXPlugInInterface *plugin() const { return qobject_cast<DXPlugInInterface *>(m_loader.instance()); }
    QString readButton() const
    {
        return plugin()->getWidget()->findChild<QAbstractButton *>(QStringLiteral("btnRead"))->text();
    }

    mutable QPluginLoader m_loader{QStringLiteral(OVERVIEW_PLUGIN)};
    FakeHost m_host;
};

void tst_Plugin::initTestCase()
{
    LogWatcher log;
    QVERIFY2(plugin() != nullptr, qPrintable(m_loader.errorString()));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Plugin::cleanupTestCase()
{
    delete m_loader.instance();
}

void tst_Plugin::fileName()
{
    QCOMPARE(QFileInfo(m_loader.fileName()).completeBaseName(), QStringLiteral("pl_overview"));
}

void tst_Plugin::metaData()
{
    const QJsonObject data = m_loader.metaData();
    QCOMPARE(data.value(QStringLiteral("IID")).toString(), QStringLiteral("org.draxel.plugins.pl_overview"));
    QCOMPARE(data.value(QStringLiteral("className")).toString(), QStringLiteral("Pl_Overview"));
    const QJsonObject own = data.value(QStringLiteral("MetaData")).toObject();
    QCOMPARE(own.keys(), (QStringList{QStringLiteral("Keys"), QStringLiteral("description"),
                                      QStringLiteral("manufacturer"), QStringLiteral("name"),
                                      QStringLiteral("version")}));
    QCOMPARE(own.value(QStringLiteral("Keys")).toArray(), QJsonArray{QStringLiteral("pl_overview")});
    QCOMPARE(
        own.value(QStringLiteral("description")).toString(),
        QStringLiteral("This App gives a basic overview of the connected LEV and shows all available data of "
                       "all LEV components."));
    QCOMPARE(own.value(QStringLiteral("manufacturer")).toString(), QStringLiteral("Draxel Project"));
    QCOMPARE(own.value(QStringLiteral("name")).toString(), QStringLiteral("Draxel Analysis"));
    QCOMPARE(own.value(QStringLiteral("version")).toString(), QStringLiteral("1.0"));
}

void tst_Plugin::instanceIsMadeOnce()
{
    const auto makeInstance = reinterpret_cast<QObject *(*)()>(
        QLibrary::resolve(QStringLiteral(OVERVIEW_PLUGIN), "qt_plugin_instance"));
    QVERIFY(makeInstance != nullptr);
    QObject *first = makeInstance();
    QVERIFY(first != nullptr);
    QCOMPARE(makeInstance(), first);
    QCOMPARE(m_loader.instance(), first);
    QVERIFY(QLibrary::resolve(QStringLiteral(OVERVIEW_PLUGIN), "qt_plugin_query_metadata") != nullptr);
}

void tst_Plugin::castsAnswerForThreeNames()
{
    QObject *object = m_loader.instance();
    DXPlugInInterface *interface = plugin();
    QCOMPARE(object->qt_metacast("Pl_Overview"), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast("DXPlugInInterface"), static_cast<void *>(interface));
    QCOMPARE(object->qt_metacast("org.draxel.DXPlugInInterface/0.1"), static_cast<void *>(interface));
    QVERIFY(static_cast<void *>(interface) != static_cast<void *>(object)); // the second base
    QVERIFY(object->qt_metacast("org.draxel.DXPlugInInterface/0.2") == nullptr);
    QVERIFY(object->parent() == nullptr);
}

void tst_Plugin::resourcesAreRegistered()
{
    for (const char *picture :
         {":/img/icon/lmd_32.png", ":/img/icon/lock_32.png", ":/img/icon/motor32.png", ":/img/icon/dxc32.png",
          ":/img/icon/charger32.png", ":/img/icon/display32.png", ":/img/icon/battery32.png",
          ":/img/ebike.png", ":/img/draxel.png"})
        QVERIFY2(!QImage(QLatin1String(picture)).isNull(), picture);
    for (const char *file : {":/files/pdf.css", ":/files/od.csv", ":/files/vendor.csv"})
        QVERIFY2(QFile::exists(QLatin1String(file)), file);
}

void tst_Plugin::formMethodsHaveTheirOrder()
{
    const QMetaObject &meta = *plugin()->getWidget()->metaObject();
    QCOMPARE(meta.className(), "OverviewForm");
    const QList<QByteArray> methods{
        "animate()",
        "showUpdateInformation(quint32,quint32,quint32,QString)",
        "newNmtState(quint8,NmtSender::NmtState)",
        "on_btnSavePdf_clicked()",
        "on_btnRead_clicked()",
        "on_btnExport_clicked()",
        "on_btnImport_clicked()",
        "on_treeWidget_currentItemChanged(QTreeWidgetItem*,QTreeWidgetItem*)",
        "on_btnCheckUpdate_clicked()",
        "showDeviceType()",
        "showErrorReg()",
        "showErrorField()",
        "showSpec()",
        "showSecurityStatus()",
        "showTreeWidgetContextMenu()",
    };
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 15);
    for (int i = 0; i < methods.size(); ++i) {
        QCOMPARE(meta.indexOfSlot(methods.at(i).constData()), meta.methodOffset() + i);
        QCOMPARE(meta.method(meta.methodOffset() + i).methodType(), QMetaMethod::Slot);
    }
    const QMetaMethod show = meta.method(meta.methodOffset() + 1);
    QCOMPARE(show.parameterNames(), (QList<QByteArray>{"vendor", "product", "revision", "info"}));
    const QMetaMethod nmt = meta.method(meta.methodOffset() + 2);
    QCOMPARE(nmt.parameterNames(), (QList<QByteArray>{"node", "nmtState"}));
}

void tst_Plugin::hooksReturnTrue()
{
    for (const quint32 value : {0u, 1u, 0x80000000u, 0xFFFFFFFFu}) {
        QVERIFY(plugin()->hostHook1(value));
        QVERIFY(plugin()->hostHook2(value));
    }
}

void tst_Plugin::activationIsLogged()
{
    LogWatcher log;
    QVERIFY(plugin()->activate());
    QVERIFY(plugin()->deactivate());
    QCOMPARE(log.debugLines(),
             (QStringList{QStringLiteral("activate overview"), QStringLiteral("deactivate overview")}));
}

void tst_Plugin::callsInTheHostsOrder()
{
    LogWatcher log;
    plugin()->setHostInterface(&m_host);
    plugin()->setLanguage(QStringLiteral("en"));
    QWidget *window = plugin()->getWidget();
    QVERIFY(window != nullptr);
    QVERIFY(window->parentWidget() == nullptr);
    QCOMPARE(plugin()->getWidget(), window);
    QVERIFY(plugin()->setConnected(true));
    QVERIFY(plugin()->setConnected(true));
    QVERIFY(!plugin()->setConnected(false));
    m_host.hasSecondarySdoClient = false;
    QVERIFY(!plugin()->setConnected(true));
    m_host.hasSecondarySdoClient = true;
    QVERIFY(!plugin()->setConnected(false));
    QCOMPARE(log.warnings(), QStringList());
}

void tst_Plugin::languageIsLoadedAndRemoved()
{
    QVERIFY2(QFile::exists(QStringLiteral(OVERVIEW_LANGUAGES "/pl_overview_de.qm")), OVERVIEW_LANGUAGES);
    QCOMPARE(readButton(), QStringLiteral("Read all data"));
    plugin()->setLanguage(QStringLiteral("de"));
    QTRY_COMPARE(readButton(), QStringLiteral("Alle Daten lesen"));
    QCOMPARE(QLocale().language(), QLocale::German);
    plugin()->setLanguage(QStringLiteral("de")); // again
    QCoreApplication::processEvents();
    QTRY_COMPARE(readButton(), QStringLiteral("Alle Daten lesen"));

    plugin()->setLanguage(QStringLiteral("fr")); // has no file
    QTRY_COMPARE(readButton(), QStringLiteral("Read all data"));
    QCOMPARE(QLocale().language(), QLocale::French);
    plugin()->setLanguage(QStringLiteral("../../etc/passwd"));
    QCoreApplication::processEvents();
    QCOMPARE(readButton(), QStringLiteral("Read all data"));
}

void tst_Plugin::windowThatIsGoneAnswersNothing()
{
    delete plugin()->getWidget();
    QVERIFY(plugin()->getWidget() == nullptr);
    QVERIFY(!plugin()->setConnected(true));
    plugin()->setHostInterface(&m_host);
    plugin()->setLanguage(QStringLiteral("de"));
    QVERIFY(plugin()->activate());
}

QTEST_MAIN(tst_Plugin)
#include "tst_plugin.moc"
