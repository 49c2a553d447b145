// SPDX-License-Identifier: MIT
// Formulas of rules: a text is a formula or has a reason why not, and evaluating it ends.
#include "bytereader.h"

#include <checkup/evaluation.h>
#include <checkup/expressionparser.h>
#include <checkup/texttemplate.h>
#include <checkup/vehiclefacts.h>
#include <snapshot/snapshot.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static const Snapshot snapshot = [] {
        SnapshotNode node;
        node.id = 5;
        SnapshotEntry count;
        count.key = {0x6040, 0};
        count.value = 255u;
        node.insert(count);
        SnapshotEntry huge;
        huge.key = {0x6040, 1};
        huge.value = qulonglong(0xFFFFFFFFFFFFFFFF);
        node.insert(huge);
        Snapshot made;
        made.nodes.append(node);
        return made;
    }();
    static const VehicleFacts vehicle(snapshot);
    static const QVector<ExpressionParser::Loop> loops{{QStringLiteral("s"), false},
                                                       {QStringLiteral("p"), true}};

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    Evaluation evaluation(vehicle, 0);
    evaluation.setLoop(0, 1);
    evaluation.setLoop(1, 4095, 0x6040);
    QString error;
    const std::optional<Expression> expression = ExpressionParser(loops).parse(text, &error);
    require(expression.has_value() == error.isEmpty());
    if (expression) {
        const Operand result = expression->evaluate(evaluation);
        require(!result.isNumber() || std::isfinite(result.number));
        require(!result.isUnknown() || !evaluation.missingObjects().isEmpty() || evaluation.isFactMissing()
                || evaluation.isIncalculable());
    }
    error.clear();
    const std::optional<TextTemplate> places = TextTemplate::parse(text, loops, &error);
    require(places.has_value() == error.isEmpty());
    if (places)
        places->fill(evaluation, WordTables(), QStringLiteral("en"));
    return 0;
}
