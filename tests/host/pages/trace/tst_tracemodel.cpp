// SPDX-License-Identifier: MIT
#include "heardframes.h"

#include <host/pages/trace/framedetails.h>
#include <host/pages/trace/traceexport.h>
#include <host/pages/trace/tracemodel.h>
#include <host/pages/trace/tracemoment.h>
#include <host/pages/trace/tracetimes.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

/*! The list of a trace. */
class tst_TraceModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }
    void init();
    void cells();
    void headers();
    void marks();
    void filters();
    void differencesAreOfWhatIsShown();
    void filterTakesSlices();
    void newLinesAreShown();
    void newLinesAreFiltered();
    void transferThatEndsLate();
    void transferBehindAnotherLineEndsLate();
    void rowsOfLines();
    void timesWithoutTimeOfDay();
    void differences_data();
    void differences();
    void counts_data();
    void counts();
    void partsOfALine();
    void partsAreBounded();
    void moments();
    void exportOfWhatIsShown();

private:
    QString cell(int row, int column) const { return m_model->index(row, column).data().toString(); }
    static TraceFilter wrongOnly()
    {
        TraceFilter filter;
        filter.isWrongOnly = true;
        return filter;
    }

    std::unique_ptr<TraceModel> m_model;
};

void tst_TraceModel::init()
{
    m_model = std::make_unique<TraceModel>();
    new QAbstractItemModelTester(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest,
                                 m_model.get());
    m_model->setDocument(documentOf(fourLines()));
}

void tst_TraceModel::cells()
{
    QCOMPARE(m_model->rowCount(), 4);
    QCOMPARE(cell(0, TraceModel::TimeColumn), QStringLiteral("08:30:00.000"));
    QCOMPARE(cell(0, TraceModel::DifferenceColumn), QString());
    QCOMPARE(cell(0, TraceModel::NodeColumn), QStringLiteral("5"));
    QCOMPARE(cell(1, TraceModel::TimeColumn), QStringLiteral("08:30:00.100"));
    QCOMPARE(cell(1, TraceModel::DifferenceColumn), QStringLiteral("100.0 ms"));
    QCOMPARE(cell(1, TraceModel::ChannelColumn), QStringLiteral("can0"));
    QCOMPARE(cell(1, TraceModel::NodeColumn), QStringLiteral("2"));
    const QString read = cell(1, TraceModel::WhatColumn);
    QVERIFY2(read.startsWith(QStringLiteral("read 6164h.2 ")), qPrintable(read));
    QVERIFY2(read.endsWith(QStringLiteral(" (2 frames, 0.9 ms)")), qPrintable(read));
    QCOMPARE(cell(3, TraceModel::DifferenceColumn), QStringLiteral("804.0 ms"));
}

void tst_TraceModel::headers()
{
    QStringList names;
    for (int column = 0; column < m_model->columnCount(); ++column)
        names << m_model->headerData(column, Qt::Horizontal).toString();
    QCOMPARE(names, (QStringList{QStringLiteral("Time"), QStringLiteral("Difference"), QStringLiteral("Bus"),
                                 QStringLiteral("Node"), QStringLiteral("What happened")}));
    QVERIFY(!m_model->headerData(0, Qt::Vertical).isValid());
    QVERIFY(!m_model->headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
    const auto alignment = [this](int column) {
        return m_model->index(1, column).data(Qt::TextAlignmentRole).toInt() & Qt::AlignHorizontal_Mask;
    };
    QCOMPARE(alignment(TraceModel::TimeColumn), int(Qt::AlignLeft));
    QCOMPARE(alignment(TraceModel::DifferenceColumn), int(Qt::AlignRight));
    QCOMPARE(alignment(TraceModel::NodeColumn), int(Qt::AlignHCenter));
    QCOMPARE(alignment(TraceModel::WhatColumn), int(Qt::AlignLeft));
}

void tst_TraceModel::marks()
{
    const auto icon = [this](int row) {
        return m_model->index(row, TraceModel::WhatColumn).data(Qt::DecorationRole).value<QIcon>();
    };
    QVERIFY(icon(0).isNull());
    QVERIFY(!icon(2).isNull());
    const QString tip = m_model->index(2, 0).data(Qt::ToolTipRole).toString();
    QVERIFY2(tip.contains(QStringLiteral("2026-11-22 08:30:00.196000<br>Fault: ")), qPrintable(tip));
}

void tst_TraceModel::filters()
{
    m_model->setFilter(wrongOnly());
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->lineAt(0), std::size_t(2));
    TraceFilter filter;
    filter.nodes.set(5);
    m_model->setFilter(filter);
    QCOMPARE(m_model->rowCount(), 2);
    filter = TraceFilter();
    filter.text = QStringLiteral("6164H.2");
    m_model->setFilter(filter);
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->lineAt(0), std::size_t(1));
    m_model->setFilter(TraceFilter());
    QCOMPARE(m_model->rowCount(), 4);
}

