// SPDX-License-Identifier: MIT
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace {

/*! A folder below src/ and the folders that its files may include from: those below it. */
struct Rule
{
    const char *folder;
    QStringList mayUse;
};

const QList<Rule> &rules()
{
    static const QList<Rule> list{
        // For all floors
        {"system", {}},
        {"json", {}},
        // The bus
        {"canopen", {QStringLiteral("system")}},
        {"bus/socketcan", {}},
        {"bus", {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("bus/socketcan")}},
        // Facts
        {"interface", {}},
        {"interpreter", {}},
        {"store", {QStringLiteral("system")}},
        {"snapshot",
         {QStringLiteral("system"), QStringLiteral("json"), QStringLiteral("canopen"),
          QStringLiteral("interpreter"), QStringLiteral("store")}},
        // Questions
        {"details", {QStringLiteral("store"), QStringLiteral("interpreter")}},
        {"report", {QStringLiteral("system"), QStringLiteral("store"), QStringLiteral("interpreter")}},
        {"reader", {QStringLiteral("interface"), QStringLiteral("store"), QStringLiteral("interpreter")}},
        {"update", {}},
        {"checkup",
         {QStringLiteral("system"), QStringLiteral("json"), QStringLiteral("canopen"),
          QStringLiteral("interpreter"), QStringLiteral("store"), QStringLiteral("snapshot")}},
        {"archive",
         {QStringLiteral("system"), QStringLiteral("json"), QStringLiteral("canopen"),
          QStringLiteral("interpreter"), QStringLiteral("store"), QStringLiteral("snapshot"),
          QStringLiteral("checkup")}},
        {"servicereport",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("interpreter"),
          QStringLiteral("store"), QStringLiteral("snapshot"), QStringLiteral("checkup")}},
        {"live/core", {QStringLiteral("system"), QStringLiteral("canopen")}},
        {"live/health",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("bus"),
          QStringLiteral("checkup"), QStringLiteral("live/core")}},
        {"live/events",
         {QStringLiteral("system"), QStringLiteral("json"), QStringLiteral("canopen"), QStringLiteral("bus"),
          QStringLiteral("checkup"), QStringLiteral("live/core"), QStringLiteral("live/health")}},
        {"live/values",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("interpreter"),
          QStringLiteral("snapshot"), QStringLiteral("checkup"), QStringLiteral("live/core")}},
        {"trace/core", {}},
        {"trace/files", {QStringLiteral("system"), QStringLiteral("store"), QStringLiteral("trace/core")}},
        {"trace/recording",
         {QStringLiteral("system"), QStringLiteral("live/core"), QStringLiteral("trace/core"),
          QStringLiteral("trace/files")}},
        {"trace/statistics",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("live/core"),
          QStringLiteral("trace/core")}},
        {"trace/transfers", {QStringLiteral("canopen"), QStringLiteral("trace/core")}},
        {"trace/playback",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("snapshot"),
          QStringLiteral("trace/core"), QStringLiteral("trace/transfers")}},
        {"trace/decoding",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("interpreter"),
          QStringLiteral("store"), QStringLiteral("snapshot"), QStringLiteral("checkup"),
          QStringLiteral("live/core"), QStringLiteral("live/values"), QStringLiteral("trace/core"),
          QStringLiteral("trace/transfers")}},
        {"doctor", {QStringLiteral("bus"), QStringLiteral("bus/socketcan"), QStringLiteral("checkup")}},
        {"bundle/masking",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("interpreter"),
          QStringLiteral("snapshot"), QStringLiteral("trace/core"), QStringLiteral("trace/transfers"),
          QStringLiteral("trace/decoding")}},
        {"bundle",
         {QStringLiteral("system"), QStringLiteral("json"), QStringLiteral("store"),
          QStringLiteral("snapshot"), QStringLiteral("checkup"), QStringLiteral("live/events"),
          QStringLiteral("trace/core"), QStringLiteral("trace/files"), QStringLiteral("doctor"),
          QStringLiteral("bundle/masking")}},
        {"host/core",
         {QStringLiteral("system"), QStringLiteral("interface"), QStringLiteral("store"),
          QStringLiteral("bus"), QStringLiteral("canopen"), QStringLiteral("snapshot"),
          QStringLiteral("checkup"), QStringLiteral("archive"), QStringLiteral("live/core"),
          QStringLiteral("live/health"), QStringLiteral("live/events"), QStringLiteral("live/values"),
          QStringLiteral("trace/playback")}},
        // Products
        {"ui",
         {QStringLiteral("interface"), QStringLiteral("store"), QStringLiteral("interpreter"),
          QStringLiteral("details"), QStringLiteral("report"), QStringLiteral("reader"),
          QStringLiteral("update")}},
        {"plugin", {QStringLiteral("interface"), QStringLiteral("ui")}},
        {"simulator", {QStringLiteral("system"), QStringLiteral("canopen")}},
        {"tracebus",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("trace/core"),
          QStringLiteral("trace/files"), QStringLiteral("trace/playback")}},
        {"host/pages",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("bus"),
          QStringLiteral("interpreter"), QStringLiteral("store"), QStringLiteral("snapshot"),
          QStringLiteral("checkup"), QStringLiteral("archive"), QStringLiteral("servicereport"),
          QStringLiteral("host/core")}},
        {"host/pages/live",
         {QStringLiteral("system"), QStringLiteral("canopen"), QStringLiteral("bus"),
          QStringLiteral("interpreter"), QStringLiteral("store"), QStringLiteral("snapshot"),
          QStringLiteral("checkup"), QStringLiteral("servicereport"), QStringLiteral("live/core"),
          QStringLiteral("live/health"), QStringLiteral("live/events"), QStringLiteral("live/values"),
          QStringLiteral("host/core"), QStringLiteral("host/pages")}},
        {"host/pages/trace",
         {QStringLiteral("system"), QStringLiteral("snapshot"), QStringLiteral("canopen"),
          QStringLiteral("bus"), QStringLiteral("servicereport"), QStringLiteral("live/core"),
          QStringLiteral("live/events"), QStringLiteral("trace/core"), QStringLiteral("trace/files"),
          QStringLiteral("trace/recording"), QStringLiteral("trace/transfers"),
          QStringLiteral("trace/decoding"), QStringLiteral("host/core"), QStringLiteral("host/pages")}},
        {"host",
         {QStringLiteral("system"), QStringLiteral("host/core"), QStringLiteral("store"),
          QStringLiteral("bus"), QStringLiteral("canopen"), QStringLiteral("snapshot"),
          QStringLiteral("checkup"), QStringLiteral("live/events"), QStringLiteral("bundle"),
          QStringLiteral("trace/playback"), QStringLiteral("host/pages"), QStringLiteral("host/pages/live"),
          QStringLiteral("host/pages/trace")}},
        {"cli/core",
         {QStringLiteral("json"), QStringLiteral("host/core"), QStringLiteral("bus"),
          QStringLiteral("canopen"), QStringLiteral("interface"), QStringLiteral("reader"),
          QStringLiteral("store"), QStringLiteral("details"), QStringLiteral("report"),
          QStringLiteral("interpreter"), QStringLiteral("simulator"), QStringLiteral("snapshot"),
          QStringLiteral("checkup"), QStringLiteral("archive"), QStringLiteral("servicereport"),
          QStringLiteral("trace/core"), QStringLiteral("trace/files"), QStringLiteral("trace/playback"),
          QStringLiteral("bundle")}},
        {"cli/commands",
         {QStringLiteral("system"),      QStringLiteral("doctor"),      QStringLiteral("cli/core"),
          QStringLiteral("host/core"),   QStringLiteral("bus"),         QStringLiteral("canopen"),
          QStringLiteral("interface"),   QStringLiteral("reader"),      QStringLiteral("store"),
          QStringLiteral("details"),     QStringLiteral("report"),      QStringLiteral("interpreter"),
          QStringLiteral("update"),      QStringLiteral("simulator"),   QStringLiteral("snapshot"),
          QStringLiteral("checkup"),     QStringLiteral("archive"),     QStringLiteral("servicereport"),
          QStringLiteral("live/health"), QStringLiteral("live/events"), QStringLiteral("live/values")}},
        {"cli/trace",
         {QStringLiteral("system"), QStringLiteral("cli/commands"), QStringLiteral("cli/core"),
          QStringLiteral("bus"), QStringLiteral("canopen"), QStringLiteral("live/core"),
          QStringLiteral("snapshot"), QStringLiteral("trace/core"), QStringLiteral("trace/files"),
          QStringLiteral("trace/playback"), QStringLiteral("trace/recording"),
          QStringLiteral("trace/statistics"), QStringLiteral("trace/decoding")}},
        {"cli/bundle",
         {QStringLiteral("system"), QStringLiteral("cli/core"), QStringLiteral("bus"),
          QStringLiteral("checkup"), QStringLiteral("host/core"), QStringLiteral("live/events"),
          QStringLiteral("trace/recording"), QStringLiteral("bundle")}},
        {"cli",
         {QStringLiteral("cli/bundle"), QStringLiteral("cli/commands"), QStringLiteral("cli/trace"),
          QStringLiteral("cli/core")}},
    };
    return list;
}

