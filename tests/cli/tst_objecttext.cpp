// SPDX-License-Identifier: MIT
#include <cli/commands/objecttext.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

namespace {

QJsonObject jsonOf(const ObjectValue &object)
{
    return QJsonDocument::fromJson(objectJson(object)).object();
}

} // namespace

/*! What "get" prints of a value. */
class tst_ObjectText : public QObject
{
    Q_OBJECT

private slots:
    void bytesAreThoseOfTheBus();
    void truthThatIsNeither();
    void sizeThatNobodyTells();
};

/*! Also behind the zero at which a text ends. */
void tst_ObjectText::bytesAreThoseOfTheBus()
{
    const ObjectValue name{7,
                           {0x1008, 0},
                           CanOpen::DataType::VisibleString,
                           QStringLiteral("AB"),
                           QByteArray::fromHex("4142004344"),
                           false};
    QVERIFY2(objectText(name).contains(QStringLiteral("Value   AB\n")), qPrintable(objectText(name)));
    QVERIFY2(objectText(name).endsWith(QStringLiteral("Bytes   41 42 00 43 44")),
             qPrintable(objectText(name)));
    QCOMPARE(jsonOf(name).value(QStringLiteral("bytes")).toString(), QStringLiteral("4142004344"));
    QVERIFY(!jsonOf(name).contains(QStringLiteral("sizeKnown")));
}

void tst_ObjectText::truthThatIsNeither()
{
    const ObjectValue truth{7,    {0x2000, 1}, CanOpen::DataType::Boolean, 255U, QByteArray::fromHex("ff"),
                            false};
    QVERIFY2(objectText(truth).contains(QStringLiteral("255 (0xFF)")), qPrintable(objectText(truth)));
    QCOMPARE(jsonOf(truth).value(QStringLiteral("bytes")).toString(), QStringLiteral("ff"));
}

/*! Three of the four bytes may be left over from something else: no number is made of them. */
void tst_ObjectText::sizeThatNobodyTells()
{
    const QByteArray bytes = QByteArray::fromHex("05aabbcc");
    const ObjectValue value{7, {0x2000, 0}, std::nullopt, bytes, bytes, true};
    const QString text = objectText(value);
    QVERIFY2(!text.contains(QStringLiteral("Number")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("the device does not tell it")), qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral("05 AA BB CC")), qPrintable(text));
    QCOMPARE(jsonOf(value).value(QStringLiteral("sizeKnown")).toBool(true), false);
    const ObjectValue told{7, {0x2000, 0}, std::nullopt, bytes, bytes, false};
    QVERIFY(objectText(told).contains(QStringLiteral("3434850821 (0xCCBBAA05)")));
}

QTEST_GUILESS_MAIN(tst_ObjectText)
#include "tst_objecttext.moc"
