// SPDX-License-Identifier: MIT
#include "encoding.h"
#include "traceframes.h"

#include <trace/files/gzipbytes.h>
#include <trace/files/packingsinks.h>
#include <trace/files/tracedetails.h>
#include <trace/files/zstdbytes.h>

#include <QTemporaryDir>
#include <QtTest>

#include <random>

namespace {

const QByteArray aLog("(1436509052.249713) can0 123#1122\n");
const QString frameOfLog = QStringLiteral("1436509052.249713 can0 123 1122");

QByteArray packed(const QByteArray &bytes, Compression compression)
{
    QByteArray made;
    std::unique_ptr<ByteSink> sink = std::make_unique<MemorySink>(&made);
    if (compression == Compression::Gzip)
        sink = std::make_unique<GzipSink>(std::move(sink));
    else
        sink = std::make_unique<ZstdSink>(std::move(sink));
    sink->write(bytes);
    sink->finish();
    return made;
}

/*! Gives its bytes one at a time, as a slow pipe does, and counts how many were taken. */
class SlowBytes : public ByteSource
{
public:
    SlowBytes(const QByteArray &bytes, int *taken)
        : m_bytes(bytes)
        , m_taken(taken)
    {
    }

    qint64 read(char *to, qint64 most) override
    {
        Q_UNUSED(most)
        if (*m_taken == m_bytes.size())
            return 0;
        *to = m_bytes.at((*m_taken)++);
        return 1;
    }

private:
    QByteArray m_bytes;
    int *m_taken;
};

/*! A medium that fails behind its bytes. */
class FailingBytes : public MemoryBytes
{
public:
    using MemoryBytes::MemoryBytes;

    qint64 read(char *to, qint64 most) override
    {
        const qint64 count = MemoryBytes::read(to, most);
        return count > 0 ? count : fail(QStringLiteral("The medium failed."));
    }
};

/*! A frame, perhaps, and then blanks without an end. */
QByteArray packedBomb(Compression compression, const QByteArray &first, qint64 size)
{
    QByteArray made;
    std::unique_ptr<ByteSink> sink = std::make_unique<MemorySink>(&made);
    if (compression == Compression::Gzip)
        sink = std::make_unique<GzipSink>(std::move(sink));
    else
        sink = std::make_unique<ZstdSink>(std::move(sink));
    sink->write(first);
    const QByteArray piece = (QByteArray(16000, ' ') + '\n').repeated(64);
    for (qint64 written = 0; written < size; written += piece.size())
        sink->write(piece);
    sink->finish();
    return made;
}

/*! Frames of every kind, with times that mostly run forward. */
Trace anyTrace(int frames, int channels)
{
    std::mt19937 random(1); // NOLINT: the same frames each time
    const auto below = [&random](quint32 bound) { return static_cast<quint32>(random() % bound); };
    Trace trace;
    trace.head.hasTimeOfDay = true;
    for (int i = 0; i < channels; ++i)
        trace.head.channels.append(QString::number(i + 1));
    qint64 time = 1436509052249713;
    for (int i = 0; i < frames; ++i) {
        TraceFrame frame;
        time += below(100) == 0 ? -qint64(below(500)) : below(2000);
        frame.time = time;
        frame.channel = static_cast<quint8>(i < channels ? i : below(static_cast<quint32>(channels)));
        const bool isExtended = below(4) == 0;
        frame.id = below(isExtended ? 0x20000000 : 0x800);
        frame.flags = static_cast<quint8>((isExtended ? TraceFrame::Extended : 0)
                                          | (below(20) == 0 ? TraceFrame::Remote : 0)
                                          | (below(5) == 0 ? TraceFrame::Sent : 0));
        frame.length = static_cast<quint8>(below(9));
        for (int byte = 0; byte < frame.size(); ++byte)
            frame.bytes[static_cast<size_t>(byte)] = static_cast<quint8>(below(256));
        trace.frames.push_back(frame);
    }
    return trace;
}

} // namespace

