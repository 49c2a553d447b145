// SPDX-License-Identifier: MIT
#include "translationfile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <algorithm>

/*! The translations: complete, of the sources as they are, and without harm to what the texts are glued into. */
class tst_Languages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void languagesOfBothFamilies();
    void everyRoomIsRead();
    void everyTextIsFinished_data() { addFiles(); }
    void everyTextIsFinished();
    void contexts_data();
    void contexts();
    void textsAreTheSameInAllLanguages_data() { addFamilies(); }
    void textsAreTheSameInAllLanguages();
    void placeholdersAreKept_data() { addFiles(); }
    void placeholdersAreKept();
    void whiteSpaceIsKept_data() { addFiles(); }
    void whiteSpaceIsKept();
    void joiningSignsAreKept_data() { addFiles(); }
    void joiningSignsAreKept();
    void noMarkupComesIn_data() { addFiles(); }
    void noMarkupComesIn();
    void mnemonicsAreKept_data();
    void mnemonicsAreKept();
    void mnemonicsAreDistinct_data();
    void mnemonicsAreDistinct();
    void fileFormatIsNotTranslated_data() { addFiles(); }
    void fileFormatIsNotTranslated();
    void fileNamePatternIsKept();
    void onlyNamesStayAsTheyAre_data() { addFiles(); }
    void onlyNamesStayAsTheyAre();
    void writtenInItsLanguage_data() { addFiles(); }
    void writtenInItsLanguage();
    void glossaryIsKept_data();
    void glossaryIsKept();
    void untranslatedTextsAreInNoFile_data();
    void untranslatedTextsAreInNoFile();
    void pluralsHaveEnglishForms_data() { addFamilies(); }
    void pluralsHaveEnglishForms();
    void builtFileHoldsEveryText_data() { addFiles(); }
    void builtFileHoldsEveryText();
    void filesAreUpToDate_data() { addFiles(); }
    void filesAreUpToDate();

private:
    using Messages = QVector<TranslationMessage>;

    void addFiles();
    void addFamilies();
    Messages messages() const;

    QHash<QString, Messages> m_messages; // of the files' names without their suffix
    QTemporaryDir m_updated;             // what languages/update makes of the files
    QString m_updateError;
};

namespace {

const QStringList families{QStringLiteral("pl_overview"), QStringLiteral("draxel")};
const QStringList languages{QStringLiteral("de"), QStringLiteral("fr"), QStringLiteral("nl"),
                            QStringLiteral("zh_CN")};

QString sourceFolder()
{
    return QStringLiteral(OVERVIEW_SOURCE_DIR "/languages/");
}

/*! The texts with a line break shown as such. */
QString shown(QString text)
{
    return QLatin1Char('"') + text.replace(QLatin1Char('\n'), QLatin1String("\\n")) + QLatin1Char('"');
}

/*! One line for each text that does not hold what \a rule asks for. */
template<typename Rule>
QString violations(const QVector<TranslationMessage> &messages, Rule rule)
{
    QStringList lines;
    for (const TranslationMessage &message : messages) {
        for (const QString &translation : message.translations) {
            if (!rule(message.source, translation))
                lines.append(message.context + QLatin1String(": ") + shown(message.source)
                             + QLatin1String(" -> ") + shown(translation));
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QStringList keys(const QVector<TranslationMessage> &messages)
{
    QStringList list;
    for (const TranslationMessage &message : messages)
        list.append(message.key());
    list.sort();
    return list;
}

/*! The lines of \a list that are not in \a other. */
QStringList without(QStringList list, const QStringList &other)
{
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&other](const QString &line) { return other.contains(line); }),
               list.end());
    return list;
}

QStringList placeholders(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("%(?:L?[0-9]{1,2}|L?n)"));
    QStringList found;
    QRegularExpressionMatchIterator matches = pattern.globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    found.sort();
    return found;
}

QString leadingSpace(const QString &text)
{
    const auto end = std::find_if(text.begin(), text.end(), [](QChar c) { return !c.isSpace(); });
    return text.left(static_cast<int>(end - text.begin()));
}

QString trailingSpace(const QString &text)
{
    const auto begin = std::find_if(text.rbegin(), text.rend(), [](QChar c) { return !c.isSpace(); });
    return text.right(static_cast<int>(begin - text.rbegin()));
}

int occurrences(const QString &text, const QRegularExpression &pattern)
{
    int count = 0;
    for (QRegularExpressionMatchIterator matches = pattern.globalMatch(text); matches.hasNext();
         matches.next())
        ++count;
    return count;
}

} // namespace

