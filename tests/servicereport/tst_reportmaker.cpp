// SPDX-License-Identifier: MIT
#include "hostiletext.h"
#include "reportexample.h"
#include "reporttexts.h"

#include <servicereport/cellvoltages.h>
#include <servicereport/reportmaker.h>

#include <QtTest>

namespace {

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

const ReportSection *findSection(const ServiceReport &report, const char *title)
{
    for (const ReportSection &section : report.sections) {
        if (section.title.startsWith(s(title)))
            return &section;
    }
    return nullptr;
}

/*! The first block of a kind in a section; it has to be there. */
template<typename Block>
Block blockOf(const ServiceReport &report, const char *title, int number = 0)
{
    const ReportSection *section = findSection(report, title);
    for (const ReportBlock &block : section != nullptr ? section->blocks : QVector<ReportBlock>()) {
        if (const Block *found = std::get_if<Block>(&block)) {
            if (number-- == 0)
                return *found;
        }
    }
    return Block();
}

ReportTable::Row rowOf(const ReportTable &table, const char *firstCell)
{
    for (const ReportTable::Row &row : table.rows) {
        if (row.cells.first() == s(firstCell))
            return row;
    }
    return {};
}

QString nbsp(const char *text)
{
    return s(text).replace(QLatin1Char('_'), QChar(QChar::Nbsp));
}

} // namespace

class tst_ReportMaker : public QObject
{
    Q_OBJECT

private slots:
    void answersInTheOrderOfTheQuestions();
    void headSaysWhoAndWhen();
    void vehicleIsNamedByItsControllerWhenNobodyDid();
    void verdict_data();
    void verdict();
    void worstFindingComesFirst();
    void uncheckedComponentsHaveTheirReasons();
    void changesOfAnEarlierVisit();
    void changeWithoutASentence();
    void gapsOfOneCauseAreOneLine();
    void nameOfAnEarlierVisit();
    void componentsAreListedWithTheirIdentity();
    void nodeThatWasNotJudgedIsNotGood();
    void valuesHaveUnitsAndLimits();
    void minutesAreHours_data();
    void minutesAreHours();
    void everyValueHasANameOfTheReport();
    void onlyFindingsAreMarked();
    void temperaturesBelowZero();
    void settingsAreNoValues();
    void whatWasNotReadIsNoValue();
    void componentOfWhichNothingWasReadSaysSoOnce();
    void cellsAreSaidInWords();
    void packsWithoutLimitsHaveThoseOfTheFirst();
    void healthIsSaidInWords();
    void missingVisitsAreSaid();
    void unreadObjectsAreGroupedByReason();
    void nothingFoundIsSaid();
    void emptySnapshot();
    void longTextsAreCut();
    void numbersFollowTheLanguage();
};

void tst_ReportMaker::answersInTheOrderOfTheQuestions()
{
    QStringList titles;
    for (const ReportSection &section : makeServiceReport(ReportExample::data()).sections)
        titles << section.title;
    QCOMPARE(titles,
             QStringList({s("What was found, and what to do"), s("What could not be checked"),
                          s("What has changed since 12 March 2026, 09:40 (UTC+01:00)"), s("Components"),
                          s("Component by component"), s("What was not read"), s("The record")}));
}

void tst_ReportMaker::headSaysWhoAndWhen()
{
    const ServiceReport report = makeServiceReport(ReportExample::data());
    QStringList facts;
    for (const ReportFact &fact : report.facts)
        facts << fact.name + QLatin1Char('=') + fact.text;
    QCOMPARE(facts,
             QStringList({s("Vehicle=Cargo bike 7 (1104001)"), s("Customer=Jörg Müller & Söhne"),
                          s("Date=3 September 2026, 10:12 (UTC+02:00)"), s("Technician=A. Weber"),
                          s("Odometer=4 812 km"), s("What was read=Everything that the devices have"),
                          s("Bus=socketcan:can0 · PCAN-USB"), s("Bit rate=250 kbit/s"),
                          s("Read with=draxelctl 1.0.0"),
                          s("Remarks=Customer says: cuts out on hills.\nBattery was dropped last winter.")}));
    QCOMPARE(report.subject, s("Cargo bike 7 (1104001) · 3 September 2026"));
    QCOMPARE(report.workshop, s("Zweirad Sommer"));
}

