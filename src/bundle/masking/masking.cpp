// SPDX-License-Identifier: MIT
#include "masking.h"

#include "pathfinding.h"

#include <interpreter/objectdescriptions.h>
#include <interpreter/objects.h>
#include <system/amounts.h>

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSysInfo>
#include <QtEndian>

#include <algorithm>

namespace {

constexpr quint16 identityObject = 0x1018;
constexpr quint8 serialNumberSub = 4;
constexpr quint16 securityKey = 0x6058;

constexpr int shortestName = 3;
// A number that is shorter stands in any text, and among any bytes.
constexpr quint64 leastInTexts = 1000;
constexpr quint32 leastInBytes = 0x10000;
constexpr quint32 noNumber = 0xFFFFFFFF;
constexpr int wordSize = 4;
constexpr int longestNumber = 8; // bytes
constexpr int shortestText = 5;  // bytes that are printable all of them
constexpr int numberBase = 16;

bool isPrintable(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

bool isText(const QByteArray &bytes)
{
    return bytes.size() > longestNumber || (bytes.size() >= shortestText && isPrintable(bytes));
}

quint64 numberOf(const QByteArray &bytes)
{
    quint64 number = 0;
    for (int i = bytes.size() - 1; i >= 0; --i)
        number = number << Bits::ofByte | static_cast<quint8>(bytes.at(i));
    return number;
}

/*! The letters of two bytes each (UTF-16) of which the second is 0; empty when it is no such text. */
QByteArray narrowed(const QByteArray &bytes)
{
    QByteArray narrow;
    if (bytes.size() % 2 != 0)
        return narrow;
    for (int i = 0; i < bytes.size(); i += 2) {
        if (bytes.at(i + 1) != '\0')
            return QByteArray();
        narrow.append(bytes.at(i));
    }
    return narrow;
}

QByteArray widened(const QByteArray &narrow)
{
    QByteArray wide;
    for (const char byte : narrow)
        wide.append(byte).append('\0');
    return wide;
}

/*! A letter for each byte, also for a zero. */
QString lettersOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.constData(), bytes.size());
}

/*! Up to the first zero; devices fill up with them. */
QString textOf(const QByteArray &bytes)
{
    const QByteArray narrow = narrowed(bytes);
    const QByteArray &letters = narrow.isEmpty() ? bytes : narrow;
    return QString::fromLatin1(letters.constData(), int(qstrnlen(letters.constData(), uint(letters.size()))));
}

QString serialName(quint16 index)
{
    const ObjectDescription *description = objectDescriptions().find(index);
    return description != nullptr ? description->name : QString();
}

/*! Serial numbers that a text calls so. */
QStringList serialsIn(const QString &text)
{
    static const QRegularExpression called(
        QStringLiteral(
            "(?<![A-Za-z])(?:s/?n|ser(?:ial)?(?:[ ._-]*(?:no|nr|num|number))?|serien[ ._-]*(?:nr|nummer)"
            "|serie[ ._-]*(?:nr|nummer)|(?:no|num[ée]ro)[ ._-]*(?:de )?s[ée]rie)[\\s:#.=_-]*"
            "([A-Za-z0-9][A-Za-z0-9/-]*[0-9][A-Za-z0-9/-]*)"),
        QRegularExpression::CaseInsensitiveOption);
    QStringList found;
    for (auto match = called.globalMatch(text); match.hasNext();)
        found.append(match.next().captured(1));
    return found;
}

bool isWordPart(const QString &text, int position)
{
    return position >= 0 && position < text.size() && text.at(position).isLetterOrNumber();
}

} // namespace

bool Masking::isSecret(CanOpen::ObjectKey key)
{
    if (key.index == identityObject)
        return key.subIndex == serialNumberSub;
    if (key.index == Object::uniquePartNumber || key.index == securityKey)
        return true;
    const bool isCount = key.subIndex == 0;
    return !isCount && serialName(key.index).contains(QLatin1String("serial number"), Qt::CaseInsensitive);
}