/*! Recognising, opening, loading, saving and compressing. */
class tst_TraceFile : public QObject
{
    Q_OBJECT

private slots:
    void contentTellsTheFormat_data();
    void contentTellsTheFormat();
    void nothingKnown_data();
    void nothingKnown();
    void nothingAtAll_data();
    void nothingAtAll();
    void linesComeAsTheyAreWritten();
    void failingMedium();
    void cannotBeOpened();
    void unpacks_data();
    void unpacks();
    void brokenPacking_data();
    void brokenPacking();
    void flushedIsReadable_data();
    void flushedIsReadable();
    void bombs_data();
    void bombs();
    void limits();
    void cutAnywhere();
    void roundTrip_data();
    void roundTrip();
    void names_data();
    void names();
    void nameWithoutFormat();
    void failingDisk();
    void longFirstLine();
    void timesBeyondPcap();
    void whatIsLost_data();
    void whatIsLost();
};

void tst_TraceFile::contentTellsTheFormat_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("frame");

    QTest::newRow("candump") << aLog << frameOfLog;
    QTest::newRow("candump, begins in the middle of a line") << "9713) can0 123#1122\n" + aLog << frameOfLog;
    QTest::newRow("candump with a byte order mark") << "\xEF\xBB\xBF" + aLog << frameOfLog;
    QTest::newRow("candump behind empty lines") << "\n\n\r\n" + aLog << frameOfLog;
    QTest::newRow("asc") << QByteArray("date Fri Jul 10 08:37:32.249 am 2015\n0.5 1 1 Rx d 0\n")
                         << "1436517452.749000 1 001";
    QTest::newRow("asc behind a comment")
        << QByteArray("// mine\nbase hex  timestamps absolute\n0.5 1 1 Rx d 0\n") << "0.500000 1 001";
    QTest::newRow("trc") << QByteArray(";$FILEVERSION=1.1\n1) 500.0 Rx 0001 0\n") << "0.500000 1 001";
    QTest::newRow("trc 1.0") << QByteArray(";--\n;---+--\n1) 500 0001 0\n") << "0.500000 1 001";
}

void tst_TraceFile::contentTellsTheFormat()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, frame);

    qputenv("TZ", "UTC");
    // Whatever the name says.
    for (const char *name : {"trace", "trace.log", "trace.asc", "trace.pcap.gz"}) {
        const Trace trace = readTrace(bytes, QLatin1String(name));
        QCOMPARE(trace.frames.size(), size_t(1));
        QCOMPARE(textOf(trace.frames.front(), trace.head), frame);
    }
}

void tst_TraceFile::nothingKnown_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QByteArray random;
    std::mt19937 numbers(1); // NOLINT: the same bytes each time
    for (int i = 0; i < 1'000'000; ++i)
        random.append(static_cast<char>(numbers()));
    QTest::newRow("random bytes") << random;
    QTest::newRow("zeros") << QByteArray(100'000, '\0');
    QTest::newRow("a text") << QByteArray("Nov 22 08:00:00 host kernel: can0: bus-off\n").repeated(10'000);
    QTest::newRow("one long line") << QByteArray(1'000'000, 'x');
    QTest::newRow("a frame after a hundred lines") << QByteArray("hello\n").repeated(100) + aLog;
    QTest::newRow("a page") << QByteArray("<html>\n<body>\n1.0 2\n</body>\n</html>\n");
    QTest::newRow("one character") << QByteArray("x");
}

void tst_TraceFile::nothingKnown()
{
    QFETCH(QByteArray, bytes);

    QCOMPARE(
        readTexts(bytes, QStringLiteral("rubbish.log")),
        QStringList{QStringLiteral("! 0 rubbish.log is no trace that is known: a log of candump, asc, trc, "
                                   "pcap or pcapng, also compressed with gzip or zstd.")});
}

void tst_TraceFile::nothingAtAll_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isTrace");

    QTest::newRow("log") << "a.log" << true;
    QTest::newRow("pcap") << "a.pcap" << true;
    QTest::newRow("input") << "-" << true;
    QTest::newRow("no suffix") << "a" << false;
    QTest::newRow("another suffix") << "a.txt" << false;
}

