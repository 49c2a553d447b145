// SPDX-License-Identifier: MIT
#include <tests/support/markingtranslator.h>

#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>

#include <QCoreApplication>
#include <QTest>
#include <QVariant>

#include <functional>
#include <memory>

/*! Which texts are translated, in which context, and which are the same in every language. */
class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void interpreterTexts_data();
    void interpreterTexts();
    void unitsFollowTheTranslation();
    void componentClassNames();
    void aTranslationIsNotKept();
};

namespace {

std::unique_ptr<MarkingTranslator> translator;

using TextFunction = std::function<QString()>;

QString fsaText(quint8 state)
{
    Qt::GlobalColor color = Qt::black;
    return DataInterpreter::interpretFsaState(state, color);
}

QString processingText(quint8 state)
{
    Qt::GlobalColor color = Qt::black;
    return DataInterpreter::interpretProcessingState(state, color);
}

QString identityText(quint8 subIndex)
{
    QString name;
    QString text;
    DataInterpreter::interpretIdentity(1u, subIndex, name, text);
    return name + QLatin1Char('/') + text;
}

QString controlText(quint32 value)
{
    QString text;
    DataInterpreter::interpretControlCommand(value, text);
    return text;
}

QString statusText(quint32 value)
{
    QString flags;
    QString state;
    DataInterpreter::interpretDeviceStatus(value, flags, state);
    return flags + QLatin1Char('/') + state;
}

QString capabilityText(quint32 value)
{
    QStringList texts;
    DataInterpreter::interpretDeviceCapability(value, texts);
    return texts.join(QLatin1Char('/'));
}

QString versionText(quint32 value)
{
    QString label;
    QString text;
    DataInterpreter::interpretSpecificationVersions(value, label, text);
    return label + QLatin1Char('/') + text;
}

QString batteryText(quint32 value)
{
    QString installed;
    QString connected;
    DataInterpreter::interpretBatteryList(value, installed, connected);
    return installed + QLatin1Char('/') + connected;
}

QString securityText(quint32 value)
{
    QString label;
    QString features;
    QString keyClassLabel;
    QString keyClass;
    DataInterpreter::interpretSecurityProperties(value, label, features, keyClassLabel, keyClass);
    return QStringList{label, features, keyClassLabel, keyClass}.join(QLatin1Char('/'));
}

} // namespace

Q_DECLARE_METATYPE(TextFunction)

void tst_Translations::initTestCase()
{
    translator = std::make_unique<MarkingTranslator>();
}

void tst_Translations::cleanupTestCase()
{
    translator.reset();
}