const Rule *ruleFor(const QString &folder)
{
    for (const Rule &rule : rules()) {
        if (folder == QLatin1String(rule.folder))
            return &rule;
    }
    return nullptr;
}

/*! Everything wrong with the includes of one file, a line each. */
QStringList problemsOf(const QString &file, const QString &folder, const QByteArray &text)
{
    static const QRegularExpression include(QStringLiteral("^\\s*#\\s*include\\s*([<\"])([^>\"]+)[>\"]"),
                                            QRegularExpression::MultilineOption);
    const Rule *rule = ruleFor(folder);
    if (rule == nullptr)
        return {file + QStringLiteral(": no rule says what this folder may include")};

    QStringList problems;
    QRegularExpressionMatchIterator it = include.globalMatch(QString::fromUtf8(text));
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        const bool quoted = match.captured(1) == QLatin1String("\"");
        const QString name = match.captured(2);
        if (quoted) {
            if (name.contains(QLatin1Char('/')))
                problems << file + QStringLiteral(": quotes are for files of the same folder: ") + name;
            continue;
        }
        const int slash = name.lastIndexOf(QLatin1Char('/'));
        if (slash < 0 || ruleFor(name.left(slash)) == nullptr)
            continue; // not of this project
        const QString used = name.left(slash);
        if (used == folder)
            problems << file + QStringLiteral(": quotes are for files of the same folder, not <") + name
                            + QLatin1Char('>');
        else if (!rule->mayUse.contains(used))
            problems << file + QStringLiteral(" must not include ") + name;
    }
    return problems;
}

} // namespace