void tst_TraceFile::nothingAtAll()
{
    QFETCH(QString, name);
    QFETCH(bool, isTrace);

    for (const QByteArray &bytes : {QByteArray(), QByteArray("\n"), QByteArray("  \r\n\t\n")})
        QCOMPARE(readTrace(bytes, name).problems.empty(), isTrace);
}

void tst_TraceFile::linesComeAsTheyAreWritten()
{
    int taken = 0;
    QString error;
    const auto reader
        = TraceFile::open(std::make_unique<SlowBytes>(aLog + aLog, &taken), QStringLiteral("-"), &error);
    QVERIFY2(reader, qPrintable(error));
    TraceFrame frame;
    QCOMPARE(reader->next(&frame), TraceReader::Step::Frame);
    QCOMPARE(taken, aLog.size());
    QCOMPARE(reader->next(&frame), TraceReader::Step::Frame);
    QCOMPARE(taken, aLog.size() * 2);
    QCOMPARE(reader->next(&frame), TraceReader::Step::End);
    QCOMPARE(reader->next(&frame), TraceReader::Step::End);
}

void tst_TraceFile::failingMedium()
{
    QString error;
    auto reader = TraceFile::open(std::make_unique<FailingBytes>(aLog), QStringLiteral("a.log"), &error);
    QVERIFY(reader);
    QCOMPARE(textsOf(TraceFile::load(reader.get(), TraceFile::Limits())),
             (QStringList{frameOfLog, QStringLiteral("! 2 The medium failed.")}));
    QVERIFY(!TraceFile::open(std::make_unique<FailingBytes>(QByteArray()), QStringLiteral("a.log"), &error));
    QCOMPARE(error, QStringLiteral("a.log cannot be read. The medium failed."));
}

void tst_TraceFile::cannotBeOpened()
{
    QString error;
    const QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("no.log"));
    QVERIFY(!TraceFile::open(missing, &error));
    QCOMPARE(error, missing + QStringLiteral(" cannot be opened: no such file or folder."));
    QVERIFY(!TraceFile::open(folder.path(), &error));
    QCOMPARE(error, folder.path() + QStringLiteral(" cannot be opened: it is a folder."));
}

void tst_TraceFile::unpacks_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("gzip") << packed(aLog + aLog, Compression::Gzip);
    QTest::newRow("zstd") << packed(aLog + aLog, Compression::Zstd);
    QTest::newRow("two gzip") << packed(aLog, Compression::Gzip) + packed(aLog, Compression::Gzip);
    QTest::newRow("two zstd") << packed(aLog, Compression::Zstd) + packed(aLog, Compression::Zstd);
    QTest::newRow("zeros behind gzip") << packed(aLog + aLog, Compression::Gzip) + QByteArray(512, '\0');
}

void tst_TraceFile::unpacks()
{
    QFETCH(QByteArray, bytes);

    QCOMPARE(readTexts(bytes), (QStringList{frameOfLog, frameOfLog}));
}

void tst_TraceFile::brokenPacking_data()
{
    QTest::addColumn<int>("compression");

    QTest::newRow("gzip") << int(Compression::Gzip);
    QTest::newRow("zstd") << int(Compression::Zstd);
}

