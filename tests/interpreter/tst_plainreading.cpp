// SPDX-License-Identifier: MIT
#include <interpreter/datainterpreter.h>

#include <QFile>
#include <QSet>
#include <QTest>
#include <QVariant>
#include <QVector>

/*! Compares the look-ups with a plain reading of the tables from the first line to the last on every call.
 *
 *  The plain reading below shares nothing with the look-ups but the file.
 */
class tst_PlainReading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void plainReadingFindsTheFirstAndTheLastRow();
    void objectNamesAreTheSame();
    void formattedValuesAreTheSame();
    void limitsAreTheSame();
    void vendorNamesAreTheSame();
};

namespace {

constexpr int lastIndex = 0xFFFF;
constexpr int lastSubIndex = 6;

/*! One line, split once so that a whole comparison takes seconds. */
struct Line
{
    int key;
    QStringList fields;
};

QVector<Line> lines;

void readLines()
{
    QFile file(QStringLiteral(":/files/od.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    while (file.pos() < file.size()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).split(QLatin1String(";"));
        lines.append({fields.at(0).toInt(nullptr, 16) & 0xFFFF, fields});
    }
}

QString plainName(int index, int subIndex)
{
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).key != index)
            continue;
        const QStringList &row = lines.at(i).fields;
        const QString name = row.at(2).isEmpty() ? row.at(1) : row.at(2);
        if (subIndex == 0 || i + 1 == lines.size())
            return name;
        const QStringList &below = lines.at(i + 1).fields;
        if (below.at(1).toInt(nullptr, 16) == subIndex && !below.at(2).simplified().isEmpty())
            return below.at(2);
        return name;
    }
    return QString();
}

QString plainlyFormatted(const QString &unit, const QVariant &value)
{
    const double r = value.toDouble();
    const auto number = [](double shown) { return QString::number(shown, 'f', 2); };
    if (unit == QLatin1String("ms"))
        return number(r / 1000) + QStringLiteral(" s");
    if (unit == QLatin1String("mA"))
        return number(r / 1000) + QStringLiteral(" A");
    if (unit == QLatin1String("mAh"))
        return number(r / 1000) + QStringLiteral(" Ah");
    if (unit == QLatin1String("Ah"))
        return number(r) + QStringLiteral(" Ah");
    if (unit == QLatin1String("mAh/day"))
        return number(r / 1000) + QStringLiteral(" Ah/day");
    if (unit == QLatin1String("Wh"))
        return number(r) + QStringLiteral(" Wh");
    if (unit == QLatin1String("mWh"))
        return number(r / 1000) + QStringLiteral(" Wh");
    if (unit == QLatin1String("Hz"))
        return number(r / 100) + QStringLiteral(" Hz");
    if (unit == QLatin1String("mOhm"))
        return number(r / 1000) + QStringLiteral(" Ohm");
    if (unit == QLatin1String("mV"))
        return number(r / 1000) + QStringLiteral(" V");
    if (unit == QLatin1String("%"))
        return number(r / 100) + QStringLiteral(" %");
    if (unit == QLatin1String("C"))
        return number(r / 10) + QStringLiteral(" °C");
    if (unit == QLatin1String("min"))
        return number(r) + QStringLiteral(" minutes");
    return QString::number(value.toUInt());
}

QString plainValue(int index, const QVariant &value)
{
    const uint v = value.toUInt();
    if (index == 0x6080) {
        QString text = QString::number(v & 0x3F) + QStringLiteral(",");
        text += (v & 1) != 0 ? QStringLiteral("DX is on,") : QString();
        text += (v & 2) != 0 ? QStringLiteral("DX is awake,") : QString();
        text += (v & 4) != 0 ? QStringLiteral("DX in standby,") : QString();
        text += (v & 8) != 0 ? QStringLiteral("DX runs,") : QString();
        text += (v & 16) != 0 ? QStringLiteral("DX warning,") : QString();
        text += (v & 32) != 0 ? QStringLiteral("DX error,") : QString();
        return text;
    }
    if (index == 0x6081) {
        switch (v & 0xFF) {
        case 1:
            return QStringLiteral("Pedelec with speed limit (<25km/h");
        case 2:
            return QStringLiteral("Pedelec with speed limit (<45km/h");
        case 3:
            return QStringLiteral("Pedelec with speed (>45km/h");
        default:
            return QStringLiteral("reserved");
        }
    }

    QString text;
    for (const Line &line : qAsConst(lines)) {
        if (line.key == index)
            text = plainlyFormatted(line.fields.at(3), value);
    }
    return text;
}

Qt::GlobalColor plainColor(int index, const QVariant &value)
{
    const uint v = value.toUInt();
    for (const Line &line : qAsConst(lines)) {
        if (line.key != index)
            continue;
        if (!line.fields.at(5).isEmpty() && line.fields.at(5).toUInt() < v)
            return Qt::red;
        if (!line.fields.at(4).isEmpty() && line.fields.at(4).toUInt() > v)
            return Qt::blue;
    }
    return Qt::black;
}

