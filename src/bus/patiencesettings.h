// SPDX-License-Identifier: MIT
#pragma once

#include <QMap>
#include <QVariantMap>

namespace CanOpen {
class SdoClient;
}

/*! How long the host waits for answers, as the user chooses it: for all nodes, and for single slow ones. */
struct PatienceSettings
{
    /*! For one kind of node. */
    struct Patience
    {
        int timeout = 100; //!< ms, for the first answer; doubled with every repeat
        int repeats = 2;   //!< how often the request is asked again
    };

    static constexpr int shortestTimeout = 20;  // ms
    static constexpr int longestTimeout = 5000; // ms
    static constexpr int mostRepeats = 5;

    Patience general;
    QMap<quint8, Patience> nodes; //!< by node ID, 1 to 127

    /*! What \a settings holds; what is missing, no number or out of range is as in a new object. */
    static PatienceSettings load(const QVariantMap &settings);
    void save(QVariantMap *settings) const;

    /*! Gives the patience to \a client, from the next uploads on. Nodes of \a previous without a patience of
     *  their own now get the general one.
     */
    void apply(CanOpen::SdoClient *client, const PatienceSettings &previous) const;
};

bool operator==(const PatienceSettings::Patience &a, const PatienceSettings::Patience &b);
bool operator==(const PatienceSettings &a, const PatienceSettings &b);