void tst_TraceFile::brokenPacking()
{
    QFETCH(int, compression);

    const Trace whole = anyTrace(20000, 2);
    const QByteArray bytes = packed(encoded(whole, TraceFormat::Candump), Compression(compression));
    const Trace cut = readTrace(bytes.left(bytes.size() / 2));
    QVERIFY(cut.frames.size() > 5000);
    QVERIFY(std::equal(cut.frames.begin(), cut.frames.end(), whole.frames.begin()));
    QCOMPARE(cut.problems.back().text, QStringLiteral("The compressed data are cut: their end is missing."));

    QByteArray spoilt = bytes;
    for (int i = 0; i < 100; ++i)
        spoilt[spoilt.size() / 2 + i] = static_cast<char>(0xFF);
    QString error;
    const auto reader = TraceFile::open(std::make_unique<MemoryBytes>(spoilt), QStringLiteral("a"), &error);
    const Trace broken = TraceFile::load(reader.get(), {1'000'000, 1'000'000});
    QCOMPARE(broken.problems.back().text,
             QStringLiteral("The compressed data are broken: the rest is not read."));
    QVERIFY(broken.frames.size() > 5000);
    QVERIFY(std::equal(broken.frames.begin(), broken.frames.begin() + 5000, whole.frames.begin()));
}

