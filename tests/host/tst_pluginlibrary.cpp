// SPDX-License-Identifier: MIT
#include <host/core/hostservices.h>
#include <host/core/pluginsession.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString besideTest(const char *name)
{
    return QStringLiteral(TEST_PLUGIN_FOLDER "/") + QLatin1String(name);
}

} // namespace

class tst_PluginLibrary : public QObject
{
    Q_OBJECT

private slots:
    void loadsOverview();
    void complainsAboutFileThatIsNoLibrary();
    void complainsAboutMissingFile();
    void complainsAboutForeignPlugin();
    void complainsAboutOtherVersion();
    void complainsAboutEmptyFolder();
    void findsLibrariesOnly();
};

void tst_PluginLibrary::loadsOverview()
{
    QString error;
    const std::optional<PluginLibrary> library
        = PluginLibrary::load(QStringLiteral(OVERVIEW_PLUGIN_FILE), &error);
    QVERIFY2(library, qPrintable(error));
    QCOMPARE(library->key, QStringLiteral("pl_overview"));
    QCOMPARE(library->name, QStringLiteral("Draxel Analysis"));
    QCOMPARE(library->version, QStringLiteral("1.0"));
    QCOMPARE(library->manufacturer, QStringLiteral("Draxel Project"));
    QVERIFY(library->plugin != nullptr);
}

void tst_PluginLibrary::complainsAboutFileThatIsNoLibrary()
{
    QTemporaryDir folder;
    const QString path = folder.path() + QStringLiteral("/broken.so");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("this is no library");
    file.close();

    QString error;
    QVERIFY(!PluginLibrary::load(path, &error));
    QVERIFY2(error.startsWith(QStringLiteral("The file %1 is no plug-in: ").arg(path)), qPrintable(error));
}

void tst_PluginLibrary::complainsAboutMissingFile()
{
    QString error;
    QVERIFY(!PluginLibrary::load(QStringLiteral("/there/is/no/such/plugin.so"), &error));
    QVERIFY2(error.startsWith(QStringLiteral("The file /there/is/no/such/plugin.so is no plug-in: ")),
             qPrintable(error));
}

void tst_PluginLibrary::complainsAboutForeignPlugin()
{
    QString error;
    QVERIFY(!PluginLibrary::load(besideTest("foreignplugin.so"), &error));
    QCOMPARE(error, QStringLiteral("The library %1 is a plug-in for another program.")
                        .arg(besideTest("foreignplugin.so")));
}

void tst_PluginLibrary::complainsAboutOtherVersion()
{
    QString error;
    QVERIFY(!PluginLibrary::load(besideTest("wrongversionplugin.so"), &error));
    QCOMPARE(error, QStringLiteral(
                        "The plug-in %1 was made for another version of this program (it does not know the "
                        "interface org.draxel.DXPlugInInterface/0.1).")
                        .arg(besideTest("wrongversionplugin.so")));
}

void tst_PluginLibrary::complainsAboutEmptyFolder()
{
    QTemporaryDir folder;
    HostServices services;
    PluginSession session(&services);
    QCOMPARE(session.loadFolder(folder.path(), QStringLiteral("en")),
             QStringList(QStringLiteral("There is no plug-in in the folder %1.").arg(folder.path())));
    QVERIFY(session.plugins().isEmpty());
}

void tst_PluginLibrary::findsLibrariesOnly()
{
    QTemporaryDir folder;
    for (const char *name : {"b.so", "a.so", "readme.txt"}) {
        QFile file(folder.path() + QLatin1Char('/') + QLatin1String(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QStringList paths = PluginLibrary::findIn(folder.path());
    QCOMPARE(paths.size(), 2);
    QCOMPARE(QFileInfo(paths.first()).fileName(), QStringLiteral("a.so"));
    QVERIFY(PluginLibrary::findIn(QStringLiteral("/there/is/no/such/folder")).isEmpty());
}

// The overview has a window.
QTEST_MAIN(tst_PluginLibrary)
#include "tst_pluginlibrary.moc"
