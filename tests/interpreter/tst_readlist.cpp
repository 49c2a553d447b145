// SPDX-License-Identifier: MIT
#include <interpreter/readlist.h>

#include <QtTest>

namespace {

/*! "index:sub-index/type", sub-indices in decimal. */
QStringList written(ReadGroup group)
{
    QStringList list;
    for (const ReadEntry &entry : readListGroup(group)) {
        list.append(QStringLiteral("%1:%2/%3")
                        .arg(QString::number(entry.index, 16).toUpper())
                        .arg(entry.subIndex)
                        .arg(entry.dataType));
    }
    return list;
}

/*! "6000 0-0/5 1-5/7" spelt out. */
QStringList expanded(const QString &rows)
{
    QStringList list;
    for (const QString &row : rows.trimmed().split(QLatin1Char('\n'))) {
        const QStringList parts = row.simplified().split(QLatin1Char(' '));
        for (const QString &part : parts.mid(1)) {
            const QStringList rangeAndType = part.split(QLatin1Char('/'));
            const QStringList range = rangeAndType.at(0).split(QLatin1Char('-'));
            for (int s = range.first().toInt(); s <= range.last().toInt(); ++s)
                list.append(QStringLiteral("%1:%2/%3").arg(parts.first()).arg(s).arg(rangeAndType.at(1)));
        }
    }
    return list;
}

} // namespace

class tst_ReadList : public QObject
{
    Q_OBJECT

private slots:
    void group_data();
    void group();
    void hasTwoHundredAndFourEntries();
};

void tst_ReadList::group_data()
{
    QTest::addColumn<int>("group");
    QTest::addColumn<QString>("rows");

    QTest::newRow("general") << static_cast<int>(ReadGroup::General) << QStringLiteral(R"(
        1000 0/7
        1001 0/5
        1018 0/5 1-4/7
        6000 0/5 1-5/7
        6001 0/5 1-5/6
        6002 0/5 1-5/6
        6003 0/5 1-5/6
        6005 0/7
        6008 0/5 1-4/4
        600D 0/5
        600E 0/5 1-14/7
        6020 0/5 1-5/6
        6022 0/5 1-5/6
        6023 0/5 1-5/6
        6024 0/5 1-5/4
        6025 0/5 1-5/4
        6026 0/5 1-5/4
        6027 0/5 1-5/4
        603E 0/5 1-5/4
        6040 0/5 1-5/4
        6042 0/5 1-5/3
        6046 0/5 1-2/4
        6047 0/5 1-2/4
        6048 0/5 1-2/4
        6049 0/5 1-2/4
        604A 0/5 1-2/4
        604B 0/5 1-2/4
        604C 0/5 1-2/4
        604D 0/5 1-2/4
        604E 0/5 1-2/4
        604F 0/5 1-2/4)");
    QTest::newRow("bus controller") << static_cast<int>(ReadGroup::Group2) << QStringLiteral(R"(
        6080 0/6
        6081 0/5)");
    QTest::newRow("battery and security") << static_cast<int>(ReadGroup::Group3) << QStringLiteral(R"(
        6100 0/5 1-2/6
        6102 0/5 1-2/7
        6105 0/5 1-2/6
        6120 0/5 1/6
        6121 0/5 1/6
        6126 0/5 1-2/4
        6127 0/5 1-2/4
        6160 0/5 1-2/7
        6162 0/5 1-2/7
        6164 0/5 1/5 2/6
        6176 0/5 1-2/6
        6310 0/5 1/7
        6311 0/5 1/7
        6312 0/5 1/5)");
    QTest::newRow("motor control") << static_cast<int>(ReadGroup::Group4) << QStringLiteral(R"(
        62E8 0/5 1-5/3)");
    QTest::newRow("security in full") << static_cast<int>(ReadGroup::Group5) << QStringLiteral(R"(
        6310 0/5 1-7/7
        6311 0/5 1-7/6)");
}

void tst_ReadList::group()
{
    QFETCH(int, group);
    QFETCH(QString, rows);
    QCOMPARE(written(static_cast<ReadGroup>(group)), expanded(rows));
}

void tst_ReadList::hasTwoHundredAndFourEntries()
{
    int count = 0;
    for (const ReadGroup group :
         {ReadGroup::General, ReadGroup::Group2, ReadGroup::Group3, ReadGroup::Group4, ReadGroup::Group5})
        count += readListGroup(group).size();
    QCOMPARE(count, 204);
}

QTEST_GUILESS_MAIN(tst_ReadList)
#include "tst_readlist.moc"