void tst_Languages::initTestCase()
{
    for (const QString &family : families) {
        for (const QString &language : languages) {
            const QString name = family + QLatin1Char('_') + language;
            QString error;
            const Messages messages
                = readTranslationFile(sourceFolder() + name + QStringLiteral(".ts"), &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QVERIFY2(!messages.isEmpty(), qPrintable(name));
            m_messages.insert(name, messages);
        }
    }

    QVERIFY(m_updated.isValid());
    QProcess update;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LUPDATE"), QStringLiteral(OVERVIEW_LUPDATE));
    update.setProcessEnvironment(environment);
    update.start(QStringLiteral("bash"),
                 {sourceFolder() + QStringLiteral("update"), QStringLiteral("--into"), m_updated.path()});
    QVERIFY2(update.waitForFinished(60000), qPrintable(update.errorString()));
    QVERIFY2(update.exitCode() == 0, update.readAllStandardError().constData());
}

void tst_Languages::everyRoomIsRead()
{
    // The command line speaks English where it does not pass on what the window says as well.
    const QStringList english{QStringLiteral("cli"), QStringLiteral("doctor")};
    QFile update(sourceFolder() + QStringLiteral("update"));
    QVERIFY(update.open(QIODevice::ReadOnly));
    const QString script = QString::fromUtf8(update.readAll()) + QLatin1Char(' ');
    const QRegularExpression text(QStringLiteral("\\btr\\(\\s*\"|QT_TRANSLATE_NOOP"));
    const QDir rooms(QStringLiteral(OVERVIEW_SOURCE_DIR "/src"));
    for (const QString &room : rooms.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool hasTexts = false;
        QDirIterator files(rooms.filePath(room), {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext() && !hasTexts) {
            QFile source(files.next());
            QVERIFY(source.open(QIODevice::ReadOnly));
            hasTexts = text.match(QString::fromUtf8(source.readAll())).hasMatch();
        }
        const bool isRead = script.contains(QRegularExpression(QStringLiteral("src/%1\\s").arg(room)));
        QVERIFY2(isRead || !hasTexts || english.contains(room), qPrintable(room));
    }
}

void tst_Languages::addFamilies()
{
    QTest::addColumn<QString>("family");
    for (const QString &family : families)
        QTest::newRow(qPrintable(family)) << family;
}

void tst_Languages::addFiles()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("language");
    for (const QString &family : families) {
        for (const QString &language : languages)
            QTest::newRow(qPrintable(family + QLatin1Char('_') + language)) << family << language;
    }
}

/*! The texts of the row's file. */
tst_Languages::Messages tst_Languages::messages() const
{
    return m_messages.value(QString::fromUtf8(QTest::currentDataTag()));
}

void tst_Languages::languagesOfBothFamilies()
{
    QStringList expected;
    for (const QString &name : m_messages.keys())
        expected.append(name + QStringLiteral(".ts"));
    QStringList found = QDir(sourceFolder()).entryList({QStringLiteral("*.ts")});
    found.removeAll(QStringLiteral("pl_overview_en.ts"));
    found.removeAll(QStringLiteral("draxel_en.ts"));
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
}

void tst_Languages::everyTextIsFinished()
{
    QStringList lines;
    for (const TranslationMessage &message : messages()) {
        const int forms = message.hasNumber && QTest::currentDataTag() != QByteArray("draxel_zh_CN")
                                  && QTest::currentDataTag() != QByteArray("pl_overview_zh_CN")
                              ? 2
                              : 1;
        if (!message.type.isEmpty() || message.translations.size() != forms
            || message.translations.contains(QString()))
            lines.append(message.type + QLatin1Char(' ') + message.key());
    }
    QVERIFY2(lines.isEmpty(), qPrintable(lines.join(QLatin1Char('\n'))));
}

void tst_Languages::contexts_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("plug-in") << QStringLiteral("pl_overview")
                             << QStringList{QStringLiteral("ComponentUpdateChecker"),
                                            QStringLiteral("DataInterpreter"),
                                            QStringLiteral("DataReader"),
                                            QStringLiteral("ExchangeFile"),
                                            QStringLiteral("OverviewForm"),
                                            QStringLiteral("pdfWriter")};
    QTest::newRow("host") << QStringLiteral("draxel")
                          << QStringList{QStringLiteral("AddValueDialog"),
                                         QStringLiteral("Archive"),
                                         QStringLiteral("ArchiveAddress"),
                                         QStringLiteral("ArchiveAddressDialog"),
                                         QStringLiteral("ArchiveBrowser"),
                                         QStringLiteral("ArchiveDatabase"),
                                         QStringLiteral("ArchivePage"),
                                         QStringLiteral("ArchiveSchema"),
                                         QStringLiteral("ArchiveTransfer"),
                                         QStringLiteral("BackgroundRecording"),
                                         QStringLiteral("BatteryOffer"),
                                         QStringLiteral("BatteryQuestions"),
                                         QStringLiteral("BatteryView"),
                                         QStringLiteral("BusAddress"),
                                         QStringLiteral("BusConnection"),
                                         QStringLiteral("BusOpener"),
                                         QStringLiteral("BusReport"),
                                         QStringLiteral("BundleDialog"),
                                         QStringLiteral("BundleFile"),
                                         QStringLiteral("BundleFiles"),
                                         QStringLiteral("BundleManifest"),
                                         QStringLiteral("BundleReading"),
                                         QStringLiteral("BundleWriting"),
                                         QStringLiteral("BusSettings"),
                                         QStringLiteral("BusWords"),
                                         QStringLiteral("CanOpen"),
                                         QStringLiteral("CanOpen::CanPort"),
                                         QStringLiteral("CellBars"),
                                         QStringLiteral("ChangeModel"),
                                         QStringLiteral("ChangeSummary"),
                                         QStringLiteral("Checkup"),
                                         QStringLiteral("CheckupFiles"),
                                         QStringLiteral("CheckupPage"),
                                         QStringLiteral("CheckupSession"),
                                         QStringLiteral("CheckupWords"),
                                         QStringLiteral("CommunicationNames"),
                                         QStringLiteral("CommunicationValues"),
                                         QStringLiteral("ComparisonDialog"),
                                         QStringLiteral("ComponentDetails"),
                                         QStringLiteral("ComponentGaps"),
                                         QStringLiteral("ComponentModel"),
                                         QStringLiteral("ComponentText"),
                                         QStringLiteral("ConnectionBar"),
                                         QStringLiteral("CopyTable"),
                                         QStringLiteral("DatabaseWords"),
                                         QStringLiteral("DeviceFiles"),
                                         QStringLiteral("DeviceIdentity"),
                                         QStringLiteral("DraxelHost"),
                                         QStringLiteral("EntryModel"),
                                         QStringLiteral("EventMessages"),
                                         QStringLiteral("EventModel"),
                                         QStringLiteral("EventView"),
                                         QStringLiteral("EventReading"),
                                         QStringLiteral("EventWords"),
                                         QStringLiteral("ExpressionParser"),
                                         QStringLiteral("FailedObject"),
                                         QStringLiteral("FilterBar"),
                                         QStringLiteral("FilterInput"),
                                         QStringLiteral("FindBar"),
                                         QStringLiteral("FrameDetails"),
                                         QStringLiteral("FrameParts"),
                                         QStringLiteral("FrameWords"),
                                         QStringLiteral("HealthJudgement"),
                                         QStringLiteral("HealthRows"),
                                         QStringLiteral("HelpBoxes"),
                                         QStringLiteral("HostMenus"),
                                         QStringLiteral("JsonDocument"),
                                         QStringLiteral("JsonObject"),
                                         QStringLiteral("KindMenu"),
                                         QStringLiteral("LightStrip"),
                                         QStringLiteral("LiveFile"),
                                         QStringLiteral("LivePage"),
                                         QStringLiteral("LiveQuestions"),
                                         QStringLiteral("LiveValues"),
                                         QStringLiteral("MainWindow"),
                                         QStringLiteral("MessageLog"),
                                         QStringLiteral("MessagePanel"),
                                         QStringLiteral("NotesDialog"),
                                         QStringLiteral("NumbersDialog"),
                                         QStringLiteral("ObjectChange"),
                                         QStringLiteral("OrdinaryFile"),
                                         QStringLiteral("PatienceDialog"),
                                         QStringLiteral("PdoWords"),
                                         QStringLiteral("PlaybackAddress"),
                                         QStringLiteral("PlaybackBar"),
                                         QStringLiteral("PlotView"),
                                         QStringLiteral("PluginLibrary"),
                                         QStringLiteral("PluginSession"),
                                         QStringLiteral("ReadWords"),
                                         QStringLiteral("ReportFiles"),
                                         QStringLiteral("RuleReading"),
                                         QStringLiteral("RuleSet"),
                                         QStringLiteral("SavedVehicle"),
                                         QStringLiteral("ServiceReport"),
                                         QStringLiteral("ServiceReportDialog"),
                                         QStringLiteral("ServiceReportFiles"),
                                         QStringLiteral("ShareSetting"),
                                         QStringLiteral("SheetDialogs"),
                                         QStringLiteral("ShownVehicle"),
                                         QStringLiteral("SimulatedBus"),
                                         QStringLiteral("Simulator::SimulatedCanDevice"),
                                         QStringLiteral("SnapshotComparison"),
                                         QStringLiteral("SnapshotFile"),
                                         QStringLiteral("SnapshotReading"),
                                         QStringLiteral("SnapshotWords"),
                                         QStringLiteral("StatusLine"),
                                         QStringLiteral("SystemErrorText"),
                                         QStringLiteral("TextTemplate"),
                                         QStringLiteral("TraceCanDevice"),
                                         QStringLiteral("TraceExport"),
                                         QStringLiteral("TraceFile"),
                                         QStringLiteral("TraceFolder"),
                                         QStringLiteral("TraceLines"),
                                         QStringLiteral("TraceModel"),
                                         QStringLiteral("TracePage"),
                                         QStringLiteral("TraceRecorder"),
                                         QStringLiteral("TraceRecording"),
                                         QStringLiteral("TraceSession"),
                                         QStringLiteral("TraceTimes"),
                                         QStringLiteral("TraceToolbar"),
                                         QStringLiteral("TransferWords"),
                                         QStringLiteral("TrendValues"),
                                         QStringLiteral("ValueAsking"),
                                         QStringLiteral("ValueText"),
                                         QStringLiteral("VehicleFiles"),
                                         QStringLiteral("VehicleModel"),
                                         QStringLiteral("VehicleTable"),
                                         QStringLiteral("VisitModel"),
                                         QStringLiteral("VisitRows"),
                                         QStringLiteral("VisitTable"),
                                         QStringLiteral("WaitingVisits"),
                                         QStringLiteral("WatchModel"),
                                         QStringLiteral("WatchView"),
                                         QStringLiteral("WorkshopSettings"),
                                         QStringLiteral("ZipFile")};
}

