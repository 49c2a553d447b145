// SPDX-License-Identifier: MIT
#include "../support/vehiclesnapshot.h"

#include <checkup/checkup.h>
#include <checkup/ruleset.h>

#include <QtTest>

class tst_ShippedRules : public QObject
{
    Q_OBJECT

private slots:
    void dump();
};

void tst_ShippedRules::dump()
{
    const RuleSet rules = RuleSet::load({QStringLiteral(OVERVIEW_SOURCE_DIR "/src/checkup/rules")});
    for (const QString &p : rules.problems())
        qDebug() << p;
    for (const char *v : {"pedelec", "full-bus"}) {
        const CheckupResult r = Checkup::judge(VehicleSnapshot::of(QString::fromLatin1(v)), rules, QStringLiteral("en"));
        qDebug() << v << int(r.verdict);
        for (const auto &c : r.components) {
            qDebug() << "  " << c.nodeId << c.name << int(c.state) << c.notChecked;
            for (const auto &f : c.findings)
                qDebug() << "      " << f.rule << int(f.severity) << f.text << f.objects.size();
        }
        for (const auto &f : r.vehicleFindings)
            qDebug() << "      " << f.rule << int(f.severity) << f.text;
    }
}

QTEST_GUILESS_MAIN(tst_ShippedRules)
#include "tst_shippedrules.moc"
