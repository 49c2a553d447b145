// SPDX-License-Identifier: MIT
#include "importedform.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

const FileValue vehicle[] = {{5, 0x6000, 0, 1}, {5, 0x6000, 1, 6}};

QObject *accessOf(const QWidget &window)
{
    return window.findChild<QObject *>(QStringLiteral("exchangeAccess"), Qt::FindDirectChildrenOnly);
}

QString exportText(QObject *access)
{
    QString text;
    if (!QMetaObject::invokeMethod(access, "exportText", Q_RETURN_ARG(QString, text)))
        qFatal("no exportText");
    return text;
}

bool importText(QObject *access, const QString &text)
{
    bool isTaken = false;
    if (!QMetaObject::invokeMethod(access, "importText", Q_RETURN_ARG(bool, isTaken), Q_ARG(QString, text)))
        qFatal("no importText");
    return isTaken;
}

QStringList components(const QTreeWidget &tree)
{
    QStringList names;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        names.append(tree.topLevelItem(i)->text(0));
    return names;
}

} // namespace

/*! What a host can ask of the window by name: its values as text, and to show those of a text. */
class tst_ExchangeAccess : public QObject
{
    Q_OBJECT

private slots:
    void givesWhatIsHeld();
    void showsWhatItIsGiven();
};

void tst_ExchangeAccess::givesWhatIsHeld()
{
    ImportedForm form({vehicle[0], vehicle[1]});
    QObject *access = accessOf(form.form());
    QVERIFY(access != nullptr);
    const QString text = exportText(access);
    QVERIFY2(text.contains(QStringLiteral("<object index=\"0x6000\" sub=\"0x01\" value=\"6\" />")),
             qPrintable(text));
}

void tst_ExchangeAccess::showsWhatItIsGiven()
{
    ImportedForm form({vehicle[0], vehicle[1]});
    QObject *access = accessOf(form.form());
    QVERIFY(access != nullptr);
    QCOMPARE(components(form.tree()), QStringList(QStringLiteral("Battery Pack")));
    QVERIFY(importText(access,
                       QStringLiteral("<node nodeid=\"9\"><object index=\"0x6000\" sub=\"0\" value=\"1\"/>"
                                      "<object index=\"0x6000\" sub=\"1\" value=\"9\"/></node>")));
    QCOMPARE(components(form.tree()), QStringList(QStringLiteral("HMI control unit/display")));
    QVERIFY(exportText(access).contains(QStringLiteral("nodeid=\"9\"")));
    QVERIFY(!exportText(access).contains(QStringLiteral("nodeid=\"5\"")));
}

QTEST_MAIN(tst_ExchangeAccess)
#include "tst_exchangeaccess.moc"
