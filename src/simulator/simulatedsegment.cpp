// SPDX-License-Identifier: MIT
#include "simulatedsegment.h"

#include "vehiclefile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

namespace Simulator {

namespace {

struct SimulatedBusTr
{
    Q_DECLARE_TR_FUNCTIONS(SimulatedBus)
};

using Segments = QHash<QString, std::weak_ptr<SimulatedSegment>>; // by the file's real path

Segments &runningSegments()
{
    static Segments segments;
    return segments;
}

} // namespace

SimulatedSegment::SimulatedSegment(const VehicleDescription &description, int bitRate)
    : m_bus(std::make_shared<SimulatedBus>(bitRate))
    , m_vehicle(description)
    , m_vehicleOnBus(&m_vehicle, m_bus.get())
{
    for (const Fault &fault : description.faults) {
        if (const auto *loss = std::get_if<Faults::BusLoss>(&fault))
            orderLoss(*loss);
    }
    m_vehicle.start();
}

SimulatedSegment::~SimulatedSegment()
{
    m_vehicle.stop();
}

void SimulatedSegment::orderLoss(const Faults::BusLoss &fault)
{
    m_bus->loseAfter(static_cast<quint64>(fault.afterFrames),
                     fault.drop ? BusLoss::Disconnected : BusLoss::Unplugged);
}

std::shared_ptr<SimulatedSegment> SimulatedSegment::join(const QString &interfaceName, int bitRate,
                                                         QString *errorMessage)
{
    const QString path = findVehicleFile(interfaceName, errorMessage);
    if (path.isEmpty())
        return nullptr;
    const QString realPath = QFileInfo(path).canonicalFilePath();
    if (std::shared_ptr<SimulatedSegment> running = runningSegments().value(realPath).lock()) {
        const int runningRate = running->bus()->bitRate();
        if (running->bus()->isLost()) {
            *errorMessage = SimulatedBusTr::tr("The simulated bus is down");
            return nullptr;
        }
        if (bitRate >= 0 && bitRate != runningRate) {
            *errorMessage = SimulatedBusTr::tr("The simulated bus runs at %1 bit/s already, not at %2")
                                .arg(runningRate)
                                .arg(bitRate);
            return nullptr;
        }
        return running;
    }
    const std::optional<VehicleDescription> description = readVehicleFile(path, errorMessage);
    if (!description)
        return nullptr;
    auto segment
        = std::make_shared<SimulatedSegment>(*description, bitRate >= 0 ? bitRate : description->bitRate);
    runningSegments().insert(realPath, segment);
    return segment;
}

} // namespace Simulator
