// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

struct SnapshotNode;

/*! What could not be read of a component for one reason. */
struct UnreadGroup
{
    QString reason;  //!< a sentence
    QString objects; //!< names with their numbers, the first ones of many
    int count = 0;
};

/*! All that might be there and was not read, by reasons in the order in which they come. */
QVector<UnreadGroup> unreadGroups(const SnapshotNode &node);
