// SPDX-License-Identifier: MIT
#include <bus/interfacebitrate.h>

#include <QtTest>

/*! What has no bit rate; a real interface is in tests/socketcan. */
class tst_InterfaceBitRate : public QObject
{
    Q_OBJECT

private slots:
    void isNotKnown_data();
    void isNotKnown();
};

void tst_InterfaceBitRate::isNotKnown_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no interface") << QStringLiteral("can99");
    QTest::newRow("virtual interface") << QStringLiteral("lo");
    QTest::newRow("a path") << QStringLiteral("../net/lo");
    QTest::newRow("a name that is too long") << QString(300, QLatin1Char('c'));
    QTest::newRow("no name") << QString();
}

void tst_InterfaceBitRate::isNotKnown()
{
    QFETCH(QString, name);
    QCOMPARE(interfaceBitRate(name), 0);
}

QTEST_APPLESS_MAIN(tst_InterfaceBitRate)
#include "tst_interfacebitrate.moc"
