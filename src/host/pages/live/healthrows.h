// SPDX-License-Identifier: MIT
#pragma once

#include <live/health/healthnumbers.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/*! All numbers of a bus's health as rows of texts, in the language of the user. What is not known is "–". */
class HealthRows
{
    Q_DECLARE_TR_FUNCTIONS(HealthRows)

public:
    /*! What and how much, two texts a row. */
    static QVector<QStringList> ofBus(const HealthNumbers &numbers);

    static QStringList nodeHead();
    /*! A row for each node that was heard or asked, as long as nodeHead(). */
    static QVector<QStringList> ofNodes(const HealthNumbers &numbers);

private:
    static QString number(double value, int decimals);
    static QString percent(std::optional<double> load);
    static QString time(std::optional<double> milliseconds);
    static QString perSecond(const KindNumbers &kind);
    static QString state(std::optional<CanOpen::NmtState> state);
    static QString controller(InterfaceHealth::State state);
    static QString kind(FrameKind kind);
    static QStringList ofNode(const NodeNumbers &node);
    static void addFrames(const HealthNumbers &numbers, QVector<QStringList> *rows);
    static void addController(const HealthNumbers &numbers, QVector<QStringList> *rows);
};