void tst_Translations::interpreterTexts_data()
{
    QTest::addColumn<TextFunction>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const TextFunction &text, const char *expected) {
        QTest::newRow(name) << text << QString::fromUtf8(expected);
    };
    row(
        "error register", [] { return DataInterpreter::interpretErrorRegister(3u); },
        "[DataInterpreter:Generic error][DataInterpreter:\nCurrent Error]");
    row(
        "no error", [] { return DataInterpreter::interpretErrorRegister(0u); }, "No error");
    row(
        "FSA state", [] { return fsaText(3); }, "Normal Operation");
    row(
        "reserved FSA state", [] { return fsaText(4); }, "Reserved: 0x4");
    row(
        "processing state", [] { return processingText(1); }, "Idle");
    row(
        "reserved processing state", [] { return processingText(3); }, "Reserved: 0x3");
    row(
        "vendor ID", [] { return identityText(1); }, "[DataInterpreter:Vendor ID]/1");
    row(
        "product code", [] { return identityText(2); }, "Product code/1");
    row(
        "revision number", [] { return identityText(3); }, "Revision number/0.1");
    row(
        "serial number", [] { return identityText(4); }, "Serial number/1");
    row(
        "no identity entry", [] { return identityText(5); }, "no entry/no entry");
    row(
        "emergency shutdown", [] { return controlText(1); }, "[DataInterpreter:Emergency shutdown]");
    row(
        "control command", [] { return controlText(4); }, "[DataInterpreter:Enter operating]");
    row(
        "unknown control command", [] { return controlText(2); }, "");
    row(
        "device status", [] { return statusText(0x2001); },
        "[DataInterpreter:Current input active ]/[DataInterpreter:Connected]");
    row(
        "no device status", [] { return statusText(0xE000); },
        "[DataInterpreter:nothing active]/[DataInterpreter:reserved]");
    row(
        "device capability", [] { return capabilityText(2); }, "[DataInterpreter:Device is possibly active]");
    row(
        "profile version", [] { return versionText(1); }, "CiA.part.version.revision/0.0.0.1");
    row(
        "no batteries", [] { return batteryText(0); },
        "[DataInterpreter:No installed batteries]/[DataInterpreter:No connected batteries]");
    row(
        "batteries", [] { return batteryText(3); }, "1/1");
    row(
        "security properties", [] { return securityText(0x00000003); },
        "[DataInterpreter:Security properties]/[DataInterpreter:Mechanical locking with charge&lock cable "
        "supported] | "
        "[DataInterpreter:Optical alarm supported]/[DataInterpreter:Key class]/[DataInterpreter:Security not "
        "supported]");
    row(
        "no security properties", [] { return securityText(0x00FF0000); },
        "[DataInterpreter:Security properties]/nothing supported/[DataInterpreter:Key class]/");
    row(
        "alarms", [] { return DataInterpreter::interpretSupportedAlarms(0x80000001u); },
        "[DataInterpreter:Over voltage alarm supported]");
    row(
        "no alarms", [] { return DataInterpreter::interpretSupportedAlarms(0u); },
        "[DataInterpreter:Alarm not supported]");
    row(
        "system status", [] { return DataInterpreter::interpretSystemStatus(0x11u); },
        "[DataInterpreter:Powerline on ][DataInterpreter:EMS warning ]");
    row(
        "LEV type", [] { return DataInterpreter::interpretLevType(9u); }, "[DataInterpreter:Scooter]");
    row(
        "unknown LEV type", [] { return DataInterpreter::interpretLevType(0u); },
        "[DataInterpreter:undefined]");
    row(
        "chemistry", [] { return DataInterpreter::interpretBatteryChemistry(0x10u); },
        "[DataInterpreter:Lead acid (PbA)]");
    row(
        "security status", [] { return DataInterpreter::interpretSecurityStatus(0u).left(66); },
        "[DataInterpreter:No locking mechanism supported\n][DataInterpreter:");
    row(
        "device type", [] { return DataInterpreter::interpretDeviceType(0u).left(60); },
        "[DataInterpreter:DXC controller supported\n][DataInterpreter:");
    row(
        "system status value", [] { return DataInterpreter::formatValue(0x6080, 0, 1u); },
        "[DataInterpreter:1,][DataInterpreter:DX is on,]");
    row(
        "LEV type value", [] { return DataInterpreter::formatValue(0x6081, 0, 3u); },
        "[DataInterpreter:Pedelec with speed (>45km/h]");
    row(
        "reserved LEV type value", [] { return DataInterpreter::formatValue(0x6081, 0, 4u); },
        "[DataInterpreter:reserved]");
    row(
        "object name", [] { return DataInterpreter::objectName(0x1000, 0); }, "Device type");
    row(
        "value without a unit", [] { return DataInterpreter::formatValue(0x6005, 0, 7u); }, "7");
}

void tst_Translations::interpreterTexts()
{
    QFETCH(TextFunction, text);
    QFETCH(QString, expected);

    QCOMPARE(text(), expected);
}

void tst_Translations::unitsFollowTheTranslation()
{
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 36500u), QStringLiteral("[DataInterpreter:36.50 V]"));
    QCOMPARE(DataInterpreter::formatValue(0x6105, 1, 253u), QStringLiteral("[DataInterpreter:25.30 °C]"));
}

void tst_Translations::componentClassNames()
{
    QCOMPARE(componentClassName(*findComponentClass(6)), QStringLiteral("[OverviewForm:Battery Pack]"));
    QCOMPARE(componentClassName(*findComponentClass(4), 5),
             QStringLiteral("[OverviewForm:Draxel Controller]"));
    QCOMPARE(componentClassName(*findComponentClass(4), 127),
             QStringLiteral("[OverviewForm:Draxel Controller/Charger]"));
}

void tst_Translations::aTranslationIsNotKept()
{
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 1000u), QStringLiteral("[DataInterpreter:1.00 V]"));
    translator.reset();
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 1000u), QStringLiteral("1.00 V"));
    translator = std::make_unique<MarkingTranslator>();
}

QTEST_GUILESS_MAIN(tst_Translations)

#include "tst_translations.moc"
