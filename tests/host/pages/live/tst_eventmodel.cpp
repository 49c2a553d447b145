// SPDX-License-Identifier: MIT
#include <host/pages/live/eventmodel.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr qint64 second = 1'000'000; // us

LiveEvent eventOf(EventKind kind, quint8 nodeId, qint64 time, quint32 code = 0)
{
    LiveEvent event;
    event.kind = kind;
    event.nodeId = nodeId;
    event.time = time;
    event.lastTime = time;
    event.code = code;
    return event;
}

QDateTime timeOfDay(qint64 time)
{
    return QDateTime(QDate(2026, 9, 3), QTime(12, 0), Qt::UTC).addMSecs(time / 1000);
}

} // namespace

class tst_EventModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cells();
    void followsTheList();
    void countsAgain();
    void isCalledOtherwiseNow();
    void oldestLeave();
    void filtersBySeverity();
    void filtersByText();
    void filtersByNode();
    void newOnesAreFiltered();
    void manyAreFilteredInSlices();
    void anotherFilterMeanwhile();
    void eventsMeanwhile();
    void filesNeedNotWait();
    void nearestRow();
    void anotherBus();
    void csv();
    void json();

private:
    QString cell(int row, int column) const { return m_model->index(row, column).data().toString(); }
    void add(const LiveEvent &event)
    {
        m_list.add(event);
        m_model->update();
    }
    /*! Each third one is lost, the others are back. */
    void addMany(int count)
    {
        for (int i = 0; i < count; ++i)
            m_list.add(eventOf(i % 3 == 0 ? EventKind::NodeLost : EventKind::NodeBack, 1, i * 2 * second, 5));
        m_model->update();
    }
    void addThree()
    {
        add(eventOf(EventKind::NodeHeard, 4, 0, 0x05));
        add(eventOf(EventKind::NodeLost, 5, 3 * second));
        add(eventOf(EventKind::Emergency, 4, 5 * second, 0x4210));
    }

    EventList m_list;
    std::unique_ptr<EventModel> m_model;
};

void tst_EventModel::init()
{
    m_list = EventList();
    m_model = std::make_unique<EventModel>();
    m_model->setSource(&m_list, timeOfDay);
}

void tst_EventModel::cells()
{
    addThree();
    QCOMPARE(m_model->columnCount(), 3);
    QCOMPARE(cell(1, EventModel::TimeColumn), QStringLiteral("12:00:03.000"));
    QCOMPARE(cell(1, EventModel::NodeColumn), QStringLiteral("5"));
    QCOMPARE(cell(1, EventModel::TextColumn), QStringLiteral("It is silent: its heartbeat has stopped."));
    QVERIFY(!m_model->index(1, EventModel::TimeColumn).data(Qt::DecorationRole).isNull());
    QVERIFY(m_model->index(1, 0).data(Qt::ToolTipRole).toString().contains(QStringLiteral("Node 5:")));
    add(eventOf(EventKind::BusOff, 0, 6 * second));
    QCOMPARE(cell(3, EventModel::NodeColumn), QString());
}

void tst_EventModel::followsTheList()
{
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    addThree();
    QCOMPARE(inserted.count(), 3);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(m_model->rowCount(), 3);
    m_model->update(); // nothing new
    QCOMPARE(inserted.count(), 3);
}

void tst_EventModel::countsAgain()
{
    add(eventOf(EventKind::NmtCommand, 4, 0, 1));
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    add(eventOf(EventKind::NmtCommand, 4, second / 2, 1));
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(cell(0, EventModel::TextColumn), QStringLiteral("NMT command: start. (2 times)"));
}

void tst_EventModel::isCalledOtherwiseNow()
{
    addThree();
    QCOMPARE(cell(2, EventModel::TextColumn), QStringLiteral("Emergency 4210h: device temperature."));
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    m_list.explain(4, {{0x4210, QStringLiteral("Winding too hot")}});
    m_model->update();
    QCOMPARE(cell(2, EventModel::TextColumn),
             QStringLiteral("Emergency 4210h: device temperature (Winding too hot)."));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toModelIndex().row(), 2);
}

void tst_EventModel::oldestLeave()
{
    constexpr int most = 20000;
    for (int i = 0; i < most + 50; ++i)
        m_list.add(eventOf(EventKind::NodeLost, 1, i * 2 * second));
    m_model->update();
    QCOMPARE(m_model->rowCount(), most);
    QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
    add(eventOf(EventKind::NodeBack, 1, (most + 60) * 2 * second, 5));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(m_model->rowCount(), most);
    QCOMPARE(m_model->eventAt(0).time, 51 * 2 * second);
    QCOMPARE(m_model->eventAt(most - 1).kind, EventKind::NodeBack);
}

void tst_EventModel::filtersBySeverity()
{
    addThree();
    m_model->setFilter(Severity::Warning, QString());
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->eventAt(0).kind, EventKind::NodeLost);
    m_model->setFilter(Severity::Note, QString());
    QCOMPARE(m_model->rowCount(), 3);
}