void tst_TraceFile::flushedIsReadable_data()
{
    QTest::addColumn<QString>("suffix");

    for (const char *suffix : {".log", ".log.gz", ".log.zst", ".asc", ".trc", ".pcap", ".pcapng.zst"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
}

void tst_TraceFile::flushedIsReadable()
{
    QFETCH(QString, suffix);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a") + suffix);
    const Trace trace = anyTrace(100, 1);
    QString error;
    const auto writer = TraceFile::create(path, trace.head, &error, TraceFile::Appearance::Growing);
    QVERIFY2(writer, qPrintable(error));
    for (const TraceFrame &frame : trace.frames)
        QVERIFY(writer->write(frame));
    QVERIFY(writer->flush());
    // The program dies now.
    const auto read = TraceFile::load(path, TraceFile::Limits(), &error);
    QVERIFY2(read, qPrintable(error));
    QCOMPARE(read->frames.size(), size_t(100));
}

void tst_TraceFile::bombs_data()
{
    QTest::addColumn<int>("compression");
    QTest::addColumn<QByteArray>("first");

    QTest::newRow("gzip") << int(Compression::Gzip) << aLog;
    QTest::newRow("zstd") << int(Compression::Zstd) << aLog;
}

void tst_TraceFile::bombs()
{
    QFETCH(int, compression);
    QFETCH(QByteArray, first);

    constexpr qint64 size = 80 * 1024 * 1024;
    const QByteArray bytes = packedBomb(Compression(compression), first, size);
    QVERIFY(bytes.size() < 1024 * 1024);
    const Trace trace = readTrace(bytes);
    QCOMPARE(trace.frames.size(), size_t(1));
    QCOMPARE(trace.problems.size(), size_t(1));
    QCOMPARE(trace.problems.front().text,
             QStringLiteral("It unpacks to more than 500 times its size, which no "
                            "trace does: the rest is not read."));
    // What holds nothing but blanks is no trace, and is not unpacked to find that out.
    QCOMPARE(readTrace(packedBomb(Compression(compression), {}, size)).problems.size(), size_t(1));
}

void tst_TraceFile::limits()
{
    const Trace whole = anyTrace(1000, 1);
    const QByteArray bytes = encoded(whole, TraceFormat::Candump);
    QString error;
    const auto open = [&](const QByteArray &from) {
        return TraceFile::open(std::make_unique<MemoryBytes>(from), QStringLiteral("a.log"), &error);
    };
    QVERIFY(TraceFile::load(open(bytes).get(), {1000, 100}).missing == MissingFrames::None);
    const Trace cut = TraceFile::load(open(bytes).get(), {999, 100});
    QVERIFY(cut.missing == MissingFrames::Newest);
    QCOMPARE(cut.frames.size(), size_t(999));

    const Trace problems = TraceFile::load(open(aLog + QByteArray("(1.0) can0 1##1\n").repeated(1000)).get(),
                                           TraceFile::Limits());
    QCOMPARE(problems.problems.size(), size_t(100));
    QCOMPARE(problems.unread, quint64(1000));
}

void tst_TraceFile::cutAnywhere()
{
    const Trace whole = anyTrace(20, 2);
    for (const TraceFormat format : {TraceFormat::Candump, TraceFormat::Asc, TraceFormat::Trc11,
                                     TraceFormat::Trc21, TraceFormat::Pcap, TraceFormat::PcapNg}) {
        const QByteArray bytes = encoded(whole, format);
        for (int size = 0; size < bytes.size(); ++size) {
            const Trace cut = readTrace(bytes.left(size));
            QVERIFY(cut.problems.size() <= 1);
            QVERIFY(cut.frames.size() <= whole.frames.size());
        }
    }
}

void tst_TraceFile::roundTrip_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<int>("channels");
    QTest::addColumn<bool>("hasSent");

    QTest::newRow("candump") << ".log" << 3 << true;
    QTest::newRow("candump, gzip") << ".log.gz" << 3 << true;
    QTest::newRow("asc") << ".asc" << 3 << true;
    QTest::newRow("asc, zstd") << ".asc.zst" << 3 << true;
    QTest::newRow("trc") << ".trc" << 3 << true;
    QTest::newRow("pcap") << ".pcap" << 1 << false;
    QTest::newRow("pcapng") << ".pcapng" << 3 << true;
    QTest::newRow("pcapng, gzip") << ".pcapng.gz" << 3 << true;
}

void tst_TraceFile::roundTrip()
{
    QFETCH(QString, suffix);
    QFETCH(int, channels);
    QFETCH(bool, hasSent);

    Trace trace = anyTrace(20000, channels);
    for (TraceFrame &frame : trace.frames) {
        if (!hasSent)
            frame.flags &= static_cast<quint8>(~TraceFrame::Sent);
    }
    for (const char *zone : {"UTC", "America/St_Johns"}) {
        qputenv("TZ", zone);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a") + suffix);
        QString error;
        QVERIFY2(TraceFile::save(path, trace, &error), qPrintable(error));
        const auto read = TraceFile::load(path, TraceFile::Limits(), &error);
        QVERIFY2(read, qPrintable(error));
        QVERIFY(read->problems.empty());
        QCOMPARE(read->head.channels, trace.head.channels);
        QVERIFY(read->head.hasTimeOfDay);
        QCOMPARE(read->frames.size(), trace.frames.size());
        const auto different = std::mismatch(read->frames.begin(), read->frames.end(), trace.frames.begin());
        if (different.first != read->frames.end())
            QCOMPARE(textOf(*different.first, read->head), textOf(*different.second, trace.head));
    }
    qputenv("TZ", "UTC");
}

void tst_TraceFile::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("compression");

    QTest::newRow("log") << "a.log"
                         << "candump" << int(Compression::None);
    QTest::newRow("asc") << "A.ASC"
                         << "asc" << int(Compression::None);
    QTest::newRow("trc") << "a.b.trc"
                         << "trc" << int(Compression::None);
    QTest::newRow("pcap") << "a.pcap.zst"
                          << "pcap" << int(Compression::Zstd);
    QTest::newRow("pcapng") << "a.pcapng.GZ"
                            << "pcapng" << int(Compression::Gzip);
    QTest::newRow("none") << "a.gz"
                          << "" << int(Compression::Gzip);
    QTest::newRow("another") << "a.txt"
                             << "" << int(Compression::None);
}

void tst_TraceFile::names()
{
    QFETCH(QString, name);
    QFETCH(QString, format);
    QFETCH(int, compression);

    const TraceFormats::OfName found = TraceFormats::ofName(name);
    QCOMPARE(found.format ? TraceFormats::nameOf(*found.format) : QString(), format);
    QCOMPARE(int(found.compression), compression);
    QCOMPARE(TraceFormats::writableNames(),
             (QStringList{QStringLiteral("candump"), QStringLiteral("asc"), QStringLiteral("trc"),
                          QStringLiteral("trc-1.1"), QStringLiteral("pcap"), QStringLiteral("pcapng")}));
}

