// SPDX-License-Identifier: MIT
#include "devicefiles.h"

#include "tracedialogs.h"

#include <canopen/edsfile.h>
#include <host/pages/sheetdialogs.h>
#include <snapshot/savedvehicle.h>
#include <system/background.h>
#include <system/ordinaryfile.h>

#include <QFileInfo>
#include <QWidget>

DeviceFiles::DeviceFiles(QWidget *parent)
    : QObject(parent)
    , m_window(parent)
{
}

void DeviceFiles::choose(const QString &folder)
{
    TraceDialogs::askToOpen(m_window, "traceDevicesDialog", tr("Open what is known of the devices"), folder,
                            {tr("Snapshots and data sheets (%1)")
                                 .arg(QLatin1String("*.dxsnap *.dxxml ") + SheetDialogs::patterns()),
                             tr("All files (*)")},
                            [this](const QString &fileName) { open(fileName); });
}

void DeviceFiles::open(const QString &fileName, quint8 nodeId)
{
    Background::run(
        this,
        [fileName, nodeId] {
            const QString problem = ordinaryFileProblem(fileName);
            if (!problem.isEmpty())
                return Result{{}, false, problem};
            return SheetDialogs::isSheet(fileName) ? readSheet(fileName, nodeId) : readSnapshot(fileName);
        },
        [this, fileName](const Result &result) { take(fileName, result); });
}

DeviceFiles::Result DeviceFiles::readSheet(const QString &fileName, quint8 nodeId)
{
    Result result;
    const std::optional<CanOpen::EdsFile> sheet = CanOpen::readEdsFile(fileName, nodeId, &result.problem);
    if (!sheet)
        return result;
    const quint8 node = nodeId != 0 ? nodeId : sheet->nodeId.value_or(0);
    result.needsNode = node == 0;
    if (!result.needsNode)
        result.devices.sheets.insert(node, sheet->dictionary);
    return result;
}

DeviceFiles::Result DeviceFiles::readSnapshot(const QString &fileName)
{
    Result result;
    if (const std::optional<Snapshot> snapshot = SavedVehicle::load(fileName, &result.problem))
        result.devices.snapshot = *snapshot;
    return result;
}

void DeviceFiles::take(const QString &fileName, const Result &result)
{
    if (!result.problem.isEmpty()) {
        emit failed(result.problem);
        return;
    }
    if (result.needsNode) {
        SheetDialogs::askForNode(m_window, fileName,
                                 [this, fileName](quint8 nodeId) { open(fileName, nodeId); });
        return;
    }
    const QString name = QFileInfo(fileName).fileName();
    if (!result.devices.sheets.isEmpty()) {
        const QString node = QString::number(result.devices.sheets.firstKey());
        emit read(result.devices, tr("Node %1 of the trace is known from %2 now.").arg(node, name));
        return;
    }
    emit read(result.devices, tr("%n node(s) of the trace are known from %1 now.", nullptr,
                                 result.devices.snapshot.nodes.size())
                                  .arg(name));
}