void tst_TraceModel::differencesAreOfWhatIsShown()
{
    TraceFilter filter;
    filter.nodes.set(5);
    m_model->setFilter(filter);
    QCOMPARE(cell(1, TraceModel::DifferenceColumn), QStringLiteral("1.000 s"));
}

void tst_TraceModel::filterTakesSlices()
{
    constexpr int lines = 200'000;
    std::vector<TraceFrame> frames;
    for (int i = 0; i < lines; ++i)
        frames.push_back(
            heard(i * millisecond, i % 100 == 0 ? 0x084 : 0x705, i % 100 == 0 ? "1042080000000000" : "05"));
    TraceModel model; // without a tester, which looks at every row again and again
    model.setDocument(documentOf(frames));
    QCOMPARE(model.rowCount(), lines);
    model.setFilter(wrongOnly());
    QVERIFY(model.isLooking()); // the call comes back before all were looked at
    QVERIFY(model.rowCount() < 2000);
    QTRY_VERIFY(!model.isLooking());
    QCOMPARE(model.rowCount(), 2000);
    QCOMPARE(model.lineAt(1999), std::size_t(199'900));
}

void tst_TraceModel::newLinesAreShown()
{
    auto document = std::make_shared<TraceDocument>();
    m_model->setDocument(document);
    QCOMPARE(m_model->rowCount(), 0);
    for (const TraceFrame &frame : fourLines())
        document->trace.frames.push_back(frame);
    document->lines.advance();
    QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    QCOMPARE(m_model->rowCount(), 0); // not before it is told
    m_model->update();
    QCOMPARE(m_model->rowCount(), 4);
    QCOMPARE(inserted.count(), 1);
    m_model->update();
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(reset.count(), 0);
}

void tst_TraceModel::newLinesAreFiltered()
{
    auto document = std::make_shared<TraceDocument>();
    m_model->setDocument(document);
    m_model->setFilter(wrongOnly());
    for (const TraceFrame &frame : fourLines())
        document->trace.frames.push_back(frame);
    document->lines.advance();
    m_model->update();
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->lineAt(0), std::size_t(2));
}

void tst_TraceModel::transferThatEndsLate()
{
    auto document = std::make_shared<TraceDocument>();
    m_model->setDocument(document);
    m_model->setFilter(wrongOnly());
    document->trace.frames.push_back(heard(0, 0x602, "4064610200000000"));
    document->trace.frames.push_back(heard(millisecond, 0x084, "1042080000000000"));
    document->lines.advance();
    m_model->update();
    QCOMPARE(m_model->rowCount(), 1); // it may still be answered
    document->trace.frames.push_back(
        heard(2 * millisecond, 0x602, "8064610200000405")); // its client has given up
    document->lines.advance();
    m_model->update();
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->lineAt(0), std::size_t(0)); // in its place
    QCOMPARE(m_model->lineAt(1), std::size_t(1));
}

void tst_TraceModel::transferBehindAnotherLineEndsLate()
{
    auto document = std::make_shared<TraceDocument>();
    m_model->setDocument(document);
    m_model->setFilter(wrongOnly());
    document->trace.frames.push_back(heard(0, 0x705, "05"));
    document->trace.frames.push_back(heard(millisecond, 0x602, "4064610200000000"));
    document->lines.advance();
    m_model->update();
    QCOMPARE(m_model->rowCount(), 0);
    document->trace.frames.push_back(heard(2 * millisecond, 0x602, "8064610200000405"));
    document->lines.advance();
    m_model->update();
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->lineAt(0), std::size_t(1));
}

void tst_TraceModel::rowsOfLines()
{
    TraceFilter filter;
    filter.nodes.set(5);
    m_model->setFilter(filter);
    QCOMPARE(m_model->rowOfLine(0), 0);
    QCOMPARE(m_model->rowOfLine(1), 1); // hidden: the next one
    QCOMPARE(m_model->rowOfLine(3), 1);
    filter.nodes.reset(5);
    filter.nodes.set(4);
    m_model->setFilter(filter);
    QCOMPARE(m_model->rowOfLine(3), 0); // none behind it: the last one
    filter.nodes.reset(4);
    filter.nodes.set(99);
    m_model->setFilter(filter);
    QCOMPARE(m_model->rowOfLine(0), -1);
}

