// SPDX-License-Identifier: MIT
#include "../frames.h"

#include <trace/decoding/tracebook.h>
#include <trace/decoding/tracelines.h>
#include <trace/files/tracefile.h>

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

namespace {

constexpr int steps = 5000;
constexpr int patience = 120'000; // ms; for tshark on a busy machine

/*! What is on a bus of CANopen devices, one frame after the other. */
class Traffic
{
public:
    const Trace &make()
    {
        m_trace.head = {{QStringLiteral("can0")}, true};
        for (int i = 0; i < steps; ++i)
            step();
        return m_trace;
    }

private:
    quint32 below(quint32 bound) { return static_cast<quint32>(m_random() % bound); }
    QByteArray bytes(int count)
    {
        QByteArray hex;
        for (int i = 0; i < count; ++i)
            hex += QByteArray::number(0x100 + below(0x100), 16).right(2);
        return hex;
    }
    static QByteArray hexOf(quint32 value, int count)
    {
        QByteArray hex;
        for (int i = 0; i < count; ++i, value >>= 8)
            hex += QByteArray::number(0x100 + (value & 0xFF), 16).right(2);
        return hex;
    }
    void send(quint32 id, const QByteArray &hex)
    {
        m_trace.frames.push_back(frameAt(m_time += 1000, id, hex));
    }

    void step()
    {
        constexpr quint8 states[] = {0x00, 0x04, 0x05, 0x7F};
        constexpr quint8 commands[] = {1, 2, 128, 129, 130};
        const quint32 node = 1 + below(127);
        switch (below(8)) {
        case 0:
            return send(0, hexOf(commands[below(5)], 1) + hexOf(below(128), 1));
        case 1:
            return send(0x80, "");
        case 2:
            return send(0x80 + node, bytes(8));
        case 3:
            return send(0x180 + 0x80 * below(8) + node, bytes(int(below(9))));
        case 4:
            return send(0x700 + node, hexOf(states[below(4)], 1));
        default:
            return transfer(node);
        }
    }

    void transfer(quint32 node)
    {
        const QByteArray object = bytes(3);
        const quint32 request = 0x600 + node;
        const quint32 answer = 0x580 + node;
        switch (below(4)) {
        case 0: // read, expedited
            send(request, "40" + object + "00000000");
            return send(answer, "43" + object + bytes(4));
        case 1: // written, expedited
            send(request, "2B" + object + bytes(2) + "0000");
            return send(answer, "60" + object + "00000000");
        case 2: // refused
            send(request, "40" + object + "00000000");
            return send(answer, "80" + object + hexOf(0x06020000 + below(2) * 0x00070010, 4));
        default: // read in segments
            send(request, "40" + object + "00000000");
            send(answer, "41" + object + "0A000000");
            send(request, "6000000000000000");
            send(answer, "00" + bytes(7));
            send(request, "7000000000000000");
            return send(answer, "19" + bytes(3) + "00000000");
        }
    }

    Trace m_trace;
    std::mt19937 m_random{1}; // NOLINT: the same frames each time
    qint64 m_time = 1436509052249713;
};

/*! What the columns of tshark say of one frame. */
struct Dissected
{
    int function = 0;
    int node = 0;
    QString index;
    QString subIndex;
    QString abortCode;
    QString errorCode;
    QString errorRegister;
    QString state;
    QString command;
    QString target;
};

Dissected dissected(const QString &line)
{
    const QStringList columns = line.split(QLatin1Char('\t'));
    const auto number = [&columns](int column) { return columns.value(column).toInt(nullptr, 0); };
    return {number(0),        number(1),        columns.value(2), columns.value(3), columns.value(4),
            columns.value(5), columns.value(6), columns.value(7), columns.value(8), columns.value(9)};
}

FrameKind kindOf(const Dissected &frame)
{
    constexpr int emergency = 1; // with a node, else SYNC
    switch (frame.function) {
    case 0:
        return FrameKind::Nmt;
    case emergency:
        return frame.node == 0 ? FrameKind::Sync : FrameKind::Emergency;
    case 2:
        return FrameKind::Time;
    case 11:
    case 12:
        return FrameKind::Sdo;
    case 14:
        return FrameKind::Heartbeat;
    default:
        return frame.function < 11 ? FrameKind::Pdo : FrameKind::Other;
    }
}

quint32 numberOf(const QString &text)
{
    return text.toUInt(nullptr, 0);
}

QString upper(quint32 number, int digits)
{
    return QStringLiteral("%1").arg(number, digits, 16, QLatin1Char('0')).toUpper() + QLatin1Char('h');
}

} // namespace

/*! The CANopen dissector of tshark says the same of each frame as we do. */
class tst_Dissector : public QObject
{
    Q_OBJECT

private slots:
    void saysTheSame();

private:
    static void compare(const TraceLines &lines, std::size_t position, const Dissected &theirs);

