// SPDX-License-Identifier: MIT
// Vehicle files: what is wrong is said in one clean line; what is right runs for a while.
#include "bytereader.h"

#include <simulator/jsonplaces.h>
#include <simulator/vehicle.h>
#include <simulator/vehiclefile.h>

#include <QCoreApplication>

#include <sanitizer/lsan_interface.h>

namespace {

/*! Reads the text. What Qt's own reader loses, when JSON is malformed or has a key twice, is not counted. */
std::optional<Simulator::VehicleDescription> parse(const QByteArray &text, QString *problem)
{
    const __lsan::ScopedDisabler disabler;
    return Simulator::parseVehicle(text, QStringLiteral(FUZZ_VEHICLES_DIR), problem);
}

void checkProblem(const QString &problem)
{
    require(!problem.isEmpty() && problem.size() < 20000);
    for (const QChar character : problem)
        require(character.category() != QChar::Other_Control);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    using namespace Simulator;

    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    require(jsonLine(text, QStringLiteral("nodes[0].faults[0].kind")) >= 1);
    QString problem;
    const std::optional<VehicleDescription> description = parse(text, &problem);
    if (!description) {
        checkProblem(problem);
        return 0;
    }
    qint64 now = 0; // microseconds
    Vehicle vehicle(*description);
    vehicle.setClock([&now] { return now; });
    vehicle.setSender([](const QCanBusFrame &frame, quint8) { require(frame.isValid()); });
    vehicle.start();
    for (const quint8 node : vehicle.nodeIds())
        vehicle.handleFrame(QCanBusFrame(0x600u + node, QByteArray::fromHex("4064610100000000")));
    now += 5000;
    vehicle.processDue();
    return 0;
}