void tst_TraceFile::nameWithoutFormat()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.txt"));
    QString error;
    QVERIFY(!TraceFile::save(path, Trace(), &error));
    QCOMPARE(error, QStringLiteral("The name %1 tells no format: it must end with .log, .asc, .trc, .pcap or "
                                   ".pcapng; .gz or .zst may follow.")
                        .arg(path));
    QVERIFY(!QFile::exists(path));
    QVERIFY(TraceFile::save(path, Trace(), &error, TraceFormat::Asc));
    QVERIFY(QFile::exists(path));
}

void tst_TraceFile::failingDisk()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("no/a.log"));
    QString error;
    QVERIFY(!TraceFile::save(path, anyTrace(10, 1), &error));
    QCOMPARE(error, path + QStringLiteral(" cannot be written: no such file or folder."));
}

void tst_TraceFile::longFirstLine()
{
    const QByteArray frames("\n(1436509052.249713) can0 123#1122\n(1436509052.449847) can0 124#\n");
    QCOMPARE(readTexts(QByteArray(200'000, 'x') + frames),
             (QStringList{QStringLiteral("1436509052.249713 can0 123 1122"),
                          QStringLiteral("1436509052.449847 can0 124"),
                          QStringLiteral("! 1 The line has more than 16384 characters.")}));
    QCOMPARE(readTexts(QByteArray(1'100'000, 'x') + frames).size(), 1); // no trace
}

/*! Not a small number that they have in common with another time. */
void tst_TraceFile::timesBeyondPcap()
{
    Trace trace;
    trace.head = {{QStringLiteral("1")}, true};
    trace.frames = {traceFrame(4'294'967'295'999'999, 1, ""), traceFrame(4'294'967'296'500'000, 2, ""),
                    traceFrame(-5'500'000, 3, "")};
    const Trace read = readTrace(encoded(trace, TraceFormat::Pcap));
    QCOMPARE(read.frames.size(), std::size_t(3));
    QCOMPARE(read.frames[0].time, Q_INT64_C(4'294'967'295'999'999));
    QCOMPARE(read.frames[1].time, Q_INT64_C(4'294'967'295'999'999));
    QCOMPARE(read.frames[2].time, Q_INT64_C(0));
}

void tst_TraceFile::whatIsLost_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("lost");

    const auto row = [](const char *format, std::initializer_list<const char *> lost) {
        QStringList texts;
        for (const char *text : lost)
            texts.append(QString::fromUtf8(text));
        QTest::newRow(format) << QString::fromLatin1(format) << texts;
    };
    row("candump", {});
    row("asc", {"the names of channels", "what error frames say"});
    row("trc", {"the names of channels", "what error frames say"});
    row("trc-1.1", {"which channel a frame is of", "the names of channels", "what error frames say",
                    "times finer than 100 µs"});
    row("pcap", {"which channel a frame is of", "the names of channels", "who sent a frame",
                 "times before 1970", "times after 2106"});
    row("pcapng", {"times before 1970"});
}

void tst_TraceFile::whatIsLost()
{
    QFETCH(QString, format);
    QFETCH(QStringList, lost);

    const TraceFormat known = *TraceFormats::writable(format);
    TraceDetails nothing;
    nothing.add(traceFrame(0, 1, ""));
    nothing.add(traceFrame(4'294'967'295'999'900, 1, "")); // the last second of 32 bits
    QCOMPARE(nothing.lostIn(known, {{QStringLiteral("1")}, true}), QStringList());
    TraceDetails all;
    all.add(traceFrame(101, 1, "", TraceFrame::Sent));
    all.add(traceFrame(100, 1, "", TraceFrame::Error));
    all.add(traceFrame(-1, 1, ""));
    all.add(traceFrame(4'294'967'296'000'000, 1, ""));
    QCOMPARE(all.lostIn(known, {{QStringLiteral("can0"), QStringLiteral("2")}, true}), lost);
}

QTEST_GUILESS_MAIN(tst_TraceFile)
#include "tst_tracefile.moc"
