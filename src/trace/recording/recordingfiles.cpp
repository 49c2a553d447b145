// SPDX-License-Identifier: MIT
#include "recordingfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

RecordingFiles::RecordingFiles(const QString &path, Kind kind)
    : m_path(path)
    , m_kind(kind)
{
    const QFileInfo file(path);
    const QString name = file.fileName();
    const int suffix = suffixAt(name);
    const QRegularExpression pattern(QLatin1Char('^') + QRegularExpression::escape(name.left(suffix))
                                     + QStringLiteral("-(\\d{4,9})")
                                     + QRegularExpression::escape(name.mid(suffix)) + QLatin1Char('$'));
    for (const QString &there : file.dir().entryList(QDir::Files | QDir::Hidden)) {
        const QRegularExpressionMatch match = pattern.match(there);
        if (match.hasMatch())
            m_number = std::max(m_number, match.captured(1).toInt());
    }
}

/*! Where ".log.gz" begins; a file without a suffix gets its number at the end. */
int RecordingFiles::suffixAt(const QString &fileName)
{
    const int packing = fileName.endsWith(QLatin1String(".gz")) || fileName.endsWith(QLatin1String(".zst"))
                            ? fileName.lastIndexOf(QLatin1Char('.'))
                            : fileName.size();
    const int dot = fileName.left(packing).lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? dot : packing;
}

QString RecordingFiles::numbered(int number) const
{
    const int folder = m_path.size() - QFileInfo(m_path).fileName().size();
    const int at = folder + suffixAt(m_path.mid(folder));
    constexpr int digits = 4;
    return m_path.left(at) + QStringLiteral("-%1").arg(number, digits, 10, QLatin1Char('0')) + m_path.mid(at);
}

QString RecordingFiles::next()
{
    if (m_kind == Kind::One)
        return m_path;
    do {
        ++m_number;
    } while (QFile::exists(numbered(m_number))); // of another recording of the same name
    return numbered(m_number);
}

void RecordingFiles::removeAllBut(int keep)
{
    const auto isGone = [](const QString &name) { return QFile::remove(name) || !QFile::exists(name); };
    const auto firstKept = m_names.end() - std::min(keep, m_names.size());
    m_names.erase(std::remove_if(m_names.begin(), firstKept, isGone), firstKept);
}