void tst_Languages::contexts()
{
    QFETCH(QString, family);
    QFETCH(QStringList, expected);

    for (const QString &language : languages) {
        QStringList found;
        for (const TranslationMessage &message : m_messages.value(family + QLatin1Char('_') + language))
            found.append(message.context);
        found.removeDuplicates();
        found.sort();
        expected.sort();
        QVERIFY2(found == expected,
                 qPrintable(QStringLiteral("%1: not expected: %2; missing: %3")
                                .arg(language, without(found, expected).join(QLatin1Char(' ')),
                                     without(expected, found).join(QLatin1Char(' ')))));
    }
}

void tst_Languages::textsAreTheSameInAllLanguages()
{
    QFETCH(QString, family);

    const QStringList german = keys(m_messages.value(family + QStringLiteral("_de")));
    QCOMPARE(QSet<QString>(german.begin(), german.end()).size(), german.size());
    for (const QString &language : languages) {
        const QStringList other = keys(m_messages.value(family + QLatin1Char('_') + language));
        QVERIFY2(other == german,
                 qPrintable(language + QLatin1Char('\n')
                            + (without(german, other) + without(other, german)).join(QLatin1Char('\n'))));
    }
}

void tst_Languages::placeholdersAreKept()
{
    const QString found = violations(messages(), [](const QString &source, const QString &translation) {
        return placeholders(source) == placeholders(translation);
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::whiteSpaceIsKept()
{
    const QString found = violations(messages(), [](const QString &source, const QString &translation) {
        return leadingSpace(source) == leadingSpace(translation)
               && trailingSpace(source) == trailingSpace(translation)
               && source.count(QLatin1Char('\n')) == translation.count(QLatin1Char('\n'));
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::joiningSignsAreKept()
{
    // The next text follows at once.
    const QString found = violations(messages(), [](const QString &source, const QString &translation) {
        return source.endsWith(QLatin1Char(',')) == translation.endsWith(QLatin1Char(','));
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::noMarkupComesIn()
{
    // The report takes the texts as HTML: "<25" is text there, "<b" is not.
    static const QRegularExpression tag(QStringLiteral("<[/!?A-Za-z]|&[#A-Za-z]"));
    const QString found = violations(messages(), [](const QString &source, const QString &translation) {
        return occurrences(translation, tag) <= occurrences(source, tag);
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::mnemonicsAreKept_data()
{
    // The plug-in's texts have none, and a "&" there is one.
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("language");
    for (const QString &language : languages) {
        QTest::newRow(qPrintable(QStringLiteral("draxel_") + language))
            << QStringLiteral("draxel") << language;
    }
}

void tst_Languages::mnemonicsAreKept()
{
    static const QRegularExpression mnemonic(QStringLiteral("&[^& ]"));
    const QString found = violations(messages(), [](const QString &source, const QString &translation) {
        return occurrences(translation, mnemonic) == occurrences(source, mnemonic);
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::mnemonicsAreDistinct_data()
{
    QTest::addColumn<QStringList>("sources"); // that are shown together

    const auto row = [](const char *name, std::initializer_list<const char *> sources) {
        QStringList list;
        for (const char *source : sources)
            list.append(QString::fromUtf8(source));
        QTest::newRow(name) << list;
    };
    row("window",
        {"HostMenus/&File", "HostMenus/B&us", "HostMenus/&View", "HostMenus/&Language", "HostMenus/&Help",
         "ConnectionBar/&Back end:", "ConnectionBar/&Interface:", "ConnectionBar/Bit &rate:"});
    row("file menu",
        {"HostMenus/&Open saved file...", "HostMenus/Open re&cent file", "HostMenus/&Export...",
         "HostMenus/Save &PDF report", "CheckupPage/&Save check-up...", "CheckupPage/Service &report...",
         "HostMenus/Save support &bundle...", "HostMenus/&Quit"});
    row("question before values go", {"VehicleFiles/&Save...", "VehicleFiles/&Do not save"});
    row("bus menu", {"HostMenus/&Connect", "HostMenus/&Disconnect", "HostMenus/Re&fresh interfaces",
                     "CheckupPage/Chec&k-up", "HostMenus/&Read all data", "HostMenus/Ca&ncel read",
                     "HostMenus/&Patience with slow nodes..."});
    row("page of traces",
        {"HostMenus/&File", "HostMenus/B&us", "HostMenus/&View", "HostMenus/&Language", "HostMenus/&Help",
         "ConnectionBar/&Back end:", "ConnectionBar/&Interface:", "ConnectionBar/Bit &rate:",
         "TraceToolbar/● Recor&d...", "TraceToolbar/&Save last 10 min...", "TraceToolbar/O&pen...",
         "TraceToolbar/Liv&e", "FilterBar/Only what is &wrong", "TracePage/&Copy", "TracePage/E&xport...",
         "TracePage/Eve&nts", "TracePage/F&ollow"});
    row("page of traces while it records",
        {"HostMenus/&File", "HostMenus/B&us", "HostMenus/&View", "HostMenus/&Language", "HostMenus/&Help",
         "ConnectionBar/&Back end:", "ConnectionBar/&Interface:", "ConnectionBar/Bit &rate:",
         "TraceToolbar/■ Stop recor&ding", "TraceToolbar/&Save last 10 min...", "TraceToolbar/O&pen...",
         "TraceToolbar/Liv&e", "FilterBar/Only what is &wrong", "TracePage/&Copy", "TracePage/E&xport...",
         "TracePage/Eve&nts", "TracePage/F&ollow"});
    row("menu of recordings", {"TraceToolbar/Record to one &file", "TraceToolbar/A new file every %1 &MB",
                               "TraceToolbar/A new file every %n m&inute(s)"});
    row("support bundle",
        {"BundleDialog/&Mask serial numbers, names, notes and paths", "BundleDialog/&Save..."});
    row("view menu",
        {"HostMenus/&Overview", "HostMenus/&Check-up page", "HostMenus/&Live", "HostMenus/&Trace",
         "HostMenus/&Archive", "MainWindow/&Messages", "HostMenus/&Reset layout"});
    row("help menu", {"HostMenus/&Key list", "HostMenus/&About Draxel", "HostMenus/About &Qt"});
    row("patience", {"PatienceDialog/&Time-out:", "PatienceDialog/&Repeats:",
                     "PatienceDialog/Nodes with a patience of their &own:", "PatienceDialog/&Add node",
                     "PatienceDialog/Re&move node", "PatienceDialog/&Defaults"});
}

void tst_Languages::mnemonicsAreDistinct()
{
    QFETCH(QStringList, sources);

    QStringList english;
    for (const QString &source : qAsConst(sources))
        english.append(source.mid(source.indexOf(QLatin1Char('&')) + 1, 1).toUpper());
    QVERIFY2(english.removeDuplicates() == 0,
             qPrintable(QStringLiteral("en ") + english.join(QLatin1Char(' '))));

    for (const QString &language : languages) {
        QStringList letters;
        for (const TranslationMessage &message : m_messages.value(QStringLiteral("draxel_") + language)) {
            if (!sources.contains(message.context + QLatin1Char('/') + message.source))
                continue;
            const QString &translation = message.translations.first();
            letters.append(translation.mid(translation.indexOf(QLatin1Char('&')) + 1, 1).toUpper());
        }
        QCOMPARE(letters.size(), sources.size());
        QVERIFY2(letters.removeDuplicates() == 0,
                 qPrintable(language + QLatin1Char(' ') + letters.join(QLatin1Char(' '))));
    }
}

void tst_Languages::fileFormatIsNotTranslated()
{
    QFETCH(QString, family);
    const QString line = QStringLiteral("            <object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />\n");

    int found = 0;
    for (const TranslationMessage &message : messages()) {
        if (message.context != QLatin1String("DataReader"))
            continue;
        QCOMPARE(message.source, line);
        QCOMPARE(message.translations, QStringList{line});
        QVERIFY(message.translatorComment.contains(QLatin1String("exchange file")));
        ++found;
    }
    QCOMPARE(found, family == QLatin1String("pl_overview") ? 1 : 0);
}

void tst_Languages::fileNamePatternIsKept()
{
    for (const QString &language : languages) {
        int found = 0;
        for (const TranslationMessage &message :
             m_messages.value(QStringLiteral("pl_overview_") + language)) {
            if (message.source == QLatin1String("Draxel Tool XML files (*.dxxml)")) {
                QVERIFY2(message.translations.first().endsWith(QLatin1String(" (*.dxxml)")),
                         qPrintable(message.translations.first()));
                ++found;
            }
        }
        QCOMPARE(found, 1);
    }
}

void tst_Languages::onlyNamesStayAsTheyAre()
{
    QFETCH(QString, family);
    QFETCH(QString, language);

    struct EqualText
    {
        const char *family;
        const char *languages;
        const char *text;
    };
    static const EqualText equalTexts[] = {
        {"pl_overview", "de fr nl zh_CN", "%1,"},
        {"pl_overview", "de fr nl zh_CN", "%1 s"},
        {"pl_overview", "de fr nl zh_CN", "%1 A"},
        {"pl_overview", "de fr nl zh_CN", "%1 Ah"},
        {"pl_overview", "de fr nl zh_CN", "%1 Wh"},
        {"pl_overview", "de fr nl zh_CN", "%1 Hz"},
        {"pl_overview", "de fr nl zh_CN", "%1 Ohm"},
        {"pl_overview", "de fr nl zh_CN", "%1 V"},
        {"pl_overview", "de fr nl zh_CN", "%1 m"},
        {"pl_overview", "de fr nl zh_CN", "%1 mm"},
        {"pl_overview", "de fr nl zh_CN", "%1 N"},
        {"pl_overview", "de fr nl zh_CN", "%1 Nm"},
        {"pl_overview", "de fr zh_CN", "%1 km/h"},
        {"pl_overview", "fr", "%1 bpm"},
        {"pl_overview", "de fr nl zh_CN", "%1 %"},
        {"pl_overview", "de fr nl zh_CN", "%1 °C"},
        {"pl_overview", "de fr nl zh_CN", "%1 °C/min"},
        {"pl_overview", "fr", "%1 minutes"},
        {"pl_overview", "de fr nl zh_CN",
         "            <object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />\n"},
        {"pl_overview", "de fr nl zh_CN", " VDN "},
        {"pl_overview", "nl", " sensor "},
        {"pl_overview", "fr nl", "Scooter"},
        {"pl_overview", "fr nl", "Robot"},
        // The names of the NMT states, as they are said in German and Dutch too.
        {"pl_overview", "de nl", "Boot-up"},
        {"pl_overview", "de nl", "Pre-Op"},
        {"pl_overview", "de nl", "Operational"},
        {"pl_overview", "de nl", "Stopped"},
        {"draxel", "de fr nl zh_CN", "%1 %2"},
        {"draxel", "de fr nl zh_CN", "%1 ms"},
        {"draxel", "de fr nl zh_CN", "%1 µs"},
        {"draxel", "fr", "Trace %1"},
        {"draxel", "de fr nl", "%1, %2 (%3)"},
        {"draxel", "fr nl", "%1, pack %2"},
        {"draxel", "de fr nl", "Bus"},
        {"draxel", "de nl", "Firmware"},
        {"draxel", "de", "Revision"},
        {"draxel", "fr", "Date"},
        {"draxel", "fr nl", "d MMMM yyyy"},
        {"draxel", "nl", "Component"},
        {"draxel", "nl", "Product"},
        {"draxel", "nl", "node %1"},
        {"draxel", "de fr nl zh_CN", "%1 bit/s"},
        {"draxel", "de fr nl zh_CN", "%1 kbit/s"},
        {"draxel", "de fr nl zh_CN", "Draxel %1"},
        {"draxel", "de nl", "Stopped"},
        {"draxel", "de nl", "Operational"},
        {"draxel", "de nl", "Pre-operational"},
        {"draxel", "de nl", "Plug-ins: %1"},
        {"draxel", "de nl", "Frames: %1/s"},
        {"draxel", "de", "&System"},
        {"draxel", "fr", "Message"},
        {"draxel", "fr", "Messages"},
        {"draxel", "fr", "&Messages"},
        {"draxel", "nl", "&Interface:"},
        {"draxel", "nl", "B&us"},
        {"draxel", "nl", "&Help"},
        {"draxel", "nl", "%1 (node %2)"},
        {"draxel", "nl", "Node"},
        {"draxel", "nl", "Nodes: %1"},
        {"draxel", "fr", "communication"},
        {"draxel", "nl", "hardware"},
        {"draxel", "nl", "software"},
        {"draxel", "de nl", "%1: %2"},
        {"draxel", "de nl", "Bytes"},
        {"draxel", "fr", "&Archive"},
        {"draxel", "fr", "Archive"},
        {"draxel", "fr", "&Notes..."},
        {"draxel", "fr", "Note"},
        {"draxel", "fr", "Firmware"},
        {"draxel", "nl", "%1 (node %2): %3"},
        {"draxel", "nl", "%1, node %2"},
        {"draxel", "nl", "Object"},
        {"draxel", "nl", "software %1"},
        {"draxel", "de nl", "Emergency %1h: %2."},
        {"draxel", "nl", "Node %1: %2"},
        {"draxel", "nl", "Node %1, PDO %2: %3"},
        {"draxel", "nl", "Node %1, object %2: %3"},
        {"draxel", "de fr nl zh_CN", "JSON (*.json)"},
        {"draxel", "de fr nl zh_CN", "SYNC"},
        {"draxel", "de nl zh_CN", "%1 %"},
        {"draxel", "de nl zh_CN", "%1 s"},
        {"draxel", "de nl", "1 h"},
        {"draxel", "de nl", "1 min"},
        {"draxel", "de nl", "5 min"},
        {"draxel", "de nl zh_CN", "SDO 95 %"},
        {"draxel", "de nl", "&Live"},
        {"draxel", "de nl", "Live"},
        {"draxel", "de nl", "Frames"},
        {"draxel", "de fr nl", "Heartbeat"},
        {"draxel", "de fr nl", "Heartbeats"},
        {"draxel", "de", "Name"},
        {"draxel", "nl", "Jitter"},
        {"draxel", "nl", "%1, node %2, object %3"},
        {"draxel", "nl", "Node %1"},
        {"draxel", "de fr nl", "%1, %2"},
        {"draxel", "de nl", "%1; %2"},
        {"draxel", "de nl", "Boot-up"},
        {"draxel", "de nl zh_CN", "PDO %1: %2"},
        {"draxel", "de fr nl zh_CN", "SDO"},
        {"draxel", "de fr nl zh_CN", "SYNC %1"},
        {"draxel", "fr", "heartbeat"},
        {"draxel", "fr", "segment %1"},
        {"draxel", "nl", "%1 ... (%2 bytes)"},
        {"draxel", "nl", "%1 frames"},
        {"draxel", "nl", "1 frame"},
        {"draxel", "nl", "frame %1: %2"},
        {"draxel", "nl", "heartbeat"},
        {"draxel", "nl", "heartbeat: %1"},
        {"draxel", "nl", "object %1"},
        {"draxel", "nl", "object %1: %2"},
        {"draxel", "nl", "segment %1"},
        {"draxel", "de fr nl zh_CN", "%1\u00D7"},
        {"draxel", "zh_CN", "bundle.zip"},
        {"draxel", "de fr nl", "%1 (%2)"},
        {"draxel", "nl zh_CN", "%1 M"},
        {"draxel", "nl zh_CN", "%1 k"},
        {"draxel", "de nl zh_CN", "%1 min %2 s"},
        {"draxel", "de nl", "Frame %1"},
        {"draxel", "de fr", "Synchronisation (SYNC)"},
        {"draxel", "fr", "&Trace"},
        {"draxel", "fr", "Trace"},
        {"draxel", "fr", "Traces (%1)"},
        {"draxel", "de nl", "Lo&go:"},
        {"draxel", "nl", "Nodes"},
        {"draxel", "nl", "byte %1"},
        {"draxel", "nl", "node %1, %2 ms"},
    };

    QStringList expected;
    for (const EqualText &row : equalTexts) {
        if (family == QLatin1String(row.family)
            && QString::fromLatin1(row.languages).split(QLatin1Char(' ')).contains(language))
            expected.append(shown(QString::fromUtf8(row.text)));
    }
    QStringList found;
    for (const TranslationMessage &message : messages()) {
        if (message.translations.contains(message.source))
            found.append(shown(message.source));
    }
    found.removeDuplicates();
    expected.sort();
    found.sort();
    QVERIFY2(found == expected, qPrintable(QStringLiteral("not translated: %1\nno longer equal: %2")
                                               .arg(without(found, expected).join(QLatin1Char('\n')),
                                                    without(expected, found).join(QLatin1Char('\n')))));
}

void tst_Languages::writtenInItsLanguage()
{
    QFETCH(QString, language);

    static const QRegularExpression chinese(QStringLiteral("\\p{Han}"));
    static const QRegularExpression numbersOnly(QStringLiteral("^(%\\d|\\W)*$"));
    const bool isChinese = language == QLatin1String("zh_CN");
    const QString found
        = violations(messages(), [isChinese](const QString &source, const QString &translation) {
              return source == translation || numbersOnly.match(source).hasMatch()
                     || translation.contains(chinese) == isChinese;
          });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Languages::glossaryIsKept_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("de");
    QTest::addColumn<QString>("fr");
    QTest::addColumn<QString>("nl");
    QTest::addColumn<QString>("zh_CN");

    const auto row = [](const char *name, const char *source, const char *de, const char *fr, const char *nl,
                        const char *chinese) {
        QTest::newRow(name) << QString::fromUtf8(source) << QString::fromUtf8(de) << QString::fromUtf8(fr)
                            << QString::fromUtf8(nl) << QString::fromUtf8(chinese);
    };
    row("alarm", "\\balarms?\\b", "alarm", "alarme", "alarm", "报警");
    row("battery", "\\bbatter(y|ies)\\b", "akku", "batterie", "accu", "电池|电芯");
    row("battery pack", "\\bbattery pack\\b", "akkupack", "pack batterie", "accupack", "电池组");
    row("bit rate", "\\bbit rate\\b", "bitrate", "débit", "bitsnelheid", "波特率");
    row("cell", "\\bcells?\\b", "zelle", "cellule", "cel", "电芯");
    row("charger", "\\bcharger\\b", "ladegerät", "chargeur", "lader", "充电器");
    row("controller", "\\bcontroller\\b", "steuergerät", "contrôleur", "controller", "控制器");
    row("device", "\\bdevices?\\b", "gerät", "appareil|dispositif", "apparaat|apparaten", "设备");
    row("encryption key", "\\bencryption key\\b", "kryptoschlüssel", "clé de chiffrement", "encryptiesleutel",
        "加密密钥");
    row("interface", "\\b(?-i:interfaces?)\\b", "schnittstelle", "interface", "interface", "接口");
    row("masterless", "\\bmasterless\\b", "ohne master", "sans maître", "zonder master", "无主站");
    row("node", "\\bnodes?\\b", "knoten", "nœud", "node", "节点");
    row("object", "\\bobjects?\\b(?! index)", "objekt", "objet", "object", "对象");
    row("plug-in", "\\bplug-ins?\\b", "plug-in", "plug-in", "plug-in", "插件");
    row("security", "\\bsecurity\\b", "diebstahlschutz", "antivol", "diefstalbeveiliging", "防盗");
    row("sleep mode", "\\bsleep mode\\b", "schlafmodus", "mode veille", "slaapstand", "休眠模式");
    row("softlock", "\\bsoftlock", "wegfahrsperre", "antidémarrage", "startblokkering", "电子锁车");
    row("temperature", "\\btemperature\\b", "temperatur", "température|surchauffe", "temperatuur", "温");
    row("voltage", "\\bvoltage\\b", "spannung", "tension", "spanning", "压");
}

void tst_Languages::glossaryIsKept()
{
    QFETCH(QString, source);

    const QRegularExpression sourceTerm(source, QRegularExpression::CaseInsensitiveOption
                                                    | QRegularExpression::UseUnicodePropertiesOption);
    int uses = 0;
    for (const QString &family : families) {
        for (const QString &language : languages) {
            const QString term = *static_cast<QString *>(
                QTest::qData(language.toLatin1().constData(), qMetaTypeId<QString>()));
            const QRegularExpression translatedTerm(term, QRegularExpression::CaseInsensitiveOption);
            const QString found = violations(m_messages.value(family + QLatin1Char('_') + language),
                                             [&](const QString &text, const QString &translation) {
                                                 if (!text.contains(sourceTerm))
                                                     return true;
                                                 ++uses;
                                                 return translation.contains(translatedTerm);
                                             });
            QVERIFY2(found.isEmpty(), qPrintable(language + QLatin1Char('\n') + found));
        }
    }
    QVERIFY(uses > 0);
}

void tst_Languages::untranslatedTextsAreInNoFile_data()
{
    QTest::addColumn<QString>("text");

    for (const char *text : {"No error", "Do-Not-Attach", "Ready-To-Attach", "Normal Operation",
                             "specific FSA not active", "Apply A-to-B processing", "Product code",
                             "Revision number", "Serial number", "no entry", "CiA.part.version.revision",
                             "nothing supported", "Draxel Network Components", "Draxel", "Draxel Tool"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void tst_Languages::untranslatedTextsAreInNoFile()
{
    QFETCH(QString, text);

    for (const QString &language : languages) {
        for (const TranslationMessage &message : m_messages.value(QStringLiteral("pl_overview_") + language))
            QVERIFY2(message.source.trimmed() != text, qPrintable(message.key()));
    }
}

void tst_Languages::pluralsHaveEnglishForms()
{
    QFETCH(QString, family);

    QStringList expected;
    for (const TranslationMessage &message : m_messages.value(family + QStringLiteral("_de"))) {
        if (message.hasNumber)
            expected.append(message.key());
    }
    expected.sort();

    const QString path = sourceFolder() + family + QStringLiteral("_en.ts");
    QCOMPARE(QFile::exists(path), !expected.isEmpty());
    if (expected.isEmpty())
        return;
    QString error;
    const Messages english = readTranslationFile(path, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QCOMPARE(keys(english), expected);
    for (const TranslationMessage &message : english) {
        QVERIFY2(message.type.isEmpty() && message.translations.size() == 2
                     && !message.translations.contains(QString()),
                 qPrintable(message.key()));
        QVERIFY2(message.translations.first() != message.translations.last(), qPrintable(message.key()));
    }
}

void tst_Languages::builtFileHoldsEveryText()
{
    const QString path = QStringLiteral(OVERVIEW_LANGUAGES "/") + QString::fromUtf8(QTest::currentDataTag())
                         + QStringLiteral(".qm");
    QVERIFY2(QFile::exists(path), qPrintable(path));
    QTranslator translator;
    QVERIFY2(translator.load(path), qPrintable(path));
    QVERIFY(!translator.isEmpty());

    const Messages texts = messages();
    for (const TranslationMessage &message : texts) {
        const QString found
            = translator.translate(message.context.toUtf8().constData(), message.source.toUtf8().constData(),
                                   message.comment.isEmpty() ? nullptr : message.comment.toUtf8().constData(),
                                   message.hasNumber ? 1 : -1);
        QVERIFY2(found == message.translations.first(),
                 qPrintable(message.key() + QLatin1String(" -> ") + shown(found)));
    }
}

void tst_Languages::filesAreUpToDate()
{
    const QString name = QString::fromUtf8(QTest::currentDataTag());
    QString error;
    const Messages updated
        = readTranslationFile(m_updated.path() + QLatin1Char('/') + name + QStringLiteral(".ts"), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));

    const QStringList here = keys(messages());
    const QStringList inSources = keys(updated);
    const QStringList missing = without(inSources, here);
    const QStringList gone = without(here, inSources);
    QVERIFY2(missing.isEmpty() && gone.isEmpty(),
             qPrintable(QStringLiteral("Run languages/update and translate.\nmissing here:\n%1\n"
                                       "no longer in the sources:\n%2")
                            .arg(missing.join(QLatin1Char('\n')), gone.join(QLatin1Char('\n')))));
}

QTEST_GUILESS_MAIN(tst_Languages)
#include "tst_languages.moc"
