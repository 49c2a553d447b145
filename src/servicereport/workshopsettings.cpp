// SPDX-License-Identifier: MIT
#include "workshopsettings.h"

#include <system/systemerrortext.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>

namespace {

const char nameKey[] = "workshop/name";
const char linesKey[] = "workshop/lines";
const char logoKey[] = "workshop/logo";
constexpr int largestSide = 8000; // pixels of a logo that is read
const QSize keptSize(900, 360);   // of one that is shown: no report is larger for it than it has to be

} // namespace

WorkshopSettings WorkshopSettings::load(const QVariantMap &settings)
{
    WorkshopSettings workshop;
    workshop.name = settings.value(QLatin1String(nameKey)).toString();
    workshop.lines = settings.value(QLatin1String(linesKey)).toStringList();
    workshop.logoFile = settings.value(QLatin1String(logoKey)).toString();
    return workshop;
}

void WorkshopSettings::save(QVariantMap *settings) const
{
    settings->insert(QLatin1String(nameKey), name);
    if (lines.isEmpty()) // a settings file cannot hold an empty list
        settings->remove(QLatin1String(linesKey));
    else
        settings->insert(QLatin1String(linesKey), lines);
    settings->insert(QLatin1String(logoKey), logoFile);
}

Workshop WorkshopSettings::toWorkshop(QString *errorMessage) const
{
    Workshop workshop;
    workshop.name = name;
    workshop.lines = lines;
    if (!logoFile.isEmpty())
        workshop.logo = loadLogo(logoFile, errorMessage);
    return workshop;
}

QImage WorkshopSettings::loadLogo(const QString &fileName, QString *errorMessage)
{
    const QString shownName = QDir::toNativeSeparators(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        *errorMessage
            = tr("The logo %1 cannot be read: %2.").arg(shownName, systemErrorText(file.errorString()));
        return QImage();
    }
    QByteArray bytes = file.read(largestLogo + 1);
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const bool isSmall
        = bytes.size() <= largestLogo && size.width() <= largestSide && size.height() <= largestSide;
    QImage image = isSmall && size.isValid() ? reader.read() : QImage();
    if (image.isNull())
        *errorMessage
            = tr("The logo %1 is no picture that can be used: PNG or JPEG, at most 8 MB and 8000 pixels.")
                  .arg(shownName);
    else if (image.width() > keptSize.width() || image.height() > keptSize.height())
        return image.scaled(keptSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}