const QVector<QVariant> &values()
{
    static const QVector<QVariant> list{QVariant(0u),
                                        QVariant(1u),
                                        QVariant(253u),
                                        QVariant(36500u),
                                        QVariant(0x80000000u),
                                        QVariant(0xFFFFFFFFu),
                                        QVariant(-1),
                                        QVariant(-36500),
                                        QVariant(),
                                        QVariant::fromValue<qint16>(-5),
                                        QVariant(0x10203u),
                                        QVariant(0x2Bu)};
    return list;
}

QByteArray where(int index, int subIndex, const QVariant &value = QVariant())
{
    return QStringLiteral("%1h sub %2 value %3")
        .arg(index, 4, 16, QLatin1Char('0'))
        .arg(subIndex)
        .arg(value.toString())
        .toUtf8();
}

} // namespace

void tst_PlainReading::initTestCase()
{
    readLines();
    QCOMPARE(lines.size(), 520);
}

void tst_PlainReading::plainReadingFindsTheFirstAndTheLastRow()
{
    QCOMPARE(plainName(0x1000, 0), QStringLiteral("Device type"));
    QCOMPARE(plainName(0x6725, 1), QStringLiteral("Load switch off SOC"));
    QCOMPARE(plainName(0x62E8, 1), QStringLiteral("MCU 1 actual motor current"));
    QCOMPARE(plainValue(0x6040, 36500u), QStringLiteral("36.50 V"));
    QCOMPARE(plainColor(0x6105, 701u), Qt::red);
}

void tst_PlainReading::objectNamesAreTheSame()
{
    for (int index = 0; index <= lastIndex; ++index) {
        for (int subIndex = 0; subIndex <= lastSubIndex; ++subIndex) {
            const QString plain = plainName(index, subIndex);
            const QString name
                = DataInterpreter::objectName(static_cast<quint16>(index), static_cast<quint8>(subIndex));
            if (name != plain || name.isNull() != plain.isNull())
                QFAIL(where(index, subIndex) + ": " + name.toUtf8() + " instead of " + plain.toUtf8());
        }
    }
}

void tst_PlainReading::formattedValuesAreTheSame()
{
    for (int index = 0; index <= lastIndex; ++index) {
        for (const QVariant &value : values()) {
            const QString plain = plainValue(index, value);
            for (int subIndex = 0; subIndex <= lastSubIndex; ++subIndex) {
                const QString text = DataInterpreter::formatValue(static_cast<quint16>(index),
                                                                  static_cast<quint8>(subIndex), value);
                if (text != plain)
                    QFAIL(where(index, subIndex, value) + ": " + text.toUtf8() + " instead of "
                          + plain.toUtf8());
            }
        }
    }
}

void tst_PlainReading::limitsAreTheSame()
{
    const QVector<QVariant> limits{QVariant(149u),   QVariant(150u),   QVariant(700u),
                                   QVariant(701u),   QVariant(999u),   QVariant(1000u),
                                   QVariant(25000u), QVariant(25001u), QVariant(-1)};
    for (int index = 0; index <= lastIndex; ++index) {
        for (const QVariant &value : values() + limits) {
            const Qt::GlobalColor plain = plainColor(index, value);
            const Qt::GlobalColor color = DataInterpreter::checkLimits(static_cast<quint16>(index), value);
            if (color != plain)
                QFAIL(where(index, 0, value) + ": " + QByteArray::number(color) + " instead of "
                      + QByteArray::number(plain));
        }
    }
}

void tst_PlainReading::vendorNamesAreTheSame()
{
    struct Vendor
    {
        bool isNumber;
        int id;
        QString company;
    };
    QVector<Vendor> vendors;
    QSet<quint32> ids{0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    QFile file(QStringLiteral(":/files/vendor.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    while (file.pos() < file.size()) {
        const QStringList fields = QString::fromUtf8(file.readLine()).split(QLatin1String(";"));
        bool isNumber = false;
        const int id = fields.at(0).toInt(&isNumber, 16);
        vendors.append({isNumber, id, fields.at(1)});
        const quint32 near = fields.at(0).toUInt(nullptr, 16);
        ids << near - 1 << near << near + 1;
    }
    QCOMPARE(vendors.size(), 1606);

    for (const quint32 id : qAsConst(ids)) {
        QString plain = QString::number(id);
        for (const Vendor &vendor : qAsConst(vendors)) {
            if (vendor.isNumber && static_cast<quint32>(vendor.id) == id) {
                plain = vendor.company;
                break;
            }
        }
        QString name;
        QString text;
        DataInterpreter::interpretIdentity(id, 1, name, text);
        QCOMPARE(text, plain);
    }
}

QTEST_APPLESS_MAIN(tst_PlainReading)

#include "tst_plainreading.moc"
