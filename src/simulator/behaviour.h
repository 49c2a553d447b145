// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectdictionary.h>
#include <canopen/objectkey.h>

#include <QByteArray>
#include <QVector>

#include <optional>

class QJsonObject;

namespace Simulator {

enum class BehaviourKind { Ramp, Sine, Random, Counter, Course };

/*! A point that a course goes through. */
struct CoursePoint
{
    double seconds = 0;
    double value = 0;
};

/*! A value that moves: a function of the time since the vehicle has started. */
struct Behaviour
{
    CanOpen::ObjectKey object;
    BehaviourKind kind = BehaviourKind::Ramp;

    // Ramp: from one value to another in some seconds, then again or held. Counter: from, step and
    // intervalMs.
    double from = 0;
    double to = 0;
    double seconds = 1;
    bool repeat = false;
    double step = 1;
    // Sine
    double mean = 0;
    double amplitude = 0;
    double periodSeconds = 1;
    // Random: another value between the two every intervalMs, the same ones in every run.
    double min = 0;
    double max = 0;
    double intervalMs = 1000;
    // Course: straight from point to point, level before the first and behind the last (repeat: from the first again).
    QVector<CoursePoint> points; // one at least, in order of time
};

/*! The value after \a elapsed microseconds, as the function says, whatever the object can hold. */
double behaviourValue(const Behaviour &behaviour, qint64 elapsed);

/*! The same as the bytes of \a entry: rounded, and kept inside the range of its type and its limits (a
 *  counter starts again from the lowest value instead). Empty when the entry is no number.
 */
std::optional<QByteArray> behaviourData(const Behaviour &behaviour, const CanOpen::ObjectEntry &entry,
                                        qint64 elapsed);

/*! Whether values of \a type can move. */
bool isNumber(CanOpen::DataType type);

/*! Reads a behaviour of a vehicle file; \a errorMessage then tells the key and what is wrong. */
std::optional<Behaviour> parseBehaviour(const QJsonObject &json, QString *errorMessage);

} // namespace Simulator