void tst_ReportMaker::vehicleIsNamedByItsControllerWhenNobodyDid()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes = SnapshotNotes();
    const ServiceReport report = makeServiceReport(data);
    QCOMPARE(report.subject, s("1104001 · 3 September 2026"));
    data.snapshot.nodes.removeFirst();
    QCOMPARE(makeServiceReport(data).subject, s("3 September 2026"));
}

void tst_ReportMaker::verdict_data()
{
    QTest::addColumn<int>("verdict");
    QTest::addColumn<int>("mark");
    QTest::addColumn<QString>("headline");
    QTest::newRow("ok") << int(Verdict::Ok) << int(ReportMark::Good) << s("In order");
    QTest::newRow("note") << int(Verdict::Note) << int(ReportMark::Note) << s("In order, with notes");
    QTest::newRow("incomplete") << int(Verdict::Incomplete) << int(ReportMark::NotChecked)
                                << s("Not everything could be checked");
    QTest::newRow("warning") << int(Verdict::Warning) << int(ReportMark::Warning) << s("Needs attention");
    QTest::newRow("fault") << int(Verdict::Fault) << int(ReportMark::Fault) << s("Faults were found");
}

void tst_ReportMaker::verdict()
{
    QFETCH(int, verdict);
    QFETCH(int, mark);
    QFETCH(QString, headline);
    ServiceReportData data = ReportExample::data();
    data.checkup.verdict = Verdict(verdict);
    const ServiceReport report = makeServiceReport(data);
    QCOMPARE(int(report.verdict), mark);
    QCOMPARE(report.verdictHeadline, headline);
    QCOMPARE(report.verdictSentence,
             s("2 fault(s), 1 warning(s), 2 note(s), 2 component(s) not fully checked"));
}

void tst_ReportMaker::worstFindingComesFirst()
{
    const auto items = blockOf<ReportItems>(makeServiceReport(ReportExample::data()), "What was found").items;
    QStringList lines;
    for (const ReportItem &item : items)
        lines << ReportMarks::word(item.mark) + s(": ") + item.place;
    QCOMPARE(lines, QStringList({s("Fault: Battery Pack (node 2)"), s("Fault: Battery Pack (node 2)"),
                                 s("Warning: Motor Control unit (node 4)"), s("Note: Vehicle"),
                                 s("Note: Battery Pack (node 2)")}));
    QCOMPARE(items.first().text, s("Cell 7 has 2.91 V, less than the 3.00 V that the battery allows."));
    QCOMPARE(items.first().advice, s("Do not charge the battery. It needs service."));
}

void tst_ReportMaker::uncheckedComponentsHaveTheirReasons()
{
    ServiceReportData data = ReportExample::data();
    data.checkup.components[3].state = ComponentState::NotChecked; // and nobody said why
    const auto items = blockOf<ReportItems>(makeServiceReport(data), "What could not be checked").items;
    QCOMPARE(items.size(), 3);
    QCOMPARE(items.at(0).place, s("Battery Pack (node 2)"));
    QCOMPARE(items.at(0).text, s("Cell 10: The device did not answer."));
    QCOMPARE(items.at(1).text, s("The device does not answer."));
    QCOMPARE(items.at(2).place, s("Draxel Controller (node 1)"));
    QCOMPARE(items.at(2).text, s("It could not be checked."));
}

void tst_ReportMaker::changesOfAnEarlierVisit()
{
    ServiceReportData data = ReportExample::data();
    const auto rows = blockOf<ReportTable>(makeServiceReport(data), "What has changed").rows;
    QCOMPARE(rows.size(), 4);
    QCOMPARE(
        rows.at(0).cells,
        QStringList(
            {s("Replaced"),
             s("Charger: another device of the same kind, serial number 1009484 in the place of 1009001.")}));
    data.comparison->comparison.changes.clear();
    QCOMPARE(blockOf<ReportParagraph>(makeServiceReport(data), "What has changed").text,
             s("Nothing has changed."));
    data.comparison.reset();
    QVERIFY(findSection(makeServiceReport(data), "What has changed") == nullptr);
}

void tst_ReportMaker::changeWithoutASentence()
{
    const auto rows = blockOf<ReportTable>(makeServiceReport(ReportExample::data()), "What has changed").rows;
    QCOMPARE(rows.at(3).cells.at(1),
             s("Battery Pack (node 2): Battery pack SOH (6176h.1): 94.00 % → 88.00 %"));
}

