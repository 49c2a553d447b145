// SPDX-License-Identifier: MIT
#include <canopen/sdoclient.h>
#include <bus/patiencesettings.h>

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class tst_PatienceSettings : public QObject
{
    Q_OBJECT

private slots:
    void defaults();
    void savesAndLoads();
    void brokenValues_data();
    void brokenValues();
    void removedNodeIsForgotten();
    void clientWaitsAsTold();
    void nodeWithoutOwnPatienceWaitsAsAll();

private:
    int requestsUntilSilence(CanOpen::SdoClient *client, quint8 nodeId)
    {
        m_sent = 0;
        int repeats = -1;
        const auto connection
            = connect(client, &CanOpen::SdoClient::finished, this,
                      [&](const CanOpen::SdoOutcome &outcome) { repeats = outcome.repeats; });
        client->upload(nodeId, {0x1000, 0}, CanOpen::DataType::Unsigned32);
        [&] { QTRY_VERIFY_WITH_TIMEOUT(repeats >= 0, 20000); }();
        disconnect(connection);
        return repeats + 1;
    }

    int m_sent = 0;
};

void tst_PatienceSettings::defaults()
{
    const PatienceSettings settings;
    QCOMPARE(settings.general.timeout, 100);
    QCOMPARE(settings.general.repeats, 2);
    QVERIFY(settings.nodes.isEmpty());
}

void tst_PatienceSettings::savesAndLoads()
{
    PatienceSettings saved;
    saved.general = {250, 1};
    saved.nodes.insert(7, {5000, 0});
    saved.nodes.insert(127, {20, 5});
    QVariantMap file;
    saved.save(&file);
    for (QVariant &value : file)
        value = value.toString(); // as a file gives them back
    const PatienceSettings loaded = PatienceSettings::load(file);
    QCOMPARE(loaded.general.timeout, 250);
    QCOMPARE(loaded.general.repeats, 1);
    QCOMPARE(loaded.nodes.size(), 2);
    QCOMPARE(loaded.nodes.value(7).timeout, 5000);
    QCOMPARE(loaded.nodes.value(7).repeats, 0);
    QCOMPARE(loaded.nodes.value(127).timeout, 20);
    QCOMPARE(loaded.nodes.value(127).repeats, 5);
    QVERIFY(loaded == saved);
}

void tst_PatienceSettings::brokenValues_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("no number") << QStringLiteral("patience/timeout") << QVariant(QStringLiteral("soon"));
    QTest::newRow("too short") << QStringLiteral("patience/timeout") << QVariant(19);
    QTest::newRow("too long") << QStringLiteral("patience/timeout") << QVariant(5001);
    QTest::newRow("negative") << QStringLiteral("patience/repeats") << QVariant(-1);
    QTest::newRow("too many") << QStringLiteral("patience/repeats") << QVariant(6);
    QTest::newRow("a list") << QStringLiteral("patience/repeats")
                            << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")});
    QTest::newRow("node 0") << QStringLiteral("patience/nodes/0/timeout") << QVariant(500);
    QTest::newRow("node 128") << QStringLiteral("patience/nodes/128/timeout") << QVariant(500);
    QTest::newRow("node of letters") << QStringLiteral("patience/nodes/x/timeout") << QVariant(500);
}

void tst_PatienceSettings::brokenValues()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    QVariantMap file;
    file.insert(key, value);
    QVERIFY(PatienceSettings::load(file) == PatienceSettings());
}

void tst_PatienceSettings::removedNodeIsForgotten()
{
    QVariantMap file{{QStringLiteral("patience/nodesOfOthers"), 3}};
    PatienceSettings settings;
    settings.nodes.insert(7, {500, 1});
    settings.save(&file);
    settings.nodes.clear();
    settings.save(&file);
    QVERIFY(PatienceSettings::load(file).nodes.isEmpty());
    QCOMPARE(file.keys(),
             (QStringList{QStringLiteral("patience/nodesOfOthers"), QStringLiteral("patience/repeats"),
                          QStringLiteral("patience/timeout")}));
}

void tst_PatienceSettings::clientWaitsAsTold()
{
    CanOpen::SdoClient client([this](const QCanBusFrame &) {
        ++m_sent;
        return CanOpen::Sending::Written;
    });
    PatienceSettings settings;
    settings.general = {20, 0};
    settings.nodes.insert(7, {20, 3});
    settings.apply(&client, PatienceSettings());
    QCOMPARE(requestsUntilSilence(&client, 5), 1);
    QCOMPARE(requestsUntilSilence(&client, 7), 4);
}

void tst_PatienceSettings::nodeWithoutOwnPatienceWaitsAsAll()
{
    CanOpen::SdoClient client([this](const QCanBusFrame &) {
        ++m_sent;
        return CanOpen::Sending::Written;
    });
    PatienceSettings before;
    before.general = {20, 0};
    before.nodes.insert(7, {20, 3});
    before.apply(&client, PatienceSettings());
    PatienceSettings now;
    now.general = {20, 1};
    now.apply(&client, before);
    QCOMPARE(requestsUntilSilence(&client, 7), 2);
    // Also when that is changed later.
    PatienceSettings later;
    later.general = {20, 2};
    later.apply(&client, now);
    QCOMPARE(requestsUntilSilence(&client, 7), 3);
}

QTEST_GUILESS_MAIN(tst_PatienceSettings)
#include "tst_patiencesettings.moc"
