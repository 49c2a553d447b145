// SPDX-License-Identifier: MIT
#include <host/core/archivesetting.h>

#include <QStandardPaths>
#include <QtTest>

/*! Which archive the user has chosen. */
class tst_ArchiveSetting : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanupTestCase() { init(); }

    void isTheUsualOneAtFirst();
    void isKept();
    void environmentWins();
    void badAddressIsToldOf();

private:
    QString m_error;
};

void tst_ArchiveSetting::init()
{
    qunsetenv("DRAXEL_ARCHIVE");
    ArchiveSetting::save(QString());
}

void tst_ArchiveSetting::isTheUsualOneAtFirst()
{
    QVERIFY(ArchiveSetting::load(&m_error)->isStandard());
    QCOMPARE(ArchiveSetting::text(), QString());
}

void tst_ArchiveSetting::isKept()
{
    ArchiveSetting::save(QStringLiteral("postgresql://desk:geheim@db/bikes"));
    QCOMPARE(ArchiveSetting::text(), QStringLiteral("postgresql://desk:geheim@db/bikes"));
    QCOMPARE(ArchiveSetting::load(&m_error)->password(), QStringLiteral("geheim"));
    ArchiveSetting::save(QString());
    QVERIFY(ArchiveSetting::load(&m_error)->isStandard());
}

void tst_ArchiveSetting::environmentWins()
{
    ArchiveSetting::save(QStringLiteral("postgresql://desk@db/bikes"));
    qputenv("DRAXEL_ARCHIVE", "/srv/bikes.dxarchive");
    QCOMPARE(ArchiveSetting::load(&m_error)->fileName(), QStringLiteral("/srv/bikes.dxarchive"));
}

void tst_ArchiveSetting::badAddressIsToldOf()
{
    ArchiveSetting::save(QStringLiteral("postgresql://desk@db"));
    QVERIFY(!ArchiveSetting::load(&m_error));
    QVERIFY(m_error.startsWith(QStringLiteral("The archive's address is no good.")));
}

QTEST_GUILESS_MAIN(tst_ArchiveSetting)
#include "tst_archivesetting.moc"