void tst_ReportMaker::gapsOfOneCauseAreOneLine()
{
    ServiceReportData data = ReportExample::data();
    Change gap;
    gap.kind = Change::Kind::Gap;
    gap.nodeId = 5;
    gap.device = s("Gateway (node 5)");
    gap.reason = s("The device did not answer.");
    gap.isUnreadNow = true;
    data.comparison->comparison.changes.clear();
    for (int i = 0; i < 400; ++i) {
        gap.key = CanOpen::ObjectKey{static_cast<quint16>(0x6000 + i), 0};
        gap.text = s("one of many");
        data.comparison->comparison.changes.append(gap);
    }
    const ServiceReport report = makeServiceReport(data);
    const ReportTable table = blockOf<ReportTable>(report, "What has changed since");
    QCOMPARE(table.rows.size(), 1);
    QCOMPARE(table.rows.first().cells,
             QStringList({s("Gap"), s("Not read any more: 400 values of Gateway (node 5). The device did not "
                                      "answer.")}));
    QCOMPARE(blockOf<ReportParagraph>(report, "What has changed since").text, QString()); // and nothing more
}

/*! Of a device that did not say who it is. */
void tst_ReportMaker::nameOfAnEarlierVisit()
{
    ServiceReportData data = ReportExample::data();
    for (CheckedComponent &component : data.checkup.components) {
        if (component.nodeId == 5) {
            component.name = s("HMI control unit/display");
            component.isNameEarlier = true;
        }
    }
    const ServiceReport report = makeServiceReport(data);
    const ReportTable components = blockOf<ReportTable>(report, "Components");
    QStringList display;
    for (const ReportTable::Row &row : components.rows) {
        if (row.cells.at(2) == s("5"))
            display = row.cells;
    }
    QCOMPARE(display.mid(1, 3),
             QStringList({s("HMI control unit/display"), s("5"), s("not read this time")}));
    const ReportSection *section = findSection(report, "Component by component");
    QVERIFY(section != nullptr);
    bool isHeading = false;
    QStringList facts;
    for (const ReportBlock &block : section->blocks) {
        if (const auto *heading = std::get_if<ReportHeading>(&block))
            isHeading = heading->text == s("HMI control unit/display");
        if (const auto *found = std::get_if<ReportFacts>(&block); found != nullptr && isHeading) {
            for (const ReportFact &fact : found->facts)
                facts << fact.name + QLatin1Char('=') + fact.text;
        }
    }
    QCOMPARE(facts.value(0), s("Identity=not read this time; the name is from an earlier visit"));
    const ReportTable unread = blockOf<ReportTable>(report, "What was not read");
    QVERIFY(!rowOf(unread, "HMI control unit/display (node 5)").cells.isEmpty());
}

void tst_ReportMaker::componentsAreListedWithTheirIdentity()
{
    const ServiceReport report = makeServiceReport(ReportExample::data());
    const auto rows = blockOf<ReportTable>(report, "Components").rows;
    QCOMPARE(rows.size(), 5);
    QCOMPARE(rows.at(0).cells,
             QStringList({s("Fault"), s("Battery Pack"), s("2"), s("1123450"), s("1.3.0, revision 1.3")}));
    QCOMPARE(rows.at(2).cells, QStringList({s("Not checked"), s("Device"), s("5"), s(""), s("")}));
    QCOMPARE(int(rows.at(2).mark), int(ReportMark::NotChecked));

    QStringList facts;
    for (const ReportFact &fact : blockOf<ReportFacts>(report, "Component by component").facts)
        facts << fact.name + QLatin1Char('=') + fact.text;
    QCOMPARE(facts, QStringList({s("Device name=DX-Pack 36/500"), s("Manufacturer=0000FFFEh"),
                                 s("Product=0045472Ah"), s("Serial number=1123450"),
                                 s("Part number=454020272"), s("Software version=1.3.0"), s("Revision=1.3"),
                                 s("Hardware version=HW 2.1"), s("Answers after=5 ms")}));
}

void tst_ReportMaker::nodeThatWasNotJudgedIsNotGood()
{
    ServiceReportData data = ReportExample::data();
    data.checkup.components.clear();
    for (const ReportTable::Row &row : blockOf<ReportTable>(makeServiceReport(data), "Components").rows)
        QCOMPARE(int(row.mark), int(ReportMark::NotChecked));
}

