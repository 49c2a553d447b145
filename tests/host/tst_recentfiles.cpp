// SPDX-License-Identifier: MIT
#include <host/core/hostsettings.h>
#include <host/core/recentfiles.h>
#include <host/core/settingsstore.h>

#include <QtTest>

class tst_RecentFiles : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Draxel Project"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_recentfiles"));
        SettingsStore::instance().setValues({});
    }

    void newestFirstAndEachOnce();
    void eightAtMost();
    void forgets();
    void brokenSettingsAreNoFiles();
};

void tst_RecentFiles::newestFirstAndEachOnce()
{
    RecentFiles::add(QStringLiteral("/a.dxxml"));
    RecentFiles::add(QStringLiteral("/b.dxxml"));
    RecentFiles::add(QStringLiteral("/a.dxxml"));
    QCOMPARE(RecentFiles::load(), (QStringList{QStringLiteral("/a.dxxml"), QStringLiteral("/b.dxxml")}));
}

void tst_RecentFiles::eightAtMost()
{
    for (int i = 1; i <= 10; ++i)
        RecentFiles::add(QStringLiteral("/%1.dxxml").arg(i));
    QCOMPARE(RecentFiles::load().size(), 8);
    QCOMPARE(RecentFiles::load().first(), QStringLiteral("/10.dxxml"));
    QCOMPARE(RecentFiles::load().last(), QStringLiteral("/3.dxxml"));
    RecentFiles::add(QStringLiteral("/10.dxxml")); // once more
    QCOMPARE(RecentFiles::load().last(), QStringLiteral("/3.dxxml"));
}

void tst_RecentFiles::forgets()
{
    RecentFiles::add(QStringLiteral("/a.dxxml"));
    RecentFiles::add(QStringLiteral("/b.dxxml"));
    RecentFiles::remove(QStringLiteral("/a.dxxml"));
    QCOMPARE(RecentFiles::load(), QStringList(QStringLiteral("/b.dxxml")));
}

void tst_RecentFiles::brokenSettingsAreNoFiles()
{
    SettingsStore::instance().setValue(
        HostSettings::recentFiles,
        QStringList{QStringLiteral("relative"), QString(), QStringLiteral("/x"), QStringLiteral("/x")});
    QCOMPARE(RecentFiles::load(), QStringList(QStringLiteral("/x")));
    SettingsStore::instance().setValue(HostSettings::recentFiles, 7);
    QCOMPARE(RecentFiles::load(), QStringList());
}

QTEST_GUILESS_MAIN(tst_RecentFiles)
#include "tst_recentfiles.moc"
