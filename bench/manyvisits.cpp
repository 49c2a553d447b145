// SPDX-License-Identifier: MIT
#include "manyvisits.h"

#include <QDir>

int ManyVisits::count()
{
    bool isNumber = false;
    const int count = qEnvironmentVariableIntValue("ARCHIVE_VISITS", &isNumber);
    return isNumber ? count : 10000;
}

QString ManyVisits::fileName() const
{
    const QString name = QStringLiteral("bench.dxarchive");
    const QString kept = qEnvironmentVariable("ARCHIVE_FOLDER");
    return kept.isEmpty() ? m_folder.filePath(name) : QDir(kept).filePath(name);
}

bool ManyVisits::fill(Archive *archive, QString *error)
{
    const auto there = archive->visits({}, error);
    if (!there)
        return false;
    VehicleSnapshots snapshots(QStringLiteral("full-bus"));
    for (int i = there->size(); i < count(); ++i) {
        if (!archive->add(snapshots.visit(i / visitsOfVehicle, i % visitsOfVehicle), std::nullopt, error))
            return false;
    }
    return true;
}