void tst_ReportMaker::valuesHaveUnitsAndLimits()
{
    const auto table
        = blockOf<ReportTable>(makeServiceReport(ReportExample::data()), "Component by component");
    QCOMPARE(rowOf(table, "State of charge").cells,
             QStringList({s("State of charge"), nbsp("84.00_%"), s("")}));
    QCOMPARE(rowOf(table, "Voltage").cells,
             QStringList({s("Voltage"), nbsp("39.31_V"), nbsp("30.00_V to 42.00_V")}));
    QCOMPARE(rowOf(table, "Current").cells.value(1), nbsp("-6.20_A"));
    QCOMPARE(rowOf(table, "Temperature of the battery").cells,
             QStringList({s("Temperature of the battery"), nbsp("45.50_°C"), nbsp("-15.00_°C to 60.00_°C")}));
    QCOMPARE(rowOf(table, "Deep discharges").cells.value(1), s("3"));
    QCOMPARE(int(rowOf(table, "State of health").mark), int(ReportMark::Note)); // a finding names it
    QCOMPARE(int(rowOf(table, "Voltage").mark), int(ReportMark::None));
}

void tst_ReportMaker::minutesAreHours_data()
{
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << nbsp("0_min");
    QTest::newRow("less than an hour") << 59 << nbsp("59_min");
    QTest::newRow("an hour") << 60 << nbsp("1.0_h");
    QTest::newRow("some") << 330 << nbsp("5.5_h");
    QTest::newRow("ten hours") << 600 << nbsp("10_h");
    QTest::newRow("many") << 619260 << nbsp("10,321_h");
}

void tst_ReportMaker::minutesAreHours()
{
    QFETCH(int, minutes);
    SnapshotBuilder builder;
    builder.node(2).value(0x6043, 1, ReportExample::DataType::Unsigned32, static_cast<quint32>(minutes));
    ServiceReportData data = ReportExample::data();
    data.snapshot = builder.snapshot();
    const auto table = blockOf<ReportTable>(makeServiceReport(data), "Component by component");
    QTEST(rowOf(table, "Time switched on").cells.value(1), "text");
}

/*! Those of the object table are English, whatever the report's language is. But for the one whose unit there is wrong. */
void tst_ReportMaker::everyValueHasANameOfTheReport()
{
    SnapshotBuilder builder;
    builder.node(2);
    for (int index = 0x6000; index < 0x6800; ++index)
        builder.value(static_cast<quint16>(index), 1, ReportExample::DataType::Unsigned32, 5u);
    ServiceReportData data = ReportExample::data();
    data.snapshot = builder.snapshot();
    const auto table = blockOf<ReportTable>(makeServiceReport(data), "Component by component");
    QStringList names;
    for (const ReportTable::Row &row : table.rows)
        names << row.cells.first();
    QVERIFY(names.contains(s("Operating time since the last start")));
    const QStringList ofTheTable = names.mid(names.indexOf(s("Electric brake position")) + 1);
    QCOMPARE(ofTheTable, QStringList(s("DC-DC converter actual voltage side B")));
}

void tst_ReportMaker::onlyFindingsAreMarked()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.nodes = {*data.snapshot.find(4)};
    auto table = blockOf<ReportTable>(makeServiceReport(data), "Component by component");
    QCOMPARE(rowOf(table, "Voltage").cells.value(1), nbsp("43.15_V"));
    QCOMPARE(int(rowOf(table, "Voltage").mark), int(ReportMark::Warning));
    QCOMPARE(int(rowOf(table, "Temperature of the electronics").mark), int(ReportMark::None));

    // A light here that the verdict does not know would contradict it.
    data.checkup.components[1].findings.clear();
    table = blockOf<ReportTable>(makeServiceReport(data), "Component by component");
    QCOMPARE(int(rowOf(table, "Voltage").mark), int(ReportMark::None));
}

void tst_ReportMaker::temperaturesBelowZero()
{
    ServiceReportData data = ReportExample::data();
    SnapshotBuilder builder;
    builder.node(2)
        .value(0x6105, 1, ReportExample::DataType::Unsigned16, 0xFFEC)
        .raw(0x6123, 1, QByteArray::fromHex("6aff"));
    data.snapshot = builder.snapshot();
    const auto table = blockOf<ReportTable>(makeServiceReport(data), "Component by component");
    QCOMPARE(table.rows.size(), 1);
    QCOMPARE(table.rows.first().cells,
             QStringList({s("Temperature of the battery"), nbsp("-2.00_°C"), nbsp("at least -15.00_°C")}));
}

