// SPDX-License-Identifier: MIT
#pragma once

class CanReceiverHub;
class SdoClient;
class SecondarySdoClient;

/*! What the host offers a plug-in.
 *
 *  Owned by the host; outlives every plug-in that it was given to.
 */
class HostInterface
{
public:
    virtual ~HostInterface() = default;

    /*! The objects through which frames and NMT states are heard. */
    virtual CanReceiverHub *getCanReceiverHub() = 0;

    /*! The client that performs a plug-in's reads; null while there is none. */
    virtual SdoClient *getSdoClient() = 0;

    /*! The second source of SDO outcomes; null when the host has none. */
    virtual SecondarySdoClient *getSecondarySdoClient() = 0;
};
