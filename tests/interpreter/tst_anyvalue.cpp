// SPDX-License-Identifier: MIT
#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>

#include <QRandomGenerator>
#include <QTest>
#include <QVariant>

/*! Values as no honest device sends them: every decoder gives some text, and the same one each time. */
class tst_AnyValue : public QObject
{
    Q_OBJECT

private slots:
    void randomValuesGiveTheSameTextTwice_data();
    void randomValuesGiveTheSameTextTwice();
    void valuesOfOtherTypesGiveTheTextOfTheirNumber_data();
    void valuesOfOtherTypesGiveTheTextOfTheirNumber();
};

namespace {

/*! Runs every service on one value; numbers below 256 are cut out of it where a service wants them. */
QStringList allTexts(quint16 index, quint8 subIndex, const QVariant &value)
{
    const auto byte = static_cast<quint8>(value.toUInt() & 0xFF);
    QStringList texts{DataInterpreter::objectName(index, subIndex),
                      DataInterpreter::interpretDeviceType(value),
                      DataInterpreter::interpretErrorRegister(value),
                      DataInterpreter::interpretSecurityStatus(value),
                      DataInterpreter::interpretSupportedAlarms(value),
                      DataInterpreter::interpretSystemStatus(value),
                      DataInterpreter::interpretLevType(value),
                      DataInterpreter::interpretBatteryChemistry(value),
                      QString::number(DataInterpreter::checkLimits(index, value))};

    QString name;
    QString text;
    DataInterpreter::interpretIdentity(value, subIndex, name, text);
    texts << name << text;

    Qt::GlobalColor fsaColor = Qt::black;
    Qt::GlobalColor processingColor = Qt::black;
    texts << DataInterpreter::interpretFsaState(byte, fsaColor)
          << DataInterpreter::interpretProcessingState(byte, processingColor) << QString::number(fsaColor)
          << QString::number(processingColor);

    QString control;
    DataInterpreter::interpretControlCommand(value, control);
    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(value, flags, state);
    QString label;
    QString version;
    DataInterpreter::interpretSpecificationVersions(value, label, version);
    QString installed;
    QString connected;
    DataInterpreter::interpretBatteryList(value, installed, connected);
    texts << control << flags << state << label << version << installed << connected;

    QString security;
    QString features;
    QString keyClassLabel;
    QString keyClass;
    DataInterpreter::interpretSecurityProperties(value, security, features, keyClassLabel, keyClass);
    texts << security << features << keyClassLabel << keyClass;

    DataInterpreter::interpretDeviceCapability(value, texts);
    if (const ComponentClass *componentClass = findComponentClass(byte))
        texts << componentClassName(*componentClass, subIndex);
    return texts;
}

} // namespace

void tst_AnyValue::randomValuesGiveTheSameTextTwice_data()
{
    QTest::addColumn<uint>("seed");

    QTest::newRow("seed 1") << 1u;
    QTest::newRow("seed 454") << 454u;
    QTest::newRow("seed 20260905") << 20260905u;
}

void tst_AnyValue::randomValuesGiveTheSameTextTwice()
{
    QFETCH(uint, seed);

    QRandomGenerator random(seed);
    for (int round = 0; round < 5000; ++round) {
        const auto index = static_cast<quint16>(random.bounded(0x10000));
        const auto subIndex = static_cast<quint8>(random.bounded(0x100));
        const QVariant value = random.generate();
        const QStringList texts = allTexts(index, subIndex, value)
                                  << DataInterpreter::formatValue(index, subIndex, value);
        const QStringList again = allTexts(index, subIndex, value)
                                  << DataInterpreter::formatValue(index, subIndex, value);
        if (texts != again || texts.size() < 26)
            QFAIL(qPrintable(QStringLiteral("seed %1, value %2").arg(seed).arg(value.toUInt())));
    }
}

void tst_AnyValue::valuesOfOtherTypesGiveTheTextOfTheirNumber_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<uint>("number");

    QTest::newRow("no value") << QVariant() << 0u;
    QTest::newRow("text") << QVariant(QStringLiteral("abc")) << 0u;
    QTest::newRow("a number as text") << QVariant(QStringLiteral("454")) << 454u;
    QTest::newRow("bytes") << QVariant(QByteArray("\xFF\x00\x01", 3)) << 0u;
    QTest::newRow("negative INTEGER8") << QVariant::fromValue<qint8>(-1) << 0xFFFFFFFFu;
    QTest::newRow("negative INTEGER16") << QVariant::fromValue<qint16>(-2) << 0xFFFFFFFEu;
    QTest::newRow("negative INTEGER32") << QVariant(-3) << 0xFFFFFFFDu;
    QTest::newRow("negative 64-bit number") << QVariant(-4LL) << 0xFFFFFFFCu;
    QTest::newRow("64-bit number") << QVariant(0x1200000005ULL) << 0x5u;
    QTest::newRow("truth value") << QVariant(true) << 1u;
}

void tst_AnyValue::valuesOfOtherTypesGiveTheTextOfTheirNumber()
{
    QFETCH(QVariant, value);
    QFETCH(uint, number);

    for (const int index : {0x6002, 0x6080, 0x6105}) {
        for (quint8 subIndex = 0; subIndex < 6; ++subIndex) {
            QCOMPARE(allTexts(static_cast<quint16>(index), subIndex, value),
                     allTexts(static_cast<quint16>(index), subIndex, number));
        }
    }
}

QTEST_APPLESS_MAIN(tst_AnyValue)

#include "tst_anyvalue.moc"
