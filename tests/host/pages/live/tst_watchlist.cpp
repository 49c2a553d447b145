// SPDX-License-Identifier: MIT
#include <host/pages/live/watchlist.h>

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

WatchedItem item(quint8 nodeId, quint16 index, quint8 sub, int period = 0)
{
    WatchedItem made;
    made.nodeId = nodeId;
    made.object = {index, sub};
    made.period = period;
    return made;
}

} // namespace

class tst_WatchList : public QObject
{
    Q_OBJECT

private slots:
    void eachOnce();
    void whatCannotBe();
    void isBounded();
    void order();
    void isRemembered();
    void brokenSettings();
    void typed_data();
    void typed();
    void wronglyTyped_data();
    void wronglyTyped();
};

void tst_WatchList::eachOnce()
{
    WatchList list;
    QVERIFY(list.add(item(2, 0x6040, 1)));
    QVERIFY(list.add(item(2, 0x6040, 2)));
    QVERIFY(list.add(item(2, 0x6040, 1, 500)));
    QCOMPARE(list.items().size(), 2);
    QCOMPARE(list.items().at(0).period, 500);
    QCOMPARE(list.find(2, {0x6040, 2}), 1);
    QCOMPARE(list.find(3, {0x6040, 2}), -1);
}

void tst_WatchList::whatCannotBe()
{
    WatchList list;
    QVERIFY(!list.add(item(0, 0x6040, 1)));
    QVERIFY(!list.add(item(128, 0x6040, 1)));
    QVERIFY(!list.add(item(2, 0, 1)));
    QVERIFY(!list.add(item(2, 0x6040, 1, 99)));
    QVERIFY(!list.add(item(2, 0x6040, 1, 3600001)));
    QVERIFY(list.add(item(2, 0x6040, 1, 100)));
    QVERIFY(list.add(item(2, 0x6040, 2, 3600000)));
    QVERIFY(!list.add(item(2, 0x6040, 1, 99))); // also of one that is there
    QCOMPARE(list.items().size(), 2);
    QCOMPARE(list.items().at(0).period, 100);
}

void tst_WatchList::isBounded()
{
    WatchList list;
    for (int i = 0; i < 100; ++i)
        QVERIFY(list.add(item(2, quint16(0x2000 + i), 0)));
    QVERIFY(!list.add(item(2, 0x3000, 0)));
    QVERIFY(list.add(item(2, 0x2000, 0, 200))); // is there already
    QCOMPARE(list.items().size(), 100);
}

void tst_WatchList::order()
{
    WatchList list;
    for (const quint8 sub : {quint8(1), quint8(2), quint8(3)})
        list.add(item(2, 0x6040, sub));
    list.move(2, 0);
    QCOMPARE(list.items().at(0).object.subIndex, quint8(3));
    list.move(0, 3); // beyond the end
    list.move(-1, 0);
    QCOMPARE(list.items().at(0).object.subIndex, quint8(3));
    list.remove(0);
    list.remove(7);
    list.remove(-1);
    list.setPlotted(2, true); // there is no such row
    list.setPlotted(-1, true);
    QCOMPARE(list.items().size(), 2);
    QCOMPARE(list.items().at(0).object.subIndex, quint8(1));
}

void tst_WatchList::isRemembered()
{
    QVariantMap settings{{QStringLiteral("live/watchers"), 3}};
    WatchList list;
    list.add(item(2, 0x6040, 1));
    list.add(item(127, 0xFFFF, 255, 250));
    list.setPlotted(1, true);
    list.save(&settings);
    QCOMPARE(settings.value(QStringLiteral("live/watch/2/index")), QVariant(0xFFFF));
    for (QVariant &value : settings)
        value = value.toString(); // as a file gives them back
    const WatchList loaded = WatchList::load(settings);
    QCOMPARE(loaded.items().size(), 2);
    QCOMPARE(loaded.items().at(0).period, 0);
    QVERIFY(!loaded.items().at(0).isPlotted);
    QCOMPARE(loaded.items().at(1).nodeId, quint8(127));
    QVERIFY(loaded.items().at(1).object == (CanOpen::ObjectKey{0xFFFF, 255}));
    QCOMPARE(loaded.items().at(1).period, 250);
    QVERIFY(loaded.items().at(1).isPlotted);
    WatchList().save(&settings);
    QVERIFY(WatchList::load(settings).items().isEmpty());
    // Nothing is left of them.
    QCOMPARE(settings.keys(),
             (QStringList{QStringLiteral("live/watch/size"), QStringLiteral("live/watchers")}));
}

void tst_WatchList::brokenSettings()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("s.ini"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[live]\nwatch\\size=2000000000\n"
               "watch\\1\\node=300\nwatch\\1\\index=24640\nwatch\\1\\sub=1\n"
               "watch\\2\\node=2\nwatch\\2\\index=words\nwatch\\2\\sub=1\n"
               "watch\\3\\node=2\nwatch\\3\\index=24640\nwatch\\3\\sub=1\nwatch\\3\\period=-5\n"
               "watch\\4\\node=2\nwatch\\4\\index=24640\n"
               "watch\\5\\node=2\nwatch\\5\\index=24640\nwatch\\5\\sub=1\n");
    file.close();
    const QSettings kept(name, QSettings::IniFormat);
    QVariantMap settings;
    const QStringList keys = kept.allKeys();
    for (const QString &key : keys)
        settings.insert(key, kept.value(key));
    const WatchList list = WatchList::load(settings);
    QCOMPARE(list.items().size(), 1);
    QCOMPARE(list.items().at(0).period, 0);
}

void tst_WatchList::typed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("node");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("sub");
    QTest::newRow("plain") << "2:6040:1" << 2 << 0x6040 << 1;
    QTest::newRow("without sub-index") << "4:1008" << 4 << 0x1008 << 0;
    QTest::newRow("with signs") << " 12 : 0x60ab : 0x0A " << 12 << 0x60AB << 10;
    QTest::newRow("as it is printed") << "127:60ABh:255" << 127 << 0x60AB << 255;
}

void tst_WatchList::typed()
{
    QFETCH(QString, text);
    const std::optional<WatchedItem> parsed = parseWatched(text);
    QVERIFY(parsed);
    QTEST(int(parsed->nodeId), "node");
    QTEST(int(parsed->object.index), "index");
    QTEST(int(parsed->object.subIndex), "sub");
    QCOMPARE(parsed->period, 0);
}

void tst_WatchList::wronglyTyped_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text :
         {"", "2", ":", "2:", "0:6040:1", "128:6040:1", "2:0:1", "2:10000:1", "2:6040:256", "2:6040:-1",
          "2:6040:1:1", "a:6040:1", "2:60g0:1", "2:6040:x", "4294967298:6040:1"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_WatchList::wronglyTyped()
{
    QFETCH(QString, text);
    QVERIFY(!parseWatched(text));
}

QTEST_GUILESS_MAIN(tst_WatchList)
#include "tst_watchlist.moc"
