// SPDX-License-Identifier: MIT
#include "bundlefile.h"

#include "bundlereading.h"
#include "bundlewriting.h"
#include "zipfile.h"

#include <store/wholefile.h>
#include <system/systemerrortext.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 magicSize = 4;

} // namespace

bool BundleFile::isBundleName(const QString &fileName)
{
    return fileName.endsWith(QLatin1String(".zip"), Qt::CaseInsensitive);
}

bool BundleFile::isBundle(const QString &fileName)
{
    QFile file(fileName);
    return QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly)
           && ZipFile::isZip(file.read(magicSize));
}

bool BundleFile::save(const QString &fileName, const SupportBundle &bundle, const RuleSet &rules,
                      const QString &language, QString *errorMessage)
{
    QString problem;
    const QByteArray bytes = ZipFile::pack(BundleWriting::toFiles(bundle, rules, language), &problem);
    WholeFile file(fileName);
    if (!bytes.isEmpty() && file.open() && file.write(bytes) && file.commit())
        return true;
    if (!bytes.isEmpty())
        problem = systemErrorText(file.errorString());
    *errorMessage = tr("The file %1 cannot be written: %2.").arg(QDir::toNativeSeparators(fileName), problem);
    return false;
}

std::optional<QByteArray> BundleFile::readFile(const QString &fileName, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(fileName);
    const ZipFile::Limits limits;
    if (QFileInfo(fileName).size() > limits.file) {
        *errorMessage = tr("The file %1 is far too large for a support bundle.").arg(shownName);
        return std::nullopt;
    }
    QFile file(fileName);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.read(limits.file);
    if (file.error() == QFileDevice::NoError)
        return bytes;
    *errorMessage = tr("The file %1 cannot be read: %2.").arg(shownName, systemErrorText(file.errorString()));
    return std::nullopt;
}

QString BundleFile::sentence(const QString &fileName, const QString &problem)
{
    return tr("The support bundle %1 cannot be opened: %2.").arg(QDir::toNativeSeparators(fileName), problem);
}

std::optional<SupportBundle> BundleFile::load(const QString &fileName, QString *errorMessage)
{
    const std::optional<QByteArray> bytes = readFile(fileName, errorMessage);
    if (!bytes)
        return std::nullopt;
    QString problem;
    std::optional<SupportBundle> bundle = fromBytes(*bytes, &problem);
    if (!bundle)
        *errorMessage = sentence(fileName, problem);
    return bundle;
}

std::optional<QByteArray> BundleFile::loadTrace(const QString &fileName, QString *errorMessage)
{
    const std::optional<QByteArray> bytes = readFile(fileName, errorMessage);
    if (!bytes)
        return std::nullopt;
    QString problem;
    const std::optional<QVector<ZipFile::Entry>> files = ZipFile::unpack(*bytes, ZipFile::Limits(), &problem);
    const std::optional<BundleReading::TakenFile> trace
        = files ? BundleReading::takeTrace(*files, &problem) : std::nullopt;
    if (!trace) {
        *errorMessage = sentence(fileName, problem);
        return std::nullopt;
    }
    if (!trace->bytes)
        *errorMessage
            = !trace->problem.isEmpty()
                  ? trace->problem
                  : tr("The support bundle %1 has no trace.").arg(QDir::toNativeSeparators(fileName));
    return trace->bytes;
}

std::optional<SupportBundle> BundleFile::fromBytes(const QByteArray &bytes, QString *problem)
{
    const std::optional<QVector<ZipFile::Entry>> files = ZipFile::unpack(bytes, ZipFile::Limits(), problem);
    return files ? BundleReading::read(*files, problem) : std::nullopt;
}