void tst_TraceModel::timesWithoutTimeOfDay()
{
    QCOMPARE(TraceTimes::shortText(204'331, false), QStringLiteral("0.204 s"));
    QCOMPARE(TraceTimes::longText(204'331, false), QStringLiteral("0.204331 s"));
    QCOMPARE(TraceTimes::longText(morning + 204'331, true), QStringLiteral("2026-11-22 08:30:00.204331"));
}

void tst_TraceModel::differences_data()
{
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << qint64(0) << QStringLiteral("0 µs");
    QTest::newRow("us") << qint64(912) << QStringLiteral("912 µs");
    QTest::newRow("ms") << 95'300LL << QStringLiteral("95.3 ms");
    QTest::newRow("s") << 1'204'000LL << QStringLiteral("1.204 s");
    QTest::newRow("min") << 125'900'000LL << QStringLiteral("2 min 05 s");
    QTest::newRow("backward") << -300LL << QStringLiteral("-300 µs");
    QTest::newRow("far backward") << -125'900'000LL << QStringLiteral("-2 min 05 s");
}

void tst_TraceModel::differences()
{
    QFETCH(qint64, time);
    QTEST(TraceTimes::difference(time), "text");
}

void tst_TraceModel::counts_data()
{
    QTest::addColumn<quint64>("number");
    QTest::addColumn<QString>("text");

    QTest::newRow("few") << quint64(12) << QStringLiteral("12");
    QTest::newRow("many") << quint64(99'999) << QStringLiteral("99999");
    QTest::newRow("thousands") << quint64(123'456) << QStringLiteral("123 k");
    QTest::newRow("a million") << quint64(1'000'000) << QStringLiteral("1.0 M");
}

void tst_TraceModel::counts()
{
    QFETCH(quint64, number);
    QTEST(TraceTimes::count(number), "text");
}

void tst_TraceModel::partsOfALine()
{
    FrameDetails details;
    details.show(m_model->document(), 1);
    const auto text
        = [&details](int row, int column) { return details.index(row, column).data().toString(); };
    QVERIFY(details.isFrame(0));
    QCOMPARE(text(0, FrameDetails::WhereColumn), QStringLiteral("2026-11-22 08:30:00.100000"));
    QCOMPARE(text(0, FrameDetails::BytesColumn), QStringLiteral("40 64 61 02 00 00 00 00"));
    QCOMPARE(text(0, FrameDetails::MeaningColumn), QStringLiteral("Frame 602h"));
    QCOMPARE(text(1, FrameDetails::WhereColumn), QStringLiteral("    byte 0"));
    QCOMPARE(text(1, FrameDetails::BytesColumn), QStringLiteral("40"));
    QVERIFY(!text(1, FrameDetails::MeaningColumn).isEmpty());
    int frames = 0;
    for (int row = 0; row < details.rowCount(); ++row)
        frames += details.isFrame(row) ? 1 : 0;
    QCOMPARE(frames, 2);
    details.clear();
    QCOMPARE(details.rowCount(), 0);
}

void tst_TraceModel::partsAreBounded()
{
    // A download in segments that never ends
    std::vector<TraceFrame> frames{heard(0, 0x602, "2164610200100000"), heard(1, 0x582, "6064610200000000")};
    for (int i = 0; i < 300; ++i) {
        frames.push_back(heard(2 + 2 * i, 0x602, i % 2 == 0 ? "0001020304050607" : "1001020304050607"));
        frames.push_back(heard(3 + 2 * i, 0x582, i % 2 == 0 ? "2000000000000000" : "3000000000000000"));
    }
    FrameDetails details;
    details.show(*documentOf(frames), 0);
    const int last = details.rowCount() - 1;
    QCOMPARE(details.index(last, FrameDetails::MeaningColumn).data().toString(),
             QStringLiteral("and 402 more frame(s)"));
}

void tst_TraceModel::moments()
{
    LiveEvent event;
    event.kind = EventKind::Emergency;
    event.nodeId = 4;
    const TraceLines &lines = m_model->document().lines;
    const auto lineAt = [&lines, &event](int ms) {
        return TraceMoment::of(event, QDateTime::fromMSecsSinceEpoch(morning / millisecond + ms))
            .lineIn(lines);
    };
    QCOMPARE(lineAt(150).value(), std::size_t(2)); // the emergency, though its time is another one
    QCOMPARE(lineAt(-500).value(), std::size_t(2));
    QCOMPARE(lineAt(-5000).value(), std::size_t(0));
    QCOMPARE(lineAt(50'000).value(), std::size_t(3));
    event.nodeId = 77;
    QCOMPARE(lineAt(150).value(), std::size_t(2)); // the first one behind it
    QVERIFY(!TraceMoment().lineIn(TraceDocument().lines).has_value());
}

void tst_TraceModel::exportOfWhatIsShown()
{
    TraceFilter filter;
    filter.nodes.set(2);
    filter.nodes.set(5);
    m_model->setFilter(filter);
    const Trace part = TraceExport::shown(m_model->document(), m_model->rows());
    const std::vector<TraceFrame> all = fourLines();
    QCOMPARE(part.frames.size(), std::size_t(4)); // both frames of the read, without the emergency
    QVERIFY(part.frames[1] == all[1] && part.frames[2] == all[2] && part.frames[3] == all[4]);
    QCOMPARE(part.head.channels, QStringList(QStringLiteral("can0")));
    m_model->setFilter(TraceFilter());
    QCOMPARE(TraceExport::shown(m_model->document(), m_model->rows()).frames.size(), std::size_t(5));
}

QTEST_MAIN(tst_TraceModel)
#include "tst_tracemodel.moc"
