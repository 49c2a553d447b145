// SPDX-License-Identifier: MIT
#include <host/pages/trace/filterinput.h>

#include <QtTest>

/*! Filters of traces as somebody types them. */
class tst_FilterInput : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void nodes_data();
    void nodes();
    void noNodes_data();
    void noNodes();
    void objects_data();
    void objects();
    void noObjects_data();
    void noObjects();
    void theRest();
};

void tst_FilterInput::nothing()
{
    QString problem;
    const std::optional<TraceFilter> filter = FilterInput().parse(&problem);
    QVERIFY(filter.has_value());
    QVERIFY(filter->isEmpty());
}

void tst_FilterInput::nodes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<int>>("nodes");

    QTest::newRow("one") << QStringLiteral("2") << QVector<int>{2};
    QTest::newRow("some") << QStringLiteral("2, 5;127") << QVector<int>{2, 5, 127};
    QTest::newRow("range") << QStringLiteral("5-7") << QVector<int>{5, 6, 7};
    QTest::newRow("blanks around the dash") << QStringLiteral(" 5 - 7 ") << QVector<int>{5, 6, 7};
}

void tst_FilterInput::nodes()
{
    QFETCH(QString, text);
    QFETCH(QVector<int>, nodes);
    FilterInput input;
    input.nodes = text;
    QString problem;
    const std::optional<TraceFilter> filter = input.parse(&problem);
    QVERIFY2(filter.has_value(), qPrintable(problem));
    QCOMPARE(static_cast<int>(filter->nodes.count()), nodes.size());
    for (const int node : nodes)
        QVERIFY(filter->nodes.test(static_cast<std::size_t>(node)));
}

void tst_FilterInput::noNodes_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << QStringLiteral("0");
    QTest::newRow("too large") << QStringLiteral("128");
    QTest::newRow("word") << QStringLiteral("motor");
    QTest::newRow("backward") << QStringLiteral("7-5");
    QTest::newRow("open range") << QStringLiteral("5-");
    QTest::newRow("very large") << QStringLiteral("99999999999");
}

void tst_FilterInput::noNodes()
{
    QFETCH(QString, text);
    FilterInput input;
    input.nodes = text;
    QString problem;
    QVERIFY(!input.parse(&problem));
    QCOMPARE(problem, QStringLiteral("Nodes are numbers from 1 to 127: \"2, 5-7\"."));
}

void tst_FilterInput::objects_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("subIndex");

    QTest::newRow("with sub-index") << QStringLiteral("6164h.2") << 0x6164 << 2;
    QTest::newRow("all sub-indices") << QStringLiteral("1018h") << 0x1018 << -1;
    QTest::newRow("digits only") << QStringLiteral("1018") << 0x1018 << -1;
    QTest::newRow("as in C") << QStringLiteral("0x60ab:255") << 0x60AB << 255;
}

void tst_FilterInput::objects()
{
    QFETCH(QString, text);
    QFETCH(int, index);
    QFETCH(int, subIndex);
    FilterInput input;
    input.objects = text;
    QString problem;
    const std::optional<TraceFilter> filter = input.parse(&problem);
    QVERIFY2(filter.has_value(), qPrintable(problem));
    QCOMPARE(filter->objects.size(), 1);
    QCOMPARE(int(filter->objects.first().index), index);
    QCOMPARE(filter->objects.first().subIndex, subIndex);
}

void tst_FilterInput::noObjects_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("word") << QStringLiteral("voltage");
    QTest::newRow("too long") << QStringLiteral("61640h");
    QTest::newRow("sub-index too large") << QStringLiteral("6164h.256");
    QTest::newRow("no sub-index") << QStringLiteral("6164h.");
}

void tst_FilterInput::noObjects()
{
    QFETCH(QString, text);
    FilterInput input;
    input.objects = text;
    QString problem;
    QVERIFY(!input.parse(&problem));
    QCOMPARE(problem, QStringLiteral("Objects are an index in hexadecimal, and a sub-index behind a dot: "
                                     "\"6164h.2\"."));
}

void tst_FilterInput::theRest()
{
    FilterInput input;
    input.text = QStringLiteral("  battery ");
    input.kinds.set(static_cast<std::size_t>(FrameKind::Sdo));
    input.isWrongOnly = true;
    QString problem;
    const std::optional<TraceFilter> filter = input.parse(&problem);
    QVERIFY(filter.has_value());
    QCOMPARE(filter->text, QStringLiteral("battery"));
    QVERIFY(filter->kinds.test(static_cast<std::size_t>(FrameKind::Sdo)));
    QCOMPARE(static_cast<int>(filter->kinds.count()), 1);
    QVERIFY(filter->isWrongOnly);
}

QTEST_GUILESS_MAIN(tst_FilterInput)
#include "tst_filterinput.moc"