void tst_EventModel::filtersByText()
{
    addThree();
    m_model->setFilter(Severity::Note, QStringLiteral("  DEVICE temperature "));
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->eventAt(0).kind, EventKind::Emergency);
}

void tst_EventModel::filtersByNode()
{
    addThree();
    m_model->setFilter(Severity::Note, QStringLiteral("5"));
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->eventAt(0).nodeId, quint8(5));
}

void tst_EventModel::newOnesAreFiltered()
{
    m_model->setFilter(Severity::Warning, QString());
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    addThree();
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(m_model->rowCount(), 2);
    // One that is not shown comes again
    QSignalSpy changed(m_model.get(), &QAbstractItemModel::dataChanged);
    add(eventOf(EventKind::NmtCommand, 9, 6 * second, 1));
    add(eventOf(EventKind::NodeLost, 8, 6 * second));
    add(eventOf(EventKind::NmtCommand, 9, 6 * second + 1, 1));
    QCOMPARE(changed.count(), 0);
}

void tst_EventModel::manyAreFilteredInSlices()
{
    addMany(9000);
    QCOMPARE(m_model->rowCount(), 9000); // nothing to search
    m_model->setFilter(Severity::Note, QStringLiteral("silent"));
    QVERIFY(m_model->isFiltering());
    QCOMPARE(m_model->rowCount(), 834); // of 2500
    QTRY_VERIFY(!m_model->isFiltering());
    QCOMPARE(m_model->rowCount(), 3000);
    for (int row = 0; row < 3000; ++row)
        QCOMPARE(m_model->eventAt(row).time, row * 6 * second);
}

void tst_EventModel::anotherFilterMeanwhile()
{
    addMany(9000);
    m_model->setFilter(Severity::Note, QStringLiteral("silent"));
    m_model->setFilter(Severity::Note, QStringLiteral("is back"));
    QTRY_VERIFY(!m_model->isFiltering());
    QCOMPARE(m_model->rowCount(), 6000);
    m_model->setFilter(Severity::Note, QStringLiteral("silent"));
    m_model->setFilter(Severity::Note, QString());
    QVERIFY(!m_model->isFiltering());
    QCOMPARE(m_model->rowCount(), 9000);
    QTest::qWait(100);
    QCOMPARE(m_model->rowCount(), 9000);
}

void tst_EventModel::eventsMeanwhile()
{
    constexpr int most = 20000;
    addMany(most);
    m_model->setFilter(Severity::Note, QStringLiteral("silent"));
    for (int i = 0; i < 4000; ++i) // as many leave, of which the filter has seen some
        m_list.add(eventOf(EventKind::NodeLost, 2, (most + i) * 2 * second));
    m_model->update();
    QTRY_VERIFY(!m_model->isFiltering());
    const int stayed = (most - 4000) / 3;
    QCOMPARE(m_model->rowCount(), stayed + 4000);
    QCOMPARE(m_model->eventAt(0).time, 4002 * 2 * second); // the first that is divisible by three
    QCOMPARE(m_model->eventAt(stayed).time, most * 2 * second);
}

void tst_EventModel::filesNeedNotWait()
{
    addMany(9000);
    m_model->setFilter(Severity::Note, QStringLiteral("silent"));
    m_model->finishFiltering();
    QVERIFY(!m_model->isFiltering());
    QCOMPARE(m_model->shown().toCsv().count('\n'), 3001);
    QTest::qWait(100);
    QCOMPARE(m_model->rowCount(), 3000);
}

void tst_EventModel::nearestRow()
{
    QCOMPARE(m_model->nearestRow(0), -1);
    addThree();
    QCOMPARE(m_model->nearestRow(-second), 0);
    QCOMPARE(m_model->nearestRow(3 * second + 1), 1);
    QCOMPARE(m_model->nearestRow(60 * second), 2);
}

void tst_EventModel::anotherBus()
{
    addThree();
    m_list = EventList();
    m_model->setSource(&m_list, timeOfDay);
    QCOMPARE(m_model->rowCount(), 0);
    addThree();
    QCOMPARE(m_model->rowCount(), 3);
}

void tst_EventModel::csv()
{
    addThree();
    m_model->setFilter(Severity::Note, QStringLiteral("5"));
    const QList<QByteArray> lines = m_model->shown().toCsv().split('\n');
    QCOMPARE(lines.size(), 3); // head, event, what is behind its end
    QVERIFY(lines.at(1).startsWith("2026-09-03T12:00:03.000Z,"));
    QVERIFY(lines.at(1).contains(",fault,5,nodeLost,"));
}

void tst_EventModel::json()
{
    addThree();
    const QJsonArray events = QJsonDocument::fromJson(m_model->shown().toJson())
                                  .object()
                                  .value(QStringLiteral("events"))
                                  .toArray();
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.at(2).toObject().value(QStringLiteral("kind")).toString(), QStringLiteral("emergency"));
    QCOMPARE(events.at(2).toObject().value(QStringLiteral("node")).toInt(), 4);
}

QTEST_MAIN(tst_EventModel)
#include "tst_eventmodel.moc"