    QTemporaryDir m_folder;
};

void tst_Dissector::compare(const TraceLines &lines, std::size_t position, const Dissected &theirs)
{
    const std::size_t row = lines.rowOfFrame(position);
    const TraceLine &line = lines.at(row);
    const QString text = lines.text(row).text;
    QCOMPARE(frameKindName(line.kind), frameKindName(kindOf(theirs)));
    QCOMPARE(int(line.nodeId), line.kind == FrameKind::Nmt ? theirs.target.toInt(nullptr, 0) : theirs.node);
    if (!theirs.index.isEmpty()) {
        const std::optional<SdoTransfer> transfer = lines.transfer(row);
        QVERIFY(transfer.has_value());
        QCOMPARE(quint32(transfer->object.index), numberOf(theirs.index));
        QCOMPARE(quint32(transfer->object.subIndex), numberOf(theirs.subIndex));
    }
    if (!theirs.abortCode.isEmpty())
        QCOMPARE(lines.transfer(row)->abortCode, numberOf(theirs.abortCode));
    if (!theirs.errorCode.isEmpty()) {
        QVERIFY2(text.contains(QStringLiteral("emergency ") + upper(numberOf(theirs.errorCode), 4)),
                 qPrintable(text));
        QVERIFY2(text.contains(QStringLiteral("error register ") + upper(numberOf(theirs.errorRegister), 2)),
                 qPrintable(text));
    }
    if (line.kind == FrameKind::Nmt) {
        const QHash<quint32, QString> words{{1, QStringLiteral(": start")},
                                            {2, QStringLiteral(": stop")},
                                            {128, QStringLiteral(": enter Pre-operational")},
                                            {129, QStringLiteral(": reset the device")},
                                            {130, QStringLiteral(": reset the communication")}};
        QVERIFY2(text.endsWith(words.value(numberOf(theirs.command), QStringLiteral("?"))), qPrintable(text));
    }
    if (!theirs.state.isEmpty()) {
        const QHash<quint32, QString> words{{0, QStringLiteral("boot-up: the device has started")},
                                            {4, QStringLiteral("heartbeat: Stopped")},
                                            {5, QStringLiteral("heartbeat: Operational")},
                                            {127, QStringLiteral("heartbeat: Pre-operational")}};
        QCOMPARE(text, words.value(numberOf(theirs.state)));
    }
}

void tst_Dissector::saysTheSame()
{
    const QString tshark = QStandardPaths::findExecutable(QStringLiteral("tshark"));
    if (tshark.isEmpty())
        QSKIP("tshark is not installed: scripts/install-packages all brings it.");
    Traffic traffic;
    const Trace &trace = traffic.make();
    const QString file = m_folder.filePath(QStringLiteral("traffic.pcapng"));
    QString error;
    QVERIFY2(TraceFile::save(file, trace, &error), qPrintable(error));
    QStringList arguments{QStringLiteral("-n"),
                          QStringLiteral("-r"),
                          file,
                          QStringLiteral("-d"),
                          QStringLiteral("can.subdissector,canopen"),
                          QStringLiteral("-T"),
                          QStringLiteral("fields")};
    for (const char *field :
         {"function_code", "node_id", "sdo.main_idx", "sdo.sub_idx", "sdo.abort_code", "em.err_code",
          "em.err_reg", "nmt_guard.state", "nmt_ctrl.cd", "nmt_ctrl.node_id"})
        arguments << QStringLiteral("-e") << QStringLiteral("canopen.") + QLatin1String(field);
    QProcess process;
    process.start(tshark, arguments);
    QVERIFY2(process.waitForFinished(patience), qPrintable(process.errorString()));
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
    const QStringList theirs
        = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::KeepEmptyParts);
    QCOMPARE(std::size_t(theirs.size()), trace.frames.size() + 1);

    TraceBook book;
    TraceLines lines(&trace.frames, &book);
    lines.finish();
    int objects = 0;
    int aborts = 0;
    for (std::size_t i = 0; i < trace.frames.size(); ++i) {
        const Dissected frame = dissected(theirs.at(int(i)));
        compare(lines, i, frame);
        if (QTest::currentTestFailed()) {
            qWarning("frame %d: %s", int(i), qPrintable(theirs.at(int(i))));
            return;
        }
        objects += frame.index.isEmpty() ? 0 : 1;
        aborts += frame.abortCode.isEmpty() ? 0 : 1;
    }
    QVERIFY(objects > 3000); // or nothing was compared
    QVERIFY(aborts > 300);
}

QTEST_GUILESS_MAIN(tst_Dissector)
#include "tst_dissector.moc"