void Masking::learnName(const QString &name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.size() < shortestName || m_names.contains(trimmed, Qt::CaseInsensitive))
        return;
    m_names.append(trimmed);
    // Its bytes know nothing of capitals.
    for (const QString &spelling : {trimmed, trimmed.toLower(), trimmed.toUpper()}) {
        const QString bytes = lettersOf(spelling.toUtf8());
        if (bytes == spelling || m_spelt.contains(bytes))
            continue;
        m_names.append(bytes);
        m_spelt.insert(bytes, trimmed);
    }
    std::stable_sort(m_names.begin(), m_names.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
}

void Masking::learnNumber(quint64 number)
{
    if (number == noNumber || number < leastInTexts)
        return;
    m_runs.insert(QString::number(number));
    if (number < leastInBytes)
        return;
    m_runs.insert(QString::number(number, numberBase).toUpper());
    if (number < noNumber)
        m_numbers.insert(static_cast<quint32>(number));
}

void Masking::learnValue(CanOpen::ObjectKey key, const QByteArray &value)
{
    if (isSecret(key)) {
        isText(value) ? learnSerial(textOf(value)) : learnNumber(numberOf(value));
        return;
    }
    const QStringList serials = serialsIn(textOf(value));
    for (const QString &serial : serials)
        learnSerial(serial);
}

void Masking::learnSerial(const QString &serial)
{
    bool isNumber = false;
    const quint64 number = serial.trimmed().toULongLong(&isNumber);
    isNumber ? learnNumber(number) : learnName(serial);
}

void Masking::learnBus(const QString &address)
{
    const QString backEnd = address.section(QLatin1Char(':'), 0, 0);
    const QString name = address.section(QLatin1Char(':'), 1).section(QLatin1Char('?'), 0, 0);
    const bool isFile = backEnd == QLatin1String("trace")
                        || (backEnd == QLatin1String("simulated") && name.contains(QLatin1Char('.')));
    if (!isFile)
        return;
    QString fileName = QFileInfo(name).fileName();
    learnName(name);
    learnName(fileName);
    learnName(fileName.replace(QLatin1Char(' '), QLatin1Char('_'))); // as a channel has it
}

void Masking::learnComputer()
{
    learnName(QSysInfo::machineHostName());
    learnName(QFileInfo(QDir::homePath()).fileName());
    for (const char *variable : {"USER", "LOGNAME", "USERNAME"})
        learnName(qEnvironmentVariable(variable));
}

QString Masking::standIn(const QString &found, Length length)
{
    const QString secret = m_spelt.value(found, found);
    return length == Length::Free ? m_mask.word(secret) : m_mask.text(secret, found.size());
}

QString Masking::text(const QString &text)
{
    return replaceAll(replacePaths(text), Length::Free);
}

QString Masking::word(const QString &text)
{
    return text.trimmed().isEmpty() ? text : m_mask.word(text);
}

QString Masking::replaceAll(const QString &text, Length length)
{
    return replaceNumbers(replaceNames(text, length), length);
}

/*! The suffix stays: it says what kind of file it was. */
QString Masking::replacePaths(const QString &text)
{
    QString replaced;
    int done = 0;
    for (PathFinding::Place place = PathFinding::next(text, 0); place.first >= 0;
         place = PathFinding::next(text, done)) {
        const QString path = text.mid(place.first, place.size);
        const QString suffix = QFileInfo(path).suffix();
        replaced += text.midRef(done, place.first - done) + m_mask.word(path);
        if (!suffix.isEmpty())
            replaced += QLatin1Char('.') + suffix;
        done = place.first + place.size;
    }
    return replaced + text.midRef(done);
}

QString Masking::replaceNames(QString text, Length length)
{
    // Among bytes what is beyond ASCII may be a part of a dash or a quotation mark as well as of a letter.
    const auto isJoined = [&text, length](int position) {
        return isWordPart(text, position) && (length == Length::Free || text.at(position) < QChar(0x80));
    };
    for (const QString &name : qAsConst(m_names)) {
        int at = text.indexOf(name, 0, Qt::CaseInsensitive);
        while (at >= 0) {
            const bool isWhole = !isJoined(at - 1) && !isJoined(at + name.size());
            const QString put = isWhole ? standIn(name, length) : name;
            if (isWhole)
                text.replace(at, name.size(), put);
            at = text.indexOf(name, at + put.size(), Qt::CaseInsensitive);
        }
    }
    return text;
}