void tst_ReportMaker::settingsAreNoValues()
{
    const auto table
        = blockOf<ReportTable>(makeServiceReport(ReportExample::data()), "Component by component");
    for (const ReportTable::Row &row : table.rows)
        QVERIFY2(!row.cells.first().contains(s("maximum")), qPrintable(row.cells.first()));
}

void tst_ReportMaker::whatWasNotReadIsNoValue()
{
    const auto table
        = blockOf<ReportTable>(makeServiceReport(ReportExample::data()), "Component by component");
    const ReportTable::Row row = rowOf(table, "Energy given so far");
    QCOMPARE(row.cells.value(1), s("not read"));
    QCOMPARE(int(row.mark), int(ReportMark::NotChecked));
}

void tst_ReportMaker::componentOfWhichNothingWasReadSaysSoOnce()
{
    SnapshotBuilder builder;
    builder.node(9);
    ReportExample::addIdentity(builder, 1, 2, 6, "DX-Pack");
    for (const quint16 index : {quint16(0x603E), quint16(0x6040), quint16(0x6042)})
        builder.gap(index, 1, SnapshotGap::Abort, 0x08000000);
    ServiceReportData data = ReportExample::data();
    data.trends.clear();
    data.snapshot = builder.snapshot();
    data.checkup.components = {{9, s("Battery Pack"), ComponentState::NotChecked, {}, {}}};
    const ServiceReport unread = makeServiceReport(data);
    QCOMPARE(blockOf<ReportParagraph>(unread, "Component by component").text,
             s("None of its values could be read."));
    QVERIFY(blockOf<ReportTable>(unread, "Component by component").rows.isEmpty());
    QCOMPARE(blockOf<ReportTable>(unread, "What was not read").rows.size(), 1);

    builder.value(0x6042, 1, CanOpen::DataType::Integer16, 200);
    data.snapshot = builder.snapshot();
    QCOMPARE(blockOf<ReportTable>(makeServiceReport(data), "Component by component").rows.size(), 3);
}

void tst_ReportMaker::cellsAreSaidInWords()
{
    const auto picture
        = blockOf<ReportPicture>(makeServiceReport(ReportExample::data()), "Component by component");
    QCOMPARE(picture.title, s("Cell voltages"));
    QCOMPARE(picture.words, nbsp("Lowest 2.910_V (cell 7), highest 3.711_V (cell 3), difference 801 mV.\n"
                                 "The battery allows 3.000_V to 4.200_V (dashed lines).\n"
                                 "Outside of that: cell 7.\n"
                                 "Not read: cell 10."));
    QVERIFY(!picture.drawing.items.isEmpty());
}

/*! As the check-up judges them. A limit that is there and could not be read is not known. */
void tst_ReportMaker::packsWithoutLimitsHaveThoseOfTheFirst()
{
    using ReportExample::DataType;
    SnapshotBuilder builder;
    builder.node(2)
        .value(0x6126, 1, DataType::Integer32, 4200)
        .value(0x6127, 1, DataType::Integer32, 3000)
        .gap(0x6127, 3, SnapshotGap::NoAnswer)
        .value(0x6166, 1, DataType::Unsigned16, 2900)
        .value(0x6167, 1, DataType::Unsigned16, 2900);
    const Snapshot snapshot = builder.snapshot();
    const QVector<CellVoltages> packs = CellVoltages::of(*snapshot.find(2));
    QCOMPARE(packs.size(), 2);
    QCOMPARE(packs.at(0).pack, 2);
    QCOMPARE(packs.at(0).lowestAllowed.value_or(0), 3000.0);
    QCOMPARE(packs.at(0).highestAllowed.value_or(0), 4200.0);
    QVERIFY(packs.at(0).isOutside(packs.at(0).cells.first()));
    QCOMPARE(packs.at(1).pack, 3);
    QVERIFY(!packs.at(1).lowestAllowed);
    QCOMPARE(packs.at(1).highestAllowed.value_or(0), 4200.0);
}

void tst_ReportMaker::healthIsSaidInWords()
{
    const auto picture
        = blockOf<ReportPicture>(makeServiceReport(ReportExample::data()), "Component by component", 1);
    QCOMPARE(picture.title, s("State of health over the visits"));
    QCOMPARE(picture.words, nbsp("98.0_% on 4 March 2025, 88.0_% on 3 September 2026."));
    ServiceReportData data = ReportExample::data();
    data.trends.first().points.clear();
    QVERIFY(blockOf<ReportPicture>(makeServiceReport(data), "Component by component", 1).title.isEmpty());
}

