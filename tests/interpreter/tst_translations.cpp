// SPDX-License-Identifier: MIT
#include <interpreter/componentclass.h>
#include <interpreter/datainterpreter.h>

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>
#include <QVariant>

#include <functional>

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

/*! Puts every text it is asked for into brackets with its context's first letter, "%1 V" into "[D:%1 V]". */
class BracketTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override
    {
        Q_UNUSED(disambiguation)
        Q_UNUSED(n)
        return QStringLiteral("[") + QLatin1Char(context[0]) + QLatin1Char(':')
               + QString::fromUtf8(sourceText) + QLatin1Char(']');
    }
};

BracketTranslator translator;

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
    QVERIFY(QCoreApplication::installTranslator(&translator));
}

void tst_Translations::cleanupTestCase()
{
    QCoreApplication::removeTranslator(&translator);
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
        "[D:Generic error][D:\nCurrent Error]");
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
        "vendor ID", [] { return identityText(1); }, "[D:Vendor ID]/1");
    row(
        "product code", [] { return identityText(2); }, "Product code/1");
    row(
        "revision number", [] { return identityText(3); }, "Revision number/0.1");
    row(
        "serial number", [] { return identityText(4); }, "Serial number/1");
    row(
        "no identity entry", [] { return identityText(5); }, "no entry/no entry");
    row(
        "emergency shutdown", [] { return controlText(1); }, "[D:Emergency shutdown]");
    row(
        "control command", [] { return controlText(4); }, "[D:Enter operating]");
    row(
        "unknown control command", [] { return controlText(2); }, "");
    row(
        "device status", [] { return statusText(0x2001); }, "[D:Current input active ]/[D:Connected]");
    row(
        "no device status", [] { return statusText(0xE000); }, "[D:nothing active]/[D:reserved]");
    row(
        "device capability", [] { return capabilityText(2); }, "[D:Device is possibly active]");
    row(
        "profile version", [] { return versionText(1); }, "CiA.part.version.revision/0.0.0.1");
    row(
        "no batteries", [] { return batteryText(0); },
        "[D:No installed batteries]/[D:No connected batteries]");
    row(
        "batteries", [] { return batteryText(3); }, "1/1");
    row(
        "security properties", [] { return securityText(0x00000003); },
        "[D:Security properties]/[D:Mechanical locking with charge&lock cable supported] | "
        "[D:Optical alarm supported]/[D:Key class]/[D:Security not supported]");
    row(
        "no security properties", [] { return securityText(0x00FF0000); },
        "[D:Security properties]/nothing supported/[D:Key class]/");
    row(
        "alarms", [] { return DataInterpreter::interpretSupportedAlarms(0x80000001u); },
        "[D:Over voltage alarm supported]");
    row(
        "no alarms", [] { return DataInterpreter::interpretSupportedAlarms(0u); }, "[D:Alarm not supported]");
    row(
        "system status", [] { return DataInterpreter::interpretSystemStatus(0x11u); },
        "[D:Powerline on ][D:EMS warning ]");
    row(
        "LEV type", [] { return DataInterpreter::interpretLevType(9u); }, "[D:Scooter]");
    row(
        "unknown LEV type", [] { return DataInterpreter::interpretLevType(0u); }, "[D:undefined]");
    row(
        "chemistry", [] { return DataInterpreter::interpretBatteryChemistry(0x10u); }, "[D:Lead acid (PbA)]");
    row(
        "security status", [] { return DataInterpreter::interpretSecurityStatus(0u).left(38); },
        "[D:No locking mechanism supported\n][D:");
    row(
        "device type", [] { return DataInterpreter::interpretDeviceType(0u).left(32); },
        "[D:DXC controller supported\n][D:");
    row(
        "system status value", [] { return DataInterpreter::formatValue(0x6080, 0, 1u); },
        "[D:1,][D:DX is on,]");
    row(
        "LEV type value", [] { return DataInterpreter::formatValue(0x6081, 0, 3u); },
        "[D:Pedelec with speed (>45km/h]");
    row(
        "reserved LEV type value", [] { return DataInterpreter::formatValue(0x6081, 0, 4u); },
        "[D:reserved]");
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
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 36500u), QStringLiteral("[D:36.50 V]"));
    QCOMPARE(DataInterpreter::formatValue(0x6105, 1, 253u), QStringLiteral("[D:25.30 °C]"));
}

void tst_Translations::componentClassNames()
{
    QCOMPARE(componentClassName(*findComponentClass(6)), QStringLiteral("[O:Battery Pack]"));
    QCOMPARE(componentClassName(*findComponentClass(4), 5), QStringLiteral("[O:Draxel Controller]"));
    QCOMPARE(componentClassName(*findComponentClass(4), 127),
             QStringLiteral("[O:Draxel Controller/Charger]"));
}

void tst_Translations::aTranslationIsNotKept()
{
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 1000u), QStringLiteral("[D:1.00 V]"));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(DataInterpreter::formatValue(0x6040, 1, 1000u), QStringLiteral("1.00 V"));
    QVERIFY(QCoreApplication::installTranslator(&translator));
}

QTEST_GUILESS_MAIN(tst_Translations)

#include "tst_translations.moc"