/*! Runs of letters and digits are looked at one by one. */
QString Masking::replaceNumbers(const QString &text, Length length)
{
    if (m_runs.isEmpty())
        return text;
    QString replaced;
    int at = 0;
    while (at < text.size()) {
        int end = at;
        while (end < text.size() && text.at(end).isLetterOrNumber())
            ++end;
        replaced += end > at ? replaceRun(text.mid(at, end - at), length) : QString(text.at(at));
        at = std::max(end, at + 1);
    }
    return replaced;
}

bool Masking::isKnown(const QString &run) const
{
    return m_runs.contains(run) || m_names.contains(run, Qt::CaseInsensitive);
}

/*! "1031904", "0x000FBEE0", "000FBEE0h", "SN1031904" */
QString Masking::replaceRun(const QString &run, Length length)
{
    static const QRegularExpression digits(QStringLiteral("[0-9]{4,}"));
    static const QRegularExpression hexadecimal(QStringLiteral("^(0[xX])?0*([0-9A-Fa-f]{4,16}?)([hH]?)$"));
    const QRegularExpressionMatch hex = hexadecimal.match(run);
    if (hex.hasMatch() && isKnown(hex.captured(2).toUpper())) {
        bool isNumber = false;
        const quint64 number = hex.captured(2).toULongLong(&isNumber, numberBase);
        const bool isDecimal = m_runs.contains(QString::number(hex.captured(2).toULongLong()));
        const QString secret = isDecimal || !isNumber ? hex.captured(2) : QString::number(number);
        return length == Length::Free ? m_mask.word(secret) : m_mask.text(secret, run.size());
    }
    const QRegularExpressionMatch part = digits.match(run);
    if (!part.hasMatch() || !isKnown(QString::number(part.captured().toULongLong())))
        return run;
    return run.left(part.capturedStart()) + standIn(part.captured(), length) + run.mid(part.capturedEnd());
}

/*! A text of bytes, of one byte or of two for each letter. */
QByteArray Masking::replaceBytes(const QByteArray &bytes)
{
    const QByteArray narrow = narrowed(bytes);
    if (narrow.isEmpty())
        return replaceAll(lettersOf(bytes), Length::Kept).toLatin1();
    return widened(replaceAll(lettersOf(narrow), Length::Kept).toLatin1());
}

QByteArray Masking::value(CanOpen::ObjectKey key, const QByteArray &value)
{
    if (isSecret(key) && isText(value)) {
        const bool isWide = !narrowed(value).isEmpty();
        const QByteArray masked
            = m_mask.text(textOf(value), isWide ? value.size() / 2 : value.size()).toLatin1();
        return isWide ? widened(masked) : masked;
    }
    if (isSecret(key) && !value.isEmpty()) {
        QByteArray masked = value;
        const auto number = qToLittleEndian(m_mask.number(numberOf(value), value.size() * Bits::ofByte));
        std::copy_n(reinterpret_cast<const char *>(&number), value.size(), masked.begin());
        return masked;
    }
    QByteArray masked = value.size() >= wordSize ? replaceBytes(value) : value;
    sweep(masked.data(), masked.size());
    return masked;
}

void Masking::sweep(char *bytes, int size)
{
    if (m_numbers.isEmpty())
        return;
    const auto standsFor = [this](quint32 secret) {
        return static_cast<quint32>(m_mask.number(secret, wordSize * Bits::ofByte));
    };
    for (int at = 0; at + wordSize <= size; ++at) {
        const auto little = qFromLittleEndian<quint32>(bytes + at);
        const auto big = qFromBigEndian<quint32>(bytes + at);
        if (m_numbers.contains(little))
            qToLittleEndian(standsFor(little), bytes + at);
        else if (m_numbers.contains(big))
            qToBigEndian(standsFor(big), bytes + at);
        else
            continue;
        at += wordSize - 1;
    }
}