/*! The directions between the folders, from the include lines of every source. */
class tst_Includes : public QObject
{
    Q_OBJECT

private slots:
    void followTheDirections();
    void everyArrowPointsDown();
    void wrongDirectionIsFound();
};

void tst_Includes::followTheDirections()
{
    const QDir root(QStringLiteral(OVERVIEW_SOURCE_DIR "/src"));
    QStringList problems;
    int files = 0;
    QDirIterator it(root.path(), {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString name = root.relativeFilePath(it.next());
        QFile file(it.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        problems += problemsOf(name, QFileInfo(name).path(), file.readAll());
        ++files;
    }
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY2(files > 100, "the sources were not found");
}

void tst_Includes::everyArrowPointsDown()
{
    QStringList below;
    for (const Rule &rule : rules()) {
        for (const QString &used : rule.mayUse)
            QVERIFY2(below.contains(used),
                     qPrintable(QLatin1String(rule.folder) + QStringLiteral(" -> ") + used));
        below << QLatin1String(rule.folder);
    }
}

void tst_Includes::wrongDirectionIsFound()
{
    QCOMPARE(
        problemsOf(QStringLiteral("host/x.cpp"), QStringLiteral("host"), "#include <ui/overviewform.h>\n"),
        QStringList(QStringLiteral("host/x.cpp must not include ui/overviewform.h")));
    QCOMPARE(problemsOf(QStringLiteral("reader/x.cpp"), QStringLiteral("reader"),
                        "#include <store/exchangefile.h>\n#include <report/pdfwriter.h>\n"),
             QStringList(QStringLiteral("reader/x.cpp must not include report/pdfwriter.h")));
    QCOMPARE(
        problemsOf(QStringLiteral("ui/x.cpp"), QStringLiteral("ui"), "#include \"../reader/datareader.h\"\n"),
        QStringList(
            QStringLiteral("ui/x.cpp: quotes are for files of the same folder: ../reader/datareader.h")));
    QCOMPARE(problemsOf(QStringLiteral("ui/x.cpp"), QStringLiteral("ui"), "#include <ui/tablewriter.h>\n"),
             QStringList(QStringLiteral(
                 "ui/x.cpp: quotes are for files of the same folder, not <ui/tablewriter.h>")));
    QCOMPARE(problemsOf(QStringLiteral("cellar/x.cpp"), QStringLiteral("cellar"), "#include <QString>\n"),
             QStringList(QStringLiteral("cellar/x.cpp: no rule says what this folder may include")));
    QVERIFY(problemsOf(QStringLiteral("ui/x.cpp"), QStringLiteral("ui"),
                       "#include <reader/datareader.h>\n#include <QString>\n#include \"y.h\"\n")
                .isEmpty());
}

QTEST_GUILESS_MAIN(tst_Includes)
#include "tst_includes.moc"