void tst_ReportMaker::missingVisitsAreSaid()
{
    ServiceReportData data = ReportExample::data();
    data.trends.first().damagedVisits = 2;
    QCOMPARE(blockOf<ReportParagraph>(makeServiceReport(data), "Component by component", 0).text,
             s("Number of visits that are missing, as they are damaged in the archive: 2."));
    QCOMPARE(blockOf<ReportPicture>(makeServiceReport(data), "Component by component", 1).title,
             s("State of health over the visits"));
    // Also where there is nothing to draw.
    data.trends.first().points.resize(1);
    data.trends.first().damagedVisits = 0;
    data.trends.first().isArchiveUnread = true;
    QCOMPARE(blockOf<ReportParagraph>(makeServiceReport(data), "Component by component", 0).text,
             s("State of health over the visits: Earlier visits may be missing, as the archive could not be "
               "read."));
    QVERIFY(blockOf<ReportPicture>(makeServiceReport(data), "Component by component", 1).title.isEmpty());
}

void tst_ReportMaker::unreadObjectsAreGroupedByReason()
{
    ServiceReportData data = ReportExample::data();
    SnapshotBuilder builder;
    builder.node(9).gap(0x6165, 1, SnapshotGap::NoAnswer);
    for (const int subIndex : {2, 3, 5})
        builder.gap(0x6165, quint8(subIndex), SnapshotGap::NoAnswer);
    builder.gap(0x6176, 1, SnapshotGap::Stopped).gap(0x6177, 1, SnapshotGap::Absent);
    data.snapshot = builder.snapshot();
    const auto rows = blockOf<ReportTable>(makeServiceReport(data), "What was not read").rows;
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(0).cells, QStringList({s("Device (node 9)"), s("The device did not answer."), s("4"),
                                            s("Battery pack 1 actual cell voltage (6165h.1–3, 5)")}));
    QCOMPARE(rows.at(1).cells.value(3), s("Battery pack SOH (6176h.1)"));
}

void tst_ReportMaker::nothingFoundIsSaid()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.nodes = {*data.snapshot.find(1)};
    data.checkup = CheckupResult();
    data.checkup.verdict = Verdict::Ok;
    data.checkup.components = {{1, s("Draxel Controller"), ComponentState::Good, {}, {}}};
    const ServiceReport report = makeServiceReport(data);
    QCOMPARE(report.verdictSentence, s("Nothing was found, and all components were checked."));
    QCOMPARE(blockOf<ReportParagraph>(report, "What was found").text, s("Nothing was found."));
    QVERIFY(findSection(report, "What could not be checked") == nullptr);
    QCOMPARE(blockOf<ReportParagraph>(report, "What was not read").text,
             s("Everything that was asked for was answered."));
}

void tst_ReportMaker::emptySnapshot()
{
    ServiceReportData data;
    data.locale = QLocale::c();
    const ServiceReport report = makeServiceReport(data);
    QCOMPARE(int(report.verdict), int(ReportMark::NotChecked));
    const QString nobody = s("No component was heard.");
    QCOMPARE(report.verdictSentence, nobody);
    for (const char *section : {"Components", "What was found", "What was not read"})
        QCOMPARE(blockOf<ReportParagraph>(report, section).text, nobody);
}

void tst_ReportMaker::longTextsAreCut()
{
    ServiceReportData data = ReportExample::data();
    data.snapshot.notes.vehicle = HostileText::veryLong();
    data.snapshot.notes.note = HostileText::veryLong();
    data.checkup.components[0].name = HostileText::veryLong();
    data.checkup.components[0].findings[0].text = HostileText::veryLong();
    for (const QString &text : ReportTexts::of(makeServiceReport(data)))
        QVERIFY2(text.size() <= 4001, qPrintable(text.left(50)));
}

void tst_ReportMaker::numbersFollowTheLanguage()
{
    const ServiceReport report = makeServiceReport(ReportExample::data(QLocale(QLocale::German)));
    const auto table = blockOf<ReportTable>(report, "Component by component");
    QCOMPARE(rowOf(table, "Voltage").cells.value(1), nbsp("39,31_V"));
}

QTEST_GUILESS_MAIN(tst_ReportMaker)
#include "tst_reportmaker.moc"
